#include "view/scene_walk.h"

#include "oinstance.h"

namespace host {
namespace {

// Instances of instances, and caches in caches: no sensible scene goes deeper, and one that links in a circle ends
// here.
constexpr int kDeepest = 200;

struct Place {
    Matrix moved; // what a render instance does to world coordinates
    bool isMoved = false;
    BaseObject* owner = nullptr;       // null outside of caches
    BaseObject* colorSource = nullptr; // null: each shows its own
    int depth = 0;
};

class Walk {
public:
    Walk(BaseDocument& walked, const ShownVisitor& visitor, const ShownVisitor& leaver)
        : document(walked),
          visit(visitor),
          leave(leaver)
    {
    }

    void visitList(BaseObject* first, const Place& place, bool parentVisible)
    {
        if (place.depth > kDeepest) return;
        for (BaseObject* object = first; object; object = object->GetNext()) visitObject(*object, place, parentVisible);
    }

private:
    void visitObject(BaseObject& object, const Place& place, bool parentVisible)
    {
        const Int32 mode = object.GetEditorMode();
        // In a cache nothing is visible that the generator is not.
        const bool own = place.owner          ? parentVisible && mode != MODE_OFF
                         : mode == MODE_UNDEF ? parentVisible
                                              : mode == MODE_ON;
        const LayerData* layer = object.GetLayerData(&document);
        const bool visible = own && (!layer || layer->view);
        BaseObject* product = productOf(object);
        if (visible) {
            const ShownObject shown = shownAt(object, place, !product);
            visit(shown);
            if (product)
                visitList(product, inside(object, place), true);
            else
                visitLinked(object, place);
            if (leave) leave(shown);
        }
        Place below = place;
        ++below.depth;
        visitList(object.GetDown(), below, own);
    }

    static ShownObject shownAt(BaseObject& object, const Place& place, bool showsItself)
    {
        return {.object = object,
                .matrix = place.isMoved ? place.moved * object.GetMg() : object.GetMg(),
                .owner = place.owner ? *place.owner : object,
                .colorSource = place.colorSource ? *place.colorSource : object,
                .elsewhere = place.isMoved,
                .showsItself = showsItself && !object.GetBit(BIT_CONTROLOBJECT)};
    }

    static BaseObject* productOf(BaseObject& object)
    {
        BaseObject* deformed = object.GetDeformCache();
        return deformed ? deformed : object.GetCache();
    }

    static Place inside(BaseObject& generator, const Place& place)
    {
        Place within = place;
        if (!within.owner) within.owner = &generator;
        ++within.depth;
        if (!within.colorSource && !(generator.GetInfo() & OBJECT_USECACHECOLOR)) within.colorSource = &generator;
        return within;
    }

    // A render instance has no geometry of its own.
    void visitLinked(BaseObject& instance, const Place& place)
    {
        if (instance.GetType() != Oinstance) return;
        GeData flag, link;
        if (!instance.GetParameter(DescID(INSTANCEOBJECT_RENDERINSTANCE), flag, DESCFLAGS_GET_0) || !flag.GetBool() ||
            !instance.GetParameter(DescID(INSTANCEOBJECT_LINK), link, DESCFLAGS_GET_0))
            return;
        auto* linked = static_cast<BaseObject*>(link.GetLink(&document, Obase));
        if (!linked || linked == &instance) return;

        Place there = inside(*linked, place);
        if (!place.owner) there.owner = &instance;
        const Matrix here = place.isMoved ? place.moved * instance.GetMg() : instance.GetMg();
        there.moved = here * ~linked->GetMg();
        there.isMoved = true;
        if (there.depth > kDeepest) return;
        if (BaseObject* product = productOf(*linked)) {
            visitList(product, there, true);
            return;
        }
        visit(shownAt(*linked, there, true));
        visitLinked(*linked, there);
    }

    BaseDocument& document;
    const ShownVisitor& visit;
    const ShownVisitor& leave;
};

} // namespace

void VisitShown(BaseDocument& document, const ShownVisitor& visit, const ShownVisitor& leave)
{
    Walk(document, visit, leave).visitList(document.GetFirstObject(), {}, true);
}

void VisitOutline(BaseObject& object, const Matrix& matrix, const std::function<void(const Vector&)>& visit)
{
    Extent box;
    if (object.IsInstanceOf(Opoint)) {
        const auto& points = static_cast<const PointObject&>(object);
        const Vector* positions = points.GetPointR();
        const Int32 count = positions ? points.GetPointCount() : 0;
        const bool isBox = count <= 2;
        for (Int32 i = 0; i < count; ++i) {
            if (isBox)
                box.add(positions[i]);
            else
                visit(matrix * positions[i]);
        }
    } else if (const Vector radius = object.GetRad(); radius.IsNotZero()) {
        box.add(Matrix(), object.GetMp(), radius);
    }
    for (int i = 0; i < 8 && !box.empty(); ++i) visit(matrix * box.corner(i));
}

Extent ExtentOfShown(BaseDocument& document)
{
    Extent extent;
    VisitShown(document, [&extent](const ShownObject& shown) {
        if (shown.showsItself)
            VisitOutline(shown.object, shown.matrix, [&extent](const Vector& point) { extent.add(point); });
    });
    return extent;
}

} // namespace host
