// Japanese cherry: a vase of rising boughs that disappears in pink blossom before the leaves are out.
#include "grower/looks.h"
#include "grower/noise.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kTwig, kBlossom, kLeafSpring, kLeafSummer, kLeafAutumn, kLeafRed, kBud };
enum Group : int32_t { kCluster, kLooseCluster, kSpray, kOtherSpray, kBuds };

const LeafShape kLeaf{
    .halfWidth = {{0, 0.06}, {0.12, 0.17}, {0.35, 0.26}, {0.55, 0.26}, {0.75, 0.17}, {0.9, 0.06}, {1, 0}},
    .stalk = 0.24,
    .teeth = 20,
    .toothDepth = 0.1,
    .slant = 0.6,
    .veins = 8,
};

// A double flower seen from above: two rings of notched petals, darker towards the heart and at their edges.
Image blossom(double lightness)
{
    constexpr uint32_t kSize = 128;
    constexpr int kPetals = 6;
    Image image(kSize, kSize, true);
    for (uint32_t y = 0; y < kSize; ++y) {
        for (uint32_t x = 0; x < kSize; ++x) {
            const double across = (x + 0.5) / kSize * 2 - 1;
            const double along = 1 - (y + 0.5) / kSize * 2;
            const double radius = std::hypot(across, along);
            const double turn = std::atan2(along, across);
            const auto petal = [&](double offset, double reach) {
                const double wave = std::fabs(std::sin(kPetals * 0.5 * (turn + offset)));
                const double notch = 0.07 * SmoothStep(0.9, 1.0, wave);
                return reach * (0.62 + 0.36 * std::sqrt(wave) - notch) - radius; // above 0 on the petal
            };
            const double inner = petal(vdt::kPi / kPetals, 0.62);
            const double shown = inner > 0 ? inner : petal(0, 0.97);
            const double edge = SmoothStep(0.10, 0.0, shown);
            const double streak = 0.5 + 0.5 * Noise(turn * 9, radius * 4, 1000, 1000, 5);
            vdt::Color3f color = Mix({0.98f, 0.80f, 0.86f}, {0.93f, 0.58f, 0.71f}, 0.55 * edge + 0.25 * streak);
            color = Mix(color, {0.80f, 0.36f, 0.52f}, SmoothStep(0.30, 0.05, radius));
            color = Scaled(color, lightness);
            image.at(x, y) = {color.r, color.g, color.b, static_cast<float>(SmoothStep(-0.02, 0.02, shown))};
        }
    }
    return image;
}

Bark trunkBark(uint32_t seed, uint32_t size)
{
    return PaintPaperBark({.paper = {0.42f, 0.32f, 0.29f},
                           .peel = {0.32f, 0.23f, 0.20f},
                           .pore = {0.58f, 0.46f, 0.38f},
                           .patch = {0.22f, 0.17f, 0.15f},
                           .patchShare = 0.22,
                           .seed = seed},
                          size);
}

Bark budSkin()
{
    return PaintSmoothBark({.skin = {0.48f, 0.28f, 0.20f},
                            .shade = {0.36f, 0.20f, 0.15f},
                            .pore = {0.60f, 0.40f, 0.30f},
                            .poreShare = 0.1,
                            .seed = 97},
                           64);
}

// Flowers that hang in a bunch on long stalks, looking every way.
void cluster(vdt::Mesh& mesh, int flowers, double size, uint64_t seed)
{
    Random random(seed);
    for (int i = 0; i < flowers; ++i) {
        const double turn = 2 * vdt::kPi * (i + random.real() * 0.5) / flowers;
        const double rise = random.between(-0.5, 0.9);
        const vdt::Vector3 outward = vdt::Normalized(vdt::Vector3{std::cos(turn), rise, std::sin(turn)});
        const vdt::Vector3 place = outward * random.between(0.6, 1.0) * size;
        const vdt::Matrix lookingOut = StandingFrame(place, {random.between(-1, 1), 1, random.between(-1, 1)}, outward);
        const vdt::Vector3 foot = place - lookingOut.row(1) * (0.5 * size);
        AddCard(mesh, size, size, kBlossom, StandingFrame(foot, lookingOut.row(1), outward));
    }
}

