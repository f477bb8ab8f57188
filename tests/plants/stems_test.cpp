// How wood grows: lengths, crowns, scaffolds and thickness.
#include "grower/plant.h"
#include "grower/plant_library.h"
#include "grower/stems.h"
#include "vdt/math/quaternion.h"

#include <gtest/gtest.h>

#include <map>

namespace grower {
namespace {

using vdt::Vector3;

AgeRecipe smallTree(uint64_t seed)
{
    AgeRecipe age{.name = "adult", .seed = seed, .height = 500, .trunkRadius = 8, .tipRadius = 0.1};
    age.crown = {{0.2, 0.1}, {0.5, 0.3}, {0.8, 0.2}, {1, 0.03}};
    age.trunk = {.segment = 20, .wander = 2};
    age.stems = {{.spacing = 15, .length = {1, 0}, .angle = {60, 10}, .segment = 12, .wander = 1},
                 {.spacing = 12, .length = {0.4, 0.1}, .segment = 8}};
    return age;
}

AgeRecipe smallScaffold(uint64_t seed)
{
    AgeRecipe age = smallTree(seed);
    age.scaffold = ScaffoldRecipe{.buds = 400, .reach = 140, .nearEnough = 32, .step = 15, .hollow = 0};
    age.scaffold->twigWood = 100;
    age.scaffold->material = 1;
    age.scaffold->thinMaterial = 2;
    age.stems = {{.spacing = 20, .firstAt = 0, .lastAt = 1, .length = {25, 8}, .segment = 8}};
    return age;
}

std::vector<Vector3> positionsOf(const Stems& stems)
{
    std::vector<Vector3> positions;
    for (const Stem& stem : stems)
        for (const StemVertex& vertex : stem.vertices) positions.push_back(vertex.position);
    return positions;
}

// Each kind of tree, several times.
std::vector<AgeRecipe> trees()
{
    std::vector<AgeRecipe> ages;
    for (uint64_t seed = 1; seed <= 12; ++seed)
        for (const auto make : {smallTree, smallScaffold}) ages.push_back(make(seed));
    return ages;
}

TEST(Stems, HangTogetherReachTheHeightExactlyAndThinOut)
{
    for (AgeRecipe age : trees()) {
        SCOPED_TRACE(age.seed);
        age.flare = age.seed % 2 ? 0.5 : 0;
        age.flareHeight = 30;
        Stems stems = GrowStems(age);
        ThickenStems(age, stems);
        ASSERT_GT(stems.size(), 30u);
        double top = 0, thinnest = 1e9;
        for (const Vector3& position : positionsOf(stems)) top = std::max(top, position.y);
        EXPECT_NEAR(top, age.height, 1e-9);
        EXPECT_EQ(stems[0].parent, vdt::kNone);
        EXPECT_NEAR(stems[0].vertices[0].radius, age.trunkRadius * (1 + age.flare), 1e-9);
        for (size_t i = 0; i < stems.size(); ++i) {
            const Stem& stem = stems[i];
            for (size_t v = 1; v < stem.vertices.size(); ++v)
                EXPECT_LE(stem.vertices[v].radius, stem.vertices[v - 1].radius);
            thinnest = std::min(thinnest, stem.vertices.back().radius);
            if (i == 0) continue;
            ASSERT_LT(stem.parent, i) << "parents come first";
            const std::vector<StemVertex>& parent = stems[stem.parent].vertices;
            ASSERT_LT(stem.parentVertex, parent.size());
            EXPECT_GT(stem.parentVertex, 0u);
            EXPECT_EQ(stem.vertices[0].position, parent[stem.parentVertex].position);
            EXPECT_LT(stem.vertices[0].radius, parent[stem.parentVertex].radius);
            EXPECT_TRUE(stem.layer == 0 || stem.parentVertex < parent.size() - 1) << "nothing begins on a tip";
        }
        EXPECT_NEAR(thinnest, age.tipRadius, 0.02 * age.tipRadius);
    }
}

TEST(Stems, AreTheSameForASeedAndOthersForAnother)
{
    for (const auto make : {smallTree, smallScaffold}) {
        const std::vector<Vector3> positions = positionsOf(GrowStems(make(5)));
        EXPECT_EQ(positions, positionsOf(GrowStems(make(5))));
        EXPECT_NE(positions, positionsOf(GrowStems(make(6))));
    }
}

TEST(Stems, FillTheCrownAndHardlyLeaveIt)
{
    for (const AgeRecipe& age : trees()) {
        int inside = 0, outside = 0;
        double widest = 0;
        for (const Vector3& position : positionsOf(GrowStems(age))) {
            if (position.y < 0.25 * age.height || position.y > 0.9 * age.height) continue;
            const double out = std::hypot(position.x, position.z);
            ++(out <= 1.2 * age.height * ProfileValue(age.crown, position.y / age.height) ? inside : outside);
            widest = std::max(widest, out);
        }
        EXPECT_LT(outside, 0.1 * inside) << "seed " << age.seed << (age.scaffold ? ", scaffold" : ", trunk");
        EXPECT_GT(widest, 0.75 * 0.3 * age.height);
    }
}

TEST(Stems, PullsBendThemToTheSkyOrTheGround)
{
    const auto meanTipTilt = [](double pull) {
        AgeRecipe age = smallTree(3);
        age.stems.pop_back();
        age.stems[0].pull = age.stems[0].pullAtTip = pull;
        double tilt = 0;
        const Stems stems = GrowStems(age);
        for (size_t i = 1; i < stems.size(); ++i) tilt += StemDirection(stems[i], stems[i].vertices.size() - 1).y;
        return tilt / static_cast<double>(stems.size() - 1);
    };
    EXPECT_LT(meanTipTilt(-0.5), -0.5);
    EXPECT_GT(meanTipTilt(0.5), 0.9);
    EXPECT_LT(std::fabs(meanTipTilt(0)), 0.7);
}

// Stems from upright to level, all from the uppermost tenth of the trunk.
AgeRecipe smallRosette()
{
    AgeRecipe age = smallTree(6);
    age.crown = {{0, 0.5}, {2, 0.5}};
    age.trunk = {.segment = 5, .wander = 0};
    age.stems = {{.spacing = 1.5, .firstAt = 0.9, .lastAt = 1, .length = {0.5, 0}, .angle = {90, 0}, .angleAtTip = 0}};
    age.stems[0].changeFrom = 0.9;
    age.stems[0].wander = 0;
    return age;
}

TEST(Stems, ChangeOverTheBearingPartOfTheirParentAlone)
{
    const Stems stems = GrowStems(smallRosette());
    double before = 0, steepest = 0;
    for (size_t i = 1; i < stems.size(); ++i) {
        const double rise = StemDirection(stems[i], 0).y;
        steepest = std::max(steepest, rise);
        EXPECT_GT(rise, before - 0.05) << "stem " << i;
        before = rise;
        EXPECT_TRUE(i > 3 || rise < 0.25) << rise;
    }
    EXPECT_GT(stems.size(), 20u);
    EXPECT_GT(steepest, 0.97);
}

TEST(Foliage, FacesTheUpperSideAndIsScaledAlongTheStemsOfItsLayers)
{
    AgeRecipe age = smallRosette();
    age.foliage = {{.fromLayer = 1, .groups = {1}, .firstAt = 0, .angle = {0, 0}, .scale = {2, 0}, .upperSide = true},
                   {.fromLayer = 0, .lastLayer = 0, .groups = {2}, .firstAt = 0}};
    age.foliage[0].scaleAlong = {{0, 0}, {0.5, 0.5}, {1, 1}};
    Stems stems = GrowStems(age);
    ThickenStems(age, stems);
    const vdt::Skeleton skeleton = BuildSkeleton(age, stems);
    uint64_t onTrunk = 0, connector = 0;
    for (size_t i = 1; i < stems.size(); ++i) {
        const size_t last = stems[i].vertices.size() - 1;
        const Vector3 along = StemDirection(stems[i], 0);
        for (size_t vertex = 1; vertex <= last; ++vertex, ++connector) {
            const vdt::ConnectorAttributes& attributes = skeleton.connectors.at(connector).attributes;
            ASSERT_EQ(attributes.group, 1);
            EXPECT_NEAR(attributes.scale, 2.0 * static_cast<double>(vertex) / static_cast<double>(last), 1e-3);
            const vdt::Matrix frame = vdt::ToMatrix(attributes.orient, {0, 0, 0});
            EXPECT_GT(vdt::Dot(frame.row(1), along), 0.999);
            // The way that the trunk grows, as far as it is across the stem.
            const Vector3 upper = Vector3{0, 1, 0} - along * along.y;
            EXPECT_GT(vdt::Dot(frame.row(2), upper), 0.98 * vdt::Length(upper));
        }
    }
    for (; connector < skeleton.connectors.size(); ++connector, ++onTrunk)
        EXPECT_EQ(skeleton.connectors[connector].attributes.group, 2);
    EXPECT_NEAR(static_cast<double>(onTrunk), static_cast<double>(stems[0].vertices.size()), 2);
}

TEST(Stems, ThatMayLeaveTheCrownHangBesideItDownToTheirClearance)
{
    for (const auto make : {smallTree, smallScaffold}) {
        AgeRecipe age = make(6);
        age.stems.resize(1);
        age.stems.push_back({.spacing = 10,
                             .length = {30, 5},
                             .segment = 10,
                             .pull = -0.5,
                             .pullAtTip = -0.5,
                             .leavesCrown = true,
                             .clearance = {60, 20}});
        int low = 0;
        for (const Stem& stem : GrowStems(age)) {
            if (stem.layer != 2) continue;
            const Vector3& tip = stem.vertices.back().position;
            EXPECT_GE(tip.y, 40) << "stretching to the height moves it a little up, if at all";
            low += tip.y < 110 && tip.y / age.height < age.crown.front().at + 0.02;
        }
        EXPECT_GT(low, 30);
    }
}

TEST(Scaffold, ServesTheBudsAndEndsWhereNoneIsInReach)
{
    // Wood comes near to almost every place of the crown.
    const AgeRecipe age = smallScaffold(4);
    Random growth(age.seed);
    std::vector<uint64_t> thinFrom;
    const Stems stems = GrowScaffold(age, growth, thinFrom);
    const std::vector<Vector3> positions = positionsOf(stems);
    Random random(9);
    int near = 0, places = 0;
    while (places < 300) {
        const Vector3 place{random.between(-150, 150), random.between(100, 500), random.between(-150, 150)};
        if (std::hypot(place.x, place.z) > 0.9 * age.height * ProfileValue(age.crown, place.y / age.height)) continue;
        ++places;
        double nearest = 1e9;
        for (const Vector3& position : positions) nearest = std::min(nearest, vdt::Length(position - place));
        near += nearest < 2 * age.scaffold->nearEnough;
    }
    EXPECT_GT(near, 285);

    // Twig wood is where little wood follows, and its stems have its material.
    ASSERT_EQ(thinFrom.size(), stems.size());
    EXPECT_GT(thinFrom[0], stems[0].vertices.size() / 2);
    for (size_t i = 0; i < stems.size(); ++i) EXPECT_EQ(stems[i].material, thinFrom[i] == 1 ? 2 : 1) << i;

    // Buds that pull both ways, and buds out of reach, end the growth as well.
    AgeRecipe sparse = age;
    sparse.scaffold->buds = 2;
    sparse.scaffold->reach = 40;
    EXPECT_LT(GrowScaffold(sparse, growth, thinFrom).size(), 60u);
}

TEST(Scaffold, KeepsItsWoodInClumpsAndOnLeaders)
{
    AgeRecipe age = smallScaffold(5);
    age.stems.clear();
    const auto meanDistanceToWood = [&] {
        const std::vector<Vector3> positions = positionsOf(GrowStems(age));
        Random random(9);
        double sum = 0;
        for (int i = 0; i < 200; ++i) {
            const Vector3 place{random.between(-100, 100), random.between(200, 400), random.between(-100, 100)};
            double nearest = 1e9;
            for (const Vector3& position : positions) nearest = std::min(nearest, vdt::Length(position - place));
            sum += nearest / 200;
        }
        return sum;
    };
    const double even = meanDistanceToWood();
    age.scaffold->clumps = 8;
    age.scaffold->clumpRadius = 40;
    EXPECT_GT(meanDistanceToWood(), 1.3 * even) << "clumps leave gaps";

    // Leaders alone, and at one fork: with hardly a bud nothing else grows.
    age.scaffold->buds = 1;
    age.scaffold->reach = 33;
    for (const int leaders : {2, 5}) {
        age.scaffold->leaders = leaders;
        std::map<uint64_t, int> forks;
        for (const Stem& stem : GrowStems(age))
            if (stem.parent == 0) ++forks[stem.parentVertex];
        EXPECT_GE(forks.begin()->second, leaders - 1);
    }
}

TEST(Stems, ATrunkOfSeveralBarksIsTheSameWoodInPieces)
{
    for (AgeRecipe age : trees()) {
        SCOPED_TRACE(age.seed);
        age.trunk.material = 1;
        Stems whole = GrowStems(age);
        age.footBarks = {{0.05, 8}, {0.12, 9}, {2, 7}}; // the last would leave no trunk
        Stems cut = GrowStems(age);
        ASSERT_EQ(cut.size(), whole.size() + 2);
        EXPECT_EQ(cut[0].material, 8);
        EXPECT_EQ(cut[1].material, 9);
        EXPECT_EQ(cut[2].material, 1);
        EXPECT_GE(cut[0].vertices.back().position.y, 0.05 * age.height);
        EXPECT_GE(cut[1].vertices.back().position.y, 0.12 * age.height);
        for (size_t i = 1; i < cut.size(); ++i) {
            ASSERT_LT(cut[i].parent, i);
            const std::vector<StemVertex>& parent = cut[cut[i].parent].vertices;
            ASSERT_LT(cut[i].parentVertex, parent.size());
            EXPECT_EQ(cut[i].vertices[0].position, parent[cut[i].parentVertex].position);
            EXPECT_GT(cut[i].parentVertex, 0u);
            EXPECT_TRUE(i < 3 || cut[i].vertices.back().position == whole[i - 2].vertices.back().position);
        }

        // Thickness falls on from piece to piece.
        ThickenStems(age, cut);
        for (const size_t i : {1u, 2u}) EXPECT_LE(cut[i].vertices[0].radius, cut[i - 1].vertices.back().radius);
    }
}

TEST(Thickness, ATrunkWithoutBranchesStillTapersToItsTip)
{
    AgeRecipe age = smallTree(1);
    age.stems.clear();
    Stems stems = GrowStems(age);
    ThickenStems(age, stems);
    ASSERT_EQ(stems.size(), 1u);
    EXPECT_NEAR(stems[0].vertices.front().radius, 8, 1e-9);
    EXPECT_LT(stems[0].vertices.back().radius, 1);
    ThickenStems(age, stems = {}); // no wood, nothing to do
}

TEST(Recipe, FaultsAreToldAndTheDefaultOnesHaveNone)
{
    struct Row {
        const char* fault;
        void (*spoil)(SpeciesRecipe&);
    };
    const Row rows[] = {
        {"no label in ja", [](SpeciesRecipe& r) { r.labels.erase("ja"); }},
        {"the botanical name has no species", [](SpeciesRecipe& r) { r.name = "Quercus"; }},
        {"no wood colour without a season", [](SpeciesRecipe& r) { r.wood.erase(""); }},
        {"nothing draws twig.png", [](SpeciesRecipe& r) { r.textures[2].draw = nullptr; }},
        {"two materials 0", [](SpeciesRecipe& r) { r.materials.push_back(r.materials[0]); }},
        {"material trunk has no texture \"moon.png\"",
         [](SpeciesRecipe& r) { r.materials[0].front.texture = "moon.png"; }},
        {"fresh tuft has the season \"monsoon\"", [](SpeciesRecipe& r) { r.organs[0].season = "monsoon"; }},
        {"fresh tuft has no polygons", [](SpeciesRecipe& r) { r.organs[0].build = [](vdt::Mesh&) {}; }},
        {"medium is not the taller age", [](SpeciesRecipe& r) { r.ages[0].height = r.ages[1].height; }},
        {"no age is called \"old\"", [](SpeciesRecipe& r) { r.ages[0].name = "old"; }},
        {"young has no trunk", [](SpeciesRecipe& r) { r.ages[0].tipRadius = 0; }},
        {"young's crown does not rise", [](SpeciesRecipe& r) { r.ages[0].crown[1].at = 0; }},
        {"young has stems outside of their parents", [](SpeciesRecipe& r) { r.ages[0].stems[0].lastAt = 1.1; }},
        {"young has stems that change beyond their parents' tips",
         [](SpeciesRecipe& r) { r.ages[0].stems[0].changeFrom = 1; }},
        {"young's scaffold never reaches its buds", [](SpeciesRecipe& r) { r.ages[0].scaffold->nearEnough = 1; }},
        {"adult has a foot of a material that is not there",
         [](SpeciesRecipe& r) {
             r.ages[2].footBarks = {{0.1, 77}};
         }},
        {"young has foliage on no stems", [](SpeciesRecipe& r) { r.ages[0].foliage[0].fromLayer = 9; }},
        {"medium has foliage on no stems", [](SpeciesRecipe& r) { r.ages[1].foliage[0].lastLayer = -1; }},
        {"young has foliage of group 77", [](SpeciesRecipe& r) { r.ages[0].foliage[0].groups = {77}; }},
        {"the proxy has materials that are not there", [](SpeciesRecipe& r) { r.proxyBark = 77; }},
    };
    const auto& species = DefaultSpecies();
    for (const SpeciesRecipe& recipe : species)
        EXPECT_EQ(RecipeFaults(recipe), std::vector<std::string>{}) << recipe.name;
    const auto oak =
        std::find_if(species.begin(), species.end(), [](const auto& r) { return r.name == "Quercus robur"; });
    ASSERT_NE(oak, species.end());
    for (const Row& row : rows) {
        SpeciesRecipe recipe = *oak;
        row.spoil(recipe);
        const std::vector<std::string> faults = RecipeFaults(recipe);
        EXPECT_NE(std::find(faults.begin(), faults.end(), row.fault), faults.end()) << row.fault;
    }
}

} // namespace
} // namespace grower
