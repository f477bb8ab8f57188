#include "view/scene_walk.h"

#include "oinstance.h"

namespace host {
namespace {

// Instances of instances, and caches in caches: no sensible scene goes deeper, and one that links in a circle ends
// here.
constexpr int kDeepest = 64;

struct Place {
    Matrix moved; // what a render instance does to world coordinates
    bool isMoved = false;
    BaseObject* owner = nullptr;       // null outside of caches
    BaseObject* colorSource = nullptr; // null: each shows its own
    int depth = 0;
};

class Walk {
public:
    Walk(BaseDocument& walked, const std::function<void(const ShownObject&)>& visitor)
        : document(walked),
          visit(visitor)
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
            show(object, place, !product);
            if (product)
                visitList(product, inside(object, place), true);
            else
                visitLinked(object, place);
        }
        Place below = place;
        ++below.depth;
        visitList(object.GetDown(), below, own);
    }

    void show(BaseObject& object, const Place& place, bool showsItself)
    {
        visit({.object = object,
               .matrix = place.isMoved ? place.moved * object.GetMg() : object.GetMg(),
               .owner = place.owner ? *place.owner : object,
               .colorSource = place.colorSource ? *place.colorSource : object,
               .elsewhere = place.isMoved,
               .showsItself = showsItself && !object.GetBit(BIT_CONTROLOBJECT)});
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
        show(*linked, there, true);
        visitLinked(*linked, there);
    }

    BaseDocument& document;
    const std::function<void(const ShownObject&)>& visit;
};

} // namespace

void VisitShown(BaseDocument& document, const std::function<void(const ShownObject&)>& visit)
{
    Walk(document, visit).visitList(document.GetFirstObject(), {}, true);
}

void AddExtent(BaseObject& object, const Matrix& matrix, Extent& extent)
{
    if (!object.IsInstanceOf(Opoint)) {
        const Vector radius = object.GetRad();
        if (radius.IsNotZero()) extent.add(matrix, object.GetMp(), radius);
        return;
    }
    const auto& points = static_cast<const PointObject&>(object);
    const Vector* positions = points.GetPointR();
    for (Int32 i = 0; positions && i < points.GetPointCount(); ++i) extent.add(matrix * positions[i]);
}

Extent ExtentOfShown(BaseDocument& document)
{
    Extent extent;
    VisitShown(document, [&extent](const ShownObject& shown) {
        if (shown.showsItself) AddExtent(shown.object, shown.matrix, extent);
    });
    return extent;
}

} // namespace host
