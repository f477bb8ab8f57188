#include "vdt/materials/vray_material_converter.h"

namespace vdt {

bool VrayMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    setMaterialName(material.name);
    const bool isTranslucent = !IsBlack(material.subsurfaceColor) || !material.subsurfaceTexture.empty();
    if (isTranslucent && quality >= kQualityHigh)
        setSubsurface(material.subsurfaceColor, material.subsurfaceTexture, FarSide(material).diffuseColor);

    const bool hasTwoLooks = HasTwoLooks(material, quality);
    if (!makeLayerPair(hasTwoLooks)) return false;
    convertSide(material, SurfaceSide::Front, material.front, quality);
    if (hasTwoLooks) convertSide(material, SurfaceSide::Back, *material.back(), quality);
    return true;
}

void VrayMaterialConverter::convertSide(const MaterialData& material, SurfaceSide which, const MaterialSide& side,
                                        int32_t quality)
{
    setSide(which, side.diffuseColor);
    setDiffuseTexture(MediumTexture(side.diffuseTexture, quality));
    setDiffuseRoughness(side.diffuseRoughness);
    setSpecularColor(side.specularColor);
    setSpecularTexture(HighTexture(side.specularTexture, quality));
    setSpecularGlossiness(GlossinessOf(side.specularRoughness));
    setSpecularLayer(!IsBlack(side.specularColor));
    setIndexOfRefraction(kIndexOfRefraction);
    setFastMode(quality < kQualityHigh);
    setReflectionGlossiness(GlossinessOf(side.specularRoughness));
    setAlphaTexture(MediumTexture(material.alphaTexture, quality));
    setBumpTexture(MediumTexture(side.bumpTexture, quality));
    setBumpStrength(BumpStrength(side, quality));
}

} // namespace vdt
