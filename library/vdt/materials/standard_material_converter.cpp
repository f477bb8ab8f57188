#include "vdt/materials/standard_material_converter.h"

namespace vdt {

bool StandardMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    const bool isPair = HasTwoLooks(material, quality);
    const auto convertSide = [&](SurfaceSide which, const MaterialSide& side) {
        if (!startMaterial(which, isPair)) return false;
        setDiffuse(side.diffuseColor, MediumTexture(side.diffuseTexture, quality));
        setSpecular(side.specularColor, HighTexture(side.specularTexture, quality), side.specularRoughness);
        setAlpha(MediumTexture(material.alphaTexture, quality));
        setBump(BumpStrength(side, quality), MediumTexture(side.bumpTexture, quality));
        setNormal(MediumTexture(side.normalTexture, quality));
        setDisplacement(HighTexture(material.displacementTexture, quality), material.displacementHeight,
                        material.displacementCentered);
        return true;
    };

    setMaterialName(material.name);
    return convertSide(SurfaceSide::Front, material.front) &&
           (!isPair || convertSide(SurfaceSide::Back, *material.back()));
}

} // namespace vdt
