// English oak: a short massive trunk, thick twisting limbs, a wide domed crown, leaves in tufts at the twigs' ends.
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kTrunk, kTwig, kLeafSpring, kLeafSummer, kLeafAutumn, kLeafRusset, kLeafDry, kNut, kCup };
enum Group : int32_t { kTuft, kOtherTuft, kSpray, kAcorns, kDryLeaves };

// Obovate with four or five round lobes, ears at the base, hardly any stalk.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.05},
                  {0.05, 0.11},
                  {0.12, 0.13},
                  {0.28, 0.21},
                  {0.46, 0.29},
                  {0.64, 0.335},
                  {0.78, 0.31},
                  {0.9, 0.23},
                  {0.97, 0.13},
                  {1, 0}},
    .stalk = 0.06,
    .lobes = 4,
    .lobeDepth = 0.5,
    .slant = 0.42,
    .veins = 4,
};

Bark trunkBark()
{
    return PaintRidgedBark({.ridge = {0.47f, 0.42f, 0.35f},
                            .crack = {0.16f, 0.13f, 0.10f},
                            .moss = {0.40f, 0.43f, 0.25f},
                            .ridges = 24,
                            .plates = 6,
                            .mossShare = 0.14,
                            .seed = 41},
                           512);
}

Bark twigBark()
{
    return PaintSmoothBark({.skin = {0.42f, 0.36f, 0.29f},
                            .shade = {0.30f, 0.25f, 0.20f},
                            .pore = {0.56f, 0.50f, 0.42f},
                            .poreShare = 0.14,
                            .seed = 42},
                           128);
}

Bark acornSkin()
{
    return PaintSmoothBark({.skin = {0.56f, 0.50f, 0.20f},
                            .shade = {0.48f, 0.34f, 0.13f},
                            .pore = {0.60f, 0.54f, 0.28f},
                            .poreShare = 0,
                            .seed = 61},
                           64);
}

Bark cupSkin()
{
    return PaintRidgedBark({.ridge = {0.56f, 0.50f, 0.38f},
                            .crack = {0.30f, 0.25f, 0.17f},
                            .moss = {0.50f, 0.50f, 0.32f},
                            .ridges = 10,
                            .plates = 8,
                            .mossShare = 0.3,
                            .seed = 62},
                           64);
}

// The leaves that crowd at the end of a twig, facing outwards all around.
const SprayLook kTuftLook{.spray = {.length = 7,
                                    .firstAt = -0.7,
                                    .lastAt = 0.1,
                                    .angle = {78, 12},
                                    .angleAtTip = 32,
                                    .turn = {137.5, 18},
                                    .flat = 0.45,
                                    .scale = {1, 0.16},
                                    .scaleAtTip = 0.9,
                                    .seed = 8},
                          .leaf = kLeaf,
                          .body = {.fold = 10, .droop = 0.16}};

void acorns(vdt::Mesh& mesh)
{
    // Two on one long stalk, hanging.
    const vdt::Matrix stalk = StandingFrame({0, 0, 0}, {0.1, 1, 0}, {0, 0, 1});
    AddTurned(mesh, {.outline = {{0, 0.09}, {5.5, 0.07}}, .sides = 3, .material = kTwig}, stalk);
    const auto acorn = [&](const vdt::Vector3& place, const vdt::Vector3& direction) {
        const vdt::Matrix frame = StandingFrame(place, direction, {0, 0, 1});
        AddTurned(mesh, {.outline = {{0, 0.1}, {0.15, 0.55}, {0.6, 0.88}, {1.0, 0.84}}, .material = kCup}, frame);
        AddTurned(mesh,
                  {.outline = {{0.7, 0.74}, {1.7, 0.78}, {2.4, 0.55}, {2.8, 0.18}, {2.95, 0.02}}, .material = kNut},
                  frame);
    };
    acorn({0.55, 5.5, 0}, {0.25, 1, 0.1});
    acorn({0.35, 3.6, 0}, {0.8, 1, -0.2});
}

std::vector<OrganRecipe> organs()
{
    const std::vector<SprayOrgan> sprays{
        {kTuft, "spring", "fresh tuft", kLeafSpring, 6, 7.5},
        {kOtherTuft, "spring", "other fresh tuft", kLeafSpring, 5, 6.8},
        {kSpray, "spring", "fresh spray", kLeafSpring, 4, 6.5},
        {kTuft, "summer", "tuft", kLeafSummer, 7, 12.8},
        {kOtherTuft, "summer", "other tuft", kLeafSummer, 6, 11.8},
        {kSpray, "summer", "spray", kLeafSummer, 5, 11},
        {kTuft, "autumn", "russet tuft", kLeafRusset, 6, 12},
        {kOtherTuft, "autumn", "turning tuft", kLeafAutumn, 6, 11.5},
        {kSpray, "autumn", "thin russet spray", kLeafRusset, 3, 11},
        {kDryLeaves, "winter", "dry leaves", kLeafDry, 4, 10},
    };
    std::vector<OrganRecipe> list = SprayOrgans(kTuftLook, sprays);
    list.push_back({kAcorns, "summer", "acorns", acorns});
    list.push_back({kAcorns, "autumn", "ripe acorns", acorns});
    return list;
}

