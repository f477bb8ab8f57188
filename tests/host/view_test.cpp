#include "core/document.h"
#include "core/worker.h"
#include "ddoc.h"
#include "mmaterial.h"
#include "obase.h"
#include "oinstance.h"
#include "support/test_host.h"
#include "tphong.h"
#include "ttexture.h"
#include "view/draw_document.h"
#include "view/scene_walk.h"
#include "view/view.h"

#include <gmock/gmock.h>

#include <limits>
#include <random>
#include <thread>

namespace host::test {
namespace {

using testing::ElementsAre;

constexpr Int32 kPainter = 1099101;
constexpr Int32 kCachePainter = 1099102; // shows the colour of its cache
constexpr Int32 kPaintingHook = 1099103;

std::vector<std::string> journal; // of what plug-ins were asked to draw
Vector toldRadius;                // of painters

// Draws a line with the state that it finds, and leaves a mess behind.
void paint(BaseDraw* view)
{
    view->DrawLine(Vector(), Vector(1, 2, 3), 0);
    view->SetMatrix_Matrix(nullptr, MatrixMove(Vector(5, 5, 5)));
    view->SetPen(Vector(1, 0, 0));
    view->SetPointSize(9);
    view->SetTransparency(100);
    view->SetDepth(false);
    view->SetDrawParam(DRAW_PARAMETER_LINEWIDTH, GeData(7.0));
    view->SetDrawParam(DRAW_PARAMETER_SETZ, GeData(Int32{DRAW_Z_GREATER}));
}

// Makes one quad, or nothing.
class Painter : public ObjectData {
public:
    static NodeData* Alloc() { return NewObjClear(Painter); }

    void GetDimension(BaseObject*, Vector*, Vector* rad) override { *rad = toldRadius; }
    BaseObject* GetVirtualObjects(BaseObject*, HierarchyHelp*) override
    {
        return make ? make() : static_cast<BaseObject*>(nullptr);
    }
    DRAWRESULT Draw(BaseObject* op, DRAWPASS pass, BaseDraw* view, BaseDrawHelp* help) override
    {
        journal.push_back(std::string(op->GetName() == String("hidden") ? "hidden " : "") + "object " +
                          std::to_string(pass));
        EXPECT_EQ(help->GetDocument(), op->GetDocument());
        paint(view);
        return DRAWRESULT_OK;
    }

    std::function<BaseObject*()> make;
};

class PaintingHook : public SceneHookData {
public:
    static NodeData* Alloc() { return NewObjClear(PaintingHook); }

