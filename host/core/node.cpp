#include "core/node.h"

#include "c4d_basetag.h"
#include "c4d_nodedata.h"
#include "core/document.h"
#include "core/node_class.h"

#include <algorithm>
#include <cassert>
#include <mutex>
#include <unordered_map>

namespace host {
namespace {

// Which node has which marker. Lists have none.
class NodeIndex {
public:
    Marker enter(NodeCore& node)
    {
        const std::lock_guard guard(lock);
        do ++last;
        while (last == 0 || nodes.contains(last));
        nodes.emplace(last, &node);
        return last;
    }
    void drop(Marker marker)
    {
        const std::lock_guard guard(lock);
        nodes.erase(marker);
    }
    bool rename(Marker from, Marker to)
    {
        const std::lock_guard guard(lock);
        if (to == 0 || nodes.contains(to)) return false;
        auto entry = nodes.extract(from);
        entry.key() = to;
        nodes.insert(std::move(entry));
        return true;
    }
    NodeCore* find(Marker marker)
    {
        const std::lock_guard guard(lock);
        const auto found = nodes.find(marker);
        return found == nodes.end() ? nullptr : found->second;
    }
    std::size_t count(NodeKind kind)
    {
        const std::lock_guard guard(lock);
        const auto isOfKind = [kind](const auto& entry) { return entry.second->Kind() == kind; };
        return static_cast<std::size_t>(std::ranges::count_if(nodes, isOfKind));
    }

private:
    std::mutex lock; // threads make and free nodes of their own documents
    std::unordered_map<Marker, NodeCore*> nodes;
    Marker last = 0;
};

NodeIndex& nodeIndex()
{
    static NodeIndex index;
    return index;
}

const NodeClass& listClass()
{
    static const NodeClass made = [] {
        NodeClass nodeClass;
        nodeClass.id = ID_LISTHEAD;
        nodeClass.kind = NodeKind::List;
        return nodeClass;
    }();
    return made;
}

} // namespace

const std::array<DIRTYFLAGS, NodeCore::kDirtyKinds> NodeCore::kDirtyFlags = {DIRTYFLAGS_MATRIX,
                                                                             DIRTYFLAGS_DATA,
                                                                             DIRTYFLAGS_SELECT,
                                                                             DIRTYFLAGS_CACHE,
                                                                             DIRTYFLAGS_CHILDREN,
                                                                             DIRTYFLAGS_DESCRIPTION,
                                                                             DIRTYFLAGS_SELECTION_OBJECTS,
                                                                             DIRTYFLAGS_SELECTION_TAGS,
                                                                             DIRTYFLAGS_SELECTION_MATERIALS};

Int32 BaseTypeOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::Object: return Obase;
    case NodeKind::Tag: return Tbase;
    case NodeKind::Material: return Mbase;
    case NodeKind::Shader: return Xbase;
    case NodeKind::VideoPost: return VPbase;
    case NodeKind::SceneLoader: return Fbase;
    default: return Tbaselist2d;
    }
}

NodeCore* FindNode(Marker marker)
{
    return nodeIndex().find(marker);
}

std::size_t CountNodes(NodeKind kind)
{
    return nodeIndex().count(kind);
}

NodeCore::NodeCore(const NodeClass& usedClass) : nodeClass(&usedClass)
{
    // A fresh node differs from "nothing noted yet".
    counts.fill(1);
    marker = Kind() == NodeKind::List ? 0 : nodeIndex().enter(*this);
}

NodeCore::~NodeCore()
{
    if (marker) nodeIndex().drop(marker);
}

NodeKind NodeCore::Kind() const
{
    return nodeClass->kind;
}

Int32 NodeCore::Type() const
{
    return nodeClass->id;
}

bool NodeCore::IsInstanceOf(Int32 type) const
{
    if (type == Type() || type == Tgelistnode) return true;
    if (Kind() != NodeKind::List && (type == Tbaselist2d || type == BaseTypeOf(Kind()))) return true;
    if (std::ranges::find(nodeClass->bases, type) != nodeClass->bases.end()) return true;
    return data && data->IsInstanceOf(As<GeListNode>(), type);
}

