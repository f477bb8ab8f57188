// What recipes say again and again, in one line each: materials together with the pictures that they show, sprays of
// leaves, colours of the seasons. A picture's file is called after its material.
#pragma once

#include "grower/bark.h"
#include "grower/organs.h"
#include "grower/recipe.h"

namespace grower {

/// Wood, or anything else that one opaque picture covers all around.
struct BarkLook {
    int32_t material = 0;
    std::string name{};
    std::function<Bark()> paint{};
    int turns = 1;     // that the painted bark is long
    double relief = 0; // steepness of the normals' picture; without one at 0
    float roughness = 0.3f;
    vdt::Color3f gloss{};
    float glossRoughness = 0.4f;
};

/// What all leaves of a species have in common.
struct LeafLook {
    LeafShape shape{};
    double veinStrength = 0.5;
    vdt::Color3f spot{};
    double pale = 0.35; // how much the lower side is paler than the upper one, 0 to 1
    float roughness = 0;
    float gloss = 0.06f;
    double translucency = 0.45;
    double depth = 0.03; // model units
    uint32_t size = 256; // of the pictures
};

/// One of a species' leaves.
struct LeafColors {
    int32_t material = 0;
    std::string name{};
    vdt::Color3f blade{}, margin{}, vein{};
    uint32_t seed = 1;
    double spotShare = 0;
};

/// A piece of twig with leaves, of which a species has some that differ little.
struct SprayLook {
    SprayShape spray{}; // its seed is the first group's; each further group has the next one
    LeafShape leaf{};
    LeafBody body{};
};

struct SprayOrgan {
    int32_t group = 0;
    std::string season{};
    std::string name{};
    int32_t material = 0;
    int leaves = 4;
    double length = 5; // of a leaf
};

/// Adds the material and its one or two pictures.
void AddBark(SpeciesRecipe& recipe, const BarkLook& look);

/// Adds the skin of a stalk, a rib or a bud: one colour with fine lines and a few spots.
void AddSkin(SpeciesRecipe& recipe, int32_t material, const char* name, const vdt::Color3f& color, uint32_t seed);

/// Adds a cut out material of two sides and their pictures for each of the leaves.
void AddLeaves(SpeciesRecipe& recipe, const LeafLook& look, const std::vector<LeafColors>& leaves);

std::vector<OrganRecipe> SprayOrgans(const SprayLook& look, const std::vector<SprayOrgan>& organs);

/// A foliage's colour in each season; without a season it is that of summer.
vdt::SeasonColors FoliageColors(const vdt::Color3f& spring, const vdt::Color3f& summer, const vdt::Color3f& autumn,
                                const vdt::Color3f& winter);

} // namespace grower
