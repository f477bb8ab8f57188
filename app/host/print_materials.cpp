// The readable form of what materials were told: a table each, with what is linked indented below the link.
#include "console/console.h"
#include "console/text_table.h"
#include "host/material_facts.h"

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kBitmapShader = 5833; // needs no mention beside its file

std::string shortened(const std::string& file, const std::string& folder)
{
    const std::string start = folder + "/";
    return !folder.empty() && file.starts_with(start) ? file.substr(start.size()) : file;
}

std::string shaderText(const Json& shader, const std::string& folder)
{
    const std::string type = std::string("shader ").append(shader["type"].dump());
    if (!shader.contains("file")) return type;
    std::string text = shortened(shader["file"].get<std::string>(), folder);
    if (shader.contains("layers")) text.append(" (").append(shader["layers"].get<std::string>()).append(")");
    return shader["type"] == kBitmapShader ? text : text + ", " + type;
}

std::string valueText(const Json& parameter, const std::string& folder)
{
    const Json& value = parameter["value"];
    if (parameter["kind"] == "texture") return shaderText(value, folder);
    if (parameter["kind"] == "file") return shortened(value.get<std::string>(), folder);
    if (parameter["kind"] == "container") return {};
    if (value.is_null()) return "none";
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Json& component : value) text.append(text.empty() ? "" : " ").append(component.dump());
    return text;
}

void addRows(const Json& parameters, const std::string& folder, size_t depth, TextTable& table)
{
    for (const Json& parameter : parameters) {
        std::string id(2 * depth, ' ');
        id += parameter["id"].dump();
        if (parameter.contains("second")) id.append(".").append(parameter["second"].dump());
        const std::string name = parameter.contains("name") ? parameter["name"].get<std::string>() : "";
        table.addRow({id, name, parameter["kind"].get<std::string>(), valueText(parameter, folder)});
        const Json& value = parameter["value"];
        if (parameter["kind"] == "container") addRows(value, folder, depth + 1, table);
        if (parameter["kind"] == "texture" && value.contains("parameters"))
            addRows(value["parameters"], folder, depth + 1, table);
    }
}

void printMaterial(const Json& material, const std::string& title, const std::string& folder, std::ostream& out)
{
    out << '\n' << title << " \"" << OneLine(material["name"].get<std::string>()) << "\", plug-in " << material["type"];
    if (material.contains("side") && material["side"] != "both") out << ", " << material["side"].get<std::string>();
    out << '\n';
    TextTable table({"id", "name", "kind", "value"});
    addRows(material["parameters"], folder, 0, table);
    table.print(out);
    if (!material.contains("parts")) return;
    for (const Json& part : material["parts"]) printMaterial(part, "  part", folder, out);
}

} // namespace

void PrintMaterials(const nlohmann::ordered_json& materials, const std::string& folder, std::ostream& out)
{
    for (const Json& material : materials) printMaterial(material, "material " + material["matid"].dump(), folder, out);
}

} // namespace verdanth
