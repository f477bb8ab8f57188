#include "plant/plant_build.h"
#include "plant/plant_library.h"
#include "plant/plant_units.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "support/text.h"
#include "vdt/generate/point_cloud.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace host::test {
namespace {

constexpr Int32 kSurface = static_cast<Int32>(PlantPoints::Surface);
constexpr Int32 kFoliage = static_cast<Int32>(PlantPoints::Foliage);

class PlantLibraryRecord : public testing::Test {
protected:
    void SetUp() override
    {
        C4DLibrary* store = nullptr;
        library =
            static_cast<PlantObjectLibrary*>(CheckLib(kPlantObjectLibraryId, sizeof(PlantObjectLibrary) - 1, &store));
        ASSERT_TRUE(library);
        EXPECT_EQ(library->version, 1000);
        EXPECT_EQ(library->size, 56);
    }

    BaseObject& inMetres(Int32 variant)
    {
        return scene.place(scene.folder.write("m/oak.vdt", OakText("meters", "../oak/oak_adult.vdt")), variant);
    }

    // Fetches into arrays of the size that was told, with a guard behind.
    struct Branches {
        std::vector<DrawPolylineHeader> headers;
        std::vector<DrawNode> nodes;
        Int32 nodeCount = -2, headerCount = -2;
    };
    Branches fetchBranches(BaseObject& plant, Int32 wanted)
    {
        Int32 count = 0;
        const Int32 nodes = library->CountBranches(&plant, wanted, &count);
        EXPECT_EQ(nodes, 2 * count);
        Branches branches;
        branches.headers.resize(static_cast<size_t>(count) + 1, {4711, 4711});
        branches.nodes.resize(static_cast<size_t>(nodes) + 1);
        branches.nodes.back().radius = 4711;
        branches.nodeCount = library->FetchBranches(&plant, wanted, branches.headers.data(), branches.nodes.data(),
                                                    &branches.headerCount);
        EXPECT_EQ(branches.headers.back().maxRadius, 4711);
        EXPECT_EQ(branches.nodes.back().radius, 4711);
        branches.headers.resize(static_cast<size_t>(branches.headerCount));
        branches.nodes.resize(static_cast<size_t>(branches.nodeCount));
        return branches;
    }

    std::vector<PlantPoint> fetchPoints(BaseObject& plant, Int32 wanted, Int32 kind)
    {
        std::vector<PlantPoint> points(static_cast<size_t>(std::max(wanted, 0)) + 1);
        points.back().position = Vector(4711);
        const Int32 count = library->FetchPoints(&plant, wanted, points.data(), kind);
        EXPECT_EQ(points.back().position, Vector(4711));
        EXPECT_LE(count, std::max(wanted, 0));
        points.resize(static_cast<size_t>(std::max(count, 0)));
        return points;
    }

    PlantScene scene;
    std::string oak = scene.writeOak();
    PlantObjectLibrary* library = nullptr;
};

TEST_F(PlantLibraryRecord, AnswersForNothingAndForOtherObjects)
{
    BaseObject* other = BaseObject::Alloc(Onull);
    BaseObject& unchosen = scene.place("");
    for (BaseObject* object : {static_cast<BaseObject*>(nullptr), other, &unchosen}) {
        Int32 told = 7;
        EXPECT_FALSE(library->BuildNamedProxy(object, "flat"));
        EXPECT_FALSE(library->BuildRenderMesh(object, &told));
        EXPECT_EQ(told, 0);
        EXPECT_EQ(library->CountPoints(object, 10, kFoliage), -1);
        EXPECT_EQ(library->CountPoints(object, 10, 3), -1);
        for (const Int32 kind : {kSurface, kFoliage, 3}) EXPECT_EQ(library->FetchPoints(object, 10, nullptr, kind), -1);
        EXPECT_EQ(library->CountBranches(object, 10, &told), -1);
        EXPECT_EQ(told, -1);
        EXPECT_EQ(library->FetchBranches(object, 10, nullptr, nullptr, &told), 0);
        EXPECT_EQ(told, 0);
    }
    BaseObject::Free(other);
}

TEST_F(PlantLibraryRecord, ProxiesAreFoundByNameElseTheHullIsBuilt)
{
    BaseObject& plant = scene.place(oak, 1);
    struct Row {
        const char* name;
        Int32 points;
    };
    for (const Row& row : {Row{"flat", 3}, {"", 4}}) {
        auto* proxy = static_cast<PolygonObject*>(library->BuildNamedProxy(&plant, row.name));
        ASSERT_TRUE(proxy) << row.name;
        EXPECT_EQ(proxy->GetPointCount(), row.points);
        EXPECT_FALSE(proxy->GetTag(Tnormal));
        PolygonObject::Free(proxy);
    }
    auto* hull = static_cast<PolygonObject*>(library->BuildNamedProxy(&plant, "round"));
    ASSERT_TRUE(hull);
    EXPECT_GT(hull->GetPointCount(), 4);
    PolygonObject::Free(hull);
}

TEST_F(PlantLibraryRecord, TheRenderMeshIsTheCacheWhereThatIsTheFullMesh)
{
    BaseObject& plant = scene.place(oak, 0);
    const auto polygons = [&](Int32 expectedFlag) {
        Int32 isCache = -1;
        auto* mesh = static_cast<PolygonObject*>(library->BuildRenderMesh(&plant, &isCache));
        EXPECT_EQ(isCache, expectedFlag);
        EXPECT_EQ(mesh == plant.GetCache(), expectedFlag == 1);
        const Int32 count = mesh->GetPolygonCount();
        if (!isCache) PolygonObject::Free(mesh);
        return count;
    };
    const Int32 count = polygons(0);
    scene.evaluate();
    EXPECT_EQ(polygons(0), count) << "the cache is a proxy";
    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_FULL);
    EXPECT_EQ(polygons(0), count) << "and still is";
    scene.evaluate();
    EXPECT_EQ(polygons(1), count);
    Set(plant, PLANT_PROXY_ONLY, PLANT_PROXY_ONLY_ON);
    scene.evaluate();
    EXPECT_EQ(polygons(0), count);
    EXPECT_TRUE(DataOf(plant).statistics.Content());
}

