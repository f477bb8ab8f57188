#include "materials/written_parameters.h"

#include "core/stand_in_renderers.h"
#include "customgui_layerset.h"
#include "materials/arnold_network.h"
#include "materials/node_properties.h"
#include "materials/recorded_calls.h"
#include "materials/renderer_ids.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "xbitmap.h"

#include <gtest/gtest.h>

#include <set>

namespace host::test {
namespace {

std::string quoted(const String& text)
{
    return std::string("\"").append(ToUtf8(text)) + '"';
}

class Writer {
public:
    explicit Writer(const std::function<Vector(const Vector&)>& transform) : shown(transform) {}

    void writeMaterial(const char* role, BaseMaterial& material, int depth)
    {
        line(depth, std::string(role) + " " + std::to_string(material.GetType()) + " " + quoted(material.GetName()));
        linked.clear();
        writeContainer(*material.GetDataInstance(), "", depth + 1);
        std::set<BaseList2D*> owned;
        for (BaseShader* shader = material.GetFirstShader(); shader; shader = shader->GetNext()) owned.insert(shader);
        EXPECT_EQ(owned, linked) << ToUtf8(material.GetName());
    }

    void line(int depth, const std::string& content)
    {
        text += std::string(2 * static_cast<size_t>(depth), ' ') + content + "\n";
    }

    std::string text;

private:
    void writeContainer(const BaseContainer& container, const std::string& prefix, int depth)
    {
        for (Int32 i = 0; const GeData* value = container.GetIndexData(i); ++i) {
            const Int32 id = container.GetIndexId(i);
            const BaseContainer* inner = value->GetContainer();
            if (id == kArnoldNetworkId && inner)
                writeNetwork(*inner, depth);
            else if (id == kSecondLevels && inner)
                writeSecondLevels(*inner, depth);
            else if (inner)
                writeContainer(*inner, prefix + std::to_string(id) + ".", depth);
            else
                line(depth, prefix + std::to_string(id) + " " + textOf(*value));
        }
    }

    void writeSecondLevels(const BaseContainer& levels, int depth)
    {
        for (Int32 i = 0; const GeData* level = levels.GetIndexData(i); ++i)
            writeContainer(*level->GetContainer(), std::to_string(levels.GetIndexId(i)) + ".", depth);
    }

    void writeNetwork(const BaseContainer& network, int depth)
    {
        line(depth, std::string("network ") + std::to_string(kArnoldNetworkId) + " surface " +
                        std::to_string(network.GetInt32(kNetworkSurface)) + " displacement " +
                        std::to_string(network.GetInt32(kNetworkDisplacement, NOTOK)));
        for (Int32 n = 0; const BaseContainer* node = network.GetContainerInstance(kNetworkFirstNode + n); ++n) {
            line(depth + 1, std::to_string(n) + " " + ToUtf8(node->GetString(kNodeName)) + " " +
                                std::to_string(node->GetInt32(kNodeType)));
            for (Int32 i = 0; const BaseContainer* input = node->GetContainerInstance(kNodeFirstInput + i); ++i) {
                const GeData* value = input->GetDataPointer(kInputValue);
                line(depth + 2,
                     ToUtf8(input->GetString(kInputName)) + " " +
                         (value ? textOf(*value) : std::string("node ") + std::to_string(input->GetInt32(kInputNode))));
            }
        }
    }

    std::string textOf(const GeData& value)
    {
        switch (value.GetType()) {
        case DA_LONG: return std::string("integer ") + std::to_string(value.GetInt32());
        case DA_REAL: return std::string("float ") + vdt::test::NumberText(value.GetFloat());
        case DA_STRING: return std::string("string ") + quoted(value.GetString());
        case DA_FILENAME: return std::string("file ") + quoted(value.GetFilename().GetString());
        case DA_VECTOR: return colorText(shown(value.GetVector()));
        case DA_ALIASLINK: return linkText(value.GetBaseLink()->ForceGetLink());
        default: return std::string("type ") + std::to_string(value.GetType());
        }
    }

    static std::string colorText(const Vector& color)
    {
        using vdt::test::NumberText;
        return std::string("color ") + NumberText(color.x) + " " + NumberText(color.y) + " " + NumberText(color.z);
    }

    std::string linkText(BaseList2D* target)
    {
        if (!target) return "link to nothing";
        if (!target->IsInstanceOf(Xbase)) return std::string("material ") + quoted(target->GetName());
        linked.insert(target);
        return shaderText(*target);
    }

    static std::string shaderText(BaseList2D& shader)
    {
        const BaseContainer& data = *shader.GetDataInstance();
        std::string content = std::string("shader ") + std::to_string(shader.GetType());
        const auto* layers =
            static_cast<const LayerSet*>(data.GetCustomDataType(BITMAPSHADER_LAYERSET, CUSTOMDATATYPE_LAYERSET));
        if (BaseList2D* wrapped = data.GetLink(BITMAPSHADER_FILENAME, nullptr)) {
            EXPECT_EQ(wrapped->GetUp(), &shader);
            content.append(" around ").append(shaderText(*wrapped));
        } else {
            content.append(" ").append(quoted(data.GetFilename(BITMAPSHADER_FILENAME).GetString()));
        }
        if (layers && layers->GetMode() == LAYERSETMODE_ALPHAS)
            content.append(" alpha ").append(quoted(layers->GetName()));
        if (const BaseContainer* properties = data.GetContainerInstance(kPlantObjectId))
            for (Int32 i = 0; const BaseContainer* property = properties->GetContainerInstance(i); ++i)
                content.append(" ")
                    .append(ToUtf8(property->GetString(kNodePropertyName)))
                    .append(" ")
                    .append(std::to_string(property->GetInt32(kNodePropertyValue)));
        return content;
    }

    const std::function<Vector(const Vector&)>& shown;
    std::set<BaseList2D*> linked; // shaders, of the material that is being written
};

} // namespace

std::string WrittenParameters(const MaterialEntries& entries, const std::function<Vector(const Vector&)>& shown)
{
    Writer writer(shown);
    for (const MaterialEntry& entry : entries) {
        writer.line(1, std::string("entry ") + std::to_string(entry.matid) + " side " + std::to_string(entry.side));
        for (const HostPtr<BaseMaterial>& part : entry.parts) writer.writeMaterial("part", *part, 2);
        writer.writeMaterial("material", *entry.material, 2);
    }
    return writer.text;
}

} // namespace host::test
