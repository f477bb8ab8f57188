#include "vdt/generate/field_grid.h"

#include "vdt/math/box.h"

#include <utility>

namespace vdt {
namespace {

constexpr uint64_t kLongestCount = 16; // nodes

enum class Axis { X, Y, Z };

Axis longestAxis(const Vector3& extent)
{
    if (extent.x > extent.y) return extent.x > extent.z ? Axis::X : Axis::Z;
    return extent.y <= extent.z ? Axis::Z : Axis::Y;
}

// An empty or endless box, or one of non-numbers, has no size that a grid could be laid over.
bool layGrid(const Box& box, FieldGrid& grid)
{
    const Vector3 extent = box.size();
    const Axis longest = longestAxis(extent);
    const double length = longest == Axis::X ? extent.x : longest == Axis::Y ? extent.y : extent.z;
    grid.cellSize = length / static_cast<double>(kLongestCount - 1);
    grid.centre = box.center();
    if (!(grid.cellSize > 0) || !IsFinite(extent) || !IsFinite(grid.centre)) return false;

    // No axis is longer than the longest, so none has many more nodes.
    const auto count = [&](Axis axis, double size) {
        return axis == longest ? kLongestCount : static_cast<uint64_t>(std::ceil(size / grid.cellSize)) + 1;
    };
    grid.countX = count(Axis::X, extent.x);
    grid.countY = count(Axis::Y, extent.y);
    grid.countZ = count(Axis::Z, extent.z);
    grid.values.assign(grid.countX * grid.countY * grid.countZ, 0);
    return true;
}

struct NodeRange {
    uint64_t begin, end;
};

// The nodes of one axis from `low` up to and without `high`, both counted from the first node in model units.
NodeRange nodesBetween(double low, double high, double cellSize, uint64_t count)
{
    const auto index = [&](double distance) {
        const double place = std::ceil(distance / cellSize);
        return place >= static_cast<double>(count) ? count : place > 0 ? static_cast<uint64_t>(place) : 0;
    };
    return {index(low), index(high)};
}

void addPoint(const Vector3& point, const FieldFunction& field, FieldGrid& grid)
{
    const double radius = field.Radius();
    const Vector3 first = grid.origin();
    const auto range = [&](double place, double firstPlace, uint64_t count) {
        return nodesBetween(place - radius - firstPlace, place + radius - firstPlace, grid.cellSize, count);
    };
    const NodeRange xs = range(point.x, first.x, grid.countX);
    const NodeRange ys = range(point.y, first.y, grid.countY);
    const NodeRange zs = range(point.z, first.z, grid.countZ);
    for (uint64_t z = zs.begin; z < zs.end; ++z) {
        for (uint64_t y = ys.begin; y < ys.end; ++y) {
            for (uint64_t x = xs.begin; x < xs.end; ++x) {
                const Vector3 node = grid.node(first, x, y, z);
                const Vector3 difference = node - point;
                if (Dot(difference, difference) > radius * radius) continue;
                grid.values[(z * grid.countY + y) * grid.countX + x] += field.Value(node, point);
            }
        }
    }
}

} // namespace

bool BuildFieldGrid(std::span<const Vector3> points, const FieldFunction& field, FieldGrid& grid)
{
    const double radius = field.Radius();
    if (points.empty() || !(radius >= 0)) return false;

    Box box;
    for (const Vector3& point : points) {
        if (!IsFinite(point)) return false;
        box.extend(point);
    }
    box.min = box.min - Vector3{radius, radius, radius};
    box.max += {radius, radius, radius};

    FieldGrid built;
    if (!layGrid(box, built)) return false;
    for (const Vector3& point : points) addPoint(point, field, built);
    for (const double value : built.values)
        if (!std::isfinite(value)) return false;
    grid = std::move(built);
    return true;
}

} // namespace vdt
