#include "vdt/materials/corona_material_converter.h"

namespace vdt {

bool CoronaMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    const MaterialSide& front = material.front;
    const MaterialSide& far = FarSide(material);
    setMaterialName(material.name);
    setDiffuse(front.diffuseColor, MediumTexture(front.diffuseTexture, quality), front.diffuseRoughness);
    if (quality >= kQualityMedium) setOpacity(material.alphaTexture, material.alphaTexture != front.diffuseTexture);
    if (quality >= kQualityHigh) {
        setSpecular(front.specularColor, front.specularTexture, front.specularRoughness);
        if (!IsBlack(material.subsurfaceColor) && !material.subsurfaceTexture.empty())
            setTranslucency(far.diffuseColor, far.diffuseTexture);
    }
    if (quality >= kQualityMedium) setBump(front.bumpStrength, front.bumpTexture);
    return true;
}

} // namespace vdt