std::vector<FoliageRule> foliage()
{
    return {
        {.fromLayer = 1,
         .groups = {kTuft, kOtherTuft},
         .tipOnly = true,
         .angle = {10, 10},
         .scale = {1.05, 0.2},
         .droop = -0.1,
         .faceUp = 0.75},
        {.fromLayer = 1,
         .groups = {kOtherTuft, kSpray},
         .firstAt = 0.3,
         .perVertex = 0.95,
         .angle = {35, 25},
         .scale = {1, 0.22},
         .faceUp = 0.7},
        {.fromLayer = 2,
         .groups = {kAcorns},
         .perVertex = 0.12,
         .tipOnly = true,
         .angle = {20, 20},
         .scale = {1, 0.12},
         .droop = 1.4,
         .faceUp = 0},
        {.fromLayer = 2,
         .groups = {kDryLeaves},
         .perVertex = 0.03,
         .tipOnly = true,
         .angle = {15, 15},
         .scale = {0.9, 0.2},
         .droop = 0.6,
         .faceUp = 0.3},
    };
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 1234,
        .height = 1850,
        .trunkRadius = 48,
        .tipRadius = 0.2,
        .flare = 0.55,
        .flareHeight = 45,
        .crown = {{0.17, 0.22},
                  {0.24, 0.42},
                  {0.36, 0.545},
                  {0.52, 0.57},
                  {0.68, 0.52},
                  {0.82, 0.40},
                  {0.93, 0.24},
                  {1.0, 0.06}},
        .scaffold = ScaffoldRecipe{.buds = 2600,
                                   .reach = 420,
                                   .nearEnough = 75,
                                   .step = 34,
                                   .wander = 0.34,
                                   .pull = 0.06,
                                   .hollow = 0.75,
                                   .clearance = 0.19,
                                   .twigWood = 620,
                                   .material = kTrunk,
                                   .thinMaterial = kTwig},
        .stems =
            {
                {.spacing = 14,
                 .firstAt = 0.0,
                 .lastAt = 1.0,
                 .length = {62, 20},
                 .lengthAtTip = 0.8,
                 .angle = {55, 14},
                 .angleAtTip = 42,
                 .turn = {137.5, 40},
                 .segment = 17,
                 .wander = 10,
                 .pull = 0.06,
                 .pullAtTip = 0.04,
                 .shortest = 18,
                 .material = kTwig},
                {.spacing = 12,
                 .firstAt = 0.15,
                 .lastAt = 1.0,
                 .length = {0.55, 0.2},
                 .lengthAtTip = 0.7,
                 .angle = {52, 12},
                 .angleAtTip = 40,
                 .turn = {140, 50},
                 .segment = 12,
                 .wander = 12,
                 .pull = 0.05,
                 .pullAtTip = 0.05,
                 .shortest = 9,
                 .material = kTwig},
            },
        .foliage = foliage(),
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 1235;
    age.height = 1000;
    age.trunkRadius = 17;
    age.flare = 0.4;
    age.flareHeight = 22;
    age.crown = {{0.17, 0.16}, {0.26, 0.32}, {0.4, 0.42}, {0.58, 0.44}, {0.75, 0.37}, {0.9, 0.21}, {1.0, 0.05}};
    age.scaffold->buds = 1000;
    age.scaffold->reach = 300;
    age.scaffold->nearEnough = 62;
    age.scaffold->step = 28;
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = medium();
    age.name = "young";
    age.seed = 1236;
    age.height = 380;
    age.trunkRadius = 4.2;
    age.flareHeight = 8;
    age.crown = {{0.2, 0.10}, {0.32, 0.26}, {0.48, 0.34}, {0.66, 0.32}, {0.84, 0.20}, {1.0, 0.05}};
    age.scaffold->buds = 170;
    age.scaffold->reach = 160;
    age.scaffold->nearEnough = 38;
    age.scaffold->step = 17;
    age.scaffold->hollow = 0.3;
    age.scaffold->twigWood = 260;
    age.stems[0].length = {46, 14};
    age.stems[0].spacing = 12;
    age.foliage[3].perVertex = 0.5;             // young oaks keep their dry leaves until spring
    age.foliage.erase(age.foliage.begin() + 2); // and bear no acorns
    return age;
}

} // namespace

