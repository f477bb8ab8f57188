#include "export/triangles.h"

#include <algorithm>
#include <set>

namespace verdanth {
namespace {

// Gathers the triangles of one material, with vertices numbered in the order of their first use.
class TriangleGatherer {
public:
    TriangleGatherer(const SceneMesh& source, TriangleMesh& target)
        : mesh(&source),
          triangles(&target),
          newIndex(source.vertices.size(), kUnused)
    {
    }

    void addPolygon(size_t polygon)
    {
        const uint32_t start = mesh->polygonStart(polygon);
        const uint32_t end = mesh->polygonEnds[polygon];
        if (end - start == 4) return addQuad(start);
        for (uint32_t corner = start + 1; corner + 1 < end; ++corner) addTriangle(start, corner, corner + 1);
    }

private:
    static constexpr uint32_t kUnused = ~uint32_t{0};

    vdt::Vector3 position(uint32_t corner) const
    {
        return Widened(mesh->points[mesh->vertices[mesh->corners[corner]].point]);
    }

    vdt::Vector3 doubleArea(uint32_t a, uint32_t b, uint32_t c) const
    {
        return vdt::Cross(position(b) - position(a), position(c) - position(a));
    }

    void addQuad(uint32_t start)
    {
        const uint32_t a = start, b = start + 1, c = start + 2, d = start + 3;
        const bool cutAtFirst = vdt::Dot(doubleArea(a, b, c), doubleArea(a, c, d)) >= 0;
        addTriangle(a, b, cutAtFirst ? c : d);
        addTriangle(cutAtFirst ? a : b, c, d);
    }

    void addTriangle(uint32_t a, uint32_t b, uint32_t c)
    {
        if (doubleArea(a, b, c) == vdt::Vector3{0, 0, 0}) return;
        for (const uint32_t corner : {a, b, c}) triangles->indices.push_back(indexOf(mesh->corners[corner]));
    }

    uint32_t indexOf(uint32_t vertex)
    {
        if (newIndex[vertex] != kUnused) return newIndex[vertex];
        const SceneVertex& source = mesh->vertices[vertex];
        triangles->positions.push_back(mesh->points[source.point]);
        triangles->normals.push_back(mesh->normals[source.point]);
        triangles->coordinates.push_back(source.coordinate);
        return newIndex[vertex] = static_cast<uint32_t>(triangles->positions.size() - 1);
    }

    const SceneMesh* mesh;
    TriangleMesh* triangles;
    std::vector<uint32_t> newIndex;
};

} // namespace

TriangleMesh TrianglesOf(const SceneMesh& mesh, uint32_t material)
{
    TriangleMesh triangles;
    TriangleGatherer gatherer(mesh, triangles);
    for (size_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon)
        if (mesh.polygonMaterials[polygon] == material) gatherer.addPolygon(polygon);
    return triangles;
}

std::vector<uint32_t> MaterialsOf(const SceneMesh& mesh)
{
    const std::set<uint32_t> used(mesh.polygonMaterials.begin(), mesh.polygonMaterials.end());
    return {used.begin(), used.end()};
}

Placer::Placer(const Placement& placement)
    : matrix(placement.matrix()),
      turn(vdt::ToMatrix(placement.rotation, {0, 0, 0})),
      mirrored(placement.scale < 0)
{
    // A negative scale turns all three axes round, and what points outwards with them.
    if (mirrored)
        for (int row = 0; row < 3; ++row) turn.setRow(row, -turn.row(row));
}

Float3 Placer::point(const Float3& p) const
{
    return Narrowed(vdt::TransformPoint(Widened(p), matrix));
}

Float3 Placer::normal(const Float3& n) const
{
    return Narrowed(vdt::Normalized(vdt::TransformVector(Widened(n), turn)));
}

} // namespace verdanth
