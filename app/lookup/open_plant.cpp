#include "lookup/open_plant.h"

#include "console/console.h"
#include "console/text_table.h"
#include "files/input_file.h"
#include "lookup/species.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace verdanth {
namespace {

bool hasName(const std::string& name, const vdt::LocalizedTexts& labels, const std::string& foldedName)
{
    if (FoldName(name) == foldedName) return true;
    return std::any_of(labels.begin(), labels.end(),
                       [&](const auto& label) { return FoldName(label.second) == foldedName; });
}

std::string listed(const std::vector<std::string>& names)
{
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    return list;
}

} // namespace

bool OpenRequestedPlant(const std::string& request, const std::string& libraryFolder, OpenPlant& plant,
                        Console& console)
{
    console.setSubject(request);
    const FoundPlant found = FindPlant(request, libraryFolder, console);
    if (!found.problem.empty()) {
        if (!console.isCancelled()) console.error(found.problem);
        return false;
    }

    plant.file = found.file;
    console.setSubject(plant.file);
    plant.handle = plant.cache.acquire(plant.file, console, vdt::kNone);
    if (console.isCancelled()) return false;
    if (plant.handle.model()) return true;

    const std::string problem = ProblemOfFile(plant.file);
    console.error(problem.empty() ? "holds no plant: not a model file, or without variants" : problem);
    return false;
}

uint64_t FindVariant(const vdt::Model& model, const std::string& wanted, vdt::MessageHandler& messages)
{
    if (wanted.empty()) return model.defaultVariant < model.variants.size() ? model.defaultVariant : 0;

    const std::string folded = FoldName(wanted);
    for (uint64_t i = 0; i < model.variants.size(); ++i)
        if (hasName(model.variants[i].name, model.variants[i].labels, folded)) return i;

    uint64_t position = 0;
    const char* end = wanted.data() + wanted.size();
    const auto parsed = std::from_chars(wanted.data(), end, position);
    if (parsed.ec == std::errc() && parsed.ptr == end && position < model.variants.size()) return position;

    std::vector<std::string> names;
    for (uint64_t i = 0; i < model.variants.size(); ++i) names.push_back(VariantTitle(model, i));
    messages.error("no variant \"" + wanted + "\"; there are " + listed(names));
    return vdt::kNone;
}

bool FindSeason(const vdt::ModelVariant& variant, const std::string& wanted, std::string& season,
                vdt::MessageHandler& messages)
{
    season = DefaultSeason(variant);
    if (wanted.empty()) return true;

    std::vector<std::string> names;
    for (const vdt::Qualifier& qualifier : variant.qualifiers) {
        names.push_back(qualifier.name);
        if (!hasName(qualifier.name, qualifier.labels, FoldName(wanted))) continue;
        season = qualifier.name;
        return true;
    }
    messages.error("no season \"" + wanted + "\"; " +
                   (names.empty() ? "there are none" : "there are " + listed(names)));
    return false;
}

std::string DefaultSeason(const vdt::ModelVariant& variant)
{
    if (variant.defaultQualifier >= variant.qualifiers.size()) return {};
    return variant.qualifiers[variant.defaultQualifier].name;
}

std::string VariantTitle(const vdt::Model& model, uint64_t variant)
{
    const std::string& name = model.variants[variant].name;
    return name.empty() ? Numbered("variant", static_cast<int64_t>(variant)) : name;
}

double MetersPerUnit(int32_t unit)
{
    switch (unit) {
    case vdt::kMillimeters: return 0.001;
    case vdt::kMeters: return 1;
    default: return 0.01;
    }
}

std::string_view UnitName(int32_t unit)
{
    switch (unit) {
    case vdt::kMillimeters: return "millimeters";
    case vdt::kMeters: return "meters";
    default: return "centimeters";
    }
}

} // namespace verdanth
