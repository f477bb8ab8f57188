// Canary Island date palm: one stout trunk of leaf scars, and a round crown of very many arching feathers.
#include "grower/blade.h"
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kRib, kBase, kLeaflet, kFlower, kFruit };
enum Group : int32_t { kLeaflets, kOtherLeaflets, kBunch, kBases };

// Stiff, narrow and pointed.
const LeafShape kLeafletShape{
    .halfWidth = {{0, 0.026}, {0.1, 0.040}, {0.4, 0.048}, {0.8, 0.034}, {1, 0}},
    .stalk = 0,
    .veins = 0,
};

// A strand with its flowers or fruits to both sides.
const LeafShape kStrandShape{
    .halfWidth = {{0, 0.01}, {0.3, 0.02}, {0.4, 0.06}, {0.9, 0.06}, {1, 0}},
    .stalk = 0,
    .lobes = 14,
    .lobeDepth = 0.8,
    .slant = 0.2,
    .veins = 0,
};

// The leaflets of one piece of the rib.
void leaflets(vdt::Mesh& mesh, uint64_t seed)
{
    AddSpray(mesh,
             {.leaves = 12,
              .length = 22,
              .firstAt = -0.96,
              .lastAt = -0.04,
              .angle = {52, 6},
              .angleAtTip = 50,
              .turn = {180, 24},
              .flat = 1,
              .scale = {1, 0.08},
              .scaleAtTip = 1,
              .seed = seed},
             kLeafletShape, {.length = 48, .fold = 28, .droop = 0.1, .material = kLeaflet});
}

// A stalk that hangs over, with strands at its end.
void bunch(vdt::Mesh& mesh, int32_t material, int strands, double size)
{
    AddBladeSpray(mesh,
                  {.leaves = strands,
                   .length = 30 * size,
                   .firstAt = 2.4,
                   .lastAt = 3.4,
                   .angle = {52, 14},
                   .angleAtTip = 10,
                   .turn = {137.5, 20},
                   .flat = 0,
                   .seed = 8},
                  kStrandShape,
                  {.length = 60 * size, .width = 9 * size, .arch = 70, .pieces = 3, .material = material});
    AddTurned(mesh, {.outline = {{0, 2.0}, {95 * size, 1.2}}, .sides = 4, .material = kRib, .repeat = 4},
              vdt::Matrix::Identity());
}

// What the trimmed fronds below the crown leave standing.
void bases(vdt::Mesh& mesh)
{
    Random random(9);
    constexpr int kCount = 13;
    for (int i = 0; i < kCount; ++i) {
        const double turn = 2 * vdt::kPi * (i + random.between(-0.2, 0.2)) / kCount;
        const vdt::Vector3 outward{std::cos(turn), 0, std::sin(turn)};
        const vdt::Vector3 direction = outward + vdt::Vector3{0, random.between(0.9, 1.3), 0};
        AddTurned(mesh, {.outline = {{0, 7}, {22, 5.5}, {40, 3.5}, {41, 0.5}}, .sides = 5, .material = kBase},
                  StandingFrame(outward * 24, direction, {0, 1, 0}));
    }
}

