// Reduce and CutAtHull in the plainest form, with an ordered map and lists that are searched: the judge of the fast
// one.
#pragma once

#include "vdt/skeleton/walker.h"

#include <map>
#include <vector>

namespace vdt::test {

struct LiteralCut {
    uint64_t depth;
    uint64_t branch;
    uint64_t kept;
};

inline bool isAmongFirstPoints(const Skeleton& skeleton, const LiteralCut& cut, uint64_t point)
{
    const SkeletonVertex* vertex = skeleton.branches[cut.branch].firstVertex;
    for (uint64_t i = 0; i <= cut.kept && vertex; ++i, vertex = vertex->next)
        if (vertex->point == point) return true;
    return false;
}

/// The branches alone. `stops(vertex, depth)` says where they end. Gives the number of vertices kept.
template <class Stops> uint64_t LiteralReduceBranches(const Skeleton& source, Skeleton& target, const Stops& stops)
{
    std::map<uint64_t, uint64_t> targetPoints;
    std::vector<uint64_t> keptPoints;
    std::vector<VertexAttributes> keptAttributes;
    std::vector<LiteralCut> cuts;
    bool skipping = false;
    uint64_t count = 0;

    target.Clear();
    SkeletonWalker walker(source, true, WalkFilter::SkipDeadSides);
    while (walker.advance()) {
        const SkeletonVertex& vertex = walker.vertex();
        const uint64_t depth = walker.depth();
        while (!cuts.empty() && cuts.back().depth > depth) {
            cuts.pop_back();
            skipping = false;
        }
        if (skipping) {
            if (vertex.prev) continue;
            const LiteralCut& top = cuts.back();
            if (depth == top.depth && vertex.branch == top.branch) continue;
            if (depth > top.depth + 1) continue;
            if (depth == top.depth + 1 && !isAmongFirstPoints(source, top, vertex.point)) continue;
        }

        if (!targetPoints.count(vertex.point))
            targetPoints[vertex.point] = target.AddPoint(source.points[vertex.point]);
        keptPoints.push_back(targetPoints[vertex.point]);
        keptAttributes.push_back(vertex.attributes);
        ++count;
        const bool stop = stops(vertex, depth);
        if (!vertex.next || stop) {
            if (keptPoints.size() >= 2)
                target.AddBranch(source.branches[vertex.branch].matid, keptPoints, keptAttributes);
            keptPoints.clear();
            keptAttributes.clear();
            uint64_t before = 0;
            for (const SkeletonVertex* v = vertex.prev; v; v = v->prev) ++before;
            if (stop) cuts.push_back({depth, vertex.branch, before});
        }
        skipping = stop;
    }
    return count;
}

} // namespace vdt::test
