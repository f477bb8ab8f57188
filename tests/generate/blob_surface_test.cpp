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

std::vector<Vector3> randomPoints(uint32_t seed, uint32_t count, double reach)
{
    Dice dice(seed);
    std::vector<Vector3> points(count);
    for (Vector3& point : points) point = dice.position(reach);
    return points;
}

Mesh blob(std::span<const Vector3> points, double radius, double threshold)
{
    Mesh mesh;
    Polygonize(points, WyvillFieldFunction(radius), threshold, mesh);
    CheckMesh(mesh);
    return mesh;
}

TEST(WyvillField, FallsFromOneToNothingAtTheRadius)
{
    const WyvillFieldFunction field(3);
    const std::pair<double, double> rows[] = {{0, 1}, {1.5, 0.5}, {3, 0}, {3.001, 0}, {1e200, 0}};
    for (const auto& [d, value] : rows) EXPECT_NEAR(field.Value({1, 2 + d, 3}, {1, 2, 3}), value, 1e-15) << d;
}

TEST(WyvillField, compatibility_ItsGradientHasTheRadiusForTwoOfItsDistances)
{
    const std::pair<double, double> rows[] = {{9e-5, 0}, {2e-4, 22.0 / 9}, {0.5, 33.0 / 18}, {1, 11.0 / 9}, {2.1, 0}};
    for (const auto& [d, along] : rows) {
        Vector3 gradient{7, 7, 7};
        WyvillFieldFunction(2).Gradient(gradient, {5, 0, 5 - d}, {5, 0, 5});
        EXPECT_LT(Length(gradient - Vector3{0, 0, -along}), 3e-4) << d;
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
                        {randomPoints(3, 40, 4), 2.5, Contains(16)}};
    for (const Row& row : rows) {
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
    FieldGrid even; // an even number of nodes lies half a cell off the middle
    ASSERT_TRUE(BuildFieldGrid(rows[0].points, WyvillFieldFunction(7.5), even));
    EXPECT_EQ(even.node(even.origin(), 15, 0, 1), (Vector3{8.5, -5.5, -3.5}));
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
            const bool isClosed = open.erase({to, from}) > 0;
            EXPECT_TRUE(from != to && (isClosed || open.insert({from, to}).second));
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
        for (const char digit : std::string_view(kCubeTriangles[marks])) cut.insert(EdgeOfDigit(digit));
        EXPECT_EQ(cut, expected) << marks;
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
    }
}

TEST(Polygonize, MakesClosedSurfacesThatFaceAwayFromTheMarkedSide)
{
    for (uint32_t seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        const std::vector<Vector3> points = randomPoints(seed, 25 + seed * 3, 3);
        const double threshold = seed % 2 ? 1.0 + 0.01 * seed : 0.1 + 0.02 * seed;
        const Mesh mesh = blob(points, 2, threshold);
        std::set<std::pair<uint64_t, uint64_t>> open;
        double volume = 0;
        for (uint64_t i = 0; i < mesh.polygonEnds.size(); ++i) {
            const auto corners = mesh.corners(i);
            ASSERT_EQ(corners.size(), 3);
            const auto at = [&](size_t corner) { return mesh.positions[corners[corner]]; };
            volume += Dot(at(0), Cross(at(1), at(2))) / 6;
            for (size_t k = 0; k < 3; ++k) {
                const bool isClosed = open.erase({corners[(k + 1) % 3], corners[k]}) > 0;
                ASSERT_TRUE(isClosed || open.insert({corners[k], corners[(k + 1) % 3]}).second);
            }
        }
        EXPECT_TRUE(open.empty());
        EXPECT_TRUE(threshold >= 1 ? volume > 0.1 : volume < -0.1) << volume;

        for (uint64_t i = 0; i < mesh.polygonVertices.size(); ++i) {
            const Vector3& position = mesh.positions[mesh.polygonVertices[i]];
            Vector3 sum{0, 0, 0}, gradient;
            for (const Vector3& point : points) sum += WyvillFieldFunction(2).Gradient(gradient, position, point);
            ASSERT_EQ(mesh.normals[mesh.polygonVertices[i]], Normalized(sum));
            ASSERT_EQ(mesh.coordinates[mesh.polygonCoordinates[i]],
                      (Vector2f{static_cast<float>(position.x), static_cast<float>(position.y)}));
        }
        EXPECT_THAT(mesh.materials, testing::Each(-1));
    }
}

// Down to plants that are hardly larger than the distance at which places count as one.
TEST(Polygonize, WritesNoPlaceTwice)
{
    for (const double scale : {1.0, 4e-6, 1e-6, 1e-7}) {
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
    const double huge = 1e308, tiny = 5e-324;
    const std::vector<Vector3> clouds[] = {{},
                                           {{0, 0, 0}},
                                           {{0, 0, 0}, {tiny, 0, 0}},
                                           {{0, 0, 0}, {kNaN, 0, 0}},
                                           {{0, 0, 0}, {0, -kInfinity, 0}},
                                           {{-huge, 0, 0}, {huge, 0, 0}},
                                           {{1e17, 0, 0}, {1e17 + 64, 0, 0}},
                                           {{0, 0, 0}, {1e300, 1e-300, 1}},
                                           randomPoints(1, 50, 1)};
    int built = 0;
    for (const double radius : {0.0, -1.0, kNaN, kInfinity, 5e-324, 1e-200, 1e-60, 1.0, 1e60, 1e155, 1e308}) {
        for (const std::vector<Vector3>& points : clouds) {
            SCOPED_TRACE(testing::Message() << radius << ", " << points.size() << " points");
            FieldGrid grid;
            const bool isBuilt = BuildFieldGrid(points, WyvillFieldFunction(radius), grid);
            built += isBuilt;
            EXPECT_EQ(grid.values.empty(), !isBuilt);
            EXPECT_LE(grid.values.size(), 24U * 24 * 24);
            for (const double threshold : {-kInfinity, 0.0, 0.5, 1.5, kInfinity, kNaN}) {
                const bool isEmpty = blob(points, radius, threshold).polygonEnds.empty();
                EXPECT_TRUE(isEmpty || (isBuilt && std::isfinite(threshold))) << threshold;
            }
        }
    }
    EXPECT_GT(built, 10);
}

} // namespace
} // namespace vdt::test
