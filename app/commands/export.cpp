#include "commands/command.h"
#include "commands/material_options.h"
#include "commands/plant_options.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/detail_levels.h"
#include "export/export_scene.h"
#include "export/output_name.h"
#include "files/input_file.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace verdanth {
namespace {

constexpr size_t kMostLevels = 16;
constexpr uint64_t kLevelStep = 4; // a level has a quarter of the triangles of the one before

struct ExportRequest {
    PlantOptions plant;
    std::string output; // may be a template
    FoliageForm foliage = FoliageForm::Merged;
    MaterialQuality quality = MaterialQuality::High;
    BackForm backs = BackForm::Shared;
    std::optional<int32_t> renderer; // whose materials are told of
    size_t levelCount = 1;
    std::vector<uint64_t> triangles; // one a level; else the first level is all that the options ask for
};

// The details of all levels. False, with the error told, if they cannot be had.
bool findLevels(const ExportRequest& request, SceneRequest& scene, Console& console)
{
    std::vector<uint64_t> budgets = request.triangles;
    if (budgets.empty() && request.levelCount == 1) return true;
    if (request.plant.form != PlantForm::Full) {
        console.error("levels of detail are made of the full plant alone, not of its lighter forms");
        return false;
    }
    if (!budgets.empty() && request.levelCount != 1 && request.levelCount != budgets.size()) {
        console.error("--lod and --triangles ask for different numbers of levels");
        return false;
    }
    if (budgets.empty()) {
        budgets.push_back(CountTriangles(scene, request.plant.detail).total());
        while (budgets.size() < request.levelCount) budgets.push_back(budgets.back() / kLevelStep);
    }
    console.beginProgress("finding levels of detail");
    const bool found = FindDetails(scene, budgets, !request.triangles.empty(), scene.details, console);
    console.endProgress();
    return found;
}

std::string outputName(const ExportRequest& request, const Scene& scene, size_t level, Console& console)
{
    std::string problem;
    const std::string name = OutputName(request.output, {scene.name, scene.variant, scene.season, level}, problem);
    if (!problem.empty()) console.error(problem);
    return name;
}

bool writeFile(const Scene& scene, const ExportOptions& file, const OpenPlant& plant, Console& console)
{
    if (IsSameFile(file.path, plant.file)) {
        console.error("would be overwritten by its own export");
        return false;
    }
    console.setSubject("");
    ExportSummary summary;
    if (!ExportScene(scene, file, summary, console)) return false;

    console.out() << OneLine(file.path) << ": " << OneLine(scene.name);
    for (const std::string& word : {scene.variant, scene.season})
        if (!word.empty()) console.out() << ", " << OneLine(word);
    console.out() << "; ";
    if (scene.levels.size() > 1) console.out() << scene.levels.size() << " levels, ";
    if (summary.points > 0)
        console.out() << GroupedNumber(summary.points) << " points, ";
    else
        console.out() << GroupedNumber(summary.polygons) << " polygons, " << GroupedNumber(summary.vertices)
                      << " vertices, " << scene.materials.size() << " materials, ";
    console.out() << ByteCount(summary.bytes) << '\n';
    return true;
}

// One file for all levels, or one a level where the name asks for it.
bool writeFiles(const ExportRequest& request, Scene& scene, const OpenPlant& plant, Console& console)
{
    const auto write = [&](size_t level) {
        const std::string name = outputName(request, scene, level, console);
        return !name.empty() && writeFile(scene, {name, request.foliage, request.backs}, plant, console);
    };
    if (!NamesLevels(request.output)) return write(0);
    std::vector<SceneLevel> levels;
    levels.swap(scene.levels);
    for (size_t i = 0; i < levels.size(); ++i) {
        scene.levels.clear();
        scene.levels.push_back(std::move(levels[i]));
        if (!write(i)) return false;
    }
    return true;
}

// Notes in the scene what a renderer is told of its materials, if that is asked for.
bool addRenderer(const ExportRequest& request, const OpenPlant& plant, Scene& scene, Console& console)
{
    if (!request.renderer) return true;
    if (!IsGltfPath(request.output)) {
        console.warning("what a renderer is told goes into glTF alone; --renderer changes nothing here");
        return true;
    }
    const std::string file = std::filesystem::absolute(plant.file).lexically_normal().generic_string();
    return AddRendererExtras(file, request.plant.library, plant.model(),
                             {.renderer = *request.renderer, .quality = request.quality}, scene, console);
}

int runExport(const ExportRequest& request, Console& console)
{
    if (!IsExportPath(request.output)) {
        console.setSubject(request.output);
        console.error("the suffix names no format; .glb, .gltf, .obj and .ply do");
        return kFailure;
    }

    RequestedPlant plant;
    if (!LoadRequestedPlant(request.plant, plant, console)) return kFailure;
    SceneRequest wanted = SceneRequestOf(plant, request.plant);
    wanted.quality = request.quality;
    Scene scene;
    const bool copies = request.foliage != FoliageForm::Merged && IsGltfPath(request.output);
    if (!findLevels(request, wanted, console) ||
        !BuildRequestedScene(plant, request.plant, wanted, copies, scene, console) ||
        !addRenderer(request, plant.open, scene, console))
        return kFailure;
    return writeFiles(request, scene, plant.open, console) ? kSuccess : kFailure;
}

} // namespace

void AddExportCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("export", "Build a plant and write it as glTF, OBJ or PLY");
    const auto request = std::make_shared<ExportRequest>();
    AddPlantOptions(*command, request->plant);
    command
        ->add_option("-o,--output", request->output,
                     "The file to write; .glb, .gltf, .obj or .ply. {species}, {variant}, {season} and {lod} are "
                     "filled in")
        ->required()
        ->type_name("OUT");
    AddChoice<FoliageForm>(
        *command, "--instances", request->foliage,
        {{"merge", FoliageForm::Merged}, {"nodes", FoliageForm::Nodes}, {"gpu", FoliageForm::Instances}},
        "Foliage in glTF: one mesh a material, a node a leaf, or lists");
    AddQualityOption(*command, request->quality);
    AddBacksOption(*command, request->backs);
    AddRendererOption(*command, request->renderer,
                      "Leave in each material of glTF, as extras, what the renderer is told of it");
    command->add_option("--lod", request->levelCount, "How many levels of detail, each a quarter of the one before")
        ->check(CLI::Range(size_t{1}, kMostLevels).description(""))
        ->capture_default_str()
        ->type_name("N");
    command->add_option("--triangles", request->triangles, "The triangles of each level, from the finest on")
        ->delimiter(',')
        ->check(CLI::PositiveNumber.description(""))
        ->expected(1, static_cast<int>(kMostLevels))
        ->type_name("A,B,C");
    command->footer(ExampleText("verdanth export \"Silver Birch\" --variant young --season autumn -o birch.glb",
                                "writes a young birch in autumn as one binary glTF file"));
    command->callback(
        [request, &chosen] { chosen = [request](Console& console) { return runExport(*request, console); }; });
}

} // namespace verdanth
