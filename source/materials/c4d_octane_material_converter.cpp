#include "materials/c4d_material_name_converter.h"
#include "materials/renderer_ids.h"
#include "support/text.h"
#include "vdt/materials/octane_material_converter.h"

namespace {

constexpr Int32 kImageFile = 1000; // of the image texture

HostPtr<BaseShader> loadOctaneImage(const std::string& path, Bool /*scaled*/)
{
    if (path.empty()) return nullptr;
    HostPtr<BaseShader> image(BaseShader::Alloc(kOctaneImageTextureId));
    if (image) image->SetParameter(kImageFile, GeData(TextureFilename(path)), DESCFLAGS_SET_0);
    return image;
}

constexpr ParameterRow kRows[] = {
    {Slot::DiffuseColor, 2515, Write::Color},          {Slot::DiffuseTexture, 2517, Write::Texture},
    {Slot::SpecularColor, 2522, Write::Color},         {Slot::SpecularTexture, 2524, Write::Texture},
    {Slot::SpecularRoughness, 2532, Write::Number},    {Slot::AlphaTexture, 2545, Write::Texture},
    {Slot::BumpTexture, 2539, Write::Texture},         {Slot::IndexOfRefraction, 2551, Write::Number},
    {Slot::TranslucencyTexture, 2555, Write::Texture},
};
constexpr ParameterMap kMap{.rows = kRows, .loadTexture = loadOctaneImage};

// Of the mix.
constexpr Int32 kFrontMaterial = 1271;
constexpr Int32 kBackMaterial = 1272;
constexpr Int32 kAmount = 1277;
constexpr Float kHalf = 0.5;

void writeLook(const vdt::OctaneLook& look, BaseMaterial& material, const std::string& name, ColourSpace colourSpace)
{
    const auto write = [&](Slot slot, const SlotValue& value) {
        WriteSlot({&material, colourSpace}, kMap, slot, value);
    };
    material.SetName(ToHostString(name));
    write(Slot::DiffuseColor, look.diffuseColor);
    write(Slot::DiffuseTexture, look.diffuseTexture);
    write(Slot::SpecularColor, look.specularColor);
    write(Slot::SpecularTexture, look.specularTexture);
    write(Slot::SpecularRoughness, look.specularRoughness);
    write(Slot::AlphaTexture, look.opacityTexture);
    write(Slot::BumpTexture, look.bumpTexture);
    write(Slot::IndexOfRefraction, look.indexOfRefraction);
    write(Slot::TranslucencyTexture, look.translucencyTexture);
}

class C4dOctaneMaterialConverter final : public vdt::OctaneMaterialConverter {
public:
    explicit C4dOctaneMaterialConverter(ColourSpace colours) : colourSpace(colours) {}

    Bool hasMaterial() const { return material != nullptr; }

    bool convert(const vdt::MaterialData& data, int32_t quality)
    {
        if (!vdt::OctaneMaterialConverter::convert(data, quality)) return false;
        writeLook(front, *material, back ? name + "_fr" : name, colourSpace);
        return !back || mixWithBack();
    }

    void takeEntries(Int32 matid, MaterialEntries& result)
    {
        if (mix) {
            result.push_back(JoinPair(std::move(mix), std::move(material), std::move(backMaterial), matid));
            return;
        }
        FinishMaterial(*material);
        result.push_back({.material = std::move(material), .matid = matid});
    }

private:
    bool mixWithBack()
    {
        backMaterial.reset(BaseMaterial::Alloc(kOctaneMaterialId));
        mix.reset(BaseMaterial::Alloc(kOctaneMixMaterialId));
        if (!backMaterial || !mix) return false;
        writeLook(*back, *backMaterial, name + "_ba", colourSpace);
        mix->SetName(ToHostString(name));
        mix->SetParameter(kFrontMaterial, GeData(material.get()), DESCFLAGS_SET_0);
        mix->SetParameter(kBackMaterial, GeData(backMaterial.get()), DESCFLAGS_SET_0);
        mix->SetParameter(kAmount, GeData(kHalf), DESCFLAGS_SET_0);
        return true;
    }

    ColourSpace colourSpace;
    HostPtr<BaseMaterial> material{BaseMaterial::Alloc(kOctaneMaterialId)};
    HostPtr<BaseMaterial> backMaterial;
    HostPtr<BaseMaterial> mix;
};

} // namespace

Bool ConvertToOctane(const Conversion& conversion)
{
    return ConvertWith(C4dOctaneMaterialConverter(conversion.colourSpace), conversion);
}
