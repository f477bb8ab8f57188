// The records behind the facade classes of the plug-in API.
//
// A plug-in holds a BaseObject*, BaseTag* and so on; all that such a facade knows is the address of its core. The
// facade lives inside the core and has the type of the core's kind, so a down-cast between facade classes is sound
// exactly if the core is of the matching kind.
//
// Ownership: a list owns the nodes of its top level, a node owns its children and its branches (the lists of its tags,
// shaders, ...), an object its caches. Lists are linked through the nodes; a node never moves. FreeNode ends a node
// with all that it owns.
#pragma once

#include "c4d_basecontainer.h"
#include "c4d_baselist.h"
#include "c4d_baseobject.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

class HyperFile;
class NodeData;

namespace host {

struct DocumentCore;
struct ListCore;
struct NodeClass;

/// What a node is. Classes are looked up by kind and id, so that an object and a tag may share an id.
enum class NodeKind {
    List,
    Object,
    Tag,
    Material,
    Shader,
    Document,
    Layer,
    RenderData,
    VideoPost,
    SceneHook,
    SceneLoader,
    View,
    Plugin,
    RegistryEntry
};

/// The identity of a node, by which links find it: unique among the nodes of a run, new for every clone, never 0.
using Marker = UInt64;

struct NodeCore {
    explicit NodeCore(const NodeClass& nodeClass);
    NodeCore(const NodeCore&) = delete;
    NodeCore& operator=(const NodeCore&) = delete;
    virtual ~NodeCore();

    static NodeCore* Of(const C4DAtom* atom) { return atom ? atom->core : nullptr; }

    /// The facade. `Facade` must be the kind's own class or one of its bases.
    template <class Facade = BaseList2D> Facade* As() const { return static_cast<Facade*>(facade); }

    NodeKind Kind() const;
    Int32 Type() const;
    bool IsInstanceOf(Int32 type) const;

    Marker GetMarker() const { return marker; }
    /// For readers of files, whose links name markers: `taken` must belong to no living node, else the node keeps its
    /// own (and false is returned, so that the reader redirects).
    bool SetMarker(Marker taken);

    // The tree. Positions in a list: `list` is set, `up` is null; under a parent: the other way round; free: both null.

    /// The list at whose top level the node or its topmost parent stands; null outside of any.
    ListCore* List() const;
    /// The node that owns this one: its parent, the owner of its list, or the object whose cache it belongs to.
    NodeCore* Owner() const;
    /// Null while the node belongs to no document; a document belongs to itself.
    DocumentCore* Document() const;
    bool IsLinked() const { return list || up || next || previous; }
    /// True if `other` is this node or stands below it.
    bool Contains(const NodeCore& other) const;

    // The three below take a node that stands nowhere. A null predecessor puts it first. Beside a node that stands
    // nowhere itself they form a row without an owner, as the root of a cache has one.
    void InsertChild(NodeCore& child, NodeCore* predecessor);
    void InsertBehind(NodeCore& node);
    void InsertBefore(NodeCore& node);
    /// Takes the node out; it belongs to the caller then. Nothing happens if it stands nowhere.
    void Unlink();

    /// The lists that belong to this node, in the order in which they are copied, written and walked.
    virtual std::vector<ListCore*> Branches() const;
    /// The list of shaders, made when it is first asked for.
    ListCore& Shaders();
    NodeCore* FirstShader() const;
    /// What stands above this node in drawing and evaluation although it is no parent: the owner of a cache. Null
    /// mostly.
    virtual NodeCore* CacheParent() const { return nullptr; }

    // Dirty counts. They only grow. Not all of a count is stored: containers count for themselves, tags count for their
    // object and children for their parent, so only the difference of two readings means something.

    void Raise(DIRTYFLAGS mask);
    UInt32 Dirty(DIRTYFLAGS mask) const;
    /// What the parent's count of children grows by when this node changes.
    virtual UInt32 ContentCount() const;

    // What each kind of core adds. An override calls its base first.

    /// The parameters that live in members: 900 for the name, those of an object's coordinates, ... `whole` values
    /// only; components are cut out by the caller. False: no such parameter.
    virtual bool GetBuiltIn(Int32 id, GeData& whole) const;
    /// Raises the counts that belong to the change. The value has the described type already. False: no such parameter.
    virtual bool SetBuiltIn(Int32 id, const GeData& whole);
    /// The host's own answer to a message, before the plug-in gets it.
    virtual void OnMessage(Int32 type, void* data);
    /// Members that a copy takes over: modes, matrices, points. Name, bits, container are copied already.
    virtual bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const;
    /// Built-in values and geometry, in a chunk of their own. The level is that of the writing host, kBodyLevel.
    virtual bool WriteBody(HyperFile& file) const;
    virtual bool ReadBody(HyperFile& file, Int32 level);
    virtual void FreeCaches() {}
    /// Told after `node` came to stand in, or was taken out of, one of this node's branches or its children (list
    /// null).
    virtual void OnInserted(ListCore* branch, NodeCore& node);
    virtual void OnRemoved(ListCore* branch, NodeCore& node);

    /// Links both ways, then asks for Init. False: the node is to be freed.
    bool StartData(NodeData* made);
    void EndData();

    // What only a friend of the facades may do.

