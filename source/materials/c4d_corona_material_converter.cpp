#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "vdt/materials/corona_material_converter.h"

#include <algorithm>

namespace {

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 4101, Write::On},
    {Slot::DiffuseColor, 4300, Write::Color},
    {Slot::DiffuseTexture, 4301, Write::Texture},
    {Slot::AlphaTexture, 4109, Write::On},
    {Slot::AlphaTexture, 4751, Write::AlphaTexture},
    {Slot::SpecularEnabled, 4103, Write::Switch},
    {Slot::SpecularColor, 4500, Write::Color},
    {Slot::SpecularTexture, 4501, Write::Texture},
    {Slot::Glossiness, 4511, Write::Number},
    {Slot::TranslucencyColor, 4102, Write::On},
    {Slot::TranslucencyColor, 4400, Write::Color},
    {Slot::TranslucencyColor, 4405, Write::One},
    {Slot::TranslucencyTexture, 4406, Write::Texture},
    {Slot::BumpTexture, 4108, Write::On},
    {Slot::BumpTexture, 4851, Write::Texture},
    {Slot::BumpStrength, 4850, Write::Number},
};
constexpr ParameterMap kMap{.rows = kRows};

class C4dCoronaMaterialConverter final : public C4dMaterialNameConverter, public vdt::CoronaMaterialConverter {
public:
    explicit C4dCoronaMaterialConverter(ColourSpace colours)
        : C4dMaterialNameConverter(kCoronaMaterialId, kMap, colours)
    {
    }

    void setDiffuse(const vdt::Color3f& color, const std::string& texture, float /*roughness*/) override
    {
        write(Slot::DiffuseColor, color);
        write(Slot::DiffuseTexture, texture);
    }

    void setOpacity(const std::string& texture, bool isOwnPicture) override
    {
        write(Slot::AlphaTexture, isOwnPicture ? CutoutPath(texture) : texture);
    }

    void setSpecular(const vdt::Color3f& color, const std::string& texture, float roughness) override
    {
        write(Slot::SpecularEnabled, !vdt::IsBlack(color));
        write(Slot::SpecularColor, color);
        write(Slot::SpecularTexture, texture);
        write(Slot::Glossiness, std::max(1 - roughness, 0.0f));
    }

    void setTranslucency(const vdt::Color3f& color, const std::string& texture) override
    {
        write(Slot::TranslucencyColor, color);
        write(Slot::TranslucencyTexture, texture);
    }

    void setBump(float strength, const std::string& texture) override
    {
        if (write(Slot::BumpTexture, texture)) write(Slot::BumpStrength, strength);
    }
};

} // namespace

Bool ConvertToCorona(const Conversion& conversion)
{
    return ConvertWith(C4dCoronaMaterialConverter(conversion.colourSpace), conversion);
}
