// Random numbers, noise, leaves and bark: what the pictures and small meshes are made of.
#include "grower/bark.h"
#include "grower/leaf.h"
#include "grower/noise.h"
#include "grower/organs.h"

#include <gtest/gtest.h>

namespace grower {
namespace {

using vdt::Vector3;

LeafShape lobedLeaf()
{
    return {.halfWidth = {{0, 0.05}, {0.3, 0.2}, {0.65, 0.33}, {0.9, 0.2}, {1, 0}}, .lobes = 4, .lobeDepth = 0.5};
}

LeafShape toothedLeaf()
{
    return {.halfWidth = {{0, 0.05}, {0.3, 0.4}, {0.6, 0.25}, {1, 0}}, .stalk = 0.4, .teeth = 9, .toothDepth = 0.2};
}

LeafShape randomLeaf(Random& random)
{
    LeafShape shape{.stalk = random.between(0, 0.6)};
    shape.halfWidth.push_back({0, 0.25 * shape.stalk * random.real()}); // without a stalk, blades begin in a point
    for (double at = random.between(0.1, 0.3); at < 0.95; at += random.between(0.1, 0.3))
        shape.halfWidth.push_back({at, random.between(0.02, 0.5)});
    shape.halfWidth.push_back({1, 0});
    return shape;
}

TEST(GrowerRandom, GivesThePublishedNumbersOfItsGenerator)
{
    Random random(42, 54);
    for (const uint32_t expected : {0xa15c02b7u, 0x7b47f409u, 0xba1d3330u, 0x83d2f293u, 0xbfa4784bu, 0xcbed606eu})
        EXPECT_EQ(random.next(), expected);
}

TEST(GrowerRandom, StaysWithinItsBoundsAndReachesThem)
{
    Random random(1);
    std::vector<int> hits(7, 0);
    double low = 1;
    double high = 0;
    for (int i = 0; i < 20000; ++i) {
        ++hits[random.below(7)];
        const double value = random.around({0.5, 0.5});
        low = std::min(low, value);
        high = std::max(high, value);
    }
    for (const int count : hits) EXPECT_NEAR(count, 20000 / 7, 300);
    EXPECT_GE(low, 0);
    EXPECT_LT(low, 0.001);
    EXPECT_LT(high, 1);
    EXPECT_GT(high, 0.999);
}

TEST(Profile, PassesThroughItsPointsAndIsNothingOutside)
{
    const Profile profile{{0, 0.2}, {0.4, 1}, {0.7, 0.5}, {1, 0.1}};
    for (const ProfilePoint& point : profile) EXPECT_NEAR(ProfileValue(profile, point.at), point.value, 1e-12);
    for (const double outside : {-0.01, 1.01}) EXPECT_EQ(ProfileValue(profile, outside), 0);
    for (double at = 0; at <= 1; at += 0.01) {
        EXPECT_GE(ProfileValue(profile, at), 0) << at;
        EXPECT_LE(ProfileValue(profile, at), 1.1) << at;
    }
    EXPECT_EQ(ProfileValue({}, 0.5), 0);
}

TEST(Noise, RepeatsIsBoundedAndSmooth)
{
    Random random(2);
    for (int i = 0; i < 2000; ++i) {
        const double x = random.between(0, 6);
        const double y = random.between(0, 9);
        const double value = Noise(x, y, 6, 9, 3);
        EXPECT_NEAR(value, Noise(x + 6, y - 9, 6, 9, 3), 1e-9);
        EXPECT_LT(std::fabs(value), 1.5);
        EXPECT_NEAR(value, Noise(x + 1e-6, y, 6, 9, 3), 1e-4);
        const CellPlace here = Cells(x / 6, y / 9, 6, 9, 3);
        const CellPlace there = Cells(x / 6 + 1, y / 9 - 1, 6, 9, 3);
        EXPECT_NEAR(here.nearest, there.nearest, 1e-9);
        EXPECT_EQ(here.number, there.number);
        EXPECT_GE(here.border, 0);
    }
}

// How much neighbouring columns or rows differ on average, and how much the first and last do.
struct Steps {
    double inside = 0;
    double seam = 0;
};

Steps stepsOf(const Image& image, bool columns)
{
    Steps steps;
    const uint32_t size = image.width;
    for (uint32_t line = 0; line < size; ++line) {
        for (uint32_t i = 0; i < size; ++i) {
            const uint32_t next = (i + 1) % size;
            const vdt::Color4f& a = columns ? image.at(i, line) : image.at(line, i);
            const vdt::Color4f& b = columns ? image.at(next, line) : image.at(line, next);
            const double step = std::fabs(a.r - b.r) + std::fabs(a.g - b.g) + std::fabs(a.b - b.b);
            (next == 0 ? steps.seam : steps.inside) += step / (next == 0 ? size : size * (size - 1.0));
        }
    }
    return steps;
}

TEST(Bark, HasNoSeamAroundOrAlongTheStem)
{
    constexpr uint32_t kSize = 128;
    const Bark barks[] = {
        PaintPaperBark({.paper = {0.9f, 0.9f, 0.9f}, .peel = {0.7f, 0.6f, 0.5f}, .pore = {}, .patch = {}}, kSize),
        PaintRidgedBark({.ridge = {0.6f, 0.5f, 0.4f}, .crack = {}, .moss = {0.3f, 0.5f, 0.2f}}, kSize),
        PaintSmoothBark({.skin = {0.6f, 0.4f, 0.3f}, .shade = {0.2f, 0.1f, 0.1f}, .pore = {0.9f, 0.9f, 0.9f}}, kSize)};
    for (const Bark& bark : barks) {
        for (const Image& image : {bark.color, bark.height, NormalsOfHeights(bark.height, 0.02)}) {
            for (const bool columns : {true, false}) {
                const Steps steps = stepsOf(image, columns);
                EXPECT_GT(steps.inside, 0.001);
                EXPECT_LT(steps.seam, 2.2 * steps.inside) << "bark " << &bark - barks << ", columns " << columns;
            }
        }
    }
}

TEST(Bark, NormalsLeanAwayFromTheRise)
{
    Image heights(8, 8, false);
    for (uint32_t y = 0; y < 8; ++y)
        for (uint32_t x = 0; x < 8; ++x) heights.at(x, y).r = x < 4 ? 0.0f : 1.0f; // rises to the right at 4
    const Image across = NormalsOfHeights(heights, 0.1);
    EXPECT_LT(across.at(4, 3).r, 0.45f);
    EXPECT_GT(across.at(0, 3).r, 0.55f);
    EXPECT_FLOAT_EQ(across.at(2, 3).r, 0.5f);
    EXPECT_FLOAT_EQ(across.at(2, 3).b, 1.0f);

    for (uint32_t y = 0; y < 8; ++y)
        for (uint32_t x = 0; x < 8; ++x) heights.at(x, y).r = y < 4 ? 1.0f : 0.0f; // rises upwards, to row 3
    EXPECT_LT(NormalsOfHeights(heights, 0.1).at(3, 3).g, 0.45f);
}

TEST(LeafPicture, ShowsTheOutlineInItsAlphaAndNoForeignColourBesideIt)
{
    const LeafPaint paint{.blade = {0.2f, 0.5f, 0.1f}, .margin = {0.3f, 0.6f, 0.2f}, .vein = {0.7f, 0.8f, 0.5f}};
    for (const LeafShape& shape : {lobedLeaf(), toothedLeaf()}) {
        constexpr uint32_t kSize = 96;
        const Image image = PaintLeaf(shape, paint, kSize);
        const double whole = 1 + shape.stalk;
        int opaque = 0;
        for (uint32_t y = 0; y < kSize; ++y) {
            for (uint32_t x = 0; x < kSize; ++x) {
                const vdt::Color4f& pixel = image.at(x, y);
                const double across = ((x + 0.5) / kSize * 2 - 1) * LeafHalfWidth(shape);
                const double along = (1 - (y + 0.5) / kSize) * whole - shape.stalk;
                const bool mixed = pixel.a > 0 && pixel.a < 1;
                EXPECT_TRUE(mixed || IsOnLeaf(shape, across, along) == (pixel.a == 1)) << x << " " << y;
                EXPECT_GT(pixel.g, 0.3f) << "dark pixels would bleed into the edge";
                EXPECT_EQ(pixel.a, image.at(kSize - 1 - x, y).a) << "both halves are alike";
                opaque += pixel.a == 1;
            }
        }
        EXPECT_GT(opaque, kSize * kSize / 5);
        EXPECT_GT(image.at(kSize / 2, kSize - 1).a, 0) << "the stalk reaches the lower edge";
        for (const uint32_t corner : {0u, kSize - 1}) EXPECT_EQ(image.at(corner, 0).a, 0);
    }
}

bool holds(const vdt::Mesh& mesh, uint64_t polygon, double u, double v)
{
    bool inside = false;
    const uint64_t count = mesh.corners(polygon).size();
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t start = mesh.polygonStart(polygon);
        const vdt::Vector2f& a = mesh.coordinates[mesh.polygonCoordinates[start + i]];
        const vdt::Vector2f& b = mesh.coordinates[mesh.polygonCoordinates[start + (i + 1) % count]];
        if ((a.v > v) != (b.v > v) && u < a.u + (b.u - a.u) * (v - a.v) / (b.v - a.v)) inside = !inside;
    }
    return inside;
}

TEST(LeafMesh, CutsNothingOffTheLeafAndFacesUp)
{
    Random random(3);
    std::vector<LeafShape> shapes{lobedLeaf(), toothedLeaf()};
    while (shapes.size() < 40) shapes.push_back(randomLeaf(random));
    for (size_t i = 0; i < shapes.size(); ++i) {
        SCOPED_TRACE(i);
        const LeafShape& shape = shapes[i];
        vdt::Mesh mesh;
        AddLeaf(mesh, shape, {.length = 7, .fold = 20, .droop = 0, .material = 5}, vdt::Matrix::Identity());
        ASSERT_EQ(mesh.PolygonCount(), 2u);
        for (double along = 0.03 - shape.stalk; along < 1; along += 0.02) {
            for (double across = -0.6; across <= 0.6; across += 0.013) {
                if (!IsOnLeaf(shape, across, along)) continue;
                const double u = 0.5 + across / LeafHalfWidth(shape) / 2;
                const double v = (along + shape.stalk) / (1 + shape.stalk);
                EXPECT_TRUE(holds(mesh, 0, u, v) || holds(mesh, 1, u, v)) << across << " " << along;
            }
        }
        mesh.ComputeNormals();
        for (const Vector3& normal : mesh.normals) EXPECT_GT(normal.z, 0.5);
        vdt::Box box;
        mesh.GetBounds(box);
        EXPECT_NEAR(box.min.y, 0, 1e-9);
        EXPECT_NEAR(box.max.y, 7, 1e-9);
    }
}

TEST(Organs, StandInRightHandedFramesWhateverTheDirections)
{
    Random random(4);
    for (int i = 0; i < 500; ++i) {
        const auto anyVector = [&] {
            return Vector3{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1)};
        };
        const Vector3 direction = i == 0 ? Vector3{0, 0, 0} : i == 1 ? Vector3{1, 0, 0} : anyVector();
        const Vector3 facing = i % 5 == 0 ? direction : anyVector(); // along the direction there is no side to face
        const vdt::Matrix frame = StandingFrame({1, 2, 3}, direction, facing);
        EXPECT_NEAR(vdt::Length(frame.row(0)), 1, 1e-9);
        EXPECT_NEAR(vdt::Length(frame.row(2)), 1, 1e-9);
        EXPECT_NEAR(vdt::Dot(frame.row(1), frame.row(2)), 0, 1e-9);
        EXPECT_NEAR(vdt::Dot(vdt::Cross(frame.row(0), frame.row(1)), frame.row(2)), 1, 1e-9);
        EXPECT_GE(vdt::Dot(frame.row(2), facing), -1e-9);
        EXPECT_TRUE(i == 0 || vdt::Dot(frame.row(1), vdt::Normalized(direction)) > 1 - 1e-9);
    }
}

