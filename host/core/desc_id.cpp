#include "c4d_file.h"
#include "lib_description.h"

#include <algorithm>

void DescID::SetId(const DescLevel& level)
{
    depth = 0;
    PushId(level);
}

void DescID::PushId(const DescLevel& level)
{
    if (depth < kDeepest) levels[depth++] = level;
}

const DescLevel& DescID::operator[](Int32 position) const
{
    static const DescLevel empty;
    return position >= 0 && position < depth ? levels[position] : empty;
}

Bool DescID::IsPartOf(const DescID& cmp, Int32* position) const
{
    if (cmp.depth > depth || !std::equal(cmp.levels, cmp.levels + cmp.depth, levels)) return false;
    if (position) *position = cmp.depth;
    return true;
}

DescID DescID::operator<<(Int32 shift) const
{
    DescID rest;
    for (Int32 level = std::max(shift, 0); level < depth; ++level) rest.PushId(levels[level]);
    return rest;
}

Bool operator==(const DescID& a, const DescID& b)
{
    return a.depth == b.depth && std::equal(a.levels, a.levels + a.depth, b.levels);
}

Bool DescID::Write(HyperFile* hf) const
{
    Bool written = hf->WriteInt32(depth);
    for (Int32 level = 0; level < depth; ++level) {
        const DescLevel& part = levels[level];
        written = written && hf->WriteInt32(part.id) && hf->WriteInt32(part.dtype) && hf->WriteInt32(part.creator);
    }
    return written;
}

Bool DescID::Read(HyperFile* hf)
{
    DescID read;
    Int32 count = 0;
    if (!hf->ReadInt32(&count) || count < 0 || count > kDeepest) return false;
    for (Int32 level = 0; level < count; ++level) {
        DescLevel part;
        if (!hf->ReadInt32(&part.id) || !hf->ReadInt32(&part.dtype) || !hf->ReadInt32(&part.creator)) return false;
        read.PushId(part);
    }
    *this = read;
    return true;
}
