// The light forms of a plant.
#pragma once

#include "export/scene_builder.h"
#include "export/scene_materials.h"

namespace verdanth {

/// Builds what the request's form, any but the full one, asks for. Polygons that had to be left out are counted.
SceneLevel BuildCoarseLevel(const SceneRequest& request, SceneMaterials& materials, uint64_t& droppedPolygons,
                            vdt::MessageHandler& messages);

/// Writes a closed box in the crown's colour; nothing for an empty box.
void WriteBox(const vdt::Box& box, vdt::MeshOutputAccessor& output);

} // namespace verdanth
