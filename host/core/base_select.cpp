// Runs ascend and neither overlap nor touch. Meshes are selected in ascending order for the most part, which only ever
// looks at the last run.
#include "c4d_baseselect.h"
#include "c4d_file.h"
#include "core/selection_record.h"

#include <algorithm>

namespace {

using Run = SelectionRecord::Run;

constexpr Int32 kLastElement = LIMIT<Int32>::MAX - 1; // so that counts and what follows an element are numbers too

// The first run that ends at or behind `element`.
template <class Runs> auto firstEndingFrom(Runs& runs, Int32 element)
{
    return std::lower_bound(runs.begin(), runs.end(), element,
                            [](const Run& run, Int32 value) { return run.last < value; });
}

Int32 lengthOf(const Run& run)
{
    return run.last - run.first + 1;
}

} // namespace

bool SelectionRecord::Assign(BaseSelect& select, std::span<const Run> ascending)
{
    Int32 reached = -1;
    for (const Run& run : ascending) {
        if (run.first <= reached || run.last < run.first || run.last > kLastElement) return false;
        reached = run.last;
    }
    Adopt(select, {ascending.begin(), ascending.end()});
    return true;
}

void SelectionRecord::Adopt(BaseSelect& select, const std::vector<Run>& ascending)
{
    select.runs.clear();
    for (const Run& run : ascending) {
        if (!select.runs.empty() && select.runs.back().last >= run.first - 1)
            select.runs.back().last = LMax(select.runs.back().last, run.last);
        else
            select.runs.push_back(run);
    }
    select.count = 0;
    for (const Run& run : select.runs) select.count += lengthOf(run);
    ++select.changes;
}

BaseSelect* BaseSelect::Alloc()
{
    return new (std::nothrow) BaseSelect;
}

void BaseSelect::Free(BaseSelect*& select)
{
    delete select;
    select = nullptr;
}

Bool BaseSelect::Select(Int32 num)
{
    if (num < 0 || num > kLastElement) return false;
    ++changes;
    if (!runs.empty() && runs.back().last == num - 1) {
        runs.back().last = num;
        ++count;
        return true;
    }

    const auto next = firstEndingFrom(runs, num);
    if (next != runs.end() && next->first <= num) return true;
    ++count;
    const bool joinsPrevious = next != runs.begin() && (next - 1)->last == num - 1;
    const bool joinsNext = next != runs.end() && next->first == num + 1;
    if (joinsPrevious && joinsNext) {
        (next - 1)->last = next->last;
        runs.erase(next);
    } else if (joinsPrevious) {
        (next - 1)->last = num;
    } else if (joinsNext) {
        next->first = num;
    } else {
        runs.insert(next, Run{num, num});
    }
    return true;
}

Bool BaseSelect::Deselect(Int32 num)
{
    if (num < 0) return false;
    const auto found = firstEndingFrom(runs, num);
    if (found == runs.end() || found->first > num) return true;

    ++changes;
    --count;
    if (found->first == found->last) {
        runs.erase(found);
    } else if (found->first == num) {
        ++found->first;
    } else if (found->last == num) {
        --found->last;
    } else {
        const Run behind{num + 1, found->last};
        found->last = num - 1;
        runs.insert(found + 1, behind);
    }
    return true;
}

Bool BaseSelect::SelectAll(Int32 min, Int32 max)
{
    if (min < 0 || max < min || max > kLastElement) return false;
    SelectionRecord::Adopt(*this, {Run{min, max}});
    return true;
}

Bool BaseSelect::DeselectAll()
{
    SelectionRecord::Adopt(*this, {});
    return true;
}

Bool BaseSelect::IsSelected(Int32 num) const
{
    const auto found = firstEndingFrom(runs, num);
    return found != runs.end() && found->first <= num;
}

Bool BaseSelect::GetRange(Int32 segment, Int32 maxElements, Int32* a, Int32* b) const
{
    if (segment < 0 || segment >= GetSegments()) return false;
    const Run& run = runs[static_cast<size_t>(segment)];
    if (run.first >= maxElements) return false;
    *a = run.first;
    *b = LMin(run.last, maxElements - 1);
    return true;
}

Int32 BaseSelect::GetLastElement() const
{
    return runs.empty() ? NOTOK : runs.back().last;
}

Bool BaseSelect::CopyTo(BaseSelect* dest) const
{
    if (!dest) return false;
    if (dest != this) SelectionRecord::Adopt(*dest, runs);
    return true;
}

BaseSelect* BaseSelect::GetClone() const
{
    BaseSelect* clone = Alloc();
    if (clone) CopyTo(clone);
    return clone;
}

Bool BaseSelect::Merge(const BaseSelect* other)
{
    if (!other) return false;
    std::vector<Run> all(runs.size() + other->runs.size());
    std::merge(runs.begin(), runs.end(), other->runs.begin(), other->runs.end(), all.begin(),
               [](const Run& left, const Run& right) { return left.first < right.first; });
    SelectionRecord::Adopt(*this, all);
    return true;
}

Bool BaseSelect::Deselect(const BaseSelect* other)
{
    if (!other) return false;
    std::vector<Run> kept;
    auto cut = other->runs.begin();
    for (Run run : runs) {
        while (cut != other->runs.end() && cut->last < run.first) ++cut;
        // The last cut may reach into the next run, so it is not passed over.
        for (auto at = cut; at != other->runs.end() && at->first <= run.last && run.first <= run.last; ++at) {
            if (at->first > run.first) kept.push_back({run.first, at->first - 1});
            run.first = at->last + 1;
            cut = at;
        }
        if (run.first <= run.last) kept.push_back(run);
    }
    SelectionRecord::Adopt(*this, kept);
    return true;
}

Bool BaseSelect::Cross(const BaseSelect* other)
{
    if (!other) return false;
    std::vector<Run> common;
    auto mine = runs.begin();
    auto theirs = other->runs.begin();
    while (mine != runs.end() && theirs != other->runs.end()) {
        const Run overlap{LMax(mine->first, theirs->first), LMin(mine->last, theirs->last)};
        if (overlap.first <= overlap.last) common.push_back(overlap);
        if (mine->last < theirs->last)
            ++mine;
        else
            ++theirs;
    }
    SelectionRecord::Adopt(*this, common);
    return true;
}

Bool BaseSelect::Read(HyperFile* hf)
{
    void* memory = nullptr;
    Int size = 0;
    if (!hf || !hf->ReadMemory(&memory, &size)) return false;

    const std::span<const Run> stored(static_cast<const Run*>(memory), static_cast<size_t>(size) / sizeof(Run));
    const bool valid = static_cast<size_t>(size) % sizeof(Run) == 0 && SelectionRecord::Assign(*this, stored);
    DeleteMem(memory);
    return valid;
}

Bool BaseSelect::Write(HyperFile* hf) const
{
    return hf && hf->WriteMemory(runs.data(), static_cast<Int>(runs.size() * sizeof(Run)));
}
