// Male fern: a shuttlecock of tall fronds around a short rootstock, with deeply cut leaflets in pairs.
#include "grower/blade.h"
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kRootstock, kRib, kFresh, kGreen, kYellow, kBrown };
enum Group : int32_t { kPair, kOtherPair, kTip };

// A leaflet of the first order; its own leaflets are deep round lobes.
const LeafShape kPinna{
    .halfWidth = {{0, 0.12}, {0.12, 0.155}, {0.5, 0.12}, {0.85, 0.05}, {1, 0}},
    .stalk = 0.01,
    .lobes = 15,
    .lobeDepth = 0.78,
    .slant = 0.35,
    .veins = 15,
};

// The end of a frond that is still rolled up.
const LeafShape kCrosier{
    .halfWidth = {{0, 0.10}, {0.5, 0.09}, {1, 0}},
    .stalk = 0,
    .veins = 0,
};

std::vector<OrganRecipe> organs()
{
    const SprayLook pair{
        .spray = {.length = 1,
                  .firstAt = -0.3,
                  .lastAt = 0,
                  .angle = {74, 5},
                  .angleAtTip = 72,
                  .turn = {180, 6},
                  .flat = 1,
                  .scale = {1, 0.08},
                  .scaleAtTip = 1,
                  .seed = 31},
        .leaf = kPinna,
        .body = {.fold = -6, .droop = 0.12},
    };
    std::vector<OrganRecipe> list = SprayOrgans(pair, {
                                                          {kPair, "spring", "fresh pair", kFresh, 2, 10},
                                                          {kOtherPair, "spring", "fresh pair", kFresh, 2, 8},
                                                          {kPair, "summer", "pair", kGreen, 2, 17},
                                                          {kOtherPair, "summer", "other pair", kGreen, 2, 16},
                                                          {kPair, "autumn", "pair", kYellow, 2, 15},
                                                          {kOtherPair, "autumn", "lone leaflet", kBrown, 1, 14},
                                                          {kPair, "winter", "withered leaflet", kBrown, 1, 10},
                                                      });
    list.push_back({kTip, "spring", "crosier", [](vdt::Mesh& mesh) {
                        AddBlade(mesh, kCrosier,
                                 {.length = 34,
                                  .width = 3.6,
                                  .arch = -760,
                                  .stiffness = 1.2,
                                  .fold = 40,
                                  .pieces = 22,
                                  .material = kFresh},
                                 vdt::Matrix::Identity());
                    }});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 811,
        .height = 100,
        .trunkRadius = 3,
        .tipRadius = 0.08,
        .trunkLength = 0.08,
        .crown = {{0, 0.9}, {0.4, 1.0}, {0.8, 1.0}, {1.1, 0.9}, {1.3, 0.5}},
        .trunk = {.segment = 0.8, .wander = 1, .material = kRootstock},
        .stems = {{.spacing = 0.22,
                   .firstAt = 0.25,
                   .lastAt = 0.98,
                   .length = {1.02, 0.14},
                   .angle = {44, 7},
                   .angleAtTip = 12,
                   .changeFrom = 0.25,
                   .turn = {137.5, 9},
                   .segment = 4.2,
                   .wander = 1,
                   .pull = 0.01,
                   .pullAtTip = -0.065,
                   .shortest = 20,
                   .material = kRib}},
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kPair, kOtherPair},
                 .firstAt = 0.14,
                 .angle = {0, 2},
                 .scale = {1, 0.05},
                 .scaleAlong = {{0, 0.3}, {0.2, 0.6}, {0.45, 1}, {0.65, 0.96}, {0.88, 0.52}, {1, 0.26}},
                 .upperSide = true},
                {.fromLayer = 1,
                 .groups = {kTip},
                 .tipOnly = true,
                 .angle = {0, 2},
                 .scale = {1, 0.2},
                 .upperSide = true},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 812;
    age.height = 65;
    age.stems[0].spacing = 0.24;
    age.stems[0].segment = 3.2;
    age.foliage[0].scale = {0.72, 0.05};
    age.foliage[1].scale = {0.75, 0.15};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 813;
    age.height = 30;
    age.trunkRadius = 1;
    age.trunk.segment = 0.4;
    age.stems[0].spacing = 0.2;
    age.stems[0].segment = 2;
    age.stems[0].shortest = 8;
    age.foliage[0].scale = {0.42, 0.03};
    age.foliage[1].scale = {0.45, 0.1};
    return age;
}

} // namespace