bool NodeCore::SetMarker(Marker taken)
{
    if (taken == marker) return true;
    if (!nodeIndex().rename(marker, taken)) return false;
    marker = taken;
    return true;
}

ListCore* NodeCore::List() const
{
    const NodeCore* top = this;
    while (top->up) top = top->up;
    return top->list;
}

NodeCore* NodeCore::Owner() const
{
    if (up) return up;
    if (list) return list->owner;
    return Kind() == NodeKind::List ? static_cast<const ListCore*>(this)->owner : CacheParent();
}

DocumentCore* NodeCore::Document() const
{
    for (const NodeCore* node = this; node; node = node->Owner()) {
        if (node->Kind() == NodeKind::Document)
            return const_cast<DocumentCore*>(static_cast<const DocumentCore*>(node));
    }
    return nullptr;
}

bool NodeCore::Contains(const NodeCore& other) const
{
    const NodeCore* node = &other;
    while (node && node != this) node = node->up;
    return node != nullptr;
}

// Puts `child` between two neighbours, either of which may be null, in the place that is set in it already.
void NodeCore::link(NodeCore& child, NodeCore* predecessor, NodeCore* successor)
{
    NodeCore* place = child.up ? child.up : child.list;
    child.previous = predecessor;
    child.next = successor;
    if (predecessor)
        predecessor->next = &child;
    else if (place)
        place->firstChild = &child;
    if (successor)
        successor->previous = &child;
    else if (place)
        place->lastChild = &child;
    if (NodeCore* told = child.list ? child.list->owner : child.up) told->OnInserted(child.list, child);
}

void NodeCore::InsertChild(NodeCore& child, NodeCore* predecessor)
{
    assert(!child.IsLinked() && !child.Contains(*this));
    assert(!predecessor || predecessor->up == this || predecessor->list == this);

    if (Kind() == NodeKind::List)
        child.list = static_cast<ListCore*>(this);
    else
        child.up = this;
    link(child, predecessor, predecessor ? predecessor->next : firstChild);
}

void NodeCore::InsertBehind(NodeCore& node)
{
    assert(!node.IsLinked() && &node != this);
    node.up = up;
    node.list = list;
    link(node, this, next);
}

void NodeCore::InsertBefore(NodeCore& node)
{
    assert(!node.IsLinked() && &node != this);
    node.up = up;
    node.list = list;
    link(node, previous, this);
}

void NodeCore::Unlink()
{
    NodeCore* place = up ? up : list;
    ListCore* branch = list;
    if (previous)
        previous->next = next;
    else if (place)
        place->firstChild = next;
    if (next)
        next->previous = previous;
    else if (place)
        place->lastChild = previous;
    next = previous = up = nullptr;
    list = nullptr;
    if (NodeCore* told = branch ? branch->owner : place) told->OnRemoved(branch, *this);
}

std::vector<ListCore*> NodeCore::Branches() const
{
    if (!shaders) return {};
    return {shaders.get()};
}

ListCore& NodeCore::Shaders()
{
    if (!shaders) shaders = std::make_unique<ListCore>(this);
    return *shaders;
}

NodeCore* NodeCore::FirstShader() const
{
    return shaders ? shaders->firstChild : nullptr;
}

void NodeCore::Raise(DIRTYFLAGS mask)
{
    for (std::size_t kind = 0; kind < kDirtyKinds; ++kind) counts[kind] += (mask & kDirtyFlags[kind]) != 0;
}

std::size_t NodeCore::dirtyKind(DIRTYFLAGS flag)
{
    const auto found = std::ranges::find(kDirtyFlags, flag);
    assert(found != kDirtyFlags.end());
    return static_cast<std::size_t>(found - kDirtyFlags.begin());
}

