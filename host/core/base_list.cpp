// The facades of nodes in general.
#include "core/document.h"
#include "core/layer.h"
#include "core/node.h"
#include "core/node_class.h"

using host::CoreOf;
using host::FacadeOf;
using host::NodeCore;

namespace {

// Makes a node ready to be put beside or below `place`. False if that cannot be: one of them is missing, or the node
// would come to stand below itself.
bool takeOut(NodeCore* node, const NodeCore* place)
{
    if (!node || !place || node->Contains(*place)) return false;
    node->Unlink();
    return true;
}

} // namespace

// --- C4DAtom

Int32 C4DAtom::GetType() const
{
    return core->Type();
}

Bool C4DAtom::IsInstanceOf(Int32 id) const
{
    return core->IsInstanceOf(id);
}

Bool C4DAtom::Message(Int32 type, void* data)
{
    return host::SendTo(*core, type, data);
}

C4DAtom* C4DAtom::GetClone(COPYFLAGS flags, AliasTrans* trn)
{
    return FacadeOf<C4DAtom>(host::CloneNode(*core, flags, trn));
}

Bool C4DAtom::CopyTo(C4DAtom* dst, COPYFLAGS flags, AliasTrans* trn)
{
    return dst && host::CopyNode(*core, *dst->core, flags, trn);
}

UInt32 C4DAtom::GetDirty(DIRTYFLAGS flags) const
{
    return core->Dirty(flags);
}

void C4DAtom::SetDirty(DIRTYFLAGS flags)
{
    core->Raise(flags);
}

// --- GeListNode

GeListNode* GeListNode::GetNext()
{
    return FacadeOf<GeListNode>(core->next);
}

GeListNode* GeListNode::GetPred()
{
    return FacadeOf<GeListNode>(core->previous);
}

GeListNode* GeListNode::GetDown()
{
    return FacadeOf<GeListNode>(core->firstChild);
}

GeListNode* GeListNode::GetUp()
{
    return FacadeOf<GeListNode>(core->up);
}

GeListNode* GeListNode::GetDownLast()
{
    return FacadeOf<GeListNode>(core->lastChild);
}

void GeListNode::InsertBefore(GeListNode* node)
{
    if (takeOut(core, CoreOf(node))) node->core->InsertBefore(*core);
}

void GeListNode::InsertAfter(GeListNode* node)
{
    if (takeOut(core, CoreOf(node))) node->core->InsertBehind(*core);
}

void GeListNode::InsertUnder(GeListNode* node)
{
    if (takeOut(core, CoreOf(node))) node->core->InsertChild(*core, nullptr);
}

void GeListNode::InsertUnderLast(GeListNode* node)
{
    if (takeOut(core, CoreOf(node))) node->core->InsertChild(*core, node->core->lastChild);
}

void GeListNode::Remove()
{
    core->Unlink();
}

NodeData* GeListNode::GetNodeData(Int32 index)
{
    return index == 0 ? core->data : nullptr;
}

const NodeData* GeListNode::GetNodeData(Int32 index) const
{
    return index == 0 ? core->data : nullptr;
}

BaseDocument* GeListNode::GetDocument()
{
    return FacadeOf<BaseDocument>(core->Document());
}

Bool GeListNode::GetNBit(NBIT bit) const
{
    const auto position = static_cast<std::size_t>(bit);
    return position < core->nodeBits.size() && core->nodeBits[position];
}

Bool GeListNode::ChangeNBit(NBIT bit, NBITCONTROL bitmode)
{
    const auto position = static_cast<std::size_t>(bit);
    if (position >= core->nodeBits.size()) return false;
    const bool before = core->nodeBits[position];
    core->nodeBits[position] = bitmode == NBITCONTROL_TOGGLE ? !before : bitmode == NBITCONTROL_SET;
    return core->nodeBits[position] != before;
}

Int32 GeListNode::GetInfo()
{
    return core->nodeClass->info;
}

// --- GeListHead

GeListNode* GeListHead::GetFirst()
{
    return FacadeOf<GeListNode>(core->firstChild);
}

void GeListHead::InsertLast(GeListNode* node)
{
    if (takeOut(CoreOf(node), core)) core->InsertChild(*CoreOf(node), core->lastChild);
}

// --- BaseList2D

BaseList2D* BaseList2D::Alloc(Int32 type)
{
    return FacadeOf<BaseList2D>(host::AllocNode(type));
}

void BaseList2D::Free(BaseList2D*& node)
{
    host::FreeNode(CoreOf(node));
    node = nullptr;
}

BaseList2D* BaseList2D::GetNext()
{
    return FacadeOf<BaseList2D>(core->next);
}

String BaseList2D::GetName() const
{
    return core->name;
}

void BaseList2D::SetName(const String& name)
{
    if (name == core->name) return;
    core->name = name;
    core->Raise(DIRTYFLAGS_DATA);
}

BaseContainer BaseList2D::GetData()
{
    return core->container;
}

BaseContainer* BaseList2D::GetDataInstance()
{
    return &core->container;
}

const BaseContainer* BaseList2D::GetDataInstance() const
{
    return &core->container;
}

void BaseList2D::SetData(const BaseContainer& bc, Bool add)
{
    if (add)
        core->container.MergeContainer(bc);
    else
        core->container = bc;
    core->Raise(DIRTYFLAGS_DATA);
}

void BaseList2D::SetBit(Int32 mask)
{
    core->bits |= mask;
}

Bool BaseList2D::GetBit(Int32 mask) const
{
    return (core->bits & mask) != 0;
}

BaseShader* BaseList2D::GetFirstShader() const
{
    return FacadeOf<BaseShader>(core->FirstShader());
}

void BaseList2D::InsertShader(BaseShader* shader, BaseShader* pred)
{
    host::ListCore& shaders = core->Shaders();
    if (takeOut(CoreOf(shader), &shaders)) shaders.Insert(*CoreOf(shader), CoreOf(pred));
}

LayerObject* BaseList2D::GetLayerObject(BaseDocument* doc)
{
    return FacadeOf<LayerObject>(host::LayerOf(*core, CoreOf(doc)));
}

Bool BaseList2D::SetLayerObject(LayerObject* layer)
{
    host::SetLayer(*core, CoreOf(layer));
    return true;
}

const LayerData* BaseList2D::GetLayerData(BaseDocument* doc, Bool rawdata)
{
    const host::LayerCore* layer = host::LayerOf(*core, CoreOf(doc));
    return layer ? (rawdata ? &layer->settings : &layer->Effective()) : nullptr;
}

Bool BaseList2D::SetLayerData(BaseDocument* doc, const LayerData& data)
{
    host::LayerCore* layer = host::LayerOf(*core, CoreOf(doc));
    if (!layer) return false;
    layer->settings = data;
    layer->Raise(DIRTYFLAGS_DATA);
    return true;
}
