// Silver birch: a slender white trunk, ascending boughs, and fine twigs that hang like a curtain.
#include "grower/bark.h"
#include "grower/organs.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kBough, kTwig, kLeafSpring, kLeafSummer, kLeafAutumn, kLeafGold, kCatkin };
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

Image leaf(const vdt::Color3f& blade, const vdt::Color3f& margin, const vdt::Color3f& vein, uint32_t seed,
           double spotShare = 0)
{
    return PaintLeaf(kLeaf,
                     {.blade = blade,
                      .margin = margin,
                      .vein = vein,
                      .spot = {0.45f, 0.27f, 0.10f},
                      .spotShare = spotShare,
                      .seed = seed},
                     256);
}

Bark trunkBark()
{
    return PaintPaperBark({.paper = {0.91f, 0.90f, 0.87f},
                           .peel = {0.80f, 0.74f, 0.67f},
                           .pore = {0.22f, 0.19f, 0.17f},
                           .patch = {0.15f, 0.135f, 0.125f},
                           .patchShare = 0.14,
                           .seed = 11},
                          512);
}

Bark boughBark()
{
    return PaintPaperBark({.paper = {0.80f, 0.77f, 0.73f},
                           .peel = {0.55f, 0.45f, 0.38f},
                           .pore = {0.25f, 0.20f, 0.17f},
                           .patch = {0.22f, 0.17f, 0.14f},
                           .patchShare = 0.30,
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

// A hand's breadth of hanging twig with its leaves.
void spray(vdt::Mesh& mesh, int32_t material, int leaves, double leafLength, uint64_t seed)
{
    AddSpray(mesh,
             {.leaves = leaves,
              .length = 13,
              .firstAt = -0.95,
              .lastAt = 0.02,
              .angle = {62, 14},
              .angleAtTip = 35,
              .turn = {168, 40},
              .flat = 0.55,
              .scale = {1, 0.18},
              .scaleAtTip = 0.85,
              .seed = seed},
             kLeaf, {.length = leafLength, .fold = 14, .droop = 0.10, .material = material});
}

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
    std::vector<OrganRecipe> list;
    const auto add = [&](Group group, const char* season, const char* name, Material material, int leaves,
                         double length) {
        const auto seed = static_cast<uint64_t>(group) + 5;
        list.push_back({group, season, name, [=](vdt::Mesh& mesh) { spray(mesh, material, leaves, length, seed); }});
    };
    add(kSpray, "spring", "fresh spray", kLeafSpring, 4, 4.2);
    add(kOtherSpray, "spring", "other fresh spray", kLeafSpring, 5, 3.6);
    add(kSparseSpray, "spring", "sparse fresh spray", kLeafSpring, 3, 4.0);
    add(kSpray, "summer", "spray", kLeafSummer, 5, 6.4);
    add(kOtherSpray, "summer", "other spray", kLeafSummer, 6, 5.6);
    add(kSparseSpray, "summer", "sparse spray", kLeafSummer, 4, 6.6);
    add(kSpray, "autumn", "golden spray", kLeafGold, 4, 6.2);
    add(kOtherSpray, "autumn", "turning spray", kLeafAutumn, 4, 5.6);
    add(kSparseSpray, "autumn", "sparse golden spray", kLeafGold, 2, 6.0);
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
                 .pullAtTip = -0.10,
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
                 .pullAtTip = -0.30,
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

MaterialRecipe leafMaterial(Material id, const char* name, const std::string& picture)
{
    return {
        .id = id,
        .name = name,
        .front = {.texture = picture + ".png", .specular = {0.06f, 0.06f, 0.06f}, .specularRoughness = 0.4f},
        .back =
            SideRecipe{.texture = picture + "_back.png", .specular = {0.02f, 0.02f, 0.02f}, .specularRoughness = 0.6f},
        .cutOut = true,
        .translucency = 0.5,
        .depth = 0.03};
}

} // namespace

SpeciesRecipe BetulaPendula()
{
    return {
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
        .foliage = {{"", {0.36f, 0.50f, 0.16f, 1}},
                    {"spring", {0.55f, 0.68f, 0.24f, 1}},
                    {"summer", {0.36f, 0.50f, 0.16f, 1}},
                    {"autumn", {0.87f, 0.66f, 0.14f, 1}},
                    {"winter", {0.42f, 0.28f, 0.19f, 1}}},
        .textures =
            {
                {"trunk.png", [] { return trunkBark().color; }},
                {"trunk_normal.png", [] { return NormalsOfHeights(trunkBark().height, 0.02); }},
                {"bough.png", [] { return boughBark().color; }},
                {"twig.png", [] { return twigBark().color; }},
                {"leaf_spring.png",
                 [] {
                     return leaf({0.50f, 0.66f, 0.20f}, {0.58f, 0.72f, 0.28f}, {0.74f, 0.82f, 0.48f}, 21);
                 }},
                {"leaf_spring_back.png",
                 [] {
                     return leaf({0.58f, 0.70f, 0.34f}, {0.62f, 0.74f, 0.38f}, {0.76f, 0.83f, 0.56f}, 21);
                 }},
                {"leaf_summer.png",
                 [] {
                     return leaf({0.27f, 0.43f, 0.11f}, {0.34f, 0.50f, 0.16f}, {0.56f, 0.66f, 0.32f}, 22);
                 }},
                {"leaf_summer_back.png",
                 [] {
                     return leaf({0.42f, 0.54f, 0.28f}, {0.46f, 0.58f, 0.32f}, {0.62f, 0.70f, 0.46f}, 22);
                 }},
                {"leaf_autumn.png",
                 [] {
                     return leaf({0.62f, 0.62f, 0.16f}, {0.90f, 0.70f, 0.14f}, {0.80f, 0.76f, 0.36f}, 23, 0.10);
                 }},
                {"leaf_autumn_back.png",
                 [] {
                     return leaf({0.68f, 0.67f, 0.32f}, {0.86f, 0.72f, 0.32f}, {0.82f, 0.78f, 0.48f}, 23, 0.10);
                 }},
                {"leaf_gold.png",
                 [] {
                     return leaf({0.92f, 0.72f, 0.12f}, {0.88f, 0.58f, 0.10f}, {0.95f, 0.84f, 0.44f}, 24, 0.16);
                 }},
                {"leaf_gold_back.png",
                 [] {
                     return leaf({0.88f, 0.74f, 0.34f}, {0.84f, 0.64f, 0.30f}, {0.92f, 0.84f, 0.54f}, 24, 0.16);
                 }},
                {"catkin.png",
                 [] {
                     return PaintRidgedBark({.ridge = {0.70f, 0.58f, 0.24f},
                                             .crack = {0.36f, 0.22f, 0.10f},
                                             .moss = {0.60f, 0.62f, 0.24f},
                                             .ridges = 6,
                                             .plates = 8,
                                             .mossShare = 0.2,
                                             .seed = 31},
                                            128)
                         .color;
                 }},
            },
        .materials =
            {
                {.id = kTrunk,
                 .name = "trunk",
                 .front = {.texture = "trunk.png", .normal = "trunk_normal.png", .diffuseRoughness = 0.3f}},
                {.id = kBough, .name = "bough", .front = {.texture = "bough.png", .diffuseRoughness = 0.3f}},
                {.id = kTwig, .name = "twig", .front = {.texture = "twig.png", .specular = {0.04f, 0.04f, 0.04f}}},
                leafMaterial(kLeafSpring, "leaf in spring", "leaf_spring"),
                leafMaterial(kLeafSummer, "leaf in summer", "leaf_summer"),
                leafMaterial(kLeafAutumn, "turning leaf", "leaf_autumn"),
                leafMaterial(kLeafGold, "golden leaf", "leaf_gold"),
                {.id = kCatkin, .name = "catkin", .front = {.texture = "catkin.png", .diffuseRoughness = 0.5f}},
            },
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
    };
}

} // namespace grower
