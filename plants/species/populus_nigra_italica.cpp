// Lombardy poplar: a narrow column of steep branches that begin near the ground and lie close to the trunk.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kBough, kTwig, kLeafSpring, kLeafSummer, kLeafAutumn, kLeafGold, kBud };
enum Group : int32_t { kSpray, kOtherSpray, kTipSpray, kBuds };

// A rhomb wider than long, with a drawn out tip, on a long stalk.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.06}, {0.06, 0.24}, {0.18, 0.44}, {0.3, 0.52}, {0.44, 0.46}, {0.64, 0.26}, {0.84, 0.08}, {1, 0}},
    .stalk = 0.7,
    .teeth = 11,
    .toothDepth = 0.08,
    .slant = 0.4,
    .veins = 5,
};

Bark trunkBark()
{
    return PaintRidgedBark({.ridge = {0.44f, 0.41f, 0.37f},
                            .crack = {0.18f, 0.16f, 0.14f},
                            .moss = {0.42f, 0.44f, 0.32f},
                            .ridges = 18,
                            .plates = 3,
                            .mossShare = 0.1,
                            .seed = 121},
                           512);
}

Bark boughBark()
{
    return PaintSmoothBark({.skin = {0.54f, 0.52f, 0.44f},
                            .shade = {0.40f, 0.38f, 0.32f},
                            .pore = {0.30f, 0.27f, 0.22f},
                            .poreShare = 0.12,
                            .seed = 122},
                           128);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.60f, 0.50f, 0.30f},
                            .shade = {0.46f, 0.37f, 0.22f},
                            .pore = {0.72f, 0.66f, 0.50f},
                            .poreShare = 0.1,
                            .seed = 123},
                           64);
}

Bark budSkin()
{
    return PaintSmoothBark({.skin = {0.56f, 0.34f, 0.16f},
                            .shade = {0.42f, 0.24f, 0.12f},
                            .pore = {0.66f, 0.46f, 0.24f},
                            .poreShare = 0.05,
                            .seed = 124},
                           64);
}

// Leaves all around a rising twig.
const SprayLook kSprayLook{.spray = {.length = 19,
                                     .firstAt = -0.95,
                                     .lastAt = 0.0,
                                     .angle = {62, 14},
                                     .angleAtTip = 40,
                                     .turn = {137.5, 25},
                                     .flat = 0.25,
                                     .scale = {1, 0.18},
                                     .scaleAtTip = 0.9,
                                     .seed = 1},
                           .leaf = kLeaf,
                           .body = {.fold = 12, .droop = 0.12}};

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kSpray, "spring", "fresh spray", kLeafSpring, 5, 7.4},
        {kOtherSpray, "spring", "other fresh spray", kLeafSpring, 4, 8.0},
        {kTipSpray, "spring", "fresh tip", kLeafSpring, 4, 6.5},
        {kSpray, "summer", "spray", kLeafSummer, 6, 12.5},
        {kOtherSpray, "summer", "other spray", kLeafSummer, 5, 13.5},
        {kTipSpray, "summer", "tip", kLeafSummer, 5, 10.5},
        {kSpray, "autumn", "golden spray", kLeafGold, 5, 12.0},
        {kOtherSpray, "autumn", "turning spray", kLeafAutumn, 4, 13.0},
        {kTipSpray, "autumn", "golden tip", kLeafGold, 4, 10.0},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kSprayLook, sprays);
    list.push_back({kBuds, "winter", "buds", [](vdt::Mesh& mesh) {
                        AddTurned(mesh, {.outline = {{0, 0.16}, {0.5, 0.3}, {1.6, 0.02}}, .sides = 4, .material = kBud},
                                  vdt::Matrix::Identity());
                    }});
    return list;
}

std::vector<FoliageRule> foliage()
{
    return {
        {.fromLayer = 2,
         .groups = {kSpray, kOtherSpray},
         .perVertex = 1.0,
         .angle = {0, 6},
         .scale = {1, 0.2},
         .faceUp = 0.3},
        {.fromLayer = 0, .groups = {kTipSpray, kBuds}, .tipOnly = true, .angle = {0, 6}, .scale = {1, 0.2}},
    };
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 1101,
        .height = 2500,
        .trunkRadius = 34,
        .tipRadius = 0.18,
        .flare = 0.7,
        .flareHeight = 45,
        .crown = {{0.02, 0.028},
                  {0.08, 0.055},
                  {0.2, 0.078},
                  {0.4, 0.088},
                  {0.6, 0.085},
                  {0.78, 0.066},
                  {0.92, 0.034},
                  {1.0, 0.006}},
        .trunk = {.segment = 40, .wander = 1.2, .pull = 0.15, .pullAtTip = 0.1, .material = kTrunk},
        .stems =
            {
                {.spacing = 15,
                 .firstAt = 0.045,
                 .lastAt = 0.985,
                 .length = {0.95, 0.2},
                 .angle = {28, 6},
                 .angleAtTip = 18,
                 .turn = {137.5, 20},
                 .segment = 32,
                 .wander = 3,
                 .pull = 0.12,
                 .pullAtTip = 0.08,
                 .shortest = 30,
                 .material = kBough},
                {.spacing = 21,
                 .firstAt = 0.12,
                 .lastAt = 0.97,
                 .length = {0.32, 0.12},
                 .lengthAtTip = 0.55,
                 .angle = {34, 9},
                 .angleAtTip = 24,
                 .turn = {137.5, 40},
                 .segment = 20,
                 .wander = 4,
                 .pull = 0.14,
                 .pullAtTip = 0.1,
                 .shortest = 24,
                 .material = kTwig},
                {.spacing = 34,
                 .firstAt = 0.2,
                 .lastAt = 0.9,
                 .length = {0.5, 0.2},
                 .lengthAtTip = 0.7,
                 .angle = {38, 10},
                 .angleAtTip = 28,
                 .turn = {140, 50},
                 .segment = 18,
                 .wander = 5,
                 .pull = 0.14,
                 .pullAtTip = 0.1,
                 .shortest = 18,
                 .material = kTwig},
            },
        .foliage = foliage(),
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 1102;
    age.height = 1200;
    age.trunkRadius = 12;
    age.flare = 0.4;
    age.flareHeight = 18;
    age.trunk.segment = 28;
    age.stems[0].spacing = 12;
    age.stems[0].segment = 24;
    age.stems[0].shortest = 24;
    age.stems[1].spacing = 19;
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 1103;
    age.height = 400;
    age.trunkRadius = 3;
    age.flare = 0.2;
    age.flareHeight = 6;
    age.crown = {{0.02, 0.03}, {0.1, 0.07}, {0.3, 0.1}, {0.55, 0.1}, {0.8, 0.065}, {1.0, 0.012}};
    age.trunk.segment = 16;
    age.trunk.material = kBough;
    age.stems[0].spacing = 7;
    age.stems[0].segment = 18;
    age.stems[0].shortest = 16;
    age.stems[0].material = kTwig;
    age.stems[1].spacing = 17;
    age.stems[1].segment = 16;
    age.stems[1].shortest = 14;
    age.stems.pop_back();
    age.foliage[0].fromLayer = 1;
    age.foliage[0].scale = {0.85, 0.2};
    return age;
}

} // namespace

