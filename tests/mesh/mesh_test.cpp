#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "vdt/mesh/mesh.h"

namespace vdt::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Matrix kMoveAndStretch = {{{2, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {10, 20, 30, 1}}};
constexpr Matrix kFlat = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 0}, {0, 0, 5, 1}}}; // determinant 0

// A pyramid's foot as a quad, one side as a triangle, a pentagon, a hexagon and a line.
template <class Target> Target polygonsOfAllSizes()
{
    Target target;
    for (int i = 0; i < 6; ++i) target.AddPoint({1.0 * i, 1.0 * (i % 3), 1.0 * (i % 2)}, {0.6 * (i % 2), 0.8, 0.1 * i});
    const std::vector<std::vector<uint64_t>> polygons = {
        {0, 1, 2, 3}, {0, 1, 4}, {1, 2, 3, 4, 5}, {0, 1, 2, 3, 4, 5}, {2, 5}};
    for (const std::vector<uint64_t>& polygon : polygons) {
        std::vector<uint64_t> coordinates;
        for (const uint64_t vertex : polygon)
            coordinates.push_back(target.AddUV(static_cast<float>(vertex), static_cast<float>(polygon.size())));
        target.AddPolygon(polygon, coordinates, static_cast<int32_t>(polygon.size()));
    }
    return target;
}

std::vector<uint64_t> sizes(const Mesh& mesh)
{
    std::vector<uint64_t> result;
    for (uint64_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon)
        result.push_back(mesh.corners(polygon).size());
    return result;
}

TEST(Mesh, AppendsOwnAndForeignMeshesAlike)
{
    const auto own = polygonsOfAllSizes<Mesh>();
    auto foreign = polygonsOfAllSizes<ForeignMesh>();
    for (const Matrix& matrix : {kMoveAndStretch, kFlat, Matrix::Identity()}) {
        Mesh fromOwn, fromForeign;
        for (int copy = 0; copy < 2; ++copy) {
            fromOwn.AppendMesh(own, matrix);
            fromForeign.AppendMesh(foreign, matrix);
        }
        ExpectSameMesh(fromOwn, fromForeign);
        // Cut to triangles and quads, and the line is gone.
        EXPECT_THAT(sizes(fromOwn), ElementsAre(4, 3, 4, 4, 4, 3, 4, 4));
        EXPECT_EQ(fromForeign.name, "foreign");
    }

    Mesh target;
    target.AppendMesh(own, kMoveAndStretch);
    EXPECT_EQ(target.positions[1], (Vector3{12, 21, 31}));
    EXPECT_EQ(target.normals[1], (Vector3{0.3, 0.8, 0.1})); // by the inverse transpose, not normalised
    foreign.hasNormals = false;
    Mesh bare;
    bare.AppendMesh(foreign, kMoveAndStretch);
    EXPECT_EQ(bare.normals[1], (Vector3{0, 0, 0}));
}

TEST(Mesh, AppendsItself)
{
    auto mesh = polygonsOfAllSizes<Mesh>();
    Mesh expected = mesh;
    expected.AppendMesh(Mesh(mesh), kMoveAndStretch);
    mesh.AppendMesh(mesh, kMoveAndStretch);
    ExpectSameMesh(mesh, expected);
}

TEST(Mesh, AppendedTriangleIsToldByItsRepeatedCornerAlone)
{
    Mesh source, target;
    for (int i = 0; i < 3; ++i) source.AddPoint({1.0 * i, 0, 0}, {0, 0, 1});
    AddQuad(source, {0, 1, 2, 2}, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 7);
    AddTriangle(source, {2, 1, 0}, {{0, 0}, {1, 0}, {1, 1}}, 8);
    target.AppendMesh(source, Matrix::Identity());
    EXPECT_THAT(sizes(target), ElementsAre(3, 3));
    EXPECT_THAT(target.materials, ElementsAre(7, 8));
    CheckMesh(target);
}

TEST(Accessors, AppendThroughTheInterfaceKeepsAllSizesAndTheOrderOfCalls)
{
    const auto source = polygonsOfAllSizes<Mesh>();
    ForeignMesh target;
    target.AddPoint({0, 0, 0}, {0, 0, 1});
    target.AppendMesh(source, kMoveAndStretch);
    EXPECT_EQ(target.calls, "pppppppuuuu4uuu3uuuuu5uuuuuu6uu2");
    EXPECT_THAT(target.polygons[1].vertices, ElementsAre(1, 2, 5));
    EXPECT_EQ(target.points[2], (Vector3{12, 21, 31}));
    EXPECT_EQ(target.normals[2], (Vector3{0.3, 0.8, 0.1}));

    ForeignMesh flattened;
    flattened.AppendMesh(source, kFlat); // normals stay as they are where the inverse does not exist
    EXPECT_EQ(flattened.normals[1], source.normals[1]);

    auto partly = polygonsOfAllSizes<ForeignMesh>();
    partly.hidden = 1;
    partly.polygons[0].uvs.pop_back();
    ForeignMesh rest;
    rest.AppendMesh(partly, Matrix::Identity());
    EXPECT_EQ(rest.calls, "ppppppuuuuu5uuuuuu6uu2");

    // Nothing comes of a source without points, nor of one that promises normals and has none.
    ForeignMesh empty, nothing;
    nothing.AppendMesh(empty, Matrix::Identity());
    partly.readableNormals = 0;
    nothing.AppendMesh(partly, Matrix::Identity());
    EXPECT_EQ(nothing.calls, "");
}

