// Lavender: a low evergreen mound of many thin shoots with narrow grey-green leaves, and violet spikes above it.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kWood, kShoot, kLeafSpring, kLeafSummer, kLeafWinter, kCalyx, kPetal, kWithered };
enum Group : int32_t { kSpray, kThickSpray, kSpike, kOtherSpike };

// Narrow, with smooth margins that roll back.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.035}, {0.15, 0.06}, {0.45, 0.085}, {0.75, 0.08}, {0.93, 0.045}, {1, 0}},
    .stalk = 0.02,
    .slant = 0.9,
    .veins = 0,
};

const LeafShape kPetalShape{
    .halfWidth = {{0, 0.10}, {0.3, 0.22}, {0.6, 0.40}, {0.85, 0.36}, {1, 0}},
    .stalk = 0.05,
    .lobes = 1,
    .lobeDepth = 0.15,
    .veins = 3,
};

Bark calyx(const vdt::Color3f& ridge, const vdt::Color3f& crack, const vdt::Color3f& moss, uint32_t seed)
{
    return PaintRidgedBark(
        {.ridge = ridge, .crack = crack, .moss = moss, .ridges = 9, .plates = 3, .mossShare = 0.35, .seed = seed}, 128);
}

Bark woodBark()
{
    return PaintRidgedBark({.ridge = {0.52f, 0.46f, 0.39f},
                            .crack = {0.28f, 0.23f, 0.19f},
                            .moss = {0.50f, 0.50f, 0.40f},
                            .ridges = 10,
                            .plates = 2,
                            .mossShare = 0.1,
                            .seed = 71},
                           256);
}

Bark shootBark()
{
    return PaintSmoothBark({.skin = {0.50f, 0.56f, 0.38f},
                            .shade = {0.42f, 0.48f, 0.32f},
                            .pore = {0.60f, 0.64f, 0.52f},
                            .poreShare = 0.04,
                            .seed = 72},
                           64);
}

const SprayLook kSprayLook{.spray = {.length = 2.0,
                                     .firstAt = -0.95,
                                     .lastAt = 0.05,
                                     .angle = {50, 12},
                                     .angleAtTip = 24,
                                     .turn = {132, 25},
                                     .flat = 0.1,
                                     .scale = {1, 0.2},
                                     .scaleAtTip = 0.85,
                                     .seed = 3},
                           .leaf = kLeaf,
                           .body = {.fold = -14, .droop = -0.05}};

