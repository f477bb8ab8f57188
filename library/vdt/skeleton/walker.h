// The tree walk that every generator uses to visit a skeleton.
//
// A walk visits the tree of the first root alone, each vertex once. On a skeleton whose branches do not form a tree
// it ends after as many visits as there are vertices. A walker holds one stack entry for each open branch and reads
// the skeleton, which must outlive it and stay as it is.
#pragma once

#include "vdt/skeleton/skeleton.h"

#include <vector>

namespace vdt {

enum class WalkFilter {
    None = 0,
    SkipThinRuns = 1,  // runs of vertices with a radius under 1e-12 are passed over
    SkipDeadSides = 2, // a side branch whose attached vertex has a radius of 0 or less is not entered
};

class SkeletonWalker {
public:
    /// With `branchFirst` each branch is walked whole, then its side branches from the tip-most attachment back.
    /// Without, side branches are visited as the walk comes to the parent's vertex that they hang on.
    /// A new walker stands before the first vertex: advance() takes it there.
    SkeletonWalker(const Skeleton& skeleton, bool branchFirst, WalkFilter filter);

    /// Goes to the next vertex, from the end to the first one again. False at the end of the walk.
    bool advance();

    /// True before the first vertex and behind the last.
    bool atEnd() const { return stack.empty(); }
    /// The vertex visited now. Not at the end.
    const SkeletonVertex& vertex() const { return *stack.back().current; }
    /// How many branches are open: 1 on the trunk. Negative never.
    uint64_t depth() const { return stack.size(); }
    const Skeleton& skeleton() const { return *source; }

private:
    struct Entry {
        const SkeletonVertex* current;
        const SkeletonVertex* cursor;
    };

    void start();
    void step();
    void stepVertexByVertex();
    void stepBranchByBranch();

    const Skeleton* source;
    bool branchFirst;
    WalkFilter filter;
    uint64_t visitsLeft = 0;
    std::vector<Entry> stack;
};

} // namespace vdt
