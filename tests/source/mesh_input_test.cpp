#include "core/object.h"
#include "geometry/c4d_mesh_input_accessor.h"
#include "geometry/c4d_mesh_output_accessor.h"
#include "geometry/selection_names.h"
#include "oxref.h"
#include "support/check_mesh.h"
#include "support/skeleton_builder.h"
#include "support/test_host.h"
#include "ttexture.h"
#include "vdt/mesh/mesh.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using vdt::test::Dice;

vdt::Mesh randomMesh(uint32_t seed)
{
    Dice dice(seed);
    vdt::Mesh mesh;
    const uint32_t pointCount = 4 + dice.below(200);
    for (uint32_t i = 0; i < pointCount; ++i)
        mesh.AddPoint(dice.position(100), dice.below(8) == 0 ? vdt::Vector3{} : dice.position(2));
    const uint32_t polygonCount = dice.below(300);
    for (uint32_t i = 0; i < polygonCount; ++i) {
        std::vector<uint64_t> points, coordinates;
        while (points.size() < 3 + i % 2) {
            const uint64_t point = dice.below(pointCount);
            if (std::find(points.begin(), points.end(), point) == points.end()) points.push_back(point);
        }
        for (size_t corner = 0; corner < points.size(); ++corner)
            coordinates.push_back(
                mesh.AddUV(static_cast<float>(dice.real(-2, 2)), static_cast<float>(dice.real(0, 1))));
        mesh.AddPolygon(points, coordinates, static_cast<int32_t>(dice.below(5)) * 7 - 7);
    }
    return mesh;
}

class MeshInput : public testing::Test {
public:
    MeshInput() : document(BaseDocument::Alloc()) {}
    ~MeshInput() override { BaseDocument::Free(document); }

    BaseMaterial* addMaterial()
    {
        BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
        document->InsertMaterial(material, materials.empty() ? nullptr : materials.back());
        materials.push_back(material);
        return material;
    }

    TextureTag* addTexture(BaseObject* object, BaseMaterial* material, const String& restriction)
    {
        TextureTag* tag = TextureTag::Alloc();
        tag->SetMaterial(material);
        tag->GetDataInstance()->SetString(TEXTURETAG_RESTRICTION, restriction);
        object->InsertTag(tag, object->GetLastTag());
        return tag;
    }

    // The mesh as an object of the document, with a material of the document on each of its selections.
    PolygonObject* place(const vdt::MeshInputAccessor& mesh, Float scale, Bool normals)
    {
        C4dMeshOutputAccessor output(normals, scale);
        mesh.WriteTo(output, vdt::Matrix::Identity());
        PolygonObject* object = output.TakeObject();
        document->InsertObject(object, nullptr, nullptr);
        std::vector<Int32> ids;
        for (BaseTag* tag = object->GetFirstTag(); tag; tag = tag->GetNext())
            if (tag->GetType() == Tpolygonselection) ids.push_back(MaterialIdOfName(tag->GetName()));
        for (const Int32 id : ids) {
            materialOfId[id] = static_cast<int32_t>(materials.size());
            TextureTag* tag = addTexture(object, addMaterial(), MaterialSelectionName(id));
            EXPECT_EQ(MaterialIdOfTag(object, tag), id);
        }
        return object;
    }

    // What was written and read is what the library has in memory, to the bit but for normals.
    void expectAgrees(const C4dMeshInputAccessor& read, const vdt::Mesh& mesh, double scale)
    {
        ASSERT_EQ(read.PointCount(), mesh.PointCount());
        ASSERT_EQ(read.PolygonCount(), mesh.PolygonCount());
        vdt::Vector3 position{};
        for (uint64_t point = 0; point < mesh.PointCount(); ++point)
            ASSERT_EQ(read.GetPoint(position, point), mesh.positions[point] * scale) << point;

        std::vector<uint64_t> firstCorner(mesh.PointCount(), vdt::kNone); // of the first polygon at each point
        std::vector<uint64_t> vertices;
        std::vector<vdt::Vector3> coordinates;
        int32_t material = 0;
        for (uint64_t polygon = 0; polygon < mesh.PolygonCount(); ++polygon) {
            ASSERT_TRUE(read.GetPolygon(polygon, vertices, coordinates, material));
            ASSERT_THAT(vertices, ElementsAreArray(mesh.corners(polygon)));
            ASSERT_EQ(material, materialOfId.at(mesh.materials[polygon]));
            for (size_t corner = 0; corner < vertices.size(); ++corner) {
                const vdt::Vector2f uv = mesh.coordinates[mesh.polygonCoordinates[mesh.polygonStart(polygon) + corner]];
                ASSERT_EQ(coordinates[corner], (vdt::Vector3{uv.u, 1 - double{uv.v}, 0}));
                if (firstCorner[vertices[corner]] == vdt::kNone) firstCorner[vertices[corner]] = vertices.back();
            }
        }
        for (uint64_t point = 0; point < mesh.PointCount(); ++point) {
            vdt::Vector3 normal{};
            const bool known = read.GetPointAttribute(vdt::kNormalAttribute, point, normal);
            ASSERT_EQ(known, firstCorner[point] != vdt::kNone);
            if (!known) continue;
            ASSERT_LT(Length(normal - vdt::Normalized(mesh.normals[firstCorner[point]])), 5e-5);
        }
    }

