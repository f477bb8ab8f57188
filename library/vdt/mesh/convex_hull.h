// The convex hull of a cloud of points as a mesh of triangles, and the question whether a point lies inside a hull.
//
// The hull is a closed, cheap substitute for a crown. Which triangles it has, and their order, is settled to the last
// bit by the order of the points.
#pragma once

#include "vdt/mesh/mesh_accessors.h"

namespace vdt {

/// The plane through three points. The normal points into the hull if the three run counter-clockwise seen from
/// outside; it stays shorter than 1 where they are nearly in line.
struct HullPlane {
    Vector3 normal, origin;

    HullPlane() = default;
    HullPlane(const Vector3& a, const Vector3& b, const Vector3& c)
        : normal(Normalized(Cross(Normalized(b - a), Normalized(a - c)))),
          origin(a)
    {
    }

    /// How far `point` is outside; 0 or less inside and on the plane.
    double distance(const Vector3& point) const { return Dot(origin - point, normal); }
};

/// Writes the hull of `points` as triangles with material -1 that run counter-clockwise seen from outside. Fewer than
/// four points give nothing, nor do points on one line; exactly four give all four triangles between them, whatever
/// their winding; points in one plane give one triangle with both its sides. The texture coordinates carry no meaning.
/// Ends on any cloud: where rounding in flat parts calls for ever more faces, it stops at 64 a point.
void BuildConvexHull(std::span<const Vector3> points, MeshOutputAccessor& output);

/// True unless `point` is outside the plane of some polygon; so a hull without polygons holds every point. Polygons
/// of fewer than three corners do not count.
bool PointInsideHull(const Vector3& point, const MeshInputAccessor& hull);

/// The planes of a hull, made once for many points. Answers as PointInsideHull does, to the bit.
class HullPlanes {
public:
    explicit HullPlanes(const MeshInputAccessor& hull);

    bool contains(const Vector3& point) const;

private:
    static constexpr size_t kLanes = 8; // planes tested at one go

    struct Block {
        double normalX[kLanes], normalY[kLanes], normalZ[kLanes], originX[kLanes], originY[kLanes], originZ[kLanes];
    };

    std::vector<Block> blocks; // the last one is filled up with planes that have no outside
};

} // namespace vdt
