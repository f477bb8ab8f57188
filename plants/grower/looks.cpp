#include "grower/looks.h"

#include <algorithm>

namespace grower {
namespace {

std::string pictureOf(std::string name, const char* ending)
{
    std::replace(name.begin(), name.end(), ' ', '_');
    return name + ending;
}

} // namespace

void AddBark(SpeciesRecipe& recipe, const BarkLook& look)
{
    SideRecipe side{.texture = pictureOf(look.name, ".png"),
                    .diffuseRoughness = look.roughness,
                    .specular = look.gloss,
                    .specularRoughness = look.glossRoughness};
    recipe.textures.push_back({side.texture, [paint = look.paint] { return paint().color; }});
    if (look.relief > 0) {
        side.normal = pictureOf(look.name, "_normal.png");
        const auto draw = [paint = look.paint, relief = look.relief] {
            return NormalsOfHeights(paint().height, relief);
        };
        recipe.textures.push_back({side.normal, draw});
    }
    recipe.materials.push_back({.id = look.material, .name = look.name, .front = std::move(side), .turns = look.turns});
}

void AddSkin(SpeciesRecipe& recipe, int32_t material, const char* name, const vdt::Color3f& color, uint32_t seed)
{
    const SmoothBarkPaint paint{
        .skin = color, .shade = Scaled(color, 0.8), .pore = Scaled(color, 1.2), .poreShare = 0.08, .seed = seed};
    AddBark(recipe, {.material = material, .name = name, .paint = [paint] { return PaintSmoothBark(paint, 64); }});
}

void AddLeaves(SpeciesRecipe& recipe, const LeafLook& look, const std::vector<LeafColors>& leaves)
{
    const vdt::Color3f palest{0.7f, 0.75f, 0.6f}; // the bloom and the air in the lower side of a leaf
    for (const LeafColors& leaf : leaves) {
        const auto addPicture = [&](const char* ending, double pale) {
            LeafPaint paint{.blade = Mix(leaf.blade, palest, pale),
                            .margin = Mix(leaf.margin, palest, pale),
                            .vein = Mix(leaf.vein, palest, pale),
                            .veinStrength = look.veinStrength,
                            .spot = look.spot,
                            .spotShare = leaf.spotShare,
                            .seed = leaf.seed};
            const auto draw = [shape = look.shape, paint, size = look.size] { return PaintLeaf(shape, paint, size); };
            recipe.textures.push_back({pictureOf(leaf.name, ending), draw});
            return recipe.textures.back().file;
        };
        MaterialRecipe material{.id = leaf.material,
                                .name = leaf.name,
                                .cutOut = true,
                                .translucency = look.translucency,
                                .depth = look.depth};
        material.front = {.texture = addPicture(".png", 0),
                          .diffuseRoughness = look.roughness,
                          .specular = {look.gloss, look.gloss, look.gloss},
                          .specularRoughness = 0.4f};
        material.back = SideRecipe{.texture = addPicture("_back.png", look.pale),
                                   .diffuseRoughness = look.roughness,
                                   .specularRoughness = 0.6f};
        recipe.materials.push_back(std::move(material));
    }
}

std::vector<OrganRecipe> SprayOrgans(const SprayLook& look, const std::vector<SprayOrgan>& organs)
{
    std::vector<OrganRecipe> list;
    for (const SprayOrgan& organ : organs) {
        SprayLook own = look;
        own.spray.leaves = organ.leaves;
        own.spray.seed += static_cast<uint64_t>(organ.group);
        own.body.length = organ.length;
        own.body.material = organ.material;
        list.push_back({organ.group, organ.season, organ.name,
                        [own](vdt::Mesh& mesh) { AddSpray(mesh, own.spray, own.leaf, own.body); }});
    }
    return list;
}

vdt::SeasonColors FoliageColors(const vdt::Color3f& spring, const vdt::Color3f& summer, const vdt::Color3f& autumn,
                                const vdt::Color3f& winter)
{
    const auto opaque = [](const vdt::Color3f& color) { return vdt::Color4f{color.r, color.g, color.b, 1}; };
    return {{"", opaque(summer)},
            {"spring", opaque(spring)},
            {"summer", opaque(summer)},
            {"autumn", opaque(autumn)},
            {"winter", opaque(winter)}};
}

} // namespace grower
