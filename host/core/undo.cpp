#include "core/undo.h"

#include "core/document.h"
#include "core/document_messages.h"
#include "core/node_class.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::size_t kMostSteps = 50;

enum class Reach {
    Bits,     // bits alone
    Content,  // the node without what hangs on it
    Branches, // with tags and shaders
    Children  // with everything below
};

Reach reachOf(UNDOTYPE type)
{
    switch (type) {
    case UNDOTYPE_CHANGE_SMALL: return Reach::Content;
    case UNDOTYPE_CHANGE_NOCHILDREN:
    case UNDOTYPE_CHANGE_SELECTION: return Reach::Branches;
    case UNDOTYPE_ACTIVATE:
    case UNDOTYPE_DEACTIVATE:
    case UNDOTYPE_BITS: return Reach::Bits;
    default: return Reach::Children;
    }
}

NodeState stateOf(const NodeCore& node, Reach reach);

NodeState::List listStateOf(const NodeCore& owner, std::size_t branch, Reach reach)
{
    NodeState::List list{branch, {}};
    for (const NodeCore* member = owner.firstChild; member; member = member->next) {
        list.members.push_back(stateOf(*member, reach));
    }
    return list;
}

NodeState stateOf(const NodeCore& node, Reach reach)
{
    NodeState state;
    state.marker = node.GetMarker();
    state.bits = node.bits;
    if (reach == Reach::Bits) return state;

    if (node.Kind() == NodeKind::Document) {
        state.values = node.container;
        return state;
    }
    state.content.reset(CloneNode(node, COPYFLAGS_NO_HIERARCHY | COPYFLAGS_NO_BRANCHES, nullptr));
    if (reach == Reach::Content) return state;

    const std::vector<ListCore*> branches = node.Branches();
    for (std::size_t i = 0; i < branches.size(); ++i) {
        state.lists.push_back(listStateOf(*branches[i], i, Reach::Children));
    }
    if (reach == Reach::Children) state.lists.push_back(listStateOf(node, NodeState::kChildren, reach));
    return state;
}

// The same nodes and lists as in `pattern`, as they are now: what undoing `pattern` will overwrite.
Reach reachOf(const NodeState& pattern)
{
    if (pattern.values) return Reach::Content;
    if (!pattern.content) return Reach::Bits;
    if (pattern.lists.empty()) return Reach::Content;
    return pattern.lists.back().branch == NodeState::kChildren ? Reach::Children : Reach::Branches;
}

NodeCore* listOf(NodeCore& node, std::size_t branch)
{
    if (branch == NodeState::kChildren) return &node;
    if (branch >= node.Branches().size()) node.Shaders(); // the last of the lists, made on demand
    const std::vector<ListCore*> branches = node.Branches();
    return branch < branches.size() ? branches[branch] : nullptr;
}

// Puts recorded states into the live document.
class Restorer {
public:
    /// Whatever is taken out is added to `taken`.
    explicit Restorer(std::vector<Marker>& collected) : taken(collected) {}

    void restore(NodeCore& node, const NodeState& state)
    {
        const Int32 bits = state.bits;
        if (state.values) node.container = *state.values;
        if (state.content) {
            CopyNode(*state.content, node, COPYFLAGS_NO_HIERARCHY | COPYFLAGS_NO_BRANCHES, nullptr);
            node.Raise(DIRTYFLAGS_MATRIX);
        }
        node.bits = bits;
        if (state.values) node.Raise(DIRTYFLAGS_DATA);
        for (const NodeState::List& list : state.lists) {
            if (NodeCore* owner = listOf(node, list.branch)) restoreList(*owner, list);
        }
    }

    /// The living node of the state, or a new one under its marker; null if neither can be had.
    NodeCore* revive(const NodeState& state)
    {
        if (NodeCore* alive = FindNode(state.marker)) return alive;
        if (!state.content) return nullptr;
        NodeCore* made = CloneNode(*state.content, COPYFLAGS_0, nullptr);
        if (!made) return nullptr;
        made->SetMarker(state.marker);
        restore(*made, state);
        return made;
    }

private:
    void restoreList(NodeCore& owner, const NodeState::List& list)
    {
        for (NodeCore* member = owner.firstChild; member;) {
            NodeCore* following = member->next;
            const Marker marker = member->GetMarker();
            if (std::ranges::find(list.members, marker, &NodeState::marker) == list.members.end()) {
                member->Unlink();
                taken.push_back(marker);
            }
            member = following;
        }

        NodeCore* last = nullptr;
        for (const NodeState& state : list.members) {
            const bool alive = FindNode(state.marker) != nullptr;
            NodeCore* member = revive(state);
            if (!member || member->Contains(owner)) continue; // it went above its owner, by ways not recorded
            if (alive) restore(*member, state);
            const bool inPlace =
                member->IsLinked() && member->previous == last && (member->up == &owner || member->list == &owner);
            if (!inPlace) {
                member->Unlink();
                owner.InsertChild(*member, last);
            }
            last = member;
        }
    }

    std::vector<Marker>& taken;
};

} // namespace

