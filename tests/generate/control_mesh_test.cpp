#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "support/literal_control_mesh.h"
#include "support/random_tree.h"
#include "support/recording_messages.h"
#include "vdt/generate/control_mesh.h"

#include <limits>

namespace vdt::test {
namespace {

using testing::Each;
using testing::ElementsAre;

struct Tubes {
    Mesh mesh;
    std::vector<int32_t> levels;
    std::vector<uint64_t> sources;
    RecordingMessages messages;

    explicit Tubes(const Skeleton& skeleton, int32_t level = 1) { generate(skeleton, level, mesh); }

    void generate(const Skeleton& skeleton, int32_t level, MeshOutputAccessor& output)
    {
        GenerateControlMesh({.skeleton = skeleton,
                             .foliage = {},
                             .output = output,
                             .subdivisionLevel = level,
                             .polygonLevels = levels,
                             .pointSources = &sources,
                             .messages = messages});
    }
};

TEST(ControlMesh, IsThatOfGeneralMatricesOnAnyTree)
{
    for (uint32_t seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(seed);
        const Skeleton skeleton = RandomTree(seed);
        const int32_t level = static_cast<int32_t>(seed % 4);
        Tubes tubes(skeleton, level);
        Mesh expected;
        std::vector<int32_t> levels;
        std::vector<uint64_t> sources;
        NullMessageHandler messages;
        const auto request = [&](MeshOutputAccessor& output) {
            return ControlMeshRequest{skeleton, {}, output, level, levels, &sources, messages};
        };
        LiteralControlMesh(request(expected));
        ExpectSameMesh(tubes.mesh, expected, 1e-11);
        EXPECT_EQ(tubes.levels, levels);
        EXPECT_EQ(tubes.sources, sources);
        EXPECT_EQ(tubes.levels.size(), tubes.mesh.polygonEnds.size());
        EXPECT_EQ(tubes.sources.size(), tubes.mesh.positions.size());

        // Any other accessor sees the same calls in the same order, and a mesh that holds something keeps it.
        ForeignMesh foreign, expectedForeign;
        LiteralControlMesh(request(expectedForeign));
        GenerateControlMesh(request(foreign));
        EXPECT_EQ(foreign.calls, expectedForeign.calls);
        Mesh twice = tubes.mesh;
        GenerateControlMesh(request(twice));
        expected.AppendMesh(expected, Matrix::Identity());
        ExpectSameMesh(twice, expected, 1e-11);
        if (HasFailure()) return;
    }
}

TEST(ControlMesh, OfASingleSegmentIsABoxWithBothEndsClosed)
{
    Skeleton skeleton;
    AddBranchThrough(skeleton, {{{0, 0, 0}, {0, 0, 3}}}, 2, 7);
    const Tubes tubes(skeleton, 1);
    EXPECT_EQ(tubes.mesh.positions.size(), 16u);
    EXPECT_THAT(tubes.mesh.polygonEnds, ElementsAre(4, 8, 12, 16, 20, 24));
    EXPECT_THAT(tubes.mesh.materials, Each(7));
    EXPECT_EQ(tubes.mesh.positions[1], (Vector3{2, -2, 0}));
    EXPECT_EQ(tubes.mesh.normals[4], (Vector3{0, 0, -1}));  // the foot
    EXPECT_EQ(tubes.mesh.normals[12], (Vector3{0, 0, 1}));  // the tip
    EXPECT_EQ(tubes.mesh.coordinates[4], (Vector2f{1, 0})); // of the last segment: runs backwards
    EXPECT_EQ(tubes.mesh.coordinates[6], (Vector2f{0.75F, 1}));
    ASSERT_EQ(tubes.messages.debugs.size(), 1u);
    EXPECT_TRUE(tubes.messages.debugs[0].starts_with("Time to create control mesh: "));
    EXPECT_TRUE(tubes.messages.debugs[0].ends_with("ms"));

    // Without subdivision the square has the circle's area.
    EXPECT_NEAR(Tubes(skeleton, 0).mesh.positions[0].x, std::sqrt(kPi), 1e-15);
}

TEST(ControlMesh, LevelsFallWithEachBranchingAndTubesGoOnWithoutSeam)
{
    Skeleton skeleton;
    AddBranchThrough(skeleton, {{{0, 0, 0}, {0, 0, 1}, {0, 0, 2}}});
    uint64_t from = 1;
    for (int depth = 1; depth < 4; ++depth) {
        const uint64_t points[] = {from, skeleton.AddPoint(Vector3{1.0 * depth, 0, 1})};
        from = points[1];
        const VertexAttributes attributes[] = {Attributes(1), Attributes(1)};
        skeleton.AddBranch(depth, points, attributes);
    }
    // Each side branch after the first goes on from the tip before it: it has no ring of its own, the tip no cap.
    const Tubes tubes(skeleton, 2);
    EXPECT_EQ(tubes.mesh.positions.size(), 4u * (2 + 1 + 4 + 2) + 4u);
    std::vector<size_t> count(3, 0);
    for (const int32_t level : tubes.levels) ++count[static_cast<size_t>(level)];
    EXPECT_THAT(count, ElementsAre(9, 4, 10)); // with the caps of the last twig and of the trunk
    CheckMesh(tubes.mesh);
}

TEST(ControlMesh, BendsAreMitred)
{
    struct Row {
        Vector3 end;
        double width;
    };
    const double c = std::cos(kPi / 8);
    const Row rows[] = {{{0, 0, 2}, 2},                  // straight on
                        {{1, 0, 1}, 2 * std::sqrt(2.0)}, // a right angle
                        {{std::sqrt(0.5), 0, 1 + std::sqrt(0.5)}, 2 / c},
                        {{0, 0, 0}, 2},              // back the same way: nothing would help
                        {{0.1, 0, 0.0001}, 2 * 20}}; // nearly back: limited
    for (const Row& row : rows) {
        SCOPED_TRACE(row.width);
        Skeleton skeleton;
        AddBranchThrough(skeleton, {{{0, 0, 0}, {0, 0, 1}, row.end}});
        // The frame at the bend, across the mean direction.
        Vector3 along = Normalized(Normalized(row.end - Vector3{0, 0, 1}) + Vector3{0, 0, 1});
        if (row.end == Vector3{0, 0, 0}) along = {0, 0, 1};
        Matrix frame = Matrix::Identity();
        frame.setRow(0, Cross({0, 1, 0}, along));
        frame.setRow(2, along);
        skeleton.branches[0].firstVertex->next->attributes.orient = ToQuaternion(frame);
        const Mesh mesh = Tubes(skeleton).mesh;
        EXPECT_NEAR(Length(mesh.positions[8] - mesh.positions[11]), row.width, 1e-5); // in the plane of the bend
        EXPECT_NEAR(Length(mesh.positions[8] - mesh.positions[9]), 2, 1e-5);          // across it
    }
}

TEST(ControlMesh, OddRadiiMakeNoSurfaceAndNoTrouble)
{
    for (const double radius : {0.0, -0.0, std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        SCOPED_TRACE(radius);
        Skeleton skeleton;
        AddBranchThrough(skeleton, {{{0, 0, 0}, {0, 0, 1}, {0, 1, 1}}});
        skeleton.branches[0].lastVertex->attributes.radius = radius;
        const Tubes tubes(skeleton);
        CheckMesh(tubes.mesh);
        EXPECT_EQ(tubes.mesh.positions.size(), 4u * 4); // no cap
        EXPECT_EQ(tubes.mesh.positions[15], (Vector3{0, 1, 1}));
    }
}

TEST(ControlMesh, EndsOnSkeletonsThatAreNoTrees)
{
    EXPECT_TRUE(Tubes(Skeleton()).mesh.positions.empty());
    for (uint32_t seed = 0; seed < 300; ++seed) {
        std::mt19937 random(seed);
        Skeleton skeleton;
        for (int point = 0; point < 6; ++point) skeleton.AddPoint(Vector3{1.0 * point, 0.1 * point * point, 0});
        for (uint32_t branch = random() % 7; branch > 0; --branch) {
            std::vector<uint64_t> points(2 + random() % 3);
            for (uint64_t& point : points) point = random() % 6;
            skeleton.AddBranch(0, points, std::vector<VertexAttributes>(points.size(), Attributes(random() % 3)));
        }
        const Tubes tubes(skeleton, 2);
        CheckMesh(tubes.mesh);
        EXPECT_EQ(tubes.levels.size(), tubes.mesh.polygonEnds.size());
        EXPECT_EQ(tubes.sources.size(), tubes.mesh.positions.size());
    }
}

} // namespace
} // namespace vdt::test
