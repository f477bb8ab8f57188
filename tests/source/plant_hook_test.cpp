// What the scene hook draws of plants, read from the view's recording.

#include "core/layer.h"
#include "oinstance.h"
#include "support/colour_space.h"
#include "support/plant_scene.h"
#include "support/plugin_ids.h"
#include "view/view.h"
#include "viewport/plant_draw_hook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::test {
namespace {

struct Drawn {
    size_t ribbons = 0; // quads
    size_t points = 0;
    std::vector<Matrix> places;         // of each batch
    std::vector<DrawVertex> vertices;   // of ribbons
    std::vector<DrawVertex> pointMarks; // of points
    DrawColors ribbonColours{}, pointColours{};

    bool empty() const { return ribbons == 0 && points == 0; }
};

class PlantHook : public testing::Test {
protected:
    PlantHook() : view(CoreOf(static_cast<BaseView*>(scene.document->GetActiveBaseDraw()))) {}

    Drawn draw(SCENEHOOKDRAW flags = SCENEHOOKDRAW_DRAW_PASS)
    {
        BaseSceneHook* hook = scene.document->FindSceneHook(kPlantDrawHookId);
        EXPECT_TRUE(hook);
        DrawList list;
        list.frame = {
            .width = 400, .height = 400, .perspective = false, .pixelsPerUnit = 1 / pixel, .worldFromCamera = {}};
        view->recorder.begin(list);
        view->recorder.reset(true);
        BaseDrawHelp help = view->drawHelp(*scene.document);
        EXPECT_TRUE(static_cast<SceneHookData*>(hook->GetNodeData())
                        ->Draw(hook, scene.document, scene.document->GetActiveBaseDraw(), &help, nullptr, flags));
        view->recorder.end();

        Drawn drawn;
        for (const DrawBatch& batch : list.batches) {
            drawn.places.push_back(batch.state.matrix);
            const bool isPoints = batch.kind == DrawKind::Points;
            (isPoints ? drawn.points : drawn.ribbons) += isPoints ? batch.count : batch.count / 6;
            (isPoints ? drawn.pointColours : drawn.ribbonColours) = batch.state.colors;
            auto& vertices = isPoints ? drawn.pointMarks : drawn.vertices;
            const auto first = list.vertices.begin() + static_cast<ptrdiff_t>(batch.first);
            vertices.insert(vertices.end(), first, first + static_cast<ptrdiff_t>(batch.count));
        }
        return drawn;
    }