TEST_F(PlantLibraryRecord, SurfacePointsAreTheLibrarysSamples)
{
    BaseObject& plant = inMetres(0);
    BaseMaterial& green = scene.addMaterial(Vector(0.25, 0.5, 0.75));
    for (const char* restriction : {"MAT2", "MAT3"}) scene.addTexture(plant, green, restriction);
    EXPECT_EQ(library->CountPoints(&plant, 33, kSurface), 33);
    const std::vector<PlantPoint> points = fetchPoints(plant, 33, kSurface);
    vdt::Array<vdt::CloudSample> samples;
    vdt::SamplePoints(*ReadyVariant(DataOf(plant).model), "summer", 33, samples, true, nullptr);
    ASSERT_EQ(points.size(), samples.size());
    for (size_t i = 0; i < points.size(); ++i) {
        const vdt::CloudSample& sample = samples[i];
        ASSERT_EQ(points[i].position,
                  Vector(100 * sample.position.x, 100 * sample.position.y, -100 * sample.position.z));
        const vdt::Vector3 normal = sample.normal * 100;
        ASSERT_EQ(points[i].normal, Vector32(Vector(normal.x, normal.y, -normal.z))) << "scaled, too";
        // The model knows 1 and 2; the scene has a material for 2 and 3.
        const Vector32 colour = sample.material == 2 ? Vector32(0.25F, 0.5F, 0.75F) : Vector32();
        ASSERT_EQ(points[i].colour, colour) << sample.material;
    }
    EXPECT_TRUE(fetchPoints(plant, 0, kSurface).empty());
    EXPECT_TRUE(fetchPoints(plant, -5, kSurface).empty());
}

TEST_F(PlantLibraryRecord, FoliagePointsComeFromTheCloudThatIsShown)
{
    BaseObject& plant = inMetres(0);
    EXPECT_EQ(library->CountPoints(&plant, 3, kFoliage), 3);
    EXPECT_EQ(library->CountPoints(&plant, 99, kFoliage), 5);
    const std::vector<PlantPoint> own = fetchPoints(plant, 99, kFoliage);
    ASSERT_GE(own.size(), 3u);
    EXPECT_EQ(own[0].normal, Vector32(0, 1, 0));
    EXPECT_EQ(fetchPoints(plant, 2, kFoliage).size(), 2u);
    EXPECT_TRUE(DataOf(plant).drawHelper.points.empty());

    Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    Set(plant, PLANT_CLOUD_SHADING, false);
    scene.evaluate();
    DataOf(plant).drawHelper.pointColours[0] = 0.125F;
    const std::vector<PlantPoint> shown = fetchPoints(plant, 99, kFoliage);
    ASSERT_EQ(shown.size(), own.size());
    for (size_t i = 0; i < own.size(); ++i) EXPECT_EQ(shown[i].position, own[i].position);
    EXPECT_EQ(shown[0].colour.x, 0.125F);
    EXPECT_EQ(fetchPoints(plant, 2, kFoliage).size(), 2u) << "no more than there is room for";
}

TEST_F(PlantLibraryRecord, BranchesNeverNeedMoreRoomThanWasTold)
{
    BaseObject& plant = inMetres(0);
    for (const bool cloud : {false, true}) {
        SCOPED_TRACE(cloud);
        if (cloud) {
            Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
            scene.evaluate();
        }
        for (const Int32 wanted : {-3, 0, 1, 2, 3, 1000, LIMIT<Int32>::MAX}) {
            SCOPED_TRACE(wanted);
            const Branches branches = fetchBranches(plant, wanted);
            uint64_t nodes = 0;
            for (const DrawPolylineHeader& header : branches.headers) {
                EXPECT_GE(header.count, 2u);
                nodes += header.count;
            }
            EXPECT_EQ(nodes, branches.nodes.size());
        }
        // A trunk of four nodes and two twigs of two: six nodes for three branches, so the trunk and one twig fit.
        const Branches all = fetchBranches(plant, 4);
        ASSERT_EQ(all.headers.size(), 2u);
        EXPECT_EQ(all.headers[0].count, 4u);
        EXPECT_NEAR(all.headers[0].maxRadius, 90, 1e-9);
        EXPECT_EQ(all.nodes[1].position, Vector(0, 1000, 0));
        EXPECT_EQ(fetchBranches(plant, 1).nodes.size(), 2u) << "cut short";
    }
}

} // namespace
} // namespace host::test
