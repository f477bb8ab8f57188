// Norway spruce: a straight trunk to the very top, a narrow cone of tiers that sag and rise again, dark needles.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kTwig, kNeedles, kFreshNeedles, kWinterNeedles, kCone };
enum Group : int32_t { kSpray, kOtherSpray, kTipSpray, kCones };

// A twig with its needles, drawn as one leaf: the needles are many deep lobes that lean to the tip.
const LeafShape kNeedleTwig{
    .halfWidth = {{0, 0.06}, {0.08, 0.13}, {0.7, 0.12}, {0.9, 0.09}, {1, 0}},
    .stalk = 0.02,
    .lobes = 26,
    .lobeDepth = 0.93,
    .slant = 0.9,
    .veins = 0,
};

Bark trunkBark()
{
    return PaintRidgedBark({.ridge = {0.47f, 0.36f, 0.29f},
                            .crack = {0.25f, 0.17f, 0.13f},
                            .moss = {0.44f, 0.42f, 0.34f},
                            .ridges = 22,
                            .plates = 20,
                            .mossShare = 0.25,
                            .seed = 81},
                           512);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.50f, 0.34f, 0.21f},
                            .shade = {0.36f, 0.24f, 0.15f},
                            .pore = {0.30f, 0.20f, 0.13f},
                            .poreShare = 0.2,
                            .seed = 82},
                           128);
}

Bark coneBark()
{
    return PaintRidgedBark({.ridge = {0.58f, 0.40f, 0.24f},
                            .crack = {0.28f, 0.17f, 0.10f},
                            .moss = {0.50f, 0.42f, 0.24f},
                            .ridges = 10,
                            .plates = 9,
                            .mossShare = 0.2,
                            .seed = 86},
                           128);
}

// Needle twigs to both sides and one along, a little hanging.
const SprayLook kSprayLook{.spray = {.length = 11,
                                     .firstAt = -1,
                                     .lastAt = -0.1,
                                     .angle = {52, 8},
                                     .angleAtTip = 8,
                                     .turn = {178, 16},
                                     .flat = 0.9,
                                     .scale = {1, 0.15},
                                     .scaleAtTip = 1.1,
                                     .seed = 1},
                           .leaf = kNeedleTwig,
                           .body = {.fold = -24, .droop = 0.12}};

void cones(vdt::Mesh& mesh)
{
    AddTurned(mesh,
              {.outline = {{0, 0.2}, {1.5, 1.5}, {4, 1.9}, {9, 1.7}, {12.5, 0.9}, {13.5, 0.1}},
               .sides = 7,
               .material = kCone,
               .repeat = 3},
              vdt::Matrix::Identity());
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "spray", kNeedles, 4, 13},
        {kOtherSpray, "spring", "other spray", kNeedles, 3, 14},
        {kTipSpray, "spring", "fresh tip", kFreshNeedles, 3, 12},
        {kSpray, "summer", "spray", kNeedles, 5, 13},
        {kOtherSpray, "summer", "other spray", kNeedles, 4, 14},
        {kTipSpray, "summer", "tip", kNeedles, 3, 12},
        {kSpray, "autumn", "spray", kNeedles, 4, 13},
        {kOtherSpray, "autumn", "other spray", kNeedles, 3, 14},
        {kTipSpray, "autumn", "tip", kNeedles, 3, 12},
        {kSpray, "winter", "spray", kWinterNeedles, 3, 13},
        {kOtherSpray, "winter", "other spray", kWinterNeedles, 2, 14},
        {kTipSpray, "winter", "tip", kWinterNeedles, 3, 12},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    for (const char* season : {"summer", "autumn"}) list.push_back({kCones, season, "cone", cones});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 901,
        .height = 2400,
        .trunkRadius = 24,
        .tipRadius = 0.16,
        .flare = 0.35,
        .flareHeight = 35,
        .crown = {{0.04, 0.11}, {0.10, 0.165}, {0.22, 0.17}, {0.5, 0.12}, {0.75, 0.065}, {0.92, 0.026}, {1.0, 0.005}},
        .trunk = {.segment = 24, .wander = 0.4, .pull = 0.3, .pullAtTip = 0.3, .material = kTrunk},
        .stems =
            {
                {.spacing = 5.5,
                 .firstAt = 0.055,
                 .lastAt = 0.995,
                 .length = {0.95, 0.14},
                 .angle = {104, 7},
                 .angleAtTip = 48,
                 .turn = {137.5, 14},
                 .segment = 24,
                 .wander = 3,
                 .pull = -0.02,
                 .pullAtTip = 0.1,
                 .shortest = 8,
                 .material = kTwig},
                {.spacing = 12.5,
                 .firstAt = 0.22,
                 .lastAt = 0.98,
                 .length = {0.37, 0.09},
                 .lengthAtTip = 0.35,
                 .angle = {58, 9},
                 .angleAtTip = 42,
                 .turn = {180, 14},
                 .startTurn = {0, 12},
                 .segment = 13,
                 .wander = 4,
                 .pull = -0.08,
                 .pullAtTip = -0.04,
                 .shortest = 10,
                 .material = kTwig},
            },
        .foliage =
            {
                {.fromLayer = 2,
                 .groups = {kSpray, kOtherSpray},
                 .perVertex = 1.0,
                 .angle = {0, 6},
                 .scale = {1, 0.18},
                 .faceUp = 0.9},
                {.fromLayer = 1,
                 .groups = {kSpray, kOtherSpray},
                 .firstAt = 0.2,
                 .perVertex = 1.9,
                 .angle = {0, 8},
                 .scale = {1, 0.2},
                 .faceUp = 0.85},
                {.fromLayer = 0,
                 .groups = {kTipSpray},
                 .tipOnly = true,
                 .angle = {0, 5},
                 .scale = {1, 0.15},
                 .faceUp = 0.9},
                {.fromLayer = 2,
                 .groups = {kCones},
                 .perVertex = 0.02,
                 .tipOnly = true,
                 .angle = {10, 10},
                 .scale = {1, 0.15},
                 .droop = 3,
                 .faceUp = 0},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 902;
    age.height = 900;
    age.trunkRadius = 10;
    age.flareHeight = 14;
    age.crown = {{0.02, 0.14}, {0.08, 0.215}, {0.18, 0.225}, {0.4, 0.17}, {0.7, 0.09}, {0.9, 0.035}, {1.0, 0.006}};
    age.trunk.segment = 15;
    age.stems[0].spacing = 4.5;
    age.stems[0].firstAt = 0.03;
    age.stems[0].segment = 16;
    age.foliage.pop_back(); // cones come with age
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 903;
    age.height = 250;
    age.trunkRadius = 3.2;
    age.flare = 0.1;
    age.crown = {{0.02, 0.2}, {0.1, 0.28}, {0.2, 0.29}, {0.45, 0.21}, {0.75, 0.10}, {1.0, 0.02}};
    age.trunk.segment = 8;
    age.stems[0].spacing = 3.2;
    age.stems[0].angle = {84, 8};
    age.stems[0].segment = 10;
    age.stems[1].spacing = 9;
    age.stems[1].segment = 10;
    age.stems[1].shortest = 7;
    age.foliage[0].scale = age.foliage[2].scale = {0.8, 0.15};
    age.foliage[1].scale = {0.8, 0.15};
    age.foliage[1].perVertex = 1.2;
    return age;
}

} // namespace