    host::test::TestHost host;
    BaseDocument* document;
    std::vector<BaseMaterial*> materials;
    std::map<Int32, int32_t> materialOfId; // its place in the document
};

TEST_F(MeshInput, ReadsWhatWasWritten)
{
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        const vdt::Mesh mesh = randomMesh(seed);
        const double scale = seed % 3 == 0 ? 0.37 : 1;
        const C4dMeshInputAccessor read({.root = place(mesh, scale, true)});
        expectAgrees(read, mesh, scale);
        EXPECT_EQ(read.HasAttribute(vdt::kNormalAttribute), mesh.PolygonCount() > 0);

        // The neighbours as the library finds them, but for their order.
        const auto clone = read.Clone();
        std::vector<uint64_t> found, expected;
        for (uint64_t point = 0; point < mesh.PointCount(); ++point) {
            mesh.PolygonsAtPoint(expected, point);
            clone->PolygonsAtPoint(found, point);
            ASSERT_EQ(found, expected);
            clone->PointsAroundPoint(found, point);
            expected.clear();
            for (uint64_t polygon = 0; polygon < mesh.PolygonCount(); ++polygon) {
                const auto corners = mesh.corners(polygon);
                const size_t count = corners.size();
                const size_t at = static_cast<size_t>(std::ranges::find(corners, point) - corners.begin());
                for (const size_t next : {at + 1, at + count - 1})
                    if (at < count) expected.push_back(corners[next % count]);
            }
            std::ranges::sort(expected);
            expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
            std::ranges::sort(found);
            ASSERT_EQ(found, expected);
        }
    }
}

// A triangle whose first point tells which one it is.
PolygonObject* triangleAt(Float x, const Char* name)
{
    PolygonObject* object = PolygonObject::Alloc(3, 1);
    object->GetPointW()[0] = Vector(x, 0, 0);
    object->GetPointW()[1] = Vector(x, 1, 0);
    object->GetPointW()[2] = Vector(x, 1, 1);
    object->GetPolygonW()[0] = CPolygon(0, 1, 2);
    object->SetName(name);
    return object;
}

std::vector<double> firstPoints(const C4dMeshInputAccessor& read)
{
    std::vector<double> places;
    vdt::Vector3 position{};
    for (uint64_t point = 0; point < read.PointCount(); point += 3) places.push_back(read.GetPoint(position, point).x);
    return places;
}

TEST_F(MeshInput, TakesWhatIsVisibleWithCachesInPlaceOfTheirMakers)
{
    BaseObject* root = BaseObject::Alloc(Onull);
    document->InsertObject(root, nullptr, nullptr);
    root->SetMl(MatrixMove(Vector(10, 0, 0)));
    PolygonObject* replaced = triangleAt(1, "replaced");
    PolygonObject* made = triangleAt(2, "made");
    PolygonObject* below = triangleAt(3, "below");
    PolygonObject* hidden = triangleAt(4, "hidden");
    PolygonObject* hiddenBelow = triangleAt(5, "hidden by its parent");
    PolygonObject* shownBelow = triangleAt(6, "shown again");
    PolygonObject* input = triangleAt(7, "somebody's input");
    for (BaseObject* child : std::initializer_list<BaseObject*>{replaced, hidden, input}) child->InsertUnderLast(root);
    below->InsertUnder(replaced);
    hiddenBelow->InsertUnderLast(hidden);
    shownBelow->InsertUnderLast(hidden);
    host::CoreOf(replaced)->SetCache(host::CoreOf(made));
    made->SetMl(MatrixMove(Vector(100, 0, 0)));
    replaced->SetMl(MatrixMove(Vector(1000, 0, 0)));
    hidden->SetEditorMode(MODE_OFF);
    shownBelow->SetEditorMode(MODE_ON);
    shownBelow->SetRenderMode(MODE_OFF);
    input->SetBit(BIT_CONTROLOBJECT);

    C4dMeshInputAccessor editor({.root = root, .matrix = root->GetMg()});
    EXPECT_THAT(firstPoints(editor), ElementsAre(1102, 1003, 6));
    C4dMeshInputAccessor renderer({.root = root, .matrix = Matrix(), .materials = {}, .rendering = true});
    EXPECT_THAT(firstPoints(renderer), ElementsAre(1112, 1013, 14, 15));

    // Numbers run on from object to object.
    vdt::MeshPolygon polygon;
    editor.GetPolygonRecord(polygon, 2);
    EXPECT_THAT(polygon.vertices, ElementsAre(8, 7, 6, 6));
    EXPECT_EQ(polygon.coordinates[1], (vdt::Vector3{0, 1, 0}));
    std::vector<uint64_t> found;
    editor.PointsAroundPoint(found, 4);
    EXPECT_THAT(found, ElementsAre(3, 5));
    vdt::Vector3 position{};
    EXPECT_EQ(editor.GetPoint(position, 9), (vdt::Vector3{}));
    std::vector<vdt::Vector3> coordinates;
    EXPECT_FALSE(editor.GetPolygon(3, found, coordinates, polygon.material));

    root->SetEditorMode(MODE_OFF);
    EXPECT_THAT(firstPoints(C4dMeshInputAccessor({.root = replaced, .matrix = Matrix()})), IsEmpty());
    const C4dMeshInputAccessor nothing({});
    EXPECT_TRUE(nothing.IsNull() && nothing.IsValid() == 0 && nothing.PointCount() == 0 && nothing.GetName().empty());
}

