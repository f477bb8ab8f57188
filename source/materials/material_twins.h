// Finding a new material among those that a document has already.
#pragma once

#include "materials/material_entry.h"

/// The document's first material that shows the same under the same name: type, name and all values agree, and links
/// lead to shaders or materials that agree in turn; only what stands in the document counts as linked there. Null if
/// there is none. A link to anything else is told on the console and agrees with nothing.
BaseMaterial* findTwin(BaseDocument& document, const MaterialEntry& entry);
