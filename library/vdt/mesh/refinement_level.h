// One level of a subdivision, in compact form: the polygons to refine with those around them, their edges, and where
// Catmull-Clark puts the points of the next level. Not part of the library's interface.
//
// Points have numbers of their own. A polygon of level 1 or more is refined; a point on such a polygon is a refined
// point. The level holds all polygons at each refined point: the edges and sums there are complete, elsewhere they
// need not be.
#pragma once

#include "vdt/mesh/mesh.h"

#include <cstdint>
#include <span>

namespace vdt {

struct RefinementLevel {
    uint64_t polygonCount() const { return ends.size(); }
    uint32_t start(uint64_t polygon) const { return polygon ? ends[polygon - 1] : 0; }
    int32_t highestLevel() const;
    /// Fills `refined`, from the levels.
    void markRefinedPoints();

    /// Makes the edges and whatever the three positions below need. False if nothing can be
    /// refined: without edges, or with more of them than the tables can address.
    bool prepare();
    Vector3 facePoint(uint64_t polygon) const { return facePoints[polygon]; }
    Vector3 edgePoint(int32_t edge) const;
    Vector3 vertexPoint(uint32_t point) const;
    /// Drops what only the three positions need.
    void releasePositions();

    Array<Vector3> positions;
    Array<uint8_t> refined; // one a point
    Array<uint32_t> ends;   // as in a Mesh
    Array<uint32_t> vertices;
    Array<Vector2f> coordinates; // one a corner
    Array<int32_t> materials;    // one a polygon
    Array<int32_t> levels;       // one a polygon; -1 for polygons that only shape their neighbours

    Array<int32_t> cornerEdges; // as in a Mesh
    Array<MeshEdge> edges;

private:
    struct PointSums {
        Vector3 facePoints{}; // of the polygons, one for each corner on the point
        Vector3 neighbours{}; // other ends of the edges
        int32_t edgeCount = 0;
        int32_t boundaryCount = 0; // edges with one polygon
    };

    void sumFacePoints();
    void sumEdges();

    Array<Vector3> facePoints;
    Array<PointSums> sums;
    Array<Vector3> boundarySums; // valid where edges with one polygon meet: an end, 6 times the point, an end
};

/// A corner at which a polygon is split: it becomes the quad of the moved corner, the point on the edge that leaves
/// it, the polygon's own point and the point on the edge that arrives.
struct SplitCorner {
    uint64_t polygon;
    uint32_t point;
    int32_t edge, edgeBefore;
    Vector2f coordinates[4]; // of the new quad
};

/// Calls `take` with each split corner in order. `refinedOnly` leaves out the polygons that only shape others.
template <class Take> void ForEachSplitCorner(const RefinementLevel& level, bool refinedOnly, Take&& take)
{
    uint32_t start = 0;
    for (uint64_t polygon = 0; polygon < level.ends.size(); ++polygon) {
        const uint32_t first = start, count = level.ends[polygon] - first;
        start = level.ends[polygon];
        const bool refined = level.levels[polygon] > 0;
        if (!refined && refinedOnly) continue;

        const Vector2f* const corners = level.coordinates.data() + first;
        double u = 0, v = 0;
        for (uint32_t corner = 0; corner < count; ++corner) {
            u += static_cast<double>(corners[corner].u);
            v += static_cast<double>(corners[corner].v);
        }
        const Vector2f middle{static_cast<float>(u / count), static_cast<float>(v / count)};

        for (uint32_t corner = 0; corner < count; ++corner) {
            const uint32_t point = level.vertices[first + corner];
            if (!refined && !level.refined[point]) continue;
            const uint32_t before = corner ? corner - 1 : count - 1, after = corner + 1 < count ? corner + 1 : 0;
            const Vector2f &a = corners[before], &b = corners[corner], &c = corners[after];
            take(SplitCorner{
                polygon,
                point,
                level.cornerEdges[first + corner],
                level.cornerEdges[first + before],
                {b, {(b.u + c.u) * 0.5F, (b.v + c.v) * 0.5F}, middle, {(b.u + a.u) * 0.5F, (b.v + a.v) * 0.5F}}
            });
        }
    }
}

/// The part of `mesh` that a refinement by `levels`, one a polygon, takes in; empty if no level is above 0.
/// `meshPolygons` gets the mesh's number of each of its polygons, ascending.
RefinementLevel GatherRefinedPart(const Mesh& mesh, std::span<const int32_t> levels, Array<uint32_t>& meshPolygons);

/// The next level of `parent`, which must be prepared: its polygons split at refined points, in order. `vertexPoints`
/// and `edgePoints` get the new number of each moved point and each point on an edge, -1 if there is none.
RefinementLevel SplitPolygons(const RefinementLevel& parent, Array<int32_t>& vertexPoints, Array<int32_t>& edgePoints);

} // namespace vdt
