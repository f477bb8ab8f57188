#include "export/scene_materials.h"

#include "console/text_table.h"
#include "export/picture.h"

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

// A highlight is as strong as its colour and as narrow as its roughness says; without one the surface is matt.
float roughnessOf(const vdt::MaterialSide& side)
{
    const vdt::Color3f color = clamped(side.specularColor);
    const float strength = side.specularTexture.empty() ? std::max({color.r, color.g, color.b}) : 1;
    return 1 - strength * (1 - unitRange(side.specularRoughness));
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

    const vdt::MaterialSide& front = found->front;
    if (!found->name.empty()) material.name = found->name;
    material.color = clamped(front.diffuseColor);
    material.colorTexture = usable(front.diffuseTexture);
    material.alphaTexture = usable(found->alphaTexture);
    material.normalTexture = usable(front.normalTexture);
    material.bumpTexture = usable(front.bumpTexture);
    material.bumpStrength = std::isfinite(front.bumpStrength) ? front.bumpStrength : 0;
    material.specularColor = clamped(front.specularColor);
    material.specularTexture = usable(front.specularTexture);
    material.roughness = roughnessOf(front);
    material.twoSided = found->back() != nullptr;
    if (found->hasSeparateBack() && *found->back() != front)
        messages->message("material \"" + material.name + "\": its back is shown like its front");
    return material;
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

// The path if the picture can be used; else empty, with a warning the first time.
std::string SceneMaterials::usable(const std::string& path)
{
    if (path.empty()) return {};
    const auto [entry, isNew] = usablePictures.emplace(path, false);
    if (isNew) {
        std::string problem;
        entry->second = ProbePicture(path, problem).has_value();
        if (!entry->second) messages->warning("texture " + path + " " + problem + "; its colour is used instead");
    }
    return entry->second ? path : std::string();
}

} // namespace verdanth
