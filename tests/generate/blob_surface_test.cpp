#include "support/check_mesh.h"
#include "support/skeleton_builder.h"
#include "vdt/generate/blob_surface.h"
#include "vdt/generate/field_grid.h"
#include "vdt/generate/marching_cubes.h"

#include <array>
#include <map>
#include <set>
#include <utility>

namespace vdt::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<Vector3> randomPoints(uint32_t seed, int count, double reach)
{
    Dice dice(seed);
    std::vector<Vector3> points;
    for (int i = 0; i < count; ++i) points.push_back(dice.position(reach));
    return points;
}

Mesh blob(std::span<const Vector3> points, double radius, double threshold)
{
    Mesh mesh;
    Polygonize(points, WyvillFieldFunction(radius), threshold, mesh);
    CheckMesh(mesh);
    return mesh;
}

// Of a closed mesh; positive if its polygons run counter-clockwise as seen from outside.
double volume(const Mesh& mesh)
{
    double sum = 0;
    for (uint64_t i = 0; i < mesh.polygonEnds.size(); ++i) {
        const auto corners = mesh.corners(i);
        sum += Dot(mesh.positions[corners[0]], Cross(mesh.positions[corners[1]], mesh.positions[corners[2]])) / 6;
    }
    return sum;
}

TEST(WyvillField, FallsFromOneToNothingAtTheRadius)
{
    const WyvillFieldFunction field(3);
    EXPECT_EQ(field.Value({1, 2, 3}, {1, 2, 3}), 1);
    EXPECT_NEAR(field.Value({3, 0, 0}, {0, 0, 0}), 0, 1e-15);
    EXPECT_NEAR(field.Value({0, 1.5, 0}, {0, 0, 0}), 0.5, 1e-15); // one half at half the radius
    EXPECT_EQ(field.Value({3.001, 0, 0}, {0, 0, 0}), 0);
    for (double d = 0.01; d < 3; d += 0.01)
        ASSERT_LT(field.Value({d, 0, 0}, {0, 0, 0}), field.Value({0, d - 0.01, 0}, {0, 0, 0})) << d;
}

TEST(WyvillField, compatibility_ItsGradientHasTheRadiusForTwoOfItsDistances)
{
    const WyvillFieldFunction field(2);
    struct Row {
        Vector3 a;
        double along; // the gradient is this many times the unit vector to `a`
    };
    const Row rows[] = {{{0, 0, 2}, 0}, {{1, 0, 0}, 11.0 / 9}, {{0, -0.5, 0}, 33.0 / 18}, {{9e-5, 0, 0}, 0},
                        {{0, 0, 0}, 0}, {{2.1, 0, 0}, 0},      {{2e-4, 0, 0}, 22.0 / 9}};
    for (const Row& row : rows) {
        Vector3 gradient{7, 7, 7};
        EXPECT_EQ(&field.Gradient(gradient, row.a + Vector3{5, 0, 0}, {5, 0, 0}), &gradient);
        EXPECT_LT(Length(gradient - Normalized(row.a) * row.along), 3e-4) << row.along;
    }
}

TEST(FieldGrid, HasSixteenNodesOnTheLongestAxisAndSumsTheFieldAtEach)
{
    struct Row {
        std::vector<Vector3> points;
        double radius;
        testing::Matcher<std::array<uint64_t, 3>> counts;
    };
    const Row rows[] = {{{{1, 2, 3}}, 7.5, ElementsAre(16, 16, 16)},
                        {{{0, 0, 0}, {13, 0, 0}}, 1, ElementsAre(16, 3, 3)},
                        {{{0, 0, 0}, {0, 13, 0}}, 1, ElementsAre(3, 16, 3)},
                        {{{0, 0, 0}, {1, 2, 13}}, 1, ElementsAre(4, 5, 16)},
                        {{{0, 0, 0}, {13, 13, 1}}, 1, ElementsAre(16, 16, 4)},
                        {randomPoints(3, 40, 4), 2.5, Contains(16)},
                        {randomPoints(4, 40, 4), 0, Contains(16)}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.points.size() << " points, radius " << row.radius);
        const WyvillFieldFunction field(row.radius);
        FieldGrid grid;
        ASSERT_TRUE(BuildFieldGrid(row.points, field, grid));
        EXPECT_THAT((std::array{grid.countX, grid.countY, grid.countZ}), row.counts);
        ASSERT_EQ(grid.values.size(), grid.countX * grid.countY * grid.countZ);
        for (uint64_t i = 0; i < grid.values.size(); ++i) {
            const uint64_t x = i % grid.countX, y = i / grid.countX % grid.countY, z = i / grid.countX / grid.countY;
            double sum = 0;
            for (const Vector3& point : row.points) sum += field.Value(grid.node(grid.origin(), x, y, z), point);
            ASSERT_NEAR(grid.value(x, y, z), sum, 1e-12);
        }
    }
    FieldGrid grid;
    ASSERT_TRUE(BuildFieldGrid(rows[0].points, WyvillFieldFunction(7.5), grid));
    EXPECT_EQ(grid.cellSize, 1);
    EXPECT_EQ(grid.origin(), (Vector3{-6.5, -5.5, -4.5}));
}

