#include "export/scene_builder.h"

#include "console/text_table.h"
#include "export/picture.h"
#include "export/scene_mesh_builder.h"
#include "lookup/open_plant.h"
#include "vdt/generate/plant_mesh.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace verdanth {
namespace {

// Collects the materials in use, each read from the model when it is first asked for.
class SceneMaterials {
public:
    SceneMaterials(const vdt::Model& source, std::vector<SceneMaterial>& target, vdt::MessageHandler& handler)
        : model(&source),
          materials(&target),
          messages(&handler)
    {
    }

    uint32_t indexOf(int32_t matid)
    {
        if (matid == lastId && !indices.empty()) return lastIndex;
        const auto [entry, isNew] = indices.emplace(matid, static_cast<uint32_t>(materials->size()));
        if (isNew) materials->push_back(convert(matid));
        lastId = matid;
        return lastIndex = entry->second;
    }

private:
    SceneMaterial convert(int32_t matid)
    {
        SceneMaterial material;
        material.matid = matid;
        material.name = Numbered("material", matid);
        const auto hasId = [matid](const vdt::MaterialData& data) { return data.matid == matid; };
        const auto found = std::find_if(model->materials.begin(), model->materials.end(), hasId);
        if (found == model->materials.end()) {
            messages->warning("there is no " + material.name + "; what uses it becomes grey");
            material.color = vdt::MaterialSide().diffuseColor;
            return material;
        }

        const vdt::MaterialSide& front = found->front;
        if (!found->name.empty()) material.name = found->name;
        material.color = clamped(front.diffuseColor);
        material.colorTexture = usable(front.diffuseTexture);
        material.alphaTexture = usable(found->alphaTexture);
        material.normalTexture = usable(front.normalTexture);
        material.bumpTexture = usable(front.bumpTexture);
        material.bumpStrength = std::isfinite(front.bumpStrength) ? front.bumpStrength : 0;
        material.specularColor = clamped(front.specularColor);
        material.specularTexture = usable(front.specularTexture);
        material.roughness = roughnessOf(front);
        material.twoSided = found->back() != nullptr;
        if (found->hasSeparateBack() && *found->back() != front)
            messages->message("material \"" + material.name + "\": its back looks like its front in the export");
        return material;
    }

    // The path if the picture can be used; else empty, with a warning the first time.
    std::string usable(const std::string& path)
    {
        if (path.empty()) return {};
        const auto [entry, isNew] = usablePictures.emplace(path, false);
        if (isNew) {
            std::string problem;
            entry->second = ProbePicture(path, problem).has_value();
            if (!entry->second) messages->warning("texture " + path + " " + problem + "; its colour is used instead");
        }
        return entry->second ? path : std::string();
    }

    static float unitRange(float value) { return value >= 0 ? std::min(value, 1.0F) : 0; }

    static vdt::Color3f clamped(const vdt::Color3f& color)
    {
        return {unitRange(color.r), unitRange(color.g), unitRange(color.b)};
    }

    // A highlight is as strong as its colour and as narrow as its roughness says; without one the surface is matt.
    static float roughnessOf(const vdt::MaterialSide& side)
    {
        const vdt::Color3f color = clamped(side.specularColor);
        const float strength = side.specularTexture.empty() ? std::max({color.r, color.g, color.b}) : 1;
        return 1 - strength * (1 - unitRange(side.specularRoughness));
    }

    const vdt::Model* model;
    std::vector<SceneMaterial>* materials;
    vdt::MessageHandler* messages;
    std::map<int32_t, uint32_t> indices;
    std::map<std::string, bool> usablePictures;
    int32_t lastId = 0;
    uint32_t lastIndex = 0;
};

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

} // namespace

vdt::Matrix Placement::matrix() const
{
    vdt::Matrix result = vdt::ToMatrix(rotation, translation);
    for (int row = 0; row < 3; ++row) result.setRow(row, result.row(row) * scale);
    return result;
}

bool BuildScene(const SceneRequest& request, Scene& scene, vdt::MessageHandler& messages)
{
    const double meters = MetersPerUnit(request.model.unit);
    SceneMaterials materials(request.model, scene.materials, messages);
    const auto materialIndex = [&](int32_t matid) { return materials.indexOf(matid); };
    scene.name = request.model.name.empty() ? "plant" : request.model.name;
    scene.variant = request.variant.name;
    scene.season = request.season;

    uint64_t dropped = 0;
    messages.beginProgress("building the plant");
    SceneMeshBuilder body(scene.body.mesh, meters, materialIndex);
    vdt::Skeleton room;
    const vdt::Skeleton& skeleton =
        vdt::ReducedSkeleton(request.variant.skeleton, request.variant.meshes, request.season, request.reduction, room);
    vdt::BuildBranchMesh(skeleton, request.variant.meshes, request.subdivisionLevel, request.uniform, body, messages);
    body.finish();
    scene.body.mesh.name = "branches";
    scene.body.placements = {Placement()};
    dropped += body.droppedPolygons;

    for (const vdt::VariantMesh& record : request.variant.meshes) {
        if (messages.isCancelled()) break;
        if (!record.mesh || !record.appliesTo(request.season)) continue;
        SceneObject object;
        SceneMeshBuilder leaf(object.mesh, meters, materialIndex);
        leaf.AppendMesh(*record.mesh, vdt::Matrix::Identity());
        leaf.finish();
        object.mesh.name = record.mesh->name.empty() ? Numbered("foliage", record.group) : record.mesh->name;
        dropped += leaf.droppedPolygons;
        const double reach = reachOf(object.mesh);
        for (const vdt::SkeletonConnector& connector : skeleton.connectors) {
            if (connector.attributes.group != record.group || connector.point >= skeleton.points.size()) continue;
            const Placement placement = placementOf(skeleton, connector, meters);
            if (isUsable(placement, reach)) object.placements.push_back(placement);
        }
        if (!object.mesh.polygonEnds.empty() && !object.placements.empty()) scene.foliage.push_back(std::move(object));
    }
    messages.endProgress();
    if (messages.isCancelled()) return false;

    if (dropped > 0)
        messages.warning(std::to_string(dropped) + " polygons are left out: their corners are not at finite positions");
    if (!scene.body.mesh.polygonEnds.empty() || !scene.foliage.empty()) return true;
    messages.error("the variant has nothing to show: neither branches nor foliage");
    return false;
}

} // namespace verdanth
