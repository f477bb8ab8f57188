#include "support/skeleton_builder.h"
#include "vdt/generate/foliage.h"
#include "vdt/generate/leaf_mesh.h"
#include "vdt/generate/point_cloud.h"
#include "vdt/skeleton/walker.h"

#include <gmock/gmock.h>

#include <limits>
#include <map>
#include <memory>
#include <numeric>

namespace vdt::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A quad of 2 by 1 and, on request, a triangle of half of that standing on it.
std::unique_ptr<Mesh> leaf(int32_t material, bool withTriangle = false)
{
    auto mesh = std::make_unique<Mesh>();
    for (const Vector3& corner : {Vector3{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0}, {0, 0, 1}})
        mesh->AddPoint(corner, {0, 0, 1});
    const Vector2f uvs[4] = {};
    AddQuad(*mesh, {0, 1, 2, 3}, uvs, material);
    if (withTriangle) AddTriangle(*mesh, {0, 1, 4}, {{0, 0}, {0, 0}, {0, 0}}, material + 1);
    return mesh;
}

ModelVariant plant(uint32_t seed)
{
    ModelVariant variant;
    variant.skeleton = RandomTree(seed, 1 + seed % 12);
    Dice dice(seed);
    for (SkeletonPoint& point : variant.skeleton.points) point.weight = static_cast<float>(dice.real(0, 1));
    variant.meshes.emplace_back(0, "", leaf(10));
    variant.meshes.emplace_back(1, "summer", leaf(20, true));
    variant.meshes.emplace_back(1, "winter", leaf(30));
    variant.meshes.emplace_back(2, "", nullptr);
    variant.meshes.emplace_back(3, "", std::make_unique<Mesh>());
    return variant;
}

Array<CloudSample> cloudOf(const ModelVariant& variant, uint64_t count, bool shuffle = false, double* step = nullptr)
{
    Array<CloudSample> samples(3); // what is in the list goes
    SamplePoints(variant, "summer", count, samples, shuffle, step);
    return samples;
}

// The cloud by a list of sources as objects and a search from the start for every sample: slow and plain.
Array<CloudSample> literalCloud(const ModelVariant& variant, std::string_view season, uint64_t count, double& step)
{
    std::vector<std::pair<double, std::unique_ptr<PointCloudSource>>> table;
    const Skeleton& skeleton = variant.skeleton;
    double total = 0;
    SkeletonWalker walker(skeleton, false, WalkFilter::SkipDeadSides);
    while (walker.advance()) {
        const SkeletonVertex& v = walker.vertex();
        if (!v.prev) continue;
        const SkeletonPoint &from = skeleton.points[v.prev->point], &to = skeleton.points[v.point];
        table.emplace_back(total,
                           std::make_unique<ConicalFrustrum>(
                               from.position, to.position - from.position,
                               FrustrumEnds{v.prev->attributes.radius, v.attributes.radius, from.weight, to.weight},
                               skeleton.branches[v.branch].matid));
        total += table.back().second->Area();
    }
    for (const VariantMesh& record : variant.meshes) {
        if (!record.mesh || !record.appliesTo(season)) continue;
        for (const SkeletonConnector& connector : skeleton.connectors) {
            if (connector.attributes.group != record.group) continue;
            table.emplace_back(total, std::make_unique<LeafMesh>(*record.mesh, ConnectorFrame(skeleton, connector),
                                                                 skeleton.points[connector.point].weight));
            total += table.back().second->Area() * connector.attributes.scale;
        }
    }
    Array<CloudSample> samples;
    MersenneTwister random;
    step = total / static_cast<double>(count);
    for (uint64_t i = 0; i < count; ++i) {
        const double x = random.real() * step + static_cast<double>(i) * step;
        size_t at = 0;
        while (at + 1 < table.size() && !(table[at].first <= x && table[at + 1].first > x)) ++at;
        const double end = at + 1 < table.size() ? table[at + 1].first : total;
        samples.push_back(table[at].second->Sample((x - table[at].first) / (end - table[at].first), random));
    }
    return samples;
}

TEST(SamplePoints, GoesThroughAllSourcesInEvenStrataOfArea)
{
    for (uint32_t seed = 0; seed < 60; ++seed) {
        const ModelVariant variant = plant(seed);
        for (const uint64_t count : {1, 7, 400}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", count " << count);
            double step = -1, expectedStep = 0;
            const Array<CloudSample> expected = literalCloud(variant, "summer", count, expectedStep);
            if (!(expectedStep > 0)) continue;
            ASSERT_EQ(cloudOf(variant, count, false, &step), expected);
            EXPECT_EQ(step, expectedStep);

            Array<CloudSample> shuffled = expected;
            ShuffleRange(shuffled.begin(), shuffled.end());
            EXPECT_EQ(cloudOf(variant, count, true), shuffled);
        }
    }
}

