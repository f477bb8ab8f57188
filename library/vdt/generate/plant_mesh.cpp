#include "vdt/generate/plant_mesh.h"

#include "vdt/generate/control_mesh.h"
#include "vdt/generate/foliage.h"
#include "vdt/mesh/subdivision.h"

#include <algorithm>

namespace vdt {
namespace {

bool isEmpty(const Mesh& mesh)
{
    return mesh.positions.empty() && mesh.normals.empty() && mesh.coordinates.empty() && mesh.polygonEnds.empty() &&
           mesh.polygonVertices.empty();
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
