#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "support/literal_control_mesh.h"
#include "support/skeleton_builder.h"
#include "vdt/generate/control_mesh.h"

#include <limits>

namespace vdt::test {
namespace {

struct Tubes {
    Mesh mesh;
    std::vector<int32_t> levels;
    std::vector<uint64_t> sources;
    NullMessageHandler messages;

    explicit Tubes(const Skeleton& skeleton, int32_t level = 1)
    {
        GenerateControlMesh({skeleton, {}, mesh, level, levels, &sources, messages});
        CheckMesh(mesh);
        EXPECT_EQ(levels.size(), mesh.polygonEnds.size());
        EXPECT_EQ(sources.size(), mesh.positions.size());
    }
};

TEST(ControlMesh, IsThatOfGeneralMatricesOnAnyTree)
{
    for (uint32_t seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(seed);
        const Skeleton skeleton = RandomTree(seed, 1 + seed % 8);
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

TEST(ControlMesh, OddRadiiMakeNoSurfaceAndNoTrouble)
{
    for (const double radius : {0.0, -0.0, std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        SCOPED_TRACE(radius);
        const Tubes tubes(SkeletonBuilder().along({{{0, 0, 0}, {0, 0, 1}, {0, 1, 1}}}).radius(0, 2, radius).take());
        EXPECT_EQ(tubes.mesh.positions.size(), 4u * 4); // no cap
        EXPECT_EQ(tubes.mesh.positions[15], (Vector3{0, 1, 1}));
    }
}

TEST(ControlMesh, EndsOnSkeletonsThatAreNoTrees)
{
    EXPECT_TRUE(Tubes(Skeleton()).mesh.positions.empty());
    for (uint32_t seed = 0; seed < 300; ++seed) {
        const Tubes tubes(RandomTangle(seed, seed % 7), 2);
    }
}

} // namespace
} // namespace vdt::test
