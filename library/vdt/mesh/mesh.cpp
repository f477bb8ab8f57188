#include "vdt/mesh/mesh.h"

#include "vdt/memory/assert.h"

#include <algorithm>

namespace vdt {
namespace {

// The polygon's normal by Newell's method, at unit length; x where the polygon has no area to tell one by. With an
// extent that is known beforehand the loop unrolls.
template <size_t extent> Vector3 polygonNormal(const Vector3* positions, std::span<const uint64_t, extent> corners)
{
    Vector3 normal{0, 0, 0};
    const Vector3* c = &positions[corners.front()];
    for (size_t next = 1; next <= corners.size(); ++next) {
        const Vector3* d = &positions[corners[next < corners.size() ? next : 0]];
        normal.x += (c->y - d->y) * (c->z + d->z);
        normal.y += (c->z - d->z) * (c->x + d->x);
        normal.z += (c->x - d->x) * (c->y + d->y);
        c = d;
    }
    if (!Normalize(normal)) normal = {1, 0, 0};
    return normal;
}

// What a copy of a polygon keeps of its corners: a mesh appends triangles and quads only.
uint64_t keptCorners(std::span<const uint64_t> corners)
{
    if (corners.size() < 4) return corners.size() == 3 ? 3 : 0;
    return corners[2] == corners[3] ? 3 : 4;
}

} // namespace

Mesh::Mesh(const Mesh& other)
    : MeshOutputAccessor(other),
      MeshInputAccessor(other),
      name(other.name),
      polygonEnds(other.polygonEnds),
      polygonVertices(other.polygonVertices),
      polygonCoordinates(other.polygonCoordinates),
      positions(other.positions),
      coordinates(other.coordinates),
      normals(other.normals),
      materials(other.materials)
{
}

Mesh& Mesh::operator=(const Mesh& other)
{
    if (this != &other) *this = Mesh(other);
    return *this;
}

bool Mesh::SetName(std::string_view newName)
{
    name = newName;
    return true;
}

uint64_t Mesh::AddPoint(const Vector3& position, const Vector3& normal)
{
    positions.push_back(position);
    normals.push_back(normal);
    return positions.size() - 1;
}

uint64_t Mesh::AddUV(float u, float v)
{
    coordinates.push_back({u, v});
    return coordinates.size() - 1;
}

bool Mesh::AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices, int32_t material)
{
    // One end serves both lists.
    VDT_ASSERT(vertices.size() == coordinateIndices.size());
    if (vertices.size() != coordinateIndices.size()) return false;

    polygonVertices.insert(polygonVertices.end(), vertices.begin(), vertices.end());
    polygonCoordinates.insert(polygonCoordinates.end(), coordinateIndices.begin(), coordinateIndices.end());
    polygonEnds.push_back(polygonVertices.size());
    materials.push_back(material);
    topologyValid = false;
    return true;
}

void Mesh::AppendMesh(const MeshInputAccessor& source, const Matrix& matrix)
{
    if (const Mesh* mesh = dynamic_cast<const Mesh*>(&source)) return appendCopy(*mesh, matrix);

    const uint64_t pointCount = source.PointCount();
    const uint64_t polygonCount = source.PolygonCount();
    const uint64_t base = positions.size();
    const Matrix normalMatrix = NormalMatrix(matrix);
    const int32_t normalAttribute = source.FindAttribute("normal", nullptr);
    name = source.GetName();

    for (uint64_t point = 0; point < pointCount; ++point) {
        Vector3 position{}, normal{};
        source.GetPoint(position, point);
        const bool hasNormal = source.GetPointAttribute(normalAttribute, point, normal);
        AddPoint(TransformPoint(position, matrix), hasNormal ? TransformVector(normal, normalMatrix) : Vector3{});
    }

    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        MeshPolygon record;
        if (!ReadPolygonRecord(source, polygon, record)) continue;
        uint64_t vertices[4], coordinateIndices[4];
        const size_t cornerCount = record.isTriangle() ? 3 : 4;
        for (size_t corner = 0; corner < cornerCount; ++corner) {
            const Vector3& coordinate = record.coordinates[corner];
            vertices[corner] = base + record.vertices[corner];
            coordinateIndices[corner] = AddUV(static_cast<float>(coordinate.x), static_cast<float>(coordinate.y));
        }
        AddPolygon({vertices, cornerCount}, {coordinateIndices, cornerCount}, record.material);
    }
}

