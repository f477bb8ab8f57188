// The readable form of a plant's facts: titles, and tables below them.
#include "console/console.h"
#include "console/text_table.h"
#include "inspect/plant_facts.h"

#include <array>
#include <set>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

std::string text(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::string count(const Json& object, const char* key)
{
    return GroupedNumber(object[key].get<uint64_t>());
}

std::string flag(const Json& object, const char* key, const char* word)
{
    return object[key].get<bool>() ? word : "";
}

// With up to three digits behind the point.
std::string shortNumber(const Json& number)
{
    std::string digits = FixedNumber(number.get<double>(), 3);
    if (digits.find('.') == std::string::npos) return digits;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.ends_with('.')) digits.pop_back();
    return digits;
}

std::string numbers(const Json& list)
{
    std::string joined;
    for (const Json& number : list) {
        if (!joined.empty()) joined += ' ';
        joined += shortNumber(number);
    }
    return joined;
}

std::string joinedTexts(const Json& texts)
{
    std::string joined;
    for (const auto& [language, label] : texts.items())
        joined += (joined.empty() ? "" : ", ") + label.get<std::string>() + " (" + language + ")";
    return joined;
}

void printSection(std::ostream& out, const std::string& title, const TextTable& table)
{
    if (table.empty()) return;
    out << '\n' << title << '\n';
    table.print(out);
}

void printHead(const Json& facts, std::ostream& out)
{
    const std::string name = text(facts, "name");
    out << OneLine(name.empty() ? "(a plant without a name)" : name) << '\n';
    const std::pair<const char*, std::string> lines[] = {
        {"file", text(facts, "file") + " (" + ByteCount(facts["fileBytes"].get<uint64_t>()) + ")"},
        {"unit", text(facts, "unit")},
        {"creator", text(facts["info"], "creator")},
        {"user", text(facts["info"], "user")},
        {"timestamp", text(facts["info"], "timestamp")},
        {"source", text(facts["info"], "source")}};
    for (const auto& [label, value] : lines)
        if (!value.empty()) out << "  " << label << std::string(11 - TextWidth(label), ' ') << OneLine(value) << '\n';
}

void printTexts(const Json& facts, std::ostream& out)
{
    TextTable names({"language", "name"});
    for (const auto& [language, label] : facts["labels"].items()) names.addRow({language, label.get<std::string>()});
    printSection(out, "Names", names);

    TextTable descriptions({"language", "text"});
    for (const auto& [language, words] : facts["descriptions"].items())
        descriptions.addRow({language, words.get<std::string>()});
    printSection(out, "Descriptions", descriptions);
}

void printColors(const Json& facts, std::ostream& out)
{
    std::set<std::string> seasons;
    for (const char* kind : {"woodColors", "foliageColors"})
        for (const auto& [season, color] : facts[kind].items()) seasons.insert(season);

    TextTable table({"season", "wood", "foliage"});
    const auto colorOf = [&](const char* kind, const std::string& season) {
        const auto found = facts[kind].find(season);
        return found == facts[kind].end() ? std::string() : numbers(*found);
    };
    for (const std::string& season : seasons)
        table.addRow(
            {season.empty() ? "(any)" : season, colorOf("woodColors", season), colorOf("foliageColors", season)});
    printSection(out, "Colours", table);
}

void printMaterials(const Json& facts, std::ostream& out)
{
    TextTable looks({">id", "name", ">sides", "side", "diffuse", ">rough", "specular", ">rough"});
    TextTable textures({">id", "side", "use", "file"});
    for (const Json& material : facts["materials"]) {
        const std::string id = std::to_string(material["matid"].get<int32_t>());
        const auto addTexture = [&](const char* side, const char* use, const std::string& file) {
            if (!file.empty()) textures.addRow({id, side, use, file});
        };
        for (const char* side : {"front", "back"}) {
            if (!material.contains(side)) continue;
            const Json& look = material[side];
            const bool first = side == std::string_view("front");
            looks.addRow({first ? id : "", first ? text(material, "name") : "",
                          first ? std::to_string(material["sides"].get<int>()) : "", side,
                          numbers(look["diffuseColor"]), shortNumber(look["diffuseRoughness"]),
                          numbers(look["specularColor"]), shortNumber(look["specularRoughness"])});
            addTexture(side, "diffuse", text(look, "diffuseTexture"));
            addTexture(side, "specular", text(look, "specularTexture"));
            addTexture(side, "normal", text(look, "normalTexture"));
            addTexture(side, "bump", text(look, "bumpTexture"));
        }
        addTexture("", "alpha", text(material, "alphaTexture"));
        addTexture("", "displacement", text(material["displacement"], "texture"));
        addTexture("", "subsurface", text(material["subsurface"], "texture"));
    }
    printSection(out, "Materials", looks);
    printSection(out, "Textures", textures);
}