const SprayLook kSprayLook{.spray = {.length = 12,
                                     .firstAt = -0.9,
                                     .lastAt = 0.05,
                                     .angle = {66, 12},
                                     .angleAtTip = 36,
                                     .turn = {145, 25},
                                     .flat = 0.6,
                                     .scale = {1, 0.16},
                                     .scaleAtTip = 0.85,
                                     .seed = 3},
                           .leaf = kLeaf,
                           .body = {.fold = 18, .droop = 0.22}};

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "first leaves", kLeafSpring, 2, 5.0},
        {kSpray, "summer", "spray", kLeafSummer, 6, 11.5},
        {kOtherSpray, "summer", "other spray", kLeafSummer, 5, 12.5},
        {kSpray, "autumn", "turning spray", kLeafAutumn, 5, 11.0},
        {kOtherSpray, "autumn", "red spray", kLeafRed, 4, 12.0},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kCluster, "spring", "blossom", [](vdt::Mesh& mesh) { cluster(mesh, 7, 5.2, 1); }});
    list.push_back({kLooseCluster, "spring", "loose blossom", [](vdt::Mesh& mesh) { cluster(mesh, 5, 4.8, 2); }});
    list.push_back({kBuds, "winter", "buds", [](vdt::Mesh& mesh) {
                        AddTurned(mesh, {.outline = {{0, 0.12}, {0.5, 0.3}, {1.3, 0.02}}, .sides = 4, .material = kBud},
                                  vdt::Matrix::Identity());
                    }});
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 312,
        .height = 780,
        .trunkRadius = 19,
        .tipRadius = 0.22,
        .flare = 0.4,
        .flareHeight = 20,
        .crown = {{0.20, 0.10}, {0.32, 0.34}, {0.5, 0.50}, {0.68, 0.54}, {0.84, 0.44}, {0.95, 0.25}, {1.0, 0.08}},
        .scaffold = ScaffoldRecipe{.buds = 1000,
                                   .reach = 260,
                                   .nearEnough = 48,
                                   .step = 21,
                                   .wander = 0.18,
                                   .pull = 0.16,
                                   .hollow = 0.6,
                                   .clearance = 0.02,
                                   .twigWood = 380,
                                   .material = kTrunk,
                                   .thinMaterial = kTwig},
        .stems =
            {
                {.spacing = 8,
                 .firstAt = 0.0,
                 .lastAt = 1.0,
                 .length = {58, 20},
                 .lengthAtTip = 0.8,
                 .angle = {46, 12},
                 .angleAtTip = 34,
                 .turn = {137.5, 30},
                 .segment = 12,
                 .wander = 5,
                 .pull = 0.07,
                 .pullAtTip = 0.02,
                 .shortest = 14,
                 .material = kTwig},
            },
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kCluster, kCluster, kLooseCluster},
                 .perVertex = 2.1,
                 .angle = {50, 40},
                 .scale = {1, 0.2},
                 .droop = 0.5,
                 .faceUp = 0.2},
                {.fromLayer = 1,
                 .groups = {kSpray, kOtherSpray},
                 .perVertex = 1.25,
                 .angle = {0, 8},
                 .scale = {1, 0.2},
                 .faceUp = 0.7},
                {.fromLayer = 1,
                 .groups = {kSpray, kBuds},
                 .tipOnly = true,
                 .angle = {0, 6},
                 .scale = {1, 0.2},
                 .faceUp = 0.7},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 313;
    age.height = 480;
    age.trunkRadius = 8;
    age.flareHeight = 10;
    age.crown = {{0.24, 0.08}, {0.36, 0.26}, {0.55, 0.38}, {0.72, 0.40}, {0.88, 0.28}, {1.0, 0.07}};
    age.scaffold->buds = 420;
    age.scaffold->reach = 180;
    age.scaffold->nearEnough = 40;
    age.scaffold->step = 18;
    age.stems[0].length = {50, 15};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 314;
    age.height = 240;
    age.trunkRadius = 2.8;
    age.flare = 0.2;
    age.crown = {{0.3, 0.06}, {0.42, 0.18}, {0.6, 0.27}, {0.78, 0.26}, {0.92, 0.16}, {1.0, 0.05}};
    age.scaffold->buds = 110;
    age.scaffold->reach = 110;
    age.scaffold->nearEnough = 30;
    age.scaffold->step = 12;
    age.scaffold->twigWood = 200;
    age.stems[0].length = {36, 10};
    age.stems[0].segment = 10;
    age.foliage[0].scale = {0.85, 0.15};
    age.foliage[1].scale = {0.85, 0.15};
    return age;
}

} // namespace

