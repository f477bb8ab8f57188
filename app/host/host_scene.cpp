#include "host/host_scene.h"

#include "console/console.h"
#include "export/coarse_level.h"
#include "export/scene_materials.h"
#include "export/scene_mesh_builder.h"
#include "host/host_session.h"
#include "lookup/open_plant.h"
#include "vdt/generate/foliage.h"

#include <algorithm>
#include <map>

namespace verdanth {
namespace {

PlantDisplay displayOf(PlantForm form)
{
    switch (form) {
    case PlantForm::Proxy: return PlantDisplay::Proxy;
    case PlantForm::Box: return PlantDisplay::Box;
    default: return PlantDisplay::Full;
    }
}

uint64_t qualifierOf(const SceneRequest& request)
{
    const std::vector<vdt::Qualifier>& all = request.variant.qualifiers;
    const auto isShown = [&](const vdt::Qualifier& qualifier) { return qualifier.name == request.season; };
    return static_cast<uint64_t>(std::find_if(all.begin(), all.end(), isShown) - all.begin());
}

DOCUMENT_UNIT unitOf(const vdt::Model& model)
{
    switch (model.unit) {
    case vdt::kMillimeters: return DOCUMENT_UNIT_MM;
    case vdt::kMeters: return DOCUMENT_UNIT_M;
    default: return DOCUMENT_UNIT_CM;
    }
}

constexpr double kSameUnit = 1;

// Two opposite corners of a bounding box are all that the module makes of it.
vdt::Box boxOf(PolygonObject& corners)
{
    vdt::Box box;
    for (Int32 i = 0; i < corners.GetPointCount(); ++i) {
        const Vector& p = corners.GetPointR()[i];
        box.extend(vdt::Vector3{p.x, p.y, -p.z});
    }
    return box;
}

} // namespace

PlantSettings SettingsOf(const SceneRequest& request, const std::string& file)
{
    return {.file = file,
            .variant = static_cast<uint64_t>(&request.variant - request.model.variants.data()),
            .qualifier = qualifierOf(request),
            .subdivisionLevel = request.details.front().subdivisionLevel,
            .uniform = request.uniform,
            .reduction = request.details.front().reduction,
            .display = displayOf(request.form)};
}

bool IsBuiltByModule(const SceneRequest& request)
{
    return request.form == PlantForm::Full || request.form == PlantForm::Proxy || request.form == PlantForm::Box;
}

uint64_t CountFoliagePolygons(const SceneRequest& request)
{
    std::map<int32_t, uint64_t> connectorsOfGroup;
    for (const vdt::SkeletonConnector& connector : request.variant.skeleton.connectors)
        ++connectorsOfGroup[connector.attributes.group];
    uint64_t polygons = 0;
    for (const vdt::VariantMesh& record : request.variant.meshes)
        if (vdt::IsShown(record, request.season))
            polygons += connectorsOfGroup[record.group] * record.mesh->PolygonCount();
    return polygons;
}

bool PlantInHost::start(const SceneRequest& request, const std::string& file, const std::string& libraryFolder,
                        Console& console)
{
    if (!session.start(libraryFolder, console)) return false;
    // In the model's own unit nothing is rounded on the way there and back.
    document = std::make_unique<OwnDocument>(unitOf(request.model));
    settings = SettingsOf(request, file);
    plant = *document ? AddPlant(*document->get(), settings, kSameUnit) : nullptr;
    if (!plant) console.error("the module makes no plant object");
    return plant != nullptr;
}

PolygonObject* PlantInHost::build(const PlantDetail& detail)
{
    settings.subdivisionLevel = detail.subdivisionLevel;
    settings.reduction = detail.reduction;
    if (!SetDetail(*plant, settings, kSameUnit) || !Evaluate(*document->get())) return nullptr;
    return BuiltMesh(*plant);
}

bool BuildSceneInHost(const SceneRequest& request, const std::string& file, const std::string& libraryFolder,
                      Scene& scene, Console& console)
{
    NameScene(request, scene);
    PlantInHost plant;
    if (!plant.start(request, file, libraryFolder, console)) return false;
    if (request.form != PlantForm::Full && request.details.front() != PlantDetail())
        console.warning("only the full plant is reduced and rounded; its lighter forms are made of all of it");

    SceneMaterials materials(request.model, request.season, scene.materials, console, request.quality);
    const double meters = MetersPerUnit(request.model.unit);
    uint64_t dropped = 0;
    console.beginProgress("building the plant");
    for (const PlantDetail& detail : request.details) {
        SceneLevel& level = scene.levels.emplace_back();
        level.body.mesh.name = "plant";
        level.body.placements = {Placement()};
        SceneMeshBuilder builder(level.body.mesh, meters, [&](int32_t matid) { return materials.indexOf(matid); });
        PolygonObject* built = console.isCancelled() ? nullptr : plant.build(detail);
        if (built && request.form == PlantForm::Box)
            WriteBox(boxOf(*built), builder);
        else if (built)
            WriteMesh(*built, Matrix(), builder);
        builder.finish();
        dropped += builder.droppedPolygons;
    }
    console.endProgress();
    return !console.isCancelled() && FinishScene(scene, dropped, console);
}

} // namespace verdanth
