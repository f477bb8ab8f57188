// Edges and adjacency of a set of polygons, for meshes and for the levels of a subdivision. Not part of the
// library's interface.
#pragma once

#include "vdt/mesh/mesh.h"
#include "vdt/mesh/stopwatch.h"

namespace vdt {

/// Polygons as a mesh stores them, with indices of any width.
template <class Index> struct FlatPolygons {
    std::span<const Index> ends; // one past the polygon's last entry in `vertices`
    std::span<const Index> vertices;
};

/// True if all tables over so many corners and points can be addressed with 32 bits.
constexpr bool FitsTopology(uint64_t cornerCount, uint64_t pointCount)
{
    return cornerCount <= INT32_MAX && pointCount < INT32_MAX;
}

/// Fills both tables, which keep their memory from build to build. `cornerCounts` has the corners that meet at each
/// point. All indices must be below `pointCount`, and the sizes must fit.
template <class Index>
void FindEdges(const FlatPolygons<Index>& polygons, const uint32_t* cornerCounts, uint64_t pointCount,
               Array<int32_t>& cornerEdges, Array<MeshEdge>& edges);

extern template void FindEdges<uint32_t>(const FlatPolygons<uint32_t>&, const uint32_t*, uint64_t, Array<int32_t>&,
                                         Array<MeshEdge>&);
extern template void FindEdges<uint64_t>(const FlatPolygons<uint64_t>&, const uint32_t*, uint64_t, Array<int32_t>&,
                                         Array<MeshEdge>&);

/// The timing line of one mesh or level.
void ReportTopologyTime(MessageHandler& messages, const Stopwatch& stopwatch);

} // namespace vdt
