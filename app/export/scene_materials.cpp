#include "export/scene_materials.h"

#include "console/text_table.h"
#include "export/mean_color.h"
#include "export/picture.h"
#include "export/srgb.h"

#include <algorithm>
#include <cmath>

namespace verdanth {
namespace {

float unitRange(float value)
{
    return value >= 0 ? std::min(value, 1.0F) : 0;
}

template <class Color> vdt::Color3f clamped(const Color& color)
{
    return {unitRange(color.r), unitRange(color.g), unitRange(color.b)};
}

bool isBlack(const vdt::Color3f& color)
{
    return color == vdt::Color3f{0, 0, 0};
}

// How light a colour seems, as its numbers tell: of sRGB.
float luma(const vdt::Color3f& color)
{
    return 0.2126F * color.r + 0.7152F * color.g + 0.0722F * color.b;
}

float brightest(const vdt::Color3f& color)
{
    return std::max({color.r, color.g, color.b});
}

// `color` as light as the brighter of the two, with its own hue.
vdt::Color3f liftedTo(const vdt::Color3f& color, const vdt::Color3f& other)
{
    if (brightest(color) >= brightest(other)) return color;
    const float factor = LinearFromSrgb(brightest(other)) / LinearFromSrgb(brightest(color));
    const auto lifted = [&](float channel) { return SrgbFromLinear(unitRange(LinearFromSrgb(channel) * factor)); };
    return {lifted(color.r), lifted(color.g), lifted(color.b)};
}

} // namespace

uint32_t SceneMaterials::indexOf(int32_t matid)
{
    if (matid == lastId && !indices.empty()) return lastIndex;
    const auto [entry, isNew] = indices.emplace(matid, static_cast<uint32_t>(materials->size()));
    if (isNew) materials->push_back(convert(matid));
    lastId = matid;
    return lastIndex = entry->second;
}

SceneMaterial SceneMaterials::convert(int32_t matid)
{
    SceneMaterial material;
    material.matid = matid;
    material.name = Numbered("material", matid);
    const auto hasId = [matid](const vdt::MaterialData& data) { return data.matid == matid; };
    const auto found = std::find_if(model->materials.begin(), model->materials.end(), hasId);
    if (found == model->materials.end()) {
        if (matid == kCrownMaterial) return crownMaterial();
        messages->warning("there is no " + material.name + "; what uses it becomes grey");
        material.color = vdt::MaterialSide().diffuseColor;
        return material;
    }

    const bool isPlain = quality == MaterialQuality::Low;
    const std::string alphaTexture = usable(found->alphaTexture, MaterialQuality::Low);
    static_cast<SceneSide&>(material) = convertSide(found->front, alphaTexture);
    if (!found->name.empty()) material.name = found->name;
    if (!isPlain) material.alphaTexture = alphaTexture;
    material.twoSided = found->back() != nullptr;
    if (found->hasSeparateBack() && *found->back() != found->front)
        material.back = convertSide(*found->back(), alphaTexture);
    if (material.twoSided && quality == MaterialQuality::High) addTransmission(*found, material);
    return material;
}

SceneSide SceneMaterials::convertSide(const vdt::MaterialSide& source, const std::string& alphaTexture)
{
    SceneSide side;
    side.color = clamped(source.diffuseColor);
    side.colorTexture = usable(source.diffuseTexture, MaterialQuality::Low);
    side.specularColor = clamped(source.specularColor);
    side.specularTexture = usable(source.specularTexture, MaterialQuality::High);
    const bool isGlossy = !side.specularTexture.empty() || !isBlack(side.specularColor);
    side.roughness = isGlossy ? unitRange(source.specularRoughness) : 1;
    if (quality == MaterialQuality::Low) {
        side.color = MeanColor(side, alphaTexture);
        side.colorTexture.clear();
        return side;
    }
    side.normalTexture = usable(source.normalTexture);
    const bool isBumpy = std::isfinite(source.bumpStrength) && source.bumpStrength != 0;
    if (isBumpy) side.bumpTexture = usable(source.bumpTexture);
    if (!side.bumpTexture.empty()) side.bumpStrength = source.bumpStrength;
    return side;
}

// A surface swallows as much of the light that goes through as of the light that comes back. How much that is, the
// diffuse colour tells; which part of the rest goes through, the subsurface colour beside it. A leaf that lets through
// as much as it gives back has two colours equally light.
void SceneMaterials::addTransmission(const vdt::MaterialData& source, SceneMaterial& material)
{
    const vdt::Color3f diffuse = clamped(source.front.diffuseColor);
    vdt::Color3f inner = clamped(source.subsurfaceColor);
    const std::string texture = usable(source.subsurfaceTexture);
    if (isBlack(inner) && !texture.empty()) {
        SceneSide picture;
        picture.color = diffuse; // of a picture that others can read
        picture.colorTexture = texture;
        inner = MeanColor(picture, {});
    }
    if (isBlack(inner)) return;
    material.transmission = luma(inner) / (luma(inner) + luma(diffuse));
    material.transmissionColor = liftedTo(inner, diffuse);
    material.transmissionTexture = texture;
}

SceneMaterial SceneMaterials::crownMaterial() const
{
    SceneMaterial material;
    material.matid = kCrownMaterial;
    material.name = "crown";
    material.color = {0.3F, 0.7F, 0.27F};
    for (const std::string& wanted : {season, std::string()}) {
        const auto found = model->foliageColors.find(wanted);
        if (found == model->foliageColors.end()) continue;
        material.color = clamped(found->second);
        break;
    }
    return material;
}

// The path if the picture is wanted, and can be used; else empty, with a warning the first time if it cannot.
std::string SceneMaterials::usable(const std::string& path, MaterialQuality least)
{
    if (path.empty() || quality < least) return {};
    const auto [entry, isNew] = usablePictures.emplace(path, false);
    if (isNew) {
        std::string problem;
        entry->second = ProbePicture(path, problem).has_value();
        if (!entry->second) messages->warning("texture " + path + " " + problem + "; the material does without it");
    }
    return entry->second ? path : std::string();
}

} // namespace verdanth
