// An accessor of somebody else's: both interfaces over lists of its own, with nothing in common with the library's
// mesh. Counts the calls that it gets.
#pragma once

#include "vdt/mesh/mesh_accessors.h"

#include <algorithm>

namespace vdt::test {

class ForeignMesh : public MeshOutputAccessor, public MeshInputAccessor {
public:
    struct Polygon {
        std::vector<uint64_t> vertices;
        std::vector<Vector2f> uvs;
        int32_t material;
    };

    bool SetName(std::string_view) override { return false; }
    uint64_t AddPoint(const Vector3& position, const Vector3& normal) override
    {
        points.push_back(position);
        normals.push_back(normal);
        calls += "p";
        return points.size() - 1;
    }
    uint64_t AddUV(float u, float v) override
    {
        uvs.push_back({u, v});
        calls += "u";
        return uvs.size() - 1;
    }
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinates,
                    int32_t material) override
    {
        Polygon polygon{{vertices.begin(), vertices.end()}, {}, material};
        for (const uint64_t coordinate : coordinates) polygon.uvs.push_back(uvs[coordinate]);
        polygons.push_back(polygon);
        calls += std::to_string(vertices.size());
        return true;
    }

    uint64_t IsValid() const override { return 1; }
    bool IsNull() const override { return false; }
    std::unique_ptr<MeshInputAccessor> Clone() const override { return std::make_unique<ForeignMesh>(*this); }
    std::string GetName() const override { return "foreign"; }
    void WriteTo(MeshOutputAccessor& target, const Matrix& matrix) const override { target.AppendMesh(*this, matrix); }
    int32_t FindAttribute(std::string_view name, bool*) const override
    {
        return name == "normal" && hasNormals ? 1 : -1;
    }
    bool HasAttribute(int32_t id) const override { return hasNormals && id == 1; }
    bool GetPointAttribute(int32_t id, uint64_t point, Vector3& value) const override
    {
        if (id != 1 || !hasNormals || point >= readableNormals) return false;
        value = normals[point];
        return true;
    }
    uint64_t PointCount() const override { return points.size(); }
    Vector3& GetPoint(Vector3& position, uint64_t index) const override { return position = points[index]; }
    uint64_t PolygonCount() const override { return polygons.size(); }
    bool GetPolygon(uint64_t index, std::vector<uint64_t>& vertices, std::vector<Vector3>& coordinates,
                    int32_t& material) const override
    {
        if (index == hidden || index >= polygons.size()) return false;
        vertices = polygons[index].vertices;
        coordinates.clear();
        for (const Vector2f& uv : polygons[index].uvs) coordinates.push_back({uv.u, uv.v, 0});
        material = polygons[index].material;
        return true;
    }
    void GetPolygonRecord(MeshPolygon& record, uint64_t index) const override
    {
        const Polygon& polygon = polygons[index];
        record.material = polygon.material;
        for (size_t corner = 0; corner < 4 && polygon.vertices.size() >= 3; ++corner) {
            const size_t from = std::min(corner, polygon.vertices.size() - 1);
            record.vertices[corner] = polygon.vertices[from];
            record.coordinates[corner] = {polygon.uvs[from].u, polygon.uvs[from].v, 0};
        }
    }

    std::vector<Vector3> points, normals;
    std::vector<Vector2f> uvs;
    std::vector<Polygon> polygons;
    bool hasNormals = true;
    uint64_t readableNormals = kNone;
    uint64_t hidden = kNone; // a polygon that cannot be read
    std::string calls;       // p a point, u a coordinate, a digit a polygon of so many corners
};

} // namespace vdt::test
