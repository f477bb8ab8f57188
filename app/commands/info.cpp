#include "commands/command.h"
#include "console/json_text.h"
#include "exit_status.h"
#include "inspect/plant_facts.h"

#include <memory>

namespace verdanth {
namespace {

struct InfoOptions {
    std::string plant;
    std::string variant;
    std::string format = "table";
    std::string library;
};

int runInfo(const InfoOptions& options, Console& console)
{
    OpenPlant plant;
    if (!OpenRequestedPlant(options.plant, options.library, plant, console)) return kFailure;

    uint64_t onlyVariant = vdt::kNone;
    if (!options.variant.empty()) {
        onlyVariant = FindVariant(plant.model(), options.variant, console);
        if (onlyVariant == vdt::kNone) return kFailure;
    }
    const nlohmann::ordered_json facts = DescribePlant(plant, onlyVariant, console);
    if (console.isCancelled()) return kFailure;

    if (options.format == "json")
        console.out() << JsonText(facts, kForPeople) << '\n';
    else
        PrintPlantFacts(facts, console.out());
    return kSuccess;
}

} // namespace

void AddInfoCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("info", "Tell what a model file holds and what its plant would cost");
    const auto options = std::make_shared<InfoOptions>(); // lives as long as the parser's callback
    command->add_option("plant", options->plant, "A model file, or a species of the plant library")
        ->required()
        ->type_name("FILE|SPECIES");
    command->add_option("--variant", options->variant, "Only this variant")->type_name("NAME|N");
    AddFormatOption(*command, options->format);
    AddLibraryOption(*command, options->library);
    command->footer(ExampleText("verdanth info \"Silver Birch\" --variant adult",
                                "tells all about the adult birch of the plant library"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runInfo(*options, console); }; });
}

} // namespace verdanth
