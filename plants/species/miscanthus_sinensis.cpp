// Silver grass: a fountain of long narrow blades, and above it the plumes of late summer, which stay until spring.
#include "grower/blade.h"
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t {
    kStraw,
    kBladeSpring,
    kBladeSummer,
    kBladeAutumn,
    kBladeWinter,
    kPlumeSummer,
    kPlumeAutumn,
    kPlumeWinter
};
enum Group : int32_t { kTuft, kOtherTuft, kBlades, kOtherBlades, kPlume, kOtherPlume };

// Drawn wider than it is: the blade's mesh has its own width. The midrib is pale.
const LeafShape kBladeShape{
    .halfWidth = {{0, 0.09}, {0.15, 0.12}, {0.5, 0.12}, {0.8, 0.08}, {1, 0}},
    .stalk = 0,
    .veins = 0,
};

// A strand of a plume: silky hairs to both sides that lean to its tip.
const LeafShape kStrandShape{
    .halfWidth = {{0, 0.02}, {0.12, 0.10}, {0.4, 0.14}, {0.8, 0.12}, {1, 0}},
    .stalk = 0,
    .lobes = 22,
    .lobeDepth = 0.75,
    .slant = 1.3,
    .veins = 0,
};

struct Blades {
    int count;
    double length;
    double arch;
    Material material;
};

// Blades from the ground, in all directions.
void tuft(vdt::Mesh& mesh, const Blades& blades, uint64_t seed)
{
    AddBladeSpray(mesh,
                  {.leaves = blades.count,
                   .length = 6,
                   .firstAt = 0,
                   .lastAt = 1,
                   .angle = {20, 12},
                   .angleAtTip = 6,
                   .turn = {137.5, 40},
                   .flat = 0,
                   .scale = {1, 0.3},
                   .scaleAtTip = 1.1,
                   .seed = seed},
                  kBladeShape,
                  {.length = blades.length,
                   .width = 1.5,
                   .arch = blades.arch,
                   .stiffness = 1.8,
                   .fold = 20,
                   .pieces = 6,
                   .material = blades.material});
}

// The blades of one piece of a culm, in two rows.
void culmBlades(vdt::Mesh& mesh, const Blades& blades, uint64_t seed)
{
    AddBladeSpray(mesh,
                  {.leaves = blades.count,
                   .length = 20,
                   .firstAt = -0.9,
                   .lastAt = 0,
                   .angle = {22, 8},
                   .angleAtTip = 16,
                   .turn = {180, 30},
                   .flat = 0,
                   .scale = {1, 0.25},
                   .scaleAtTip = 1,
                   .seed = seed},
                  kBladeShape,
                  {.length = blades.length,
                   .width = 1.4,
                   .arch = blades.arch,
                   .stiffness = 1.2,
                   .fold = 20,
                   .pieces = 6,
                   .material = blades.material});
}

// Strands that stand up together and hang over to all sides.
void plume(vdt::Mesh& mesh, Material material, int strands, double spread, uint64_t seed)
{
    AddBladeSpray(
        mesh,
        {.leaves = strands,
         .length = 12,
         .firstAt = -0.3,
         .lastAt = 0.7,
         .angle = {20 * spread, 8},
         .angleAtTip = 4,
         .turn = {137.5, 25},
         .flat = 0,
         .scale = {1, 0.15},
         .scaleAtTip = 0.9,
         .seed = seed},
        kStrandShape,
        {.length = 21, .width = 2.6, .arch = 55 * spread, .stiffness = 1.3, .pieces = 3, .material = material});
}

