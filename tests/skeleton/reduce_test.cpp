#include "support/literal_reduce.h"
#include "support/skeleton_builder.h"
#include "vdt/math/mersenne_twister.h"
#include "vdt/mesh/convex_hull.h"
#include "vdt/mesh/variant_mesh.h"
#include "vdt/skeleton/reduce.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <set>

namespace vdt::test {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr uint32_t kAllLevels = ReductionParameters::kAllLevels;

Skeleton reduced(const Skeleton& source, const ReductionParameters& parameters,
                 std::span<const VariantMesh> foliage = {}, std::string_view season = "")
{
    Skeleton target = RandomTree(99, 3); // to be cleared
    source.Reduce(foliage, season, target, parameters);
    EXPECT_TRUE(CheckSkeleton(target));
    return target;
}

// A foliage record whose mesh has the mean face area `area`.
VariantMesh leafOfArea(int32_t group, double area, const char* season = "")
{
    auto mesh = std::make_unique<Mesh>();
    const double side = std::sqrt(area);
    mesh->AddPoint({0, 0, 0}, {});
    mesh->AddPoint({side, side, side}, {});
    return {group, season, std::move(mesh)};
}

// `count` connectors on points of their own in a cube of side 10.
Skeleton cloudOfConnectors(uint64_t count, double scale = 3)
{
    SkeletonBuilder builder;
    builder.trunk(4);
    for (uint64_t i = 0; i < count; ++i) {
        const double at = static_cast<double>(i);
        const Vector3 corner{i == 0 ? 0 : 10., i == 0 ? 0 : 10., i == 0 ? 0 : 10.};
        builder.point(i < 2 ? corner : Vector3{std::fmod(at, 10), std::fmod(at * 0.37, 10), std::fmod(at * 0.71, 10)});
        builder.connector(4 + i, 1);
    }
    Skeleton skeleton = builder.take();
    for (SkeletonConnector& connector : skeleton.connectors) connector.attributes.scale = scale;
    return skeleton;
}

TEST(Reduce, CutsBranchesAsThePlainFormDoes)
{
    const struct {
        uint32_t maxLevel;
        float minRadius;
    } rows[] = {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {kAllLevels, 0.5F}, {2, 0.7F}, {kAllLevels, kInfinity}, {1, kNan}};
    for (uint32_t seed = 0; seed < 120; ++seed) {
        const Skeleton source = seed % 3 ? RandomTree(seed, 2 + seed % 40) : RandomTangle(seed, 2 + seed % 20);
        for (const auto& [maxLevel, minRadius] : rows) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", level " + std::to_string(maxLevel) + ", radius " +
                         std::to_string(minRadius));
            const Skeleton result = reduced(source, {maxLevel, minRadius, 0, 0});
            Skeleton expected;
            LiteralReduceBranches(source, expected, [&](const SkeletonVertex& v, uint64_t depth) {
                return maxLevel < depth || v.attributes.radius <= minRadius;
            });
            ASSERT_EQ(Everything(result), Everything(expected));
        }
    }
}

TEST(CutAtHull, EndsBranchesBehindTheirFirstVertexInside)
{
    Dice dice(3);
    for (uint32_t seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const Skeleton source = RandomTree(seed, 2 + seed % 40);
        Box box;
        source.GetBounds(box, BoundsMode::AllPoints);
        std::vector<Vector3> corners;
        for (int i = 0; i < 12; ++i) corners.push_back(box.center() + dice.position(box.diagonal() * 0.3));
        Mesh hull;
        BuildConvexHull(corners, hull);

        Skeleton result = RandomTree(99, 3), expected;
        const uint64_t kept = source.CutAtHull(result, hull);
        EXPECT_TRUE(CheckSkeleton(result));
        EXPECT_EQ(kept, LiteralReduceBranches(source, expected, [&](const SkeletonVertex& v, uint64_t) {
                      return PointInsideHull(source.points[v.point].position, hull);
                  }));
        EXPECT_EQ(Everything(result), Everything(expected));
    }

    // An empty hull holds everything, so each branch ends at its root.
    Skeleton nothing;
    EXPECT_EQ(SkeletonBuilder().trunk(5).take().CutAtHull(nothing, Mesh()), 1);
    EXPECT_TRUE(nothing.branches.empty());
}

TEST(Reduce, NothingToReduceIsACopyToTheBit)
{
    const Skeleton source = RandomTree(5, 60);
    for (const ReductionParameters& off :
         {ReductionParameters(), {kAllLevels, -3, 1, 1}, {kAllLevels, 0, 0.9999999F, 1}, {kAllLevels, 0, 7, 2}}) {
        EXPECT_TRUE(off.keepAll());
        EXPECT_EQ(Everything(reduced(source, off)), Everything(source));
    }
}

