// Bigleaf hydrangea: a rounded shrub of many stems from the ground, large toothed leaves in pairs, and a ball of blue
// flowers on every tip.
#include "grower/head.h"
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t { kWood, kLeafSpring, kLeafSummer, kLeafAutumn, kBlue, kLilac, kFaded, kDry };
enum Group : int32_t { kPair, kOtherPair, kHead, kOtherHead };

// Broad and pointed.
const LeafShape kLeaf{
    .halfWidth = {{0, 0.07}, {0.15, 0.24}, {0.4, 0.35}, {0.65, 0.30}, {0.88, 0.12}, {1, 0}},
    .stalk = 0.14,
    .teeth = 15,
    .toothDepth = 0.10,
    .slant = 0.6,
    .veins = 7,
};

const LeafShape kPetalShape{
    .halfWidth = {{0, 0.08}, {0.25, 0.34}, {0.6, 0.52}, {0.88, 0.38}, {1, 0}},
    .stalk = 0.02,
    .veins = 3,
};

void head(vdt::Mesh& mesh, const HeadShape& shape, double petal, Material material)
{
    const std::vector<vdt::Matrix> places = HeadPlaces(shape);
    for (size_t i = 0; i < places.size(); ++i)
        AddFloret(mesh, {.petals = 4, .raised = 8, .uneven = 0.2, .seed = shape.seed * 1000 + i}, kPetalShape,
                  {.length = petal, .fold = 6, .droop = -0.05, .material = material}, places[i]);
}

std::vector<OrganRecipe> organs()
{
    const SprayLook pair{
        .spray = {.length = 1,
                  .firstAt = -0.6,
                  .lastAt = 0,
                  .angle = {64, 8},
                  .angleAtTip = 62,
                  .turn = {180, 8},
                  .flat = 0,
                  .scale = {1, 0.12},
                  .scaleAtTip = 1,
                  .seed = 21},
        .leaf = kLeaf,
        .body = {.fold = 16, .droop = 0.18},
    };
    std::vector<OrganRecipe> list = SprayOrgans(pair, {
                                                          {kPair, "spring", "pair", kLeafSpring, 2, 13},
                                                          {kOtherPair, "spring", "other pair", kLeafSpring, 2, 11},
                                                          {kPair, "summer", "pair", kLeafSummer, 2, 16},
                                                          {kOtherPair, "summer", "other pair", kLeafSummer, 2, 14},
                                                          {kPair, "autumn", "pair", kLeafAutumn, 2, 17},
                                                          {kOtherPair, "autumn", "last leaf", kLeafAutumn, 1, 15},
                                                      });
    const auto addHead = [&](Group group, const char* season, const char* name, Material material, int florets,
                             double radius, double petal) {
        const HeadShape shape{.florets = florets,
                              .radius = radius,
                              .height = 0.8,
                              .opening = 118,
                              .rise = 0.8 * radius,
                              .unevenness = 0.08,
                              .seed = static_cast<uint64_t>(group) + 30};
        list.push_back({group, season, name, [=](vdt::Mesh& mesh) { head(mesh, shape, petal, material); }});
    };
    addHead(kHead, "summer", "head", kBlue, 76, 9.5, 2.7);
    addHead(kOtherHead, "summer", "other head", kLilac, 68, 8.5, 2.6);
    addHead(kHead, "autumn", "faded head", kFaded, 58, 8.5, 2.5);
    addHead(kOtherHead, "autumn", "other faded head", kFaded, 50, 7.5, 2.4);
    addHead(kHead, "winter", "dry head", kDry, 40, 7.5, 2.1);
    return list;
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 611,
        .height = 150,
        .trunkRadius = 2.6,
        .tipRadius = 0.3,
        .trunkLength = 0.06,
        .crown = {{0, 0.42}, {0.15, 0.54}, {0.4, 0.58}, {0.65, 0.53}, {0.85, 0.40}, {0.97, 0.24}, {1.05, 0.1}},
        .trunk = {.segment = 0.9, .wander = 4, .material = kWood},
        .stems =
            {
                {.spacing = 0.26,
                 .firstAt = 0.05,
                 .lastAt = 0.98,
                 .length = {0.9, 0.1},
                 .angle = {82, 8},
                 .angleAtTip = 4,
                 .turn = {137.5, 14},
                 .segment = 10,
                 .wander = 5,
                 .pull = 0.04,
                 .pullAtTip = 0.10,
                 .shortest = 20,
                 .material = kWood},
                {.spacing = 19,
                 .firstAt = 0.35,
                 .lastAt = 0.9,
                 .length = {0.42, 0.08},
                 .lengthAtTip = 0.55,
                 .angle = {42, 8},
                 .angleAtTip = 34,
                 .turn = {137.5, 25},
                 .segment = 9,
                 .wander = 5,
                 .pull = 0.12,
                 .pullAtTip = 0.08,
                 .shortest = 10,
                 .material = kWood},
            },
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kPair, kPair, kOtherPair},
                 .firstAt = 0.15,
                 .angle = {0, 8},
                 .scale = {1, 0.2},
                 .scaleAlong = {{0, 0.9}, {0.7, 1}, {1, 0.65}},
                 .faceUp = 0},
                {.fromLayer = 1,
                 .groups = {kHead, kHead, kOtherHead},
                 .perVertex = 0.94,
                 .tipOnly = true,
                 .angle = {6, 6},
                 .scale = {1, 0.18},
                 .droop = -0.3,
                 .faceUp = 0},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 612;
    age.height = 100;
    age.trunkRadius = 1.8;
    age.stems[0].spacing = 0.3;
    age.stems[1].spacing = 17;
    age.foliage[0].scale = {0.9, 0.15};
    age.foliage[1].scale = {0.92, 0.15};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 613;
    age.height = 50;
    age.trunkRadius = 0.9;
    age.tipRadius = 0.2;
    age.stems[0].spacing = 0.26;
    age.stems[0].segment = 7;
    age.stems[0].shortest = 10;
    age.stems.resize(1);
    age.foliage[0].firstAt = 0.35;
    age.foliage[0].scale = {0.75, 0.1};
    age.foliage[1].scale = {0.75, 0.1};
    return age;
}

} // namespace