std::vector<OrganRecipe> organs()
{
    std::vector<OrganRecipe> list;
    const auto addBlades = [&](const char* season, Material material, Blades low, Blades high) {
        low.material = high.material = material;
        list.push_back({kTuft, season, "tuft", [=](vdt::Mesh& mesh) { tuft(mesh, low, 1); }});
        list.push_back({kOtherTuft, season, "other tuft", [=](vdt::Mesh& mesh) { tuft(mesh, low, 2); }});
        list.push_back({kBlades, season, "blades", [=](vdt::Mesh& mesh) { culmBlades(mesh, high, 3); }});
        list.push_back({kOtherBlades, season, "other blades", [=](vdt::Mesh& mesh) { culmBlades(mesh, high, 4); }});
    };
    addBlades("spring", kBladeSpring, {6, 75, 70, {}}, {1, 22, 40, {}});
    addBlades("summer", kBladeSummer, {8, 115, 120, {}}, {3, 70, 115, {}});
    addBlades("autumn", kBladeAutumn, {7, 110, 125, {}}, {2, 72, 125, {}});
    addBlades("winter", kBladeWinter, {5, 90, 140, {}}, {1, 56, 150, {}});
    const auto addPlumes = [&](const char* season, Material material, int strands, double spread) {
        list.push_back({kPlume, season, "plume", [=](vdt::Mesh& mesh) { plume(mesh, material, strands, spread, 5); }});
        list.push_back(
            {kOtherPlume, season, "other plume", [=](vdt::Mesh& mesh) { plume(mesh, material, strands, spread, 6); }});
    };
    addPlumes("summer", kPlumeSummer, 14, 0.7);
    addPlumes("autumn", kPlumeAutumn, 18, 1.1);
    addPlumes("winter", kPlumeWinter, 10, 1.3);
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 511,
        .height = 175,
        .trunkRadius = 2.5,
        .tipRadius = 0.16,
        .trunkLength = 0.05,
        .crown = {{0, 0.14}, {0.3, 0.24}, {0.7, 0.34}, {1.0, 0.40}, {1.1, 0.4}},
        .trunk = {.segment = 0.5, .material = kStraw},
        .stems =
            {
                // The creeping rootstock spreads the culms over the clump.
                {.spacing = 0.45,
                 .firstAt = 0.05,
                 .lastAt = 0.95,
                 .length = {0.8, 0.2},
                 .angle = {86, 4},
                 .angleAtTip = 80,
                 .turn = {137.5, 15},
                 .segment = 4,
                 .wander = 6,
                 .pull = 0.01,
                 .pullAtTip = 0.01,
                 .material = kStraw},
                {.spacing = 4,
                 .firstAt = 0.1,
                 .lastAt = 0.98,
                 .length = {7.2, 1.6},
                 .lengthAtTip = 0.85,
                 .angle = {90, 8},
                 .angleAtTip = 68,
                 .turn = {0, 16},
                 .startTurn = {90, 12},
                 .segment = 16,
                 .wander = 1.5,
                 .pull = 0.05,
                 .pullAtTip = -0.01,
                 .shortest = 60,
                 .material = kStraw},
            },
        .foliage =
            {
                {.fromLayer = 1,
                 .lastLayer = 1,
                 .groups = {kTuft, kOtherTuft},
                 .perVertex = 1.2,
                 .angle = {0, 12},
                 .scale = {1, 0.25},
                 .droop = -5,
                 .faceUp = 0},
                {.fromLayer = 2,
                 .groups = {kBlades, kOtherBlades},
                 .firstAt = 0.34,
                 .perVertex = 0.7,
                 .angle = {0, 4},
                 .scale = {1, 0.25},
                 .scaleAlong = {{0, 0.8}, {0.5, 1}, {0.85, 0.5}, {1, 0.2}},
                 .faceUp = 0},
                {.fromLayer = 2,
                 .groups = {kPlume, kOtherPlume},
                 .perVertex = 0.9,
                 .tipOnly = true,
                 .angle = {4, 4},
                 .scale = {1, 0.2},
                 .faceUp = 0},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 512;
    age.height = 130;
    age.stems[0].spacing = 0.5;
    age.foliage[0].scale = {0.75, 0.2};
    age.foliage[1].scale = {0.8, 0.2};
    age.foliage[2].scale = {0.9, 0.15};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 513;
    age.height = 70;
    age.trunkRadius = 1;
    age.stems[0].segment = 3;
    age.stems[0].spacing = 0.45;
    age.stems[1].segment = 10;
    age.stems[1].shortest = 20;
    age.foliage[0].scale = {0.45, 0.1};
    age.foliage[1].scale = {0.5, 0.1};
    age.foliage[2].scale = {0.55, 0.1};
    age.foliage[2].perVertex = 0.6;
    return age;
}

} // namespace

