#include "commands/plant_options.h"

#include "commands/command.h"
#include "console/console.h"
#include "files/input_file.h"
#include "host/host_scene.h"

#include <limits>

namespace verdanth {
namespace {

constexpr int kHighestSubdivision = 6; // each level makes four polygons of one
constexpr uint64_t kMostPoints = 100'000'000;

void addReductionOptions(CLI::App& command, vdt::ReductionParameters& reduction)
{
    command.add_option("--max-level", reduction.maxLevel, "The deepest branching that is built; the trunk is 1")
        ->check(CLI::Range(1, std::numeric_limits<int32_t>::max()).description(""))
        ->type_name("N");
    command
        .add_option("--min-radius", reduction.minRadius, "Branches end where they are no thicker; in the model's unit")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("R");
    command
        .add_option("--foliage", reduction.foliageAmount,
                    "The share of foliage that is built, 0 to 1, enlarged so that the crown stays as dense")
        ->check(CLI::Range(0.0, 1.0).description(""))
        ->type_name("SHARE");
    command.add_option("--thinning", reduction.foliageThinning, "A further share, that makes the crown thinner")
        ->check(CLI::Range(0.0, 1.0).description(""))
        ->type_name("SHARE");
}

} // namespace

void AddPlantObjectOptions(CLI::App& command, PlantOptions& options)
{
    command.add_option("plant", options.plant, "A model file, or a species of the plant library")
        ->required()
        ->type_name("FILE|SPECIES");
    command.add_option("--variant", options.variant, "By name, label or number from 0; else the file's default")
        ->type_name("NAME|N");
    command.add_option("--season", options.season, "By name or label; else the variant's default")->type_name("NAME");
    command.add_option("--subdivision", options.detail.subdivisionLevel, "How often trunk and branches are rounded")
        ->check(CLI::Range(0, kHighestSubdivision).description(""))
        ->capture_default_str()
        ->type_name("N");
    command.add_flag("--uniform", options.uniform, "Round all branches alike, not the thinner ones less");
    addReductionOptions(command, options.detail.reduction);
    AddLibraryOption(command, options.library);
}

void AddPlantOptions(CLI::App& command, PlantOptions& options)
{
    AddPlantObjectOptions(command, options);
    AddChoice<PlantForm>(command, "--as", options.form,
                         {{"full", PlantForm::Full},
                          {"proxy", PlantForm::Proxy},
                          {"box", PlantForm::Box},
                          {"cloud", PlantForm::Cloud},
                          {"blob", PlantForm::Blob}},
                         "What stands for the plant: all of it, or a lighter form");
    command.add_option("--points", options.points, "How many points a cloud has")
        ->check(CLI::Range(uint64_t{1}, kMostPoints).description(""))
        ->capture_default_str()
        ->type_name("N");
}

void AddDisplayOption(CLI::App& command, PlantDisplay& display)
{
    AddChoice<PlantDisplay>(command, "--display", display,
                            {{"proxy", PlantDisplay::Proxy},
                             {"box", PlantDisplay::Box},
                             {"cloud", PlantDisplay::Cloud},
                             {"full", PlantDisplay::Full}},
                            "What a viewport shows of it");
}

bool LoadRequestedPlant(const PlantOptions& options, RequestedPlant& plant, Console& console)
{
    if (!OpenRequestedPlant(options.plant, options.library, plant.open, console)) return false;

    const uint64_t index = FindVariant(plant.open.model(), options.variant, console);
    return index != vdt::kNone && LoadVariantOf(plant, index, options.season, console);
}

bool LoadVariantOf(RequestedPlant& plant, uint64_t index, const std::string& season, Console& console)
{
    OpenPlant& open = plant.open;
    open.handle = open.cache.acquire(open.file, console, index);
    plant.variant = open.handle.variantData(console, true);
    if (!plant.variant) {
        const std::string& extref = open.model().variants[index].extref;
        const std::string problem = ProblemOfFile(extref);
        console.error("variant \"" + VariantTitle(open.model(), index) + "\" cannot be loaded: " + extref + " " +
                      (problem.empty() ? "holds no usable variant" : problem));
        return false;
    }
    return FindSeason(*plant.variant, season, plant.season, console);
}

SceneRequest SceneRequestOf(const RequestedPlant& plant, const PlantOptions& options)
{
    return {.model = plant.open.model(),
            .variant = *plant.variant,
            .season = plant.season,
            .form = options.form,
            .uniform = options.uniform,
            .details = {options.detail},
            .cloudPoints = options.points};
}

bool BuildRequestedScene(const RequestedPlant& plant, const PlantOptions& options, const SceneRequest& request,
                         bool copies, Scene& scene, Console& console)
{
    const bool isHuge = CountFoliagePolygons(request) > kMostObjectPolygons;
    if (copies || isHuge || !IsBuiltByModule(request)) return BuildScene(request, scene, console);
    return BuildSceneInHost(request, plant.open.file, options.library, scene, console);
}

} // namespace verdanth
