// A set of element numbers, kept as runs.
#pragma once

#include "ge_sys_math.h"

#include <vector>

class HyperFile;

class BaseSelect {
public:
    static BaseSelect* Alloc();
    static void Free(BaseSelect*& select);

    Int32 GetCount() const { return count; }
    Int32 GetSegments() const { return static_cast<Int32>(runs.size()); }
    Bool Select(Int32 num);
    Bool Deselect(Int32 num);
    Bool SelectAll(Int32 min, Int32 max);
    Bool DeselectAll();
    Bool IsSelected(Int32 num) const;
    /// First and last member of a run, the last below `maxElements`. False past the last run.
    Bool GetRange(Int32 segment, Int32 maxElements, Int32* a, Int32* b) const;
    Int32 GetLastElement() const; // NOTOK if empty

    Bool CopyTo(BaseSelect* dest) const;
    BaseSelect* GetClone() const;
    Bool Merge(const BaseSelect* other);
    Bool Deselect(const BaseSelect* other);
    Bool Cross(const BaseSelect* other);

    Bool Read(HyperFile* hf);
    Bool Write(HyperFile* hf) const;
    UInt32 GetDirty() const { return changes; }

private:
    struct Run {
        Int32 first;
        Int32 last; // inclusive
    };

    friend struct SelectionRecord;
    BaseSelect() = default;
    ~BaseSelect() = default;

    std::vector<Run> runs; // ascending, with gaps between
    Int32 count = 0;
    UInt32 changes = 0;
};
