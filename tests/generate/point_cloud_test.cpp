#include "support/skeleton_builder.h"
#include "vdt/generate/leaf_mesh.h"
#include "vdt/generate/point_cloud.h"
#include "vdt/skeleton/walker.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>

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
    for (SkeletonBranch& branch : variant.skeleton.branches) branch.matid = 1;
    variant.meshes.emplace_back(0, "", leaf(10));
    variant.meshes.emplace_back(1, "summer", leaf(20));
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

TEST(SamplePoints, SharesThemOutByAreaBranchesFirst)
{
    for (uint32_t seed = 0; seed < 60; ++seed) {
        const ModelVariant variant = plant(seed);
        std::map<int32_t, double> areas;
        SkeletonWalker walker(variant.skeleton, false, WalkFilter::SkipDeadSides);
        while (walker.advance()) {
            const SkeletonVertex &top = walker.vertex(), *base = top.prev;
            if (!base) continue;
            const auto at = [&](const SkeletonVertex& v) { return variant.skeleton.points[v.point].position; };
            const FrustrumEnds ends{base->attributes.radius, top.attributes.radius, 0, 0};
            areas[1] += ConicalFrustrum(at(*base), at(top) - at(*base), ends, 1).Area();
        }
        for (const SkeletonConnector& connector : variant.skeleton.connectors)
            if (connector.attributes.group < 2)
                areas[10 + 10 * connector.attributes.group] += 2 * connector.attributes.scale; // once, not squared
        const double total = areas[1] + areas[10] + areas[20];
        if (total == 0) continue;

        double step = 0;
        const Array<CloudSample> samples = cloudOf(variant, 500, false, &step);
        EXPECT_NEAR(step * 500, total, 1e-9 * total);
        EXPECT_TRUE(std::ranges::is_sorted(samples, {}, &CloudSample::material)) << seed;
        for (const CloudSample& sample : samples) areas[sample.material] -= step;
        for (const auto& [material, left] : areas) EXPECT_LT(std::fabs(left), 2 * step) << seed << " " << material;

        Array<CloudSample> shuffled = samples;
        ShuffleRange(shuffled.begin(), shuffled.end());
        EXPECT_EQ(cloudOf(variant, 500, true), shuffled);
    }
}

TEST(SamplePoints, AStraightBranchHasOneSampleInEachStretch)
{
    const Vector3 line[] = {{1, 2, 0}, {1, 2, 3}, {1, 2, 3}, {1, 2, 10}};
    ModelVariant variant;
    variant.skeleton = SkeletonBuilder().along(line, 0.5, 7).take();
    for (SkeletonPoint& point : variant.skeleton.points) point.weight = static_cast<float>(point.position.z / 10);
    const Array<CloudSample> samples = cloudOf(variant, 500);
    for (size_t i = 0; i < 500; ++i) {
        const auto& [position, normal, weight, material] = samples[i];
        EXPECT_EQ(std::min<size_t>(499, static_cast<size_t>(position.z / 10 * 500)), i);
        EXPECT_LT(Length(position - Vector3{1, 2, position.z} - 0.5 * normal), 1e-12);
        EXPECT_NEAR(weight, position.z / 10, 1e-6);
        EXPECT_EQ(material, 7);
    }
}

TEST(SamplePoints, BadNumbersAndMissingAreasGiveNumbersAllTheSame)
{
    double step = -1;
    EXPECT_TRUE(cloudOf({}, 10, true, &step).empty());
    EXPECT_EQ(step, -1);
    EXPECT_TRUE(cloudOf(plant(5), 0, true, &step).empty());
    EXPECT_EQ(step, kInfinity);

    // Without any area everything falls to the last source.
    ModelVariant dead;
    dead.skeleton = SkeletonBuilder().trunk(2).radius(0, 0, 0).radius(0, 1, 0).take();
    for (const CloudSample& sample : cloudOf(dead, 20, false, &step)) EXPECT_EQ(sample.position, (Vector3{0, 0, 0}));
    EXPECT_EQ(step, 0);
    dead.meshes.emplace_back(0, "", std::make_unique<Mesh>());
    dead.skeleton.AddConnector({}, 1);
    for (const CloudSample& sample : cloudOf(dead, 20)) EXPECT_EQ(sample.position, (Vector3{0, 0, 1}));

    for (const double bad : {kNaN, kInfinity, -1.0}) {
        ModelVariant variant;
        variant.skeleton = SkeletonBuilder().trunk(8).radius(0, 3, bad).connector(4).connector(5).take();
        variant.meshes.emplace_back(0, "", leaf(10, true));
        variant.skeleton.connectors[0].attributes.scale = bad;
        std::map<int32_t, int> byMaterial;
        for (const CloudSample& sample : cloudOf(variant, 1000)) {
            EXPECT_TRUE(std::isfinite(Dot(sample.position, sample.normal)));
            ++byMaterial[sample.material];
        }
        EXPECT_TRUE(byMaterial[0] > 100 && byMaterial[10] > 10 && byMaterial[11] > 10) << bad;
    }
}

