// Japanese maple: several stems from the foot, a low wide crown in flat layers, small palmate leaves that turn crimson.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kTwig, kLeafSpring, kLeafSummer, kLeafOrange, kLeafCrimson, kFruit };
enum Group : int32_t { kSpray, kOtherSpray, kTipSpray, kFruits };

// Seven toothed fingers with long tips, cut to beyond the middle.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.07}, {0.2, 0.12}, {0.45, 0.155}, {0.65, 0.12}, {0.82, 0.055}, {1, 0}},
    .stalk = 0.42,
    .teeth = 12,
    .toothDepth = 0.2,
    .slant = 0.9,
    .veins = 6,
    .fingers = 3,
    .fingerAngle = 37,
    .fingerShare = 0.83,
};

Bark trunkBark()
{
    return PaintSmoothBark({.skin = {0.47f, 0.42f, 0.36f},
                            .shade = {0.34f, 0.30f, 0.25f},
                            .pore = {0.60f, 0.56f, 0.48f},
                            .poreShare = 0.05,
                            .seed = 161},
                           256);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.46f, 0.34f, 0.25f},
                            .shade = {0.36f, 0.24f, 0.19f},
                            .pore = {0.56f, 0.46f, 0.36f},
                            .poreShare = 0.06,
                            .seed = 162},
                           64);
}

Bark fruitSkin()
{
    return PaintSmoothBark({.skin = {0.70f, 0.30f, 0.24f},
                            .shade = {0.56f, 0.22f, 0.18f},
                            .pore = {0.78f, 0.46f, 0.34f},
                            .poreShare = 0.05,
                            .seed = 163},
                           64);
}

// Pairs of leaves that lie flat to both sides of the twig.
const SprayLook kSprayLook{.spray = {.length = 9,
                                     .firstAt = -0.95,
                                     .lastAt = 0.0,
                                     .angle = {66, 16},
                                     .angleAtTip = 24,
                                     .turn = {172, 24},
                                     .flat = 0.8,
                                     .scale = {1, 0.18},
                                     .scaleAtTip = 0.95,
                                     .seed = 1},
                           .leaf = kLeaf,
                           .body = {.fold = -6, .droop = 0.18}};

// Two winged nutlets, hanging.
void fruits(vdt::Mesh& mesh)
{
    for (const double side : {-1.0, 1.0})
        AddTurned(mesh,
                  {.outline = {{0, 0.05}, {1.8, 0.06}, {2.2, 0.28}, {2.6, 0.14}, {3.6, 0.3}, {4.1, 0.03}},
                   .sides = 3,
                   .material = kFruit},
                  StandingFrame({0, 0, 0}, {0.5 * side, 1, 0}, {0, 0, 1}));
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "fresh spray", kLeafSpring, 5, 6.6},
        {kOtherSpray, "spring", "other fresh spray", kLeafSpring, 5, 6.2},
        {kTipSpray, "spring", "fresh tip", kLeafSpring, 4, 6.0},
        {kSpray, "summer", "spray", kLeafSummer, 6, 8.4},
        {kOtherSpray, "summer", "other spray", kLeafSummer, 5, 9.0},
        {kTipSpray, "summer", "tip", kLeafSummer, 4, 8.0},
        {kSpray, "autumn", "crimson spray", kLeafCrimson, 5, 8.2},
        {kOtherSpray, "autumn", "turning spray", kLeafOrange, 5, 8.8},
        {kTipSpray, "autumn", "crimson tip", kLeafCrimson, 4, 7.8},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kFruits, "summer", "fruits", fruits});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 1301,
        .height = 500,
        .trunkRadius = 11,
        .tipRadius = 0.16,
        .flare = 0.4,
        .flareHeight = 10,
        .crown = {{0.10, 0.20}, {0.22, 0.40}, {0.4, 0.54}, {0.6, 0.58}, {0.78, 0.50}, {0.92, 0.30}, {1.0, 0.08}},
        .scaffold = ScaffoldRecipe{.buds = 3800,
                                   .reach = 200,
                                   .nearEnough = 20,
                                   .step = 10,
                                   .wander = 0.26,
                                   .pull = 0.04,
                                   .hollow = 0.55,
                                   .clumps = 96,
                                   .clumpRadius = 72,
                                   .clumpHeight = 0.2,
                                   .clearance = -0.05,
                                   .leaders = 4,
                                   .leaderAngle = 34,
                                   .leaderLength = 0.22,
                                   .twigWood = 150,
                                   .material = kTrunk,
                                   .thinMaterial = kTwig},
        .stems =
            {
                {.spacing = 5.5,
                 .firstAt = 0.0,
                 .lastAt = 1.0,
                 .length = {30, 9},
                 .lengthAtTip = 0.8,
                 .angle = {52, 12},
                 .angleAtTip = 38,
                 .turn = {180, 30},
                 .startTurn = {0, 20},
                 .segment = 8.5,
                 .wander = 6,
                 .pull = 0.02,
                 .pullAtTip = -0.06,
                 .shortest = 9,
                 .material = kTwig},
                {.spacing = 10,
                 .firstAt = 0.2,
                 .lastAt = 0.9,
                 .length = {0.55, 0.15},
                 .lengthAtTip = 0.7,
                 .angle = {50, 12},
                 .angleAtTip = 38,
                 .turn = {180, 25},
                 .startTurn = {0, 20},
                 .segment = 8,
                 .wander = 6,
                 .pullAtTip = -0.06,
                 .shortest = 7,
                 .material = kTwig},
            },
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kSpray, kOtherSpray},
                 .perVertex = 1.0,
                 .angle = {0, 8},
                 .scale = {1, 0.2},
                 .faceUp = 0.92},
                {.fromLayer = 0,
                 .groups = {kTipSpray},
                 .tipOnly = true,
                 .angle = {0, 8},
                 .scale = {1, 0.2},
                 .droop = 0.1,
                 .faceUp = 0.92},
                {.fromLayer = 1,
                 .groups = {kFruits},
                 .perVertex = 0.2,
                 .tipOnly = true,
                 .angle = {20, 20},
                 .scale = {1, 0.2},
                 .droop = 2,
                 .faceUp = 0},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 1302;
    age.height = 280;
    age.trunkRadius = 5;
    age.flareHeight = 6;
    age.crown = {{0.12, 0.14}, {0.28, 0.32}, {0.46, 0.44}, {0.66, 0.46}, {0.85, 0.32}, {1.0, 0.08}};
    age.scaffold->buds = 1100;
    age.scaffold->reach = 120;
    age.scaffold->nearEnough = 17;
    age.scaffold->step = 8.5;
    age.scaffold->clumps = 40;
    age.scaffold->clumpRadius = 46;
    age.scaffold->leaders = 3;
    age.scaffold->twigWood = 110;
    age.stems[0].length = {26, 8};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 1303;
    age.height = 120;
    age.trunkRadius = 1.6;
    age.tipRadius = 0.12;
    age.flare = 0.2;
    age.crown = {{0.16, 0.12}, {0.3, 0.28}, {0.5, 0.37}, {0.7, 0.35}, {0.88, 0.22}, {1.0, 0.06}};
    age.scaffold->buds = 420;
    age.scaffold->reach = 70;
    age.scaffold->nearEnough = 11;
    age.scaffold->step = 5.5;
    age.scaffold->clumps = 26;
    age.scaffold->clumpRadius = 24;
    age.scaffold->twigWood = 60;
    age.stems[0].length = {18, 6};
    age.stems[0].spacing = 4;
    age.stems.pop_back();
    age.foliage[0].scale = age.foliage[1].scale = {0.8, 0.15};
    age.foliage.pop_back(); // too young for fruits
    return age;
}

} // namespace

