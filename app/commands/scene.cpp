#include "commands/command.h"
#include "commands/material_options.h"
#include "commands/plant_options.h"
#include "console/json_text.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/export_scene.h"
#include "files/input_file.h"
#include "host/host_scene.h"
#include "host/host_session.h"
#include "host/plant_object.h"
#include "host/scene_document.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

Filename filenameOf(const std::string& path)
{
    return Filename(HostText(fs::absolute(path).lexically_normal().generic_string()));
}

// A started host with the scene of a file in it. Without a document the error has been told.
struct OpenScene {
    HostSession session;
    std::unique_ptr<OwnDocument> document;
};

bool openScene(const std::string& path, const std::string& library, OpenScene& scene, Console& console)
{
    console.setSubject(path);
    const std::string problem = ProblemOfFile(path);
    if (!problem.empty()) {
        console.error(problem);
        return false;
    }
    if (!scene.session.start(library, console)) return false;
    scene.document = std::make_unique<OwnDocument>(
        LoadDocument(filenameOf(path), SCENEFILTER_OBJECTS | SCENEFILTER_MATERIALS, nullptr));
    if (*scene.document) return true;
    console.error("holds no scene");
    return false;
}

bool saveScene(BaseDocument& document, const std::string& path, Console& console)
{
    constexpr Int32 kNoFlags = 0;
    if (SaveDocument(&document, filenameOf(path), kNoFlags, kNoFlags)) return true;
    console.setSubject(path);
    console.error("cannot be written");
    return false;
}

struct NewOptions {
    std::string scene;
    DOCUMENT_UNIT unit = DOCUMENT_UNIT_M;
    bool overwrite = false;
};

int runNew(const NewOptions& options, Console& console)
{
    console.setSubject(options.scene);
    std::error_code ignored;
    if (!options.overwrite && fs::exists(options.scene, ignored)) {
        console.error("is there already; --overwrite takes its place");
        return kFailure;
    }
    HostSession session;
    if (!session.start("", console)) return kFailure;
    const OwnDocument document(options.unit);
    if (!saveScene(*document.get(), options.scene, console)) return kFailure;
    console.out() << OneLine(options.scene) << ": an empty scene\n";
    return kSuccess;
}

struct AddOptions {
    std::string scene;
    PlantOptions plant;
    PlantDisplay display = PlantDisplay::Proxy;
    std::array<double, 3> position{};
    double turn = 0; // degrees
    double scale = 1;
    std::string name;
    std::optional<int32_t> renderer; // whose materials it has
    MaterialChoice materials;
};

int runAdd(const AddOptions& options, Console& console)
{
    RequestedPlant plant;
    if (!LoadRequestedPlant(options.plant, plant, console)) return kFailure;
    OpenScene scene;
    if (!openScene(options.scene, options.plant.library, scene, console)) return kFailure;

    BaseDocument& document = *scene.document->get();
    const SceneRequest wanted = SceneRequestOf(plant, options.plant);
    const double unit = MetersPerDocumentUnit(document);
    PlantSettings settings = SettingsOf(wanted, fs::absolute(plant.open.file).lexically_normal().generic_string());
    settings.display = options.display;
    BaseObject* object = AddPlant(document, settings, MetersPerUnit(wanted.model.unit) / unit);
    if (!object) {
        console.error("the module makes no plant object");
        return kFailure;
    }
    MaterialChoice materials = options.materials;
    materials.renderer = options.renderer.value_or(kSceneRenderer);
    if (options.renderer && !AddRendererMaterials(document, *object, settings.file, wanted.model, materials, console))
        return kFailure;
    constexpr double kRadian = vdt::kPi / 180;
    const std::string& title = wanted.model.name;
    object->SetName(HostText(!options.name.empty() ? options.name : title.empty() ? "plant" : title));
    object->SetAbsPos(Vector(options.position[0], options.position[1], -options.position[2]) * (1 / unit));
    object->SetAbsRot(Vector(-options.turn * kRadian, 0, 0)); // left-handed
    object->SetAbsScale(Vector(options.scale));
    if (!saveScene(document, options.scene, console)) return kFailure;
    console.out() << OneLine(options.scene) << ": " << OneLine(Utf8Text(object->GetName())) << " added, "
                  << DescribeDocument(document).size() << " objects\n";
    return kSuccess;
}

