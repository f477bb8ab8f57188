#include "commands/command.h"
#include "commands/plant_options.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/export_scene.h"
#include "files/input_file.h"

#include <memory>

namespace verdanth {
namespace {

struct ExportRequest {
    PlantOptions plant;
    std::string output;
    std::string instances = "merge";
};

int runExport(const ExportRequest& request, Console& console)
{
    if (!IsExportPath(request.output)) {
        console.setSubject(request.output);
        console.error("the suffix names no format; .glb, .gltf, .obj and .ply do");
        return kFailure;
    }

    RequestedPlant plant;
    Scene scene;
    if (!LoadRequestedPlant(request.plant, plant, console)) return kFailure;
    if (IsSameFile(request.output, plant.open.file)) {
        console.error("would be overwritten by its own export");
        return kFailure;
    }
    if (!BuildScene(SceneRequestOf(plant, request.plant), scene, console)) return kFailure;

    console.setSubject("");
    ExportSummary summary;
    const FoliageForm form = request.instances == "nodes" ? FoliageForm::Nodes : FoliageForm::Merged;
    if (!ExportScene(scene, {request.output, form}, summary, console)) return kFailure;

    console.out() << OneLine(request.output) << ": " << OneLine(scene.name);
    for (const std::string& word : {scene.variant, scene.season})
        if (!word.empty()) console.out() << ", " << OneLine(word);
    console.out() << "; " << GroupedNumber(summary.polygons) << " polygons, " << GroupedNumber(summary.vertices)
                  << " vertices, " << scene.materials.size() << " materials, " << ByteCount(summary.bytes) << '\n';
    return kSuccess;
}

} // namespace

void AddExportCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("export", "Build a plant and write it as glTF, OBJ or PLY");
    const auto request = std::make_shared<ExportRequest>();
    AddPlantOptions(*command, request->plant);
    command->add_option("-o,--output", request->output, "The file to write; .glb, .gltf, .obj or .ply")
        ->required()
        ->type_name("OUT");
    command->add_option("--instances", request->instances, "Foliage in glTF: one mesh a material, or a node a leaf")
        ->check(CLI::IsMember({"merge", "nodes"}).description(""))
        ->capture_default_str()
        ->type_name("merge|nodes");
    command->footer(ExampleText("verdanth export \"Silver Birch\" --variant young --season autumn -o birch.glb",
                                "writes a young birch in autumn as one binary glTF file"));
    command->callback(
        [request, &chosen] { chosen = [request](Console& console) { return runExport(*request, console); }; });
}

} // namespace verdanth