void UndoStack::open()
{
    if (depth++ == 0) stepOpen = false; // one left open ends here
}

bool UndoStack::close()
{
    if (depth == 0) return false;
    if (--depth == 0) stepOpen = false;
    return true;
}

void UndoStack::closeAll()
{
    depth = 0;
    stepOpen = false;
}

bool UndoStack::add(UNDOTYPE type, NodeCore& node)
{
    if (node.Document() != &document) return false;
    if (!stepOpen) {
        cutRedo();
        steps.emplace_back();
        done = steps.size();
        stepOpen = true;
        if (steps.size() > kMostSteps) {
            drop(steps.front());
            steps.erase(steps.begin());
            --done;
        }
    }

    Record record;
    record.node = node.GetMarker();
    switch (type) {
    case UNDOTYPE_NEW: record.kind = Kind::Existence; break;
    case UNDOTYPE_DELETE:
        record.kind = Kind::Existence;
        record.exists = true;
        record.place = placeOf(node);
        record.state = stateOf(node, Reach::Children);
        break;
    default: record.state = stateOf(node, reachOf(type)); break;
    }
    steps[done - 1].push_back(std::move(record));
    document.changed = true;
    return true;
}

UndoStack::Place UndoStack::placeOf(const NodeCore& node)
{
    Place place;
    if (node.previous) place.predecessor = node.previous->GetMarker();
    if (node.up) {
        place.owner = node.up->GetMarker();
        return place;
    }
    if (!node.list || !node.list->owner) return place;
    place.owner = node.list->owner->GetMarker();
    const std::vector<ListCore*> branches = node.list->owner->Branches();
    place.branch = static_cast<std::size_t>(std::ranges::find(branches, node.list) - branches.begin());
    return place;
}

bool UndoStack::insertAt(const Place& place, NodeCore& node)
{
    NodeCore* owner = FindNode(place.owner);
    NodeCore* target = owner ? listOf(*owner, place.branch) : nullptr;
    if (!target || node.Contains(*target)) return false;

    NodeCore* predecessor = FindNode(place.predecessor);
    if (predecessor && predecessor->up != target && predecessor->list != target) predecessor = nullptr;
    node.Unlink();
    target->InsertChild(node, predecessor);
    return true;
}

void UndoStack::swapContent(Record& record)
{
    NodeCore* node = FindNode(record.node);
    if (!node) return;

    NodeState present = stateOf(*node, reachOf(record.state));
    std::vector<Marker> taken;
    Restorer(taken).restore(*node, record.state);
    record.state = std::move(present);

    // What came back into the document is no longer this record's.
    std::erase_if(record.kept, [](Marker marker) {
        const NodeCore* kept = FindNode(marker);
        return !kept || kept->IsLinked();
    });
    record.kept.insert(record.kept.end(), taken.begin(), taken.end());
}

void UndoStack::swapExistence(Record& record)
{
    NodeCore* node = FindNode(record.node);
    if (!record.exists) {
        if (!node || !node->IsLinked()) return;
        record.place = placeOf(*node);
        node->Unlink();
        record.kept = {record.node};
        record.exists = true;
        return;
    }

    std::vector<Marker> taken; // a node that comes back takes nothing out
    const bool alive = node != nullptr;
    if (!alive) node = Restorer(taken).revive(record.state);
    if (node && !node->IsLinked() && !insertAt(record.place, *node)) {
        record.kept = {record.node};
        return;
    }
    record.kept.clear();
    record.exists = false;
}

void UndoStack::swap(Record& record)
{
    if (record.kind == Kind::Existence)
        swapExistence(record);
    else
        swapContent(record);
}

void UndoStack::afterSwap(Int32 message)
{
    std::erase_if(document.selection, [](Marker marker) { return !FindNode(marker); });
    document.Raise(DIRTYFLAGS_SELECTION_OBJECTS | DIRTYFLAGS_SELECTION_TAGS | DIRTYFLAGS_SELECTION_MATERIALS);
    document.changed = true;
    SendDocumentInfo(document, message);
    EventAdd();
}

bool UndoStack::undo()
{
    StopAllThreads();
    closeAll();
    if (done == 0) return false;
    Step& step = steps[--done];
    for (auto record = step.rbegin(); record != step.rend(); ++record) swap(*record);
    afterSwap(MSG_DOCUMENTINFO_TYPE_UNDO);
    return true;
}

bool UndoStack::redo()
{
    StopAllThreads();
    closeAll();
    if (done == steps.size()) return false;
    Step& step = steps[done++];
    for (Record& record : step) swap(record);
    afterSwap(MSG_DOCUMENTINFO_TYPE_REDO);
    return true;
}

void UndoStack::drop(Step& step)
{
    for (const Record& record : step) {
        for (const Marker marker : record.kept) {
            NodeCore* node = FindNode(marker);
            if (node && !node->IsLinked()) FreeNode(node);
        }
    }
    step.clear();
}

void UndoStack::cutRedo()
{
    while (steps.size() > done) {
        drop(steps.back());
        steps.pop_back();
    }
}

void UndoStack::flush()
{
    closeAll();
    done = 0;
    cutRedo();
}

} // namespace host