SpeciesRecipe PopulusNigraItalica()
{
    SpeciesRecipe recipe{
        .name = "Populus nigra Italica",
        .labels = {{"en", "Lombardy poplar"},
                   {"de", "Pyramiden-Pappel"},
                   {"fr", "Peuplier d'Italie"},
                   {"es", "Chopo lombardo"},
                   {"it", "Pioppo cipressino"},
                   {"ja", "\u30bb\u30a4\u30e8\u30a6\u30cf\u30b3\u30e4\u30ca\u30ae"}},
        .descriptions = {{"en", "Tall and narrow as a column, with steep branches from the foot on. Stands in rows "
                                "along roads and canals; its leaves tremble in the wind and turn golden."},
                         {"de", "Hoch und schmal wie eine S\u00e4ule, mit steilen \u00c4sten vom Fu\u00df an. Steht in "
                                "Reihen an Stra\u00dfen und Kan\u00e4len; die Bl\u00e4tter zittern im Wind und werden "
                                "goldgelb."},
                         {"fr", "Haut et \u00e9troit comme une colonne, aux branches dress\u00e9es d\u00e8s le pied. "
                                "Plant\u00e9 en rang le long des routes et des canaux ; dor\u00e9 en automne."},
                         {"es", "Alto y estrecho como una columna, de ramas erguidas desde el pie. Se planta en "
                                "hileras junto a caminos y canales; dorado en oto\u00f1o."},
                         {"it", "Alto e stretto come una colonna, con rami eretti fin dal piede. Piantato in filari "
                                "lungo strade e canali; dorato in autunno."},
                         {"ja", "\u679d\u304c\u307b\u307c\u5782\u76f4\u306b\u4f38\u3073\u308b\u7d30\u9577\u3044\u67f1"
                                "\u306e\u3088\u3046\u306a\u6a39\u5f62\u306e\u843d\u8449\u6a39\u3002\u4e26\u6728\u306b"
                                "\u3059\u308b\u3002"}},
        .wood = {{"", {0.44f, 0.41f, 0.36f, 1}}, {"winter", {0.50f, 0.45f, 0.35f, 1}}},
        .foliage =
            FoliageColors({0.50f, 0.58f, 0.22f}, {0.28f, 0.42f, 0.14f}, {0.85f, 0.68f, 0.16f}, {0.50f, 0.42f, 0.28f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .relief = 0.03, .roughness = 0.5f});
    AddBark(recipe, {.material = kBough, .name = "bough", .paint = boughBark});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark, .gloss = {0.05f, 0.05f, 0.05f}});
    AddLeaves(
        recipe, {.shape = kLeaf, .spot = {0.42f, 0.28f, 0.10f}, .gloss = 0.1f, .translucency = 0.5},
        {
            {kLeafSpring, "leaf in spring", {0.50f, 0.56f, 0.18f}, {0.56f, 0.54f, 0.22f}, {0.72f, 0.72f, 0.42f}, 125},
            {kLeafSummer, "leaf in summer", {0.22f, 0.38f, 0.10f}, {0.28f, 0.44f, 0.14f}, {0.58f, 0.66f, 0.32f}, 126},
            {kLeafAutumn,
             "turning leaf",
             {0.62f, 0.60f, 0.16f},
             {0.86f, 0.68f, 0.14f},
             {0.80f, 0.74f, 0.36f},
             127,
             0.1},
            {kLeafGold, "golden leaf", {0.92f, 0.74f, 0.14f}, {0.86f, 0.58f, 0.10f}, {0.94f, 0.84f, 0.44f}, 128, 0.16},
        });
    AddBark(recipe, {.material = kBud, .name = "bud", .paint = budSkin, .gloss = {0.1f, 0.1f, 0.1f}});
    return recipe;
}

} // namespace grower
