#include "vdt/skeleton/walker.h"

#include "vdt/memory/prefetch.h"
#include "vdt/skeleton/ring.h"

#include <algorithm>

namespace vdt {
namespace {

constexpr double kThinRadius = 1e-12; // model units

bool isThin(const SkeletonVertex& vertex)
{
    return vertex.attributes.radius < kThinRadius;
}

} // namespace

SkeletonWalker::SkeletonWalker(const Skeleton& skeleton, bool branchFirst, WalkFilter filter)
    : source(&skeleton),
      wholeBranches(branchFirst),
      skipped(filter)
{
}

bool SkeletonWalker::advance()
{
    bool passOver = stack.empty() ? start() : step();
    while (countVisit() && passOver) passOver = step();
    return !stack.empty();
}

bool SkeletonWalker::start()
{
    const auto root = std::find_if(source->points.begin(), source->points.end(), IsRoot);
    if (root == source->points.end()) return false;

    visitsLeft = 0;
    for (const SkeletonBranch& branch : source->branches) visitsLeft += branch.vertexCount;
    detoursLeft = visitsLeft;

    stack.push_back({root->firstVertex, nullptr});
    return beginsThinRun(*root->firstVertex);
}

// In a tree each vertex is visited once at most.
bool SkeletonWalker::countVisit()
{
    if (stack.empty()) return false;
    if (visitsLeft-- > 0) return true;
    stack.clear();
    return false;
}

// In a tree each vertex is passed once at most while the next one to visit is looked for.
bool SkeletonWalker::countDetour()
{
    if (detoursLeft-- > 0) return true;
    stack.clear();
    return false;
}

bool SkeletonWalker::isDeadSide(const SkeletonVertex& side) const
{
    return skipped == WalkFilter::SkipDeadSides && side.attributes.radius <= 0;
}

bool SkeletonWalker::beginsThinRun(const SkeletonVertex& vertex) const
{
    return vertex.next && goesOnThin(vertex, *vertex.next);
}

bool SkeletonWalker::goesOnThin(const SkeletonVertex& vertex, const SkeletonVertex& next) const
{
    return skipped == WalkFilter::SkipThinRuns && isThin(vertex) && isThin(next);
}

bool SkeletonWalker::step()
{
    return wholeBranches ? stepBranchByBranch() : stepVertexByVertex();
}

bool SkeletonWalker::stepVertexByVertex()
{
    while (true) {
        Entry& top = stack.back();
        const SkeletonVertex& current = *top.current;
        if (current.branch >= source->branches.size()) return false;

        // Side branches first, each from its vertex on this point.
        while (top.cursor && top.cursor != &current && isDeadSide(*top.cursor)) {
            top.cursor = top.cursor->ring;
            if (!countDetour()) return false;
        }
        if (top.cursor && top.cursor != &current) {
            const SkeletonVertex& side = *top.cursor;
            stack.push_back({&side, nullptr});
            return beginsThinRun(side);
        }

        if (current.next) {
            const SkeletonVertex& next = *current.next;
            top = {&next, next.ring};

            // Side branches lie anywhere in memory, so what the next steps look at is brought near.
            if (next.next && next.next->ring) Prefetch(*next.next->ring);
            if (next.ring && next.ring->next) Prefetch(source->points[next.ring->next->point]);
            return goesOnThin(current, next);
        }

        stack.pop_back();
        if (stack.empty()) return false;
        SkeletonVertex const*& cursor = stack.back().cursor;
        if (cursor) cursor = cursor->ring;
    }
}

bool SkeletonWalker::stepBranchByBranch()
{
    while (true) {
        Entry& top = stack.back();
        const SkeletonVertex& current = *top.current;
        if (current.branch >= source->branches.size()) return false;

        if (current.next && top.cursor != current.next) {
            top = {current.next, current.next};
            return goesOnThin(current, *current.next);
        }

        // The branch is walked: look for its next attachment towards the root.
        const SkeletonVertex* back = &current;
        while (!back->ring && back->prev) {
            back = back->prev;
            if (!countDetour()) return false;
        }
        if (!back->ring) {
            stack.pop_back();
            return false;
        }
        if (!back->prev) {
            stack.pop_back();
            if (stack.empty()) return false;
        }

        Entry& parent = stack.back();
        if (back->ring != parent.current) {
            if (back->prev) parent = {back, back->next};
            stack.push_back({back->ring, nullptr});
            return skipped == WalkFilter::SkipThinRuns && isThin(*back->ring);
        }

        // All side branches on this point are walked.
        parent = {parent.current->prev, parent.current};
        if (!countDetour()) return false;
    }
}

} // namespace vdt