    Bool Draw(BaseSceneHook* node, BaseDocument* doc, BaseDraw* view, BaseDrawHelp*, BaseThread*,
              SCENEHOOKDRAW flags) override
    {
        EXPECT_EQ(node->GetDocument(), doc);
        journal.push_back("hook " + std::to_string(flags));
        paint(view);
        return true;
    }
};

// A square of two units in the plane of x and y, facing the viewer.
PolygonObject* square()
{
    PolygonObject* object = PolygonObject::Alloc(4, 1);
    const Vector points[] = {{-1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {1, -1, 0}};
    std::copy(std::begin(points), std::end(points), object->GetPointW());
    *object->GetPolygonW() = CPolygon(0, 1, 2, 3);
    return object;
}

class ViewTest : public testing::Test {
protected:
    ViewTest()
    {
        RegisterObjectPlugin(kPainter, "Painter", OBJECT_GENERATOR, Painter::Alloc, "", nullptr, 0);
        RegisterObjectPlugin(kCachePainter, "Painter", OBJECT_GENERATOR | OBJECT_USECACHECOLOR, Painter::Alloc, "",
                             nullptr, 0);
        RegisterSceneHookPlugin(kPaintingHook, "Painter", 0, PaintingHook::Alloc, 0, 0);
        journal.clear();
        toldRadius = Vector();
        document = BaseDocument::Alloc();
        view = CoreOf(document->GetActiveBaseDraw());
        view->options.grid = false;
    }
    ~ViewTest() override { BaseDocument::Free(document); }

    BaseObject* add(BaseObject* object, BaseObject* parent = nullptr)
    {
        BaseObject* last = parent ? parent->GetDownLast() : document->GetFirstObject();
        while (last && last->GetNext()) last = last->GetNext();
        document->InsertObject(object, parent, last);
        return object;
    }
    BaseObject* addPainter(std::function<BaseObject*()> make, Int32 type = kPainter, BaseObject* parent = nullptr)
    {
        BaseObject* object = add(BaseObject::Alloc(type), parent);
        static_cast<Painter*>(object->GetNodeData())->make = std::move(make);
        return object;
    }
    const DrawList& draw()
    {
        document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0);
        EXPECT_TRUE(DrawDocument(*document, *view, nullptr, list));
        return list;
    }
    // Red times 100 and where the middle is, of every mesh that was drawn.
    std::vector<std::pair<int, Float>> meshes()
    {
        std::vector<std::pair<int, Float>> found;
        for (const DrawBatch& batch : draw().batches)
            if (batch.kind == DrawKind::Mesh)
                found.emplace_back(static_cast<int>(batch.color[0] * 100 + 0.5F), batch.state.matrix.off.x);
        return found;
    }
    static void setColor(BaseObject* object, Int32 mode, Float red)
    {
        ObjectColorProperties properties{mode, Vector(red, 0, 0), false};
        object->SetColorProperties(&properties);
    }
    void cover(BaseObject* object, Float red, const char* restriction)
    {
        BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
        material->SetParameter(DescID(MATERIAL_COLOR_COLOR), GeData(Vector(red, 0, 0)), DESCFLAGS_SET_0);
        document->InsertMaterial(material);
        auto* tag = static_cast<TextureTag*>(object->MakeTag(Ttexture, object->GetLastTag()));
        tag->SetMaterial(material);
        tag->SetParameter(DescID(TEXTURETAG_RESTRICTION), GeData(String(restriction)), DESCFLAGS_SET_0);
    }

    TestHost host;
    BaseDocument* document = nullptr;
    ViewCore* view = nullptr;
    DrawList list;
};

TEST_F(ViewTest, HostAndPluginsDrawInOrderWithOneFlagACallAndAFreshState)
{
    addPainter(square)->SetBit(BIT_ACTIVE);
    BaseObject* hidden = addPainter(square);
    hidden->SetName("hidden");
    hidden->SetEditorMode(MODE_OFF);
    addPainter(nullptr);
    draw();
    EXPECT_THAT(journal, ElementsAre("hook 16", "object 0", "object 0", "hook 1", "object 1", "object 2", "hook 2",
                                     "hook 4", "hook 8"));

    // What was recorded: lines of the callbacks, between them the square and the box of the selected object. Before the
    // scene and over it nothing tests the depth.
    std::string kinds;
    for (const DrawBatch& batch : list.batches) {
        kinds += batch.kind == DrawKind::Mesh ? 'm' : batch.state.depthTest == DepthTest::Always ? 'L' : 'l';
        if (batch.kind == DrawKind::Mesh) continue;
        EXPECT_EQ(batch.state.matrix, Matrix());
        EXPECT_EQ(batch.state.size, 1);
        const bool isBox =
            batch.count > 2 && batch.state.depthTest != DepthTest::Always && list.vertices[batch.first].color[2] < 1;
        EXPECT_EQ(list.vertices[batch.first].color[3], 1);
        EXPECT_TRUE(isBox || list.vertices[batch.first].color[0] == 1);
    }
    EXPECT_EQ(kinds, "LmlL") << "calls of one state share a batch";
    EXPECT_EQ(list.batches[2].count, 2U * (3 + 12 + 1)) << "two objects, a hook, a box and its pass";
    EXPECT_EQ(view->recorder.recorded(), nullptr);
}

TEST_F(ViewTest, VisibleIsWhatIsSwitchedOnOrFollowsAVisibleParent)
{
    struct Row {
        Int32 parent, child;
        int shown; // parent 1, child 2
    };
    const Row rows[] = {{MODE_UNDEF, MODE_UNDEF, 3}, {MODE_OFF, MODE_UNDEF, 0}, {MODE_OFF, MODE_ON, 2},
                        {MODE_ON, MODE_OFF, 1},      {MODE_UNDEF, MODE_OFF, 1}, {MODE_ON, MODE_ON, 3}};
    BaseObject* parent = addPainter(square);
    setColor(parent, ID_BASEOBJECT_USECOLOR_ALWAYS, 0.01);
    BaseObject* child = add(square(), parent);
    setColor(child, ID_BASEOBJECT_USECOLOR_ALWAYS, 0.02);
    for (const Row& row : rows) {
        parent->SetEditorMode(row.parent);
        child->SetEditorMode(row.child);
        int shown = 0;
        for (const auto& [red, x] : meshes()) shown += red;
        EXPECT_EQ(shown, row.shown) << row.parent << ' ' << row.child;
    }

    // A layer hides its own objects only; a switch hides what a generator made, whatever that says of itself.
    LayerObject* layer = LayerObject::Alloc();
    document->GetLayerObjectRoot()->InsertLast(layer);
    LayerData data;
    data.view = false;
    layer->SetLayerData(document, data);
    parent->SetLayerObject(layer);
    EXPECT_EQ(meshes().size(), 1U);
    BaseObject* other = addPainter([] {
        BaseObject* made = square();
        made->SetEditorMode(MODE_ON);
        return made;
    });
    EXPECT_EQ(meshes().size(), 2U);
    other->SetEditorMode(MODE_OFF);
    EXPECT_EQ(meshes().size(), 1U);
}

TEST_F(ViewTest, ColorsComeFromTheGeneratorTheCacheTheLayerOrTheDocument)
{
    const auto made = [] {
        BaseObject* object = square();
        setColor(object, ID_BASEOBJECT_USECOLOR_AUTOMATIC, 0.2);
        return object;
    };
    document->GetDataInstance()->SetVector(DOCUMENT_DEFAULTMATERIAL_COLOR, Vector(0.9, 0, 0));
    BaseObject* generator = addPainter(made);
    const auto shown = [this] { return meshes().front().first; };
    EXPECT_EQ(shown(), 90) << "the document's";
    setColor(generator, ID_BASEOBJECT_USECOLOR_AUTOMATIC, 0.1);
    EXPECT_EQ(shown(), 10);
    setColor(generator, ID_BASEOBJECT_USECOLOR_LAYER, 0.1);
    LayerObject* layer = LayerObject::Alloc();
    document->GetLayerObjectRoot()->InsertLast(layer);
    LayerData data;
    data.color = Vector(0.3, 0, 0);
    layer->SetLayerData(document, data);
    generator->SetLayerObject(layer);
    EXPECT_EQ(shown(), 30);
    generator->Remove();
    BaseObject::Free(generator);
    addPainter(made, kCachePainter);
    EXPECT_EQ(shown(), 20);

    // Colours as they are shown, but amounts of light in a document that is said to work so.
    EXPECT_EQ(list.batches[1].state.colors, DrawColors::Display);
    document->GetDataInstance()->SetInt32(DOCUMENT_COLORPROFILE, DOCUMENT_COLORPROFILE_LINEAR);
    EXPECT_EQ(draw().batches[1].state.colors, DrawColors::Linear);
    document->GetDataInstance()->SetBool(DOCUMENT_LINEARWORKFLOW, false);
    EXPECT_EQ(draw().batches[1].state.colors, DrawColors::Display);
}

TEST_F(ViewTest, MaterialsCoverTheSelectionsThatTheyNameAndTheLastOneWins)
{
    BaseObject* generator = addPainter(
        [] {
            PolygonObject* object = PolygonObject::Alloc(4, 4); // all on one place
            for (Int32 i = 0; i < 4; ++i) object->GetPolygonW()[i] = CPolygon(0, 1, 2);
            const Vector points[] = {{-1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {1, -1, 0}};
            std::copy(std::begin(points), std::end(points), object->GetPointW());
            const std::pair<const char*, Int32> selections[] = {{"first", 2}, {"last", 3}};
            for (const auto& [name, end] : selections) {
                SelectionTag* tag = SelectionTag::Alloc(Tpolygonselection);
                tag->SetName(String(name));
                tag->GetBaseSelect()->SelectAll(end - 2, end);
                object->InsertTag(tag);
            }
            return static_cast<BaseObject*>(object);
        },
        kPainter);
    setColor(generator, ID_BASEOBJECT_USECOLOR_AUTOMATIC, 0.1);
    // Triangles of each red: of polygons 0 to 2 and 1 to 3.
    const auto triangles = [this] {
        std::map<int, size_t> counts;
        for (const DrawBatch& batch : draw().batches)
            if (batch.kind == DrawKind::Mesh) counts[static_cast<int>(batch.color[0] * 100 + 0.5F)] += batch.count / 3;
        return counts;
    };
    using Counts = std::map<int, size_t>;
    cover(generator, 0.2, "last");
    EXPECT_EQ(triangles(), (Counts{{10, 1}, {20, 3}})) << "where no material is, the object's own colour";
    cover(generator, 0.3, "first");
    cover(generator, 0.4, "missing");
    EXPECT_EQ(triangles(), (Counts{{20, 1}, {30, 3}})) << "a selection that is not there holds nothing";
    cover(generator, 0.5, "");
    EXPECT_EQ(triangles()[50], 4U);
    setColor(generator, ID_BASEOBJECT_USECOLOR_ALWAYS, 0.1);
    EXPECT_EQ(triangles(), (Counts{{10, 4}}));
}

TEST_F(ViewTest, RenderInstancesShowTheLinkedProductAtTheirOwnPlaces)
{
    BaseObject* original = addPainter(square);
    original->SetAbsPos(Vector(3, 0, 0));
    original->SetEditorMode(MODE_OFF);
    BaseObject* previous = original;
    for (const Float x : {10.0, 20.0}) { // the second is an instance of the first
        BaseObject* instance = add(BaseObject::Alloc(Oinstance));
        instance->SetParameter(DescID(INSTANCEOBJECT_LINK), GeData(previous), DESCFLAGS_SET_0);
        instance->SetParameter(DescID(INSTANCEOBJECT_RENDERINSTANCE), GeData(Int32{true}), DESCFLAGS_SET_0);
        instance->SetAbsPos(Vector(x, 0, 0));
        previous = instance;
    }
    const auto found = meshes();
    ASSERT_EQ(found.size(), 2U) << "the original is hidden, its instances are not";
    EXPECT_EQ(found[0].second, 10);
    EXPECT_EQ(found[1].second, 20);
    EXPECT_EQ(list.meshIndices.size(), 6U) << "one mesh for both";
    const Extent extent = ExtentOfShown(*document);
    EXPECT_EQ(extent.minimum, Vector(9, -1, 0));
    EXPECT_EQ(extent.maximum, Vector(21, 1, 0));

    BaseObject* circle = original->GetNext();
    circle->SetParameter(DescID(INSTANCEOBJECT_LINK), GeData(previous), DESCFLAGS_SET_0);
    EXPECT_EQ(meshes().size(), 0U) << "a circle of instances shows nothing, and ends";
}

TEST_F(ViewTest, NormalsComeFromTheNormalTagElseThePhongTagElseThePolygon)
{
    // A roof of two sloped squares along the x axis.
    PolygonObject* roof = PolygonObject::Alloc(6, 2);
    const Vector points[] = {{-1, 0, 0}, {-1, 0, 2}, {0, 1, 0}, {0, 1, 2}, {1, 0, 0}, {1, 0, 2}};
    std::copy(std::begin(points), std::end(points), roof->GetPointW());
    roof->GetPolygonW()[0] = CPolygon(0, 1, 3, 2);
    roof->GetPolygonW()[1] = CPolygon(2, 3, 5, 4);
    add(roof);
    draw();
    ASSERT_EQ(list.meshVertices.size(), 6U);
    EXPECT_EQ(list.meshVertices[2].normal, (std::array<float, 3>{0, 0, 0}));

    BaseTag* phong = roof->MakeTag(Tphong);
    phong->SetParameter(DescID(PHONGTAG_PHONG_ANGLELIMIT), GeData(Int32{true}), DESCFLAGS_SET_0);
    // Corner 2 of the first polygon stands on the ridge, corner 0 at the eaves. The slopes differ by 90 degrees.
    const std::pair<Float, Float> rows[] = {{1.6, 0}, {1.5, -std::sqrt(0.5)}};
    for (const auto& [angle, ridge] : rows) {
        phong->SetParameter(DescID(PHONGTAG_PHONG_ANGLE), GeData(angle), DESCFLAGS_SET_0);
        draw();
        ASSERT_EQ(list.meshVertices.size(), 8U);
        EXPECT_NEAR(std::abs(list.meshVertices[2].normal[0]), std::abs(ridge), 1e-6) << angle;
        EXPECT_NEAR(std::abs(list.meshVertices[0].normal[0]), std::sqrt(0.5), 1e-6);
    }
    NormalTag* stored = NormalTag::Alloc(2);
    roof->InsertTag(stored);
    const Vector up(0, 1, 0), left(-1, 0, 0);
    NormalTag::Set(stored->GetDataAddressW(), 0, NormalStruct(up, left, up, up));
    draw();
    EXPECT_NEAR(list.meshVertices[1].normal[0], -1, 1e-4);
    EXPECT_NEAR(list.meshVertices[2].normal[1], 1, 1e-4);
}

TEST_F(ViewTest, WhatHasNoPolygonsShowsItsBoxAndBrokenPolygonsShowNothing)
{
    PolygonObject* corners = PolygonObject::Alloc(2, 0);
    corners->GetPointW()[0] = Vector(-1, 0, -2);
    corners->GetPointW()[1] = Vector(1, 5, 2);
    add(corners);
    draw();
    ASSERT_EQ(list.batches.size(), 3U) << "between the hook's calls";
    EXPECT_EQ(list.batches[1].count, 24U + 2) << "twelve edges, and the hook's line";
    EXPECT_EQ(list.batches[1].box.minimum, (std::array<float, 3>{-1, 0, -2}));
    EXPECT_EQ(list.batches[1].box.maximum, (std::array<float, 3>{1, 5, 3}));
    view->options.boxes = false;
    EXPECT_EQ(draw().batches[1].count, 2U);

    PolygonObject* broken = square();
    broken->GetPolygonW()[0] = CPolygon(0, 1, 7, -1);
    add(broken);
    EXPECT_EQ(meshes().size(), 0U);
}

TEST_F(ViewTest, TheGridLiesOnTheFloorBelowTheSceneHoweverBrokenThatIs)
{
    const auto gridLines = [this] {
        size_t lines = 0;
        for (const DrawBatch& batch : draw().batches) {
            const bool isGrid = batch.kind == DrawKind::Lines && !batch.state.depthWrite &&
                                batch.state.depthTest == DepthTest::LessEqual;
            if (!isGrid) continue;
            lines += batch.count / 2;
            EXPECT_EQ(batch.box.minimum[1] + batch.box.maximum[1], 0);
        }
        return lines;
    };
    add(square());
    EXPECT_EQ(gridLines(), 0U) << "switched off";
    view->options.grid = true;
    const size_t usual = gridLines();
    EXPECT_GT(usual, 100U);
    ViewFrame along = view->frame();
    along.worldFromCamera = Matrix();
    view->look(along);
    EXPECT_EQ(gridLines(), 0U) << "edge on";

    const Float infinite = std::numeric_limits<Float>::infinity();
    for (const Float wrong : {std::nan(""), infinite, -infinite, 1e300, 1e30, -1e12}) {
        PolygonObject* broken = square();
        broken->GetPointW()[0] = broken->GetPointW()[2] = Vector(wrong, 0, wrong);
        add(broken);
        ShowAll(*document, *view, CameraAxes(0, 0.5));
        EXPECT_LT(gridLines(), 5000U);
        EXPECT_EQ(meshes().size(), 2U);
        broken->Remove();
        BaseObject* object = broken;
        BaseObject::Free(object);
        ShowAll(*document, *view, CameraAxes(0, 0.5));
        EXPECT_NEAR(static_cast<double>(gridLines()), static_cast<double>(usual), 0.7 * static_cast<double>(usual))
            << "nothing of it stays";
    }
}

TEST_F(ViewTest, APixelHasTheSizeThatTheProjectionGivesIt)
{
    BaseDraw* draws = document->GetActiveBaseDraw();
    toldRadius = Vector(100);
    addPainter(nullptr); // draws a line that ends at (1, 2, 3)
    std::mt19937 random(3);
    std::uniform_real_distribution<Float> number(-1, 1);
    for (Int32 num = 0; num < document->GetBaseDrawCount(); ++num) {
        BaseDraw* seen = document->GetBaseDraw(num);
        CoreOf(seen)->setSize(640, 480);
        ShowAll(*document, *CoreOf(seen), CameraAxes(0.5, 0.3));
        EXPECT_EQ(seen->GetProjection() == Pperspective, num == 0);
        for (int round = 0; round < 50; ++round) {
            const Vector p(number(random), number(random), number(random));
            const Vector screen = seen->WS(p);
            ASSERT_LT(Len(seen->SW(screen) - p), 1e-6);
            ASSERT_LT(Len(seen->CW(seen->WC(p)) - p), 1e-9);
            const Float pixel = seen->PW_W(p, false);
            ASSERT_NEAR(seen->WP_W(p, true) * pixel, 1, 1e-12);
            const Vector moved = seen->WS(p + seen->CW_V(Vector(pixel, 0, 0))) - screen;
            ASSERT_LT(Len(moved - Vector(1, 0, 0)), 1e-6);
        }
    }
    const Matrix camera = draws->GetMg();
    const Vector seenEnd = draws->WS(Vector(1, 2, 3));
    EXPECT_TRUE(draws->TestPoint(seenEnd.x, seenEnd.y)) << "framed is what plug-ins draw, not what they tell";
    EXPECT_LT(draws->WC(Vector()).z, 20);
    EXPECT_LT(Len(camera.v3 - CameraAxes(0.5, 0.3).v3), 1e-12);
    EXPECT_EQ(draws->GetSceneCamera(document), nullptr);
    EXPECT_EQ(draws->GetEditorCamera()->GetMg().off, camera.off);
    BaseObject* chosen = add(BaseObject::Alloc(Ocamera));
    chosen->SetAbsPos(Vector(1, 2, 3));
    view->setSceneCamera(chosen);
    EXPECT_EQ(draws->GetSceneCamera(document), chosen);
    EXPECT_EQ(draws->GetMg().off, Vector(1, 2, 3));
    chosen->Remove();
    BaseObject::Free(chosen);
    EXPECT_EQ(draws->GetMg().off, camera.off) << "a camera that is gone gives the editor's back";
    Int32 left = 9, top = 9, right = 9, bottom = 9;
    draws->GetFrame(&left, &top, &right, &bottom);
    EXPECT_THAT((std::array{left, top, right, bottom}), ElementsAre(0, 0, 639, 479));
    EXPECT_FALSE(draws->TestPoint(640, 10));
}

TEST_F(ViewTest, TheWorkerRecordsWhatTheMainThreadDoes)
{
    addPainter(square)->SetBit(BIT_ACTIVE);
    view->options.grid = true;
    draw();
    DrawList other;
    bool whole = false;
    Worker& worker = PartOf<Worker>();
    worker.start([&](BaseThread* thread) { whole = DrawDocument(*document, *view, thread, other); });
    worker.join();
    EXPECT_TRUE(whole);
    ASSERT_EQ(other.batches.size(), list.batches.size());
    EXPECT_EQ(other.meshIndices, list.meshIndices);
    EXPECT_EQ(other.vertices.size(), list.vertices.size());

    // Told to break off, it does.
    worker.start([&](BaseThread* thread) {
        while (!thread->TestBreak()) std::this_thread::yield();
        whole = DrawDocument(*document, *view, thread, other);
    });
    worker.stop();
    EXPECT_FALSE(whole);
    EXPECT_EQ(view->recorder.recorded(), nullptr);
}

} // namespace
} // namespace host::test
