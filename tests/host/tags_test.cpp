#include "c4d.h"
#include "core/geometry.h"
#include "core/hyper_stream.h"
#include "support/test_host.h"
#include "ttexture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace host::test {
namespace {

const Float kNone = std::numeric_limits<Float>::quiet_NaN();

void expectNear(const Vector& found, const Vector& expected, Float tolerance)
{
    EXPECT_NEAR(found.x, expected.x, tolerance);
    EXPECT_NEAR(found.y, expected.y, tolerance);
    EXPECT_NEAR(found.z, expected.z, tolerance);
}

struct GeometryTags : testing::Test {
    TestHost host;
};

TEST_F(GeometryTags, KeepTextureCoordinatesAndNormalsOfEachCorner)
{
    UVWTag* uvws = UVWTag::Alloc(3);
    NormalTag* normals = NormalTag::Alloc(3);
    const Vector a(0.25, -3, 0), b(1, 0.5, 7), c(0.1, 0.2, 0.3), d(1e6, 0, -1);
    UVWTag::Set(uvws->GetDataAddressW(), 1, UVWStruct(a, b, c, d));
    NormalStruct corners;
    corners.a = Vector(0.6, -0.8, 0);
    corners.b = Vector(1, -1, 1.0 / 3);
    corners.c = Vector(2, -1e300, kNone);
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

TEST_F(GeometryTags, AreMadeOfTheirKindAlone)
{
    EXPECT_EQ(VariableTag::Alloc(Tphong, 2), nullptr);
    EXPECT_EQ(VariableTag::Alloc(Tuvw, -1), nullptr);
    EXPECT_EQ(SelectionTag::Alloc(Ttexture), nullptr);
    VariableTag* tag = VariableTag::Alloc(Tnormal, 7);
    EXPECT_EQ(tag->GetDataCount(), 7);
    EXPECT_TRUE(tag->IsInstanceOf(Tvariable));
    VariableTag::Free(tag);
}

TEST_F(GeometryTags, FollowTheNumberOfTheObjectsPolygons)
{
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

TEST_F(GeometryTags, ShowAMaterialOfTheirOwnDocument)
{
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

TEST_F(GeometryTags, AreCopiedAndStoredWithTheirData)
{
    SelectionTag* selection = SelectionTag::Alloc(Tpolygonselection);
    selection->GetBaseSelect()->SelectAll(3, 8);
    NormalTag* normals = NormalTag::Alloc(2);
    NormalStruct corners;
    corners.d = Vector(0, 0, -1);
    NormalTag::Set(normals->GetDataAddressW(), 1, corners);

    for (BaseTag* tag : std::initializer_list<BaseTag*>{selection, normals}) {
        HyperFilePtr file = HyperStream::Write(1);
        ASSERT_TRUE(CoreOf(tag)->WriteBody(*file));
        const std::vector<uint8_t> bytes = HyperStream::Of(*file).takeBytes();
        BaseTag* read = BaseTag::Alloc(tag->GetType());
        ASSERT_TRUE(CoreOf(read)->ReadBody(*HyperStream::Read(1, bytes), NodeCore::kBodyLevel));
        BaseTag* clone = static_cast<BaseTag*>(tag->GetClone(COPYFLAGS_0, nullptr));
        for (BaseTag* copy : {read, clone}) {
            file = HyperStream::Write(1);
            ASSERT_TRUE(CoreOf(copy)->WriteBody(*file));
            EXPECT_EQ(HyperStream::Of(*file).takeBytes(), bytes);
            BaseTag::Free(copy);
        }
        BaseTag::Free(tag);
    }
}

} // namespace
} // namespace host::test
