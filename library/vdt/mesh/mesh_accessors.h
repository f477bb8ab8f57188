// The two interfaces that all geometry flows through: generators write into an output accessor, consumers read from
// an input accessor. The library's own mesh implements both; a host implements them over its own objects, so that
// the library can write straight into them.
//
// Indices are 64-bit, `kNone` stands for none. Positions are model units, right-handed. Texture coordinates are
// indexed apart from points, so that neighbouring polygons may disagree about them.
#pragma once

#include "vdt/math/box.h"
#include "vdt/math/matrix.h"
#include "vdt/memory/index.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vdt {

/// The id of the attribute "normal", the only one that the library's own mesh knows.
constexpr int32_t kNormalAttribute = 1;

/// A polygon cut to a triangle or quad. A triangle has its third corner twice, and is told by that alone.
struct MeshPolygon {
    uint64_t vertices[4] = {};
    Vector3 coordinates[4] = {}; // u, v, 0
    int32_t material = 0;

    bool isTriangle() const { return vertices[2] == vertices[3]; }
};

class MeshInputAccessor;

/// What a generator writes into.
class MeshOutputAccessor {
public:
    virtual ~MeshOutputAccessor() = default;

    /// Names the mesh. False if there is no object to name.
    virtual bool SetName(std::string_view name) = 0;

    /// Gives the new point's index. A zero normal says that none is known.
    virtual uint64_t AddPoint(const Vector3& position, const Vector3& normal) = 0;

    /// Gives the new texture coordinate's index.
    virtual uint64_t AddUV(float u, float v) = 0;

    /// One point index and one texture coordinate index a corner; both lists are of one length.
    virtual bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinates,
                            int32_t material) = 0;

    /// A polygon of 3 to 5 corners with u, v pairs of its own. False, with nothing written, for any other size or if
    /// there are not exactly two floats a corner.
    virtual bool AddPolygonFromLists(std::span<const uint32_t> vertices, std::span<const float> coordinates,
                                     int32_t material);

    /// Appends all of `source`, its points through `matrix` and its normals through that matrix's inverse transpose,
    /// without normalising them. A source without normals gets zero normals.
    virtual void AppendMesh(const MeshInputAccessor& source, const Matrix& matrix);
};

/// What a consumer reads from.
class MeshInputAccessor {
public:
    virtual ~MeshInputAccessor() = default;

    /// Non-zero while there is data to read.
    virtual uint64_t IsValid() const = 0;
    /// True if nothing stands behind the accessor.
    virtual bool IsNull() const = 0;
    virtual std::unique_ptr<MeshInputAccessor> Clone() const = 0;
    virtual std::string GetName() const = 0;
    /// Extends `box` by every point.
    virtual void GetBounds(Box& box) const;
    /// Writes all of this mesh, under `matrix`, to `target`.
    virtual void WriteTo(MeshOutputAccessor& target, const Matrix& matrix) const = 0;

    /// The attribute's id, -1 if unknown; `known` is told the same if it is given.
    virtual int32_t FindAttribute(std::string_view name, bool* known) const;
    virtual bool HasAttribute(int32_t id) const;
    virtual bool GetPointAttribute(int32_t id, uint64_t point, Vector3& value) const;

    virtual uint64_t PointCount() const = 0;
    /// Gives `position` back, for use in expressions. `index` must be below the point count.
    virtual Vector3& GetPoint(Vector3& position, uint64_t index) const = 0;
    virtual uint64_t PolygonCount() const = 0;
    /// False if there is no such polygon. Coordinates come with a third component of 0.
    virtual bool GetPolygon(uint64_t index, std::vector<uint64_t>& vertices, std::vector<Vector3>& coordinates,
                            int32_t& material) const = 0;
    /// The polygon's first three or four corners. With fewer than three the corners are left as they were.
    virtual void GetPolygonRecord(MeshPolygon& polygon, uint64_t index) const = 0;
    /// A mark that a host may give to polygons.
    virtual bool IsPolygonFlagged(uint64_t index) const;

    /// The polygons that have a corner on `point`, ascending.
    virtual void PolygonsAtPoint(std::vector<uint64_t>& polygons, uint64_t point) const;
    /// All other points that share a polygon with `point`, ascending.
    virtual void PointsAroundPoint(std::vector<uint64_t>& points, uint64_t point) const;
};

/// A polygon with texture coordinates of its own: adds the coordinates in corner order, then the polygon.
bool AddTriangle(MeshOutputAccessor& output, const uint64_t (&points)[3], const Vector2f (&coordinates)[3],
                 int32_t material);
bool AddQuad(MeshOutputAccessor& output, const uint64_t (&points)[4], const Vector2f (&coordinates)[4],
             int32_t material);
bool AddPentagon(MeshOutputAccessor& output, const uint64_t (&points)[5], const Vector2f (&coordinates)[5],
                 int32_t material);

/// The record of a polygon. False if it has fewer than three corners.
inline bool ReadPolygonRecord(const MeshInputAccessor& mesh, uint64_t index, MeshPolygon& polygon)
{
    polygon.vertices[0] = kNone;
    mesh.GetPolygonRecord(polygon, index);
    return polygon.vertices[0] != kNone;
}

} // namespace vdt
