// How a model file reaches plants that stand in a scene.
#pragma once

#include "c4d.h"
#include "vdt/model/model.h"

/// True if something is active and all of it is plants. Null is the active document.
Bool AllActiveObjectsArePlants(BaseDocument* document);

/// Names the plant after the model and makes it show the file. False if it is no plant or there is no such file.
Bool SetModelOnObject(BaseObject* object, const Filename& file, const vdt::Model& model);

/// Gives all active objects, which must be plants, the file's model and materials of the kind (a Renderer; 0 finds out)
/// and option (the quality). Asks before it replaces texture tags, and before it uses equal materials of the document
/// again. New materials go on `layer` unless it is null. Part of the undo step that the caller has begun. False if
/// nothing was done.
Bool ApplyModelToSelection(BaseDocument* document, const Filename& file, Int32 kind, Int32 option, LayerObject* layer);