TEST(ConicalFrustrum, compatibility_ItsNormalIsXTurnedAboutTheAxis)
{
    MersenneTwister random, judge;
    // Right-handed: a quarter turn about Z takes X to Y, about Y to -Z. Nothing turns it about itself or about nothing.
    const Vector3 axes[] = {{0, 0, 2}, {0, 0, -2}, {0, 2, 0}, {3, 0, 0}, {0, 0, 0}};
    for (int i = 0; i < 20; ++i) {
        for (size_t k = 0; k < std::size(axes); ++k) {
            const ConicalFrustrum frustum({1, 2, 3}, axes[k], {1, 2, 0.25F, 0.75F}, 4);
            const CloudSample sample = frustum.Sample(0.5, random);
            const double angle = 6.283185307179586 * judge.real(), c = std::cos(angle), s = std::sin(angle);
            const Vector3 normals[] = {{c, s, 0}, {c, -s, 0}, {c, 0, -s}, {1, 0, 0}, {1, 0, 0}};
            EXPECT_LT(Length(sample.normal - normals[k]), 1e-12) << k;
            EXPECT_LT(Length(sample.position - Vector3{1, 2, 3} - 0.5 * axes[k] - 1.5 * normals[k]), 1e-12) << k;
            EXPECT_EQ(sample.weight, 0.5F);
        }
    }
    EXPECT_DOUBLE_EQ(ConicalFrustrum({0, 0, 0}, {0, 3, 0}, {1, 2, 0, 0}, 0).Area(), kPi * 2 * std::sqrt(10.0));
}

TEST(LeafMesh, SamplesLieOnThePolygonChosenAndCarryItsNormal)
{
    const std::unique_ptr<Mesh> mesh = leaf(5, true);
    const Matrix frame{{{2, 0, 0, 0}, {0, 0, 2, 0}, {0, -2, 0, 0}, {10, 0, 0, 1}}}; // twice as large, y up
    const LeafMesh placed(*mesh, frame, 0.5F);
    EXPECT_EQ(placed.Area(), 3);

    MersenneTwister random;
    int onFirstHalf = 0;
    for (int i = 0; i < 2000; ++i) {
        const CloudSample onQuad = placed.Sample(i / 4001.0, random);
        const double u = (onQuad.position.x - 10) / 4, v = onQuad.position.z / 2;
        EXPECT_TRUE(u >= 0 && u <= 1 && v >= 0 && v <= 1 && std::fabs(onQuad.position.y) < 1e-12);
        EXPECT_EQ(onQuad.normal, (Vector3{0, 0, 1})); // as the mesh has it
        EXPECT_EQ(placed.Sample(1 - i / 4001.0, random).material, 6);
        onFirstHalf += u > v;
    }
    EXPECT_NEAR(onFirstHalf, 1000, 100);

    // Whatever is asked, a polygon that is there answers.
    for (const double t : {-1.0, 2.0, 1e300, kNaN, kInfinity, -kInfinity})
        EXPECT_THAT(placed.Sample(t, random).material, testing::AnyOf(5, 6)) << t;
    Mesh cornerless;
    cornerless.AddPolygon({}, {}, 1);
    EXPECT_EQ(MeshArea(cornerless), 0);
    EXPECT_EQ(LeafMesh(cornerless, frame, 0).Sample(0.5, random).position, (Vector3{10, 0, 0}));
}

TEST(SampleLit, SourcesLightBranchesFromOneSideAndCloudsFromBoth)
{
    const std::unique_ptr<Mesh> mesh = leaf(5);
    const LeafMesh placed(*mesh, Matrix::Identity(), 0);
    const ConicalFrustrum twig({0, 0, 0}, {1, 0, 0}, {1, 1, 0, 0}, 4); // its normal is X
    MersenneTwister random;
    EXPECT_EQ(placed.SampleLit(0.5, random, {0.6, 0, -0.8}).shade, 0.8F);
    EXPECT_EQ(twig.SampleLit(0.5, random, {0.6, 0, -0.8}).shade, 0.6F);
    EXPECT_EQ(twig.SampleLit(0.5, random, {-1, 0, 0}).shade, 0);

    const ModelVariant variant = plant(11);
    const Array<CloudSample> cloud = cloudOf(variant, 300);
    Array<LitSample> lit;
    ASSERT_TRUE(SampleLitCloud(variant, "summer", 300, {0, 30, 40}, lit)); // of any length
    for (size_t i = 0; i < 300; ++i) {
        const double light = std::fabs(Dot(cloud[i].normal, {0, 0.6, 0.8}));
        EXPECT_EQ(lit[i], (LitSample{cloud[i].position, static_cast<float>(light), cloud[i].material}));
    }
    EXPECT_FALSE(SampleLitCloud({}, "", 300, {0, 0, 1}, lit));
}

} // namespace
} // namespace vdt::test