SpeciesRecipe PrunusSerrulata()
{
    SpeciesRecipe recipe{
        .name = "Prunus serrulata",
        .labels = {{"en", "Japanese cherry"},
                   {"de", "Japanische Bl\u00fctenkirsche"},
                   {"fr", "Cerisier du Japon"},
                   {"es", "Cerezo japon\u00e9s"},
                   {"it", "Ciliegio giapponese"},
                   {"ja", "\u30b5\u30c8\u30b6\u30af\u30e9"}},
        .descriptions = {{"en", "Small flowering tree of East Asian gardens with rising boughs. Double pink blossom in "
                                "spring, orange and red leaves in autumn."},
                         {"de",
                          "Kleiner Bl\u00fctenbaum ostasiatischer G\u00e4rten mit aufstrebenden \u00c4sten. "
                          "Gef\u00fcllte rosa Bl\u00fcten im Fr\u00fchling, orange und rote Bl\u00e4tter im Herbst."},
                         {"fr", "Petit arbre \u00e0 fleurs des jardins d'Asie orientale, aux branches dress\u00e9es. "
                                "Fleurs doubles roses au printemps, feuilles orange et rouges en automne."},
                         {"es", "Peque\u00f1o \u00e1rbol de flor de los jardines de Asia oriental, de ramas erguidas. "
                                "Flores dobles rosadas en primavera, hojas anaranjadas y rojas en oto\u00f1o."},
                         {"it", "Piccolo albero da fiore dei giardini dell'Asia orientale, dai rami ascendenti. Fiori "
                                "doppi rosa in primavera, foglie arancioni e rosse in autunno."},
                         {"ja", "\u6625\u306b\u516b\u91cd\u306e\u6de1\u7d05\u8272\u306e\u82b1\u3092\u54b2\u304b\u305b"
                                "\u3001\u79cb\u306b\u306f\u8d64\u304f\u7d05\u8449\u3059\u308b\u82b1\u6728\u3002"}},
        .wood = {{"", {0.38f, 0.29f, 0.26f, 1}}},
        .foliage =
            FoliageColors({0.95f, 0.72f, 0.80f}, {0.25f, 0.38f, 0.14f}, {0.78f, 0.36f, 0.14f}, {0.38f, 0.27f, 0.22f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .shownSeason = kSpring, // in blossom
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk,
                     .name = "trunk",
                     .paint = [] { return trunkBark(91, 512); },
                     .relief = 0.015,
                     .roughness = 0.2f,
                     .gloss = {0.05f, 0.05f, 0.05f}});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = [] { return trunkBark(92, 128); }, .roughness = 0.2f});
    AddLeaves(
        recipe, {.shape = kLeaf, .spot = {0.40f, 0.16f, 0.08f}, .gloss = 0.08f},
        {
            {kLeafSpring, "leaf in spring", {0.50f, 0.44f, 0.18f}, {0.54f, 0.36f, 0.18f}, {0.70f, 0.58f, 0.36f}, 93},
            {kLeafSummer, "leaf in summer", {0.20f, 0.35f, 0.10f}, {0.26f, 0.42f, 0.14f}, {0.50f, 0.60f, 0.30f}, 94},
            {kLeafAutumn, "turning leaf", {0.86f, 0.54f, 0.14f}, {0.84f, 0.34f, 0.10f}, {0.92f, 0.72f, 0.36f}, 95, 0.1},
            {kLeafRed, "red leaf", {0.74f, 0.24f, 0.10f}, {0.60f, 0.12f, 0.09f}, {0.88f, 0.56f, 0.26f}, 96, 0.12},
        });
    AddBark(recipe, {.material = kBud, .name = "bud", .paint = budSkin});
    recipe.textures.push_back({"blossom.png", [] { return blossom(1); }});
    recipe.textures.push_back({"blossom_back.png", [] { return blossom(0.9); }});
    recipe.materials.push_back({.id = kBlossom,
                                .name = "blossom",
                                .front = {.texture = "blossom.png"},
                                .back = SideRecipe{.texture = "blossom_back.png"},
                                .cutOut = true,
                                .translucency = 0.6,
                                .depth = 0.02});
    return recipe;
}

} // namespace grower
