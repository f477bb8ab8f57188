// Which renderer a scene is for, and which renderers are there at all.
#pragma once

#include "c4d.h"

/// The renderer (a Renderer) that the document's active render settings ask for, as far as it is there: the engine
/// that they name, else an effect among their video posts, be it switched off. The host's own otherwise, and for null.
Int32 detectRenderer(BaseDocument* document);

/// True if the host can make this renderer's materials. `kind` is a Renderer; false for any other number, and for the
/// automatic choice.
Bool IsMaterialKindAvailable(Int32 kind);
