#include "host/material_facts.h"

#include "console/as_written.h"
#include "core/native_path.h"
#include "core/stand_in_renderers.h"
#include "customgui_layerset.h"
#include "host/host_session.h"
#include "host/parameter_names.h"
#include "host/plant_object.h"
#include "ttexture.h"
#include "xbitmap.h"

#include <algorithm>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

// Where the module keeps networks of shaders in a material, and properties that go by name in any node.
constexpr Int32 kNetwork = 1029989;
constexpr Int32 kNetworkSurface = 1;
constexpr Int32 kNetworkDisplacement = 2;
constexpr Int32 kNetworkFirstNode = 100;
constexpr Int32 kNodeType = 1;
constexpr Int32 kNodeName = 2;
constexpr Int32 kNodeFirstInput = 100;
constexpr Int32 kInputNode = 3; // in the value's place: which node feeds the input
constexpr Int32 kProperties = kPlantObject;
constexpr Int32 kOwnName = 1; // of an input or a property
constexpr Int32 kOwnValue = 2;

constexpr int kDeepest = 8; // of what links what; only a damaged scene has more

// As it was told, where it was told as a float.
Json numberOf(Float number)
{
    const auto single = static_cast<float>(number);
    return static_cast<Float>(single) == number ? AsWritten(single) : number;
}

class MaterialReader {
public:
    MaterialReader(BaseDocument& read, const std::vector<const BaseMaterial*>& tagged) : document(&read), own(&tagged)
    {
    }

    // Adds to what is known already.
    void describe(BaseMaterial& material, Json& facts)
    {
        facts["name"] = Utf8Text(material.GetName());
        facts["type"] = material.GetType();
        std::vector<BaseMaterial*> linked;
        const BaseContainer& data = *material.GetDataInstance();
        facts["parameters"] = parametersOf(data, material.GetType() == Mmaterial, &linked);
        if (const BaseContainer* network = data.GetContainerInstance(kNetwork)) facts["network"] = networkOf(*network);
        addProperties(data, facts);
        if (linked.empty() || depth >= kDeepest) return;
        ++depth;
        Json& parts = facts["parts"] = Json::array();
        for (BaseMaterial* part : linked) describe(*part, parts.emplace_back());
        --depth;
    }

private:
    // `linked` takes materials that are met, unless it is null.
    Json parametersOf(const BaseContainer& container, bool hasNames, std::vector<BaseMaterial*>* linked)
    {
        Json parameters = Json::array();
        const BaseContainer* levels = container.GetContainerInstance(host::kSecondLevels);
        for (Int32 i = 0; const GeData* value = container.GetIndexData(i); ++i) {
            const Int32 id = container.GetIndexId(i);
            if ((levels && id == host::kSecondLevels) || id == kNetwork || id == kProperties) continue;
            addParameter(parameters, id, *value, hasNames, linked);
            const BaseContainer* level = levels ? levels->GetContainerInstance(id) : nullptr;
            if (level) addSecondLevel(parameters, id, *level);
        }
        for (Int32 i = 0; levels && levels->GetIndexData(i); ++i) {
            const Int32 id = levels->GetIndexId(i);
            const BaseContainer* level = levels->GetIndexData(i)->GetContainer();
            if (level && container.FindIndex(id) == NOTOK) addSecondLevel(parameters, id, *level);
        }
        return parameters;
    }

    void addSecondLevel(Json& parameters, Int32 id, const BaseContainer& level)
    {
        for (Int32 i = 0; const GeData* value = level.GetIndexData(i); ++i) {
            Json& parameter = parameters.emplace_back(Json{{"id", id}, {"second", level.GetIndexId(i)}});
            setValue(parameter, *value, nullptr);
        }
    }

    Json networkOf(const BaseContainer& container)
    {
        Json network = Json::object();
        if (container.FindIndex(kNetworkSurface) != NOTOK) network["surface"] = container.GetInt32(kNetworkSurface);
        if (container.FindIndex(kNetworkDisplacement) != NOTOK)
            network["displacement"] = container.GetInt32(kNetworkDisplacement);
        Json& nodes = network["nodes"] = Json::array();
        for (Int32 id = kNetworkFirstNode; const BaseContainer* data = container.GetContainerInstance(id); ++id) {
            Json& node = nodes.emplace_back(
                Json{{"name", Utf8Text(data->GetString(kNodeName))}, {"type", data->GetInt32(kNodeType)}});
            Json& inputs = node["inputs"] = Json::array();
            for (Int32 input = kNodeFirstInput; data->GetContainerInstance(input); ++input)
                addNamed(inputs, *data->GetContainerInstance(input));
        }
        return network;
    }

    void addProperties(const BaseContainer& data, Json& facts)
    {
        const BaseContainer* properties = data.GetContainerInstance(kProperties);
        for (Int32 i = 0; properties && properties->GetIndexData(i); ++i)
            if (const BaseContainer* property = properties->GetIndexData(i)->GetContainer())
                addNamed(facts["properties"], *property);
    }

    // An input or a property. A file is a picture there.
    void addNamed(Json& list, const BaseContainer& data)
    {
        Json named = {{"name", Utf8Text(data.GetString(kOwnName))}};
        if (data.FindIndex(kInputNode) != NOTOK)
            named.update({{"kind", "node"}, {"value", data.GetInt32(kInputNode)}});
        else
            setValue(named, data.GetData(kOwnValue), nullptr);
        if (named["kind"] == "file") named.update({{"kind", "texture"}, {"value", {{"file", named["value"]}}}});
        list.push_back(std::move(named));
    }

