#include "vdt/materials/thea_material_converter.h"

namespace vdt {

bool TheaMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    const MaterialSide& front = material.front;
    const MaterialSide& far = FarSide(material);
    const bool isTranslucent = quality >= kQualityHigh && !IsBlack(material.subsurfaceColor);
    setMaterialName(material.name);
    setDiffuse(front.diffuseColor, MediumTexture(front.diffuseTexture, quality), front.diffuseRoughness);
    if (quality >= kQualityMedium) setAlpha(material.alphaTexture);
    setSpecular(front.specularColor, HighTexture(front.specularTexture, quality), front.specularRoughness);
    if (isTranslucent) setTranslucency(far.diffuseColor, far.diffuseTexture);
    if (quality >= kQualityMedium)
        setBumpAndDisplacement(front.bumpStrength, front.bumpTexture,
                               HighTexture(material.displacementTexture, quality));
    if (isTranslucent) setSubsurface(material.subsurfaceColor, material.subsurfaceTexture);
    return true;
}

} // namespace vdt