std::string seasonList(const Json& variant)
{
    std::string list;
    for (const Json& qualifier : variant["qualifiers"])
        list += (list.empty() ? "" : ", ") + text(qualifier, "name") + (qualifier["default"].get<bool>() ? " *" : "");
    return list;
}

void printVariants(const Json& facts, std::ostream& out)
{
    TextTable table({">#", "name", "", "labels", ">height m", "seasons (* default)", ">proxies", "geometry"});
    TextTable bounds({">#", "", "minimum", "maximum"});
    for (const Json& variant : facts["variants"]) {
        const std::string index = std::to_string(variant["index"].get<uint64_t>());
        const bool built = variant.contains("built");
        const Json& height = built ? variant["built"]["heightMeters"] : variant["heightMeters"];
        const std::string extref = text(variant, "extref");
        table.addRow(
            {index, text(variant, "name"), flag(variant, "default", "default"), joinedTexts(variant["labels"]),
             height.is_null() ? "?" : FixedNumber(height.get<double>(), 2), seasonList(variant),
             std::to_string(variant["proxies"].size()),
             (variant["loaded"].get<bool>() ? "" : "NOT LOADED ") + (extref.empty() ? "in the file" : extref)});
        const std::pair<const char*, const char*> boxes[] = {{"storedBound", "stored"}, {"bound", "computed"}};
        for (const auto& [key, word] : boxes)
            if (const Json& box = variant[key]; !box.is_null())
                bounds.addRow({index, word, numbers(box["min"]), numbers(box["max"])});
        if (built && !variant["built"]["bound"].is_null())
            bounds.addRow(
                {index, "built", numbers(variant["built"]["bound"]["min"]), numbers(variant["built"]["bound"]["max"])});
    }
    printSection(out, "Variants", table);
    printSection(out, "Bounds (" + text(facts, "unit") + ")", bounds);
}

void printContent(const Json& facts, std::ostream& out)
{
    TextTable holds({">#", "name", ">points", ">branches", ">vertices", ">connectors", ">meshes", ">polygons"});
    TextTable meshes({">#", "kind", ">group", "season", "name", ">points", ">polygons", ">connectors"});
    TextTable cost({">#", "season", ">level", ">branch points", ">polygons", ">foliage points", ">polygons",
                    ">all polygons", ">memory"});
    for (const Json& variant : facts["variants"]) {
        const std::string index = std::to_string(variant["index"].get<uint64_t>());
        for (const Json& proxy : variant["proxies"])
            meshes.addRow(
                {index, "proxy", "", text(proxy, "qualifier"), "", count(proxy, "points"), count(proxy, "polygons")});
        if (!variant.contains("built")) continue;

        const Json& held = variant["holds"];
        holds.addRow({index, text(variant, "name"), count(held, "points"), count(held, "branches"),
                      count(held, "vertices"), count(held, "connectors"), count(held, "meshes"),
                      count(held, "meshPolygons")});
        for (const Json& mesh : variant["foliage"])
            meshes.addRow({index, "foliage", std::to_string(mesh["group"].get<int32_t>()), text(mesh, "qualifier"),
                           text(mesh, "name"), count(mesh, "points"), count(mesh, "polygons"),
                           count(mesh, "connectors")});
        const Json& built = variant["built"];
        cost.addRow({index, text(built, "season"), std::to_string(built["subdivision"].get<int>()),
                     count(built["branches"], "points"), count(built["branches"], "polygons"),
                     count(built["foliage"], "points"), count(built["foliage"], "polygons"), count(built, "polygons"),
                     ByteCount(built["bytes"].get<uint64_t>())});
    }
    printSection(out, "Holds", holds);
    printSection(out, "Meshes", meshes);
    printSection(out, "Built at default settings", cost);
}

} // namespace

void PrintPlantFacts(const nlohmann::ordered_json& facts, std::ostream& out)
{
    printHead(facts, out);
    printTexts(facts, out);
    printColors(facts, out);
    printMaterials(facts, out);
    printVariants(facts, out);
    printContent(facts, out);
}

} // namespace verdanth
