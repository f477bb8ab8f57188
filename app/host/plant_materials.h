// Materials for plant objects, so that a viewport shows bark as bark and leaves as leaves.
#pragma once

#include "c4d.h"
#include "vdt/model/model.h"

#include <string>

namespace verdanth {

/// Gives the document one material for each of the model's, in the mean colour that it has in `season`, and the plant a
/// texture tag for each, restricted to the polygons of the material's id.
void AddMaterials(BaseDocument& document, BaseObject& plant, const vdt::Model& model, const std::string& season);

} // namespace verdanth
