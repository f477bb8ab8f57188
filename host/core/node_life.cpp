// How nodes come, are copied and go.
#include "c4d_nodedata.h"
#include "core/node.h"
#include "core/node_class.h"

#include <algorithm>

namespace host {
namespace {

NodeCore* allocNode(const NodeClass& nodeClass)
{
    if (!nodeClass.make) return nullptr;
    std::unique_ptr<NodeCore> made = nodeClass.make(nodeClass);
    if (!made) return nullptr;

    made->name = nodeClass.name;
    if (nodeClass.prepare) nodeClass.prepare(*made);
    NodeCore* node = made.release();
    if (nodeClass.allocator && !node->StartData(nodeClass.allocator())) {
        FreeNode(node);
        return nullptr;
    }
    return node;
}

bool copyChain(const NodeCore& from, NodeCore& to, COPYFLAGS flags, AliasTrans* translation)
{
    std::vector<NodeCore*> present;
    while (NodeCore* child = to.firstChild) {
        child->Unlink();
        present.push_back(child);
    }

    bool ok = true;
    for (const NodeCore* child = from.firstChild; child && ok; child = child->next) {
        const auto reused = std::ranges::find(present, child->nodeClass, &NodeCore::nodeClass);
        NodeCore* copy = nullptr;
        if (reused == present.end()) {
            copy = CloneNode(*child, flags, translation);
        } else {
            copy = *reused;
            present.erase(reused);
            ok = CopyNode(*child, *copy, flags, translation);
        }
        ok = ok && copy;
        if (copy) to.InsertChild(*copy, to.lastChild);
    }
    for (NodeCore* left : present) FreeNode(left);
    return ok;
}

bool copyBranches(const NodeCore& from, NodeCore& to, COPYFLAGS flags, AliasTrans* translation)
{
    const std::vector<ListCore*> sources = from.Branches();
    // Shaders come last and may be missing on one side.
    if (sources.size() > to.Branches().size()) to.Shaders();
    const std::vector<ListCore*> targets = to.Branches();
    const COPYFLAGS below = flags & ~COPYFLAGS_NO_HIERARCHY;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (i >= sources.size())
            targets[i]->Flush();
        else if (!copyChain(*sources[i], *targets[i], below, translation))
            return false;
    }
    return true;
}

} // namespace

bool NodeCore::StartData(NodeData* made)
{
    data = made;
    if (!data) return false;
    data->attachedNode = As<GeListNode>();
    initialised = data->Init(data->attachedNode) != 0;
    return initialised;
}

void NodeCore::EndData()
{
    if (!data) return;
    if (initialised) data->Free(data->attachedNode);
    initialised = false;
    DeleteObj(data);
}

NodeCore* AllocNode(NodeKind kind, Int32 type)
{
    const Registrations* registry = Registrations::Current();
    const NodeClass* nodeClass = registry ? registry->FindClass(kind, type) : nullptr;
    return nodeClass ? allocNode(*nodeClass) : nullptr;
}

NodeCore* AllocNode(Int32 type)
{
    const Registrations* registry = Registrations::Current();
    const NodeClass* nodeClass = registry ? registry->FindClass(type) : nullptr;
    return nodeClass ? allocNode(*nodeClass) : nullptr;
}

void FreeNode(NodeCore* node)
{
    if (!node) return;
    node->Unlink();
    node->FreeCaches();
    node->EndData();
    for (ListCore* branch : node->Branches()) branch->Flush();
    while (node->firstChild) FreeNode(node->firstChild);
    delete node;
}

bool CopyNode(const NodeCore& from, NodeCore& to, COPYFLAGS flags, AliasTrans* translation)
{
    if (&from == &to) return true;
    if (from.nodeClass != to.nodeClass) return false;

    NodeCore::NoteCopy(translation, from.GetMarker(), to.GetMarker());
    to.name = from.name;
    if (!(flags & COPYFLAGS_NO_BITS)) {
        to.bits = from.bits;
        to.nodeBits = from.nodeBits;
    }
    from.layer.CopyTo(&to.layer, flags, translation);
    if (!from.container.CopyTo(&to.container, flags, translation)) return false;
    if (!from.CopyBodyTo(to, flags, translation)) return false;
    if (from.data && to.data &&
        !from.data->CopyTo(to.data, from.As<GeListNode>(), to.As<GeListNode>(), flags, translation)) {
        return false;
    }
    to.Raise(DIRTYFLAGS_DATA);

    if (!(flags & COPYFLAGS_NO_BRANCHES) && !copyBranches(from, to, flags, translation)) return false;
    return (flags & COPYFLAGS_NO_HIERARCHY) || copyChain(from, to, flags, translation);
}

NodeCore* CloneNode(const NodeCore& from, COPYFLAGS flags, AliasTrans* translation)
{
    NodeCore* clone = allocNode(*from.nodeClass);
    if (clone && CopyNode(from, *clone, flags, translation)) return clone;
    FreeNode(clone);
    return nullptr;
}

} // namespace host
