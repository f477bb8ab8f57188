// The tree walk that every generator uses to visit a skeleton.
//
// A walk visits the tree of the first root alone, each vertex once. On a skeleton whose branches do not form a tree
// it ends after as many visits as there are vertices, or earlier. A walker holds one stack entry for each open branch
// and reads the skeleton, which must outlive it; links and radii must stay as they are until the walk has ended.
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
    /// How many branches are open: 1 on the trunk.
    uint64_t depth() const { return stack.size(); }
    const Skeleton& skeleton() const { return *source; }

private:
    // An open branch. The cursor is the vertex on the current point from which side branches are still to be walked,
    // null on a branch's first vertex; with branchFirst, the current vertex's successor once the branch has been
    // walked from there on.
    struct Entry {
        const SkeletonVertex* current;
        const SkeletonVertex* cursor;
    };

    // These take the stack to another vertex and tell whether that one is to be passed over.
    bool start();
    bool step();
    bool stepVertexByVertex();
    bool stepBranchByBranch();

    bool countVisit();
    bool countDetour();
    bool isDeadSide(const SkeletonVertex& side) const;
    bool beginsThinRun(const SkeletonVertex& vertex) const;
    bool goesOnThin(const SkeletonVertex& vertex, const SkeletonVertex& next) const;

    const Skeleton* source;
    bool wholeBranches;
    WalkFilter skipped;
    uint64_t visitsLeft = 0;
    uint64_t detoursLeft = 0;
    std::vector<Entry> stack;
};

} // namespace vdt
