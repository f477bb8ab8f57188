// The sum of the fields of many points, sampled at the nodes of a coarse grid around them.
#pragma once

#include "vdt/generate/field_function.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vdt {

struct FieldGrid {
    std::vector<double> values;                  // one a node: x fastest, then y, then z
    uint64_t countX = 0, countY = 0, countZ = 0; // nodes
    double cellSize = 0;                         // model units, the same on all axes
    Vector3 centre{};

    double value(uint64_t x, uint64_t y, uint64_t z) const { return values[(z * countY + y) * countX + x]; }

    /// Where the first node stands.
    Vector3 origin() const
    {
        const auto reach = [this](uint64_t count) { return static_cast<double>(count - 1) / 2 * cellSize; };
        return centre - Vector3{reach(countX), reach(countY), reach(countZ)};
    }

    Vector3 node(const Vector3& first, uint64_t x, uint64_t y, uint64_t z) const
    {
        return first + Vector3{static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)} * cellSize;
    }
};

/// Spans 16 nodes along the longest axis of the points' box, grown by the field's radius, and as many as it takes on
/// the others. False, with the grid left as it is, if there are no points, if the box has no extent, or if a point,
/// the box, the radius or the sum at a node is not a finite number; also for a negative radius.
bool BuildFieldGrid(std::span<const Vector3> points, const FieldFunction& field, FieldGrid& grid);

} // namespace vdt
