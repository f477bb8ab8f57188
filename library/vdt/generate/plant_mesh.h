// The whole plant as one mesh: reduction, control mesh, subdivision, normals and foliage in their order.
#pragma once

#include "vdt/mesh/mesh_accessors.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model_variant.h"
#include "vdt/skeleton/reduce.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace vdt {

/// Subdivision that would make more of branches than this is done to fewer levels: such a mesh fits no memory, and no
/// host.
constexpr uint64_t kMostBranchPolygons = uint64_t{1} << 26;

struct PlantMeshOptions {
    std::string_view season{};    // empty: foliage without a season alone
    int32_t subdivisionLevel = 1; // of the trunk; below 0 counts as 0
    bool uniform = false;         // that level for every branch, instead of one less with each branching
    ReductionParameters reduction{};
};

/// Builds the plant of an expanded variant into `output`, right-handed, in model units. Polygons keep their material
/// ids. Trunk and branches come first, then the foliage.
void BuildPlantMesh(const ModelVariant& variant, const PlantMeshOptions& options, MeshOutputAccessor& output,
                    MessageHandler& messages);

/// Trunk and branches alone, of a skeleton that is reduced already if it is to be.
void BuildBranchMesh(const Skeleton& skeleton, std::span<const VariantMesh> foliage, int32_t subdivisionLevel,
                     bool uniform, MeshOutputAccessor& output, MessageHandler& messages);

} // namespace vdt
