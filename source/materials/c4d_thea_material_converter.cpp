#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "vdt/materials/thea_material_converter.h"

namespace {

constexpr Int32 kWrappedShader = 1000; // of the renderer's texture: the shader that it samples

// The renderer's own texture around a bitmap shader.
HostPtr<BaseShader> loadTheaTexture(const std::string& path, Bool scaled)
{
    HostPtr<BaseShader> picture = loadTextureShader(path, scaled);
    if (!picture) return nullptr;
    HostPtr<BaseShader> texture(BaseShader::Alloc(kTheaTextureId));
    if (!texture) return nullptr;
    BaseShader* wrapped = picture.release();
    wrapped->InsertUnder(texture.get());
    texture->SetParameter(kWrappedShader, GeData(wrapped), DESCFLAGS_SET_0);
    return texture;
}

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 1065, Write::On},           {Slot::DiffuseColor, 27001, Write::Color},
    {Slot::DiffuseTexture, 27002, Write::Texture},   {Slot::AlphaTexture, 1061, Write::On},
    {Slot::AlphaTexture, 6054, Write::First},        {Slot::AlphaTexture, 6151, Write::Texture},
    {Slot::SpecularColor, 28001, Write::Color},      {Slot::SpecularTexture, 30002, Write::Texture},
    {Slot::SpecularRoughness, 32004, Write::Number}, {Slot::TranslucencyColor, 29300, Write::On},
    {Slot::TranslucencyColor, 29001, Write::Color},  {Slot::TranslucencyTexture, 29002, Write::Texture},
    {Slot::BumpTexture, 35300, Write::On},           {Slot::BumpTexture, 35002, Write::Texture},
    {Slot::BumpStrength, 35004, Write::Number},
};
constexpr ParameterMap kMap{.rows = kRows, .loadTexture = loadTheaTexture};

class C4dTheaMaterialConverter final : public C4dMaterialNameConverter, public vdt::TheaMaterialConverter {
public:
    explicit C4dTheaMaterialConverter(ColourSpace colours) : C4dMaterialNameConverter(kTheaMaterialId, kMap, colours) {}

    void setDiffuse(const vdt::Color3f& color, const std::string& texture, float /*roughness*/) override
    {
        write(Slot::DiffuseColor, color);
        write(Slot::DiffuseTexture, texture);
    }

    void setAlpha(const std::string& texture) override { write(Slot::AlphaTexture, texture); }

    void setSpecular(const vdt::Color3f& color, const std::string& texture, float roughness) override
    {
        write(Slot::SpecularColor, color);
        write(Slot::SpecularTexture, texture);
        write(Slot::SpecularRoughness, roughness);
    }

    void setTranslucency(const vdt::Color3f& color, const std::string& texture) override
    {
        write(Slot::TranslucencyColor, color);
        write(Slot::TranslucencyTexture, texture);
    }

    void setBumpAndDisplacement(float strength, const std::string& texture,
                                const std::string& /*displacementTexture*/) override
    {
        if (write(Slot::BumpTexture, texture)) write(Slot::BumpStrength, strength);
    }

    // Not taken: light that comes through is translucency here.
    void setSubsurface(const vdt::Color3f& /*color*/, const std::string& /*texture*/) override {}
};

} // namespace

Bool ConvertToThea(const Conversion& conversion)
{
    return ConvertWith(C4dTheaMaterialConverter(conversion.colourSpace), conversion);
}
