// What other plug-ins may have this one place. The host finds the record under kPlantPlacingLibraryId.
//
// Operations are only ever added, behind the others. All run on the thread that holds the document.
#pragma once

#include "c4d.h"

constexpr Int32 kPlantPlacingLibraryId = 1029678; // the browser's, which places plants too

struct PlantPlacingLibrary : C4DLibrary {
    /// Gives the active objects, which must all be plants, the model of this file, and materials for it. `kind` names
    /// the renderer, 0 for the scene's own; `option` is the quality: 0 low, 1 medium, 2 high. Materials go on `layer`
    /// unless it is null. False if the objects are no plants or the file cannot be read. May ask the user.
    Bool (*ApplyModelToSelection)(BaseDocument* document, const Filename& file, Int32 kind, Int32 option,
                                  LayerObject* layer);
};

constexpr Int32 kPlantPlacingLibraryVersion = 1000;

extern PlantPlacingLibrary g_PlantPlacingLibrary;
