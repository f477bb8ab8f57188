#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "support/skeleton_builder.h"
#include "vdt/generate/control_mesh.h"
#include "vdt/generate/foliage.h"
#include "vdt/generate/plant_mesh.h"
#include "vdt/mesh/subdivision.h"

namespace vdt::test {
namespace {

std::unique_ptr<Mesh> leaf(int32_t material)
{
    auto mesh = std::make_unique<Mesh>();
    mesh->SetName("leaf " + std::to_string(material));
    for (const Vector3& corner : {Vector3{0, 0, 0}, {1, 0, 0}, {1, 2, 0}}) mesh->AddPoint(corner, {0, 0, 1});
    AddTriangle(*mesh, {0, 1, 2}, {{0, 0}, {1, 0}, {1, 1}}, material);
    return mesh;
}

ModelVariant plant(uint32_t seed)
{
    ModelVariant variant;
    variant.skeleton = RandomTree(seed, 1 + seed % 8);
    for (uint64_t point = 0; point < variant.skeleton.points.size(); ++point) {
        ConnectorAttributes attributes;
        attributes.group = static_cast<int32_t>(point % 3);
        attributes.scale = 1 + static_cast<double>(point);
        attributes.orient = {0.5F, 0.5F, 0.5F, static_cast<float>(point % 2)};
        variant.skeleton.AddConnector(attributes, point);
    }
    variant.meshes.emplace_back(0, "summer", leaf(10));
    variant.meshes.emplace_back(1, "", leaf(11));
    variant.meshes.emplace_back(1, "winter", leaf(12));
    variant.meshes.emplace_back(2, "", nullptr);
    return variant;
}

TEST(ConnectorFrame, ScalesThenTurnsThenMoves)
{
    struct Row {
        Quaternion orient;
        double scale;
        Vector3 expected;
    }; // of (1, 0, 0)
    const Row rows[] = {{{0, 0, 0, 1}, 2, {12, 20, 30}},
                        {{0, 0, 0, 9}, 2, {12, 20, 30}},
                        {{0, 0, 0, 0}, 3, {13, 20, 30}}, // no turn
                        {{0, 0, 1, 0}, 3, {7, 20, 30}},  // half a turn
                        {{0.5F, 0.5F, 0.5F, 0.5F}, 2, {10, 20, 32}}};
    for (const Row& row : rows) {
        Skeleton skeleton;
        ConnectorAttributes attributes;
        attributes.orient = row.orient;
        attributes.scale = row.scale;
        skeleton.AddConnector(attributes, skeleton.AddPoint(Vector3{10, 20, 30}));
        const Matrix frame = ConnectorFrame(skeleton, skeleton.connectors[0]);
        EXPECT_EQ(TransformPoint({1, 0, 0}, frame), row.expected) << row.scale;
        EXPECT_EQ(TransformPoint({0, 0, 0}, frame), (Vector3{10, 20, 30}));
    }
}

TEST(PlaceFoliage, GoesRecordByRecordInSeason)
{
    ModelVariant variant = plant(3);
    ASSERT_GE(variant.skeleton.points.size(), 6u);
    variant.skeleton.ResizeConnectors(variant.skeleton.connectors.size() + 1); // stands on no point
    for (const char* season : {"summer", "winter", ""}) {
        SCOPED_TRACE(season);
        Mesh own, expected;
        std::vector<int32_t> materials;
        for (const VariantMesh& record : variant.meshes) {
            if (!record.mesh || !record.appliesTo(season)) continue;
            for (const SkeletonConnector& connector : variant.skeleton.connectors) {
                if (connector.attributes.group != record.group || connector.point == kNone) continue;
                expected.AppendMesh(*record.mesh, ConnectorFrame(variant.skeleton, connector));
            }
        }
        PlaceFoliage(variant.skeleton, variant.meshes, season, own);
        ExpectSameMesh(own, expected);
        EXPECT_EQ(std::ranges::count(own.materials, 10) > 0, season == std::string_view("summer"));
        EXPECT_EQ(std::ranges::count(own.materials, 12) > 0, season == std::string_view("winter"));
        EXPECT_GT(std::ranges::count(own.materials, 11), 0);

        ForeignMesh foreign;
        PlaceFoliage(variant.skeleton, variant.meshes, season, foreign);
        EXPECT_EQ(foreign.points, std::vector<Vector3>(own.positions.begin(), own.positions.end()));
    }
}

// Step by step, with a skeleton and a mesh of its own for each.
void buildInSteps(const ModelVariant& variant, const PlantMeshOptions& options, MeshOutputAccessor& output)
{
    NullMessageHandler messages;
    Skeleton skeleton;
    variant.skeleton.Reduce(variant.meshes, options.season, skeleton, options.reduction);
    Mesh control, rounded;
    std::vector<int32_t> levels;
    const int32_t level = std::max(0, options.subdivisionLevel);
    MeshOutputAccessor& target = level > 0 ? control : output;
    GenerateControlMesh({skeleton, variant.meshes, target, level, levels, nullptr, messages});
    if (options.uniform) levels.assign(levels.size(), level);
    if (level > 0) {
        Subdivide(control, rounded, messages, levels);
        rounded.ComputeNormals();
        output.AppendMesh(rounded, Matrix::Identity());
    }
    PlaceFoliage(skeleton, variant.meshes, options.season, output);
}

TEST(PlantMesh, IsBranchesThenFoliageForAllOptionsAndTargets)
{
    for (uint32_t seed = 0; seed < 160; ++seed) {
        SCOPED_TRACE(seed);
        const ModelVariant variant = plant(seed);
        PlantMeshOptions options;
        options.season = seed % 3 ? "summer" : "";
        options.subdivisionLevel = static_cast<int32_t>(seed % 5) - 1;
        options.uniform = seed % 2;
        if (seed % 7 == 0) options.reduction.maxLevel = 2;
        if (seed % 8 == 0) options.reduction.foliageAmount = 0.5F;
        NullMessageHandler messages;

        Mesh direct, expected;
        BuildPlantMesh(variant, options, direct, messages);
        buildInSteps(variant, options, expected);
        ExpectSameMesh(direct, expected);
        EXPECT_EQ(direct.name, expected.name);

        BuildPlantMesh(variant, options, direct, messages); // behind what is there
        buildInSteps(variant, options, expected);
        ExpectSameMesh(direct, expected);

        ForeignMesh foreign, expectedForeign;
        BuildPlantMesh(variant, options, foreign, messages);
        buildInSteps(variant, options, expectedForeign);
        EXPECT_EQ(foreign.calls, expectedForeign.calls);
        EXPECT_EQ(foreign.points, expectedForeign.points);
    }
}

} // namespace
} // namespace vdt::test
