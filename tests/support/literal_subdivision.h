// Subdivision with a whole mesh for every level, points made on demand and appended one by one: slow and plain, the
// judge of the fast one.
#pragma once

#include "support/literal_topology.h"

#include <algorithm>
#include <array>
#include <memory>

namespace vdt::test {

class LiteralSubdivision {
public:
    explicit LiteralSubdivision(const Mesh& source)
        : mesh(source),
          topology(source),
          vertexPoints(mesh.positions.size(), -1),
          edgePoints(topology.edges.size(), -1),
          facePoints(mesh.polygonEnds.size(), -1)
    {
    }

    void run(std::vector<int32_t> polygonLevels, MeshOutputAccessor& output, std::vector<int32_t>& outputIndices)
    {
        levels = std::move(polygonLevels);
        outputIndices.assign(mesh.positions.size(), -1);
        std::vector<int32_t> childLevels;
        for (int32_t f = 0; f < polygonCount(); ++f)
            for (uint64_t corner = start(f); corner < mesh.polygonEnds[at(f)]; ++corner)
                if (levels[at(f)] >= 1 || touchesRefined(f, mesh.polygonVertices[corner]))
                    split(f, corner, childLevels);
        if (next) {
            LiteralSubdivision child(*next);
            child.run(childLevels, output, childIndices);
        }
        for (int32_t f = 0; f < polygonCount(); ++f)
            if (levels[at(f)] == 0) write(f, output, outputIndices);
    }

private:
    static size_t at(int32_t index) { return static_cast<size_t>(index); }
    int32_t polygonCount() const { return static_cast<int32_t>(mesh.polygonEnds.size()); }
    uint64_t start(int32_t f) const { return mesh.polygonStart(at(f)); }
    Vector2f uv(uint64_t corner) const { return mesh.coordinates[mesh.polygonCoordinates[corner]]; }
    uint64_t after(int32_t f, uint64_t corner) const
    {
        return corner + 1 < mesh.polygonEnds[at(f)] ? corner + 1 : start(f);
    }
    const Vector3& p(int32_t point) const { return mesh.positions[at(point)]; }

    bool touchesRefined(int32_t f, uint64_t point) const
    {
        const std::vector<int32_t>& around = topology.pointLinks[point].polygons;
        return std::any_of(around.begin(), around.end(), [&](int32_t g) { return g != f && levels[at(g)] > 0; });
    }

    int32_t add(int32_t& index, const Vector3& position)
    {
        return index = static_cast<int32_t>(next->AddPoint(position, {0, 0, 0}));
    }

    int32_t FacePoint(int32_t f)
    {
        if (facePoints[at(f)] >= 0) return facePoints[at(f)];
        Vector3 sum{0, 0, 0};
        for (const uint64_t point : mesh.corners(at(f))) sum += mesh.positions[point];
        return add(facePoints[at(f)], sum / static_cast<double>(mesh.corners(at(f)).size()));
    }

    int32_t EdgePoint(int32_t e)
    {
        if (edgePoints[at(e)] >= 0) return edgePoints[at(e)];
        const MeshEdge& edge = topology.edges[at(e)];
        if (edge.rightFace < 0) return add(edgePoints[at(e)], (p(edge.low) + p(edge.high)) * 0.5);
        const int32_t left = FacePoint(edge.leftFace), right = FacePoint(edge.rightFace);
        const Vector3 &l = next->positions[at(left)], &r = next->positions[at(right)];
        return add(edgePoints[at(e)], 0.25 * p(edge.low) + 0.25 * p(edge.high) + 0.25 * l + 0.25 * r);
    }

    int32_t VertexPoint(uint64_t v)
    {
        if (vertexPoints[v] >= 0) return vertexPoints[v];
        const LiteralTopology::Links& links = topology.pointLinks[v];
        std::vector<Vector3> boundaryEnds;
        Vector3 ends{0, 0, 0}, faces{0, 0, 0};
        for (const int32_t e : links.edges) {
            const MeshEdge& edge = topology.edges[at(e)];
            const Vector3& end = p(at(edge.low) == v ? edge.high : edge.low);
            ends += end;
            if (edge.rightFace < 0) boundaryEnds.push_back(end);
        }
        for (const int32_t f : links.polygons) {
            const int32_t face = FacePoint(f);
            faces += next->positions[at(face)];
        }
        const Vector3 here = mesh.positions[v];
        const double n = static_cast<double>(static_cast<float>(links.edges.size()));
        if (boundaryEnds.size() >= 3 || links.edges.empty()) return add(vertexPoints[v], here);
        if (boundaryEnds.size() == 2) return add(vertexPoints[v], (boundaryEnds[0] + 6 * here + boundaryEnds[1]) / 8);
        return add(vertexPoints[v], (n - 2) / n * here + 1 / (n * n) * faces + 1 / (n * n) * ends);
    }