TEST_F(MeshInput, LooksForTexturesOnTheNearestObjectThatHasSome)
{
    BaseObject* root = BaseObject::Alloc(Onull);
    document->InsertObject(root, nullptr, nullptr);
    PolygonObject* object = PolygonObject::Alloc(4, 2);
    object->InsertUnder(root);
    object->GetPolygonW()[0] = object->GetPolygonW()[1] = CPolygon(0, 1, 2, 3);
    auto* uvws = static_cast<UVWTag*>(object->MakeVariableTag(Tuvw, 2));
    const UVWStruct uvw(Vector(0.5, 0.25, 0), Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 0));
    for (Int32 i = 0; i < 2; ++i) UVWTag::Set(uvws->GetDataAddressW(), i, uvw);
    auto* bark = static_cast<SelectionTag*>(object->MakeTag(Tpolygonselection));
    bark->SetName("bark");
    bark->GetBaseSelect()->Select(1);

    BaseMaterial* unused = addMaterial();
    BaseMaterial* brown = addMaterial();
    BaseMaterial* green = addMaterial();
    TextureTag* onBark = addTexture(root, brown, "bark");
    addTexture(root, unused, "no such selection");
    addTexture(root, green, "");
    onBark->GetDataInstance()->SetFloat(TEXTURETAG_OFFSETX, 0.25);
    onBark->GetDataInstance()->SetFloat(TEXTURETAG_LENGTHY, 0.5);

    const C4dMeshInputAccessor read({.root = object, .matrix = Matrix(), .materials = {brown, unused}});
    vdt::MeshPolygon polygon;
    read.GetPolygonRecord(polygon, 0);
    EXPECT_EQ(polygon.material, 2);
    EXPECT_EQ(polygon.coordinates[3], (vdt::Vector3{0.5, 0.75, 0}));
    EXPECT_FALSE(read.IsPolygonFlagged(0));
    read.GetPolygonRecord(polygon, 1);
    EXPECT_EQ(polygon.material, 1);
    EXPECT_EQ(polygon.coordinates[3], (vdt::Vector3{0.25, 0.5, 0}));
    EXPECT_TRUE(read.IsPolygonFlagged(1));
    EXPECT_FALSE(read.IsPolygonFlagged(2));

    TextureTag* own = addTexture(object, nullptr, "");
    const C4dMeshInputAccessor bare({.root = root, .matrix = Matrix(), .materials = {green}});
    bare.GetPolygonRecord(polygon, 0);
    EXPECT_EQ(polygon.material, -1); // its own tag has no material, and those above do not count then
    own->SetMaterial(unused);
    const C4dMeshInputAccessor owned({.root = root});
    owned.GetPolygonRecord(polygon, 0);
    EXPECT_EQ(polygon.material, 0);
}

TEST_F(MeshInput, NamesOfExternalReferencesStandBeforeThoseOfSelections)
{
    BaseObject* forest = BaseObject::Alloc(Oxref);
    BaseObject* oaks = BaseObject::Alloc(Oxref);
    BaseObject* plant = BaseObject::Alloc(Onull);
    BaseObject* made = BaseObject::Alloc(Onull);
    ASSERT_TRUE(forest && oaks);
    document->InsertObject(forest, nullptr, nullptr);
    oaks->InsertUnder(forest);
    plant->InsertUnder(oaks);
    host::CoreOf(plant)->SetCache(host::CoreOf(made));
    forest->SetParameter(DescID(DescLevel(ID_CA_XREF_NAMESPACE)), GeData("forest"), DESCFLAGS_SET_0);
    oaks->SetParameter(DescID(DescLevel(ID_CA_XREF_NAMESPACE)), GeData("oaks"), DESCFLAGS_SET_0);

    TextureTag* tag = addTexture(plant, nullptr, "forest::oaks::MAT3");
    EXPECT_EQ(SelectionPrefix(plant), String());
    EXPECT_EQ(MaterialIdOfTag(plant, tag), -1);
    plant->ChangeNBit(NBIT_REF, NBITCONTROL_SET);
    made->ChangeNBit(NBIT_REF, NBITCONTROL_SET);
    EXPECT_EQ(SelectionPrefix(plant), String("forest::oaks"));
    EXPECT_EQ(SelectionPrefix(made), String("forest::oaks"));
    EXPECT_EQ(MaterialIdOfTag(plant, tag), 3);
    EXPECT_EQ(MaterialIdOfTag(nullptr, tag), -1);
    EXPECT_EQ(MaterialIdOfTag(plant, nullptr), -1);
}

} // namespace
