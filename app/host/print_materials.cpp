// The readable form of what materials were told: a table each, with what is linked indented below the link.
#include "console/console.h"
#include "console/text_table.h"
#include "host/material_facts.h"

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

std::string shortened(const std::string& file, const std::string& folder)
{
    const std::string start = folder + "/";
    return !folder.empty() && file.starts_with(start) ? file.substr(start.size()) : file;
}

std::string shaderText(const Json& shader, const std::string& folder)
{
    // A bitmap shader needs no mention beside its file.
    const bool isPlain = !shader.contains("type") || shader["type"] == Xbitmap;
    const std::string type = isPlain ? "" : std::string("shader ").append(shader["type"].dump());
    if (!shader.contains("file")) return type;
    std::string text = shortened(shader["file"].get<std::string>(), folder);
    if (shader.contains("layers")) text.append(" (").append(shader["layers"].get<std::string>()).append(")");
    return isPlain ? text : text.append(", ").append(type);
}

std::string valueText(const Json& parameter, const std::string& folder)
{
    const Json& value = parameter["value"];
    if (parameter["kind"] == "texture") return shaderText(value, folder);
    if (parameter["kind"] == "file") return shortened(value.get<std::string>(), folder);
    if (parameter["kind"] == "container") return {};
    if (parameter["kind"] == "node") return "node " + value.dump();
    if (value.is_null()) return "none";
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Json& component : value) text.append(text.empty() ? "" : " ").append(component.dump());
    return text;
}

class MaterialTable {
public:
    explicit MaterialTable(const std::string& shortFolder) : folder(&shortFolder) {}

    void add(const Json& material)
    {
        addParameters(material["parameters"], 0);
        addProperties(material, 0);
        if (material.contains("network")) addNetwork(material["network"]);
    }

    void print(std::ostream& out) const { table.print(out); }

private:
    void addParameters(const Json& parameters, size_t depth)
    {
        for (const Json& parameter : parameters) {
            std::string id = parameter["id"].dump();
            if (parameter.contains("second")) id.append(".").append(parameter["second"].dump());
            const std::string name = parameter.contains("name") ? parameter["name"].get<std::string>() : "";
            addRow(id, name, parameter, depth);
        }
    }

    void addProperties(const Json& owner, size_t depth)
    {
        if (!owner.contains("properties")) return;
        for (const Json& property : owner["properties"])
            addRow(property["name"].get<std::string>(), "", property, depth);
    }

    void addNetwork(const Json& network)
    {
        for (const char* root : {"surface", "displacement"})
            if (network.contains(root)) table.addRow({root, "", "node", "node " + network[root].dump()});
        size_t number = 0;
        for (const Json& node : network["nodes"]) {
            const std::string type = node["type"] == 0 ? "" : "shader " + node["type"].dump();
            table.addRow({"node " + std::to_string(number++), node["name"].get<std::string>(), "", type});
            for (const Json& input : node["inputs"]) addRow(input["name"].get<std::string>(), "", input, 1);
        }
    }

    // And what is linked, below.
    void addRow(const std::string& id, const std::string& name, const Json& told, size_t depth)
    {
        const Json& value = told["value"];
        table.addRow(
            {std::string(2 * depth, ' ') + id, name, told["kind"].get<std::string>(), valueText(told, *folder)});
        if (told["kind"] == "container") addParameters(value, depth + 1);
        if (told["kind"] != "texture") return;
        if (value.contains("parameters")) addParameters(value["parameters"], depth + 1);
        addProperties(value, depth + 1);
    }

    const std::string* folder;
    TextTable table{{"id", "name", "kind", "value"}};
};

void printMaterial(const Json& material, const std::string& title, const std::string& folder, std::ostream& out)
{
    out << '\n' << title << " \"" << OneLine(material["name"].get<std::string>()) << "\", plug-in " << material["type"];
    if (material.contains("side") && material["side"] != "both") out << ", " << material["side"].get<std::string>();
    out << '\n';
    MaterialTable table(folder);
    table.add(material);
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
