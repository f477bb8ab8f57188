#include "core/layer.h"

#include "c4d_basedocument.h"
#include "core/document.h"

namespace host {
namespace {

bool anySolo(const NodeCore* layer)
{
    for (; layer; layer = layer->next) {
        if (static_cast<const LayerCore*>(layer)->settings.solo || anySolo(layer->firstChild)) return true;
    }
    return false;
}

} // namespace

LayerCore::LayerCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<LayerObject>();
}

const LayerData& LayerCore::Effective() const
{
    effective = settings;
    const ListCore* all = List();
    if (!settings.solo && all && anySolo(all->firstChild)) effective.view = effective.render = false;
    return effective;
}

bool LayerCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    if (!NodeCore::CopyBodyTo(copy, flags, translation)) return false;
    static_cast<LayerCore&>(copy).settings = settings;
    return true;
}

// The switches in the order in which files keep them.
static constexpr Bool LayerData::*kSwitches[] = {
    &LayerData::solo,       &LayerData::view,      &LayerData::render,      &LayerData::manager,   &LayerData::locked,
    &LayerData::generators, &LayerData::deformers, &LayerData::expressions, &LayerData::animation, &LayerData::xref};

bool LayerCore::WriteBody(HyperFile& file) const
{
    bool ok = NodeCore::WriteBody(file);
    for (const auto field : kSwitches) ok = ok && file.WriteBool(settings.*field);
    return ok && file.WriteVector(settings.color);
}

bool LayerCore::ReadBody(HyperFile& file, Int32 level)
{
    bool ok = NodeCore::ReadBody(file, level);
    for (const auto field : kSwitches) ok = ok && file.ReadBool(&(settings.*field));
    return ok && file.ReadVector(&settings.color);
}

LayerCore* LayerOf(const NodeCore& node, const DocumentCore* document)
{
    if (node.Kind() == NodeKind::Layer) return CoreOf(node.As<LayerObject>());
    const BaseList2D* linked = node.layer.GetLink(FacadeOf<BaseDocument>(document), Olayer);
    return static_cast<LayerCore*>(CoreOf(static_cast<const C4DAtom*>(linked)));
}

void SetLayer(NodeCore& node, LayerCore* layer)
{
    if (node.Kind() == NodeKind::Layer || layer == LayerOf(node, nullptr)) return;
    node.layer.SetLink(FacadeOf<LayerObject>(layer));
    node.Raise(DIRTYFLAGS_DATA);
}

} // namespace host

LayerObject* LayerObject::Alloc()
{
    return host::FacadeOf<LayerObject>(host::AllocNode(host::NodeKind::Layer, Olayer));
}

void LayerObject::Free(LayerObject*& layer)
{
    host::FreeNode(host::CoreOf(layer));
    layer = nullptr;
}

LayerObject* LayerObject::GetNext()
{
    return host::FacadeOf<LayerObject>(core->next);
}

LayerObject* LayerObject::GetPred()
{
    return host::FacadeOf<LayerObject>(core->previous);
}

LayerObject* LayerObject::GetUp()
{
    return host::FacadeOf<LayerObject>(core->up);
}

LayerObject* LayerObject::GetDown()
{
    return host::FacadeOf<LayerObject>(core->firstChild);
}

LayerObject* LayerObject::GetDownLast()
{
    return host::FacadeOf<LayerObject>(core->lastChild);
}