// A bare stalk with whorls of small flowers, one apart below the others.
void spike(vdt::Mesh& mesh, double stalk, int whorls, int32_t body, bool inFlower, uint64_t seed)
{
    Random random(seed);
    const double lean = random.between(-0.06, 0.06);
    const vdt::Matrix whole = StandingFrame({0, 0, 0}, {lean, 1, random.between(-0.06, 0.06)}, {0, 0, 1});
    AddTurned(mesh,
              {.outline = {{0, 0.11}, {stalk * 0.6, 0.09}, {stalk + whorls * 0.75 - 1.4, 0.05}},
               .sides = 3,
               .material = kShoot,
               .repeat = 6},
              whole);
    double place = stalk - 2.4;
    for (int whorl = 0; whorl < whorls; ++whorl) {
        const double size = 0.62 * (whorl == 0 ? 0.8 : 1.0 - 0.45 * whorl / whorls) * random.between(0.9, 1.1);
        const vdt::Matrix frame =
            StandingFrame(vdt::TransformPoint({0, place, 0}, whole), whole.row(1), {random.between(-1, 1), 0, 1});
        AddTurned(
            mesh,
            {.outline = {{0, 0.08}, {0.35 * size, 0.85 * size}, {1.15 * size, 0.95 * size}, {1.5 * size, 0.2 * size}},
             .sides = 6,
             .material = body},
            frame);
        for (int petal = 0; inFlower && petal < 5; ++petal) {
            const double turn = 2 * vdt::kPi * (petal + random.between(-0.2, 0.2)) / 5;
            const vdt::Vector3 outward = frame.row(0) * std::cos(turn) + frame.row(2) * std::sin(turn);
            const vdt::Vector3 from = vdt::TransformPoint({0, 0.85 * size, 0}, frame) + outward * (0.55 * size);
            AddLeaf(mesh, kPetalShape, {.length = 1.05 * size, .fold = 20, .droop = 0.2, .material = kPetal},
                    StandingFrame(from, outward + frame.row(1) * 0.55, frame.row(1)));
        }
        place += whorl == 0 ? 1.7 : 0.85 * random.between(0.9, 1.1);
    }
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "spray", kLeafSpring, 5, 3.4}, {kThickSpray, "spring", "thick spray", kLeafSpring, 7, 2.9},
        {kSpray, "summer", "spray", kLeafSummer, 5, 4.2}, {kThickSpray, "summer", "thick spray", kLeafSummer, 7, 3.6},
        {kSpray, "autumn", "spray", kLeafSummer, 5, 4.0}, {kThickSpray, "autumn", "thick spray", kLeafSummer, 7, 3.4},
        {kSpray, "winter", "spray", kLeafWinter, 5, 3.6}, {kThickSpray, "winter", "thick spray", kLeafWinter, 7, 3.1},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kSpike, "summer", "spike", [](vdt::Mesh& mesh) { spike(mesh, 19, 7, kCalyx, true, 5); }});
    list.push_back(
        {kOtherSpike, "summer", "shorter spike", [](vdt::Mesh& mesh) { spike(mesh, 15, 6, kCalyx, true, 6); }});
    list.push_back({kSpike, "spring", "bud", [](vdt::Mesh& mesh) { spike(mesh, 8, 3, kShoot, false, 7); }});
    list.push_back(
        {kOtherSpike, "autumn", "withered spike", [](vdt::Mesh& mesh) { spike(mesh, 14, 5, kWithered, false, 8); }});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 77,
        .height = 40,
        .trunkRadius = 1.5,
        .tipRadius = 0.07,
        .flare = 0.3,
        .flareHeight = 1.5,
        .trunkLength = 0.1,
        .crown = {{0, 0.5}, {0.12, 0.82}, {0.35, 1.0}, {0.6, 0.92}, {0.8, 0.68}, {0.93, 0.40}, {1.0, 0.15}},
        .trunk = {.segment = 0.5, .wander = 6, .material = kWood},
        .stems =
            {
                {.spacing = 0.075,
                 .firstAt = 0.05,
                 .lastAt = 0.95,
                 .length = {0.80, 0.12},
                 .angle = {80, 10},
                 .angleAtTip = 8,
                 .turn = {137.5, 15},
                 .segment = 3.0,
                 .wander = 5,
                 .pull = 0.02,
                 .pullAtTip = 0.06,
                 .shortest = 4,
                 .material = kWood},
                {.spacing = 1.45,
                 .firstAt = 0.25,
                 .lastAt = 0.99,
                 .length = {0.42, 0.10},
                 .lengthAtTip = 0.55,
                 .angle = {34, 10},
                 .angleAtTip = 20,
                 .turn = {137.5, 30},
                 .segment = 2.0,
                 .wander = 5,
                 .pull = 0.14,
                 .pullAtTip = 0.1,
                 .shortest = 3,
                 .material = kShoot},
            },
        .foliage =
            {
                {.fromLayer = 2,
                 .groups = {kSpray, kThickSpray},
                 .perVertex = 1.0,
                 .angle = {0, 4},
                 .scale = {1, 0.2},
                 .faceUp = 0.3},
                {.fromLayer = 1,
                 .groups = {kSpray},
                 .firstAt = 0.45,
                 .perVertex = 0.7,
                 .angle = {0, 6},
                 .scale = {0.9, 0.2},
                 .faceUp = 0.3},
                {.fromLayer = 2,
                 .groups = {kSpike, kOtherSpike},
                 .perVertex = 0.62,
                 .tipOnly = true,
                 .angle = {6, 6},
                 .scale = {1, 0.16},
                 .droop = -1.1,
                 .faceUp = 0},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 78;
    age.height = 28;
    age.trunkRadius = 1.0;
    age.stems[0].spacing = 0.08;
    age.stems[0].segment = 2.5;
    age.stems[1].length = {0.5, 0.12};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 79;
    age.height = 15;
    age.trunkRadius = 0.5;
    age.crown = {{0, 0.4}, {0.15, 0.6}, {0.4, 0.72}, {0.7, 0.6}, {0.9, 0.35}, {1.0, 0.15}};
    age.stems[0].spacing = 0.055;
    age.stems[0].segment = 1.6;
    age.stems[0].shortest = 2;
    age.stems[1].spacing = 1.3;
    age.stems[1].length = {0.5, 0.12};
    age.stems[1].segment = 1.5;
    age.stems[1].shortest = 2;
    age.foliage[0].scale = {0.8, 0.15};
    age.foliage[1].scale = {0.75, 0.15};
    age.foliage[2].perVertex = 0.6;
    age.foliage[2].scale = {0.72, 0.1};
    return age;
}

} // namespace

