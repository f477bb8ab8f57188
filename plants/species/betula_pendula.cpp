// Silver birch: a slender white trunk, ascending boughs, and fine twigs that hang like a curtain.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t {
    kTrunk,
    kFoot,
    kMiddle,
    kBough,
    kTwig,
    kLeafSpring,
    kLeafSummer,
    kLeafAutumn,
    kLeafGold,
    kCatkin
};
enum Group : int32_t { kSpray, kOtherSpray, kSparseSpray, kCatkins };

// Rhombic with a long tip, widest near the base, doubly toothed.
const LeafShape kLeaf{
    .halfWidth =
        {{0, 0.05}, {0.08, 0.17}, {0.22, 0.36}, {0.34, 0.405}, {0.48, 0.35}, {0.68, 0.185}, {0.86, 0.06}, {1, 0}},
    .stalk = 0.38,
    .teeth = 9,
    .toothDepth = 0.16,
    .slant = 0.45,
    .veins = 7,
};

Bark trunkBark()
{
    return PaintPaperBark({.paper = {0.91f, 0.90f, 0.87f},
                           .peel = {0.80f, 0.74f, 0.67f},
                           .pore = {0.22f, 0.19f, 0.17f},
                           .patch = {0.15f, 0.135f, 0.125f},
                           .patchShare = 0.14,
                           .turns = 4,
                           .seed = 11},
                          384);
}

Bark boughBark()
{
    return PaintPaperBark({.paper = {0.80f, 0.77f, 0.73f},
                           .peel = {0.55f, 0.45f, 0.38f},
                           .pore = {0.25f, 0.20f, 0.17f},
                           .patch = {0.22f, 0.17f, 0.14f},
                           .patchShare = 0.3,
                           .seed = 12},
                          256);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.33f, 0.20f, 0.14f},
                            .shade = {0.22f, 0.13f, 0.10f},
                            .pore = {0.66f, 0.58f, 0.48f},
                            .poreShare = 0.12,
                            .seed = 13},
                           128);
}

Bark catkinBark()
{
    return PaintRidgedBark({.ridge = {0.70f, 0.58f, 0.24f},
                            .crack = {0.36f, 0.22f, 0.10f},
                            .moss = {0.60f, 0.62f, 0.24f},
                            .ridges = 6,
                            .plates = 8,
                            .mossShare = 0.2,
                            .seed = 31},
                           128);
}

// A hand's breadth of hanging twig with its leaves.
const SprayLook kSprayLook{.spray = {.length = 13,
                                     .firstAt = -0.95,
                                     .lastAt = 0.02,
                                     .angle = {62, 14},
                                     .angleAtTip = 35,
                                     .turn = {168, 40},
                                     .flat = 0.55,
                                     .scale = {1, 0.18},
                                     .scaleAtTip = 0.85,
                                     .seed = 5},
                           .leaf = kLeaf,
                           .body = {.fold = 14, .droop = 0.10}};

void catkins(vdt::Mesh& mesh, double length)
{
    for (const double side : {-1.0, 1.0}) {
        const vdt::Matrix frame = StandingFrame({0, 0, 0}, {0.35 * side, 1, 0.1}, {0, 0, 1});
        AddTurned(mesh,
                  {.outline = {{0, 0.05}, {0.12 * length, 0.30}, {0.8 * length, 0.28}, {length, 0.04}},
                   .sides = 5,
                   .material = kCatkin,
                   .repeat = 2},
                  frame);
    }
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "fresh spray", kLeafSpring, 4, 4.2},
        {kOtherSpray, "spring", "other fresh spray", kLeafSpring, 5, 3.6},
        {kSparseSpray, "spring", "sparse fresh spray", kLeafSpring, 3, 4.0},
        {kSpray, "summer", "spray", kLeafSummer, 5, 6.4},
        {kOtherSpray, "summer", "other spray", kLeafSummer, 6, 5.6},
        {kSparseSpray, "summer", "sparse spray", kLeafSummer, 4, 6.6},
        {kSpray, "autumn", "golden spray", kLeafGold, 4, 6.2},
        {kOtherSpray, "autumn", "turning spray", kLeafAutumn, 4, 5.6},
        {kSparseSpray, "autumn", "sparse golden spray", kLeafGold, 2, 6.0},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kCatkins, "spring", "catkins", [](vdt::Mesh& mesh) { catkins(mesh, 5.5); }});
    list.push_back({kCatkins, "winter", "closed catkins", [](vdt::Mesh& mesh) { catkins(mesh, 2.8); }});
    return list;
}

