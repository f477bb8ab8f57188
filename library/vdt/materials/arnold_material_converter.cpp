#include "vdt/materials/arnold_material_converter.h"

namespace vdt {
namespace {

constexpr float kDiffuseWeight = 0.7f;
constexpr float kSpecularWeight = 0.3f;

float lumaOf(const Color3f& color)
{
    return 0.299f * color.r + 0.587f * color.g + 0.114f * color.b;
}

} // namespace

bool ArnoldMaterialConverter::convert(const MaterialData& material, int32_t quality)
{
    const MaterialSide& front = material.front;
    const bool hasTwoSurfaces = HasTwoLooks(material, quality) && !IsBlack(material.subsurfaceColor);
    const auto convertSide = [&](SurfaceSide which, const MaterialSide& side) {
        setDiffuse(which, side.diffuseColor, MediumTexture(side.diffuseTexture, quality), side.diffuseRoughness,
                   kDiffuseWeight);
        setSpecular(side.specularColor, HighTexture(side.specularTexture, quality), side.specularRoughness,
                    kSpecularWeight);
    };

    setMaterialName(material.name);
    if (!setUpTwoSided(hasTwoSurfaces)) return false;
    convertSide(SurfaceSide::Front, front);
    if (hasTwoSurfaces) convertSide(SurfaceSide::Back, *material.back());
    setAlpha(MediumTexture(material.alphaTexture, quality));
    setSideCount(material.back() ? 2 : 1);
    setIndexOfRefraction(kIndexOfRefraction);
    setFresnel(true);
    setBumpStrength(BumpStrength(front, quality), MediumTexture(front.bumpTexture, quality));
    if (quality >= kQualityHigh)
        setSubsurface(lumaOf(material.subsurfaceColor), material.subsurfaceColor, material.subsurfaceTexture);
    return true;
}

} // namespace vdt
