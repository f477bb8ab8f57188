#include "vdt/materials/mia_material_converter.h"

namespace vdt {

bool MiaMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    const MaterialSide& front = material.front;
    const bool hasBack = material.back() != nullptr;
    setMaterialName(material.name);
    setDiffuseColor(front.diffuseColor);
    setDiffuseTexture(MediumTexture(front.diffuseTexture, quality));
    setDiffuseRoughness(front.diffuseRoughness);
    setReflectionColor(front.specularColor);
    setReflectionTexture(HighTexture(front.specularTexture, quality));
    setReflectivity(ReflectivityOf(front.specularRoughness));
    setReflectionGlossiness(1);
    setIndexOfRefraction(kIndexOfRefraction);
    setFresnel(true);
    setFastGlossy(quality < kQualityHigh);
    setThinWalled(hasBack);
    setBacksideCulling(!hasBack);
    setCutoutTexture(MediumTexture(material.alphaTexture, quality));
    setBumpTexture(MediumTexture(front.bumpTexture, quality));
    setBumpStrength(BumpStrength(front, quality));

    // A subsurface colour of its own turns the block off: only a picture makes these materials translucent.
    if (!IsBlack(material.subsurfaceColor) || quality < kQualityHigh || material.subsurfaceTexture.empty()) return true;
    const MaterialSide& far = FarSide(material);
    setTranslucency(true);
    setTranslucencyWeight(1);
    setTranslucencyTexture(far.diffuseTexture);
    setSubsurfaceEnabled(true);
    setSubsurfaceWeight(1);
    setSubsurfaceColor(far.diffuseColor);
    setSubsurfaceTexture(material.subsurfaceTexture);
    return true;
}

} // namespace vdt
