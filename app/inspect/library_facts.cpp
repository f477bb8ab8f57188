#include "inspect/library_facts.h"

#include "console/console.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "files/input_file.h"
#include "lookup/open_plant.h"
#include "lookup/species.h"
#include "vdt/file/vdt_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <set>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

// Many files are read for one table: their warnings are for check to tell, an error stands beside the plant.
class FirstError final : public vdt::MessageHandler {
public:
    explicit FirstError(vdt::MessageHandler& terminal) : console(&terminal) {}
    void endProgress() override {}
    void beginProgress(std::string_view) override {}
    void progress(float) override {}
    void message(std::string_view) override {}
    void warning(std::string_view) override {}
    void error(std::string_view text) override
    {
        if (problem.empty()) problem = text;
    }
    void debug(std::string_view) override {}
    bool isCancelled() override { return console->isCancelled(); }

    std::string problem;

private:
    vdt::MessageHandler* console;
};

uint64_t sizeOfFile(const std::string& path)
{
    std::error_code code;
    const auto size = std::filesystem::file_size(path, code);
    return code ? 0 : size;
}

class PlantReader {
public:
    PlantReader(const Species& listedSpecies, const std::string& languageTag, vdt::MessageHandler& console)
        : species(listedSpecies),
          language(languageTag),
          messages(console)
    {
    }

    Json describe()
    {
        vdt::Model model;
        const bool read = vdt::VdtReader(model, messages).readFile(species.file);
        usable = read && !model.variants.empty();
        problem = messages.problem;
        if (!usable) problem = ProblemOfFile(species.file);
        if (!usable && problem.empty()) problem = "holds no plant: not a model file, or without variants";

        std::string folderName = species.name;
        std::replace(folderName.begin(), folderName.end(), '_', ' ');
        const std::string& botanicalName = model.name.empty() ? folderName : model.name;
        files.insert(species.file);
        Json variants = Json::array();
        for (vdt::ModelVariant& variant : model.variants) {
            const double height = heightOf(variant) * MetersPerUnit(model.unit);
            variants.push_back({{"name", variant.name}, {"heightMeters", height}});
        }
        uint64_t allBytes = 0;
        for (const std::string& file : files) allBytes += sizeOfFile(file);
        return {{"name", species.name},
                {"file", species.file},
                {"usable", usable},
                {"problem", problem.empty() ? Json() : Json(problem)},
                {"commonName", vdt::lookupText(model.labels, language, "en-US", "")},
                {"botanicalName", botanicalName},
                {"seasons", seasonsOf(model)},
                {"variants", std::move(variants)},
                {"fileBytes", sizeOfFile(species.file)},
                {"allBytes", allBytes}};
    }

    int status() const { return !usable ? kFailure : problem.empty() ? kSuccess : kFindings; }

private:
    // In model units; not a number if nothing tells.
    double heightOf(vdt::ModelVariant& variant)
    {
        if (!variant.extref.empty() && files.insert(variant.extref).second && problem.empty())
            if (const std::string cause = ProblemOfFile(variant.extref); !cause.empty())
                problem = variant.extref + " " + cause;

        vdt::Box bound = variant.bound;
        if (bound.isEmpty() && !variant.extref.empty() && !variant.expand(messages, nullptr) && problem.empty())
            problem = variant.extref + " holds no usable variant";
        if (bound.isEmpty()) bound = variant.computeBound();
        variant.releaseGeometry();
        return bound.isEmpty() ? std::nan("") : bound.size().y;
    }

    static Json seasonsOf(const vdt::Model& model)
    {
        Json seasons = Json::array();
        for (const vdt::ModelVariant& variant : model.variants)
            for (const vdt::Qualifier& qualifier : variant.qualifiers)
                if (std::find(seasons.begin(), seasons.end(), qualifier.name) == seasons.end())
                    seasons.push_back(qualifier.name);
        return seasons;
    }

    const Species& species;
    const std::string& language;
    FirstError messages;
    bool usable = false;
    std::string problem;
    std::set<std::string> files; // of the plant, each once
};

bool matches(const Json& plant, const std::string& foldedFilter)
{
    const auto holds = [&](const char* key) {
        return FoldName(plant[key].get_ref<const std::string&>()).find(foldedFilter) != std::string::npos;
    };
    return holds("commonName") || holds("botanicalName");
}

// Heights by age; a variant whose name tells no age is a row of its own.
constexpr const char* kAges[] = {"young", "medium", "adult"};
constexpr size_t kAgeCount = std::size(kAges);

struct HeightRange {
    double lowest = HUGE_VAL, highest = -HUGE_VAL; // metres

    std::string text() const
    {
        if (lowest > highest) return {};
        const std::string from = FixedNumber(lowest, 2), to = FixedNumber(highest, 2);
        return from == to ? from : from + "-" + to;
    }
};

std::array<HeightRange, kAgeCount + 1> heightsOf(const Json& plant)
{
    std::array<HeightRange, kAgeCount + 1> ranges;
    for (const Json& variant : plant["variants"]) {
        const std::string name = FoldName(variant["name"].get_ref<const std::string&>());
        const auto age =
            std::find_if(kAges, kAges + kAgeCount, [&](const char* word) { return name.find(word) != name.npos; });
        HeightRange& range = ranges[static_cast<size_t>(age - kAges)];
        const double height = variant["heightMeters"].get<double>();
        if (!std::isfinite(height)) continue;
        range.lowest = std::min(range.lowest, height);
        range.highest = std::max(range.highest, height);
    }
    return ranges;
}

} // namespace

LibraryAnswer DescribeLibrary(const LibraryQuestion& question, Console& console)
{
    const std::vector<Species> library = ScanLibrary(question.folder);
    const std::string filter = FoldName(question.filter);
    LibraryAnswer answer;
    Json plants = Json::array();
    console.beginProgress("reading the plants");
    for (size_t i = 0; i < library.size() && !console.isCancelled(); ++i) {
        PlantReader reader(library[i], question.language, console);
        Json plant = reader.describe();
        if (matches(plant, filter)) {
            plants.push_back(std::move(plant));
            answer.status = std::max(answer.status, reader.status());
        }
        console.progress(static_cast<float>(i + 1) / static_cast<float>(library.size()));
    }
    console.endProgress();
    answer.facts = {{"library", question.folder},
                    {"language", question.language},
                    {"plantCount", library.size()},
                    {"plants", std::move(plants)}};
    return answer;
}

void PrintLibraryFacts(const nlohmann::ordered_json& facts, std::ostream& out)
{
    TextTable table(
        {"name", "botanical name", ">young m", ">medium m", ">adult m", ">other m", "seasons", ">size", "problem"});
    for (const Json& plant : facts["plants"]) {
        std::string seasons;
        for (const Json& season : plant["seasons"])
            seasons += (seasons.empty() ? "" : ", ") + season.get<std::string>();
        const auto heights = heightsOf(plant);
        table.addRow({plant["commonName"], plant["botanicalName"], heights[0].text(), heights[1].text(),
                      heights[2].text(), heights[3].text(), seasons, ByteCount(plant["allBytes"].get<uint64_t>()),
                      plant["problem"].is_null() ? "" : plant["problem"].get<std::string>()});
    }
    table.print(out, "");
    const size_t shown = facts["plants"].size();
    const auto all = facts["plantCount"].get<size_t>();
    out << (table.empty() ? "" : "\n") << (shown == all ? "" : std::to_string(shown) + " of ") << all
        << (all == 1 ? " plant in " : " plants in ") << OneLine(facts["library"].get<std::string>()) << '\n';
}

} // namespace verdanth
