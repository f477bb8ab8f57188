#include "commands/command.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/export_scene.h"
#include "export/scene_builder.h"
#include "files/input_file.h"
#include "lookup/open_plant.h"

#include <memory>

namespace verdanth {
namespace {

constexpr int kHighestSubdivision = 6; // each level makes four polygons of one

struct ExportRequest {
    std::string plant;
    std::string output;
    std::string variant;
    std::string season;
    std::string instances = "merge";
    std::string library;
    int subdivision = 1;
    bool uniform = false;
};

bool buildRequested(const ExportRequest& request, OpenPlant& plant, Scene& scene, Console& console)
{
    if (!OpenRequestedPlant(request.plant, request.library, plant, console)) return false;
    if (IsSameFile(request.output, plant.file)) {
        console.error("would be overwritten by its own export");
        return false;
    }

    const uint64_t index = FindVariant(plant.model(), request.variant, console);
    if (index == vdt::kNone) return false;
    plant.handle = plant.cache.acquire(plant.file, console, index);
    const vdt::ModelVariant* variant = plant.handle.variantData(console, true);
    if (!variant) {
        const std::string& extref = plant.model().variants[index].extref;
        const std::string problem = ProblemOfFile(extref);
        console.error("variant \"" + VariantTitle(plant.model(), index) + "\" cannot be loaded: " + extref + " " +
                      (problem.empty() ? "holds no usable variant" : problem));
        return false;
    }

    std::string season;
    if (!FindSeason(*variant, request.season, season, console)) return false;
    return BuildScene({.model = plant.model(),
                       .variant = *variant,
                       .season = season,
                       .subdivisionLevel = request.subdivision,
                       .uniform = request.uniform},
                      scene, console);
}

int runExport(const ExportRequest& request, Console& console)
{
    if (!IsExportPath(request.output)) {
        console.setSubject(request.output);
        console.error("the suffix names no format; .glb, .gltf, .obj and .ply do");
        return kFailure;
    }

    OpenPlant plant;
    Scene scene;
    if (!buildRequested(request, plant, scene, console)) return kFailure;

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
    command->add_option("plant", request->plant, "A model file, or a species of the plant library")
        ->required()
        ->type_name("FILE|SPECIES");
    command->add_option("-o,--output", request->output, "The file to write; .glb, .gltf, .obj or .ply")
        ->required()
        ->type_name("OUT");
    command->add_option("--variant", request->variant, "By name, label or number from 0; else the file's default")
        ->type_name("NAME|N");
    command->add_option("--season", request->season, "By name or label; else the variant's default")->type_name("NAME");
    command->add_option("--subdivision", request->subdivision, "How often trunk and branches are rounded")
        ->check(CLI::Range(0, kHighestSubdivision).description(""))
        ->capture_default_str()
        ->type_name("N");
    command->add_flag("--uniform", request->uniform, "Round all branches alike, not the thinner ones less");
    command->add_option("--instances", request->instances, "Foliage in glTF: one mesh a material, or a node a leaf")
        ->check(CLI::IsMember({"merge", "nodes"}).description(""))
        ->capture_default_str()
        ->type_name("merge|nodes");
    AddLibraryOption(*command, request->library);
    command->footer(ExampleText("verdanth export \"Silver Birch\" --variant young --season autumn -o birch.glb",
                                "writes a young birch in autumn as one binary glTF file"));
    command->callback(
        [request, &chosen] { chosen = [request](Console& console) { return runExport(*request, console); }; });
}

} // namespace verdanth
