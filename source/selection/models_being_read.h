// Models of a scene that is being read: kept in memory from the moment a choice of a plant is read until an object that
// shows it has a handle of its own. Without this a scene with many plants of one model would read its file once a
// plant.
#pragma once

#include "selection/selection_data.h"

class ModelsBeingRead {
public:
    /// Updates a choice that was just read, outside any document, and keeps its model. False if there is no such file.
    static Bool Update(VerdanthSelectionData& selection);
    /// Lets go of what was kept for this choice.
    static void Release(const VerdanthSelectionData& selection);
    /// Lets go of all models, also of those whose objects never came.
    static void ReleaseAll();
    static size_t Count();
};
