#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "support/literal_subdivision.h"
#include "support/recording_messages.h"
#include "vdt/mesh/subdivision.h"

#include <random>

namespace vdt::test {
namespace {

using testing::Each;

struct LeveledMesh {
    Mesh mesh;
    std::vector<int32_t> levels;
};

void addPolygon(LeveledMesh& target, const std::vector<uint64_t>& vertices, int32_t level)
{
    std::vector<uint64_t> coordinates;
    for (const uint64_t vertex : vertices)
        coordinates.push_back(
            target.mesh.AddUV(0.125F * static_cast<float>(vertex % 7), 0.3F * static_cast<float>(coordinates.size())));
    target.mesh.AddPolygon(vertices, coordinates, level + 5);
    target.levels.push_back(level);
}

// A sheet of quads with one level each.
LeveledMesh sheet(uint64_t columns, const std::vector<int32_t>& levels)
{
    LeveledMesh result;
    const uint64_t rows = levels.size() / columns;
    for (uint64_t point = 0; point < (rows + 1) * (columns + 1); ++point) {
        const double x = static_cast<double>(point % (columns + 1)), y = static_cast<double>(point / (columns + 1));
        result.mesh.AddPoint({x, y, 0.1 * x * y}, {0, 0, 1});
    }
    for (uint64_t quad = 0; quad < levels.size(); ++quad) {
        const uint64_t corner = quad / columns * (columns + 1) + quad % columns;
        addPolygon(result, {corner, corner + 1, corner + columns + 2, corner + columns + 1}, levels[quad]);
    }
    return result;
}

// Anything goes: no corners or seven, repeated corners, edges of many polygons, steps of three levels.
LeveledMesh rubble(uint32_t seed)
{
    std::mt19937 random(seed);
    LeveledMesh result;
    const uint32_t pointCount = 3 + random() % 20, polygonCount = random() % 25, levelRange = 1 + random() % 4;
    for (uint32_t point = 0; point < pointCount; ++point)
        result.mesh.AddPoint({0.1 * (random() % 100), 0.1 * (random() % 100), 0.1 * (random() % 100)}, {0, 0, 0});
    for (uint32_t polygon = 0; polygon < polygonCount; ++polygon) {
        std::vector<uint64_t> vertices(random() % 4 ? 3 + random() % 2 : random() % 8);
        const bool clean = random() % 4;
        const uint64_t first = random() % pointCount;
        for (size_t corner = 0; corner < vertices.size(); ++corner)
            vertices[corner] = clean ? (first + corner) % pointCount : random() % pointCount;
        addPolygon(result, vertices, static_cast<int32_t>(random() % levelRange) - (random() % 8 == 0));
    }
    return result;
}

Mesh subdivided(const LeveledMesh& source, std::vector<int32_t>* outputIndices = nullptr)
{
    Mesh result;
    NullMessageHandler messages;
    std::vector<int32_t> indices;
    SubdivideLevel(source.mesh, result, messages, source.levels, outputIndices ? *outputIndices : indices);
    CheckMesh(result);
    return result;
}

TEST(Topology, IsThatOfAnOrderedMapOnAnyMesh)
{
    for (uint32_t seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        Mesh mesh = rubble(seed).mesh;
        RecordingMessages messages;
        mesh.BuildTopology(messages);
        mesh.BuildTopology(messages);
        ASSERT_EQ(messages.debugs.size(), 1u); // the second time there is nothing to do
        EXPECT_TRUE(messages.debugs[0].starts_with("subdiv helper generation time : 0"));
        EXPECT_TRUE(messages.debugs[0].ends_with("s"));

        const LiteralTopology expected(mesh);
        EXPECT_TRUE(std::ranges::equal(mesh.edges, expected.edges));
        EXPECT_TRUE(std::ranges::equal(mesh.cornerEdges, expected.cornerEdges));
        ASSERT_EQ(mesh.pointLinks.size(), expected.pointLinks.size());
        for (uint64_t point = 0; point < mesh.pointLinks.size(); ++point) {
            EXPECT_TRUE(std::ranges::equal(mesh.pointLinks[point].edges, expected.pointLinks[point].edges));
            EXPECT_TRUE(std::ranges::equal(mesh.pointLinks[point].polygons, expected.pointLinks[point].polygons));
        }
        mesh.AddPoint({0, 0, 0}, {0, 0, 0});
        mesh.BuildTopology(messages);
        EXPECT_EQ(mesh.pointLinks.size(), mesh.positions.size());
    }
}

TEST(Subdivide, IsThatOfWholeMeshesForEveryLevelOnAnyMesh)
{
    for (uint32_t seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE(seed);
        const LeveledMesh source = rubble(seed);
        Mesh expected;
        std::vector<int32_t> expectedIndices, indices;
        LiteralSubdivision(source.mesh).run(source.levels, expected, expectedIndices);
        const Mesh result = subdivided(source, &indices);
        ExpectSameMesh(result, expected, 1e-14);
        EXPECT_EQ(indices, expectedIndices);

        // The same calls reach any other accessor, in the same order.
        ForeignMesh foreign, expectedForeign;
        NullMessageHandler messages;
        Subdivide(source.mesh, foreign, messages, source.levels);
        LiteralSubdivision(source.mesh).run(source.levels, expectedForeign, expectedIndices);
        EXPECT_EQ(foreign.calls, expectedForeign.calls);
        if (HasFailure()) return;
    }
}

TEST(Subdivide, RoundsAClosedTubeTowardsACircle)
{
    // A square tube around the z axis.
    LeveledMesh tube;
    constexpr uint64_t kRings = 5;
    for (uint64_t point = 0; point < 4 * kRings; ++point) {
        const double angle = kPi / 2 * static_cast<double>(point % 4);
        tube.mesh.AddPoint({std::cos(angle), std::sin(angle), static_cast<double>(point / 4)}, {0, 0, 0});
    }
    for (uint64_t point = 0; point < 4 * (kRings - 1); ++point) {
        const uint64_t next = point % 4 == 3 ? point - 3 : point + 1;
        addPolygon(tube, {point, next, next + 4, point + 4}, 1);
    }
    double roundness = std::sqrt(0.5); // of a square: inner to outer radius
    for (int32_t level = 1; level <= 3; ++level) {
        tube.levels.assign(1, level); // one entry for all
        const Mesh result = subdivided(tube);
        EXPECT_EQ(result.polygonEnds.size(), tube.mesh.polygonEnds.size() << (2 * level));
        double nearest = 2, farthest = 0;
        for (const Vector3& position : result.positions) {
            if (std::fabs(position.z - 2) > 0.01) continue;
            nearest = std::min(nearest, std::hypot(position.x, position.y));
            farthest = std::max(farthest, std::hypot(position.x, position.y));
        }
        EXPECT_GT(nearest / farthest, roundness);
        roundness = nearest / farthest;
    }
}

TEST(Subdivide, ALoneQuadMovesItsCornersAlongItsBoundary)
{
    LeveledMesh quad;
    for (const Vector3& corner : {Vector3{0, 0, 0}, {8, 0, 0}, {8, 8, 0}, {0, 8, 0}}) quad.mesh.AddPoint(corner, {});
    addPolygon(quad, {0, 1, 2, 3}, 1);
    const Mesh result = subdivided(quad);
    EXPECT_EQ(result.polygonEnds.size(), 4u);
    EXPECT_EQ(result.positions[0], (Vector3{1, 1, 0})); // a corner: (1, 6, 1) / 8
    EXPECT_EQ(result.positions[1], (Vector3{4, 0, 0})); // an edge's middle
    EXPECT_EQ(result.positions[2], (Vector3{4, 4, 0})); // the quad's middle
    EXPECT_EQ(result.normals[0], (Vector3{0, 0, 0}));
}

TEST(Subdivide, SeamsAreClosedWhereLevelsDifferByOne)
{
    struct Row {
        std::vector<int32_t> levels;
        size_t triangles, quads;
    };
    const Row rows[] = {
        {{0, 0, 0, 0, 0, 0}, 0, 6},     // nothing to do: a copy
        {{1, 0, 0, 0, 0, 0}, 6, 4 + 3}, // two neighbours across an edge
        {{0, 1, 0, 0, 0, 0}, 9, 4 + 2},
        {{1, 0, 1, 0, 0, 0}, 6, 8 + 1},          // one between two refined ones is left out
        {{2, 1, 0, 0, 0, 0}, 6 + 3, 16 + 2 + 1}, // what touches the 2 leaves a crack
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.levels));
        const Mesh result = subdivided(sheet(3, row.levels));
        size_t triangles = 0;
        for (uint64_t polygon = 0; polygon < result.polygonEnds.size(); ++polygon)
            triangles += result.corners(polygon).size() == 3;
        EXPECT_EQ(triangles, row.triangles);
        EXPECT_EQ(result.polygonEnds.size() - triangles, row.quads);
    }
}

