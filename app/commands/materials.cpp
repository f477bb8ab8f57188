#include "commands/command.h"
#include "commands/material_options.h"
#include "console/json_text.h"
#include "exit_status.h"
#include "host/host_session.h"
#include "host/material_facts.h"
#include "host/plant_object.h"
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
    int32_t quality = vdt::kQualityHigh;
    std::string format = "table";
};

// What one renderer is told, in a document of its own. Null, with the error told, on failure.
nlohmann::ordered_json describeFor(const MaterialChoice& choice, const OpenPlant& plant, const std::string& file,
                                   Console& console)
{
    const OwnDocument document;
    BaseObject* object = document ? AddPlant(*document.get(), {.file = file}, 1) : nullptr;
    if (!object) {
        console.error("the module makes no plant object");
        return nullptr;
    }
    if (!AddRendererMaterials(*document.get(), *object, file, plant.model(), choice, console)) return nullptr;
    return DescribeMaterials(*document.get(), *object);
}

int runMaterials(const MaterialsRequest& request, Console& console)
{
    OpenPlant plant;
    HostSession session;
    if (!OpenRequestedPlant(request.plant, request.library, plant, console) || !session.start(request.library, console))
        return kFailure;

    constexpr const char* kQualities[] = {"low", "medium", "high"};
    const std::string file = fs::absolute(plant.file).lexically_normal().generic_string();
    nlohmann::ordered_json facts = {{"file", plant.file}, {"quality", kQualities[request.quality]}};
    std::set<std::string> missing;
    for (const int32_t renderer : request.renderers) {
        if (console.isCancelled()) return kFailure;
        nlohmann::ordered_json told =
            describeFor({.renderer = renderer, .quality = request.quality}, plant, file, console);
        if (told.is_null()) return kFailure;
        std::error_code ignored;
        for (const std::string& texture : TextureFilesOf(told))
            if (!fs::exists(texture, ignored) && missing.insert(texture).second)
                console.warning("texture " + texture + " does not exist");
        facts["renderers"].push_back({{"renderer", kRendererNames[renderer]}, {"materials", std::move(told)}});
    }
    if (request.format == "json") {
        console.out() << JsonText(facts, kForPeople) << '\n';
        return kSuccess;
    }
    for (const auto& renderer : facts["renderers"]) {
        if (&renderer != &facts["renderers"].front()) console.out() << '\n';
        console.out() << renderer["renderer"].get<std::string>() << ", " << kQualities[request.quality] << " quality, "
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