struct InfoOptions {
    std::string scene;
    std::string library;
    std::string format = "table";
};

nlohmann::ordered_json describe(const SceneItem& item)
{
    nlohmann::ordered_json facts = {{"name", item.name},
                                    {"depth", item.depth},
                                    {"positionMeters", {item.position.x, item.position.y, item.position.z}},
                                    {"points", item.points},
                                    {"polygons", item.polygons}};
    if (item.plant)
        facts.update(
            {{"file", item.file}, {"variant", item.variant}, {"season", item.season}, {"statistics", item.statistics}});
    return facts;
}

int runInfo(const InfoOptions& options, Console& console)
{
    OpenScene scene;
    if (!openScene(options.scene, options.library, scene, console)) return kFailure;
    BaseDocument& document = *scene.document->get();
    if (!Evaluate(document) || console.isCancelled()) return kFailure;

    const std::vector<SceneItem> items = DescribeDocument(document);
    if (options.format == "json") {
        nlohmann::ordered_json facts = {{"scene", options.scene},
                                        {"metersPerUnit", MetersPerDocumentUnit(document)},
                                        {"materials", CountMaterials(document)},
                                        {"objects", nlohmann::ordered_json::array()}};
        for (const SceneItem& item : items) facts["objects"].push_back(describe(item));
        console.out() << JsonText(facts, kForPeople) << '\n';
        return kSuccess;
    }
    TextTable table({"object", "variant", "season", ">x", ">y", ">z", "shows", "file"});
    for (const SceneItem& item : items) {
        constexpr int kDigits = 2;
        table.addRow({std::string(static_cast<size_t>(2 * item.depth), ' ') + OneLine(item.name), OneLine(item.variant),
                      OneLine(item.season), FixedNumber(item.position.x, kDigits),
                      FixedNumber(item.position.y, kDigits), FixedNumber(item.position.z, kDigits),
                      OneLine(item.statistics), OneLine(item.file)});
    }
    console.out() << OneLine(options.scene) << ": " << items.size() << " objects";
    if (const uint64_t materials = CountMaterials(document)) console.out() << ", " << materials << " materials";
    console.out() << '\n';
    table.print(console.out());
    return kSuccess;
}

struct ExportOptionsOfScene {
    std::string scene;
    std::string library;
    MaterialQuality quality = MaterialQuality::High;
    ExportOptions file;
};

int runExport(const ExportOptionsOfScene& options, Console& console)
{
    if (!IsExportPath(options.file.path)) {
        console.setSubject(options.file.path);
        console.error("the suffix names no format; .glb, .gltf, .obj and .ply do");
        return kFailure;
    }
    OpenScene open;
    if (!openScene(options.scene, options.library, open, console)) return kFailure;
    if (IsSameFile(options.file.path, options.scene)) {
        console.error("would be overwritten by its own export");
        return kFailure;
    }

    // As a renderer sees it: whole plants, whatever the viewport shows of them.
    Scene scene;
    scene.name = fs::path(options.scene).stem().string();
    BaseDocument& document = *open.document->get();
    console.beginProgress("building the plants");
    document.ExecutePasses(nullptr, true, true, true, BUILDFLAGS_EXTERNALRENDERER);
    console.endProgress();
    ExportSummary summary;
    if (!ReadDocument(document, options.library, options.quality, scene, console) ||
        !ExportScene(scene, options.file, summary, console))
        return kFailure;
    console.out() << OneLine(options.file.path) << ": " << GroupedNumber(summary.polygons) << " polygons, "
                  << GroupedNumber(summary.vertices) << " vertices, " << scene.materials.size() << " materials, "
                  << ByteCount(summary.bytes) << '\n';
    return kSuccess;
}

