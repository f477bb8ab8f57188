// Weeping willow: a short stout trunk, a dome of arching limbs, and curtains of thin twigs that hang nearly to the
// ground.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kBough, kTwig, kLeafSpring, kLeafSummer, kLeafAutumn, kLeafYellow, kCatkin };
enum Group : int32_t { kSpray, kOtherSpray, kTipSpray, kCatkins };

// A lance with a long tip, ten times as long as wide.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.02}, {0.1, 0.055}, {0.3, 0.085}, {0.5, 0.08}, {0.75, 0.045}, {0.9, 0.018}, {1, 0}},
    .stalk = 0.06,
    .teeth = 26,
    .toothDepth = 0.08,
    .slant = 0.8,
    .veins = 12,
};

Bark trunkBark()
{
    return PaintRidgedBark({.ridge = {0.48f, 0.43f, 0.36f},
                            .crack = {0.20f, 0.16f, 0.13f},
                            .moss = {0.44f, 0.46f, 0.30f},
                            .ridges = 17,
                            .plates = 4,
                            .mossShare = 0.12,
                            .seed = 101},
                           512);
}

Bark boughBark()
{
    return PaintSmoothBark({.skin = {0.52f, 0.47f, 0.30f},
                            .shade = {0.38f, 0.33f, 0.22f},
                            .pore = {0.60f, 0.55f, 0.40f},
                            .poreShare = 0.1,
                            .seed = 102},
                           128);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.78f, 0.68f, 0.24f},
                            .shade = {0.62f, 0.50f, 0.16f},
                            .pore = {0.84f, 0.78f, 0.46f},
                            .poreShare = 0.06,
                            .seed = 103},
                           128);
}

Bark catkinBark()
{
    return PaintRidgedBark({.ridge = {0.80f, 0.80f, 0.34f},
                            .crack = {0.56f, 0.60f, 0.22f},
                            .moss = {0.74f, 0.80f, 0.38f},
                            .ridges = 7,
                            .plates = 9,
                            .mossShare = 0.2,
                            .seed = 104},
                           64);
}

// The leaves of a piece of hanging twig; they hang, too.
const SprayLook kSprayLook{.spray = {.length = 21,
                                     .firstAt = -0.97,
                                     .lastAt = 0.0,
                                     .angle = {38, 12},
                                     .angleAtTip = 26,
                                     .turn = {150, 30},
                                     .flat = 0.3,
                                     .scale = {1, 0.18},
                                     .scaleAtTip = 1,
                                     .seed = 1},
                           .leaf = kLeaf,
                           .body = {.fold = 16, .droop = 0.06}};

