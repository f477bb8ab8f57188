// Edges and links of a mesh, by an ordered map and lists of their own for every point: slow and plain, the judge of
// the fast tables.
#pragma once

#include "vdt/mesh/mesh.h"

#include <map>
#include <vector>

namespace vdt::test {

struct LiteralTopology {
    struct Links {
        std::vector<int32_t> polygons, edges;
    };
    std::vector<Links> pointLinks;
    std::vector<int32_t> cornerEdges;
    std::vector<MeshEdge> edges;

    explicit LiteralTopology(const Mesh& mesh)
        : pointLinks(mesh.positions.size()),
          cornerEdges(mesh.polygonVertices.size(), 0)
    {
        std::map<std::pair<int32_t, int32_t>, int32_t> known;
        for (uint64_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon) {
            const std::span<const uint64_t> corners = mesh.corners(polygon);
            uint64_t place = mesh.polygonStart(polygon);
            for (size_t corner = 0; corner < corners.size(); ++corner) {
                const auto a = static_cast<int32_t>(corners[corner]);
                const auto b = static_cast<int32_t>(corners[(corner + 1) % corners.size()]);
                if (a == b) continue;
                const auto [entry, isNew] = known.emplace(std::minmax({a, b}), static_cast<int32_t>(edges.size()));
                if (isNew) {
                    edges.push_back({entry->first.first, entry->first.second, static_cast<int32_t>(polygon), -1});
                    for (const int32_t end : {a, b})
                        pointLinks[static_cast<size_t>(end)].edges.push_back(entry->second);
                } else {
                    edges[static_cast<size_t>(entry->second)].rightFace = static_cast<int32_t>(polygon);
                }
                cornerEdges[place++] = entry->second;
            }
            for (const uint64_t corner : corners) pointLinks[corner].polygons.push_back(static_cast<int32_t>(polygon));
        }
    }
};

} // namespace vdt::test