SpeciesRecipe PiceaAbies()
{
    SpeciesRecipe recipe{
        .name = "Picea abies",
        .labels = {{"en", "Norway spruce"},
                   {"de", "Gemeine Fichte"},
                   {"fr", "\u00c9pic\u00e9a commun"},
                   {"es", "P\u00edcea de Noruega"},
                   {"it", "Abete rosso"},
                   {"ja", "\u30c9\u30a4\u30c4\u30c8\u30a6\u30d2"}},
        .descriptions = {{"en", "Tall evergreen conifer of the mountains and the north of Europe, with a pointed "
                                "crown, dark needles and hanging cones."},
                         {"de", "Hoher immergr\u00fcner Nadelbaum der Gebirge und des Nordens Europas mit spitzer "
                                "Krone, dunklen Nadeln und h\u00e4ngenden Zapfen."},
                         {"fr", "Grand conif\u00e8re persistant des montagnes et du nord de l'Europe, \u00e0 cime "
                                "pointue, aiguilles sombres et c\u00f4nes pendants."},
                         {"es", "Gran con\u00edfera perenne de las monta\u00f1as y del norte de Europa, de copa "
                                "puntiaguda, ac\u00edculas oscuras y pi\u00f1as colgantes."},
                         {"it", "Alta conifera sempreverde delle montagne e del nord Europa, dalla chioma appuntita, "
                                "aghi scuri e pigne pendule."},
                         {"ja",
                          "\u5c16\u3063\u305f\u6a39\u51a0\u3068\u6fc3\u3044\u7dd1\u306e\u8449\u3001\u5782\u308c\u4e0b"
                          "\u304c\u308b\u7403\u679c\u3092\u6301\u3064\u5e38\u7dd1\u91dd\u8449\u6a39\u3002"}},
        .wood = {{"", {0.44f, 0.34f, 0.27f, 1}}},
        .foliage =
            FoliageColors({0.20f, 0.34f, 0.15f}, {0.13f, 0.25f, 0.13f}, {0.13f, 0.25f, 0.13f}, {0.13f, 0.22f, 0.14f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kNeedles,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .relief = 0.02, .roughness = 0.4f});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark});
    AddLeaves(
        recipe, {.shape = kNeedleTwig, .veinStrength = 0.9, .pale = 0.16, .translucency = 0.15, .depth = 0.1},
        {
            {kNeedles, "needles", {0.11f, 0.23f, 0.10f}, {0.17f, 0.32f, 0.15f}, {0.42f, 0.29f, 0.18f}, 83},
            {kFreshNeedles, "fresh needles", {0.36f, 0.54f, 0.18f}, {0.46f, 0.64f, 0.26f}, {0.42f, 0.29f, 0.18f}, 84},
            {kWinterNeedles,
             "needles in winter",
             {0.11f, 0.20f, 0.11f},
             {0.17f, 0.28f, 0.17f},
             {0.42f, 0.29f, 0.18f},
             85},
        });
    AddBark(recipe, {.material = kCone, .name = "cone", .paint = coneBark, .roughness = 0.4f});
    return recipe;
}

} // namespace grower
