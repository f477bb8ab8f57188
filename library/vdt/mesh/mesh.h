// The library's own mesh in memory.
//
// Polygons are stored flat: polygon i's corners run from polygonEnds[i - 1] (0 for the first) to polygonEnds[i] in
// polygonVertices and polygonCoordinates. A mesh grows by appending and is not edited in place. Nothing checks the
// indices that are appended; readers check what they take from files.
#pragma once

#include "vdt/memory/array.h"
#include "vdt/mesh/mesh_accessors.h"
#include "vdt/messages/message_handler.h"

namespace vdt {

/// An edge between two points, `low` below `high`.
struct MeshEdge {
    int32_t low, high;
    int32_t leftFace;  // the polygon that brought the edge in
    int32_t rightFace; // the last other polygon that named it; -1 on a boundary

    friend bool operator==(const MeshEdge&, const MeshEdge&) = default;
};

/// What meets at one point. Views into the mesh's topology, valid until that is built again.
struct PointLinks {
    std::span<const int32_t> polygons; // one entry a corner, in polygon order
    std::span<const int32_t> edges;    // in order of first appearance
};

/// The links of all points, packed one point after the other.
class PointLinkTable {
public:
    PointLinks operator[](uint64_t point) const
    {
        return {{polygons.data() + polygonStarts[point], polygons.data() + polygonStarts[point + 1]},
                {edges.data() + edgeStarts[point], edges.data() + edgeStarts[point + 1]}};
    }
    uint64_t size() const { return polygonStarts.empty() ? 0 : polygonStarts.size() - 1; }

    Array<uint32_t> polygonStarts, edgeStarts; // one entry a point and one behind the last
    Array<int32_t> polygons, edges;
};

class Mesh final : public MeshOutputAccessor, public MeshInputAccessor {
public:
    Mesh() = default;
    Mesh(const Mesh& other); // geometry and name; the topology is made again on demand
    Mesh& operator=(const Mesh& other);
    Mesh(Mesh&&) noexcept = default;
    Mesh& operator=(Mesh&&) noexcept = default;
    ~Mesh() override = default;

    bool SetName(std::string_view newName) override;
    uint64_t AddPoint(const Vector3& position, const Vector3& normal) override;
    uint64_t AddUV(float u, float v) override;
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices,
                    int32_t material) override;
    /// Takes the source's name, and its polygons cut to triangles and quads.
    void AppendMesh(const MeshInputAccessor& source, const Matrix& matrix) override;

    uint64_t IsValid() const override { return kNone; }
    bool IsNull() const override { return false; }
    std::unique_ptr<MeshInputAccessor> Clone() const override;
    std::string GetName() const override { return name; }
    void GetBounds(Box& box) const override;
    /// Polygons of 3 to 5 corners; larger ones are left out.
    void WriteTo(MeshOutputAccessor& target, const Matrix& matrix) const override;
    int32_t FindAttribute(std::string_view attribute, bool* known) const override;
    bool HasAttribute(int32_t id) const override { return id == kNormalAttribute; }
    bool GetPointAttribute(int32_t id, uint64_t point, Vector3& value) const override;
    uint64_t PointCount() const override { return positions.size(); }
    Vector3& GetPoint(Vector3& position, uint64_t index) const override { return position = positions[index]; }
    uint64_t PolygonCount() const override;
    bool GetPolygon(uint64_t index, std::vector<uint64_t>& vertices, std::vector<Vector3>& corners,
                    int32_t& material) const override;
    void GetPolygonRecord(MeshPolygon& polygon, uint64_t index) const override;

    /// Where polygon `polygon`'s corners begin in polygonVertices.
    uint64_t polygonStart(uint64_t polygon) const { return polygon ? polygonEnds[polygon - 1] : 0; }
    /// The point indices of one polygon's corners.
    std::span<const uint64_t> corners(uint64_t polygon) const
    {
        return {polygonVertices.data() + polygonStart(polygon), polygonVertices.data() + polygonEnds[polygon]};
    }

    /// Adds each polygon's unit normal to its corners' stored normals and brings those to unit length; (1, 0, 0)
    /// where there is no direction. Expects zero normals. False if there is not one normal a point.
    bool ComputeNormals();

    /// Makes pointLinks, cornerEdges and edges, unless they are up to date. See mesh_topology.cpp.
    void BuildTopology(MessageHandler& messages);

    /// Empties the mesh and keeps its arrays' memory, for use again.
    void clear();

    /// Makes room for exactly so many more points, texture coordinates, polygons and corners: once, before many.
    void reserveMore(uint64_t pointCount, uint64_t coordinateCount, uint64_t polygonCount, uint64_t cornerCount);

    std::string name;
    Array<uint64_t> polygonEnds;
    Array<uint64_t> polygonVertices;    // point indices
    Array<uint64_t> polygonCoordinates; // indices into coordinates
    Array<Vector3> positions;
    Array<Vector2f> coordinates;
    Array<Vector3> normals;   // one a point
    Array<int32_t> materials; // one a polygon
    bool topologyValid = false;
    PointLinkTable pointLinks;
    Array<int32_t> cornerEdges; // the edge from each corner to the next, in the order of polygonVertices
    Array<MeshEdge> edges;

private:
    void appendCopy(const Mesh& source, const Matrix& matrix);
};

} // namespace vdt