// The same as reading `source` point by point and record by record, with arrays grown once and written in place. A
// plant's foliage is tens of thousands of these.
void Mesh::appendCopy(const Mesh& source, const Matrix& matrix)
{
    const uint64_t basePoint = positions.size();
    const uint64_t baseNormal = normals.size();
    const uint64_t basePolygon = polygonEnds.size();
    const uint64_t baseCorner = polygonVertices.size();
    const uint64_t baseCoordinate = coordinates.size();
    const uint64_t pointCount = source.positions.size();
    const uint64_t polygonCount = source.polygonEnds.size();
    const uint64_t cornerCount = source.polygonVertices.size();
    const bool hasNormals = source.normals.size() == pointCount;
    if (this != &source) name = source.name;

    // Grown before any pointer is taken: `source` may be this mesh.
    positions.resize(basePoint + pointCount);
    normals.resize(baseNormal + pointCount);
    for (uint64_t point = 0; point < pointCount; ++point)
        positions[basePoint + point] = TransformPoint(source.positions[point], matrix);
    if (hasNormals) {
        const Matrix normalMatrix = NormalMatrix(matrix);
        for (uint64_t point = 0; point < pointCount; ++point)
            normals[baseNormal + point] = TransformVector(source.normals[point], normalMatrix);
    } else {
        std::fill(normals.begin() + static_cast<std::ptrdiff_t>(baseNormal), normals.end(), Vector3{});
    }

    // As if no polygon were cut: what is left over at the end is given back.
    polygonEnds.resize(basePolygon + polygonCount);
    materials.resize(basePolygon + polygonCount);
    polygonVertices.resize(baseCorner + cornerCount);
    polygonCoordinates.resize(baseCorner + cornerCount);
    coordinates.resize(baseCoordinate + cornerCount);
    uint64_t* end = polygonEnds.data() + basePolygon;
    int32_t* material = materials.data() + basePolygon;
    uint64_t* vertex = polygonVertices.data() + baseCorner;
    uint64_t* coordinateIndex = polygonCoordinates.data() + baseCorner;
    Vector2f* coordinate = coordinates.data() + baseCoordinate;
    uint64_t start = 0, written = 0;
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        const uint64_t stop = source.polygonEnds[polygon];
        const uint64_t kept = keptCorners({source.polygonVertices.data() + start, stop - start});
        for (uint64_t corner = start; corner < start + kept; ++corner, ++written) {
            vertex[written] = basePoint + source.polygonVertices[corner];
            coordinateIndex[written] = baseCoordinate + written;
            coordinate[written] = source.coordinates[source.polygonCoordinates[corner]];
        }
        if (kept) {
            *end++ = baseCorner + written;
            *material++ = source.materials[polygon];
        }
        start = stop;
    }
    polygonEnds.resize(static_cast<uint64_t>(end - polygonEnds.data()));
    materials.resize(polygonEnds.size());
    polygonVertices.resize(baseCorner + written);
    polygonCoordinates.resize(baseCorner + written);
    coordinates.resize(baseCoordinate + written);
    topologyValid = false;
}

std::unique_ptr<MeshInputAccessor> Mesh::Clone() const
{
    return std::make_unique<Mesh>(*this);
}

void Mesh::GetBounds(Box& box) const
{
    for (const Vector3& position : positions) box.extend(position);
}

void Mesh::WriteTo(MeshOutputAccessor& target, const Matrix& matrix) const
{
    const uint64_t pointCount = positions.size();
    const uint64_t polygonCount = polygonEnds.size();
    if (pointCount == 0) return;

    const bool hasNormals = normals.size() == pointCount;
    const Matrix normalMatrix = hasNormals ? NormalMatrix(matrix) : Matrix::Identity();
    uint64_t base = 0;
    for (uint64_t point = 0; point < pointCount; ++point) {
        const Vector3 normal = hasNormals ? TransformVector(normals[point], normalMatrix) : Vector3{};
        const uint64_t index = target.AddPoint(TransformPoint(positions[point], matrix), normal);
        if (point == 0) base = index;
    }

    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        const uint64_t start = polygonStart(polygon);
        const uint64_t cornerCount = polygonEnds[polygon] - start;
        if (cornerCount < 3 || cornerCount > 5) continue;

        uint64_t points[5];
        Vector2f uvs[5];
        for (uint64_t corner = 0; corner < cornerCount; ++corner) {
            points[corner] = base + polygonVertices[start + corner];
            uvs[corner] = coordinates[polygonCoordinates[start + corner]];
        }
        const int32_t material = materials[polygon];
        if (cornerCount == 3)
            AddTriangle(target, {points[0], points[1], points[2]}, {uvs[0], uvs[1], uvs[2]}, material);
        if (cornerCount == 4)
            AddQuad(target, {points[0], points[1], points[2], points[3]}, {uvs[0], uvs[1], uvs[2], uvs[3]}, material);
        if (cornerCount == 5) AddPentagon(target, points, uvs, material);
    }
}