TEST(Subdivide, ACopyOfUnrefinedPolygonsDropsLargeOnes)
{
    LeveledMesh source;
    for (int point = 0; point < 7; ++point) source.mesh.AddPoint({1.0 * point, 1.0 * (point % 3), 0}, {0, 0, 1});
    for (uint64_t count = 3; count <= 6; ++count) {
        std::vector<uint64_t> vertices;
        for (uint64_t corner = 0; corner < count; ++corner) vertices.push_back(corner);
        addPolygon(source, vertices, 0);
    }
    source.levels.clear(); // none told: level 0
    const Mesh result = subdivided(source);
    EXPECT_THAT(result.polygonEnds, testing::ElementsAre(3, 7, 12));
    EXPECT_EQ(result.positions.size(), 6u); // those of the dropped polygon, but not the one on no polygon
}

TEST(Subdivide, RefusesWhatCannotBeNumbered)
{
    const LeveledMesh source = sheet(2, {1000000000, 1});
    Mesh output;
    RecordingMessages messages;
    Subdivide(source.mesh, output, messages, source.levels);
    EXPECT_EQ(messages.errors.size(), 1u);
    EXPECT_TRUE(output.positions.empty());
}

TEST(Subdivide, ThousandsOfPolygonsMayMeetInOnePoint)
{
    constexpr uint64_t kCount = 20000;
    for (const uint64_t hub : {uint64_t{0}, kCount}) { // the lowest and the highest number of all
        LeveledMesh fan;
        for (uint64_t point = 0; point <= kCount; ++point) {
            const double angle = 2 * kPi * static_cast<double>(point) / kCount;
            fan.mesh.AddPoint(point == hub ? Vector3{0, 0, 1} : Vector3{std::cos(angle), std::sin(angle), 0}, {});
        }
        const uint64_t rim = hub == 0 ? 1 : 0;
        for (uint64_t i = 0; i < kCount; ++i) addPolygon(fan, {hub, rim + i, rim + (i + 1) % kCount}, 1);
        const Mesh result = subdivided(fan);
        EXPECT_EQ(result.polygonEnds.size(), 3 * kCount);
        EXPECT_EQ(result.positions.size(), 1 + kCount + 2 * kCount + kCount);
        EXPECT_THAT(result.materials, Each(6));
    }
}

} // namespace
} // namespace vdt::test