TEST(Reduce, GivesEachConnectorAPointOfItsOwn)
{
    const Skeleton source = RandomTree(8, 80);
    ASSERT_GT(source.connectors.size(), 20);
    const Skeleton result = reduced(source, {.maxLevel = 3});
    ASSERT_EQ(result.connectors.size(), source.connectors.size());
    std::set<uint64_t> points;
    for (size_t i = 0; i < result.connectors.size(); ++i) {
        const SkeletonConnector& connector = result.connectors[i];
        EXPECT_EQ(connector.attributes, source.connectors[i].attributes);
        EXPECT_EQ(result.points[connector.point].position, source.points[source.connectors[i].point].position);
        EXPECT_EQ(result.points[connector.point].weight, source.points[source.connectors[i].point].weight);
        EXPECT_TRUE(points.insert(connector.point).second);
    }
}

TEST(Reduce, KeepsTheTruncatedShareOfConnectors)
{
    const Skeleton source = cloudOfConnectors(1001);
    const struct {
        float amount, thinning;
        size_t kept;
    } rows[] = {{0.5F, 1, 500}, {1, 0.5F, 500},      {0.5F, 0.5F, 250}, {0, 1, 0},          {1, 0, 0},
                {0, 0.5F, 0},   {1e-6F, 0.5F, 0},    {0.5F, 7, 500},    {0.0005F, 1, 0},    {-1, 1, 0},
                {0.5F, -2, 0},  {kNan, 0.5F, 500},   {1, kNan, 1001},   {0.25F, kNan, 250}, {kInfinity, 0.5F, 500},
                {1, 1e-4F, 0},  {0.99999F, 1, 1000}, {0.001F, 1, 1}};
    for (const auto& [amount, thinning, kept] : rows)
        EXPECT_EQ(reduced(source, {.foliageAmount = amount, .foliageThinning = thinning}).connectors.size(), kept)
            << amount << ' ' << thinning;
}

TEST(ReduceCompatibility, EnlargesWhatIsLeftByWhatTheCrownLosesAndForgetsItsOwnSize)
{
    // Crown 10 x 10 x 10, so of mean face 100; leaves of 5 at scale 4 cover a fifth of it each.
    std::vector<VariantMesh> foliage;
    foliage.push_back(leafOfArea(1, 5));
    foliage.push_back(leafOfArea(1, 5000, "winter")); // of another season
    foliage.push_back(leafOfArea(2, 5000));           // of a group that stands nowhere
    const Skeleton source = cloudOfConnectors(100, 4);
    const auto scaleAt = [&](float amount, float thinning, std::span<const VariantMesh> records) {
        const Skeleton result =
            reduced(source, {.foliageAmount = amount, .foliageThinning = thinning}, records, "summer");
        std::set<double> scales;
        for (const SkeletonConnector& connector : result.connectors) scales.insert(connector.attributes.scale);
        EXPECT_EQ(scales.size(), 1);
        return *scales.begin();
    };
    const auto enlargement = [](double f, double amount) { return (1 - std::pow(1 - f, 1 / amount)) / f; };

    EXPECT_NEAR(scaleAt(0.5F, 1, foliage), enlargement(0.2, 0.5), 1e-6);
    EXPECT_NEAR(scaleAt(0.25F, 0.5F, foliage), enlargement(0.2, 0.25), 1e-6);
    EXPECT_EQ(scaleAt(1, 0.5F, foliage), 1);                          // and not 4, its own
    EXPECT_NEAR(scaleAt(0.5F, 1, {}), enlargement(0.001, 0.5), 2e-4); // unknown share
    EXPECT_EQ(scaleAt(0.5F, 1, std::vector{leafOfArea(1, 1000)}), 1); // larger than the crown: f is 1
    EXPECT_NEAR(scaleAt(0.5F, 1, std::vector{leafOfArea(1, 0)}), enlargement(0.001, 0.5), 2e-4);
}

TEST(Reduce, DrawsTheSameConnectorsForEveryShare)
{
    const Skeleton source = cloudOfConnectors(500);
    std::vector<uint64_t> order(500);
    std::iota(order.begin(), order.end(), 0);
    MersenneTwister random(4357);
    for (uint64_t i = 1; i < order.size(); ++i)
        std::swap(order[i], order[std::min(static_cast<uint64_t>(random.next() / 4294967295. * (i + 1.)), i)]);

    for (const float share : {0.1F, 0.5F, 0.9F}) {
        const Skeleton result = reduced(source, {.foliageThinning = share});
        for (size_t i = 0; i < result.connectors.size(); ++i)
            ASSERT_EQ(result.points[result.connectors[i].point].position,
                      source.points[source.connectors[order[i]].point].position);
    }
}

TEST(Reduce, LivesWithConnectorsOnNoPointAndNumbersThatAreNone)
{
    Skeleton source = cloudOfConnectors(50);
    source.ResizeConnectors(60); // ten of them stand on no point
    source.points[10].position.x = kNan;
    source.points[11].position.y = kInfinity;
    source.connectors[3].attributes.scale = kNan;
    std::vector<VariantMesh> foliage;
    foliage.push_back(leafOfArea(1, kInfinity));
    foliage.push_back({1, "", nullptr});
    foliage.push_back({1, "", std::make_unique<Mesh>()});
    EXPECT_EQ(reduced(source, {.foliageAmount = 0.5F}, foliage).connectors.size(), 30);
    EXPECT_EQ(reduced(source, {.maxLevel = 1}, foliage).connectors.size(), 60);
}

} // namespace
} // namespace vdt::test
