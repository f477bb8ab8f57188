#include "vdt/mesh/mesh.h"

#include <algorithm>
#include <iterator>

namespace vdt {
namespace {

// The texture coordinates first, in corner order, then the polygon over them.
template <size_t cornerCount>
bool addPolygon(MeshOutputAccessor& output, const uint64_t (&points)[cornerCount],
                const Vector2f (&coordinates)[cornerCount], int32_t material)
{
    uint64_t coordinateIndices[cornerCount];
    for (size_t corner = 0; corner < cornerCount; ++corner)
        coordinateIndices[corner] = output.AddUV(coordinates[corner].u, coordinates[corner].v);
    return output.AddPolygon(points, coordinateIndices, material);
}

template <size_t cornerCount>
bool addFromLists(MeshOutputAccessor& output, std::span<const uint32_t> vertices, std::span<const float> coordinates,
                  int32_t material)
{
    uint64_t points[cornerCount];
    Vector2f corners[cornerCount];
    for (size_t corner = 0; corner < cornerCount; ++corner) {
        points[corner] = vertices[corner];
        corners[corner] = {coordinates[2 * corner], coordinates[2 * corner + 1]};
    }
    return addPolygon(output, points, corners, material);
}

// What AppendMesh does for any source, by way of the mesh's own lists: a plant's foliage comes by the hundred thousand.
void appendOwnMesh(MeshOutputAccessor& output, const Mesh& source, const Matrix& matrix)
{
    const uint64_t pointCount = source.positions.size();
    if (pointCount == 0 || source.normals.size() != pointCount) return;

    const Matrix normalMatrix = NormalMatrix(matrix);
    uint64_t base = 0;
    for (uint64_t point = 0; point < pointCount; ++point) {
        const uint64_t index = output.AddPoint(TransformPoint(source.positions[point], matrix),
                                               TransformVector(source.normals[point], normalMatrix));
        if (point == 0) base = index;
    }

    std::vector<uint64_t> corners;
    const uint64_t polygonCount = std::min<uint64_t>(source.PolygonCount(), source.polygonEnds.size());
    for (uint64_t polygon = 0, start = 0; polygon < polygonCount; start = source.polygonEnds[polygon++]) {
        const std::span<const uint64_t> vertices = source.corners(polygon);
        corners.resize(2 * vertices.size());
        const std::span<uint64_t> points(corners.data(), vertices.size());
        const std::span<uint64_t> coordinateIndices(corners.data() + vertices.size(), vertices.size());
        for (size_t corner = 0; corner < vertices.size(); ++corner) {
            const Vector2f& coordinate = source.coordinates[source.polygonCoordinates[start + corner]];
            coordinateIndices[corner] = output.AddUV(coordinate.u, coordinate.v);
            points[corner] = vertices[corner] + base;
        }
        output.AddPolygon(points, coordinateIndices, source.materials[polygon]);
    }
}

} // namespace

bool MeshOutputAccessor::AddPolygonFromLists(std::span<const uint32_t> vertices, std::span<const float> coordinates,
                                             int32_t material)
{
    if (coordinates.size() != 2 * vertices.size()) return false;
    switch (vertices.size()) {
    case 3: return addFromLists<3>(*this, vertices, coordinates, material);
    case 4: return addFromLists<4>(*this, vertices, coordinates, material);
    case 5: return addFromLists<5>(*this, vertices, coordinates, material);
    default: return false;
    }
}

void MeshOutputAccessor::AppendMesh(const MeshInputAccessor& source, const Matrix& matrix)
{
    if (const auto* mesh = dynamic_cast<const Mesh*>(&source)) return appendOwnMesh(*this, *mesh, matrix);

    // Counted first: a source that is the target as well would grow along.
    const uint64_t pointCount = source.PointCount();
    const uint64_t polygonCount = source.PolygonCount();
    if (pointCount == 0) return;

    Vector3 normal{};
    const bool hasNormals = source.HasAttribute(kNormalAttribute);
    if (hasNormals && !source.GetPointAttribute(kNormalAttribute, 0, normal)) return;

    const Matrix normalMatrix = NormalMatrix(matrix);
    uint64_t base = 0;
    for (uint64_t point = 0; point < pointCount; ++point) {
        Vector3 position{};
        source.GetPoint(position, point);
        normal = {};
        if (hasNormals && source.GetPointAttribute(kNormalAttribute, point, normal))
            normal = TransformVector(normal, normalMatrix);
        const uint64_t index = AddPoint(TransformPoint(position, matrix), normal);
        if (point == 0) base = index;
    }

    std::vector<uint64_t> vertices, coordinateIndices;
    std::vector<Vector3> coordinates;
    int32_t material = 0;
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        if (!source.GetPolygon(polygon, vertices, coordinates, material)) continue;
        if (vertices.size() != coordinates.size()) continue;

        coordinateIndices.resize(vertices.size());
        for (size_t corner = 0; corner < vertices.size(); ++corner) {
            const Vector3& coordinate = coordinates[corner];
            coordinateIndices[corner] = AddUV(static_cast<float>(coordinate.x), static_cast<float>(coordinate.y));
            vertices[corner] += base;
        }
        AddPolygon(vertices, coordinateIndices, material);
    }
}

