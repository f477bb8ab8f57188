#include "materials/material_set.h"

#include <algorithm>

namespace vdt::test {
namespace {

MaterialData named(const std::string& name)
{
    MaterialData material;
    material.name = name;
    return material;
}

// A material of two appearances, without pictures.
MaterialData withBack(const std::string& name)
{
    MaterialData material = named(name);
    material.front.diffuseColor = {0.25f, 0.5f, 0.125f};
    material.front.diffuseRoughness = 0.5f;
    material.front.specularColor = {0.5f, 0.5f, 0.25f};
    MaterialSide& back = *material.backSide(true);
    back.diffuseColor = {0.5f, 0.75f, 0.375f};
    back.diffuseRoughness = 0.75f;
    back.specularColor = {0.125f, 0.25f, 0.25f};
    back.specularRoughness = 0.5f;
    return material;
}

void addPictures(MaterialSide& side, const std::string& stem)
{
    side.diffuseTexture = stem + ".png";
    side.specularTexture = stem + "_specular.png";
    side.normalTexture = stem + "_normal.png";
    side.bumpTexture = stem + "_bump.png";
    side.bumpStrength = 0.375f;
}

MaterialData shining(const std::string& name, float roughness)
{
    MaterialData material = named(name);
    material.front.specularColor = {0.5f, 0.5f, 0.5f};
    material.front.specularRoughness = roughness;
    return material;
}

} // namespace

std::vector<MaterialData> MaterialSet()
{
    std::vector<MaterialData> set;
    const auto add = [&set](MaterialData material) -> MaterialData& {
        material.matid = static_cast<int32_t>(set.size()) + 1;
        return set.emplace_back(std::move(material));
    };

    add(named("oak_br_grey"));
    MaterialData& alias = add(named("oak_lf_alias_back"));
    alias.front.diffuseTexture = "textures/leaf.png";
    alias.aliasBack();
    add(withBack("oak_lf_separate_back"));
    MaterialData& shared = add(named("oak_lf_alpha_of_diffuse"));
    shared.front.diffuseTexture = shared.alphaTexture = "textures/leaf.png";
    MaterialData& own = add(named("oak_lf_alpha_of_its_own"));
    own.front.diffuseTexture = "textures/leaf.jpg";
    own.alphaTexture = "textures/outline.png";

    MaterialData& all = add(withBack("oak_lf_every_texture"));
    addPictures(all.front, "textures/leaf");
    addPictures(*all.backSide(false), "textures/below");
    all.alphaTexture = "textures/outline.png";
    all.displacementTexture = "textures/relief.png";
    all.displacementHeight = 1.5;
    all.subsurfaceTexture = "textures/light.png";

    add(withBack("oak_lf_subsurface_color")).subsurfaceColor = {0.25f, 1, 0.5f};
    MaterialData& both = add(withBack("oak_lf_subsurface_color_and_texture"));
    addPictures(both.front, "textures/leaf");
    addPictures(*both.backSide(false), "textures/below");
    both.alphaTexture = "textures/outline.png";
    both.subsurfaceColor = {0.25f, 1, 0.5f};
    both.subsurfaceTexture = "textures/light.png";
    MaterialData& lit = add(named("oak_lf_subsurface_texture"));
    lit.front.diffuseTexture = "textures/leaf.png";
    lit.subsurfaceTexture = "textures/light.png";
    add(named("oak_br_all_black")).front.diffuseColor = {};

    add(shining("oak_br_mirror", 0));
    add(shining("oak_br_satin", 0.25f));
    add(shining("oak_br_rough", 1));
    return set;
}

MaterialData MaterialOfSet(const std::string& name)
{
    const std::vector<MaterialData> set = MaterialSet();
    return *std::ranges::find(set, name, &MaterialData::name);
}

} // namespace vdt::test