SpeciesRecipe DryopterisFilixMas()
{
    SpeciesRecipe recipe{
        .name = "Dryopteris filix-mas",
        .labels = {{"en", "Male fern"},
                   {"de", "Gew\u00f6hnlicher Wurmfarn"},
                   {"fr", "Foug\u00e8re m\u00e2le"},
                   {"es", "Helecho macho"},
                   {"it", "Felce maschio"},
                   {"ja", "\u30bb\u30a4\u30e8\u30a6\u30aa\u30b7\u30c0"}},
        .descriptions =
            {{"en", "Woodland fern of the northern half of the world. Its fronds unroll in spring, stand as a "
                    "shuttlecock through the summer and wither in late autumn."},
             {"de", "Waldfarn der Nordhalbkugel. Die Wedel entrollen sich im Fr\u00fchling, stehen im Sommer als "
                    "Trichter und welken im Sp\u00e4therbst."},
             {"fr", "Foug\u00e8re des bois de l'h\u00e9misph\u00e8re nord. Ses frondes se d\u00e9roulent au "
                    "printemps, forment un entonnoir en \u00e9t\u00e9 et fanent \u00e0 la fin de l'automne."},
             {"es", "Helecho de los bosques del hemisferio norte. Sus frondes se desenrollan en primavera, forman un "
                    "embudo en verano y se marchitan a finales del oto\u00f1o."},
             {"it", "Felce dei boschi dell'emisfero nord. Le fronde si srotolano in primavera, formano un imbuto in "
                    "estate e appassiscono nel tardo autunno."},
             {"ja", "\u5317\u534a\u7403\u306e\u68ee\u306b\u751f\u3048\u308b\u30b7\u30c0\u3002\u6625\u306b\u8449\u304c"
                    "\u5dfb\u304d\u3092\u89e3\u304d\u3001\u590f\u306f\u6f0f\u6597\u72b6\u306b\u5e83\u304c\u308a\u3001"
                    "\u6669\u79cb\u306b\u67af\u308c\u308b\u3002"}},
        .wood = {{"", {0.48f, 0.42f, 0.22f, 1}}},
        .foliage =
            FoliageColors({0.50f, 0.66f, 0.24f}, {0.30f, 0.47f, 0.17f}, {0.62f, 0.50f, 0.20f}, {0.46f, 0.33f, 0.20f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kRootstock,
        .proxyFoliage = kGreen,
    };
    AddSkin(recipe, kRootstock, "rootstock", {0.36f, 0.26f, 0.17f}, 81);
    AddSkin(recipe, kRib, "rib", {0.56f, 0.55f, 0.27f}, 82);
    AddLeaves(
        recipe, {.shape = kPinna, .veinStrength = 0.6, .spot = {0.42f, 0.27f, 0.14f}, .pale = 0.2, .translucency = 0.5},
        {{kFresh, "fresh leaflet", {0.50f, 0.70f, 0.22f}, {0.56f, 0.74f, 0.28f}, {0.66f, 0.76f, 0.40f}, 83},
         {kGreen, "leaflet", {0.29f, 0.50f, 0.15f}, {0.35f, 0.55f, 0.19f}, {0.50f, 0.60f, 0.30f}, 84},
         {kYellow, "yellow leaflet", {0.72f, 0.62f, 0.20f}, {0.62f, 0.46f, 0.18f}, {0.66f, 0.56f, 0.30f}, 85, 0.2},
         {kBrown, "withered leaflet", {0.54f, 0.37f, 0.19f}, {0.46f, 0.30f, 0.16f}, {0.40f, 0.26f, 0.14f}, 86}});
    return recipe;
}

} // namespace grower
