// The whole plant as one mesh: control mesh, subdivision, normals and foliage in their order.
#pragma once

#include "vdt/mesh/mesh_accessors.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model_variant.h"

#include <cstdint>
#include <string_view>

namespace vdt {

struct PlantMeshOptions {
    std::string_view season;      // empty: foliage without a season alone
    int32_t subdivisionLevel = 1; // of the trunk; below 0 counts as 0
    bool uniform = false;         // that level for every branch, instead of one less with each branching
    bool branches = true;
    bool foliage = true;
};

/// Builds the plant of an expanded variant into `output`, right-handed, in model units. Polygons keep their material
/// ids. Trunk and branches come first, then the foliage.
void BuildPlantMesh(const ModelVariant& variant, const PlantMeshOptions& options, MeshOutputAccessor& output,
                    MessageHandler& messages);

} // namespace vdt
