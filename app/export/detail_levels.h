// Levels of detail of one plant: how much to build of it for a given number of triangles.
#pragma once

#include "export/scene_builder.h"

#include <cstdint>
#include <vector>

namespace verdanth {

/// The triangles of one level of a plant.
struct TriangleCount {
    uint64_t branches = 0;
    uint64_t foliage = 0;

    uint64_t total() const { return branches + foliage; }
};

/// What the plant of a detail has; polygons without an area count too.
TriangleCount CountTriangles(const SceneRequest& request, const PlantDetail& detail);

/// For each budget of triangles the detail that comes near it: branches lose roundness and then their thin ends, the
/// foliage loses leaves while the others grow, and both keep their shares as far as they can. None goes beyond the
/// request's own first detail. A budget missed by more than a tenth is told; with `mustMeet` as an error, and the
/// result is false then. False too where a level of a chain would hold nothing, and on cancelling.
bool FindDetails(const SceneRequest& request, const std::vector<uint64_t>& budgets, bool mustMeet,
                 std::vector<PlantDetail>& details, vdt::MessageHandler& messages);

} // namespace verdanth
