#include "lookup/species.h"

#include "files/input_file.h"
#include "vdt/file/vdt_reader.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <system_error>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

constexpr const char* kModelSuffixes[] = {".vdt.gz", ".vdt"};

bool isFolder(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

bool looksLikePath(const std::string& request)
{
    const auto endsAsModel = [&](const char* suffix) { return request.ends_with(suffix); };
    return request.find_first_of("/\\") != std::string::npos ||
           std::any_of(std::begin(kModelSuffixes), std::end(kModelSuffixes), endsAsModel);
}

// How many letters have to be put in, taken out or replaced to turn one text into the other.
size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row[b.size()];
}

// All names that the model file itself has for its plant.
std::vector<std::string> namesInFile(const std::string& file)
{
    vdt::Model model;
    vdt::NullMessageHandler silence;
    vdt::VdtReader(model, silence).readFile(file);

    std::vector<std::string> names;
    if (!model.name.empty()) names.push_back(model.name);
    for (const auto& [language, label] : model.labels) names.push_back(label);
    return names;
}

std::string unknownSpecies(const std::string& request, const std::string& folder, const std::vector<std::string>& names)
{
    if (names.empty()) return "no such file, and no plants in the library " + folder;

    std::string problem = "no such file, and no plant of that name in the library " + folder;
    const std::vector<std::string> near = NearNames(request, names);
    for (const std::string& name : near) problem += (&name == &near.front() ? "; did you mean " : ", ") + name;
    return near.empty() ? problem : problem + "?";
}

} // namespace

fs::path ProgramFolder()
{
    std::error_code code;
    const fs::path program = fs::read_symlink("/proc/self/exe", code);
    return code ? fs::path() : program.parent_path();
}

std::vector<Species> ScanLibrary(const std::string& folder)
{
    std::vector<Species> found;
    std::error_code code;
    for (fs::directory_iterator entry(folder, code), end; !code && entry != end; entry.increment(code)) {
        if (!isFolder(entry->path())) continue;
        const std::string name = entry->path().filename().string();
        for (const char* suffix : kModelSuffixes) {
            const fs::path file = entry->path() / (name + suffix);
            std::error_code ignored;
            if (!fs::exists(file, ignored)) continue;
            found.push_back({name, file.generic_string()});
            break;
        }
    }
    std::sort(found.begin(), found.end(), [](const Species& a, const Species& b) { return a.name < b.name; });
    return found;
}

std::string FindLibrary(const std::string& requested)
{
    if (!requested.empty()) return requested;
    if (const char* environment = std::getenv("VERDANTH_PLANTS"); environment && *environment) return environment;

    const fs::path program = ProgramFolder();
    for (const fs::path& candidate : {program / "plants", program / "../share/verdanth/plants"})
        if (isFolder(candidate)) return candidate.lexically_normal().generic_string();
    return {};
}

FoundPlant FindPlant(const std::string& request, const std::string& libraryFolder, vdt::MessageHandler& messages)
{
    std::error_code ignored;
    if (looksLikePath(request) || fs::is_regular_file(request, ignored)) {
        const std::string problem = ProblemOfFile(request);
        return problem.empty() ? FoundPlant{request, {}} : FoundPlant{{}, problem};
    }

    const std::string folder = FindLibrary(libraryFolder);
    if (folder.empty()) return {{}, "no such file, and no plant library found; --library DIR names one"};
    if (!isFolder(folder)) return {{}, "the plant library " + folder + " is no folder"};

    const std::vector<Species> library = ScanLibrary(folder);
    const std::string wanted = FoldName(request);
    for (const Species& species : library)
        if (FoldName(species.name) == wanted) return {species.file, {}};

    std::vector<std::string> names;
    for (const Species& species : library) {
        if (messages.isCancelled()) return {{}, "cancelled"};
        names.push_back(species.name);
        std::replace(names.back().begin(), names.back().end(), '_', ' ');
        for (const std::string& name : namesInFile(species.file)) {
            if (FoldName(name) == wanted) return {species.file, {}};
            names.push_back(name);
        }
    }
    return {{}, unknownSpecies(request, folder, names)};
}

std::string FoldName(std::string_view name)
{
    std::string folded(name);
    for (size_t i = 0; i < folded.size(); ++i) {
        char& c = folded[i];
        const auto byte = static_cast<unsigned char>(c);
        const bool afterC3 = i > 0 && folded[i - 1] == '\xC3';
        if (c == '_') c = ' ';
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        // The accented capitals in UTF-8: a lead byte C3, then 80 to 9E. 97 is the multiplication sign.
        if (afterC3 && byte >= 0x80 && byte <= 0x9E && byte != 0x97) c = static_cast<char>(c + 0x20);
    }
    return folded;
}

std::vector<std::string> NearNames(std::string_view request, const std::vector<std::string>& candidates)
{
    constexpr size_t kMostNames = 5;
    constexpr size_t kShortestPart = 3; // a shorter part of a name says nothing
    constexpr size_t kLongestName = 200;
    const std::string wanted = FoldName(request.substr(0, kLongestName));

    std::vector<std::pair<size_t, std::string>> near;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestName) continue;
        const std::string name = FoldName(candidate);
        const size_t distance = editDistance(wanted, name);
        const bool isPart = wanted.size() >= kShortestPart && name.find(wanted) != std::string::npos;
        if (isPart || distance <= 1 + std::min(wanted.size(), name.size()) / 3)
            near.emplace_back(isPart ? 0 : distance, candidate);
    }
    std::sort(near.begin(), near.end());
    near.erase(std::unique(near.begin(), near.end()), near.end());

    std::vector<std::string> names;
    for (size_t i = 0; i < near.size() && i < kMostNames; ++i) names.push_back(near[i].second);
    return names;
}

} // namespace verdanth