SpeciesRecipe AcerPalmatum()
{
    SpeciesRecipe recipe{
        .name = "Acer palmatum",
        .labels = {{"en", "Japanese maple"},
                   {"de", "F\u00e4cher-Ahorn"},
                   {"fr", "\u00c9rable du Japon"},
                   {"es", "Arce japon\u00e9s"},
                   {"it", "Acero giapponese"},
                   {"ja", "\u30a4\u30ed\u30cf\u30e2\u30df\u30b8"}},
        .descriptions = {{"en", "Small tree of Japanese woods and gardens with several stems, a wide crown in layers "
                                "and leaves of seven fingers. Crimson in autumn."},
                         {"de", "Kleiner Baum japanischer W\u00e4lder und G\u00e4rten mit mehreren St\u00e4mmen, "
                                "breiter Krone in Lagen und siebenfingrigen Bl\u00e4ttern. Im Herbst karminrot."},
                         {"fr", "Petit arbre des bois et jardins du Japon, \u00e0 plusieurs troncs, large couronne en "
                                "\u00e9tages et feuilles \u00e0 sept doigts. Cramoisi en automne."},
                         {"es", "\u00c1rbol peque\u00f1o de bosques y jardines del Jap\u00f3n, de varios troncos, copa "
                                "ancha en capas y hojas de siete dedos. Carmes\u00ed en oto\u00f1o."},
                         {"it", "Piccolo albero dei boschi e giardini del Giappone, con pi\u00f9 fusti, chioma ampia a "
                                "strati e foglie a sette dita. Cremisi in autunno."},
                         {"ja", "\u638c\u306e\u3088\u3046\u306b\u88c2\u3051\u305f\u5c0f\u3055\u306a\u8449\u3092\u6301"
                                "\u3061\u3001\u79cb\u306b\u6df1\u7d05\u306b\u7d05\u8449\u3059\u308b\u65e5\u672c\u306e"
                                "\u4ee3\u8868\u7684\u306a\u5ead\u6728\u3002"}},
        .wood = {{"", {0.45f, 0.39f, 0.33f, 1}}},
        .foliage =
            FoliageColors({0.56f, 0.58f, 0.24f}, {0.34f, 0.46f, 0.16f}, {0.74f, 0.16f, 0.12f}, {0.45f, 0.34f, 0.26f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .relief = 0.01});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark, .roughness = 0.2f});
    AddLeaves(
        recipe, {.shape = kLeaf, .spot = {0.40f, 0.10f, 0.06f}, .pale = 0.3, .translucency = 0.6, .depth = 0.02},
        {
            {kLeafSpring, "leaf in spring", {0.55f, 0.62f, 0.20f}, {0.66f, 0.44f, 0.20f}, {0.74f, 0.72f, 0.38f}, 164},
            {kLeafSummer, "leaf in summer", {0.32f, 0.46f, 0.13f}, {0.38f, 0.50f, 0.17f}, {0.58f, 0.66f, 0.32f}, 165},
            {kLeafOrange, "orange leaf", {0.88f, 0.40f, 0.12f}, {0.84f, 0.20f, 0.09f}, {0.92f, 0.60f, 0.28f}, 166},
            {kLeafCrimson, "crimson leaf", {0.76f, 0.11f, 0.09f}, {0.62f, 0.06f, 0.09f}, {0.86f, 0.34f, 0.20f}, 167},
        });
    AddBark(recipe, {.material = kFruit, .name = "fruit", .paint = fruitSkin, .roughness = 0.2f});
    return recipe;
}

} // namespace grower