    void addParameter(Json& parameters, Int32 id, const GeData& value, bool hasNames,
                      std::vector<BaseMaterial*>* linked)
    {
        Json& parameter = parameters.emplace_back(Json{{"id", id}});
        const ParameterName known = hasNames ? NameOfMaterialParameter(id) : ParameterName();
        if (known.name) parameter["name"] = known.name;
        setValue(parameter, value, linked);
        if (!known.isSwitch) return;
        parameter["kind"] = "bool";
        parameter["value"] = value.GetInt32() != 0;
    }

    void setValue(Json& parameter, const GeData& value, std::vector<BaseMaterial*>* linked)
    {
        const auto set = [&parameter](const char* kind, Json told) {
            parameter["kind"] = kind;
            parameter["value"] = std::move(told);
        };
        switch (value.GetType()) {
        case DA_LONG: return set("integer", value.GetInt32());
        case DA_REAL: return set("float", numberOf(value.GetFloat()));
        case DA_STRING: return set("text", Utf8Text(value.GetString()));
        case DA_FILENAME: return set("file", host::NativePath(value.GetFilename()));
        case DA_CONTAINER:
            set("container", Json::array());
            if (++depth <= kDeepest) parameter["value"] = parametersOf(*value.GetContainer(), false, nullptr);
            --depth;
            return;
        case DA_VECTOR: {
            const Vector& color = value.GetVector();
            return set("color", Json::array({numberOf(color.x), numberOf(color.y), numberOf(color.z)}));
        }
        case DA_ALIASLINK: return setLink(parameter, value.GetLink(document), linked);
        case CUSTOMDATATYPE_LAYERSET: return set("layers", layersOf(value));
        default: return set("other", value.GetType());
        }
    }

    void setLink(Json& parameter, BaseList2D* target, std::vector<BaseMaterial*>* linked)
    {
        parameter["kind"] = "link";
        parameter["value"] = nullptr;
        if (!target) return;
        parameter["value"] = Utf8Text(target->GetName());
        if (target->IsInstanceOf(Xbase)) {
            parameter["kind"] = "texture";
            parameter["value"] = describe(static_cast<BaseShader&>(*target));
        }
        if (!linked || !target->IsInstanceOf(Mbase)) return;
        auto* material = static_cast<BaseMaterial*>(target);
        if (std::ranges::find(*own, material) == own->end()) linked->push_back(material);
    }

    // The file and the part of the picture stand by themselves, for they are what matters.
    Json describe(BaseShader& shader)
    {
        Json facts = {{"type", shader.GetType()}};
        if (++depth <= kDeepest) {
            for (Json& parameter : parametersOf(*shader.GetDataInstance(), false, nullptr)) {
                if (parameter["kind"] == "file" && parameter["id"] == BITMAPSHADER_FILENAME)
                    facts["file"] = parameter["value"];
                else if (parameter["kind"] == "layers" && parameter["id"] == BITMAPSHADER_LAYERSET)
                    facts["layers"] = parameter["value"];
                else
                    facts["parameters"].push_back(std::move(parameter));
            }
            addProperties(*shader.GetDataInstance(), facts);
        }
        --depth;
        return facts;
    }

    static std::string layersOf(const GeData& value)
    {
        const auto* layers = static_cast<const LayerSet*>(value.GetCustomDataType(CUSTOMDATATYPE_LAYERSET));
        return layers ? Utf8Text(layers->GetName()) : std::string();
    }

    BaseDocument* document;
    const std::vector<const BaseMaterial*>* own;
    int depth = 0;
};

GeData parameterOf(BaseTag& tag, Int32 id)
{
    GeData value;
    tag.GetParameter(DescID(id), value, DESCFLAGS_GET_0);
    return value;
}

void collectFiles(const Json& facts, std::vector<std::string>& files)
{
    if (facts.is_object() && facts.contains("file")) {
        const auto file = facts["file"].get<std::string>();
        if (std::ranges::find(files, file) == files.end()) files.push_back(file);
    }
    if (facts.is_structured())
        for (const Json& part : facts) collectFiles(part, files);
}

} // namespace

nlohmann::ordered_json DescribeMaterials(BaseDocument& document, BaseObject& object)
{
    std::vector<TextureTag*> tags;
    std::vector<const BaseMaterial*> own;
    for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext()) {
        if (tag->GetType() != Ttexture || !static_cast<TextureTag*>(tag)->GetMaterial()) continue;
        tags.push_back(static_cast<TextureTag*>(tag));
        own.push_back(tags.back()->GetMaterial());
    }

    constexpr const char* kSides[] = {"both", "front", "back"};
    MaterialReader reader(document, own);
    Json materials = Json::array();
    for (TextureTag* tag : tags) {
        int32_t matid = kNoMaterial;
        MaterialIdOf(Utf8Text(parameterOf(*tag, TEXTURETAG_RESTRICTION).GetString()), matid);
        const Int32 side = parameterOf(*tag, TEXTURETAG_SIDE).GetInt32();
        Json& facts = materials.emplace_back(Json{{"matid", matid}, {"side", kSides[std::clamp(side, 0, 2)]}});
        reader.describe(*tag->GetMaterial(), facts);
    }
    return materials;
}

std::vector<std::string> TextureFilesOf(const nlohmann::ordered_json& materials)
{
    std::vector<std::string> files;
    collectFiles(materials, files);
    return files;
}

} // namespace verdanth
