#include "geometry/c4d_mesh_output_accessor.h"
#include "geometry/phong_tag.h"
#include "geometry/selection_names.h"
#include "support/test_host.h"
#include "tphong.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vdt::kNone;

std::vector<std::string> selectionNames(BaseObject* object)
{
    std::vector<std::string> names;
    for (BaseTag* tag = object->GetFirstTag(); tag; tag = tag->GetNext()) {
        Char name[64] = {};
        tag->GetName().GetCString(name, sizeof name);
        if (tag->GetType() == Tpolygonselection) names.emplace_back(name);
    }
    return names;
}

std::vector<Int32> corners(const CPolygon& polygon)
{
    return {polygon.a, polygon.b, polygon.c, polygon.d};
}

// Of the corners' coordinates, u alone.
std::vector<Float> usOf(PolygonObject* object, Int32 polygon)
{
    UVWStruct uvw;
    UVWTag::Get(static_cast<UVWTag*>(object->GetTag(Tuvw))->GetDataAddressR(), polygon, uvw);
    return {uvw.a.x, uvw.b.x, uvw.c.x, uvw.d.x};
}

struct MeshOutput : testing::Test {
    host::test::TestHost host;
    C4dMeshOutputAccessor output{true, 2};
    PolygonObject* taken = nullptr;

    ~MeshOutput() override { PolygonObject::Free(taken); }

    // A pentagon whose cut is known, and then the same points once more, lifted.
    void addPoints()
    {
        for (const double z : {0.0, 7.0}) {
            const vdt::Vector3 outline[] = {{0, 0, z}, {4, 0, z}, {5.5, 3, z}, {1, 5, z}, {-1, 2, z}};
            for (const vdt::Vector3& position : outline) output.AddPoint(position, {0, 0, 0.5 + position.y});
        }
        for (int i = 0; i < 10; ++i) output.AddUV(static_cast<float>(i), 0.25F);
    }
    bool add(std::vector<uint64_t> vertices, std::vector<uint64_t> coordinates, int32_t material = 0)
    {
        return output.AddPolygon(vertices, coordinates, material);
    }
};

TEST_F(MeshOutput, CrossesIntoTheHostsWorld)
{
    EXPECT_EQ(output.AddPoint({1, 2, 3}, {0, 0, 4}), 0u);
    EXPECT_EQ(output.AddPoint({4, 5, 6}, {3, 0, 4}), 1u);
    EXPECT_EQ(output.AddPoint({7, 8, 9}, {0, 0, 0}), 2u);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(output.AddUV(static_cast<float>(i + 1), 0.5F), static_cast<uint64_t>(i));
    EXPECT_TRUE(add({0, 1, 2}, {0, 1, 2}));
    EXPECT_TRUE(output.SetName("Eiche \xC3\xA4"));
    taken = output.TakeObject();

    ASSERT_EQ(taken->GetPointCount(), 3);
    ASSERT_EQ(taken->GetPolygonCount(), 1);
    EXPECT_EQ(taken->GetPointR()[2], Vector(14, 16, -18));
    EXPECT_THAT(corners(taken->GetPolygonR()[0]), ElementsAre(2, 1, 0, 0));
    EXPECT_THAT(usOf(taken, 0), ElementsAre(3, 2, 1, 0));
    EXPECT_EQ(taken->GetRad(), Vector(6, 6, 6));
    EXPECT_EQ(taken->GetName(), String("Eiche \\u00e4"));

    NormalStruct normals;
    NormalTag::Get(static_cast<NormalTag*>(taken->GetTag(Tnormal))->GetDataAddressR(), 0, normals);
    EXPECT_EQ(normals.a, Vector()); // nothing known, of no length
    EXPECT_LT((normals.b - Vector(0.6, 0, -0.8)).GetLength(), 1e-4);
    EXPECT_EQ(normals.c, Vector(0, 0, -1));
    EXPECT_EQ(normals.d, normals.c);
}

TEST_F(MeshOutput, MarksPolygonsByMaterial)
{
    addPoints();
    EXPECT_TRUE(add({0, 1, 2, 3}, {0, 1, 2, 3}, 12));
    EXPECT_TRUE(add({0, 1, 2}, {0, 1, 2}, -3));
    output.SetPrefix("forest::oaks");
    EXPECT_TRUE(add({2, 3, 4}, {2, 3, 4}, 12));
    EXPECT_TRUE(add({5, 6, 7}, {2, 3, 4}, 7));
    taken = output.TakeObject();
    EXPECT_THAT(selectionNames(taken), ElementsAre("forest::oaks::MAT7", "MAT-3", "MAT12"));
    BaseSelect* marked = static_cast<SelectionTag*>(taken->GetTag(Tpolygonselection, 2))->GetBaseSelect();
    EXPECT_TRUE(marked->GetCount() == 2 && marked->IsSelected(0) && marked->IsSelected(2));
}

