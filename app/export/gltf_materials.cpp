#include "export/gltf_materials.h"

#include "console/as_written.h"
#include "export/srgb.h"

#include <algorithm>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

constexpr double kAlphaCutoff = 0.5;
constexpr const char* kHighlights = "KHR_materials_specular";
constexpr const char* kTransmission = "KHR_materials_diffuse_transmission";

Json textureInfo(size_t image)
{
    return {{"index", image}}; // textures and images pair up one to one
}

Json linearColor(const vdt::Color3f& c)
{
    return {AsWritten(LinearFromSrgb(c.r)), AsWritten(LinearFromSrgb(c.g)), AsWritten(LinearFromSrgb(c.b))};
}

} // namespace

GltfMaterials::GltfMaterials(std::span<const SceneMaterial> source, BackForm backForm, GltfImages& pictures)
    : materials(source),
      images(&pictures)
{
    size_t next = materials.size();
    for (const SceneMaterial& material : materials) {
        const bool isOwn = material.back && backForm == BackForm::Own;
        backs.push_back(isOwn ? std::optional(next++) : std::nullopt);
    }
}

Json GltfMaterials::describe()
{
    Json all = Json::array();
    for (size_t i = 0; i < materials.size(); ++i) all.push_back(described(i, materials[i], {}));
    for (size_t i = 0; i < materials.size(); ++i)
        if (backs[i]) all.push_back(described(i, *materials[i].back, "_back"));
    return all;
}

Json GltfMaterials::described(size_t index, const SceneSide& side, const std::string& suffix)
{
    const SceneMaterial& material = materials[index];
    const GltfBaseTexture base = images->addBaseTexture(side, material);
    Json result = {{"name", material.name + suffix}, {"pbrMetallicRoughness", describedSurface(side, base)}};
    if (const auto normals = images->addNormals(side)) result["normalTexture"] = textureInfo(*normals);
    if (base.cutOut) {
        result["alphaMode"] = "MASK";
        result["alphaCutoff"] = kAlphaCutoff;
    }
    if (material.twoSided && !backs[index]) result["doubleSided"] = true;
    extend(result, kHighlights, describedHighlights(side));
    if (material.transmission > 0) {
        const bool isBase = base.hasColor && side.colorTexture == material.transmissionTexture;
        extend(result, kTransmission, describedTransmission(material, isBase ? base.image : std::nullopt));
    }
    result["extras"] = {{"matid", material.matid}};
    Json told = Json::parse(material.extras, nullptr, false);
    if (told.is_object()) result["extras"]["renderer"] = std::move(told);
    return result;
}

Json GltfMaterials::describedSurface(const SceneSide& side, const GltfBaseTexture& base) const
{
    Json color = {1, 1, 1};
    if (!base.hasColor) color = linearColor(side.color);
    color.push_back(1);
    Json surface = {{"baseColorFactor", std::move(color)}};
    if (base.image) surface["baseColorTexture"] = textureInfo(*base.image);
    surface["metallicFactor"] = 0;
    surface["roughnessFactor"] = AsWritten(side.roughness);
    return surface;
}

// Every surface of the core shines like glass. This makes that weaker and gives it a hue.
Json GltfMaterials::describedHighlights(const SceneSide& side)
{
    if (const auto image = images->add(side.specularTexture)) return {{"specularColorTexture", textureInfo(*image)}};
    const vdt::Color3f& c = side.specularColor;
    const float strength = LinearFromSrgb(std::max({c.r, c.g, c.b}));
    Json highlights = {{"specularFactor", AsWritten(strength)}};
    if (c.r == c.g && c.g == c.b) return highlights;
    for (const float channel : {c.r, c.g, c.b})
        highlights["specularColorFactor"].push_back(AsWritten(LinearFromSrgb(channel) / strength));
    return highlights;
}

// `image`: the texture, where the file has it already.
Json GltfMaterials::describedTransmission(const SceneMaterial& material, std::optional<size_t> image)
{
    Json transmission = {{"diffuseTransmissionFactor", AsWritten(material.transmission)}};
    if (!image) image = images->add(material.transmissionTexture);
    if (image)
        transmission["diffuseTransmissionColorTexture"] = textureInfo(*image);
    else
        transmission["diffuseTransmissionColorFactor"] = linearColor(material.transmissionColor);
    return transmission;
}

void GltfMaterials::extend(Json& material, const char* extension, Json content)
{
    used.insert(extension);
    material["extensions"][extension] = std::move(content);
}

} // namespace verdanth