std::vector<OrganRecipe> organs()
{
    return {
        {kLeaflets, "", "leaflets", [](vdt::Mesh& mesh) { leaflets(mesh, 1); }},
        {kOtherLeaflets, "", "other leaflets", [](vdt::Mesh& mesh) { leaflets(mesh, 2); }},
        {kBases, "", "leaf bases", bases},
        {kBunch, "spring", "flowers", [](vdt::Mesh& mesh) { bunch(mesh, kFlower, 20, 0.7); }},
        {kBunch, "summer", "fruits", [](vdt::Mesh& mesh) { bunch(mesh, kFruit, 30, 1); }},
        {kBunch, "autumn", "last fruits", [](vdt::Mesh& mesh) { bunch(mesh, kFruit, 16, 0.9); }},
    };
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 411,
        .height = 1200,
        .trunkRadius = 36,
        .tipRadius = 0.3,
        .flare = 0.25,
        .flareHeight = 40,
        .trunkLength = 0.72,
        .crown = {{0.38, 0.05}, {0.45, 0.24}, {0.55, 0.335}, {0.7, 0.38}, {0.85, 0.335}, {0.95, 0.24}, {1.05, 0.05}},
        .trunk = {.segment = 10, .wander = 0.3, .pull = 0.3, .pullAtTip = 0.3, .material = kTrunk},
        .stems = {{.spacing = 0.62,
                   .firstAt = 0.93,
                   .lastAt = 0.995,
                   .length = {0.98, 0.06},
                   .angle = {118, 10},
                   .angleAtTip = 4,
                   .changeFrom = 0.93,
                   .turn = {137.5, 4},
                   .segment = 22,
                   .wander = 0.8,
                   .pull = -0.02,
                   .pullAtTip = -0.13,
                   .material = kRib}},
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kLeaflets, kOtherLeaflets},
                 .firstAt = 0.1,
                 .angle = {0, 0},
                 .scale = {1, 0.05},
                 .scaleAlong = {{0, 0.1}, {0.2, 0.65}, {0.5, 1}, {0.8, 0.95}, {1, 0.75}},
                 .faceUp = 1,
                 .upperSide = true},
                {.fromLayer = 0,
                 .lastLayer = 0,
                 .groups = {kBases},
                 .firstAt = 0.91,
                 .angle = {0, 3},
                 .scale = {1, 0.06},
                 .faceUp = 0},
                {.fromLayer = 0,
                 .lastLayer = 0,
                 .groups = {kBunch},
                 .firstAt = 0.945,
                 .perVertex = 1.6,
                 .angle = {80, 14},
                 .scale = {1, 0.15},
                 .faceUp = 1},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 412;
    age.height = 650;
    age.trunkLength = 0.46;
    age.crown = {{-0.1, 0.3}, {0.1, 0.54}, {0.3, 0.65}, {0.5, 0.69}, {0.7, 0.63}, {0.9, 0.5}, {1.05, 0.35}, {1.2, 0}};
    age.trunk.segment = 7;
    age.stems[0].spacing = 0.55;
    age.stems[0].firstAt = age.stems[0].changeFrom = 0.86;
    age.stems[0].angle = {94, 9};
    age.foliage[1].firstAt = 0.70;
    age.foliage[2].firstAt = 0.88;
    return age;
}

// Before the trunk rises, the fronds stand in a tuft on the ground.
AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 413;
    age.height = 250;
    age.trunkRadius = 14;
    age.flare = 0;
    age.trunkLength = 0.16;
    age.crown = {{0, 0.86}, {0.3, 0.84}, {0.6, 0.76}, {0.85, 0.62}, {1.1, 0.3}, {1.2, 0}};
    age.trunk.segment = 4;
    age.stems[0].spacing = 0.85;
    age.stems[0].firstAt = age.stems[0].changeFrom = 0.2;
    age.stems[0].angle = {70, 10};
    age.stems[0].segment = 14;
    age.stems[0].pullAtTip = -0.11;
    age.stems[0].clearance = {20, 6};
    age.foliage[0].scale = {0.62, 0.05};
    age.foliage.resize(1);
    return age;
}

} // namespace

