// Scots pine: a long bare trunk that turns from grey plates to thin orange bark, and high above it a flat irregular
// crown of needle tufts in clouds.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kBough, kTwig, kNeedles, kFreshNeedles, kWinterNeedles, kCone };
enum Group : int32_t { kTuft, kOtherTuft, kTip, kCones };

// A shoot with its needles, drawn as one leaf: long lobes that lean to the tip, a bottle brush.
const LeafShape kBrush{
    .halfWidth = {{0, 0.10}, {0.12, 0.24}, {0.4, 0.30}, {0.7, 0.28}, {0.9, 0.18}, {1, 0}},
    .stalk = 0.02,
    .lobes = 22,
    .lobeDepth = 0.95,
    .slant = 1.25,
    .veins = 0,
};

constexpr int kTrunkTurns = 9; // around the trunk, up to the crown

// Papery orange flakes.
Bark flakes(uint32_t size, int turns)
{
    return PaintPaperBark({.paper = {0.80f, 0.50f, 0.27f},
                           .peel = {0.62f, 0.34f, 0.18f},
                           .pore = {0.66f, 0.40f, 0.22f},
                           .patch = {0.62f, 0.38f, 0.22f},
                           .patchShare = 0.25,
                           .turns = turns,
                           .seed = 141},
                          size);
}

// From thick grey plates to flakes.
Bark trunkBark()
{
    constexpr uint32_t kSize = 256;
    const Bark plates = PaintRidgedBark({.ridge = {0.47f, 0.38f, 0.32f},
                                         .crack = {0.18f, 0.13f, 0.11f},
                                         .moss = {0.58f, 0.42f, 0.32f},
                                         .ridges = 13,
                                         .plates = 7,
                                         .mossShare = 0.3,
                                         .turns = kTrunkTurns,
                                         .seed = 142},
                                        kSize);
    return BlendBarks(plates, flakes(kSize, kTrunkTurns), 0.4, 143);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.58f, 0.43f, 0.28f},
                            .shade = {0.42f, 0.30f, 0.20f},
                            .pore = {0.36f, 0.26f, 0.18f},
                            .poreShare = 0.2,
                            .seed = 144},
                           64);
}

Bark coneBark()
{
    return PaintRidgedBark({.ridge = {0.54f, 0.42f, 0.30f},
                            .crack = {0.26f, 0.18f, 0.12f},
                            .moss = {0.46f, 0.40f, 0.28f},
                            .ridges = 8,
                            .plates = 7,
                            .mossShare = 0.2,
                            .seed = 145},
                           64);
}

// Brushes that spread from the end of a shoot to all sides.
const SprayLook kTuftLook{.spray = {.length = 9,
                                    .firstAt = -0.9,
                                    .lastAt = 0.0,
                                    .angle = {58, 14},
                                    .angleAtTip = 12,
                                    .turn = {137.5, 20},
                                    .flat = 0.4,
                                    .scale = {1, 0.15},
                                    .scaleAtTip = 1.1,
                                    .seed = 1},
                          .leaf = kBrush,
                          .body = {.fold = 24, .droop = -0.08}};

