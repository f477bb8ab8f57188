// The steps of a document that can be undone and done again.
//
// A step is a list of records. A record holds one side of a change, the other side is the live document; undoing swaps
// the two, so doing again is the same operation in the other direction. Contents are kept as clones and copied back
// into the live nodes, so nodes keep their addresses; a node that was freed meanwhile comes back as a new one under the
// old marker, by which links find it. Nodes that undoing took out of the document belong to the record until it puts
// them back or ends.
#pragma once

#include "c4d_basedocument.h"
#include "core/node.h"

#include <memory>
#include <optional>
#include <vector>

namespace host {

struct DocumentCore;

struct NodeEnder {
    void operator()(NodeCore* node) const { FreeNode(node); }
};
/// A node that stands nowhere.
using OwnedNode = std::unique_ptr<NodeCore, NodeEnder>;

/// One node as it was, with what stood below it as far as that is recorded.
struct NodeState {
    struct List {
        std::size_t branch = 0; // place among the node's branches; kChildren for its children
        std::vector<NodeState> members;
    };
    static constexpr std::size_t kChildren = static_cast<std::size_t>(-1);

    Marker marker = 0;
    OwnedNode content;                   // a clone without children and branches; null where only bits are kept
    std::optional<BaseContainer> values; // of the document itself, which is not cloned
    Int32 bits = 0;
    std::vector<List> lists;
};

class UndoStack {
public:
    explicit UndoStack(DocumentCore& owner) : document(owner) {}
    UndoStack(const UndoStack&) = delete;
    UndoStack& operator=(const UndoStack&) = delete;

    /// Calls nest; the outermost pair makes the step. A step that nobody closed is closed by the next outermost open().
    void open();
    /// False if nothing is open.
    bool close();
    /// The end of a command: whatever was left open is closed.
    void closeAll();

    /// Records `node` as `type` asks. Outside of a step this begins one.
    bool add(UNDOTYPE type, NodeCore& node);

    /// False if there is no step in that direction.
    bool undo();
    bool redo();
    void flush();

    std::size_t stepsToUndo() const { return done; }
    std::size_t stepsToRedo() const { return steps.size() - done; }

private:
    // Where a node stands or stood.
    struct Place {
        Marker owner = 0;
        std::size_t branch = NodeState::kChildren;
        Marker predecessor = 0; // 0: first
    };
    enum class Kind { Content, Existence };
    struct Record {
        Kind kind = Kind::Content;
        Marker node = 0;
        NodeState state;
        Place place;
        bool exists = false;      // existence: swapping puts the node into the document
        std::vector<Marker> kept; // nodes taken out by the last swap
    };
    using Step = std::vector<Record>;

    static Place placeOf(const NodeCore& node);
    static bool insertAt(const Place& place, NodeCore& node);
    void swap(Record& record);
    void swapContent(Record& record);
    void swapExistence(Record& record);
    void drop(Step& step);
    void cutRedo();
    void afterSwap(Int32 message);

    DocumentCore& document;
    std::vector<Step> steps; // the first `done` of them can be undone, the others done again
    std::size_t done = 0;
    Int32 depth = 0;
    bool stepOpen = false; // steps[done - 1] takes records
};

} // namespace host