SpeciesRecipe PhoenixCanariensis()
{
    SpeciesRecipe recipe{
        .name = "Phoenix canariensis",
        .labels = {{"en", "Canary Island date palm"},
                   {"de", "Kanarische Dattelpalme"},
                   {"fr", "Palmier des Canaries"},
                   {"es", "Palmera canaria"},
                   {"it", "Palma delle Canarie"},
                   {"ja", "\u30ab\u30ca\u30ea\u30fc\u30e4\u30b7"}},
        .descriptions =
            {{"en", "Stately evergreen palm of the Canary Islands with a stout trunk patterned by leaf scars and a "
                    "round crown of long arching fronds. Orange fruits hang in bunches in summer."},
             {"de", "Stattliche immergr\u00fcne Palme der Kanarischen Inseln mit dickem, von Blattnarben gemustertem "
                    "Stamm und runder Krone langer \u00fcberh\u00e4ngender Wedel. Im Sommer orangefarbene "
                    "Fruchtst\u00e4nde."},
             {"fr", "Palmier majestueux et persistant des \u00eeles Canaries, au tronc \u00e9pais marqu\u00e9 de "
                    "cicatrices foliaires et \u00e0 couronne ronde de longues palmes arqu\u00e9es. Fruits orang\u00e9s "
                    "en r\u00e9gimes en \u00e9t\u00e9."},
             {"es", "Palmera majestuosa y perenne de las islas Canarias, de tronco grueso marcado por las cicatrices "
                    "de las hojas y copa redonda de largas hojas arqueadas. En verano cuelgan racimos de frutos "
                    "anaranjados."},
             {"it",
              "Palma maestosa e sempreverde delle isole Canarie, dal tronco robusto segnato dalle cicatrici "
              "fogliari e dalla chioma rotonda di lunghe foglie arcuate. In estate grappoli di frutti aranciati."},
             {"ja", "\u8449\u75d5\u306e\u6a21\u69d8\u304c\u3042\u308b\u592a\u3044\u5e79\u3068\u3001\u5f13\u306a\u308a"
                    "\u306b\u5782\u308c\u308b\u7fbd\u72b6\u8449\u306e\u4e38\u3044\u6a39\u51a0\u3092\u6301\u3064\u30ab"
                    "\u30ca\u30ea\u30a2\u8af8\u5cf6\u539f\u7523\u306e\u30e4\u30b7\u3002\u590f\u306b\u6a59\u8272\u306e"
                    "\u5b9f\u304c\u623f\u306b\u306a\u308b\u3002"}},
        .wood = {{"", {0.45f, 0.38f, 0.31f, 1}}},
        .foliage =
            FoliageColors({0.30f, 0.42f, 0.18f}, {0.28f, 0.40f, 0.17f}, {0.28f, 0.39f, 0.17f}, {0.27f, 0.37f, 0.18f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeaflet,
    };
    AddBark(recipe, {.material = kTrunk,
                     .name = "trunk",
                     .paint =
                         [] {
                             return PaintScarredBark({.scar = {0.58f, 0.50f, 0.41f},
                                                      .rim = {0.70f, 0.62f, 0.52f},
                                                      .fibre = {0.32f, 0.25f, 0.19f},
                                                      .seed = 41},
                                                     512);
                         },
                     .relief = 0.03,
                     .roughness = 0.5f});
    AddSkin(recipe, kRib, "rib", {0.52f, 0.55f, 0.27f}, 42);
    AddSkin(recipe, kBase, "leaf base", {0.62f, 0.46f, 0.24f}, 46);
    AddLeaves(recipe,
              {.shape = kLeafletShape,
               .veinStrength = 0.5,
               .pale = 0.15,
               .gloss = 0.08f,
               .translucency = 0.25,
               .depth = 0.05,
               .size = 128},
              {{kLeaflet, "leaflet", {0.30f, 0.41f, 0.20f}, {0.36f, 0.46f, 0.24f}, {0.54f, 0.57f, 0.34f}, 43}});
    AddLeaves(recipe, {.shape = kStrandShape, .veinStrength = 0.9, .pale = 0.05, .translucency = 0.1, .size = 128},
              {{kFlower, "flowers", {0.86f, 0.80f, 0.56f}, {0.90f, 0.85f, 0.65f}, {0.74f, 0.66f, 0.36f}, 44},
               {kFruit, "fruits", {0.86f, 0.50f, 0.12f}, {0.92f, 0.60f, 0.18f}, {0.82f, 0.55f, 0.18f}, 45}});
    return recipe;
}

} // namespace grower