using Place = std::array<int, 3>; // the middle of an edge, in halves of the cube's size
using Segments = std::set<std::pair<Place, Place>>;

Place middleOf(char digit)
{
    const auto& [a, b] = kCubeEdges[EdgeOfDigit(digit)];
    Place place{};
    for (size_t k = 0; k < 3; ++k) place[k] = kCubeCorners[a][k] + kCubeCorners[b][k];
    return place;
}

// The sides of triangles that no other triangle of the row has the other way round: where the surface leaves the cube.
Segments rim(const char* row)
{
    Segments open;
    for (; *row; row += 3) {
        for (int side = 0; side < 3; ++side) {
            const Place from = middleOf(row[side]), to = middleOf(row[(side + 1) % 3]);
            EXPECT_NE(from, to);
            const bool isClosed = open.erase({to, from}) > 0;
            EXPECT_TRUE(isClosed || open.insert({from, to}).second) << "a side twice";
        }
    }
    return open;
}

TEST(MarchingCubes, EveryRowCutsExactlyTheEdgesBetweenMarkedAndUnmarkedCorners)
{
    for (uint32_t marks = 0; marks < 256; ++marks) {
        std::set<uint32_t> expected, cut;
        for (uint32_t edge = 0; edge < 12; ++edge)
            if (((marks >> kCubeEdges[edge][0]) ^ (marks >> kCubeEdges[edge][1])) & 1) expected.insert(edge);
        const std::string_view row = kCubeTriangles[marks];
        for (const char digit : row) cut.insert(EdgeOfDigit(digit));
        EXPECT_EQ(cut, expected) << marks;
        EXPECT_EQ(row.size() % 3, 0) << marks;
    }
}

// Through a face two cubes see the same four corners; what one leaves open there the other one closes.
TEST(MarchingCubes, NeighboursAgreeOnTheFaceBetweenThem)
{
    for (size_t axis = 0; axis < 3; ++axis) {
        std::map<std::map<Place, bool>, Segments> rims; // by the marks of the face's corners; of a near face
        for (uint32_t marks = 0; marks < 256; ++marks) {
            const Segments open = rim(kCubeTriangles[marks]);
            for (const int face : {0, 2}) { // the near and the far one, told by the same places
                std::map<Place, bool> faceMarks;
                for (size_t corner = 0; corner < 8; ++corner) {
                    Place place{kCubeCorners[corner][0], kCubeCorners[corner][1], kCubeCorners[corner][2]};
                    if (2 * std::exchange(place[axis], 0) == face) faceMarks[place] = (marks >> corner) & 1;
                }
                Segments onFace;
                for (auto [from, to] : open) {
                    if (std::exchange(from[axis], 0) != face || std::exchange(to[axis], 0) != face) continue;
                    onFace.insert(face ? std::pair{to, from} : std::pair{from, to});
                }
                const auto& known = rims.emplace(faceMarks, onFace).first->second;
                EXPECT_EQ(known, onFace) << "axis " << axis << ", face " << face << ", marks " << marks;
            }
        }
        EXPECT_EQ(rims.size(), 16);
    }
}

