// Copies branches into another skeleton, each from its root up to the vertex at which it is cut.
#pragma once

#include "vdt/skeleton/walker.h"

#include <vector>

namespace vdt {

/// Takes vertices of `uncut` in the order of a walk that goes branch by branch, and appends what is kept to `output`.
class BranchCut {
public:
    BranchCut(const Skeleton& uncut, Skeleton& output);

    /// Whether the vertex belongs to the kept part: not beyond a cut, and not on a side branch that hangs there.
    bool isKept(const SkeletonVertex& vertex, uint64_t depth);
    /// Keeps the vertex. With `cut` its branch ends here.
    void keep(const SkeletonVertex& vertex, uint64_t depth, bool cut);

private:
    // A branch whose vertices up to the place `last` are kept.
    struct Cut {
        uint64_t depth;
        uint64_t branch;
        uint64_t last;
    };

    void finishBranch(const SkeletonVertex& last);
    bool isOnKeptPart(const Cut& cut, uint64_t point);

    const Skeleton* source;
    Skeleton* target;
    std::vector<uint64_t> targetPoints; // for each point of the source its copy, kNone without one
    std::vector<uint64_t> branchPoints; // of the branch that is being copied
    std::vector<VertexAttributes> branchAttributes;
    std::vector<Cut> cuts;
    bool skipping = false; // beyond the cut on top

    // The points of the kept part of the cut on top, made when the first side branch there asks. No other cut needs
    // them: whatever is kept behind a cut makes an end of skipping.
    std::vector<uint64_t> markOfPoint;
    uint64_t mark = 0;
    bool isMarked = false;
};

/// Copies all branches of `source`, cut where `isCut(vertex, depth)` says so, to the empty `target`. Gives the number
/// of vertices kept, those of branches included that are left with a single one and dropped for it.
template <class IsCut> uint64_t CopyBranchesUntil(const Skeleton& source, Skeleton& target, const IsCut& isCut)
{
    uint64_t keptCount = 0;
    BranchCut copy(source, target);
    SkeletonWalker walker(source, true, WalkFilter::SkipDeadSides);
    while (walker.advance()) {
        const SkeletonVertex& vertex = walker.vertex();
        if (!copy.isKept(vertex, walker.depth())) continue;
        copy.keep(vertex, walker.depth(), isCut(vertex, walker.depth()));
        ++keptCount;
    }
    return keptCount;
}

} // namespace vdt
