#include "export/scene_builder.h"

#include "console/text_table.h"
#include "export/coarse_level.h"
#include "export/scene_materials.h"
#include "export/scene_mesh_builder.h"
#include "lookup/open_plant.h"
#include "vdt/generate/plant_mesh.h"

#include <algorithm>
#include <cmath>

namespace verdanth {
namespace {

bool isUsable(const Placement& placement, double reach)
{
    // Beyond these a float could no longer hold a corner, or the scale.
    constexpr double kFarthest = 1e30;
    constexpr double kSmallest = 1e-30;
    const auto inRange = [&](double value) { return std::fabs(value) < kFarthest; };
    const vdt::Vector3& t = placement.translation;
    const vdt::Quaternion& q = placement.rotation;
    const double norm = static_cast<double>(q.x) * q.x + static_cast<double>(q.y) * q.y +
                        static_cast<double>(q.z) * q.z + static_cast<double>(q.w) * q.w;
    return inRange(t.x) && inRange(t.y) && inRange(t.z) && inRange(placement.scale) &&
           inRange(placement.scale * reach) && std::fabs(placement.scale) > kSmallest && std::fabs(norm - 1) < 1e-3;
}

Placement placementOf(const vdt::Skeleton& skeleton, const vdt::SkeletonConnector& connector, double metersPerUnit)
{
    // A quaternion too short to be brought to unit length turns nothing.
    constexpr double kShortest = 1e-6;
    vdt::Quaternion rotation = vdt::Normalized(connector.attributes.orient);
    const auto isSmall = [](float component) { return std::fabs(component) < kShortest; };
    if (isSmall(rotation.x) && isSmall(rotation.y) && isSmall(rotation.z) && isSmall(rotation.w)) rotation = {};
    return {skeleton.points[connector.point].position * metersPerUnit, rotation, connector.attributes.scale};
}

double reachOf(const SceneMesh& mesh)
{
    double reach = 0;
    for (const Float3& p : mesh.points)
        for (const float component : {p.x, p.y, p.z})
            if (std::isfinite(component)) reach = std::max(reach, std::fabs(static_cast<double>(component)));
    return reach;
}

// Builds one level of the full plant after another.
class FullPlantBuilder {
public:
    FullPlantBuilder(const SceneRequest& wanted, SceneMaterials& sceneMaterials, vdt::MessageHandler& handler)
        : request(&wanted),
          materials(&sceneMaterials),
          messages(&handler),
          metersPerUnit(MetersPerUnit(wanted.model.unit))
    {
    }

    SceneLevel build(const PlantDetail& detail)
    {
        const vdt::ModelVariant& variant = request->variant;
        vdt::Skeleton room;
        const vdt::Skeleton& skeleton =
            vdt::ReducedSkeleton(variant.skeleton, variant.meshes, request->season, detail.reduction, room);
        SceneLevel level;
        level.body = bodyOf(skeleton, detail.subdivisionLevel);
        for (const vdt::VariantMesh& record : variant.meshes) {
            if (messages->isCancelled()) break;
            if (!record.mesh || !record.appliesTo(request->season)) continue;
            SceneObject object = foliageOf(record, skeleton);
            if (!object.mesh.polygonEnds.empty() && !object.placements.empty())
                level.foliage.push_back(std::move(object));
        }
        return level;
    }

    uint64_t droppedPolygons = 0;

private:
    SceneMeshBuilder meshBuilder(SceneMesh& mesh)
    {
        return {mesh, metersPerUnit, [this](int32_t matid) { return materials->indexOf(matid); }};
    }

    SceneObject bodyOf(const vdt::Skeleton& skeleton, int32_t subdivisionLevel)
    {
        SceneObject body;
        SceneMeshBuilder builder = meshBuilder(body.mesh);
        vdt::BuildBranchMesh(skeleton, request->variant.meshes, subdivisionLevel, request->uniform, builder, *messages);
        builder.finish();
        droppedPolygons += builder.droppedPolygons;
        body.mesh.name = "branches";
        body.placements = {Placement()};
        return body;
    }

    SceneObject foliageOf(const vdt::VariantMesh& record, const vdt::Skeleton& skeleton)
    {
        SceneObject object;
        SceneMeshBuilder leaf = meshBuilder(object.mesh);
        leaf.AppendMesh(*record.mesh, vdt::Matrix::Identity());
        leaf.finish();
        droppedPolygons += leaf.droppedPolygons;
        object.mesh.name = record.mesh->name.empty() ? Numbered("foliage", record.group) : record.mesh->name;
        const double reach = reachOf(object.mesh);
        for (const vdt::SkeletonConnector& connector : skeleton.connectors) {
            if (connector.attributes.group != record.group || connector.point >= skeleton.points.size()) continue;
            const Placement placement = placementOf(skeleton, connector, metersPerUnit);
            if (isUsable(placement, reach)) object.placements.push_back(placement);
        }
        return object;
    }

    const SceneRequest* request;
    SceneMaterials* materials;
    vdt::MessageHandler* messages;
    double metersPerUnit;
};

bool isEmpty(const SceneLevel& level)
{
    return level.body.mesh.polygonEnds.empty() && level.foliage.empty() && level.cloud.isEmpty();
}

} // namespace

vdt::Matrix Placement::matrix() const
{
    vdt::Matrix result = vdt::ToMatrix(rotation, translation);
    for (int row = 0; row < 3; ++row) result.setRow(row, result.row(row) * scale);
    return result;
}

std::vector<std::string> SceneMaterial::textures() const
{
    std::vector<std::string> paths = SceneSide::textures();
    paths.insert(paths.end(), {alphaTexture, transmissionTexture});
    if (!back) return paths;
    for (std::string& path : back->textures()) paths.push_back(std::move(path));
    return paths;
}

std::string LevelSuffix(const Scene& scene, size_t level)
{
    return scene.levels.size() > 1 ? "_LOD" + std::to_string(level) : std::string();
}

void NameScene(const SceneRequest& request, Scene& scene)
{
    scene.name = request.model.name.empty() ? "plant" : request.model.name;
    scene.variant = request.variant.name;
    scene.season = request.season;
}

bool FinishScene(const Scene& scene, uint64_t dropped, vdt::MessageHandler& messages)
{
    TellOfDroppedPolygons(dropped, messages);
    if (std::none_of(scene.levels.begin(), scene.levels.end(), isEmpty)) return true;
    messages.error("the variant has nothing to show: neither branches nor foliage");
    return false;
}

bool BuildScene(const SceneRequest& request, Scene& scene, vdt::MessageHandler& messages)
{
    NameScene(request, scene);
    SceneMaterials materials(request.model, request.season, scene.materials, messages, request.quality);
    uint64_t dropped = 0;
    messages.beginProgress("building the plant");
    if (request.form == PlantForm::Full) {
        FullPlantBuilder builder(request, materials, messages);
        for (const PlantDetail& detail : request.details) scene.levels.push_back(builder.build(detail));
        dropped = builder.droppedPolygons;
    } else {
        scene.levels.push_back(BuildCoarseLevel(request, materials, dropped, messages));
    }
    messages.endProgress();
    return !messages.isCancelled() && FinishScene(scene, dropped, messages);
}

} // namespace verdanth