SpeciesRecipe QuercusRobur()
{
    SpeciesRecipe recipe{
        .name = "Quercus robur",
        .labels = {{"en", "English oak"},
                   {"de", "Stieleiche"},
                   {"fr", "Ch\u00eane p\u00e9doncul\u00e9"},
                   {"es", "Roble com\u00fan"},
                   {"it", "Farnia"},
                   {"ja", "\u30e8\u30fc\u30ed\u30c3\u30d1\u30ca\u30e9"}},
        .descriptions =
            {{"en", "Mighty deciduous tree of Europe with a wide crown, twisting limbs and lobed leaves. Its acorns "
                    "hang on long stalks. Lives for many centuries."},
             {"de", "M\u00e4chtiger Laubbaum Europas mit breiter Krone, knorrigen \u00c4sten und gelappten "
                    "Bl\u00e4ttern. Die Eicheln h\u00e4ngen an langen Stielen. Wird viele Jahrhunderte alt."},
             {"fr", "Arbre majestueux d'Europe \u00e0 large couronne, aux branches tortueuses et aux feuilles "
                    "lob\u00e9es. Ses glands pendent au bout de longs p\u00e9doncules. Vit plusieurs si\u00e8cles."},
             {"es", "\u00c1rbol majestuoso de Europa, de copa ancha, ramas retorcidas y hojas lobuladas. Sus bellotas "
                    "cuelgan de largos ped\u00fanculos. Vive muchos siglos."},
             {"it", "Albero maestoso d'Europa dalla chioma ampia, dai rami contorti e dalle foglie lobate. Le ghiande "
                    "pendono da lunghi peduncoli. Vive molti secoli."},
             {"ja", "\u5e83\u3044\u6a39\u51a0\u3068\u66f2\u304c\u308a\u304f\u306d\u3063\u305f\u592a\u679d\u3001\u6d45"
                    "\u304f\u88c2\u3051\u305f\u8449\u3092\u6301\u3064\u5927\u6728\u3002\u3069\u3093\u3050\u308a\u306f"
                    "\u9577\u3044\u67c4\u306b\u4e0b\u304c\u308b\u3002"}},
        .wood = {{"", {0.44f, 0.39f, 0.33f, 1}}, {"winter", {0.42f, 0.38f, 0.33f, 1}}},
        .foliage =
            FoliageColors({0.52f, 0.60f, 0.22f}, {0.24f, 0.37f, 0.12f}, {0.62f, 0.42f, 0.16f}, {0.46f, 0.34f, 0.22f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kTrunk,
        .proxyFoliage = kLeafSummer,
        .storeProxy = true,
    };
    AddBark(recipe, {.material = kTrunk, .name = "trunk", .paint = trunkBark, .relief = 0.035, .roughness = 0.5f});
    AddBark(recipe, {.material = kTwig, .name = "twig", .paint = twigBark});
    AddLeaves(
        recipe,
        {.shape = kLeaf,
         .veinStrength = 0.6,
         .spot = {0.38f, 0.22f, 0.09f},
         .gloss = 0.08f,
         .translucency = 0.4,
         .depth = 0.04},
        {
            {kLeafSpring, "leaf in spring", {0.50f, 0.60f, 0.20f}, {0.58f, 0.62f, 0.24f}, {0.74f, 0.78f, 0.46f}, 51},
            {kLeafSummer, "leaf in summer", {0.19f, 0.33f, 0.09f}, {0.25f, 0.40f, 0.12f}, {0.52f, 0.60f, 0.30f}, 52},
            {kLeafAutumn, "turning leaf", {0.52f, 0.50f, 0.14f}, {0.68f, 0.47f, 0.13f}, {0.74f, 0.66f, 0.32f}, 53, 0.2},
            {kLeafRusset, "russet leaf", {0.68f, 0.44f, 0.14f}, {0.54f, 0.30f, 0.10f}, {0.80f, 0.62f, 0.32f}, 54, 0.30},
            {kLeafDry, "dry leaf", {0.50f, 0.36f, 0.22f}, {0.42f, 0.29f, 0.17f}, {0.60f, 0.46f, 0.30f}, 55, 0.2},
        });
    AddBark(recipe, {.material = kNut,
                     .name = "acorn",
                     .paint = acornSkin,
                     .roughness = 0,
                     .gloss = {0.15f, 0.15f, 0.13f},
                     .glossRoughness = 0.25f});
    AddBark(recipe, {.material = kCup, .name = "acorn cup", .paint = cupSkin, .roughness = 0.4f});
    return recipe;
}

} // namespace grower