SpeciesRecipe HydrangeaMacrophylla()
{
    SpeciesRecipe recipe{
        .name = "Hydrangea macrophylla",
        .labels = {{"en", "Bigleaf hydrangea"},
                   {"de", "Gartenhortensie"},
                   {"fr", "Hortensia"},
                   {"es", "Hortensia"},
                   {"it", "Ortensia"},
                   {"ja", "\u30a2\u30b8\u30b5\u30a4"}},
        .descriptions =
            {{"en", "Rounded deciduous shrub of Japan with large toothed leaves. Big balls of blue and lilac flowers "
                    "in summer, which fade in autumn and stay dry through the winter."},
             {"de", "Rundlicher sommergr\u00fcner Strauch Japans mit gro\u00dfen ges\u00e4gten Bl\u00e4ttern. "
                    "Gro\u00dfe blaue und lila Bl\u00fctenb\u00e4lle im Sommer, die im Herbst verblassen und trocken "
                    "durch den Winter stehen."},
             {"fr", "Arbuste caduc et arrondi du Japon aux grandes feuilles dent\u00e9es. Grosses boules de fleurs "
                    "bleues et lilas en \u00e9t\u00e9, qui p\u00e2lissent en automne et restent s\u00e8ches tout "
                    "l'hiver."},
             {"es", "Arbusto caduco y redondeado de Jap\u00f3n, de grandes hojas dentadas. En verano, grandes bolas "
                    "de flores azules y lilas que palidecen en oto\u00f1o y quedan secas en invierno."},
             {"it", "Arbusto deciduo e tondeggiante del Giappone dalle grandi foglie dentate. In estate grosse palle "
                    "di fiori azzurri e lilla, che sbiadiscono in autunno e restano secche d'inverno."},
             {"ja", "\u5927\u304d\u306a\u92f8\u6b6f\u306e\u8449\u3092\u6301\u3064\u65e5\u672c\u539f\u7523\u306e\u843d"
                    "\u8449\u4f4e\u6728\u3002\u590f\u306b\u9752\u3084\u8584\u7d2b\u306e\u5927\u304d\u306a\u82b1\u306e"
                    "\u6bec\u3092\u3064\u3051\u308b\u3002"}},
        .wood = {{"", {0.52f, 0.44f, 0.34f, 1}}},
        .foliage =
            FoliageColors({0.45f, 0.60f, 0.26f}, {0.40f, 0.48f, 0.62f}, {0.58f, 0.42f, 0.24f}, {0.52f, 0.44f, 0.36f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kWood,
        .proxyFoliage = kLeafSummer,
    };
    AddBark(recipe, {.material = kWood, .name = "wood", .paint = [] {
                         return PaintSmoothBark({.skin = {0.56f, 0.47f, 0.34f},
                                                 .shade = {0.42f, 0.34f, 0.24f},
                                                 .pore = {0.66f, 0.60f, 0.48f},
                                                 .poreShare = 0.1,
                                                 .seed = 61},
                                                128);
                     }});
    AddLeaves(recipe, {.shape = kLeaf, .veinStrength = 0.6, .spot = {0.52f, 0.24f, 0.22f}, .pale = 0.3},
              {{kLeafSpring, "leaf in spring", {0.45f, 0.63f, 0.22f}, {0.50f, 0.66f, 0.26f}, {0.68f, 0.80f, 0.46f}, 62},
               {kLeafSummer, "leaf", {0.32f, 0.54f, 0.20f}, {0.38f, 0.58f, 0.24f}, {0.54f, 0.68f, 0.38f}, 63},
               {kLeafAutumn,
                "leaf in autumn",
                {0.72f, 0.58f, 0.20f},
                {0.62f, 0.32f, 0.24f},
                {0.80f, 0.70f, 0.36f},
                64,
                0.35}});
    AddLeaves(recipe,
              {.shape = kPetalShape, .veinStrength = 0.3, .pale = 0.2, .gloss = 0.02f, .translucency = 0.6, .size = 64},
              {{kBlue, "blue petal", {0.55f, 0.66f, 0.98f}, {0.68f, 0.77f, 1.00f}, {0.42f, 0.50f, 0.90f}, 65},
               {kLilac, "lilac petal", {0.80f, 0.62f, 0.94f}, {0.90f, 0.74f, 0.97f}, {0.62f, 0.44f, 0.84f}, 66},
               {kFaded, "faded petal", {0.76f, 0.58f, 0.56f}, {0.64f, 0.62f, 0.48f}, {0.50f, 0.48f, 0.40f}, 67},
               {kDry, "dry petal", {0.60f, 0.47f, 0.33f}, {0.66f, 0.54f, 0.40f}, {0.42f, 0.32f, 0.22f}, 68}});
    return recipe;
}

} // namespace grower
