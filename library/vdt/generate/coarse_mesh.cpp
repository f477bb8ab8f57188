#include "vdt/generate/coarse_mesh.h"

#include "vdt/generate/blob_surface.h"
#include "vdt/generate/plant_mesh.h"
#include "vdt/mesh/convex_hull.h"

#include <algorithm>

namespace vdt {
namespace {

constexpr ReductionParameters kCoarseBranches{.maxLevel = 2, .foliageAmount = 0, .foliageThinning = 0};
constexpr uint64_t kFewestHullPoints = 4;

void buildSquareTubes(const ModelVariant& variant, const Skeleton& skeleton, MeshOutputAccessor& output,
                      MessageHandler& messages)
{
    BuildBranchMesh(skeleton, variant.meshes, 0, false, output, messages);
}

} // namespace

std::vector<Vector3> ConnectorPositions(const Skeleton& skeleton)
{
    std::vector<Vector3> positions;
    positions.reserve(skeleton.connectors.size());
    for (const SkeletonConnector& connector : skeleton.connectors)
        if (connector.point < skeleton.points.size()) positions.push_back(skeleton.points[connector.point].position);
    return positions;
}

const Mesh* FindProxy(const ModelVariant& variant, std::string_view qualifier)
{
    const auto found = std::find_if(variant.proxies.begin(), variant.proxies.end(),
                                    [&](const ProxyMesh& proxy) { return proxy.qualifier == qualifier; });
    return found == variant.proxies.end() ? nullptr : &found->mesh;
}

void BuildHullMesh(const ModelVariant& variant, std::string_view season, MeshOutputAccessor& output,
                   MessageHandler& messages)
{
    Mesh hull;
    BuildConvexHull(ConnectorPositions(variant.skeleton), hull);
    Skeleton branches;
    if (variant.skeleton.connectors.size() < kFewestHullPoints)
        variant.skeleton.Reduce(variant.meshes, season, branches, kCoarseBranches);
    else
        variant.skeleton.CutAtHull(branches, hull);
    buildSquareTubes(variant, branches, output, messages);
    output.AppendMesh(hull, Matrix::Identity());
}

void BuildBlobMesh(const ModelVariant& variant, std::string_view season, const BlobOptions& options,
                   MeshOutputAccessor& output, MessageHandler& messages)
{
    Skeleton branches;
    variant.skeleton.Reduce(variant.meshes, season, branches, kCoarseBranches);
    buildSquareTubes(variant, branches, output, messages);
    Polygonize(ConnectorPositions(variant.skeleton), WyvillFieldFunction(options.radius), options.threshold, output);
}

} // namespace vdt
