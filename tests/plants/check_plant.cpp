#include "plants/check_plant.h"

#include "support/skeleton_builder.h"
#include "vdt/math/quaternion.h"
#include "vdt/skeleton/frames.h"
#include "vdt/skeleton/ring.h"
#include "vdt/skeleton/walker.h"

namespace vdt::test {
namespace {

// Empty if all is well with a vertex that is not its branch's first.
std::string faultOf(const Skeleton& skeleton, const SkeletonVertex& vertex, int barkTurns)
{
    const VertexAttributes& own = vertex.attributes;
    const VertexAttributes& before = vertex.prev->attributes;
    const double piece = Length(skeleton.points[vertex.point].position - skeleton.points[vertex.prev->point].position);
    if (piece < 0.01) return "stands on the vertex before";
    if (!(own.radius > 0) || own.radius > before.radius) return "is thicker than the vertex before";
    if (own.tex_v < before.tex_v) return "has bark that runs backwards";

    // Over a piece, v rises by its length in pictures of the bark; files keep three digits of it.
    const double turns = piece / (kPi * (own.radius + before.radius) * barkTurns);
    if (std::fabs(own.tex_v - before.tex_v - turns) > 0.002 + 0.01 * turns) return "has stretched bark";
    return {};
}

std::string faultOfFirst(const Skeleton& skeleton, const SkeletonVertex& first)
{
    const Vector3& position = skeleton.points[first.point].position;
    const SkeletonVertex* parent = nullptr;
    for (const SkeletonVertex& other : RingOthers(first))
        if (other.prev) parent = &other;
    if (!parent) return position == Vector3{0, 0, 0} ? "" : "is a root off the origin";
    return first.attributes.radius > parent->attributes.radius ? "is thicker than its parent" : "";
}

} // namespace

testing::AssertionResult CheckPlant(const Skeleton& skeleton, const std::map<int32_t, int>& barkTurns)
{
    const testing::AssertionResult links = CheckSkeleton(skeleton);
    if (!links) return links;
    std::vector<uint64_t> roots;
    skeleton.FindRoots(roots);
    if (roots.size() != 1) return testing::AssertionFailure() << roots.size() << " roots";

    uint64_t vertexCount = 0;
    for (uint64_t branch = 0; branch < skeleton.branches.size(); ++branch) {
        const SkeletonVertex* first = skeleton.branches[branch].firstVertex;
        if (skeleton.VertexCount(branch) < 2)
            return testing::AssertionFailure() << "branch " << branch << " has no length";
        vertexCount += skeleton.VertexCount(branch);
        std::string fault = faultOfFirst(skeleton, *first);
        for (const SkeletonVertex* vertex = first; vertex && fault.empty(); vertex = vertex->next) {
            if (vertex->prev) fault = faultOf(skeleton, *vertex, barkTurns.at(skeleton.branches[branch].matid));
            const Matrix frame = ToMatrix(vertex->attributes.orient, {0, 0, 0});
            if (Dot(frame.row(2), Normalized(VertexTangent(skeleton, *vertex))) < 0.999) fault = "looks off its branch";
        }
        if (!fault.empty()) return testing::AssertionFailure() << "branch " << branch << " " << fault;
    }

    uint64_t visits = 0;
    for (SkeletonWalker walker(skeleton, false, WalkFilter::SkipDeadSides); walker.advance(), !walker.atEnd();)
        ++visits;
    if (visits != vertexCount)
        return testing::AssertionFailure() << visits << " of " << vertexCount << " vertices hang together";

    for (const SkeletonPoint& point : skeleton.points) {
        if (!point.firstVertex) return testing::AssertionFailure() << "a point without a vertex";
        if (point.position.y < 0) return testing::AssertionFailure() << "a point below the ground";
    }
    return testing::AssertionSuccess();
}

} // namespace vdt::test
