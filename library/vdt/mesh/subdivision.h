// Catmull-Clark subdivision with a level for each polygon.
//
// Method: Catmull and Clark, "Recursively generated B-spline surfaces on arbitrary topological meshes", 1978.
// Polygons are refined as often as their level says. Where a polygon of level 0 meets one of level 1 the seam is
// closed with an extra vertex; a step of two levels or more across an edge leaves a crack.
#pragma once

#include "vdt/mesh/mesh.h"

#include <span>
#include <vector>

namespace vdt {

/// Refines `mesh` and writes the result to `output`, with zero normals. `polygonLevels`: none for level 0, one entry
/// for all polygons, or one a polygon. `mesh` keeps the levels between in `subdivided`, to which another run would
/// append; use a new mesh for each run.
void Subdivide(Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
               std::span<const int32_t> polygonLevels);

/// One level of the above, with the deeper ones by recursion. `outputIndices` gets one entry a point of `mesh`: its
/// index in `output`, -1 if it was not written.
void SubdivideLevel(Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
                    std::span<const int32_t> polygonLevels, std::vector<int32_t>& outputIndices);

} // namespace vdt