TEST(Accessors, WriteToKeepsThreeToFiveCornersAndDropsTheRest)
{
    auto source = polygonsOfAllSizes<Mesh>();
    ForeignMesh target, appended, nothing;
    for (ForeignMesh* mesh : {&target, &appended}) mesh->AddPoint({0, 0, 0}, {0, 0, 1});
    source.WriteTo(target, kMoveAndStretch);
    appended.AppendMesh(source, kMoveAndStretch);
    EXPECT_EQ(target.calls, "pppppppuuuu4uuu3uuuuu5");
    for (size_t i = 0; i < target.polygons.size(); ++i) {
        EXPECT_EQ(target.polygons[i].vertices, appended.polygons[i].vertices);
        EXPECT_EQ(target.polygons[i].uvs, appended.polygons[i].uvs);
    }
    EXPECT_EQ(target.points, appended.points);

    source.normals.pop_back();
    source.WriteTo(nothing, Matrix::Identity());
    EXPECT_EQ(nothing.normals[3], (Vector3{0, 0, 0}));
    nothing = {};
    Mesh().WriteTo(nothing, Matrix::Identity());
    EXPECT_EQ(nothing.calls, "");
}

TEST(Accessors, ListsMustHaveTwoNumbersACorner)
{
    struct Row {
        size_t vertices, coordinates;
        bool written;
    };
    const Row rows[] = {{2, 4, false},  {3, 6, true},  {4, 8, true}, {5, 10, true},
                        {6, 12, false}, {4, 6, false}, {0, 0, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.vertices);
        ForeignMesh target;
        const std::vector<uint32_t> vertices(row.vertices, 3);
        const std::vector<float> coordinates(row.coordinates, 0.5F);
        EXPECT_EQ(target.AddPolygonFromLists(vertices, coordinates, 9), row.written);
        EXPECT_EQ(target.calls, row.written ? std::string(row.vertices, 'u') + std::to_string(row.vertices) : "");
    }
}

TEST(Accessors, NeighbourhoodsAreTheSameOfOwnAndForeignMeshes)
{
    const auto own = polygonsOfAllSizes<Mesh>();
    const auto foreign = polygonsOfAllSizes<ForeignMesh>();
    for (const MeshInputAccessor* mesh :
         {static_cast<const MeshInputAccessor*>(&own), static_cast<const MeshInputAccessor*>(&foreign)}) {
        std::vector<uint64_t> result = {99};
        mesh->PolygonsAtPoint(result, 4);
        EXPECT_THAT(result, ElementsAre(1, 2, 3));
        mesh->PointsAroundPoint(result, 0);
        EXPECT_THAT(result, ElementsAre(1, 2, 3, 4, 5)); // all that share a polygon, not only along edges
        mesh->PolygonsAtPoint(result, 6);
        EXPECT_THAT(result, IsEmpty());
        Box box;
        mesh->GetBounds(box);
        EXPECT_EQ(box, (Box{{0, 0, 0}, {5, 2, 1}}));
        EXPECT_EQ(mesh->Clone()->PolygonCount(), 5u);
    }
}

TEST(Accessors, RecordsRepeatTheLastCornerOfATriangle)
{
    const auto mesh = polygonsOfAllSizes<Mesh>();
    MeshPolygon record;
    mesh.GetPolygonRecord(record, 1);
    EXPECT_THAT(record.vertices, ElementsAre(0, 1, 4, 4));
    EXPECT_EQ(record.coordinates[3], (Vector3{4, 3, 0}));
    EXPECT_TRUE(record.isTriangle());
    mesh.GetPolygonRecord(record, 3);
    EXPECT_THAT(record.vertices, ElementsAre(0, 1, 2, 3));
    MeshPolygon line;
    mesh.GetPolygonRecord(line, 4);
    EXPECT_EQ(line.coordinates[1], (Vector3{0, 0, 0}));

    std::vector<uint64_t> vertices;
    std::vector<Vector3> coordinates;
    int32_t material = 0;
    EXPECT_FALSE(mesh.GetPolygon(5, vertices, coordinates, material));
}

TEST(ComputeNormals, AreUnweightedMeansOfThePolygonsAroundAPoint)
{
    Mesh mesh;
    const Vector3 corners[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {1, 0, 9}, {1, 1, 9}, {5, 5, 5}};
    for (const Vector3& corner : corners) mesh.AddPoint(corner, {0, 0, 0});
    AddQuad(mesh, {0, 1, 2, 3}, {}, 0);
    AddQuad(mesh, {1, 4, 5, 2}, {}, 0); // nine times as large, and counts the same
    mesh.AddPolygon({}, {}, 0);
    ASSERT_TRUE(mesh.ComputeNormals());
    EXPECT_EQ(mesh.normals[0], (Vector3{0, 0, 1}));
    EXPECT_NEAR(Length(mesh.normals[1] - Vector3{-std::sqrt(0.5), 0, std::sqrt(0.5)}), 0, 1e-15);
    EXPECT_EQ(mesh.normals[6], (Vector3{1, 0, 0})); // on no polygon

    Mesh line;
    for (int i = 0; i < 3; ++i) line.AddPoint({1.0 * i, 0, 0}, {0, 0, 0});
    AddTriangle(line, {0, 1, 2}, {}, 0);
    ASSERT_TRUE(line.ComputeNormals());
    EXPECT_EQ(line.normals[2], (Vector3{1, 0, 0}));
    line.normals.pop_back();
    EXPECT_FALSE(line.ComputeNormals());
}

} // namespace
} // namespace vdt::test
