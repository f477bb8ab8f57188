#include "view/draw_document.h"

#include "c4d_baseselect.h"
#include "c4d_scenehookdata.h"
#include "c4d_shader.h"
#include "c4d_thread.h"
#include "core/document.h"
#include "core/node_class.h"
#include "ddoc.h"
#include "obase.h"
#include "ttexture.h"
#include "view/floor_grid.h"
#include "view/mesh_recorder.h"
#include "view/scene_walk.h"

#include <optional>

namespace host {
namespace {

const Vector kActiveBoxColor(1, 0.62, 0.12);

// Materials and objects keep amounts of light only in a document that says so.
DrawColors colorsOf(BaseDocument& document)
{
    const BaseContainer* settings = document.GetSettingsInstance(DOCUMENTSETTINGS_DOCUMENT);
    const bool linear = settings && settings->GetBool(DOCUMENT_LINEARWORKFLOW) &&
                        settings->GetInt32(DOCUMENT_COLORPROFILE) == DOCUMENT_COLORPROFILE_LINEAR;
    return linear ? DrawColors::Linear : DrawColors::Display;
}

Vector defaultColor(BaseDocument& document)
{
    const BaseContainer* settings = document.GetSettingsInstance(DOCUMENTSETTINGS_DOCUMENT);
    return settings ? settings->GetVector(DOCUMENT_DEFAULTMATERIAL_COLOR, Vector(0.8)) : Vector(0.8);
}

// The colour of an object where no material covers it.
Vector colorOf(BaseObject& object, BaseDocument& document)
{
    ObjectColorProperties properties;
    object.GetColorProperties(&properties);
    if (properties.usecolor == ID_BASEOBJECT_USECOLOR_LAYER) {
        const LayerData* layer = object.GetLayerData(&document);
        return layer ? layer->color : defaultColor(document);
    }
    return properties.usecolor == ID_BASEOBJECT_USECOLOR_OFF ? defaultColor(document) : properties.color;
}

bool showsColorAlways(BaseObject& object)
{
    ObjectColorProperties properties;
    object.GetColorProperties(&properties);
    return properties.usecolor == ID_BASEOBJECT_USECOLOR_ALWAYS;
}

// Where a list of texture tags begins: the object's own, else those of what it stands below or was made by.
BaseTag* firstTextureTag(BaseObject& object)
{
    for (BaseObject* from = &object; from; from = from->GetUp() ? from->GetUp() : from->GetCacheParent())
        if (BaseTag* tag = from->GetTag(Ttexture)) return tag;
    return nullptr;
}

const BaseSelect* selectionOf(BaseObject& object, const String& name)
{
    for (BaseTag* tag = object.GetFirstTag(); tag; tag = tag->GetNext())
        if (tag->GetType() == Tpolygonselection && tag->GetName() == name)
            return static_cast<SelectionTag*>(tag)->GetBaseSelect();
    return nullptr;
}

// The colour that a material is shown with. One that is made of others shows that of the first.
std::optional<Vector> shownColorOf(BaseMaterial& material, int depth = 0)
{
    constexpr int kDeepest = 8; // materials that link in a circle have no colour
    GeData color;
    const Int32 parameter = CoreOf(&material)->nodeClass->shownColor;
    if (!parameter || !material.GetParameter(DescID(parameter), color, DESCFLAGS_GET_0)) return {};
    if (color.GetType() == DA_VECTOR) return color.GetVector();
    auto* part = static_cast<BaseMaterial*>(color.GetLink(nullptr, Mbase));
    return part && depth < kDeepest ? shownColorOf(*part, depth + 1) : std::nullopt;
}

// What covers parts of an object, in the order in which later ones hide earlier ones.
struct Covering {
    std::vector<const BaseSelect*> claims; // null: all of it
    std::vector<Vector> colors;
};

Covering coveringOf(BaseObject& object)
{
    Covering covering;
    for (BaseTag* tag = firstTextureTag(object); tag; tag = tag->GetNext()) {
        BaseMaterial* material = tag->GetType() == Ttexture ? static_cast<TextureTag*>(tag)->GetMaterial() : nullptr;
        const std::optional<Vector> color = material ? shownColorOf(*material) : std::nullopt;
        GeData side, restriction;
        if (!color || (tag->GetParameter(DescID(TEXTURETAG_SIDE), side, DESCFLAGS_GET_0) &&
                       side.GetInt32() == TEXTURETAG_SIDE_BACK))
            continue; // both sides are drawn alike, as the front is
        tag->GetParameter(DescID(TEXTURETAG_RESTRICTION), restriction, DESCFLAGS_GET_0);
        const BaseSelect* claim = nullptr;
        if (restriction.GetType() == DA_STRING && restriction.GetString().Content()) {
            claim = selectionOf(object, restriction.GetString());
            if (!claim) continue; // a selection that this object lacks holds nothing
        }
        covering.claims.push_back(claim);
        covering.colors.push_back(*color);
    }
    return covering;
}

Extent extentOfDrawn(const DrawList& list)
{
    Extent extent;
    for (const DrawBatch& batch : list.batches) {
        if (batch.state.space != DrawSpace::World || batch.box.empty()) continue;
        const std::array<float, 3>&low = batch.box.minimum, &high = batch.box.maximum;
        const Vector a(low[0], low[1], low[2]), b(high[0], high[1], high[2]);
        extent.add(batch.state.matrix, (a + b) * 0.5, (b - a) * 0.5);
    }
    return extent;
}

class Redraw {
public:
    Redraw(BaseDocument& drawn, ViewCore& seen, BaseThread* on, DrawList& recorded)
        : document(drawn),
          view(seen),
          thread(on),
          list(recorded),
          meshes(recorded),
          colors(colorsOf(drawn))
    {
    }

