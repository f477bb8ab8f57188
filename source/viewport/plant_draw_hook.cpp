#include "viewport/plant_draw_hook.h"

#include "oinstance.h"
#include "plant/plant_build.h"
#include "plant/plant_units.h"
#include "support/plugin_ids.h"

#include <cmath>

namespace {

Bool isShownByLayer(BaseObject& object)
{
    const LayerData* layer = object.GetLayerData(DocumentOf(object));
    return !layer || layer->view;
}

// By the nearest object upwards that says so, through the caches that it stands in.
Bool isShownInEditor(BaseObject& object)
{
    for (BaseObject* at = &object; at;) {
        if (at->GetEditorMode() != MODE_UNDEF) return at->GetEditorMode() != MODE_OFF;
        BaseObject* parent = at->GetUp();
        at = parent ? parent : at->GetCacheParent();
    }
    return true;
}

Bool canDrawCloud(BaseObject& plant)
{
    GeData proxyOnly, mode;
    if (!plant.GetParameter(PLANT_PROXY_ONLY, proxyOnly, DESCFLAGS_GET_0)) return false;
    if (!plant.GetParameter(PLANT_DISPLAY_MODE, mode, DESCFLAGS_GET_0)) return false;
    return proxyOnly.GetInt32() != PLANT_PROXY_ONLY_ON && mode.GetInt32() == PLANT_DISPLAY_MODE_CLOUD &&
           isShownByLayer(plant);
}

// The plant that a render instance shows; null for other instances.
BaseObject* renderedPlant(BaseObject& instance)
{
    GeData rendered, link;
    instance.GetParameter(INSTANCEOBJECT_RENDERINSTANCE, rendered, DESCFLAGS_GET_0);
    instance.GetParameter(INSTANCEOBJECT_LINK, link, DESCFLAGS_GET_0);
    if (!rendered.GetBool()) return nullptr;
    return static_cast<BaseObject*>(link.GetLink(DocumentOf(instance), kPlantObjectId));
}

void drawIfPlant(BaseObject& object, BaseDraw& view)
{
    if (object.GetType() == kPlantObjectId && canDrawCloud(object)) DrawPlant(object.GetMg(), object, object, view);
    if (object.GetType() != Oinstance || !isShownByLayer(object)) return;
    BaseObject* plant = renderedPlant(object);
    if (plant && canDrawCloud(*plant)) DrawPlant(object.GetMg(), object, *plant, view);
}

void drawRecursively(BaseObject& object, BaseDraw& view)
{
    if (BaseObject* deformed = object.GetDeformCache())
        drawRecursively(*deformed, view);
    else
        drawIfPlant(object, view);
    if (BaseObject* cache = object.GetCache()) drawRecursively(*cache, view);
    for (BaseObject* child = object.GetDown(); child; child = child->GetNext()) drawRecursively(*child, view);
}

Vector colourOf(const DrawNode& node)
{
    return Vector(node.colour);
}

// Thick branches come first, so everything behind one that is thinner than a pixel is invisible too.
void drawRibbons(const C4dDrawHelper& cloud, const Vector& viewing, Float pixel, BaseDraw& view)
{
    size_t first = 0;
    for (const DrawPolylineHeader& polyline : cloud.polylines) {
        if (pixel > 0 && 2 * polyline.maxRadius < pixel) return;
        // Compatibility: the node of a branch without segments is not passed over.
        if (polyline.count < 2) continue;
        if (polyline.count > cloud.nodes.size() - first) return;

        const DrawNode* before = nullptr;
        Vector sideBefore;
        for (size_t i = first; i < first + polyline.count; ++i) {
            const DrawNode& node = cloud.nodes[i];
            const Vector side = Cross(node.tangent, viewing).GetNormalized() * node.radius;
            if (before) {
                Vector corners[] = {node.position - side, node.position + side, before->position + sideBefore,
                                    before->position - sideBefore};
                Vector colours[] = {colourOf(node), colourOf(node), colourOf(*before), colourOf(*before)};
                view.DrawPolygon(corners, colours, true);
            }
            before = &node;
            sideBefore = side;
        }
        first += polyline.count;
    }
}

// How many of the points are worth drawing: one for every four by four pixels that the leaves cover.
Int32 visiblePoints(const C4dDrawHelper& cloud, Float pixel)
{
    constexpr Float kPixelsOfPoint = 4;
    Float ratio = 1;
    if (pixel > 0) {
        const Float side = kPixelsOfPoint * pixel;
        const Float wanted = cloud.density * cloud.scale * cloud.meanArea / (side * side);
        if (wanted < 1) ratio = FMax(wanted, 0); // what is no number draws them all
    }
    return static_cast<Int32>(std::floor(static_cast<Float>(cloud.points.size()) * ratio));
}

// Points have no side that could be lit.
void prepareForPoints(BaseDraw& view)
{
    constexpr Float kPointSize = 2; // pixels
    view.SetLightList(BDRAW_SETLIGHTLIST_NOLIGHTS);
    view.SetPointSize(kPointSize);
}

} // namespace

NodeData* PlantDrawSceneHook::Alloc()
{
    return NewObjClear(PlantDrawSceneHook);
}

Bool PlantDrawSceneHook::Draw(BaseSceneHook* /*node*/, BaseDocument* document, BaseDraw* view, BaseDrawHelp* /*help*/,
                              BaseThread* /*thread*/, SCENEHOOKDRAW flags)
{
    if (!(flags & SCENEHOOKDRAW_DRAW_PASS)) return true;
    for (BaseObject* object = document->GetFirstObject(); object; object = object->GetNext())
        drawRecursively(*object, *view);
    return true;
}

void DrawPlant(const Matrix& matrix, BaseObject& standing, BaseObject& plant, BaseDraw& view)
{
    const BasePlantObject* data = PlantOf(&plant);
    if (!data || !isShownInEditor(standing)) return;
    if (!standing.GetDeformMode() || !plant.GetDeformMode()) return;
    const vdt::ModelHandle held = data->model;
    if (!ReadyVariant(held)) return;

    // The generator may fill the lists anew while they are drawn.
    const C4dDrawHelper cloud = data->drawHelper;
    view.SetMatrix_Matrix(&standing, matrix);
    const Float pixel = view.PW_W(matrix.off, false);
    const Matrix rotation(Vector(), matrix.v1, matrix.v2, matrix.v3);
    drawRibbons(cloud, (~rotation).TransformVector(view.GetMg().v3), pixel, view);
    if (cloud.points.empty()) return;

    prepareForPoints(view);
    constexpr Int32 kColourComponents = 3;
    view.DrawPointArray(visiblePoints(cloud, pixel), cloud.points.data(), cloud.pointColours.data(), kColourComponents);
}