void cones(vdt::Mesh& mesh)
{
    for (const double side : {1.0, -0.8})
        AddTurned(mesh,
                  {.outline = {{0, 0.4}, {0.8, 1.4}, {2, 1.6}, {3.6, 1.0}, {4.6, 0.1}}, .material = kCone, .repeat = 2},
                  StandingFrame({0, -3, 0}, {side, -0.4, 0.3}, {0, 0, 1}));
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kTuft, "spring", "tuft", kNeedles, 5, 13},
        {kOtherTuft, "spring", "other tuft", kNeedles, 4, 14},
        {kTip, "spring", "fresh shoots", kFreshNeedles, 3, 10},
        {kTuft, "summer", "tuft", kNeedles, 6, 14},
        {kOtherTuft, "summer", "other tuft", kNeedles, 5, 15},
        {kTip, "summer", "tip", kNeedles, 4, 15},
        {kTuft, "autumn", "tuft", kNeedles, 5, 14},
        {kOtherTuft, "autumn", "other tuft", kNeedles, 4, 15},
        {kTip, "autumn", "tip", kNeedles, 4, 15},
        {kTuft, "winter", "tuft", kWinterNeedles, 4, 14},
        {kOtherTuft, "winter", "other tuft", kWinterNeedles, 4, 15},
        {kTip, "winter", "tip", kWinterNeedles, 4, 15},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kTuftLook, sprays);
    for (const char* season : {"summer", "autumn"}) list.push_back({kCones, season, "cones", cones});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 1201,
        .height = 2000,
        .trunkRadius = 25,
        .tipRadius = 0.3,
        .flare = 0.35,
        .flareHeight = 30,
        .crown = {{0.56, 0.07}, {0.64, 0.16}, {0.74, 0.215}, {0.84, 0.245}, {0.92, 0.225}, {0.97, 0.16}, {1.0, 0.07}},
        .footBarks = {{0.6, kTrunk}},
        .scaffold = ScaffoldRecipe{.buds = 3000,
                                   .reach = 460,
                                   .nearEnough = 38,
                                   .step = 20,
                                   .wander = 0.30,
                                   .pull = 0.05,
                                   .hollow = 0.55,
                                   .clumps = 62,
                                   .clumpRadius = 120,
                                   .clumpHeight = 0.42,
                                   .clearance = 0.06,
                                   .twigWood = 300,
                                   .material = kBough,
                                   .thinMaterial = kTwig},
        .stems =
            {
                {.spacing = 8,
                 .firstAt = 0.0,
                 .lastAt = 1.0,
                 .length = {48, 16},
                 .lengthAtTip = 0.8,
                 .angle = {55, 14},
                 .angleAtTip = 40,
                 .turn = {137.5, 40},
                 .segment = 11,
                 .wander = 7,
                 .pull = 0.12,
                 .pullAtTip = 0.16,
                 .shortest = 14,
                 .material = kTwig},
                {.spacing = 12,
                 .firstAt = 0.2,
                 .lastAt = 0.9,
                 .length = {0.5, 0.15},
                 .lengthAtTip = 0.8,
                 .angle = {50, 12},
                 .angleAtTip = 40,
                 .turn = {137.5, 40},
                 .segment = 11,
                 .wander = 6,
                 .pull = 0.16,
                 .pullAtTip = 0.2,
                 .shortest = 12,
                 .material = kTwig},
            },
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kTuft, kOtherTuft},
                 .firstAt = 0.35,
                 .perVertex = 0.8,
                 .angle = {10, 10},
                 .scale = {1, 0.2},
                 .droop = -0.15,
                 .faceUp = 0.6},
                {.fromLayer = 1,
                 .groups = {kTip},
                 .tipOnly = true,
                 .angle = {8, 8},
                 .scale = {1, 0.2},
                 .droop = -0.3,
                 .faceUp = 0.5},
                {.fromLayer = 1,
                 .groups = {kCones},
                 .perVertex = 0.08,
                 .tipOnly = true,
                 .angle = {10, 10},
                 .scale = {1, 0.2}},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 1202;
    age.height = 1000;
    age.trunkRadius = 11;
    age.flareHeight = 14;
    age.crown = {{0.28, 0.08}, {0.4, 0.2}, {0.55, 0.23}, {0.7, 0.21}, {0.85, 0.14}, {0.95, 0.07}, {1.0, 0.02}};
    age.footBarks = {{0.4, kTrunk}};
    age.scaffold->buds = 1300;
    age.scaffold->reach = 300;
    age.scaffold->nearEnough = 34;
    age.scaffold->step = 18;
    age.scaffold->clumps = 46;
    age.scaffold->clumpRadius = 80;
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 1203;
    age.height = 300;
    age.trunkRadius = 4;
    age.flare = 0.1;
    age.flareHeight = 6;
    age.crown = {{0.04, 0.2}, {0.12, 0.28}, {0.28, 0.29}, {0.5, 0.22}, {0.75, 0.13}, {1.0, 0.03}};
    age.footBarks.clear();
    age.scaffold.reset();
    age.trunk = {.segment = 10, .wander = 1, .pull = 0.3, .pullAtTip = 0.3, .material = kBough};
    age.stems = {{.spacing = 6,
                  .firstAt = 0.05,
                  .lastAt = 0.97,
                  .length = {0.95, 0.14},
                  .angle = {74, 8},
                  .angleAtTip = 42,
                  .turn = {137.5, 14},
                  .segment = 11,
                  .wander = 4,
                  .pull = 0.06,
                  .pullAtTip = 0.16,
                  .shortest = 10,
                  .material = kTwig},
                 {.spacing = 14,
                  .firstAt = 0.25,
                  .lastAt = 0.95,
                  .length = {0.42, 0.1},
                  .lengthAtTip = 0.5,
                  .angle = {52, 9},
                  .angleAtTip = 40,
                  .turn = {160, 40},
                  .segment = 10,
                  .wander = 4,
                  .pull = 0.08,
                  .pullAtTip = 0.14,
                  .shortest = 9,
                  .material = kTwig}};
    age.foliage.pop_back(); // cones come with age
    return age;
}

} // namespace

