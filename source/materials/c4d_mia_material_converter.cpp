#include "materials/c4d_mia_setters.h"
#include "materials/node_properties.h"
#include "materials/renderer_ids.h"

namespace {

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 2001, Write::Color},
    {Slot::DiffuseColor, 2004, Write::One},
    {Slot::DiffuseColor, 2003, Write::One},
    {Slot::DiffuseTexture, 2006, Write::Texture},
    {Slot::DiffuseRoughness, 2005, Write::Number},
    {Slot::SpecularColor, 2007, Write::Color},
    {Slot::SpecularColor, 2009, Write::One},
    {Slot::SpecularTexture, 2021, Write::Texture},
    {Slot::Reflectivity, 2011, Write::Number},
    {Slot::Glossiness, 2010, Write::Number},
    {Slot::IndexOfRefraction, 2115, Write::Number},
    {Slot::Fresnel, 2016, Write::Switch},
    {Slot::FastMode, 2013, Write::Switch},
    {Slot::ThinWalled, 2095, Write::Switch},
    {Slot::BacksideCulling, 2099, Write::Switch},
    {Slot::AlphaTexture, 2061, Write::On},
    {Slot::AlphaTexture, 2064, Write::AlphaTexture},
    {Slot::BumpTexture, 2057, Write::On},
    {Slot::BumpTexture, 2060, Write::Texture},
    {Slot::BumpStrength, 2114, Write::Number},
    {Slot::TranslucencyEnabled, 2030, Write::Switch},
    {Slot::TranslucencyWeight, 2031, Write::Number},
    {Slot::TranslucencyTexture, 2041, Write::Texture},
    {Slot::SubsurfaceEnabled, 2028, Write::Switch},
    {Slot::SubsurfaceEnabled, 2042, Write::Switch},
    {Slot::SubsurfaceWeight, 2045, Write::Number},
    {Slot::SubsurfaceColor, 2044, Write::Color},
    {Slot::SubsurfaceTexture, 2046, Write::Texture},
};
constexpr ParameterMap kMap{.rows = kRows};

class C4dMiaMaterialConverter final : public C4dMiaSetters {
public:
    explicit C4dMiaMaterialConverter(ColourSpace colours) : C4dMiaSetters(kMiaMaterialId, kMap, colours) {}

    // The renderer takes a bitmap shader's file and passes over the channel that is chosen in it, unless it is told to
    // bake the shader.
    void setCutoutTexture(const std::string& path) override
    {
        if (BaseShader* shader = write(Slot::AlphaTexture, path))
            SetNodeProperty(*shader, "iray_force_bake", GeData(static_cast<Int32>(true)));
    }
};

} // namespace

Bool ConvertToMia(const Conversion& conversion)
{
    return ConvertWith(C4dMiaMaterialConverter(conversion.colourSpace), conversion);
}
