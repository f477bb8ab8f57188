// The convex hull by its plainest procedure: every face looks for its outside points among all points, and every point
// taken in asks all faces. Slow and plain, the judge of the fast one.
#pragma once

#include "vdt/mesh/convex_hull.h"

#include <array>
#include <map>
#include <set>

namespace vdt::test {

/// The triangles of the hull of five points or more, as indices of the input.
inline std::vector<std::array<uint64_t, 3>> LiteralHull(const std::vector<Vector3>& points)
{
    struct Face {
        std::array<uint64_t, 3> vertices;
        std::vector<uint64_t> outside;
        HullPlane plane;
        bool removed = false;
    };
    std::map<uint64_t, Face> faces;
    const auto addFace = [&](uint64_t a, uint64_t b, uint64_t c) {
        Face face{{a, b, c}, {}, HullPlane(points[a], points[b], points[c])};
        for (uint64_t i = 0; i < points.size(); ++i)
            if (face.plane.distance(points[i]) > 0) face.outside.push_back(i);
        const uint64_t key = faces.size();
        faces[key] = face;
    };

    const auto differ = [&](uint64_t i, uint64_t j) { return ExceedsInMagnitude(points[i] - points[j], 1e-8); };
    std::vector<uint64_t> first;
    for (uint64_t i = 0; i < points.size() && first.size() < 3; ++i) {
        const Vector3& p = points[i];
        const size_t found = first.size();
        if ((found == 0 && p.x > -1e38) || (found == 1 && p.x < 1e38 && differ(i, first[0])) ||
            (found == 2 && p.y < 1e38 && differ(i, first[0]) && differ(i, first[1]) &&
             ExceedsInMagnitude(HullPlane(points[first[0]], points[first[1]], p).normal, 1e-8)))
            first.push_back(i);
    }
    if (first.size() < 3) return {};
    addFace(first[0], first[1], first[2]);
    addFace(first[0], first[2], first[1]);

    std::set<std::pair<uint64_t, uint64_t>> horizon;
    for (auto& [key, face] : faces) {
        if (faces.size() >= 64 * points.size()) break;
        uint64_t farthest = kNone;
        double reach = 1e-6;
        for (const uint64_t i : face.outside) {
            const double distance = std::fabs(face.plane.distance(points[i]));
            if (face.removed || !(distance > reach)) continue;
            farthest = i;
            reach = distance;
        }
        if (farthest == kNone) continue;

        for (auto& [otherKey, other] : faces) {
            if (other.removed || !(other.plane.distance(points[farthest]) > 0)) continue;
            other.removed = true;
            for (size_t edge = 0; edge < 3; ++edge) {
                const uint64_t a = other.vertices[edge], b = other.vertices[(edge + 1) % 3];
                if (horizon.erase({a, b}) == 0 && horizon.erase({b, a}) == 0) horizon.insert({a, b});
            }
        }
        for (const auto& [x, y] : horizon) addFace(x, y, farthest);
        horizon.clear();
    }

    std::vector<std::array<uint64_t, 3>> triangles;
    for (const auto& [key, face] : faces)
        if (!face.removed) triangles.push_back(face.vertices);
    return triangles;
}

} // namespace vdt::test
