#include "host/scene_document.h"

#include "console/console.h"
#include "customgui_unitscale.h"
#include "ddoc.h"
#include "export/scene_materials.h"
#include "export/scene_mesh_builder.h"
#include "host/host_session.h"
#include "host/plant_object.h"
#include "lookup/open_plant.h"
#include "lookup/species.h"
#include "oplant.h"
#include "vdt/cache/cache.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

GeData parameterOf(BaseObject& object, const DescID& id)
{
    GeData value;
    object.GetParameter(id, value, DESCFLAGS_GET_0);
    return value;
}

std::string fileOf(BaseObject& plant)
{
    return Utf8Text(parameterOf(plant, DescID(PLANT_SELECTION, kSelectionFile)).GetFilename().GetString());
}

// The name of the entry that a cycle parameter stands on, as the attribute panel shows it.
std::string chosenEntry(BaseObject& plant, Int32 parameter)
{
    AutoAlloc<Description> description;
    if (!description || !plant.GetDescription(description, DESCFLAGS_DESC_0)) return {};
    BaseContainer* element = description->GetParameterI(DescLevel(parameter, DTYPE_LONG, 0), nullptr);
    const BaseContainer* cycle = element ? element->GetContainerInstance(DESC_CYCLE) : nullptr;
    return cycle ? Utf8Text(cycle->GetString(parameterOf(plant, parameter).GetInt32())) : std::string();
}

template <class Visit> void visitObjects(BaseObject* first, int depth, const Visit& visit)
{
    for (BaseObject* object = first; object; object = object->GetNext()) {
        visit(*object, depth);
        visitObjects(object->GetDown(), depth + 1, visit);
    }
}

// The host is left-handed: z runs the other way, for points and for the axes that they are counted along.
vdt::Matrix mirrored(const Matrix& m, double meters)
{
    const auto row = [](const Vector& v, double sign) { return vdt::Vector3{v.x * sign, v.y * sign, -v.z * sign}; };
    vdt::Matrix result = vdt::Matrix::Identity();
    result.setRow(0, row(m.v1, 1));
    result.setRow(1, row(m.v2, 1));
    result.setRow(2, row(m.v3, -1));
    result.setRow(3, row(m.off, 1) * meters);
    return result;
}

// The frame as a place for a copy; none if it does more than turn, move and scale evenly.
std::optional<Placement> placementOf(const vdt::Matrix& frame)
{
    constexpr double kTolerance = 1e-6;
    vdt::Matrix axes = vdt::Matrix::Identity();
    const double scale = vdt::Length(frame.row(0));
    if (!(scale > 0) || !std::isfinite(scale)) return std::nullopt;
    for (int i = 0; i < 3; ++i) {
        if (std::fabs(vdt::Length(frame.row(i)) - scale) > kTolerance * scale) return std::nullopt;
        axes.setRow(i, frame.row(i) / scale);
    }
    const bool isTurn = std::fabs(vdt::Dot(axes.row(0), axes.row(1))) < kTolerance &&
                        vdt::Length(vdt::Cross(axes.row(0), axes.row(1)) - axes.row(2)) < kTolerance;
    if (!isTurn) return std::nullopt;
    return Placement{frame.row(3), vdt::Normalized(vdt::ToQuaternion(axes)), scale};
}

// Turns one object after another into parts of a scene level.
class DocumentReader {
public:
    DocumentReader(BaseDocument& read, std::string libraryFolder, Scene& target, Console& messages)
        : document(&read),
          library(std::move(libraryFolder)),
          scene(&target),
          console(&messages),
          meters(MetersPerDocumentUnit(read))
    {
    }

    void add(BaseObject& object)
    {
        const bool isPlant = object.GetType() == kPlantObject;
        PolygonObject* mesh = object.GetType() == Opolygon ? static_cast<PolygonObject*>(&object) : BuiltMesh(object);
        if (!mesh || mesh->GetPolygonCount() == 0) {
            if (isPlant) console->warning("\"" + Utf8Text(object.GetName()) + "\" shows nothing: " + fileOf(object));
            return;
        }
        const vdt::Matrix frame = mirrored(mesh->GetMg(), meters);
        const std::optional<Placement> placement = placementOf(frame);
        if (placement && isPlant && addCopy(object, *placement)) return;

        SceneObject& added = scene->levels.back().foliage.emplace_back();
        SceneMaterials& used = materialsOf(object, isPlant);
        SceneMeshBuilder builder(added.mesh, meters, [&](int32_t matid) { return used.indexOf(matid); });
        WriteMesh(*mesh, placement ? Matrix() : mesh->GetMg(), builder);
        builder.finish();
        droppedPolygons += builder.droppedPolygons;
        added.mesh.name = Utf8Text(object.GetName());
        added.placements = {placement.value_or(Placement())};
        if (placement && isPlant) known.push_back({object.GetData(), scene->levels.back().foliage.size() - 1});
    }

    uint64_t droppedPolygons = 0;

private:
    struct KnownPlant {
        BaseContainer parameters;
        size_t object; // among the level's foliage
    };