    bool run()
    {
        callHooks(SCENEHOOKDRAW_DRAW_PASS_AFTER_CLEAR, false);
        std::vector<BaseObject*> plugins; // shown ones, in tree order
        const auto drawOwn = [this](const ShownObject& shown) {
            if (shown.showsItself && !broken()) drawObject(shown);
        };
        const auto letPluginDraw = [this, &plugins](const ShownObject& shown) {
            if (shown.elsewhere || !shown.object.GetNodeData() || broken()) return;
            callObject(shown.object, DRAWPASS_OBJECT, true);
            plugins.push_back(&shown.object);
        };
        VisitShown(document, drawOwn, letPluginDraw);
        callHooks(SCENEHOOKDRAW_DRAW_PASS, true);
        // Depths are known by now: the scene hides what is behind it, though the grid comes last.
        if (view.options.grid) DrawFloorGrid(list.frame, extentOfDrawn(list), list);
        if (view.options.boxes) drawActiveBoxes();
        callActive(plugins, BIT_ACTIVE, DRAWPASS_BOX, true);
        callActive(plugins, BIT_ACTIVE, DRAWPASS_HANDLES, false);
        callHooks(SCENEHOOKDRAW_HIGHLIGHT_PASS_BEFORE_TOOL, false);
        callHooks(SCENEHOOKDRAW_HIGHLIGHT_PASS, false);
        callActive(plugins, BIT_HIGHLIGHT, DRAWPASS_HIGHLIGHTS, false);
        callHooks(SCENEHOOKDRAW_HIGHLIGHT_PASS_INV, false);
        return !broken();
    }

private:
    bool broken() const { return thread && thread->TestBreak(); }

    void drawObject(const ShownObject& shown)
    {
        if (shown.owner.GetBit(BIT_ACTIVE)) addToActive(shown);
        if (!shown.object.IsInstanceOf(Opolygon)) return;
        auto& object = static_cast<PolygonObject&>(shown.object);
        DrawRecorder& recorder = view.recorder;
        recorder.reset(true);
        recorder.setSpace(DrawSpace::World, shown.matrix);
        const Vector plain = colorOf(shown.colorSource, document);
        if (object.GetPolygonCount() == 0) {
            if (!view.options.boxes) return;
            Extent extent;
            for (Int32 i = 0; i < object.GetPointCount(); ++i) extent.add(object.GetPointR()[i]);
            drawBox(extent, displayColor(plain));
            return;
        }
        if (!view.options.meshes) return;
        const Covering covering = showsColorAlways(shown.colorSource) ? Covering() : coveringOf(object);
        const std::vector<DrawMesh>& parts = meshes.record(object, covering.claims);
        for (size_t i = 0; i < parts.size(); ++i) recorder.mesh(parts[i], i ? covering.colors[i - 1] : plain, colors);
    }

