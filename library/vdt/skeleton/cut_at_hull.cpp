#include "vdt/memory/assert.h"
#include "vdt/mesh/convex_hull.h"
#include "vdt/skeleton/branch_cut.h"

namespace vdt {

uint64_t Skeleton::CutAtHull(Skeleton& target, const MeshInputAccessor& hull) const
{
    VDT_ASSERT(this != &target);
    target.Clear();
    const HullPlanes planes(hull);
    return CopyBranchesUntil(*this, target, [&](const SkeletonVertex& vertex, uint64_t) {
        return planes.contains(points[vertex.point].position);
    });
}

} // namespace vdt
