#include "vdt/materials/octane_material_converter.h"

namespace vdt {
namespace {

OctaneLook lookOf(const MaterialData& material, const MaterialSide& side, int32_t quality)
{
    OctaneLook look;
    look.diffuseColor = side.diffuseColor;
    look.diffuseTexture = MediumTexture(side.diffuseTexture, quality);
    look.specularColor = side.specularColor;
    look.specularTexture = HighTexture(side.specularTexture, quality);
    look.specularRoughness = side.specularRoughness;
    look.opacityTexture = MediumTexture(material.alphaTexture, quality);
    if (quality >= kQualityHigh && !IsBlack(material.subsurfaceColor)) {
        look.bumpTexture = side.bumpTexture;
        look.translucencyTexture = FarSide(material).diffuseTexture;
    }
    return look;
}

} // namespace

bool OctaneMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    name = material.name;
    front = lookOf(material, material.front, quality);
    back.reset();
    if (HasTwoLooks(material, quality)) back = lookOf(material, *material.back(), quality);
    return true;
}

} // namespace vdt
