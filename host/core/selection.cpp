// Which objects and materials of a document are active.
//
// The node's own bit decides; the document remembers beside it in which order objects became active.
#include "core/document.h"

#include <algorithm>

namespace host {
namespace {

template <class Use> void forEachObject(const NodeCore& below, const Use& use)
{
    for (NodeCore* object = below.firstChild; object; object = object->next) {
        use(*object);
        forEachObject(*object, use);
    }
}

// In the order of the tree.
std::vector<NodeCore*> activeObjects(const DocumentCore& document)
{
    std::vector<NodeCore*> active;
    forEachObject(document.objects, [&](NodeCore& object) {
        if (object.bits & BIT_ACTIVE) active.push_back(&object);
    });
    return active;
}

std::vector<NodeCore*> activeMaterials(const DocumentCore& document)
{
    std::vector<NodeCore*> active;
    for (NodeCore* material = document.materials.firstChild; material; material = material->next) {
        if (material->bits & BIT_ACTIVE) active.push_back(material);
    }
    return active;
}

// Brings what became active earlier to the front. Objects that were made active by their bit alone come last.
void sortBySelection(const DocumentCore& document, std::vector<NodeCore*>& objects)
{
    const auto rank = [&](const NodeCore* object) {
        return std::ranges::find(document.selection, object->GetMarker()) - document.selection.begin();
    };
    std::ranges::stable_sort(objects, {}, rank);
}

bool hasActiveParent(const NodeCore& object)
{
    for (const NodeCore* parent = object.up; parent; parent = parent->up) {
        if (parent->bits & BIT_ACTIVE) return true;
    }
    return false;
}

// Changes the bits as `mode` says; `active` is what is active now.
void select(DocumentCore& document, const std::vector<NodeCore*>& active, NodeCore* node, Int32 mode, DIRTYFLAGS count)
{
    if (node && node->Document() != &document) return;
    if (mode == SELECTION_NEW) {
        for (NodeCore* other : active) other->bits &= ~BIT_ACTIVE;
    }
    if (node && mode == SELECTION_SUB)
        node->bits &= ~BIT_ACTIVE;
    else if (node)
        node->bits |= BIT_ACTIVE;
    document.Raise(count);
}

void fill(AtomArray& array, const std::vector<NodeCore*>& nodes)
{
    array.Flush();
    for (const NodeCore* node : nodes) array.Append(node->As<C4DAtom>());
}

NodeCore* onlyOne(const std::vector<NodeCore*>& nodes)
{
    return nodes.size() == 1 ? nodes.front() : nullptr;
}

} // namespace
} // namespace host

using host::CoreOf;
using host::FacadeOf;
using host::NodeCore;

BaseObject* BaseDocument::GetActiveObject()
{
    return FacadeOf<BaseObject>(host::onlyOne(host::activeObjects(*CoreOf(this))));
}

BaseMaterial* BaseDocument::GetActiveMaterial()
{
    return FacadeOf<BaseMaterial>(host::onlyOne(host::activeMaterials(*CoreOf(this))));
}

void BaseDocument::GetActiveObjects(AtomArray& selection, GETACTIVEOBJECTFLAGS flags) const
{
    const host::DocumentCore& document = *CoreOf(this);
    std::vector<NodeCore*> active = host::activeObjects(document);
    if (!(flags & GETACTIVEOBJECTFLAGS_CHILDREN)) {
        std::erase_if(active, [](const NodeCore* object) { return host::hasActiveParent(*object); });
    }
    if (flags & GETACTIVEOBJECTFLAGS_SELECTIONORDER) host::sortBySelection(document, active);
    host::fill(selection, active);
}

void BaseDocument::GetActiveMaterials(AtomArray& selection) const
{
    host::fill(selection, host::activeMaterials(*CoreOf(this)));
}

void BaseDocument::SetActiveObject(BaseObject* object, Int32 mode)
{
    host::DocumentCore& document = *CoreOf(this);
    NodeCore* node = CoreOf(object);
    if (node && node->Document() != &document) return;

    host::select(document, host::activeObjects(document), node, mode, DIRTYFLAGS_SELECTION_OBJECTS);
    if (mode == SELECTION_NEW) document.selection.clear();
    if (!node) return;
    std::erase(document.selection, node->GetMarker());
    if (mode != SELECTION_SUB) document.selection.push_back(node->GetMarker());
}

void BaseDocument::SetActiveMaterial(BaseMaterial* material, Int32 mode)
{
    host::DocumentCore& document = *CoreOf(this);
    host::select(document, host::activeMaterials(document), CoreOf(material), mode, DIRTYFLAGS_SELECTION_MATERIALS);
}
