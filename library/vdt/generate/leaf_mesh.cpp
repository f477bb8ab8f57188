#include "vdt/generate/leaf_mesh.h"

namespace vdt {
namespace {

// Twice the triangle's area, along its normal.
Vector3 doubleArea(const Vector3& a, const Vector3& b, const Vector3& c)
{
    return Cross(b - a, c - a);
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
    for (uint64_t index = 0; index < polygonCount; ++index) {
        MeshPolygon polygon;
        if (!ReadPolygonRecord(mesh, index, polygon)) continue;
        Vector3 a{}, b{}, c{}, d{};
        mesh.GetPoint(a, polygon.vertices[0]);
        mesh.GetPoint(b, polygon.vertices[1]);
        mesh.GetPoint(c, polygon.vertices[2]);
        area += Length(doubleArea(a, b, c)) / 2;
        if (!polygon.isTriangle()) area += Length(doubleArea(a, c, mesh.GetPoint(d, polygon.vertices[3]))) / 2;
    }
    return area;
}

CloudSample LeafMesh::Sample(double t, MersenneTwister& random) const
{
    CloudSample sample{matrix.row(3), {0, 0, 0}, weight, 0};
    const uint64_t polygonCount = mesh.polygonEnds.size();
    if (polygonCount == 0) return sample;
    const uint64_t polygon = polygonAt(t, polygonCount);
    const std::span<const uint64_t> corners = mesh.corners(polygon);
    if (corners.size() < 3) return sample;

    // Quads are cut from corner 0 to corner 2, and both halves are equally likely.
    const double r1 = random.real();
    const double r2 = random.real();
    const bool isQuad = corners.size() > 3 && corners[2] != corners[3];
    const size_t half = isQuad && random.real() >= 0.5;
    const Vector3& a = mesh.positions[corners[0]];
    const Vector3& b = mesh.positions[corners[1 + half]];
    const Vector3& c = mesh.positions[corners[2 + half]];

    const double s = std::sqrt(r1);
    const Vector3 place = (1 - s) * a + s * (1 - r2) * b + s * r2 * c;
    sample.position = TransformPoint(place, matrix);
    // Compatibility: the normal does not turn with the leaf. Clouds in existing scenes are lit so.
    sample.normal = Normalized(doubleArea(a, b, c));
    sample.material = mesh.materials[polygon];
    return sample;
}

LitSample LeafMesh::SampleLit(double t, MersenneTwister& random, const Vector3& direction) const
{
    const CloudSample sample = Sample(t, random);
    const Vector3 facing = TurnedTowards(direction, sample.normal); // leaves are lit on both sides
    return {sample.position, static_cast<float>(Dot(direction, facing)), sample.material};
}

} // namespace vdt