void MeshInputAccessor::GetBounds(Box& box) const
{
    const uint64_t pointCount = PointCount();
    Vector3 position{};
    for (uint64_t point = 0; point < pointCount; ++point) box.extend(GetPoint(position, point));
}

int32_t MeshInputAccessor::FindAttribute(std::string_view /*name*/, bool* /*known*/) const
{
    return 0;
}

bool MeshInputAccessor::HasAttribute(int32_t /*id*/) const
{
    return false;
}

bool MeshInputAccessor::GetPointAttribute(int32_t /*id*/, uint64_t /*point*/, Vector3& /*value*/) const
{
    return false;
}

bool MeshInputAccessor::IsPolygonFlagged(uint64_t /*index*/) const
{
    return false;
}

void MeshInputAccessor::PolygonsAtPoint(std::vector<uint64_t>& polygons, uint64_t point) const
{
    polygons.clear();
    std::vector<uint64_t> vertices;
    std::vector<Vector3> coordinates;
    int32_t material = 0;
    const uint64_t polygonCount = PolygonCount();
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        if (!GetPolygon(polygon, vertices, coordinates, material)) continue;
        if (std::find(vertices.begin(), vertices.end(), point) != vertices.end()) polygons.push_back(polygon);
    }
}

void MeshInputAccessor::PointsAroundPoint(std::vector<uint64_t>& points, uint64_t point) const
{
    std::vector<uint64_t> polygons;
    PolygonsAtPoint(polygons, point);

    points.clear();
    std::vector<uint64_t> vertices;
    std::vector<Vector3> coordinates;
    int32_t material = 0;
    for (const uint64_t polygon : polygons) {
        if (!GetPolygon(polygon, vertices, coordinates, material)) continue;
        std::copy_if(vertices.begin(), vertices.end(), std::back_inserter(points),
                     [point](uint64_t vertex) { return vertex != point; });
    }
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
}

bool AddTriangle(MeshOutputAccessor& output, const uint64_t (&points)[3], const Vector2f (&coordinates)[3],
                 int32_t material)
{
    return addPolygon(output, points, coordinates, material);
}

bool AddQuad(MeshOutputAccessor& output, const uint64_t (&points)[4], const Vector2f (&coordinates)[4],
             int32_t material)
{
    return addPolygon(output, points, coordinates, material);
}

bool AddPentagon(MeshOutputAccessor& output, const uint64_t (&points)[5], const Vector2f (&coordinates)[5],
                 int32_t material)
{
    return addPolygon(output, points, coordinates, material);
}

} // namespace vdt