    Vector displayColor(const Vector& color) const
    {
        return colors == DrawColors::Linear ? TransformColor(color, COLORSPACETRANSFORMATION_LINEAR_TO_SRGB) : color;
    }

    void drawBox(const Extent& extent, const Vector& color)
    {
        if (extent.empty()) return;
        view.recorder.setPen(color);
        for (int from = 0; from < 8; ++from)
            for (int axis = 1; axis < 8; axis *= 2)
                if (!(from & axis)) view.recorder.line(extent.corner(from), extent.corner(from | axis));
    }

    // A selected object's box has the object's own axes.
    void addToActive(const ShownObject& shown)
    {
        if (active.empty() || active.back().first != &shown.owner) active.emplace_back(&shown.owner, Extent());
        Extent& box = active.back().second;
        VisitOutline(shown.object, ~shown.owner.GetMg() * shown.matrix, [&box](const Vector& p) { box.add(p); });
    }

    void drawActiveBoxes()
    {
        for (const auto& [object, extent] : active) {
            view.recorder.reset(true);
            view.recorder.setSpace(DrawSpace::World, object->GetMg());
            drawBox(extent, kActiveBoxColor);
        }
    }

    void callObject(BaseObject& object, DRAWPASS pass, bool depth)
    {
        view.recorder.reset(depth);
        BaseDrawHelp help = view.drawHelp(document);
        static_cast<ObjectData*>(object.GetNodeData())->Draw(&object, pass, view.As<BaseDraw>(), &help);
    }

    void callActive(const std::vector<BaseObject*>& objects, Int32 bit, DRAWPASS pass, bool depth)
    {
        for (BaseObject* object : objects)
            if (object->GetBit(bit)) callObject(*object, pass, depth);
    }

    void callHooks(SCENEHOOKDRAW pass, bool depth)
    {
        for (NodeCore* hook = CoreOf(&document)->hooks.firstChild; hook; hook = hook->next) {
            if (!hook->data || broken()) continue;
            view.recorder.reset(depth);
            BaseDrawHelp help = view.drawHelp(document);
            static_cast<SceneHookData*>(hook->data)
                ->Draw(hook->As<BaseSceneHook>(), &document, view.As<BaseDraw>(), &help, thread, pass);
        }
    }

    BaseDocument& document;
    ViewCore& view;
    BaseThread* thread;
    DrawList& list;
    MeshRecorder meshes;
    DrawColors colors;
    std::vector<std::pair<BaseObject*, Extent>> active; // selected objects, with what they show
};

} // namespace

bool DrawDocument(BaseDocument& document, ViewCore& view, BaseThread* thread, DrawList& list)
{
    list = DrawList();
    list.frame = view.frame();
    view.recorder.begin(list);
    const bool whole = Redraw(document, view, thread, list).run();
    view.recorder.end();
    return whole;
}

void ShowAll(BaseDocument& document, ViewCore& view, const Matrix& axes, Float distanceFactor)
{
    const Extent extent = ExtentOfShown(document);
    if (extent.empty()) return;
    const ViewFrame turned = view.frameAlong(axes);
    Framing boxes(turned, extent);
    for (int i = 0; i < 8; ++i) boxes.add(extent.corner(i));
    view.look(boxes.framed(distanceFactor));

    // What plug-ins draw is known only when they have drawn it.
    DrawList drawn;
    const ViewOptions usual =
        std::exchange(view.options, {.grid = false, .boxes = view.options.boxes, .meshes = false});
    DrawDocument(document, view, nullptr, drawn);
    view.options = usual;
    Framing exact(turned, extent);
    bool known = false;
    const auto add = [&exact, &known](const Vector& point) {
        exact.add(point);
        known = true;
    };
    VisitShown(document, [&add](const ShownObject& shown) {
        if (shown.showsItself && shown.object.IsInstanceOf(Opolygon) &&
            static_cast<PolygonObject&>(shown.object).GetPolygonCount() > 0)
            VisitOutline(shown.object, shown.matrix, add);
    });
    for (const DrawBatch& batch : drawn.batches) {
        if (batch.state.space != DrawSpace::World) continue;
        for (size_t i = 0; i < batch.count; ++i) {
            const std::array<float, 3>& p = drawn.vertices[batch.first + i].position;
            add(batch.state.matrix * Vector(p[0], p[1], p[2]));
        }
    }
    if (known) view.look(exact.framed(distanceFactor));
}

} // namespace host
