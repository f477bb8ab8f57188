// How selection tags name the materials of a plant's polygons: "MAT" and the material's id, behind the names of the
// external references that the plant came in through: "forest::oaks::MAT3".
#pragma once

#include "c4d.h"

/// "MAT" and the number.
String MaterialSelectionName(Int32 material);

/// The number of a name without prefixes: "MAT", digits after an optional minus, nothing behind, within 32 bits. -1
/// for any other text.
Int32 MaterialIdOfName(const String& name);

/// The namespaces of the external references above an object, joined by "::". Empty unless it came in through one.
String SelectionPrefix(BaseObject* object);

/// `name` behind `prefix` and "::", or alone without a prefix.
String WithPrefix(const String& prefix, const String& name);

/// The material id that a texture tag is restricted to, -1 for none. Of a plant, its own name and "::" may stand
/// before.
Int32 matidFromMaterialName(BaseObject& object, BaseTag& selectionTag);

/// The material id that a texture tag of `object` is restricted to, -1 for none.
Int32 MaterialIdOfTag(BaseObject* object, BaseTag* tag);