    /// Links that were copied with `translation` follow from one node to the other. Null is allowed.
    static void NoteCopy(AliasTrans* translation, Marker from, Marker to);
    static void AwaitTranslation(BaseLink& link, AliasTrans* translation);
    static void ForgetLink(BaseLink& link);
    static void ForgetLinks(AliasTrans& translation);
    static void Translate(AliasTrans& translation, bool keepOldTargets);
    static HierarchyHelp MakeHierarchyHelp(BaseDocument* document, BaseThread* thread, BUILDFLAGS buildFlags,
                                           const Matrix& global);

    const NodeClass* nodeClass;
    NodeData* data = nullptr; // owned; null for built-in nodes and between its end and the node's
    bool initialised = false; // the data's Init said yes, so its Free is due

    NodeCore* next = nullptr;
    NodeCore* previous = nullptr;
    NodeCore* up = nullptr;
    NodeCore* firstChild = nullptr;
    NodeCore* lastChild = nullptr;
    ListCore* list = nullptr;

    String name;
    BaseContainer container;
    Int32 bits = 0;            // BIT_...
    std::bitset<128> nodeBits; // by NBIT
    BaseLink layer;

    static constexpr Int32 kBodyLevel = 1;

    /// All flags that have a count.
    static constexpr std::size_t kDirtyKinds = 9;
    static const std::array<DIRTYFLAGS, kDirtyKinds> kDirtyFlags;

protected:
    /// Makes the facade; every kind of core calls it in its constructor, the last call (the most derived) holds.
    template <class Facade> void MakeFacade()
    {
        static_assert(sizeof(Facade) == sizeof(NodeCore*), "a facade has no member but its core");
        facade = new (facadeMemory) Facade(*this);
    }

    /// The part of a count that is not stored.
    virtual UInt32 DerivedCount(DIRTYFLAGS flag) const;
    void RaiseBy(DIRTYFLAGS flag, UInt32 amount);
    /// The stored part.
    UInt32 Stored(DIRTYFLAGS flag) const;

private:
    static std::size_t dirtyKind(DIRTYFLAGS flag);
    void link(NodeCore& child, NodeCore* predecessor, NodeCore* successor);

    Marker marker;
    std::array<UInt32, kDirtyKinds> counts;
    mutable UInt32 containerSeen = 0; // the container's own count when it was last looked at
    mutable UInt32 containerChanges = 0;
    std::unique_ptr<ListCore> shaders;
    C4DAtom* facade = nullptr;
    alignas(NodeCore*) std::byte facadeMemory[sizeof(NodeCore*)];
};

/// A list of nodes: it owns those at its top level, in `firstChild` ... `lastChild`.
struct ListCore : NodeCore {
    /// `owner` may be null, for the lists that plug-ins allocate.
    explicit ListCore(NodeCore* owner = nullptr);
    ~ListCore() override;

    void Insert(NodeCore& node, NodeCore* predecessor);
    void InsertLast(NodeCore& node) { Insert(node, lastChild); }
    /// Frees all nodes of the list.
    void Flush();
    bool IsEmpty() const { return !firstChild; }

    NodeCore* owner;
};

/// What every node of the kind is an instance of: Obase, Tbase, ...
Int32 BaseTypeOf(NodeKind kind);

/// The core behind a facade; null for null.
inline NodeCore* CoreOf(const C4DAtom* atom)
{
    return NodeCore::Of(atom);
}
inline ListCore* CoreOf(const GeListHead* head)
{
    return static_cast<ListCore*>(NodeCore::Of(head));
}
/// The facade of a core; null for null.
template <class Facade> Facade* FacadeOf(const NodeCore* core)
{
    return core ? core->As<Facade>() : nullptr;
}

// Life of a node.

/// A node of a registered class with its plug-in data, after a successful Init; the caller's. Null: unknown type, or
/// the plug-in refused.
NodeCore* AllocNode(NodeKind kind, Int32 type);
/// The same by type alone, for whichever kind has it.
NodeCore* AllocNode(Int32 type);
/// Takes the node out of where it stands and ends it with all that it owns. Null is allowed.
void FreeNode(NodeCore* node);

/// Overwrites `to`, which must be of the same class. Tags, shaders and children that `to` has already are written over
/// where the type fits, so that addresses stay, and are freed where the source has none.
bool CopyNode(const NodeCore& from, NodeCore& to, COPYFLAGS flags, AliasTrans* translation);
/// The caller's; null on failure.
NodeCore* CloneNode(const NodeCore& from, COPYFLAGS flags, AliasTrans* translation);

/// The living node of that marker, null if there is none. Any thread.
NodeCore* FindNode(Marker marker);
/// How many nodes of the kind live, in documents or not. Any thread.
std::size_t CountNodes(NodeKind kind);

/// Sends to the node: the host's part first, then the plug-in's, whose answer it is.
bool SendTo(NodeCore& node, Int32 type, void* data);

/// Calls `visit` for the node and everything below it, parents first, a node's branches before its children. The tree
/// must not change meanwhile.
template <class Visit> void VisitBelow(NodeCore& node, const Visit& visit)
{
    visit(node);
    for (ListCore* branch : node.Branches()) {
        for (NodeCore* child = branch->firstChild; child; child = child->next) VisitBelow(*child, visit);
    }
    for (NodeCore* child = node.firstChild; child; child = child->next) VisitBelow(*child, visit);
}

} // namespace host
