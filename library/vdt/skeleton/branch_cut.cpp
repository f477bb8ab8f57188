#include "vdt/skeleton/branch_cut.h"

namespace vdt {

BranchCut::BranchCut(const Skeleton& uncut, Skeleton& output)
    : source(&uncut),
      target(&output),
      targetPoints(uncut.points.size(), kNone)
{
}

bool BranchCut::isKept(const SkeletonVertex& vertex, uint64_t depth)
{
    while (!cuts.empty() && cuts.back().depth > depth) {
        cuts.pop_back();
        skipping = false;
    }
    if (!skipping) return true;
    if (vertex.prev) return false;

    const Cut& cut = cuts.back();
    if (depth == cut.depth) return vertex.branch != cut.branch;
    return depth == cut.depth + 1 && isOnKeptPart(cut, vertex.point);
}

void BranchCut::keep(const SkeletonVertex& vertex, uint64_t depth, bool cut)
{
    uint64_t& point = targetPoints[vertex.point];
    if (point == kNone) point = target->AddPoint(source->points[vertex.point]);
    branchPoints.push_back(point);
    branchAttributes.push_back(vertex.attributes);

    if (cut) {
        uint64_t place = 0;
        for (const SkeletonVertex* before = vertex.prev; before; before = before->prev) ++place;
        cuts.push_back({depth, vertex.branch, place});
        isMarked = false;
    }
    if (cut || !vertex.next) finishBranch(vertex);
    skipping = cut;
}

void BranchCut::finishBranch(const SkeletonVertex& last)
{
    target->AddBranch(source->branches[last.branch].matid, branchPoints, branchAttributes);
    branchPoints.clear();
    branchAttributes.clear();
}

bool BranchCut::isOnKeptPart(const Cut& cut, uint64_t point)
{
    if (!isMarked) {
        if (markOfPoint.empty()) markOfPoint.resize(source->points.size());
        ++mark;
        const SkeletonVertex* vertex = source->branches[cut.branch].firstVertex;
        for (uint64_t place = 0; place <= cut.last; ++place, vertex = vertex->next) markOfPoint[vertex->point] = mark;
        isMarked = true;
    }
    return markOfPoint[point] == mark;
}

} // namespace vdt