TEST(SamplePoints, AStraightBranchHasOneSampleInEachStretch)
{
    const Vector3 line[] = {{1, 2, 0}, {1, 2, 3}, {1, 2, 3}, {1, 2, 10}};
    ModelVariant variant;
    variant.skeleton = SkeletonBuilder().along(line, 0.5, 7).take();
    const Array<CloudSample> samples = cloudOf(variant, 500);
    double mean = 0;
    for (size_t i = 0; i < 500; ++i) {
        const Vector3& p = samples[i].position;
        EXPECT_EQ(std::min<size_t>(499, static_cast<size_t>(p.z / 10 * 500)), i);
        EXPECT_NEAR(std::hypot(p.x - 1, p.y - 2), 0.5, 1e-12);
        EXPECT_NEAR(Length(Vector3{p.x - 1, p.y - 2, 0} - 0.5 * samples[i].normal), 0, 1e-12);
        EXPECT_EQ(samples[i].material, 7);
        mean += samples[i].normal.x / 500;
    }
    EXPECT_NEAR(mean, 0, 0.1); // all around
}

TEST(SamplePoints, NothingToSampleAndNothingAsked)
{
    double step = -1;
    EXPECT_TRUE(cloudOf({}, 10, true, &step).empty());
    EXPECT_EQ(step, -1);
    EXPECT_TRUE(cloudOf(plant(5), 0, true, &step).empty());
    EXPECT_EQ(step, kInfinity);

    // Without any area everything falls to the last source.
    ModelVariant dead;
    dead.skeleton = SkeletonBuilder().trunk(4).take();
    for (uint64_t place = 0; place < 4; ++place) VertexAt(dead.skeleton, 0, place).attributes.radius = 0;
    for (const CloudSample& sample : cloudOf(dead, 20, false, &step))
        EXPECT_EQ(sample.position, dead.skeleton.points[2].position);
    EXPECT_EQ(step, 0);
    dead.meshes.emplace_back(0, "", std::make_unique<Mesh>());
    dead.skeleton.AddConnector({.group = 0}, 1);
    for (const CloudSample& sample : cloudOf(dead, 20)) EXPECT_EQ(sample.position, dead.skeleton.points[1].position);
}

TEST(SamplePoints, OneBadNumberDoesNotSpoilThePlant)
{
    for (const double bad : {kNaN, kInfinity, -1.0}) {
        SCOPED_TRACE(bad);
        ModelVariant variant;
        variant.skeleton = SkeletonBuilder().trunk(8).side(2, 4).connector(4).connector(5).take();
        variant.meshes.emplace_back(0, "", leaf(10, true));
        VertexAt(variant.skeleton, 0, 3).attributes.radius = bad;
        variant.skeleton.connectors[0].attributes.scale = bad;
        std::map<int32_t, int> byMaterial;
        int finite = 0;
        for (const CloudSample& sample : cloudOf(variant, 1000)) {
            finite += std::isfinite(Dot(sample.position, sample.position));
            ++byMaterial[sample.material];
        }
        EXPECT_EQ(finite, 1000);
        EXPECT_GT(byMaterial[0], 100);
        EXPECT_GT(byMaterial[10], 10);
        EXPECT_GT(byMaterial[11], 10);
    }
}

TEST(ConicalFrustrum, compatibility_ItsNormalIsXTurnedAboutTheAxis)
{
    MersenneTwister random, same;
    const ConicalFrustrum alongX({0, 0, 0}, {3, 0, 0}, {1, 2, 0.25F, 0.75F}, 4);
    const ConicalFrustrum point({1, 2, 3}, {0, 0, 0}, {1, 1, 0, 1}, 4);
    for (int i = 0; i < 20; ++i) {
        const CloudSample sample = alongX.Sample(0.5, random);
        EXPECT_EQ(sample.normal, (Vector3{1, 0, 0}));
        EXPECT_EQ(sample.position, (Vector3{3, 0, 0}));
        EXPECT_EQ(sample.weight, 0.5F);
        EXPECT_EQ(point.Sample(0.5, random).normal, (Vector3{1, 0, 0}));

        // Right-handed: a quarter turn about Z takes X to Y, about -Z to -Y, about Y to -Z.
        const double angle = 6.283185307179586 * same.real();
        MersenneTwister again[3];
        for (MersenneTwister& each : again)
            for (int k = 0; k < 2 * i; ++k) each.real();
        const Vector3 axes[] = {{0, 0, 2}, {0, 0, -2}, {0, 2, 0}};
        const double c = std::cos(angle), s = std::sin(angle);
        const Vector3 expected[] = {{c, s, 0}, {c, -s, 0}, {c, 0, -s}};
        for (int k = 0; k < 3; ++k) {
            const ConicalFrustrum frustum({0, 0, 0}, axes[k], {1, 1, 0, 0}, 4);
            const Vector3 normal = frustum.Sample(0, again[k]).normal;
            EXPECT_LT(Length(normal - expected[k]), 1e-12) << k;
        }
        same.real();
    }
    EXPECT_DOUBLE_EQ(alongX.Area(), kPi * 2 * std::sqrt(10.0));
    EXPECT_EQ(ConicalFrustrum({0, 0, 0}, {1, 0, 0}, {1, 0, 0, 0}, 0).Area(), 0);
}