    bool addCopy(BaseObject& plant, const Placement& placement)
    {
        if (plant.GetFirstTag()) return false; // tags may change its look
        const BaseContainer parameters = plant.GetData();
        for (const KnownPlant& other : known) {
            if (other.parameters != parameters) continue;
            scene->levels.back().foliage[other.object].placements.push_back(placement);
            return true;
        }
        return false;
    }

    // The model behind a plant; an empty one if it cannot be found, so that materials become grey.
    const vdt::Model& modelOf(const std::string& file)
    {
        const auto [entry, isNew] = handles.emplace(file, vdt::ModelHandle());
        if (isNew) {
            vdt::NullMessageHandler silence; // the module has told all that there is to tell
            entry->second = cache.acquire(resolved(file), silence, vdt::kNone);
        }
        return entry->second.model() ? *entry->second.model() : noModel;
    }

    // As the module looks for files: as it stands, in the document's folder, in the library.
    std::string resolved(const std::string& file) const
    {
        const fs::path path(file);
        const fs::path folder(Utf8Text(document->GetDocumentPath().GetString()));
        const std::string name = path.filename().string();
        const std::string base = name.substr(0, name.find('.'));
        for (const fs::path& candidate :
             {path, folder / path, fs::path(FindLibrary(library)) / base / name, folder / name}) {
            std::error_code ignored;
            if (fs::is_regular_file(candidate, ignored)) return candidate.generic_string();
        }
        return file;
    }

    SceneMaterials& materialsOf(BaseObject& object, bool isPlant)
    {
        const std::string file = isPlant ? fileOf(object) : std::string();
        std::string season;
        if (isPlant) season = seasonOf(object, modelOf(file));
        auto& kept = materials[{file, season}];
        if (!kept)
            kept =
                std::make_unique<SceneMaterials>(isPlant ? modelOf(file) : noModel, season, scene->materials, *console);
        return *kept;
    }

    static std::string seasonOf(BaseObject& plant, const vdt::Model& model)
    {
        const auto variant = static_cast<size_t>(parameterOf(plant, PLANT_VARIANT).GetInt32());
        const auto qualifier = static_cast<size_t>(parameterOf(plant, PLANT_QUALIFIER).GetInt32());
        if (variant >= model.variants.size() || qualifier >= model.variants[variant].qualifiers.size()) return {};
        return model.variants[variant].qualifiers[qualifier].name;
    }

    BaseDocument* document;
    std::string library;
    Scene* scene;
    Console* console;
    double meters;
    vdt::Model noModel;
    vdt::Cache cache{nullptr};
    std::map<std::string, vdt::ModelHandle> handles;                                          // by file
    std::map<std::pair<std::string, std::string>, std::unique_ptr<SceneMaterials>> materials; // by file and season
    std::vector<KnownPlant> known;
};

} // namespace

double MetersPerDocumentUnit(BaseDocument& document)
{
    GeData value;
    document.GetParameter(DOCUMENT_DOCUNIT, value, DESCFLAGS_GET_0);
    AutoAlloc<UnitScaleData> meter;
    meter->SetUnitScale(1, DOCUMENT_UNIT_M);
    return CalculateTranslationScale(
        static_cast<const UnitScaleData*>(value.GetCustomDataType(CUSTOMDATATYPE_UNITSCALE)), meter);
}

std::vector<SceneItem> DescribeDocument(BaseDocument& document)
{
    const double meters = MetersPerDocumentUnit(document);
    std::vector<SceneItem> items;
    visitObjects(document.GetFirstObject(), 0, [&](BaseObject& object, int depth) {
        SceneItem& item = items.emplace_back();
        item.name = Utf8Text(object.GetName());
        item.depth = depth;
        const Vector position = object.GetMg().off * meters;
        item.position = {position.x, position.y, -position.z};
        if (const PolygonObject* mesh = BuiltMesh(object)) {
            item.points = static_cast<uint64_t>(mesh->GetPointCount());
            item.polygons = static_cast<uint64_t>(mesh->GetPolygonCount());
        }
        item.plant = object.GetType() == kPlantObject;
        if (!item.plant) return;
        item.file = fileOf(object);
        item.variant = chosenEntry(object, PLANT_VARIANT);
        item.season = chosenEntry(object, PLANT_QUALIFIER);
        item.statistics = Utf8Text(parameterOf(object, PLANT_STATISTICS).GetString());
    });
    return items;
}

bool ReadDocument(BaseDocument& document, const std::string& libraryFolder, Scene& scene, Console& console)
{
    scene.levels.emplace_back();
    DocumentReader reader(document, libraryFolder, scene, console);
    visitObjects(document.GetFirstObject(), 0, [&](BaseObject& object, int) {
        if (!console.isCancelled()) reader.add(object);
    });
    if (console.isCancelled()) return false;
    TellOfDroppedPolygons(reader.droppedPolygons, console);
    if (!scene.levels.back().foliage.empty()) return true;
    console.error("the scene has nothing to show");
    return false;
}

} // namespace verdanth