int32_t Mesh::FindAttribute(std::string_view attribute, bool* known) const
{
    const bool isNormal = attribute == "normal";
    if (known) *known = isNormal;
    return isNormal ? kNormalAttribute : -1;
}

bool Mesh::GetPointAttribute(int32_t id, uint64_t point, Vector3& value) const
{
    if (id != kNormalAttribute || normals.size() != positions.size() || point >= normals.size()) return false;
    value = normals[point];
    return true;
}

// Compatibility: consumers hold polygon counts as 32-bit signed numbers and are told the same number here.
uint64_t Mesh::PolygonCount() const
{
    return static_cast<uint64_t>(int64_t{static_cast<int32_t>(polygonEnds.size())});
}

bool Mesh::GetPolygon(uint64_t index, std::vector<uint64_t>& vertices, std::vector<Vector3>& corners,
                      int32_t& material) const
{
    if (index >= polygonEnds.size()) return false;

    const uint64_t start = polygonStart(index);
    const uint64_t cornerCount = polygonEnds[index] - start;
    vertices.resize(cornerCount);
    corners.resize(cornerCount);
    for (uint64_t corner = 0; corner < cornerCount; ++corner) {
        const Vector2f& coordinate = coordinates[polygonCoordinates[start + corner]];
        vertices[corner] = polygonVertices[start + corner];
        corners[corner] = {coordinate.u, coordinate.v, 0};
    }
    material = materials[index];
    return true;
}

void Mesh::GetPolygonRecord(MeshPolygon& polygon, uint64_t index) const
{
    if (index >= polygonEnds.size()) return;

    polygon.material = materials[index];
    const uint64_t start = polygonStart(index);
    const uint64_t cornerCount = polygonEnds[index] - start;
    if (cornerCount < 3) return;
    for (uint64_t corner = 0; corner < 4; ++corner) {
        const uint64_t from = start + std::min(corner, cornerCount - 1);
        const Vector2f& coordinate = coordinates[polygonCoordinates[from]];
        polygon.vertices[corner] = polygonVertices[from];
        polygon.coordinates[corner] = {coordinate.u, coordinate.v, 0};
    }
}

bool Mesh::ComputeNormals()
{
    if (normals.size() != positions.size()) return false;

    uint64_t start = 0;
    for (const uint64_t end : polygonEnds) {
        const std::span<const uint64_t> polygon(polygonVertices.data() + start, end - start);
        start = end;
        if (polygon.empty()) continue;
        const Vector3 normal = polygon.size() == 4 ? polygonNormal(positions.data(), polygon.first<4>())
                                                   : polygonNormal(positions.data(), polygon);
        for (const uint64_t corner : polygon) normals[corner] += normal;
    }
    for (Vector3& normal : normals)
        if (!Normalize(normal)) normal = {1, 0, 0};
    return true;
}

void Mesh::reserveMore(uint64_t pointCount, uint64_t coordinateCount, uint64_t polygonCount, uint64_t cornerCount)
{
    positions.reserve(positions.size() + pointCount);
    normals.reserve(normals.size() + pointCount);
    coordinates.reserve(coordinates.size() + coordinateCount);
    polygonEnds.reserve(polygonEnds.size() + polygonCount);
    materials.reserve(materials.size() + polygonCount);
    polygonVertices.reserve(polygonVertices.size() + cornerCount);
    polygonCoordinates.reserve(polygonCoordinates.size() + cornerCount);
}

void Mesh::clear()
{
    name.clear();
    polygonEnds.clear();
    polygonVertices.clear();
    polygonCoordinates.clear();
    positions.clear();
    coordinates.clear();
    normals.clear();
    materials.clear();
    topologyValid = false;
}

} // namespace vdt
