#include "commands/command.h"
#include "commands/material_options.h"
#include "console/json_text.h"
#include "exit_status.h"
#include "host/host_session.h"
#include "host/material_facts.h"
#include "lookup/open_plant.h"

#include <filesystem>
#include <memory>
#include <set>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

struct MaterialsRequest {
    std::string plant;
    std::string library;
    std::vector<int32_t> renderers;
    MaterialQuality quality = MaterialQuality::High;
    std::string format = "table";
};

int runMaterials(const MaterialsRequest& request, Console& console)
{
    OpenPlant plant;
    HostSession session;
    if (!OpenRequestedPlant(request.plant, request.library, plant, console) || !session.start(request.library, console))
        return kFailure;

    constexpr const char* kQualities[] = {"low", "medium", "high"};
    const std::string quality = kQualities[static_cast<size_t>(request.quality)];
    const std::string file = fs::absolute(plant.file).lexically_normal().generic_string();
    nlohmann::ordered_json facts = {{"file", plant.file}, {"quality", quality}};
    std::set<std::string> missing;
    for (const int32_t renderer : request.renderers) {
        if (console.isCancelled()) return kFailure;
        nlohmann::ordered_json told =
            TellRenderer(file, plant.model(), {.renderer = renderer, .quality = request.quality}, console);
        if (told.is_null()) return kFailure;
        std::error_code ignored;
        for (const std::string& texture : TextureFilesOf(told["materials"]))
            if (!fs::exists(texture, ignored) && missing.insert(texture).second)
                console.warning("texture " + texture + " does not exist");
        facts["renderers"].push_back(std::move(told));
    }
    if (request.format == "json") {
        console.out() << JsonText(facts, kForPeople) << '\n';
        return kSuccess;
    }
    for (const auto& renderer : facts["renderers"]) {
        if (&renderer != &facts["renderers"].front()) console.out() << '\n';
        console.out() << renderer["renderer"].get<std::string>() << ", " << quality << " quality, "
                      << renderer["materials"].size() << " materials\n";
        PrintMaterials(renderer["materials"], fs::path(file).parent_path().generic_string(), console.out());
    }
    return kSuccess;
}

} // namespace

void AddMaterialsCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("materials", "Tell what renderers are told of a plant's materials");
    const auto request = std::make_shared<MaterialsRequest>();
    command->add_option("plant", request->plant, "A model file, or a species of the plant library")
        ->required()
        ->type_name("FILE|SPECIES");
    AddRendererListOption(*command, request->renderers);
    AddQualityOption(*command, request->quality);
    AddFormatOption(*command, request->format);
    AddLibraryOption(*command, request->library);
    command->footer(ExampleText("verdanth materials \"Silver Birch\" --renderer vray,corona --quality medium",
                                "lists the parameters that two renderers get for the birch"));
    command->callback(
        [request, &chosen] { chosen = [request](Console& console) { return runMaterials(*request, console); }; });
}

} // namespace verdanth
