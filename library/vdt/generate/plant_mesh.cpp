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
void subdivideBranches(const ModelVariant& variant, int32_t level, bool uniform, Mesh& output, MessageHandler& messages)
{
    Mesh controlMesh;
    std::vector<int32_t> polygonLevels;
    GenerateControlMesh({.skeleton = variant.skeleton,
                         .foliage = variant.meshes,
                         .output = controlMesh,
                         .subdivisionLevel = level,
                         .polygonLevels = polygonLevels,
                         .messages = messages});
    if (uniform) std::fill(polygonLevels.begin(), polygonLevels.end(), level);
    Subdivide(controlMesh, output, messages, polygonLevels);
}

void buildBranches(const ModelVariant& variant, int32_t level, bool uniform, MeshOutputAccessor& output,
                   MessageHandler& messages)
{
    if (level == 0) {
        std::vector<int32_t> polygonLevels;
        GenerateControlMesh({.skeleton = variant.skeleton,
                             .foliage = variant.meshes,
                             .output = output,
                             .polygonLevels = polygonLevels,
                             .messages = messages});
        return;
    }

    // An empty mesh of ours need not be appended to.
    Mesh* mesh = dynamic_cast<Mesh*>(&output);
    if (mesh && isEmpty(*mesh)) {
        subdivideBranches(variant, level, uniform, *mesh, messages);
        mesh->ComputeNormals();
        mesh->name.clear();
        return;
    }

    Mesh rounded;
    subdivideBranches(variant, level, uniform, rounded, messages);
    rounded.ComputeNormals();
    output.AppendMesh(rounded, Matrix::Identity());
}

} // namespace

void BuildPlantMesh(const ModelVariant& variant, const PlantMeshOptions& options, MeshOutputAccessor& output,
                    MessageHandler& messages)
{
    const int32_t level = std::max(0, options.subdivisionLevel);
    if (options.branches) buildBranches(variant, level, options.uniform, output, messages);
    if (options.foliage) PlaceFoliage(variant.skeleton, variant.meshes, options.season, output);
}

} // namespace vdt
