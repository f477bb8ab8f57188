// Converted materials come into a document and onto its objects.
#pragma once

#include "materials/material_entry.h"

#include <span>

/// What converted materials are put on, and how.
struct MaterialUse {
    std::span<BaseObject* const> objects;
    /// For each entry the document's material that is taken in its place, or null; may be shorter than the entries.
    std::span<BaseMaterial* const> existing = {};
    Bool overwrite = false;       // objects that have texture tags lose them; else they are left as they are
    LayerObject* layer = nullptr; // of what is inserted; null for none
};

/// Inserts the materials at the head of the document's list, in order, each behind its parts, and gives every object a
/// texture tag for each entry, restricted to the selection of the entry's id. Undo is the caller's: for the objects
/// before, for what was inserted afterwards. Those materials, parts among them, come back in the document's order and
/// have left `entries`.
std::vector<BaseMaterial*> applyMaterials(BaseDocument& document, MaterialEntries& entries, const MaterialUse& use);
