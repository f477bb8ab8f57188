// Random numbers, leaves and bark: what the pictures and small meshes are made of.
#include "grower/bark.h"
#include "grower/blade.h"
#include "grower/head.h"
#include "grower/leaf.h"
#include "grower/organs.h"
#include "support/check_mesh.h"

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

LeafShape palmateLeaf(double angle)
{
    LeafShape shape{.halfWidth = {{0, 0.05}, {0.4, 0.14}, {0.7, 0.08}, {1, 0}}, .stalk = 0.5, .teeth = 9};
    shape.toothDepth = 0.2;
    shape.fingers = 3;
    shape.fingerAngle = angle;
    return shape;
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

TEST(GrowerRandom, ReachesItsBoundsEvenly)
{
    Random random(1);
    std::vector<int> hits(7, 0), tenths(10, 0);
    for (int i = 0; i < 20000; ++i) {
        ++hits[random.below(7)];
        ++tenths.at(static_cast<size_t>(10 * random.around({0.5, 0.5})));
    }
    for (const int count : hits) EXPECT_NEAR(count, 20000 / 7, 300);
    for (const int count : tenths) EXPECT_NEAR(count, 2000, 250);
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

// How much neighbouring columns or rows differ on average: inside, and the last from the first.
std::pair<double, double> stepsOf(const Image& image, bool columns)
{
    double inside = 0, seam = 0;
    const uint32_t size = columns ? image.width : image.height;
    for (uint32_t line = 0; line < (columns ? image.height : image.width); ++line) {
        for (uint32_t i = 0; i < size; ++i) {
            const auto pixel = [&](uint32_t at) { return columns ? image.at(at, line) : image.at(line, at); };
            const vdt::Color4f a = pixel(i), b = pixel((i + 1) % size);
            (i + 1 == size ? seam : inside) += std::fabs(a.r - b.r) + std::fabs(a.g - b.g) + std::fabs(a.b - b.b);
        }
    }
    return {inside / (size - 1.0), seam};
}

TEST(Bark, HasNoSeamAroundOrAlongTheStem)
{
    constexpr uint32_t kSize = 128;
    const Bark barks[] = {
        PaintPaperBark({.paper = {0.9f, 0.9f, 0.9f}, .peel = {0.7f, 0.6f, 0.5f}, .pore = {}, .patch = {}}, kSize),
        PaintPaperBark({.paper = {0.9f, 0.9f, 0.9f}, .peel = {0.7f, 0.6f, 0.5f}, .pore = {}, .patch = {}, .turns = 3},
                       kSize),
        PaintRidgedBark({.ridge = {0.6f, 0.5f, 0.4f}, .crack = {}, .moss = {0.3f, 0.5f, 0.2f}, .turns = 2}, kSize),
        PaintRidgedBark({.ridge = {0.6f, 0.5f, 0.4f}, .crack = {}, .moss = {0.3f, 0.5f, 0.2f}}, kSize),
        PaintSmoothBark({.skin = {0.6f, 0.4f, 0.3f}, .shade = {0.2f, 0.1f, 0.1f}, .pore = {0.9f, 0.9f, 0.9f}}, kSize),
        PaintScarredBark({.scar = {0.6f, 0.5f, 0.4f}, .rim = {0.8f, 0.7f, 0.6f}, .fibre = {0.2f, 0.1f, 0.1f}}, kSize)};
    for (const Bark& bark : barks) {
        for (const Image& image : {bark.color, bark.height, NormalsOfHeights(bark.height, 0.02)}) {
            for (const bool columns : {true, false}) {
                const auto [inside, seam] = stepsOf(image, columns);
                EXPECT_GT(inside, 0.1);
                EXPECT_LT(seam, 2.2 * inside) << "bark " << &bark - barks << ", columns " << columns;
            }
        }
    }
}

TEST(Bark, ABlendIsEachOfItsTwoAtTheEnds)
{
    const Bark below = PaintRidgedBark({.ridge = {0.5f, 0.5f, 0.5f}, .crack = {}, .moss = {}, .turns = 2}, 64);
    const Bark above = PaintPaperBark({.paper = {1, 0.5f, 0}, .peel = {}, .pore = {}, .patch = {}, .turns = 2}, 64);
    const Bark blend = BlendBarks(below, above, 0.4, 3);
    int mixed = 0;
    for (uint32_t y = 0; y < 128; ++y) {
        for (uint32_t x = 0; x < 64; ++x) {
            const vdt::Color4f pixel = blend.color.at(x, y);
            const vdt::Color4f whole = (y < 14 ? above : below).color.at(x, y);
            EXPECT_TRUE((y >= 14 && y <= 114) || std::fabs(pixel.r - whole.r) < 1e-6f) << x << " " << y;
            mixed += pixel != below.color.at(x, y) && pixel != above.color.at(x, y);
        }
    }
    EXPECT_GT(mixed, 64 * 128 / 5);
    EXPECT_EQ(blend.height.at(5, 3).r, above.height.at(5, 3).r);
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
    for (const LeafShape& shape : {lobedLeaf(), toothedLeaf(), palmateLeaf(38)}) {
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
    }
}

TEST(LeafPicture, OfAPalmateLeafShowsAllItsFingersAndTheGapsBetweenThem)
{
    const LeafShape shape = palmateLeaf(38);
    double share = 1;
    for (int finger = 0; finger <= shape.fingers; ++finger, share *= shape.fingerShare) {
        const auto isOn = [&](double angle, double radius) {
            const double radians = angle * vdt::kPi / 180;
            return IsOnLeaf(shape, -radius * std::sin(radians), radius * std::cos(radians));
        };
        const double angle = finger * shape.fingerAngle;
        for (double radius = 0.05; radius < 0.97; radius += 0.05) EXPECT_TRUE(isOn(angle, radius * share)) << angle;
        EXPECT_FALSE(isOn(angle, 1.02 * share)) << angle;
        EXPECT_FALSE(isOn(angle + 0.5 * shape.fingerAngle, 0.7 * share)) << angle;
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
    std::vector<LeafShape> shapes{lobedLeaf(), toothedLeaf(), palmateLeaf(25), palmateLeaf(38)};
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

TEST(Blades, ArchAwayFromTheirFacingSideAtTheirLengthAndWidth)
{
    Random random(5);
    for (int i = 0; i < 60; ++i) {
        SCOPED_TRACE(i);
        LeafShape shape = randomLeaf(random);
        shape.stalk = 0;
        const BladeBody body{.length = random.between(5, 80),
                             .width = random.between(0.5, 4),
                             .lean = random.between(0, 30),
                             .arch = random.between(0, 120),
                             .stiffness = random.between(0.5, 2.5),
                             .fold = random.between(0, 25),
                             .pieces = 2 + static_cast<int>(random.below(7))};
        vdt::Mesh mesh;
        AddBlade(mesh, shape, body, vdt::Matrix::Identity());
        vdt::test::CheckMesh(mesh);
        const auto rows = static_cast<uint64_t>(body.pieces); // of three points, then the tip
        ASSERT_EQ(mesh.positions.size(), 3 * rows + 1);
        double length = 0, width = 0;
        for (uint64_t row = 0; row < rows; ++row) {
            const Vector3 middle = mesh.positions[3 * row + 1],
                          next = mesh.positions[row + 1 < rows ? 3 * row + 4 : 3 * row + 3];
            length += vdt::Length(next - middle);
            EXPECT_LE(next.z, middle.z + 1e-9);
            width = std::max(width, vdt::Length(mesh.positions[3 * row] - mesh.positions[3 * row + 2]));
        }
        EXPECT_NEAR(length, body.length, 1e-9);
        EXPECT_LE(width, body.width + 1e-9);
        EXPECT_NEAR(mesh.positions.back().x, 0, 1e-9);

        // The outline has its place in the picture, and the foot's facing side is the front.
        for (const vdt::Vector2f& at : mesh.coordinates)
            EXPECT_TRUE(at.u >= 0 && at.u <= 1 && at.v >= 0 && at.v <= 1) << at.u << " " << at.v;
        mesh.ComputeNormals();
        EXPECT_GT(mesh.normals[0].z, 0.4);
    }
}

TEST(Heads, SpreadTheirFloretsEvenlyAndFaceOutwards)
{
    for (const double opening : {60.0, 110.0, 180.0}) {
        SCOPED_TRACE(opening);
        const HeadShape shape{.florets = 400, .radius = 3, .opening = opening, .rise = 5};
        const std::vector<vdt::Matrix> places = HeadPlaces(shape);
        ASSERT_EQ(places.size(), 400u);
        // As far from each other as even spreading makes them: no gaps and no crowds.
        const double even = 3 * std::sqrt(2 * vdt::kPi * (1 - std::cos(opening * vdt::kPi / 180)) / 400);
        for (const vdt::Matrix& place : places) {
            const Vector3 outward = (place.row(3) - Vector3{0, 5, 0}) * (1.0 / 3);
            EXPECT_NEAR(vdt::Length(outward), 1, 1e-9);
            EXPECT_GT(vdt::Dot(place.row(2), outward), 1 - 1e-9);
            EXPECT_GE(outward.y, std::cos(opening * vdt::kPi / 180));
            double nearest = 1e9;
            for (const vdt::Matrix& other : places)
                if (&other != &place) nearest = std::min(nearest, vdt::Length(other.row(3) - place.row(3)));
            EXPECT_GT(nearest, 0.7 * even);
            EXPECT_LT(nearest, 1.15 * even);
        }
    }

    // Flattened, florets still stand across the surface; petals stand around their own middle and face its way.
    for (const vdt::Matrix& place : HeadPlaces({.radius = 4, .height = 0.5, .rise = 0})) {
        const Vector3 at = place.row(3);
        EXPECT_GT(vdt::Dot(place.row(2), vdt::Normalized(Vector3{at.x, 4 * at.y, at.z})), 1 - 1e-9);
        vdt::Mesh mesh;
        AddFloret(mesh, {.petals = 5, .middle = 1, .raised = 20}, toothedLeaf(), {.length = 2, .droop = 0}, place);
        EXPECT_EQ(mesh.PolygonCount(), 10u);
        mesh.ComputeNormals();
        Vector3 centre{0, 0, 0};
        for (size_t i = 0; i < mesh.positions.size(); ++i) {
            const Vector3 way = mesh.positions[i] - at;
            EXPECT_GT(vdt::Dot(mesh.normals[i], place.row(2)), 0.3);
            EXPECT_GT(vdt::Length(way - place.row(2) * vdt::Dot(way, place.row(2))), 0.8);
            centre += way * (1.0 / static_cast<double>(mesh.positions.size()));
        }
        EXPECT_LT(vdt::Length(centre - place.row(2) * vdt::Dot(centre, place.row(2))), 1e-9);
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

} // namespace
} // namespace grower