TEST(LeafMesh, SamplesLieOnThePolygonChosenAndCarryItsNormal)
{
    const std::unique_ptr<Mesh> mesh = leaf(5, true);
    EXPECT_EQ(MeshArea(*mesh), 3);
    Matrix frame = Matrix::Identity(); // twice as large, y up, away from the origin
    frame.setRow(0, {2, 0, 0});
    frame.setRow(1, {0, 0, 2});
    frame.setRow(2, {0, -2, 0});
    frame.setRow(3, {10, 0, 0});
    const LeafMesh placed(*mesh, frame, 0.5F);
    EXPECT_EQ(placed.Area(), 3);

    MersenneTwister random;
    std::vector<double> halves;
    for (int i = 0; i < 2000; ++i) {
        const CloudSample onQuad = placed.Sample(i / 4001.0, random);
        EXPECT_EQ(onQuad.material, 5);
        EXPECT_EQ(onQuad.normal, (Vector3{0, 0, 1})); // as the mesh has it
        const double u = (onQuad.position.x - 10) / 4, v = onQuad.position.z / 2;
        EXPECT_TRUE(u >= 0 && u <= 1 && v >= 0 && v <= 1 && std::fabs(onQuad.position.y) < 1e-12);
        halves.push_back(u < v);

        const CloudSample onTriangle = placed.Sample(1 - i / 4001.0, random);
        EXPECT_EQ(onTriangle.material, 6);
        EXPECT_EQ(onTriangle.normal, (Vector3{0, -1, 0}));
    }
    EXPECT_NEAR(std::accumulate(halves.begin(), halves.end(), 0.0), 1000, 100);

    // Whatever is asked, a polygon that is there answers.
    for (const double t : {-1.0, 2.0, 1e300, kNaN, kInfinity, -kInfinity})
        EXPECT_THAT(placed.Sample(t, random).material, testing::AnyOf(5, 6)) << t;
    Mesh line;
    line.AddPolygon(std::vector<uint64_t>{}, std::vector<uint64_t>{}, 1);
    EXPECT_EQ(MeshArea(line), 0);
    EXPECT_EQ(LeafMesh(line, frame, 0).Sample(0.5, random).position, (Vector3{10, 0, 0}));
}

TEST(SampleLit, BranchesAreLitFromOneSideAndLeavesFromBoth)
{
    const std::unique_ptr<Mesh> mesh = leaf(5);
    const LeafMesh placed(*mesh, Matrix::Identity(), 0);
    const ConicalFrustrum twig({0, 0, 0}, {1, 0, 0}, {1, 1, 0, 0}, 4); // its normal is X
    struct Row {
        Vector3 direction;
        float onLeaf, onTwig;
    };
    const Row rows[] = {{{0, 0, 1}, 1, 0}, {{0, 0, -1}, 1, 0}, {{0.6, 0, -0.8}, 0.8F, 0.6F}, {{-1, 0, 0}, 0, 0}};
    MersenneTwister random;
    for (const Row& row : rows) {
        EXPECT_EQ(placed.SampleLit(0.5, random, row.direction).shade, row.onLeaf);
        EXPECT_EQ(twig.SampleLit(0.5, random, row.direction).shade, row.onTwig);
    }
}

TEST(SampleLitCloud, LightsTheCloudFromBothSides)
{
    const ModelVariant variant = plant(11);
    const Array<CloudSample> cloud = cloudOf(variant, 300);
    Array<LitSample> lit;
    ASSERT_TRUE(SampleLitCloud(variant, "summer", 300, {0, 30, 40}, lit)); // of any length
    for (size_t i = 0; i < 300; ++i) {
        const double light = std::fabs(Dot(cloud[i].normal, {0, 0.6, 0.8}));
        EXPECT_EQ(lit[i], (LitSample{cloud[i].position, static_cast<float>(light), cloud[i].material}));
    }
    EXPECT_FALSE(SampleLitCloud({}, "", 300, {0, 0, 1}, lit));
    EXPECT_TRUE(SampleLitCloud(variant, "", 0, {0, 0, 1}, lit));
    EXPECT_TRUE(lit.empty());
}

} // namespace
} // namespace vdt::test
