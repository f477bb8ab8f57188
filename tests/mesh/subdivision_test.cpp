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

TEST(Subdivide, OneLevelGoesForAllAndNoneIsLevelZero)
{
    LeveledMesh source = rubble(3);
    ASSERT_GT(source.levels.size(), 1u);
    for (const std::vector<int32_t>& told : {std::vector<int32_t>{}, {1}, {3}}) {
        SCOPED_TRACE(testing::PrintToString(told));
        source.levels.assign(source.mesh.polygonEnds.size(), told.empty() ? 0 : told[0]);
        const Mesh expected = subdivided(source);
        source.levels = told;
        ExpectSameMesh(subdivided(source), expected);
    }
}

TEST(Subdivide, RefusesWhatCannotBeNumbered)
{
    LeveledMesh source = rubble(3);
    source.levels[0] = 1000000000;
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
