// Turns a skeleton into a mesh of square tubes: the control mesh that subdivision rounds, or a light mesh by itself.
//
// Every branch vertex gets a ring of four points around it, and rings are joined by quads. Side branches begin open,
// inside their parent. A branch that alone goes on from its parent's tip goes on from the tip's ring without a seam.
#pragma once

#include "vdt/mesh/mesh.h"
#include "vdt/mesh/variant_mesh.h"
#include "vdt/skeleton/walker.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vdt {

struct ControlMeshRequest {
    const Skeleton& skeleton;
    std::span<const VariantMesh> foliage; // carried along for generators that want it; not read here
    MeshOutputAccessor& output;
    int32_t subdivisionLevel = 0;                  // of the trunk, falling by one with each branching; 0 for none
    std::vector<int32_t>& polygonLevels;           // out: one entry a polygon
    std::vector<uint64_t>* pointSources = nullptr; // out: the skeleton point that each output point's ring is on
    MessageHandler& messages;                      // told the time taken, through debug
};

void GenerateControlMesh(const ControlMeshRequest& request);

} // namespace vdt