void catkins(vdt::Mesh& mesh)
{
    for (const double at : {-14.0, -4.0}) {
        const double side = at < -10 ? 1 : -1;
        AddTurned(mesh,
                  {.outline = {{0, 0.08}, {0.4, 0.34}, {1.8, 0.36}, {2.6, 0.05}}, .sides = 4, .material = kCatkin},
                  StandingFrame({0, at, 0}, {0.9 * side, 1, 0.3}, {0, 0, 1}));
    }
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "fresh spray", kLeafSpring, 7, 8.0},
        {kOtherSpray, "spring", "other fresh spray", kLeafSpring, 6, 8.6},
        {kTipSpray, "spring", "fresh tip", kLeafSpring, 4, 5.0},
        {kSpray, "summer", "spray", kLeafSummer, 7, 12.6},
        {kOtherSpray, "summer", "other spray", kLeafSummer, 6, 13.0},
        {kTipSpray, "summer", "tip", kLeafSummer, 6, 9.5},
        {kSpray, "autumn", "yellow spray", kLeafYellow, 5, 11.6},
        {kOtherSpray, "autumn", "turning spray", kLeafAutumn, 5, 12.4},
        {kTipSpray, "autumn", "yellow tip", kLeafYellow, 4, 9.0},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kCatkins, "spring", "catkins", catkins});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 1001,
        .height = 1200,
        .trunkRadius = 34,
        .tipRadius = 0.16,
        .flare = 0.45,
        .flareHeight = 35,
        .crown = {{0.25, 0.16}, {0.36, 0.35}, {0.55, 0.46}, {0.7, 0.44}, {0.85, 0.32}, {0.95, 0.17}, {1.0, 0.05}},
        .scaffold = ScaffoldRecipe{.buds = 620,
                                   .reach = 320,
                                   .nearEnough = 70,
                                   .step = 30,
                                   .wander = 0.22,
                                   .pull = 0.22,
                                   .hollow = 0.6,
                                   .clearance = 0.0,
                                   .twigWood = 330,
                                   .material = kTrunk,
                                   .thinMaterial = kBough},
        .stems =
            {
                {.spacing = 21,
                 .firstAt = 0.0,
                 .lastAt = 1.0,
                 .length = {110, 40},
                 .lengthAtTip = 0.8,
                 .angle = {48, 14},
                 .angleAtTip = 36,
                 .turn = {137.5, 40},
                 .segment = 18,
                 .wander = 6,
                 .pull = 0.10,
                 .pullAtTip = -0.45,
                 .shortest = 40,
                 .leavesCrown = true,
                 .material = kBough},
                {.spacing = 14,
                 .firstAt = 0.15,
                 .lastAt = 1.0,
                 .length = {2.9, 0.9},
                 .lengthAtTip = 0.9,
                 .angle = {45, 15},
                 .angleAtTip = 30,
                 .turn = {150, 60},
                 .segment = 21,
                 .wander = 3,
                 .pull = -0.35,
                 .pullAtTip = -0.5,
                 .shortest = 40,
                 .leavesCrown = true,
                 .clearance = {60, 50},
                 .material = kTwig},
            },
        .foliage =
            {
                {.fromLayer = 2,
                 .groups = {kSpray, kOtherSpray},
                 .perVertex = 1.0,
                 .angle = {0, 4},
                 .scale = {1, 0.2},
                 .faceUp = 0.2},
                {.fromLayer = 1, .groups = {kTipSpray}, .tipOnly = true, .angle = {0, 6}, .scale = {1, 0.2}},
                {.fromLayer = 2,
                 .groups = {kCatkins},
                 .perVertex = 0.2,
                 .angle = {0, 4},
                 .scale = {1, 0.2},
                 .faceUp = 0.2},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 1002;
    age.height = 700;
    age.trunkRadius = 13;
    age.flareHeight = 16;
    age.crown = {{0.34, 0.14}, {0.48, 0.30}, {0.62, 0.36}, {0.78, 0.32}, {0.92, 0.18}, {1.0, 0.05}};
    age.scaffold->buds = 240;
    age.scaffold->reach = 240;
    age.scaffold->nearEnough = 60;
    age.scaffold->step = 25;
    age.stems[0].length = {85, 30};
    age.stems[1].clearance = {55, 40};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 1003;
    age.height = 300;
    age.trunkRadius = 3;
    age.flare = 0.2;
    age.crown = {{0.36, 0.06}, {0.5, 0.17}, {0.68, 0.24}, {0.84, 0.20}, {0.94, 0.10}, {1.0, 0.04}};
    age.scaffold->buds = 130;
    age.scaffold->reach = 110;
    age.scaffold->nearEnough = 26;
    age.scaffold->step = 13;
    age.scaffold->twigWood = 160;
    age.stems[0].length = {46, 14};
    age.stems[0].spacing = 11;
    age.stems[0].segment = 12;
    age.stems[0].shortest = 20;
    age.stems[1].spacing = 11;
    age.stems[1].length = {2.2, 0.8};
    age.stems[1].clearance = {35, 25};
    age.foliage[0].scale = {0.85, 0.2};
    age.foliage.pop_back(); // too young for catkins
    return age;
}

} // namespace

