// The colours that the materials of a scene give to a plant.
#pragma once

#include "c4d.h"
#include "vdt/model/model.h"

#include <map>

/// sRGB, by material id.
using PlantColours = std::map<int32_t, vdt::Color3f>;

/// Change counts of materials. The materials are compared and never looked at: they may be gone.
using MaterialChanges = std::map<BaseMaterial*, UInt32>;

/// The colours of the model's materials as the object's texture tags give them; where a material of the scene has no
/// colour of a kind that is known here, the model's own. Of several tags for one material the last counts, and those
/// for back sides do not. `changes`, unless null, gets the materials that were looked at. Empty outside documents.
PlantColours MaterialColours(BaseObject& object, const vdt::Model* model, MaterialChanges* changes = nullptr);

/// True if a material in `changes` has changed since and hangs on the object.
Bool HasChangedMaterial(BaseObject& object, const MaterialChanges& changes);

/// The document's colour of what has no material, sRGB. False without a document.
Bool DefaultColour(BaseDocument* document, vdt::Color3f& colour);
