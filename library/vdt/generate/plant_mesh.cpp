#include "vdt/generate/plant_mesh.h"

#include "vdt/generate/control_mesh.h"
#include "vdt/generate/foliage.h"
#include "vdt/mesh/subdivision.h"

#include <algorithm>
#include <array>

namespace vdt {
namespace {

bool isEmpty(const Mesh& mesh)
{
    return mesh.positions.empty() && mesh.normals.empty() && mesh.coordinates.empty() && mesh.polygonEnds.empty() &&
           mesh.polygonVertices.empty();
}

// How many polygons quads of these levels become if none is refined more than `highest` times. Stops counting beyond
// what is allowed anyway.
uint64_t refinedCount(std::span<const uint64_t> countsOfLevels, size_t highest)
{
    uint64_t total = 0;
    for (size_t level = 0; level < countsOfLevels.size() && total <= kMostBranchPolygons; ++level)
        total += std::min(countsOfLevels[level], kMostBranchPolygons + 1) << (2 * std::min(level, highest));
    return total;
}

// Lowers the highest levels as far as it takes.
void limitLevels(std::vector<int32_t>& levels)
{
    constexpr int32_t kDeepest = 13; // a single quad gives as many as are allowed
    std::array<uint64_t, kDeepest + 1> counts{};
    for (int32_t& level : levels) {
        level = std::clamp(level, 0, kDeepest);
        ++counts[static_cast<size_t>(level)];
    }
    int32_t highest = kDeepest;
    while (highest > 0 && refinedCount(counts, static_cast<size_t>(highest)) > kMostBranchPolygons) --highest;
    for (int32_t& level : levels) level = std::min(level, highest);
}

// The control mesh goes at the end, so that it is out of the way before the foliage takes its room.
void subdivideBranches(const Skeleton& skeleton, std::span<const VariantMesh> foliage, int32_t level, bool uniform,
                       Mesh& output, MessageHandler& messages)
{
    Mesh controlMesh;
    std::vector<int32_t> polygonLevels;
    GenerateControlMesh({.skeleton = skeleton,
                         .foliage = foliage,
                         .output = controlMesh,
                         .subdivisionLevel = level,
                         .polygonLevels = polygonLevels,
                         .messages = messages});
    if (uniform) std::fill(polygonLevels.begin(), polygonLevels.end(), level);
    limitLevels(polygonLevels);
    Subdivide(controlMesh, output, messages, polygonLevels);
}

} // namespace

void BuildBranchMesh(const Skeleton& skeleton, std::span<const VariantMesh> foliage, int32_t subdivisionLevel,
                     bool uniform, MeshOutputAccessor& output, MessageHandler& messages)
{
    if (subdivisionLevel <= 0) {
        std::vector<int32_t> polygonLevels;
        GenerateControlMesh({.skeleton = skeleton,
                             .foliage = foliage,
                             .output = output,
                             .polygonLevels = polygonLevels,
                             .messages = messages});
        return;
    }

    // An empty mesh of ours need not be appended to.
    Mesh* mesh = dynamic_cast<Mesh*>(&output);
    if (mesh && isEmpty(*mesh)) {
        subdivideBranches(skeleton, foliage, subdivisionLevel, uniform, *mesh, messages);
        mesh->ComputeNormals();
        mesh->name.clear();
        return;
    }

    Mesh rounded;
    subdivideBranches(skeleton, foliage, subdivisionLevel, uniform, rounded, messages);
    rounded.ComputeNormals();
    output.AppendMesh(rounded, Matrix::Identity());
}

void BuildPlantMesh(const ModelVariant& variant, const PlantMeshOptions& options, MeshOutputAccessor& output,
                    MessageHandler& messages)
{
    Skeleton room;
    const Skeleton& skeleton =
        ReducedSkeleton(variant.skeleton, variant.meshes, options.season, options.reduction, room);
    BuildBranchMesh(skeleton, variant.meshes, options.subdivisionLevel, options.uniform, output, messages);
    PlaceFoliage(skeleton, variant.meshes, options.season, output);
}

} // namespace vdt
