// The document: lists of objects, materials, layers, render settings, hooks and views, and the settings of the scene.
//
// The document's own container is at the same time its settings container. A fresh document has everything that a
// scene needs: the settings below, one render setting of the standard engine, four views, and one node of each
// registered scene hook.
#pragma once

#include "c4d_basedocument.h"
#include "core/node.h"
#include "core/undo.h"

#include <set>

namespace host {

struct DocumentCore : NodeCore {
    explicit DocumentCore(const NodeClass& nodeClass);

    std::vector<ListCore*> Branches() const override;
    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;
    /// A document's end begins here: the undo steps own nodes of it.
    void FreeCaches() override;

    mutable ListCore layers{this};
    mutable ListCore materials{this};
    mutable ListCore objects{this};
    mutable ListCore renderSettings{this};
    mutable ListCore hooks{this};
    mutable ListCore views{this};

    Filename path;     // the folder; empty if the document was never saved
    Filename fileName; // within the folder
    BaseTime time;
    bool changed = false;
    bool passDue = false;          // the last evaluation was broken off
    std::vector<Marker> selection; // of objects, in the order in which they became active
    UndoStack undo{*this};
};

inline DocumentCore* CoreOf(const BaseDocument* document)
{
    return static_cast<DocumentCore*>(NodeCore::Of(document));
}

/// The type of the nodes in `views`. Their container says under kViewProjection what they show at first.
constexpr Int32 kViewType = 110306;
constexpr Int32 kViewProjection = 1000; // Pperspective, ...

/// The names within a list, for giving newcomers names that nobody has: " .1", " .2", ... behind a taken one.
class UniqueNames {
public:
    /// Without those of `newcomer` and what is below it, if it stands in the list already.
    explicit UniqueNames(const ListCore& list, const NodeCore* newcomer = nullptr);

    /// Names the node and all below it.
    void Give(NodeCore& node);

private:
    void giveOne(NodeCore& node);

    std::set<String> taken;
};

/// Tells the scene hooks of the node's document, if it is in one, that an object, tag or material was inserted.
void TellInsertion(NodeCore& node);

/// A copy in which links among copied nodes lead to the copies, told that it is one. The caller's; null on failure.
BaseDocument* CloneDocument(BaseDocument& document);

} // namespace host