TEST(Organs, TurnedBodiesShowTheirOutside)
{
    vdt::Mesh mesh;
    AddTurned(mesh, {.outline = {{0, 0.5}, {1, 1}, {2, 0.4}}, .sides = 7}, vdt::Matrix::Identity());
    EXPECT_EQ(mesh.PolygonCount(), 14u);
    mesh.ComputeNormals();
    for (uint64_t i = 0; i < mesh.positions.size(); ++i) {
        const Vector3 outward{mesh.positions[i].x, 0, mesh.positions[i].z};
        EXPECT_GT(vdt::Dot(mesh.normals[i], vdt::Normalized(outward)), 0.5) << i;
    }
}

TEST(Organs, ASprayReachesBackAlongItsTwig)
{
    vdt::Mesh mesh;
    AddSpray(mesh, {.leaves = 5, .length = 10, .firstAt = -1, .lastAt = 0, .scale = {1, 0}}, toothedLeaf(),
             {.length = 4});
    ASSERT_EQ(mesh.PolygonCount(), 10u);
    const uint64_t pointsOfALeaf = mesh.PointCount() / 5;
    for (uint64_t leaf = 0; leaf < 5; ++leaf) {
        const Vector3& foot = mesh.positions[leaf * pointsOfALeaf];
        EXPECT_NEAR(foot.y, -10 + 2.5 * static_cast<double>(leaf), 1e-9);
        EXPECT_NEAR(std::hypot(foot.x, foot.z), 0, 1e-9);
    }
}

} // namespace
} // namespace grower