SpeciesRecipe MiscanthusSinensis()
{
    SpeciesRecipe recipe{
        .name = "Miscanthus sinensis",
        .labels = {{"en", "Chinese silver grass"},
                   {"de", "Chinaschilf"},
                   {"fr", "Roseau de Chine"},
                   {"es", "Eulalia"},
                   {"it", "Miscanto"},
                   {"ja", "\u30b9\u30b9\u30ad"}},
        .descriptions =
            {{"en", "Tall clump-forming grass of eastern Asia with arching narrow leaves. Silvery plumes from late "
                    "summer; straw-coloured throughout the winter."},
             {"de", "Hohes horstbildendes Gras Ostasiens mit \u00fcberh\u00e4ngenden schmalen Bl\u00e4ttern. Silbrige "
                    "Bl\u00fctenst\u00e4nde ab dem Sp\u00e4tsommer, strohfarben durch den Winter."},
             {"fr", "Grande gramin\u00e9e en touffe d'Asie orientale aux feuilles \u00e9troites et arqu\u00e9es. "
                    "Plumeaux argent\u00e9s d\u00e8s la fin de l'\u00e9t\u00e9, couleur de paille tout l'hiver."},
             {"es", "Gram\u00ednea alta y cespitosa de Asia oriental, de hojas estrechas y arqueadas. Penachos "
                    "plateados desde finales del verano; color paja durante el invierno."},
             {"it", "Alta graminacea cespitosa dell'Asia orientale dalle foglie strette e arcuate. Pennacchi argentei "
                    "da fine estate; color paglia per tutto l'inverno."},
             {"ja", "\u7d30\u9577\u3044\u8449\u304c\u5f13\u306a\u308a\u306b\u5782\u308c\u308b\u6771\u30a2\u30b8\u30a2"
                    "\u539f\u7523\u306e\u5927\u578b\u306e\u8349\u3002\u590f\u306e\u7d42\u308f\u308a\u304b\u3089\u9280"
                    "\u8272\u306e\u7a42\u3092\u3064\u3051\u3001\u51ac\u306f\u85c1\u8272\u306b\u306a\u308b\u3002"}},
        .wood = {{"", {0.70f, 0.62f, 0.40f, 1}}},
        .foliage =
            FoliageColors({0.46f, 0.62f, 0.26f}, {0.36f, 0.50f, 0.22f}, {0.76f, 0.62f, 0.32f}, {0.80f, 0.71f, 0.50f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kStraw,
        .proxyFoliage = kBladeSummer,
    };
    AddSkin(recipe, kStraw, "straw", {0.72f, 0.65f, 0.40f}, 51);
    AddLeaves(
        recipe,
        {.shape = kBladeShape,
         .veinStrength = 0.9,
         .spot = {0.70f, 0.56f, 0.30f},
         .pale = 0.15,
         .translucency = 0.4,
         .depth = 0.03,
         .size = 128},
        {{kBladeSpring, "blade in spring", {0.42f, 0.62f, 0.22f}, {0.52f, 0.70f, 0.30f}, {0.80f, 0.86f, 0.66f}, 52},
         {kBladeSummer, "blade", {0.33f, 0.50f, 0.20f}, {0.42f, 0.57f, 0.27f}, {0.82f, 0.86f, 0.72f}, 53},
         {kBladeAutumn,
          "blade in autumn",
          {0.84f, 0.71f, 0.45f},
          {0.77f, 0.60f, 0.38f},
          {0.92f, 0.84f, 0.64f},
          54,
          0.3},
         {kBladeWinter,
          "blade in winter",
          {0.82f, 0.72f, 0.48f},
          {0.76f, 0.64f, 0.40f},
          {0.90f, 0.82f, 0.64f},
          55,
          0.2}});
    AddLeaves(recipe,
              {.shape = kStrandShape, .veinStrength = 0.5, .pale = 0, .gloss = 0.1f, .translucency = 0.6, .size = 128},
              {{kPlumeSummer, "young plume", {0.80f, 0.66f, 0.62f}, {0.86f, 0.76f, 0.72f}, {0.62f, 0.44f, 0.42f}, 56},
               {kPlumeAutumn, "plume", {0.93f, 0.90f, 0.84f}, {0.97f, 0.95f, 0.91f}, {0.80f, 0.72f, 0.62f}, 57},
               {kPlumeWinter, "old plume", {0.88f, 0.82f, 0.70f}, {0.93f, 0.88f, 0.79f}, {0.72f, 0.62f, 0.46f}, 58}});
    return recipe;
}

} // namespace grower