    BaseObject& placeCloud(Int32 variant = 0)
    {
        BaseObject& plant = scene.place(oak, variant);
        Set(plant, PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
        scene.evaluate();
        return plant;
    }

    PlantScene scene;
    std::string oak = scene.writeOak();
    ViewCore* view;
    Float pixel = 0.001; // world units that it covers, everywhere
};

TEST_F(PlantHook, DrawsRibbonsAndPointsOnlyInTheDrawPass)
{
    BaseObject& plant = placeCloud();
    plant.SetAbsPos(Vector(1, 2, 3));
    const C4dDrawHelper& cloud = DataOf(plant).drawHelper;
    const Drawn drawn = draw();
    EXPECT_EQ(drawn.ribbons, 5u) << "one a segment";
    EXPECT_EQ(drawn.points, cloud.points.size());
    for (const Matrix& place : drawn.places) EXPECT_EQ(place.off, Vector(1, 2, 3));
    EXPECT_EQ(drawn.ribbonColours, DrawColors::Display);
    EXPECT_EQ(drawn.pointColours, DrawColors::Linear);
    for (size_t i = 0; i < drawn.points; ++i)
        for (size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(drawn.pointMarks[i].color[axis], cloud.pointColours[3 * i + axis]);

    // The trunk's first segment stands along y, so its ribbon spreads along x: twice the radius of each end.
    float least[2] = {1e9F, 1e9F}, most[2] = {-1e9F, -1e9F};
    for (size_t i = 0; i < 6; ++i) {
        const auto& position = drawn.vertices[i].position;
        EXPECT_NEAR(position[2], 0, 1e-6);
        const size_t end = position[1] > 5 ? 1 : 0;
        least[end] = std::min(least[end], position[0]);
        most[end] = std::max(most[end], position[0]);
    }
    EXPECT_NEAR(most[0] - least[0], 1.8, 1e-5);
    EXPECT_LT(most[1] - least[1], 1.4 + 1e-5) << "bent in the middle";

    for (const SCENEHOOKDRAW pass : {SCENEHOOKDRAW_0, SCENEHOOKDRAW_HIGHLIGHT_PASS, SCENEHOOKDRAW_HIGHLIGHT_PASS_INV,
                                     SCENEHOOKDRAW_HIGHLIGHT_PASS_BEFORE_TOOL, SCENEHOOKDRAW_DRAW_PASS_AFTER_CLEAR})
        EXPECT_TRUE(draw(pass).empty()) << pass;
}

TEST_F(PlantHook, ThinsOutByPixels)
{
    BaseObject& plant = placeCloud();
    C4dDrawHelper& cloud = DataOf(plant).drawHelper;
    cloud.points.resize(100, Vector32(1, 2, 3));
    cloud.pointColours.resize(300, 0.5F);
    struct Row {
        Float pixel;
        size_t ribbons;
    };
    // Branches of radius 0.9 (three segments), 0.3 and 0.25.
    for (const Row& row : {Row{0.01, 5}, {0.49, 5}, {0.51, 4}, {0.59, 4}, {0.61, 3}, {1.79, 3}, {1.81, 0}}) {
        pixel = row.pixel;
        EXPECT_EQ(draw().ribbons, row.ribbons) << row.pixel;
    }
    pixel = 1;
    const Float point = 16 * pixel * pixel;
    struct Share {
        Float density, scale, meanArea;
        size_t points;
    };
    const Float noNumber = std::nan("");
    for (const Share& share : {Share{1, 1, 2 * point, 100},
                               {1, 1, point, 100},
                               {1, 0.5, point, 50},
                               {0.5, 0.5, point, 25},
                               {0.255, 1, point, 25},
                               {0, 1, point, 0},
                               {-1, 1, point, 0},
                               {noNumber, 1, point, 100}}) {
        SCOPED_TRACE(share.density);
        cloud.density = share.density;
        cloud.scale = share.scale;
        cloud.meanArea = share.meanArea;
        EXPECT_EQ(draw().points, share.points);
    }
}

TEST_F(PlantHook, ABranchWithoutSegmentsIsPassedOverWithItsNodeLeft)
{
    BaseObject& plant = placeCloud();
    C4dDrawHelper& cloud = DataOf(plant).drawHelper;
    cloud.points.clear();
    cloud.polylines = {{1, 9}, {2, 9}, {0, 9}, {2, 9}, {1000, 9}};
    cloud.nodes.assign(5, {Vector(), Vector(0, 1, 0), Vector32(1), 0.5});
    cloud.nodes[1].position = Vector(0, 5, 0);
    const Drawn drawn = draw();
    EXPECT_EQ(drawn.ribbons, 2u) << "from nodes 0 and 1, then 2 and 3; the last goes beyond the end";
    EXPECT_EQ(drawn.points, 0u);
    cloud.polylines = {{LIMIT<UInt64>::MAX, 9}};
    EXPECT_TRUE(draw().empty());
}

TEST_F(PlantHook, ShowsWhatTheEditorShows)
{
    BaseObject* parent = BaseObject::Alloc(Onull);
    scene.document->InsertObject(parent, nullptr, nullptr);
    BaseObject& plant = placeCloud();
    plant.Remove();
    scene.document->InsertObject(&plant, parent, nullptr);
    scene.evaluate();
    const auto shows = [&] { return !draw().empty(); };
    EXPECT_TRUE(shows());
    parent->SetEditorMode(MODE_OFF);
    EXPECT_FALSE(shows());
    plant.SetEditorMode(MODE_ON);
    EXPECT_TRUE(shows());
    plant.SetEditorMode(MODE_OFF);
    EXPECT_FALSE(shows());
    plant.SetEditorMode(MODE_UNDEF);
    parent->SetEditorMode(MODE_ON);
    EXPECT_TRUE(shows());

    plant.SetDeformMode(false);
    EXPECT_FALSE(shows());
    plant.SetDeformMode(true);
    LayerObject* layer = LayerObject::Alloc();
    scene.document->GetLayerObjectRoot()->InsertLast(layer);
    plant.SetLayerObject(layer);
    scene.evaluate();
    EXPECT_TRUE(shows());
    LayerData data;
    data.view = false;
    layer->SetLayerData(scene.document, data);
    EXPECT_FALSE(shows());
    data.view = true;
    layer->SetLayerData(scene.document, data);

    BaseContainer& container = *plant.GetDataInstance();
    for (const Int32 mode : {0, 1, 3}) {
        container.SetInt32(PLANT_DISPLAY_MODE, mode);
        EXPECT_FALSE(shows()) << mode;
    }
    container.SetInt32(PLANT_DISPLAY_MODE, PLANT_DISPLAY_MODE_CLOUD);
    EXPECT_TRUE(shows());
    container.SetInt32(PLANT_PROXY_ONLY, PLANT_PROXY_ONLY_ON);
    EXPECT_FALSE(shows());
    container.SetInt32(PLANT_PROXY_ONLY, PLANT_PROXY_ONLY_OFF);
    DataOf(plant).model.release();
    EXPECT_FALSE(shows()) << "a plant that cannot be made ready";
}

TEST_F(PlantHook, RenderInstancesShowTheCloudAtTheirPlace)
{
    BaseObject& plant = placeCloud();
    BaseObject* instance = BaseObject::Alloc(Oinstance);
    ASSERT_TRUE(instance);
    scene.document->InsertObject(instance, nullptr, nullptr);
    Set(*instance, INSTANCEOBJECT_LINK, GeData(static_cast<BaseList2D*>(&plant)));
    Set(*instance, INSTANCEOBJECT_RENDERINSTANCE, true);
    instance->SetAbsPos(Vector(100, 0, 0));
    scene.evaluate();
    const auto places = [&] {
        std::vector<Float> x;
        for (const Matrix& place : draw().places)
            if (x.empty() || x.back() != place.off.x) x.push_back(place.off.x);
        return x;
    };
    using testing::ElementsAre;
    EXPECT_THAT(places(), ElementsAre(100, 0));
    plant.SetEditorMode(MODE_OFF);
    EXPECT_THAT(places(), ElementsAre(100)) << "the instance's own visibility decides";
    instance->SetEditorMode(MODE_OFF);
    EXPECT_THAT(places(), ElementsAre());
    plant.SetEditorMode(MODE_UNDEF);
    EXPECT_THAT(places(), ElementsAre(0));
    instance->SetEditorMode(MODE_UNDEF);
    plant.SetDeformMode(false);
    EXPECT_THAT(places(), ElementsAre());
    plant.SetDeformMode(true);
    Set(*instance, INSTANCEOBJECT_RENDERINSTANCE, false);
    EXPECT_THAT(places(), ElementsAre(0)) << "until it is evaluated, a plain instance shows nothing of its own";
    Set(*instance, INSTANCEOBJECT_RENDERINSTANCE, true);
    Set(*instance, INSTANCEOBJECT_LINK, GeData(static_cast<BaseList2D*>(instance)));
    EXPECT_THAT(places(), ElementsAre(0));
}

} // namespace
} // namespace host::test