std::vector<FoliageRule> foliage()
{
    return {
        {.fromLayer = 3,
         .groups = {kSpray, kOtherSpray, kSparseSpray},
         .perVertex = 1.0,
         .angle = {0, 4},
         .scale = {1, 0.22},
         .faceUp = 0.25},
        {.fromLayer = 2,
         .groups = {kSpray, kSparseSpray},
         .firstAt = 0.6,
         .perVertex = 0.8,
         .angle = {0, 5},
         .scale = {0.95, 0.2},
         .faceUp = 0.5},
        {.fromLayer = 3,
         .groups = {kCatkins},
         .perVertex = 0.22,
         .tipOnly = true,
         .angle = {10, 10},
         .scale = {1, 0.2},
         .droop = 0.8,
         .faceUp = 0.2},
    };
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 4711,
        .height = 1900,
        .trunkRadius = 16,
        .tipRadius = 0.11,
        .flare = 0.5,
        .flareHeight = 26,
        .crown = {{0.13, 0.05},
                  {0.22, 0.14},
                  {0.36, 0.215},
                  {0.53, 0.235},
                  {0.7, 0.205},
                  {0.85, 0.14},
                  {0.95, 0.075},
                  {1.0, 0.02}},
        .trunk = {.segment = 42, .wander = 1.7, .pull = 0.03, .pullAtTip = 0.02, .material = kTrunk},
        .stems =
            {
                {.spacing = 25,
                 .firstAt = 0.16,
                 .lastAt = 0.985,
                 .length = {0.98, 0.2},
                 .angle = {52, 9},
                 .angleAtTip = 28,
                 .turn = {137.5, 22},
                 .segment = 26,
                 .wander = 4.5,
                 .pull = 0.06,
                 .pullAtTip = -0.1,
                 .shortest = 25,
                 .material = kBough},
                {.spacing = 19,
                 .firstAt = 0.14,
                 .lastAt = 0.97,
                 .length = {0.40, 0.14},
                 .lengthAtTip = 0.5,
                 .angle = {50, 12},
                 .angleAtTip = 34,
                 .turn = {172, 50},
                 .startTurn = {0, 30},
                 .segment = 19,
                 .wander = 7,
                 .pull = 0.01,
                 .pullAtTip = -0.3,
                 .shortest = 16,
                 .material = kTwig},
                {.spacing = 15,
                 .firstAt = 0.12,
                 .lastAt = 1.0,
                 .length = {0.78, 0.3},
                 .lengthAtTip = 0.75,
                 .angle = {48, 14},
                 .angleAtTip = 38,
                 .turn = {150, 60},
                 .segment = 14.5,
                 .wander = 5,
                 .pull = -0.22,
                 .pullAtTip = -0.40,
                 .shortest = 14,
                 .material = kTwig},
            },
        .foliage = foliage(),
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 4712;
    age.height = 950;
    age.trunkRadius = 7;
    age.flareHeight = 14;
    age.crown = {{0.08, 0.05}, {0.18, 0.13}, {0.32, 0.19}, {0.48, 0.20}, {0.68, 0.15}, {0.86, 0.085}, {1.0, 0.012}};
    age.trunk.segment = 28;
    age.stems[0].spacing = 19;
    age.stems[0].firstAt = 0.11;
    age.stems[0].angle = {46, 8};
    age.stems[0].segment = 20;
    age.stems[1].spacing = 13;
    age.stems[1].shortest = 12;
    age.stems[1].length = {0.45, 0.15};
    age.stems[1].pullAtTip = -0.20;
    age.stems[2].spacing = 12;
    age.stems[2].length = {0.75, 0.25};
    age.stems[2].segment = 13;
    age.stems[2].shortest = 11;
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 4713;
    age.height = 320;
    age.trunkRadius = 2.2;
    age.tipRadius = 0.12;
    age.flare = 0.25;
    age.flareHeight = 5;
    age.crown = {{0.06, 0.05}, {0.2, 0.14}, {0.36, 0.20}, {0.55, 0.19}, {0.78, 0.13}, {1.0, 0.03}};
    age.trunk.segment = 13;
    age.trunk.material = kBough;
    age.stems[0] = {.spacing = 6.5,
                    .firstAt = 0.12,
                    .lastAt = 0.97,
                    .length = {1.0, 0.2},
                    .angle = {44, 8},
                    .angleAtTip = 28,
                    .turn = {137.5, 20},
                    .segment = 12,
                    .wander = 5,
                    .pull = 0.04,
                    .pullAtTip = -0.05,
                    .shortest = 12,
                    .material = kTwig};
    age.stems[1] = {.spacing = 9,
                    .firstAt = 0.2,
                    .lastAt = 0.95,
                    .length = {0.5, 0.15},
                    .angle = {45, 10},
                    .angleAtTip = 34,
                    .turn = {172, 40},
                    .startTurn = {0, 30},
                    .segment = 12,
                    .wander = 6,
                    .pull = 0,
                    .pullAtTip = -0.14,
                    .shortest = 10,
                    .material = kTwig};
    age.stems.resize(2);
    age.foliage = foliage();
    age.foliage[0].fromLayer = 2;
    age.foliage[0].perVertex = 1.25;
    age.foliage[1].fromLayer = 1;
    age.foliage[1].firstAt = 0.25;
    age.foliage[1].perVertex = 1.1;
    age.foliage.pop_back(); // too young for catkins
    return age;
}

} // namespace

