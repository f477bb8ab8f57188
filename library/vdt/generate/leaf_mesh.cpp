#include "vdt/generate/leaf_mesh.h"

#include <optional>

namespace vdt {
namespace {

struct Triangle {
    Vector3 a, b, c;

    Vector3 doubleArea() const { return Cross(b - a, c - a); }
};

// Nothing for a polygon without an area: one of fewer than three corners.
std::optional<MeshPolygon> recordOf(const MeshInputAccessor& mesh, uint64_t polygon)
{
    MeshPolygon record;
    record.vertices[0] = kNone;
    mesh.GetPolygonRecord(record, polygon);
    if (record.vertices[0] == kNone) return {};
    return record;
}

Triangle triangleOf(const MeshInputAccessor& mesh, const MeshPolygon& polygon, int second, int third)
{
    Triangle triangle{};
    mesh.GetPoint(triangle.a, polygon.vertices[0]);
    mesh.GetPoint(triangle.b, polygon.vertices[second]);
    mesh.GetPoint(triangle.c, polygon.vertices[third]);
    return triangle;
}

// The polygon at the part `t` of the way through the list; what is no number counts as the first.
uint64_t polygonAt(double t, uint64_t polygonCount)
{
    const uint64_t last = polygonCount - 1;
    const double place = std::floor(static_cast<double>(last) * t + 0.5);
    if (!(place > 0)) return 0;
    return place < static_cast<double>(last) ? static_cast<uint64_t>(place) : last;
}

} // namespace

double MeshArea(const MeshInputAccessor& mesh)
{
    double area = 0;
    const uint64_t polygonCount = mesh.PolygonCount();
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        const std::optional<MeshPolygon> record = recordOf(mesh, polygon);
        if (!record) continue;
        area += Length(triangleOf(mesh, *record, 1, 2).doubleArea()) / 2;
        if (!record->isTriangle()) area += Length(triangleOf(mesh, *record, 2, 3).doubleArea()) / 2;
    }
    return area;
}

CloudSample LeafMesh::Sample(double t, MersenneTwister& random) const
{
    CloudSample sample{matrix.row(3), {0, 0, 0}, weight, 0};
    const uint64_t polygonCount = mesh.PolygonCount();
    const std::optional<MeshPolygon> polygon =
        polygonCount > 0 ? recordOf(mesh, polygonAt(t, polygonCount)) : std::nullopt;
    if (!polygon) return sample;

    const double r1 = random.real();
    const double r2 = random.real();
    const bool onSecondHalf = !polygon->isTriangle() && random.real() >= 0.5;
    const Triangle triangle = onSecondHalf ? triangleOf(mesh, *polygon, 2, 3) : triangleOf(mesh, *polygon, 1, 2);

    const double s = std::sqrt(r1);
    const Vector3 place = (1 - s) * triangle.a + s * (1 - r2) * triangle.b + s * r2 * triangle.c;
    sample.position = TransformPoint(place, matrix);
    // Compatibility: the normal does not turn with the leaf. Clouds in existing scenes are lit so.
    sample.normal = Normalized(triangle.doubleArea());
    sample.material = polygon->material;
    return sample;
}

LitSample LeafMesh::SampleLit(double t, MersenneTwister& random, const Vector3& direction) const
{
    const CloudSample sample = Sample(t, random);
    const Vector3 facing = TurnedTowards(direction, sample.normal); // leaves are lit on both sides
    return {sample.position, static_cast<float>(Dot(direction, facing)), sample.material};
}

} // namespace vdt