void NodeCore::RaiseBy(DIRTYFLAGS flag, UInt32 amount)
{
    counts[dirtyKind(flag)] += amount;
}

UInt32 NodeCore::Stored(DIRTYFLAGS flag) const
{
    return counts[dirtyKind(flag)];
}

UInt32 NodeCore::Dirty(DIRTYFLAGS mask) const
{
    UInt32 sum = 0;
    for (std::size_t kind = 0; kind < kDirtyKinds; ++kind) {
        if (mask & kDirtyFlags[kind]) sum += counts[kind] + DerivedCount(kDirtyFlags[kind]);
    }
    return sum;
}

UInt32 NodeCore::DerivedCount(DIRTYFLAGS flag) const
{
    if (flag == DIRTYFLAGS_DATA) {
        // An assigned container brings a counter of its own, which may be lower.
        const UInt32 now = container.GetDirty();
        if (now != containerSeen) containerChanges += now > containerSeen ? now - containerSeen : 1;
        containerSeen = now;
        return containerChanges;
    }
    if (flag == DIRTYFLAGS_CHILDREN) {
        UInt32 sum = 0;
        for (const NodeCore* child = firstChild; child; child = child->next) sum += child->ContentCount();
        return sum;
    }
    return 0;
}

UInt32 NodeCore::ContentCount() const
{
    return Dirty(DIRTYFLAGS_DATA | DIRTYFLAGS_SELECT | DIRTYFLAGS_CHILDREN);
}

void NodeCore::OnInserted(ListCore* branch, NodeCore&)
{
    if (!branch) Raise(DIRTYFLAGS_CHILDREN);
}

void NodeCore::OnRemoved(ListCore* branch, NodeCore& node)
{
    // The child's own count leaves the sum, which must not fall.
    if (!branch) RaiseBy(DIRTYFLAGS_CHILDREN, node.ContentCount() + 1);
}

void NodeCore::OnMessage(Int32 type, void*)
{
    if (type == MSG_CHANGE || type == MSG_UPDATE) Raise(DIRTYFLAGS_DATA);
}

bool NodeCore::GetBuiltIn(Int32 id, GeData& whole) const
{
    if (id != ID_BASELIST_NAME) return false;
    whole = GeData(name);
    return true;
}

bool NodeCore::SetBuiltIn(Int32 id, const GeData& whole)
{
    if (id != ID_BASELIST_NAME) return false;
    name = whole.GetString();
    Raise(DIRTYFLAGS_DATA);
    return true;
}

HierarchyHelp NodeCore::MakeHierarchyHelp(BaseDocument* document, BaseThread* thread, BUILDFLAGS buildFlags,
                                          const Matrix& global)
{
    HierarchyHelp help;
    help.document = document;
    help.thread = thread;
    help.buildFlags = buildFlags;
    help.matrix = global;
    return help;
}

bool NodeCore::CopyBodyTo(NodeCore&, COPYFLAGS, AliasTrans*) const
{
    return true;
}

bool NodeCore::WriteBody(HyperFile& file) const
{
    return file.WriteGeData(GeData(&layer));
}

bool NodeCore::ReadBody(HyperFile& file, Int32)
{
    GeData link;
    if (!file.ReadGeData(&link)) return false;
    if (const BaseLink* read = link.GetBaseLink()) layer = *read;
    return true;
}

ListCore::ListCore(NodeCore* listOwner) : NodeCore(listClass()), owner(listOwner)
{
    MakeFacade<GeListHead>();
}

ListCore::~ListCore()
{
    Flush();
}

void ListCore::Insert(NodeCore& node, NodeCore* predecessor)
{
    InsertChild(node, predecessor);
}

void ListCore::Flush()
{
    while (firstChild) FreeNode(firstChild);
}

bool SendTo(NodeCore& node, Int32 type, void* data)
{
    node.OnMessage(type, data);
    return !node.data || node.data->Message(node.As<GeListNode>(), type, data);
}

} // namespace host
