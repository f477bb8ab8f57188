#include "c4d_basematerial.h"
#include "c4d_general.h"
#include "materials/c4d_material_name_converter.h"
#include "mmaterial.h"
#include "mreflection.h"
#include "support/text.h"
#include "vdt/materials/standard_material_converter.h"

#include <algorithm>

namespace {

constexpr Int32 kFirstLevelWithLayers = 15800; // of the host's API: speculars are layers of reflectance from here on

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, MATERIAL_USE_COLOR, Write::On},
    {Slot::DiffuseColor, MATERIAL_COLOR_COLOR, Write::Color},
    {Slot::DiffuseTexture, MATERIAL_COLOR_SHADER, Write::Texture},
    {Slot::AlphaTexture, MATERIAL_USE_ALPHA, Write::On},
    {Slot::AlphaTexture, MATERIAL_ALPHA_SHADER, Write::AlphaTexture},
    {Slot::BumpTexture, MATERIAL_USE_BUMP, Write::On},
    {Slot::BumpTexture, MATERIAL_BUMP_SHADER, Write::Texture},
    {Slot::BumpStrength, MATERIAL_BUMP_STRENGTH, Write::Number},
    {Slot::NormalTexture, MATERIAL_USE_NORMAL, Write::On},
    {Slot::NormalTexture, MATERIAL_NORMAL_SHADER, Write::Texture},
    {Slot::DisplacementTexture, MATERIAL_USE_DISPLACEMENT, Write::On},
    {Slot::DisplacementTexture, MATERIAL_DISPLACEMENT_SHADER, Write::Texture},
    {Slot::DisplacementHeight, MATERIAL_DISPLACEMENT_HEIGHT, Write::Number},
    {Slot::DisplacementType, MATERIAL_DISPLACEMENT_TYPE, Write::Choice},
};
constexpr ParameterMap kMap{.rows = kRows};

// One layer of reflectance, from the layer's first parameter on.
constexpr ParameterRow kLayerRows[] = {
    {Slot::SpecularColor, REFLECTION_LAYER_COLOR_COLOR, Write::Color},
    {Slot::SpecularTexture, REFLECTION_LAYER_COLOR_TEXTURE, Write::Texture},
    {Slot::SpecularRoughness, REFLECTION_LAYER_MAIN_VALUE_ROUGHNESS, Write::Number},
};
constexpr ParameterMap kLayerMap{.rows = kLayerRows};

// The channel of older hosts, where a highlight has a width and a height, and no picture.
constexpr ParameterRow kChannelRows[] = {
    {Slot::SpecularColor, MATERIAL_SPECULAR_COLOR, Write::Color},
    {Slot::SpecularRoughness, MATERIAL_SPECULAR_WIDTH, Write::Number},
    {Slot::Reflectivity, MATERIAL_SPECULAR_HEIGHT, Write::Number},
};
constexpr ParameterMap kChannelMap{.rows = kChannelRows};

class C4dStandardMaterialConverter final : public C4dMaterialNameConverter, public vdt::StandardMaterialConverter {
public:
    explicit C4dStandardMaterialConverter(ColourSpace colours) : C4dMaterialNameConverter(Mmaterial, kMap, colours) {}

    void setMaterialName(const std::string& materialName) override
    {
        name = materialName;
        C4dMaterialNameConverter::setMaterialName(name);
    }

    bool startMaterial(vdt::SurfaceSide side, bool isPair) override
    {
        const bool isBack = side == vdt::SurfaceSide::Back;
        if (isBack) back.reset(BaseMaterial::Alloc(Mmaterial));
        target = isBack ? back.get() : material.get();
        if (!target) return false;
        if (isPair) target->SetName(ToHostString(name + (isBack ? "_ba" : "_fr")));
        return true;
    }

    void setDiffuse(const vdt::Color3f& color, const std::string& texture) override
    {
        write(Slot::DiffuseColor, color);
        write(Slot::DiffuseTexture, texture);
    }

    void setSpecular(const vdt::Color3f& color, const std::string& texture, float roughness) override
    {
        if (!target) return;
        const bool shines = !vdt::IsBlack(color);
        const bool hasLayers = GetC4DVersion() >= kFirstLevelWithLayers;
        target->SetParameter(hasLayers ? MATERIAL_USE_REFLECTION : MATERIAL_USE_SPECULAR,
                             GeData(static_cast<Int32>(shines)), DESCFLAGS_SET_0);
        if (!shines) return;
        hasLayers ? writeLayer(color, texture, roughness) : writeChannel(color, roughness);
    }

    void setAlpha(const std::string& texture) override { write(Slot::AlphaTexture, texture); }

    void setBump(float strength, const std::string& texture) override
    {
        if (write(Slot::BumpTexture, texture)) write(Slot::BumpStrength, strength);
    }

    void setNormal(const std::string& texture) override { write(Slot::NormalTexture, texture); }

    void setDisplacement(const std::string& texture, double height, bool isCentered) override
    {
        if (!write(Slot::DisplacementTexture, texture)) return;
        write(Slot::DisplacementHeight, height);
        write(Slot::DisplacementType, static_cast<Int32>(isCentered ? MATERIAL_DISPLACEMENT_TYPE_INTENSITY_CENTERED
                                                                    : MATERIAL_DISPLACEMENT_TYPE_INTENSITY));
    }

    void takeEntries(Int32 matid, MaterialEntries& result) override
    {
        C4dMaterialNameConverter::takeEntries(matid, result);
        if (!back) return;
        result.back().side = TEXTURETAG_SIDE_FRONT;
        FinishMaterial(*back);
        result.push_back({.material = std::move(back), .matid = matid, .side = TEXTURETAG_SIDE_BACK});
    }

private:
    void writeLayer(const vdt::Color3f& color, const std::string& texture, float roughness)
    {
        const ReflectionLayer* layer = static_cast<Material*>(target)->AddReflectionLayer();
        if (!layer) return;
        const ParameterTarget parameters{target, colourSpace, layer->GetDataID()};
        target->SetParameter(layer->GetDataID() + REFLECTION_LAYER_MAIN_DISTRIBUTION,
                             GeData(static_cast<Int32>(REFLECTION_DISTRIBUTION_SPECULAR_BLINN)), DESCFLAGS_SET_0);
        WriteSlot(parameters, kLayerMap, Slot::SpecularColor, color);
        WriteSlot(parameters, kLayerMap, Slot::SpecularTexture, texture);
        WriteSlot(parameters, kLayerMap, Slot::SpecularRoughness, roughness);
    }

    void writeChannel(const vdt::Color3f& color, float roughness)
    {
        const ParameterTarget parameters{target, colourSpace};
        WriteSlot(parameters, kChannelMap, Slot::SpecularColor, color);
        WriteSlot(parameters, kChannelMap, Slot::SpecularRoughness, roughness);
        WriteSlot(parameters, kChannelMap, Slot::Reflectivity, std::min(vdt::ReflectivityOf(roughness), 1.0f));
    }

    std::string name;
    HostPtr<BaseMaterial> back;
};

} // namespace

Bool ConvertToStandard(const Conversion& conversion)
{
    return ConvertWith(C4dStandardMaterialConverter(conversion.colourSpace), conversion);
}
