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

inline Vector2f Midpoint(const Vector2f& a, const Vector2f& b)
{
    return {(a.u + b.u) * 0.5F, (a.v + b.v) * 0.5F};
}

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
    /// The mean of the corners' coordinates.
    Vector2f middleCoordinate(uint64_t polygon) const;
    /// Drops what only the three positions need.
    void releasePositions();

    std::span<const Vector3> positions;
    std::span<const Vector2f> coordinates; // one a corner
    std::span<const int32_t> materials;    // one a polygon
    std::span<const int32_t> levels;       // one a polygon; -1 for polygons that only shape their neighbours
    Array<uint32_t> ends;                  // as in a Mesh
    Array<uint32_t> vertices;
    Array<uint8_t> refined; // one a point

    // What the spans show, unless that belongs to a mesh.
    Array<Vector3> ownPositions;
    Array<Vector2f> ownCoordinates;
    Array<int32_t> ownMaterials, ownLevels;
    void showOwn();

    Array<int32_t> cornerEdges; // as in a Mesh
    Array<MeshEdge> edges;

private:
    struct PointSums {
        Vector3 around{}; // points of the polygons, one for each corner here, and other ends of the edges
        int32_t edgeCount = 0;
        int32_t boundaryCount = 0; // edges with one polygon
    };

    void sumFacePoints();
    void sumEdges();

    Array<Vector3> facePoints;
    Array<PointSums> sums;
    Array<Vector3> boundarySums; // valid where edges with one polygon meet: an end, 6 times the point, an end
};

/// The part of `mesh` that a refinement by `levels`, one a polygon, takes in; empty if no level is above 0.
/// Shows what it can of the mesh's own arrays. `meshPolygons` gets the mesh's number of each of its polygons,
/// ascending.
RefinementLevel GatherRefinedPart(const Mesh& mesh, std::span<const int32_t> levels, Array<uint32_t>& meshPolygons);

/// The next level of `parent`, which must be prepared: its polygons split at refined points, in order. `vertexPoints`
/// and `edgePoints` get the new number of each moved point and each point on an edge, -1 if there is none.
RefinementLevel SplitPolygons(const RefinementLevel& parent, Array<int32_t>& vertexPoints, Array<int32_t>& edgePoints);

} // namespace vdt
