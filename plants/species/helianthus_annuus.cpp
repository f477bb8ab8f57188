// Sunflower: one stiff stalk, heart-shaped leaves on long stalks around it, and a single large head that looks aside.
#include "grower/head.h"
#include "grower/looks.h"
#include "species/species.h"

namespace grower {
namespace {

enum Material : int32_t {
    kStalk,
    kDisc,
    kSeeds,
    kDead,
    kLeafSpring,
    kLeafSummer,
    kLeafAutumn,
    kBract,
    kRay,
    kWitheredRay
};
enum Group : int32_t { kLeaf, kHead };

// A heart, coarsely toothed.
const LeafShape kLeafShape{
    .halfWidth = {{0, 0.22}, {0.1, 0.37}, {0.3, 0.42}, {0.6, 0.27}, {0.85, 0.10}, {1, 0}},
    .stalk = 0.04,
    .teeth = 10,
    .toothDepth = 0.08,
    .slant = 0.7,
    .veins = 5,
};

const LeafShape kRayShape{
    .halfWidth = {{0, 0.05}, {0.2, 0.11}, {0.5, 0.14}, {0.8, 0.10}, {1, 0}},
    .stalk = 0,
    .slant = 0.9,
    .veins = 0,
};

// The frame of a head that nods by so many degrees more than its stalk.
vdt::Matrix nodding(double degrees)
{
    const double angle = degrees * vdt::kPi / 180;
    return StandingFrame({0, 0, 0}, {0, std::cos(angle), -std::sin(angle)}, {0, 0, 1});
}

// A ring of rays or bracts around a head that looks along the frame's +y.
void ring(vdt::Mesh& mesh, const vdt::Matrix& head, double place, const FloretShape& shape, const LeafBody& body)
{
    AddFloret(mesh, shape, kRayShape, body,
              StandingFrame(vdt::TransformPoint({0, place, 0}, head), head.row(2), head.row(1)));
}

void disc(vdt::Mesh& mesh, const vdt::Matrix& head, Material back, Material front, double size)
{
    AddTurned(mesh,
              {.outline = {{0, 1.3 * size}, {1.5 * size, 3 * size}, {3.2 * size, 8.6 * size}, {4 * size, 9 * size}},
               .sides = 16,
               .material = back},
              head);
    AddTurned(mesh,
              {.outline = {{4 * size, 9 * size},
                           {5.0 * size, 8 * size},
                           {5.5 * size, 5.5 * size},
                           {5.7 * size, 3 * size},
                           {5.8 * size, 0.1 * size}},
               .sides = 16,
               .material = front},
              head);
}

void bud(vdt::Mesh& mesh)
{
    const vdt::Matrix head = nodding(0);
    disc(mesh, head, kBract, kBract, 0.4);
    ring(mesh, head, 1, {.petals = 14, .middle = 3, .raised = 62, .uneven = 0.3, .seed = 1},
         {.length = 6, .fold = 15, .droop = -0.2, .material = kBract});
}

void bloom(vdt::Mesh& mesh)
{
    const vdt::Matrix head = nodding(0);
    disc(mesh, head, kStalk, kDisc, 1);
    ring(mesh, head, 3.0, {.petals = 22, .middle = 7.5, .raised = -12, .uneven = 0.4, .seed = 2},
         {.length = 7, .fold = 10, .droop = 0.2, .material = kBract});
    ring(mesh, head, 3.9, {.petals = 24, .middle = 8.2, .raised = 8, .uneven = 0.35, .seed = 3},
         {.length = 10.5, .fold = 16, .droop = 0.08, .material = kRay});
    ring(mesh, head, 4.3, {.petals = 21, .middle = 8, .raised = 24, .uneven = 0.35, .seed = 4},
         {.length = 9.5, .fold = 16, .droop = 0.05, .material = kRay});
}

void ripe(vdt::Mesh& mesh)
{
    const vdt::Matrix head = nodding(48);
    disc(mesh, head, kLeafAutumn, kSeeds, 1.05);
    ring(mesh, head, 3.0, {.petals = 20, .middle = 7.5, .raised = 30, .uneven = 0.5, .seed = 5},
         {.length = 6, .fold = 25, .droop = -0.3, .material = kWitheredRay});
}

void dead(vdt::Mesh& mesh)
{
    disc(mesh, nodding(70), kDead, kSeeds, 0.85);
}

std::vector<OrganRecipe> organs()
{
    const auto leaf = [](Material material, double length, double droop) {
        return [=](vdt::Mesh& mesh) {
            AddLeaf(mesh, kLeafShape, {.length = length, .fold = 14, .droop = droop, .material = material},
                    vdt::Matrix::Identity());
        };
    };
    return {
        {kLeaf, "spring", "leaf", leaf(kLeafSpring, 20, 0.1)},
        {kLeaf, "summer", "leaf", leaf(kLeafSummer, 33, 0.25)},
        {kLeaf, "autumn", "withered leaf", leaf(kLeafAutumn, 25, 0.7)},
        {kHead, "spring", "bud", bud},
        {kHead, "summer", "head", bloom},
        {kHead, "autumn", "ripe head", ripe},
        {kHead, "winter", "dead head", dead},
    };
}

AgeRecipe adult()
{
    return {
        .name = "adult",
        .seed = 701, // of those whose head looks to the front
        .height = 190,
        .trunkRadius = 1.9,
        .tipRadius = 0.36,
        .flare = 0.2,
        .flareHeight = 4,
        .crown = {{0, 0.10}, {0.2, 0.125}, {0.5, 0.12}, {0.8, 0.085}, {1, 0.04}, {1.1, 0.02}},
        .trunk = {.segment = 5, .wander = 1.2, .pull = 0.05, .material = kStalk},
        .stems = {{.spacing = 5.2,
                   .firstAt = 0.16,
                   .lastAt = 0.91,
                   .length = {0.85, 0.1},
                   .angle = {58, 8},
                   .angleAtTip = 50,
                   .turn = {137.5, 10},
                   .segment = 4,
                   .wander = 2,
                   .pull = 0,
                   .pullAtTip = -0.12,
                   .material = kStalk}},
        .foliage =
            {
                {.fromLayer = 1,
                 .groups = {kLeaf},
                 .tipOnly = true,
                 .angle = {0, 6},
                 .scale = {1, 0.12},
                 .droop = 0.45,
                 .faceUp = 1},
                {.fromLayer = 0,
                 .lastLayer = 0,
                 .groups = {kHead},
                 .tipOnly = true,
                 .angle = {66, 4},
                 .scale = {1.35, 0.04},
                 .faceUp = 1},
            },
    };
}

AgeRecipe medium()
{
    AgeRecipe age = adult();
    age.name = "medium";
    age.seed = 732;
    age.height = 120;
    age.trunkRadius = 1.2;
    age.stems[0].spacing = 6.5;
    age.foliage[0].scale = {0.8, 0.1};
    age.foliage[1].scale = {0.95, 0.04};
    return age;
}

AgeRecipe young()
{
    AgeRecipe age = adult();
    age.name = "young";
    age.seed = 753;
    age.height = 55;
    age.trunkRadius = 0.7;
    age.tipRadius = 0.15;
    age.trunk.segment = 3;
    age.stems[0].spacing = 5;
    age.stems[0].segment = 2;
    age.foliage[0].scale = {0.5, 0.06};
    age.foliage[1].scale = {0.48, 0.02};
    return age;
}

} // namespace

SpeciesRecipe HelianthusAnnuus()
{
    SpeciesRecipe recipe{
        .name = "Helianthus annuus",
        .labels = {{"en", "Sunflower"},
                   {"de", "Sonnenblume"},
                   {"fr", "Tournesol"},
                   {"es", "Girasol"},
                   {"it", "Girasole"},
                   {"ja", "\u30d2\u30de\u30ef\u30ea"}},
        .descriptions =
            {{"en", "Tall annual herb of North America with rough heart-shaped leaves and one large head of yellow "
                    "rays around a brown disc. It ripens and nods in autumn."},
             {"de", "Hohe einj\u00e4hrige Staude Nordamerikas mit rauen herzf\u00f6rmigen Bl\u00e4ttern und einem "
                    "gro\u00dfen Bl\u00fctenkorb mit gelben Strahlen um eine braune Scheibe. Reift und neigt sich im "
                    "Herbst."},
             {"fr", "Grande herbac\u00e9e annuelle d'Am\u00e9rique du Nord aux feuilles rugueuses en c\u0153ur et au "
                    "grand capitule \u00e0 rayons jaunes autour d'un disque brun. Il m\u00fbrit et penche en "
                    "automne."},
             {"es", "Hierba anual y alta de Norteam\u00e9rica, de hojas \u00e1speras en forma de coraz\u00f3n y una "
                    "gran cabezuela de l\u00edgulas amarillas en torno a un disco pardo. Madura y se inclina en "
                    "oto\u00f1o."},
             {"it", "Alta erbacea annuale del Nord America dalle foglie ruvide a cuore e dal grande capolino con raggi "
                    "gialli attorno a un disco bruno. Matura e si piega in autunno."},
             {"ja", "\u3056\u3089\u3064\u304f\u5fc3\u5f62\u306e\u8449\u3068\u3001\u8336\u8272\u306e\u4e2d\u5fc3\u3092"
                    "\u9ec4\u8272\u3044\u820c\u72b6\u82b1\u304c\u56f2\u3080\u5927\u304d\u306a\u82b1\u3092\u3064\u3051"
                    "\u308b\u5317\u7c73\u539f\u7523\u306e\u4e00\u5e74\u8349\u3002"}},
        .wood = {{"", {0.48f, 0.54f, 0.28f, 1}}},
        .foliage =
            FoliageColors({0.40f, 0.56f, 0.22f}, {0.55f, 0.55f, 0.16f}, {0.50f, 0.40f, 0.20f}, {0.36f, 0.28f, 0.20f}),
        .organs = organs(),
        .ages = {young(), medium(), adult()},
        .proxyBark = kStalk,
        .proxyFoliage = kLeafSummer,
    };
    AddSkin(recipe, kStalk, "stalk", {0.56f, 0.59f, 0.32f}, 71);
    AddSkin(recipe, kDead, "dead wood", {0.46f, 0.36f, 0.25f}, 72);
    // Lozenges that get narrower towards the middle: the spirals of the florets.
    const auto spirals = [&](Material material, const char* name, const vdt::Color3f& floret, const vdt::Color3f& rim,
                             uint32_t seed) {
        AddBark(
            recipe,
            {.material = material, .name = name, .paint = [=] {
                 return PaintScarredBark(
                     {.scar = floret, .rim = rim, .fibre = Scaled(floret, 0.4), .scars = 34, .rows = 20, .seed = seed},
                     256);
             }});
    };
    spirals(kDisc, "disc", {0.36f, 0.21f, 0.08f}, {0.72f, 0.47f, 0.12f}, 73);
    spirals(kSeeds, "seeds", {0.20f, 0.17f, 0.15f}, {0.42f, 0.36f, 0.30f}, 74);
    AddLeaves(
        recipe, {.shape = kLeafShape, .veinStrength = 0.7, .spot = {0.38f, 0.26f, 0.14f}, .pale = 0.3},
        {{kLeafSpring, "leaf in spring", {0.38f, 0.58f, 0.20f}, {0.44f, 0.62f, 0.24f}, {0.62f, 0.76f, 0.42f}, 75},
         {kLeafSummer, "leaf", {0.31f, 0.50f, 0.18f}, {0.36f, 0.54f, 0.21f}, {0.58f, 0.70f, 0.40f}, 76},
         {kLeafAutumn, "withered leaf", {0.60f, 0.52f, 0.24f}, {0.48f, 0.36f, 0.18f}, {0.66f, 0.60f, 0.34f}, 77, 0.4}});
    AddLeaves(
        recipe,
        {.shape = kRayShape, .veinStrength = 0.4, .pale = 0.1, .gloss = 0.02f, .translucency = 0.6, .size = 128},
        {{kBract, "bract", {0.36f, 0.53f, 0.20f}, {0.42f, 0.58f, 0.26f}, {0.52f, 0.66f, 0.36f}, 78},
         {kRay, "ray", {0.99f, 0.78f, 0.06f}, {0.99f, 0.84f, 0.16f}, {0.92f, 0.62f, 0.04f}, 79},
         {kWitheredRay, "withered ray", {0.62f, 0.46f, 0.16f}, {0.50f, 0.36f, 0.16f}, {0.44f, 0.30f, 0.12f}, 80}});
    return recipe;
}

} // namespace grower
