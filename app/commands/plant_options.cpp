#include "commands/plant_options.h"

#include "commands/command.h"
#include "console/console.h"
#include "files/input_file.h"

namespace verdanth {
namespace {

constexpr int kHighestSubdivision = 6; // each level makes four polygons of one

} // namespace

void AddPlantOptions(CLI::App& command, PlantOptions& options)
{
    command.add_option("plant", options.plant, "A model file, or a species of the plant library")
        ->required()
        ->type_name("FILE|SPECIES");
    command.add_option("--variant", options.variant, "By name, label or number from 0; else the file's default")
        ->type_name("NAME|N");
    command.add_option("--season", options.season, "By name or label; else the variant's default")->type_name("NAME");
    command.add_option("--subdivision", options.subdivision, "How often trunk and branches are rounded")
        ->check(CLI::Range(0, kHighestSubdivision).description(""))
        ->capture_default_str()
        ->type_name("N");
    command.add_flag("--uniform", options.uniform, "Round all branches alike, not the thinner ones less");
    AddLibraryOption(command, options.library);
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
            .subdivisionLevel = options.subdivision,
            .uniform = options.uniform};
}

} // namespace verdanth
