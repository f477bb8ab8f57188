#include "c4d.h"
#include "core/geometry.h"
#include "core/hyper_stream.h"
#include "support/skeleton_builder.h"
#include "support/test_host.h"

#include <gmock/gmock.h>

#include <cmath>
#include <set>

namespace host::test {
namespace {

using testing::ElementsAreArray;
using vdt::test::Dice;

struct MeshObject : testing::Test {
    TestHost host;
    PolygonObject* object = PolygonObject::Alloc(4, 2);

    MeshObject()
    {
        const Vector points[] = {{0, 0, 0}, {2, 0, 0}, {2, 4, 0}, {0, 4, -6}};
        std::copy(std::begin(points), std::end(points), object->GetPointW());
        object->GetPolygonW()[0] = CPolygon(0, 1, 2);
        object->GetPolygonW()[1] = CPolygon(0, 1, 2, 3);
    }
    ~MeshObject() override { PolygonObject::Free(object); }
};

std::vector<uint8_t> bodyOf(BaseObject* object)
{
    HyperFilePtr file = HyperStream::Write(1);
    EXPECT_TRUE(CoreOf(object)->WriteBody(*file));
    return HyperStream::Of(*file).takeBytes();
}

bool readBody(BaseObject* object, const std::vector<uint8_t>& bytes)
{
    const HyperFilePtr file = HyperStream::Read(1, bytes);
    return file && CoreOf(object)->ReadBody(*file, NodeCore::kBodyLevel);
}

TEST_F(MeshObject, ResizingKeepsWhatIsThereAndBringsZeros)
{
    object->MakeVariableTag(Tuvw, 2);
    const UVWStruct mapped(Vector(0.5, 0.25, 0), Vector(), Vector(), Vector(1, 0, 0));
    auto* uvws = static_cast<UVWTag*>(object->GetTag(Tuvw));
    UVWTag::Set(uvws->GetDataAddressW(), 1, mapped);
    for (Int32 room = 4; room <= 4096; room *= 2) ASSERT_TRUE(object->ResizeObject(room, room));
    ASSERT_TRUE(object->ResizeObject(4096, 2));
    ASSERT_TRUE(object->ResizeObject(4096, 5));

    EXPECT_EQ(object->GetPointR()[3], Vector(0, 4, -6));
    EXPECT_EQ(object->GetPolygonR()[1], CPolygon(0, 1, 2, 3));
    for (Int32 i = 4; i < 4096; ++i) ASSERT_EQ(object->GetPointR()[i], Vector());
    for (Int32 i = 2; i < 5; ++i) ASSERT_EQ(object->GetPolygonR()[i], CPolygon());
    UVWStruct uvw;
    UVWTag::Get(uvws->GetDataAddressR(), 1, uvw);
    EXPECT_EQ(uvw.d, mapped.d);
    UVWTag::Get(uvws->GetDataAddressR(), 4, uvw);
    EXPECT_EQ(uvw.a, Vector());

    EXPECT_FALSE(object->ResizeObject(-1, 5));
    EXPECT_EQ(object->GetPointCount(), 4096);
    ASSERT_TRUE(object->ResizeObject(0, 0));
    EXPECT_EQ(object->GetPointR(), nullptr);
    EXPECT_EQ(uvws->GetDataAddressR(), nullptr);
    EXPECT_EQ(PolygonObject::Alloc(1, -1), nullptr);
}

TEST_F(MeshObject, ItsCopiesAndWhatIsReadAgainAreEqualAndApart)
{
    object->GetPolygonS()->Select(1);
    object->GetPointS()->SelectAll(1, 3);
    object->Message(MSG_UPDATE);
    const std::vector<uint8_t> body = bodyOf(object);
    auto* clone = static_cast<PolygonObject*>(object->GetClone(COPYFLAGS_0, nullptr));
    PolygonObject* read = PolygonObject::Alloc(1, 9);
    ASSERT_TRUE(readBody(read, body));

    const UInt32 selections = object->GetDirty(DIRTYFLAGS_SELECT);
    object->GetPolygonS()->DeselectAll();
    EXPECT_NE(object->GetDirty(DIRTYFLAGS_SELECT), selections);
    object->GetPointW()[0].x = 77;
    for (PolygonObject* copy : {clone, read}) {
        EXPECT_EQ(bodyOf(copy), body);
        EXPECT_EQ(copy->GetRad(), object->GetRad());
        PolygonObject::Free(copy);
    }
}

TEST_F(MeshObject, RefusesBodiesThatAreCutOrReferToWhatIsNotThere)
{
    PolygonObject* read = PolygonObject::Alloc(0, 0);
    const auto refused = [&] { return !readBody(read, bodyOf(object)); };
    object->GetPolygonW()[0].b = 4;
    EXPECT_TRUE(refused());
    object->GetPolygonW()[0].b = -1;
    EXPECT_TRUE(refused());
    object->GetPolygonW()[0].b = 0;
    EXPECT_FALSE(refused());
    object->GetPolygonS()->Select(2);
    EXPECT_TRUE(refused());
    object->GetPolygonS()->DeselectAll();
    object->GetPointS()->Select(4);
    EXPECT_TRUE(refused());
    object->GetPointS()->DeselectAll();

    const std::vector<uint8_t> body = bodyOf(object);
    for (size_t length = HyperStream::kHeaderSize; length < body.size(); ++length)
        EXPECT_FALSE(readBody(read, {body.begin(), body.begin() + static_cast<std::ptrdiff_t>(length)})) << length;
    PolygonObject::Free(read);
}

void expectNear(const Vector& found, const Vector& expected, Float tolerance)
{
    EXPECT_NEAR(found.x, expected.x, tolerance);
    EXPECT_NEAR(found.y, expected.y, tolerance);
    EXPECT_NEAR(found.z, expected.z, tolerance);
}

TEST(GeometryTags, KeepTextureCoordinatesAndNormalsOfEachCorner)
{
    const TestHost host;
    UVWTag* uvws = UVWTag::Alloc(3);
    NormalTag* normals = NormalTag::Alloc(3);
    const Vector a(0.25, -3, 0), b(1, 0.5, 7), c(0.1, 0.2, 0.3), d(1e6, 0, -1);
    UVWTag::Set(uvws->GetDataAddressW(), 1, UVWStruct(a, b, c, d));
    NormalStruct corners;
    corners.a = Vector(0.6, -0.8, 0);
    corners.b = Vector(1, -1, 1.0 / 3);
    corners.c = Vector(2, -1e300, std::nan(""));
    NormalTag::Set(normals->GetDataAddressW(), 1, corners);

    UVWStruct uvw;
    UVWTag::Get(uvws->GetDataAddressR(), 1, uvw);
    expectNear(uvw.a, a, 0);
    expectNear(uvw.b, b, 0);
    expectNear(uvw.c, c, 1e-7);
    expectNear(uvw.d, d, 0);
    NormalStruct normal;
    NormalTag::Get(normals->GetDataAddressR(), 1, normal);
    expectNear(normal.a, corners.a, 1.0 / 32000);
    expectNear(normal.b, corners.b, 1.0 / 32000);
    EXPECT_EQ(normal.c, Vector(1, -1, 0)); // clipped, and nothing for what is no number
    EXPECT_EQ(normal.d, Vector());
    UVWTag::Get(uvws->GetDataAddressR(), 2, uvw);
    EXPECT_EQ(uvw.d, Vector());
    UVWTag::Free(uvws);
    NormalTag::Free(normals);
}

TEST(GeometryTags, FollowTheNumberOfTheObjectsPolygons)
{
    const TestHost host;
    PolygonObject* object = PolygonObject::Alloc(4, 2);
    VariableTag* made = object->MakeVariableTag(Tuvw, 2);
    UVWTag* inserted = UVWTag::Alloc(9);
    object->InsertTag(inserted);
    EXPECT_EQ(inserted->GetDataCount(), 2);
    ASSERT_TRUE(object->ResizeObject(4, 5));
    EXPECT_EQ(made->GetDataCount(), 5);
    EXPECT_EQ(inserted->GetDataCount(), 5);

    const UInt32 before = object->GetDirty(DIRTYFLAGS_DATA);
    inserted->GetDataAddressW();
    EXPECT_NE(object->GetDirty(DIRTYFLAGS_DATA), before);
    PolygonObject::Free(object);
}

TEST(GeometryTags, ShowAMaterialOfTheirOwnDocument)
{
    const TestHost host;
    BaseDocument* document = BaseDocument::Alloc();
    BaseDocument* other = BaseDocument::Alloc();
    BaseObject* object = BaseObject::Alloc(Onull);
    TextureTag* tag = TextureTag::Alloc();
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    tag->SetMaterial(material);
    EXPECT_EQ(tag->GetMaterial(), nullptr); // in no document
    EXPECT_EQ(tag->GetMaterial(true), material);
    document->InsertMaterial(material);
    EXPECT_EQ(tag->GetMaterial(), material);

    object->InsertTag(tag);
    document->InsertObject(object, nullptr, nullptr);
    EXPECT_EQ(tag->GetMaterial(), material);
    material->Remove();
    other->InsertMaterial(material);
    EXPECT_EQ(tag->GetMaterial(), nullptr);
    material->Remove();
    BaseMaterial::Free(material);
    EXPECT_EQ(tag->GetMaterial(true), nullptr);
    BaseDocument::Free(document);
    BaseDocument::Free(other);
}

TEST(Neighbor, ListsThePolygonsOfEachPointInOrder)
{
    Dice dice(5);
    std::vector<CPolygon> polygons(200);
    for (CPolygon& polygon : polygons) {
        for (Int32 corner = 0; corner < 4; ++corner) polygon[corner] = static_cast<Int32>(dice.below(42)) - 1;
        if (dice.below(2)) polygon.d = polygon.c;
    }
    SelectionRecord some;
    for (Int32 i = 0; i < 200; i += 3) some.select.Select(i);

    Neighbor neighbor;
    for (BaseSelect* selection : {static_cast<BaseSelect*>(nullptr), &some.select}) {
        ASSERT_TRUE(neighbor.Init(40, polygons.data(), 200, selection));
        std::vector<std::vector<Int32>> expected(40);
        for (Int32 i = 0; i < 200; ++i) {
            const std::set<Int32> corners = {polygons[i].a, polygons[i].b, polygons[i].c, polygons[i].d};
            if (*corners.begin() < 0 || *corners.rbegin() > 39 || (selection && i % 3 != 0)) continue;
            for (const Int32 corner : corners) expected[static_cast<size_t>(corner)].push_back(i);
        }
        for (Int32 point = -1; point < 42; ++point) {
            Int32* found = nullptr;
            Int32 count = -1;
            neighbor.GetPointPolys(point, &found, &count);
            const bool exists = point >= 0 && point < 40;
            ASSERT_THAT(std::vector<Int32>(found, found + count),
                        ElementsAreArray(exists ? expected[static_cast<size_t>(point)] : std::vector<Int32>()));
        }
    }
    EXPECT_FALSE(neighbor.Init(-1, nullptr, 0, nullptr));
}

} // namespace
} // namespace host::test