SpeciesRecipe LavandulaAngustifolia()
{
    SpeciesRecipe recipe{
        .name = "Lavandula angustifolia",
        .labels = {{"en", "English lavender"},
                   {"de", "Echter Lavendel"},
                   {"fr", "Lavande vraie"},
                   {"es", "Lavanda"},
                   {"it", "Lavanda vera"},
                   {"ja", "\u30e9\u30d9\u30f3\u30c0\u30fc"}},
        .descriptions =
            {{"en", "Small evergreen shrub of the western Mediterranean with narrow grey-green leaves. Fragrant violet "
                    "flower spikes from June to August."},
             {"de", "Kleiner immergr\u00fcner Strauch des westlichen Mittelmeerraums mit schmalen graugr\u00fcnen "
                    "Bl\u00e4ttern. Duftende violette Bl\u00fctenst\u00e4nde von Juni bis August."},
             {"fr", "Petit arbrisseau persistant de M\u00e9diterran\u00e9e occidentale aux feuilles \u00e9troites "
                    "gris-vert. \u00c9pis violets parfum\u00e9s de juin \u00e0 ao\u00fbt."},
             {"es", "Arbusto peque\u00f1o y perenne del Mediterr\u00e1neo occidental, de hojas estrechas verde "
                    "gris\u00e1ceo. Espigas violetas y fragantes de junio a agosto."},
             {"it", "Piccolo arbusto sempreverde del Mediterraneo occidentale con foglie strette grigio-verdi. Spighe "
                    "viola profumate da giugno ad agosto."},
             {"ja", "\u7d30\u3044\u7070\u7dd1\u8272\u306e\u8449\u3092\u6301\u3064\u5730\u4e2d\u6d77\u539f\u7523\u306e"
                    "\u5e38\u7dd1\u4f4e\u6728\u3002\u590f\u306b\u9999\u308a\u306e\u3088\u3044\u7d2b\u306e\u82b1\u7a42"
                    "\u3092\u3064\u3051\u308b\u3002"}},
        .wood = {{"", {0.45f, 0.39f, 0.33f, 1}}},
        .foliage =
            FoliageColors({0.52f, 0.60f, 0.42f}, {0.46f, 0.36f, 0.66f}, {0.48f, 0.53f, 0.42f}, {0.47f, 0.50f, 0.43f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kWood,
        .proxyFoliage = kLeafSummer,
    };
    AddBark(recipe, {.material = kWood, .name = "wood", .paint = woodBark, .roughness = 0.5f});
    AddBark(recipe, {.material = kShoot, .name = "shoot", .paint = shootBark, .roughness = 0.4f});
    AddLeaves(
        recipe,
        {.shape = kLeaf,
         .pale = 0.65,
         .roughness = 0.4f,
         .gloss = 0.02f,
         .translucency = 0.3,
         .depth = 0.05,
         .size = 128},
        {
            {kLeafSpring, "leaf in spring", {0.48f, 0.59f, 0.36f}, {0.56f, 0.65f, 0.46f}, {0.62f, 0.70f, 0.52f}, 73},
            {kLeafSummer, "leaf", {0.41f, 0.49f, 0.35f}, {0.50f, 0.57f, 0.45f}, {0.57f, 0.63f, 0.52f}, 74},
            {kLeafWinter, "leaf in winter", {0.42f, 0.46f, 0.37f}, {0.50f, 0.51f, 0.44f}, {0.56f, 0.58f, 0.50f}, 75},
        });
    AddLeaves(recipe, {.shape = kPetalShape, .gloss = 0, .translucency = 0.6, .depth = 0.02, .size = 64},
              {
                  {kPetal, "petal", {0.56f, 0.43f, 0.86f}, {0.66f, 0.54f, 0.92f}, {0.40f, 0.26f, 0.68f}, 78},
              });
    AddBark(recipe, {.material = kCalyx,
                     .name = "calyx",
                     .paint =
                         [] {
                             return calyx({0.48f, 0.39f, 0.68f}, {0.32f, 0.24f, 0.50f}, {0.50f, 0.50f, 0.56f}, 76);
                         },
                     .roughness = 0.5f});
    AddBark(recipe, {.material = kWithered,
                     .name = "withered calyx",
                     .paint =
                         [] {
                             return calyx({0.54f, 0.48f, 0.42f}, {0.34f, 0.29f, 0.26f}, {0.50f, 0.46f, 0.50f}, 77);
                         },
                     .roughness = 0.5f});
    return recipe;
}

} // namespace grower