SpeciesRecipe PinusSylvestris()
{
    SpeciesRecipe recipe{
        .name = "Pinus sylvestris",
        .labels = {{"en", "Scots pine"},
                   {"de", "Waldkiefer"},
                   {"fr", "Pin sylvestre"},
                   {"es", "Pino silvestre"},
                   {"it", "Pino silvestre"},
                   {"ja", "\u30e8\u30fc\u30ed\u30c3\u30d1\u30a2\u30ab\u30de\u30c4"}},
        .descriptions = {{"en", "Evergreen conifer of dry and sandy ground all over Europe, with orange bark high on "
                                "its bare trunk and a flat blue-green crown."},
                         {"de", "Immergr\u00fcner Nadelbaum trockener und sandiger B\u00f6den in ganz Europa, mit "
                                "orangeroter Rinde am hohen kahlen Stamm und flacher blaugr\u00fcner Krone."},
                         {"fr", "Conif\u00e8re persistant des sols secs et sableux de toute l'Europe, \u00e0 "
                                "l'\u00e9corce orang\u00e9e en haut du tronc nu et \u00e0 la cime plate bleu-vert."},
                         {"es", "Con\u00edfera perenne de suelos secos y arenosos de toda Europa, de corteza "
                                "anaranjada en lo alto del tronco desnudo y copa plana verde azulada."},
                         {"it", "Conifera sempreverde dei suoli secchi e sabbiosi di tutta Europa, dalla corteccia "
                                "aranciata in alto sul tronco nudo e dalla chioma piatta verde-azzurra."},
                         {"ja", "\u5e79\u306e\u4e0a\u90e8\u304c\u6a59\u8272\u306e\u6a39\u76ae\u306b\u5305\u307e\u308c"
                                "\u3001\u5e73\u3089\u306a\u6a39\u51a0\u3092\u6301\u3064\u30e8\u30fc\u30ed\u30c3\u30d1"
                                "\u306e\u5e38\u7dd1\u91dd\u8449\u6a39\u3002"}},
        .wood = {{"", {0.62f, 0.43f, 0.29f, 1}}},
        .foliage =
            FoliageColors({0.30f, 0.42f, 0.28f}, {0.24f, 0.36f, 0.28f}, {0.25f, 0.36f, 0.27f}, {0.23f, 0.33f, 0.26f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kNeedles,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk,
                     .name = "trunk",
                     .paint = trunkBark,
                     .turns = kTrunkTurns,
                     .relief = 0.03,
                     .roughness = 0.5f});
    AddBark(recipe, {.material = kBough, .name = "bough", .paint = [] { return flakes(256, 1); }});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark});
    const vdt::Color3f shoot{0.48f, 0.38f, 0.24f};
    AddLeaves(
        recipe,
        {.shape = kBrush, .veinStrength = 0.9, .pale = 0.18, .gloss = 0.08f, .translucency = 0.15, .depth = 0.1},
        {
            {kNeedles, "needles", {0.25f, 0.39f, 0.30f}, {0.31f, 0.46f, 0.37f}, shoot, 146},
            {kFreshNeedles, "fresh needles", {0.38f, 0.52f, 0.26f}, {0.46f, 0.60f, 0.34f}, {0.66f, 0.58f, 0.36f}, 147},
            {kWinterNeedles, "needles in winter", {0.24f, 0.35f, 0.28f}, {0.30f, 0.42f, 0.34f}, shoot, 148},
        });
    AddBark(recipe, {.material = kCone, .name = "cone", .paint = coneBark, .roughness = 0.4f});
    return recipe;
}

} // namespace grower