    void split(int32_t f, uint64_t corner, std::vector<int32_t>& childLevels)
    {
        if (!next) next = std::make_unique<Mesh>();
        const uint64_t before = corner > start(f) ? corner - 1 : mesh.polygonEnds[at(f)] - 1;
        double u = 0, v = 0;
        for (uint64_t c = start(f); c < mesh.polygonEnds[at(f)]; ++c) {
            u += static_cast<double>(uv(c).u);
            v += static_cast<double>(uv(c).v);
        }
        const auto count = static_cast<double>(mesh.corners(at(f)).size());
        const Vector2f middle{static_cast<float>(u / count), static_cast<float>(v / count)};
        const auto half = [](Vector2f a, Vector2f b) { return Vector2f{(a.u + b.u) * 0.5F, (a.v + b.v) * 0.5F}; };
        const int32_t points[] = {VertexPoint(mesh.polygonVertices[corner]), EdgePoint(topology.cornerEdges[corner]),
                                  FacePoint(f), EdgePoint(topology.cornerEdges[before])};
        const Vector2f uvs[] = {uv(corner), half(uv(corner), uv(after(f, corner))), middle,
                                half(uv(corner), uv(before))};
        AddQuad(*next, {at(points[0]), at(points[1]), at(points[2]), at(points[3])}, {uvs[0], uvs[1], uvs[2], uvs[3]},
                mesh.materials[at(f)]);
        childLevels.push_back(levels[at(f)] - 1);
    }

    int32_t childIndex(int32_t point) const { return at(point) < childIndices.size() ? childIndices[at(point)] : -1; }

    void write(int32_t f, MeshOutputAccessor& output, std::vector<int32_t>& outputIndices)
    {
        std::vector<uint32_t> points;
        std::vector<float> uvs;
        const auto addCorner = [&](int32_t point, Vector2f coordinate) {
            points.push_back(static_cast<uint32_t>(point));
            uvs.insert(uvs.end(), {coordinate.u, coordinate.v});
        };
        size_t insertAt = 0;
        for (uint64_t corner = start(f); corner < mesh.polygonEnds[at(f)]; ++corner) {
            const uint64_t point = mesh.polygonVertices[corner];
            const Vector2f here = uv(corner), there = uv(after(f, corner));
            if (touchesRefined(f, point)) {
                addCorner(childIndex(VertexPoint(point)), here);
            } else {
                if (outputIndices[point] < 0)
                    outputIndices[point] = static_cast<int32_t>(output.AddPoint(mesh.positions[point], {0, 0, 0}));
                addCorner(outputIndices[point], here);
            }
            if (topology.edges.empty()) continue;
            const int32_t e = topology.cornerEdges[corner];
            const MeshEdge& edge = topology.edges[at(e)];
            const int32_t g = edge.leftFace == f ? edge.rightFace : edge.leftFace;
            if (g < 0 || levels[at(g)] != 1) continue;
            insertAt = points.size();
            addCorner(childIndex(EdgePoint(e)),
                      {here.u + (there.u - here.u) * 0.5F, here.v + (there.v - here.v) * 0.5F});
        }
        if (std::count(points.begin(), points.end(), ~uint32_t{0})) return; // a crack: a step of two levels
        const int32_t material = mesh.materials[at(f)];
        if (insertAt == 0) output.AddPolygonFromLists(points, uvs, material);
        if (insertAt == 0 || points.size() != 5) return;
        const int turn = insertAt == 1 ? 1 : 3;
        std::rotate(points.begin(), points.end() - turn, points.end());
        std::rotate(uvs.begin(), uvs.end() - 2 * turn, uvs.end());
        for (const auto& t : {std::array{0U, 1U, 2U}, std::array{0U, 2U, 4U}, std::array{4U, 2U, 3U}}) {
            std::vector<uint32_t> triangle;
            std::vector<float> triangleUvs;
            for (const unsigned c : t) {
                triangle.push_back(points[c]);
                triangleUvs.insert(triangleUvs.end(), {uvs[2 * c], uvs[2 * c + 1]});
            }
            output.AddPolygonFromLists(triangle, triangleUvs, material);
        }
    }

    const Mesh mesh;
    const LiteralTopology topology;
    std::vector<int32_t> levels, childIndices, vertexPoints, edgePoints, facePoints;
    std::unique_ptr<Mesh> next;
};

} // namespace vdt::test