TEST(Polygonize, MakesClosedSurfacesThatFaceAwayFromTheMarkedSide)
{
    for (uint32_t seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        const std::vector<Vector3> points = randomPoints(seed, 5 + static_cast<int>(seed) * 3, 4);
        const double threshold = seed % 2 ? 1.0 + 0.01 * seed : 0.1 + 0.02 * seed;
        const Mesh mesh = blob(points, 2, threshold);
        if (mesh.polygonEnds.empty() && threshold >= 1) continue; // nowhere so strong
        ASSERT_GT(mesh.polygonEnds.size(), 8);

        std::map<std::pair<uint64_t, uint64_t>, int> sides;
        for (uint64_t i = 0; i < mesh.polygonEnds.size(); ++i) {
            const auto corners = mesh.corners(i);
            ASSERT_EQ(corners.size(), 3);
            for (size_t k = 0; k < 3; ++k) ++sides[{corners[k], corners[(k + 1) % 3]}];
        }
        for (const auto& [side, count] : sides) {
            ASSERT_EQ(count, 1) << side.first << " " << side.second;
            ASSERT_TRUE(sides.contains({side.second, side.first})) << side.first << " " << side.second;
        }
        EXPECT_EQ(volume(mesh) > 0, threshold >= 1);

        const WyvillFieldFunction field(2);
        for (uint64_t i = 0; i < mesh.positions.size(); ++i) {
            Vector3 sum{0, 0, 0}, gradient;
            for (const Vector3& point : points) sum += field.Gradient(gradient, mesh.positions[i], point);
            ASSERT_EQ(mesh.normals[i], Normalized(sum));
        }
        for (uint64_t i = 0; i < mesh.polygonVertices.size(); ++i) {
            const Vector3& position = mesh.positions[mesh.polygonVertices[i]];
            ASSERT_EQ(mesh.coordinates[mesh.polygonCoordinates[i]],
                      (Vector2f{static_cast<float>(position.x), static_cast<float>(position.y)}));
        }
        EXPECT_THAT(mesh.materials, testing::Each(-1));
    }
}

TEST(Polygonize, TurnsInsideOutAtAThresholdOfOne)
{
    const std::vector<Vector3> points = randomPoints(7, 60, 3);
    const Mesh below = blob(points, 2, 0.9999999), above = blob(points, 2, 1);
    EXPECT_EQ(below.positions.size(), above.positions.size());
    EXPECT_GT(volume(above), 1);
    // Not to the last bit: where marks lie crosswise on a face, other corners are joined when they swap.
    EXPECT_NEAR(volume(below) / -volume(above), 1, 0.01);
}

// Down to plants that are hardly larger than the distance at which places count as one.
TEST(Polygonize, WritesNoPlaceTwice)
{
    for (const double scale : {1.0, 1e-3, 4e-6, 1e-6, 1e-7}) {
        std::vector<Vector3> points = randomPoints(8, 30, 4);
        for (Vector3& point : points) point = scale * point;
        const Mesh mesh = blob(points, 2 * scale, 0.5);
        EXPECT_FALSE(mesh.positions.empty());
        for (size_t i = 0; i < mesh.positions.size(); ++i)
            for (size_t k = 0; k < i; ++k)
                ASSERT_TRUE(ExceedsInMagnitude(mesh.positions[i] - mesh.positions[k], 0.999999999e-6)) << scale;
    }
}

TEST(Polygonize, HostileNumbersGiveNothingOrAMeshOfNumbers)
{
    const double radii[] = {0, -1, kNaN, kInfinity, 5e-324, 1e-200, 1e-60, 1, 1e60, 1e155, 1e308};
    const std::vector<Vector3> clouds[] = {{},
                                           {{0, 0, 0}},
                                           {{0, 0, 0}, {0, 0, 0}},
                                           {{0, 0, 0}, {5e-324, 0, 0}},
                                           {{0, 0, 0}, {1e-310, 2e-310, 0}},
                                           {{0, 0, 0}, {kNaN, 0, 0}},
                                           {{0, 0, 0}, {0, -kInfinity, 0}},
                                           {{-1e308, 0, 0}, {1e308, 0, 0}},
                                           {{1e17, 0, 0}, {1e17 + 64, 0, 0}},
                                           {{0, 0, 0}, {1e300, 1e-300, 1}},
                                           randomPoints(1, 50, 1)};
    int built = 0;
    for (const double radius : radii) {
        for (const std::vector<Vector3>& points : clouds) {
            SCOPED_TRACE(testing::Message() << radius << ", " << points.size() << " points");
            FieldGrid grid;
            const bool isBuilt = BuildFieldGrid(points, WyvillFieldFunction(radius), grid);
            built += isBuilt;
            EXPECT_EQ(grid.values.empty(), !isBuilt);
            EXPECT_LE(grid.values.size(), 24U * 24 * 24);
            for (const double threshold : {-kInfinity, 0.0, 0.5, 1.5, kInfinity, kNaN}) {
                const Mesh mesh = blob(points, radius, threshold);
                EXPECT_TRUE(mesh.polygonEnds.empty() || (isBuilt && std::isfinite(threshold))) << threshold;
            }
        }
    }
    EXPECT_GT(built, 10);
}

} // namespace
} // namespace vdt::test
