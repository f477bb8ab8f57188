// The host's own classes that need no data beyond their kind's.
#include "core/layer.h"
#include "core/layer_set.h"
#include "core/material.h"
#include "core/node_class.h"
#include "core/object.h"
#include "core/unit_scale.h"
#include "drendersettings.h"
#include "mmaterial.h"

namespace host {

void EnterNodeClasses(Registrations& registry)
{
    registry.EnterCustomData("UnitScale", CUSTOMDATATYPE_INFO_LOADSAVE, NewUnitScaleDataType(), kUnitScaleDiskLevel);
    registry.EnterCustomData("LayerSet", CUSTOMDATATYPE_INFO_LOADSAVE, NewLayerSetType(), kLayerSetDiskLevel);
    struct Plain {
        Int32 id;
        const char* name;
    };
    for (const Plain& object : {Plain{Onull, "Null"}, {Oinstance, "Instance"}, {Oxref, "XRef"}}) {
        registry.EnterClass(
            {.id = object.id, .kind = NodeKind::Object, .make = MakeCore<ObjectCore>, .name = object.name});
    }
    registry.EnterClass({.id = Olayer, .kind = NodeKind::Layer, .make = MakeCore<LayerCore>, .name = "Layer"});
}

void EnterMaterialClasses(Registrations& registry)
{
    registry.EnterClass({.id = Mmaterial,
                         .kind = NodeKind::Material,
                         .make = MakeCore<StandardMaterialCore>,
                         .name = "Mat",
                         .prepare =
                             [](NodeCore& node) {
                                 node.container.SetBool(MATERIAL_USE_COLOR, true);
                                 node.container.SetVector(MATERIAL_COLOR_COLOR, Vector(0.8));
                             },
                         .shownColor = MATERIAL_COLOR_COLOR});
    registry.EnterClass({.id = Xbitmap, .kind = NodeKind::Shader, .make = MakeCore<ShaderCore>, .name = "Bitmap"});
    registry.EnterClass({.id = Xcolor, .kind = NodeKind::Shader, .make = MakeCore<ShaderCore>, .name = "Color"});
    registry.EnterClass(
        {.id = Rbase,
         .kind = NodeKind::RenderData,
         .make = MakeCore<RenderDataCore>,
         .name = "My Render Setting",
         .prepare = [](NodeCore& node) { node.container.SetInt32(RDATA_RENDERENGINE, RDATA_RENDERENGINE_STANDARD); }});
}

} // namespace host
