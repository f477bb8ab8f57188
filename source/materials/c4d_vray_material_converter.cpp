#include "c4d_baseplugin.h"
#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "support/text.h"
#include "vdt/materials/vray_material_converter.h"

namespace {

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 3000, Write::Color},      {Slot::DiffuseTexture, 3001, Write::On},
    {Slot::DiffuseTexture, 3002, Write::Texture},  {Slot::DiffuseRoughness, 3003, Write::Number},
    {Slot::SpecularColor, 3601, Write::Color},     {Slot::SpecularTexture, 3602, Write::On},
    {Slot::SpecularTexture, 3603, Write::Texture}, {Slot::Glossiness, 3604, Write::Number},
    {Slot::SpecularEnabled, 3605, Write::Switch},  {Slot::IndexOfRefraction, 3606, Write::Number},
    {Slot::FastMode, 3607, Write::Switch},         {Slot::SecondGlossiness, 3608, Write::Number},
    {Slot::AlphaTexture, 4109, Write::On},         {Slot::AlphaTexture, 4110, Write::AlphaTexture},
    {Slot::BumpTexture, 3107, Write::On},          {Slot::BumpTexture, 4122, Write::Texture},
    {Slot::BumpStrength, 3500, Write::Number},     {Slot::SubsurfaceColor, 3010, Write::On},
    {Slot::SubsurfaceColor, 3011, Write::Color},   {Slot::SubsurfaceTexture, 3012, Write::Texture},
};
constexpr ParameterMap kMap{.rows = kRows};

// Links of the two-sided material.
constexpr Int32 kFrontMaterial = 2100;
constexpr Int32 kBackMaterial = 2101;

class C4dVrayMaterialConverter final : public C4dMaterialNameConverter, public vdt::VrayMaterialConverter {
public:
    explicit C4dVrayMaterialConverter(ColourSpace colours) : C4dMaterialNameConverter(kVrayMaterialId, kMap, colours) {}

    // A material is a front even where there is no back.
    void setMaterialName(const std::string& materialName) override
    {
        name = materialName;
        C4dMaterialNameConverter::setMaterialName(name + "_fr");
    }

    bool makeLayerPair(bool hasBack) override
    {
        if (!hasBack || !hasTwoSided) return true;
        container.reset(BaseMaterial::Alloc(kVrayTwoSidedMaterialId));
        back.reset(BaseMaterial::Alloc(kVrayMaterialId));
        if (!container || !back) return false;
        container->SetName(ToHostString(name));
        back->SetName(ToHostString(name + "_ba"));
        container->SetParameter(kFrontMaterial, GeData(material.get()), DESCFLAGS_SET_0);
        container->SetParameter(kBackMaterial, GeData(back.get()), DESCFLAGS_SET_0);
        return true;
    }

    void setSide(vdt::SurfaceSide side, const vdt::Color3f& diffuseColor) override
    {
        target = side == vdt::SurfaceSide::Back ? back.get() : material.get();
        write(Slot::DiffuseColor, diffuseColor);
    }

    void setDiffuseTexture(const std::string& path) override { write(Slot::DiffuseTexture, path); }
    void setDiffuseRoughness(float roughness) override { write(Slot::DiffuseRoughness, roughness); }
    void setSpecularColor(const vdt::Color3f& color) override { write(Slot::SpecularColor, color); }
    void setSpecularTexture(const std::string& path) override { write(Slot::SpecularTexture, path); }
    void setSpecularGlossiness(float glossiness) override { write(Slot::Glossiness, glossiness); }
    void setSpecularLayer(bool on) override { write(Slot::SpecularEnabled, on); }
    void setIndexOfRefraction(float index) override { write(Slot::IndexOfRefraction, index); }
    void setFastMode(bool on) override { write(Slot::FastMode, on); }
    void setReflectionGlossiness(float glossiness) override { write(Slot::SecondGlossiness, glossiness); }
    void setAlphaTexture(const std::string& path) override { write(Slot::AlphaTexture, path); }
    void setBumpTexture(const std::string& path) override { write(Slot::BumpTexture, path); }
    void setBumpStrength(float strength) override { write(Slot::BumpStrength, strength); }

    void setSubsurface(const vdt::Color3f& color, const std::string& texture,
                       const vdt::Color3f& /*diffuseColor*/) override
    {
        write(Slot::SubsurfaceColor, color);
        write(Slot::SubsurfaceTexture, texture);
    }

    void takeEntries(Int32 matid, MaterialEntries& result) override
    {
        if (!container) return C4dMaterialNameConverter::takeEntries(matid, result);
        result.push_back(JoinPair(std::move(container), std::move(material), std::move(back), matid));
    }

private:
    // Older releases of the renderer come without the material of two sides: the front alone has to do then.
    const Bool hasTwoSided = FindPlugin(kVrayTwoSidedMaterialId, PLUGINTYPE_MATERIAL) != nullptr;
    std::string name;
    HostPtr<BaseMaterial> back;
    HostPtr<BaseMaterial> container;
};

} // namespace

Bool ConvertToVray(const Conversion& conversion)
{
    return ConvertWith(C4dVrayMaterialConverter(conversion.colourSpace), conversion);
}