TEST_F(MeshOutput, RefusesWhatCannotBeWrittenBeforeATagIsMade)
{
    addPoints();
    EXPECT_FALSE(add({0, 1}, {0, 1}));
    EXPECT_FALSE(add({0, 1, 10}, {0, 1, 2}));
    EXPECT_FALSE(add({0, 1, kNone}, {0, 1, 2}));
    EXPECT_FALSE(add({0, 1, 1ULL << 32}, {0, 1, 2}));
    EXPECT_FALSE(add({0, 1, 2}, {0, 1}));
    EXPECT_FALSE(add({0, 1, 2}, {0, 1, kNone}));
    EXPECT_FALSE(add({0, 1, 2, 3, 99}, {0, 1, 2, 3, 4}));
    EXPECT_FALSE(add(std::vector<uint64_t>(11, 1), std::vector<uint64_t>(11, 1))); // more corners than points
    taken = output.TakeObject();
    EXPECT_EQ(taken->GetPolygonCount(), 0);
    EXPECT_THAT(selectionNames(taken), IsEmpty());

    EXPECT_EQ(output.TakeObject(), nullptr);
    EXPECT_EQ(output.AddPoint({}, {}), kNone);
    EXPECT_FALSE(add({0, 1, 2}, {0, 1, 2}));
    EXPECT_FALSE(output.SetName("gone"));
    EXPECT_TRUE(output.Reset(false, 1));
    EXPECT_EQ(output.AddPoint({0, 0, 0}, {}), 0u);
}

TEST_F(MeshOutput, CompatibilityCutsLargePolygonsAlongTheFirstPoints)
{
    addPoints();
    EXPECT_TRUE(add({5, 6, 7, 8, 9}, {9, 8, 7, 6, 5}));
    taken = output.TakeObject();
    ASSERT_EQ(taken->GetPolygonCount(), 2);
    EXPECT_THAT(corners(taken->GetPolygonR()[0]), ElementsAre(8, 7, 6, 5));
    EXPECT_THAT(usOf(taken, 0), ElementsAre(6, 7, 8, 9));
    EXPECT_THAT(corners(taken->GetPolygonR()[1]), ElementsAre(5, 9, 8, 8));
    EXPECT_THAT(usOf(taken, 1), ElementsAre(0, 4, 3, 0));
    BaseSelect* marked = static_cast<SelectionTag*>(taken->GetTag(Tpolygonselection))->GetBaseSelect();
    EXPECT_EQ(marked->GetCount(), 2);
}

TEST_F(MeshOutput, ShadesSmoothlyAndKeepsWhetherEdgesBreak)
{
    taken = output.TakeObject();
    EXPECT_EQ(taken->GetTag(Tphong)->GetDataInstance()->GetFloat(PHONGTAG_PHONG_ANGLE), vdt::kPi);
    EXPECT_EQ(taken->GetPointCount() + taken->GetPolygonCount(), 0);
    taken->GetTag(Tphong)->GetDataInstance()->SetBool(PHONGTAG_PHONG_USEEDGES, false);
    EXPECT_TRUE(SetPhong(taken, 0.5));
    EXPECT_EQ(taken->GetTag(Tphong, 1), nullptr);
    const BaseContainer* phong = taken->GetTag(Tphong)->GetDataInstance();
    EXPECT_FALSE(phong->GetBool(PHONGTAG_PHONG_USEEDGES, true));
    EXPECT_FALSE(phong->GetBool(PHONGTAG_PHONG_ANGLELIMIT, true));
    EXPECT_EQ(phong->GetFloat(PHONGTAG_PHONG_ANGLE), 0.5);
    EXPECT_FALSE(SetPhong(nullptr, 0));
}

TEST(SelectionNames, AreReadStrictly)
{
    struct Row {
        const char* name;
        Int32 material;
    };
    const Row rows[] = {{"MAT12", 12},
                        {"MAT0", 0},
                        {"MAT-7", -7},
                        {"MAT007", 7},
                        {"MAT2147483647", 2147483647},
                        {"MAT-2147483648", LIMIT<Int32>::MIN},
                        {"MAT", -1},
                        {"MAT-", -1},
                        {"MAT 7", -1},
                        {"MAT7x", -1},
                        {"MAT+7", -1},
                        {"mat7", -1},
                        {"Leaf", -1},
                        {"", -1},
                        {"MAT2147483648", -1},
                        {"forest::MAT7", -1},
                        {" MAT7", -1}};
    for (const Row& row : rows) EXPECT_EQ(MaterialIdOfName(row.name), row.material) << row.name;
    for (const Int32 id : {0, 5, -4, LIMIT<Int32>::MAX, LIMIT<Int32>::MIN})
        EXPECT_EQ(MaterialIdOfName(MaterialSelectionName(id)), id);
}

} // namespace