SpeciesRecipe SalixBabylonica()
{
    SpeciesRecipe recipe{
        .name = "Salix babylonica",
        .labels = {{"en", "Weeping willow"},
                   {"de", "Trauerweide"},
                   {"fr", "Saule pleureur"},
                   {"es", "Sauce llor\u00f3n"},
                   {"it", "Salice piangente"},
                   {"ja", "\u30b7\u30c0\u30ec\u30e4\u30ca\u30ae"}},
        .descriptions = {{"en", "Wide tree of riversides and parks, first grown in China, whose thin yellow twigs hang "
                                "down in curtains. Green early in spring, yellow late in autumn."},
                         {"de", "Breiter Baum der Ufer und Parks aus China, dessen d\u00fcnne gelbe Zweige wie "
                                "Vorh\u00e4nge herabh\u00e4ngen. Im Fr\u00fchling zeitig gr\u00fcn, sp\u00e4t im "
                                "Herbst gelb."},
                         {"fr", "Arbre large des rives et des parcs, originaire de Chine, dont les fins rameaux jaunes "
                                "retombent en rideaux. Vert t\u00f4t au printemps, jaune tard en automne."},
                         {"es", "\u00c1rbol ancho de riberas y parques, originario de China, cuyas finas ramillas "
                                "amarillas cuelgan como cortinas. Verde temprano, amarillo a fines del oto\u00f1o."},
                         {"it", "Albero ampio di rive e parchi, originario della Cina, i cui sottili rami gialli "
                                "ricadono come tende. Verde presto in primavera, giallo nel tardo autunno."},
                         {"ja", "\u7d30\u9577\u3044\u9ec4\u8272\u306e\u679d\u304c\u5730\u9762\u8fd1\u304f\u307e\u3067"
                                "\u5782\u308c\u4e0b\u304c\u308b\u4e2d\u56fd\u539f\u7523\u306e\u843d\u8449\u6a39\u3002"
                                "\u6c34\u8fba\u306b\u690d\u3048\u3089\u308c\u308b\u3002"}},
        .wood = {{"", {0.46f, 0.41f, 0.33f, 1}}, {"winter", {0.62f, 0.53f, 0.26f, 1}}},
        .foliage =
            FoliageColors({0.62f, 0.72f, 0.26f}, {0.36f, 0.50f, 0.20f}, {0.84f, 0.74f, 0.22f}, {0.74f, 0.63f, 0.24f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .relief = 0.035, .roughness = 0.5f});
    AddBark(recipe, {.material = kBough, .name = "bough", .paint = boughBark});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark, .gloss = {0.06f, 0.06f, 0.06f}});
    AddLeaves(
        recipe, {.shape = kLeaf, .spot = {0.50f, 0.36f, 0.14f}, .pale = 0.45, .translucency = 0.5, .depth = 0.02},
        {
            {kLeafSpring, "leaf in spring", {0.56f, 0.70f, 0.20f}, {0.64f, 0.74f, 0.28f}, {0.76f, 0.82f, 0.44f}, 105},
            {kLeafSummer, "leaf in summer", {0.29f, 0.44f, 0.14f}, {0.36f, 0.50f, 0.18f}, {0.62f, 0.70f, 0.36f}, 106},
            {kLeafAutumn, "turning leaf", {0.60f, 0.62f, 0.18f}, {0.80f, 0.70f, 0.20f}, {0.80f, 0.78f, 0.40f}, 107},
            {kLeafYellow, "yellow leaf", {0.90f, 0.78f, 0.20f}, {0.84f, 0.66f, 0.16f}, {0.94f, 0.88f, 0.48f}, 108, 0.1},
        });
    AddBark(recipe, {.material = kCatkin, .name = "catkin", .paint = catkinBark, .roughness = 0.5f});
    return recipe;
}

} // namespace grower