SpeciesRecipe BetulaPendula()
{
    SpeciesRecipe recipe{
        .name = "Betula pendula",
        .labels = {{"en", "Silver birch"},
                   {"de", "H\u00e4nge-Birke"},
                   {"fr", "Bouleau verruqueux"},
                   {"es", "Abedul com\u00fan"},
                   {"it", "Betulla bianca"},
                   {"ja", "\u30b7\u30c0\u30ec\u30ab\u30f3\u30d0"}},
        .descriptions = {{"en", "Slender deciduous tree of Europe with white bark and fine hanging twigs. A pioneer on "
                                "poor, light soils; golden yellow in autumn."},
                         {"de", "Schlanker Laubbaum Europas mit wei\u00dfer Rinde und feinen h\u00e4ngenden Zweigen. "
                                "Pionier auf armen, lichten B\u00f6den; im Herbst goldgelb."},
                         {"fr", "Arbre \u00e9lanc\u00e9 d'Europe \u00e0 l'\u00e9corce blanche et aux rameaux fins et "
                                "pendants. Esp\u00e8ce pionni\u00e8re des sols pauvres ; jaune d'or en automne."},
                         {"es", "\u00c1rbol esbelto de Europa, de corteza blanca y ramillas finas y colgantes. Especie "
                                "pionera de suelos pobres; amarillo dorado en oto\u00f1o."},
                         {"it", "Albero slanciato d'Europa dalla corteccia bianca e dai rametti sottili e penduli. "
                                "Specie pioniera dei terreni poveri; giallo oro in autunno."},
                         {"ja", "\u767d\u3044\u6a39\u76ae\u3068\u7d30\u304f\u5782\u308c\u308b\u679d\u3092\u6301\u3064"
                                "\u30e8\u30fc\u30ed\u30c3\u30d1\u306e\u843d\u8449\u6a39\u3002\u79cb\u306b\u306f\u9ec4"
                                "\u91d1\u8272\u306b\u9ec4\u8449\u3059\u308b\u3002"}},
        .wood = {{"", {0.78f, 0.76f, 0.72f, 1}}, {"winter", {0.74f, 0.71f, 0.68f, 1}}},
        .foliage =
            FoliageColors({0.55f, 0.68f, 0.24f}, {0.36f, 0.50f, 0.16f}, {0.87f, 0.66f, 0.14f}, {0.42f, 0.28f, 0.19f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .turns = 4, .relief = 0.02});
    AddBark(recipe, {.material = kBough, .name = "bough", .paint = boughBark});
    AddBark(recipe,
            {.material = kTwig, .name = "twig", .paint = twigBark, .roughness = 0, .gloss = {0.04f, 0.04f, 0.04f}});
    AddLeaves(
        recipe, {.shape = kLeaf, .spot = {0.45f, 0.27f, 0.10f}, .translucency = 0.5},
        {
            {kLeafSpring, "leaf in spring", {0.50f, 0.66f, 0.20f}, {0.58f, 0.72f, 0.28f}, {0.74f, 0.82f, 0.48f}, 21},
            {kLeafSummer, "leaf in summer", {0.27f, 0.43f, 0.11f}, {0.34f, 0.50f, 0.16f}, {0.56f, 0.66f, 0.32f}, 22},
            {kLeafAutumn, "turning leaf", {0.62f, 0.62f, 0.16f}, {0.90f, 0.70f, 0.14f}, {0.80f, 0.76f, 0.36f}, 23, 0.1},
            {kLeafGold, "golden leaf", {0.92f, 0.72f, 0.12f}, {0.88f, 0.58f, 0.10f}, {0.95f, 0.84f, 0.44f}, 24, 0.16},
        });
    AddBark(recipe, {.material = kCatkin, .name = "catkin", .paint = catkinBark, .roughness = 0.5f});
    return recipe;
}

} // namespace grower