void addNew(CLI::App& scene, CommandWork& chosen)
{
    CLI::App* command = scene.add_subcommand("new", "Make an empty scene");
    const auto options = std::make_shared<NewOptions>();
    command->add_option("scene", options->scene, "The scene file to make")->required()->type_name("SCENE");
    AddChoice<DOCUMENT_UNIT>(*command, "--unit", options->unit,
                             {{"m", DOCUMENT_UNIT_M}, {"cm", DOCUMENT_UNIT_CM}, {"mm", DOCUMENT_UNIT_MM}},
                             "The unit of lengths in the scene");
    command->add_flag("--overwrite", options->overwrite, "Take the place of a file that is there");
    command->footer(ExampleText("verdanth scene new garden.scene", "makes an empty scene whose lengths are metres"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runNew(*options, console); }; });
}

void addAdd(CLI::App& scene, CommandWork& chosen)
{
    CLI::App* command = scene.add_subcommand("add", "Put a plant into a scene");
    const auto options = std::make_shared<AddOptions>();
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    AddPlantObjectOptions(*command, options->plant);
    AddDisplayOption(*command, options->display);
    command->add_option("--at", options->position, "Where it stands, in metres; Y is up")
        ->delimiter(',')
        ->type_name("X,Y,Z");
    command->add_option("--turn", options->turn, "Round its trunk, in degrees; against the clock as seen from above")
        ->type_name("DEG");
    command->add_option("--scale", options->scale, "How large it is")
        ->check(CLI::PositiveNumber.description(""))
        ->capture_default_str()
        ->type_name("S");
    command->add_option("--name", options->name, "What the object is called; else its botanical name")
        ->type_name("NAME");
    CLI::Option* renderer =
        AddRendererOption(*command, options->renderer, "Give it materials of this renderer; auto is the scene's own");
    AddQualityOption(*command, options->materials.quality);
    command->add_option("--layer", options->materials.layer, "The layer that new materials go on")
        ->needs(renderer)
        ->type_name("NAME");
    command->footer(ExampleText("verdanth scene add garden.scene \"Silver Birch\" --season autumn --at 4,0,2",
                                "plants a birch four metres to the right and two to the front"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runAdd(*options, console); }; });
}

void addInfo(CLI::App& scene, CommandWork& chosen)
{
    CLI::App* command = scene.add_subcommand("info", "Tell what stands in a scene");
    const auto options = std::make_shared<InfoOptions>();
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    AddFormatOption(*command, options->format);
    AddLibraryOption(*command, options->library);
    command->footer(ExampleText("verdanth scene info garden.scene", "lists its plants and where they stand"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runInfo(*options, console); }; });
}

void addExport(CLI::App& scene, CommandWork& chosen)
{
    CLI::App* command = scene.add_subcommand("export", "Write a scene as glTF, OBJ or PLY");
    const auto options = std::make_shared<ExportOptionsOfScene>();
    command->add_option("scene", options->scene, "The scene file")->required()->type_name("SCENE");
    command->add_option("-o,--output", options->file.path, "The file to write; .glb, .gltf, .obj or .ply")
        ->required()
        ->type_name("OUT");
    AddChoice<FoliageForm>(
        *command, "--instances", options->file.foliage,
        {{"merge", FoliageForm::Merged}, {"nodes", FoliageForm::Nodes}, {"gpu", FoliageForm::Instances}},
        "Equal plants in glTF: one mesh a material, a node a plant, or lists");
    AddQualityOption(*command, options->quality);
    AddBacksOption(*command, options->file.backs);
    AddLibraryOption(*command, options->library);
    command->footer(ExampleText("verdanth scene export garden.scene -o garden.glb", "writes all plants, whole"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runExport(*options, console); }; });
}

} // namespace

void AddSceneCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("scene", "Keep several plants in one scene file");
    command->require_subcommand(1);
    addNew(*command, chosen);
    addAdd(*command, chosen);
    addInfo(*command, chosen);
    addExport(*command, chosen);
    command->footer(ExampleText("verdanth scene new garden.scene", "makes an empty scene to put plants into"));
}

} // namespace verdanth
