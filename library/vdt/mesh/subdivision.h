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
/// for all polygons, or one a polygon. Polygons with more than five corners are refined but not copied, and neither
/// is one between refined neighbours on two of its edges. A mesh whose refinement would not fit 32-bit indices is
/// refused with an error.
void Subdivide(const Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
               std::span<const int32_t> polygonLevels);

/// The same, and tells where the points went: `outputIndices` is brought to one entry a point of `mesh`, with its
/// index in `output`, -1 if it was not written itself. Entries that are there already are taken to be such indices.
void SubdivideLevel(const Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
                    std::span<const int32_t> polygonLevels, std::vector<int32_t>& outputIndices);

} // namespace vdt
