#include "commands/command.h"
#include "commands/material_options.h"
#include "commands/picture_size.h"
#include "commands/plant_options.h"
#include "commands/previews.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/output_name.h"
#include "files/input_file.h"
#include "host/host_scene.h"
#include "host/host_session.h"
#include "host/plant_materials.h"
#include "host/view_picture.h"
#include "lookup/species.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace verdanth {
namespace {

struct ViewRequest {
    PlantOptions plant;
    PlantDisplay display = PlantDisplay::Proxy;
    std::optional<int32_t> renderer; // whose materials it has
    std::string output;
    std::string size = "640x480";
    ViewSettings view{.azimuth = 35, .elevation = 14};
    bool withoutGrid = false;
};

// The name of the picture to write. Empty, with the error told, if there is none to be had.
std::string outputFor(const ViewRequest& request, const RequestedPlant& plant, const SceneRequest& wanted,
                      Console& console)
{
    Scene scene;
    NameScene(wanted, scene);
    std::string problem;
    std::string output = OutputName(request.output, {scene.name, scene.variant, scene.season}, problem);
    if (problem.empty() && IsSameFile(output, plant.open.file)) problem = "would be overwritten by its own picture";
    if (problem.empty()) return output;
    console.error(problem);
    return {};
}

// Draws a plant object in a document of its own. False, with the error told, on failure.
bool drawPlant(const ViewRequest& request, const RequestedPlant& plant, const SceneRequest& wanted,
               ViewPainter& painter, Picture& picture, Console& console)
{
    HostSession session;
    if (!session.start(request.plant.library, console)) return false;

    const std::string file = std::filesystem::absolute(plant.open.file).lexically_normal().generic_string();
    PlantSettings settings = SettingsOf(wanted, file);
    settings.display = request.display;
    const OwnDocument document;
    BaseObject* object = document ? AddPlant(*document.get(), settings, MetersPerUnit(wanted.model.unit)) : nullptr;
    if (!object) {
        console.error("the module makes no plant object");
        return false;
    }
    if (!request.renderer)
        AddMaterials(*document.get(), *object, wanted.model, wanted.season);
    else if (!AddRendererMaterials(*document.get(), *object, file, wanted.model, {.renderer = *request.renderer},
                                   console))
        return false;
    console.beginProgress("building the plant");
    const bool built = Evaluate(*document.get());
    console.endProgress();
    if (!built || console.isCancelled()) return false;

    ViewSettings view = request.view;
    view.grid = !request.withoutGrid;
    // A cloud stands for itself, though its object has two points only.
    view.boxes = request.display == PlantDisplay::Box;
    std::string problem;
    if (painter.draw(*document.get(), view, picture, problem)) return true;
    console.error(problem);
    return false;
}

int runView(ViewRequest& request, Console& console)
{
    if (!ParsePictureSize(request.size, request.view.width, request.view.height, console)) return kFailure;
    if (FoldName(std::filesystem::path(request.output).extension().string()) != ".png") {
        console.error(request.output + ": pictures are written as PNG; the name has to end in .png");
        return kFailure;
    }
    ViewPainter painter;
    std::string problem;
    if (!painter.start(problem)) {
        console.error(problem);
        return kFailure;
    }

    RequestedPlant plant;
    if (!LoadRequestedPlant(request.plant, plant, console)) return kFailure;
    const SceneRequest wanted = SceneRequestOf(plant, request.plant);
    const std::string output = outputFor(request, plant, wanted, console);
    Picture picture;
    if (output.empty() || !drawPlant(request, plant, wanted, painter, picture, console)) return kFailure;
    console.setSubject("");
    const uint64_t written = WritePictures({output}, picture, console);
    if (written == 0) return kFailure;
    console.out() << OneLine(output) << ": " << picture.width << " x " << picture.height << " pixels, "
                  << ByteCount(written) << '\n';
    return kSuccess;
}

} // namespace

void AddViewCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("view", "Draw a plant as a viewport shows it");
    const auto request = std::make_shared<ViewRequest>();
    AddPlantObjectOptions(*command, request->plant);
    AddDisplayOption(*command, request->display);
    AddRendererOption(*command, request->renderer, "Show the colours of this renderer's materials; else mean colours");
    command
        ->add_option("-o,--output", request->output,
                     "The picture to write; .png. {species}, {variant} and {season} are filled in")
        ->required()
        ->type_name("OUT");
    AddSizeOption(*command, request->size);
    command->add_option("--azimuth", request->view.azimuth, "Where the viewer stands, in degrees round the plant")
        ->check(CLI::Range(-360, 360).description(""))
        ->capture_default_str()
        ->type_name("DEG");
    command->add_option("--elevation", request->view.elevation, "How far above the plant's middle he stands")
        ->check(CLI::Range(-90, 90).description(""))
        ->capture_default_str()
        ->type_name("DEG");
    command
        ->add_option("--distance", request->view.distance,
                     "How far away; at 1 the plant fills the picture, at 2 half of it")
        ->check(CLI::Range(0.1, 1000.0).description(""))
        ->capture_default_str()
        ->type_name("X");
    command->add_flag("--no-grid", request->withoutGrid, "Leave out the lines on the floor");
    command->footer(ExampleText("verdanth view \"Silver Birch\" --display cloud -o birch.png",
                                "draws the birch as points and ribbons, as it stands in a scene of many plants"));
    command->callback(
        [request, &chosen] { chosen = [request](Console& console) { return runView(*request, console); }; });
}

} // namespace verdanth
