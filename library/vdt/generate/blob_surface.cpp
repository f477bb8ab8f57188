#include "vdt/generate/blob_surface.h"

#include "vdt/generate/field_grid.h"
#include "vdt/generate/marching_cubes.h"

#include <vector>

namespace vdt {
namespace {

constexpr double kSamePlace = 1e-6; // model units, on each axis
constexpr int32_t kNoMaterial = -1;

class Polygonizer {
public:
    Polygonizer(std::span<const Vector3> fieldPoints, const FieldFunction& fieldFunction, const FieldGrid& fieldGrid,
                double surfaceValue, MeshOutputAccessor& mesh)
        : points(fieldPoints),
          field(fieldFunction),
          grid(fieldGrid),
          threshold(surfaceValue),
          output(mesh)
    {
    }

    void run()
    {
        const Vector3 first = grid.origin();
        for (uint64_t x = 0; x + 1 < grid.countX; ++x) {
            forgetBefore(grid.node(first, x, 0, 0).x);
            for (uint64_t y = 0; y + 1 < grid.countY; ++y)
                for (uint64_t z = 0; z + 1 < grid.countZ; ++z) writeCell(grid.node(first, x, y, z), x, y, z);
        }
    }

private:
    struct Written {
        Vector3 position;
        uint64_t point, coordinate; // indices in the output
    };

    // From a threshold of 1 on the marked side is the strong one, below it the weak one, so inside and outside swap.
    bool isMarked(double value) const { return threshold >= 1 ? value >= threshold : value <= threshold; }

    // No later corner lies before `x`, so what lies too far before it need not be searched any more.
    void forgetBefore(double x)
    {
        while (firstKept < written.size() && !(x - written[firstKept].position.x < kSamePlace)) ++firstKept;
    }

    void writeCell(const Vector3& place, uint64_t x, uint64_t y, uint64_t z)
    {
        double values[8];
        uint32_t marks = 0;
        for (uint32_t corner = 0; corner < 8; ++corner) {
            const auto& offset = kCubeCorners[corner];
            values[corner] = grid.value(x + offset[0], y + offset[1], z + offset[2]);
            marks |= static_cast<uint32_t>(isMarked(values[corner])) << corner;
        }

        for (const char* row = kCubeTriangles[marks]; *row; row += 3) {
            uint64_t vertices[3], coordinates[3];
            for (uint32_t corner = 0; corner < 3; ++corner) {
                const Written& found = findOrWrite(place + crossing(EdgeOfDigit(row[corner]), values));
                // The table's triangles face the marked side; turned round they face away from it.
                vertices[2 - corner] = found.point;
                coordinates[2 - corner] = found.coordinate;
            }
            output.AddPolygon(vertices, coordinates, kNoMaterial);
        }
    }

    // Where the surface cuts an edge, from the cell's first corner.
    Vector3 crossing(uint32_t edge, const double (&values)[8]) const
    {
        const auto [a, b] = kCubeEdges[edge];
        const double part = values[a] == values[b] ? 0.5 : (threshold - values[a]) / (values[b] - values[a]);
        const Vector3 from = cornerOffset(a);
        return (from + (cornerOffset(b) - from) * part) * grid.cellSize;
    }

    static Vector3 cornerOffset(uint32_t corner)
    {
        const auto& offset = kCubeCorners[corner];
        return {double(offset[0]), double(offset[1]), double(offset[2])};
    }

    const Written& findOrWrite(const Vector3& position)
    {
        for (size_t i = firstKept; i < written.size(); ++i) {
            const Vector3 distance = written[i].position - position;
            if (std::fabs(distance.x) < kSamePlace && std::fabs(distance.y) < kSamePlace &&
                std::fabs(distance.z) < kSamePlace)
                return written[i];
        }
        const uint64_t point = output.AddPoint(position, normalAt(position));
        const uint64_t coordinate = output.AddUV(static_cast<float>(position.x), static_cast<float>(position.y));
        return written.emplace_back(Written{position, point, coordinate});
    }

    Vector3 normalAt(const Vector3& position) const
    {
        Vector3 sum{0, 0, 0}, gradient;
        for (const Vector3& point : points) sum += field.Gradient(gradient, position, point);
        return Normalized(sum);
    }

    std::span<const Vector3> points;
    const FieldFunction& field;
    const FieldGrid& grid;
    double threshold;
    MeshOutputAccessor& output;
    std::vector<Written> written;
    size_t firstKept = 0; // in `written`: those before it are too far behind to be met again
};

} // namespace

void Polygonize(std::span<const Vector3> points, const FieldFunction& field, double threshold,
                MeshOutputAccessor& output)
{
    FieldGrid grid;
    if (!BuildFieldGrid(points, field, grid)) return;
    Polygonizer(points, field, grid, threshold, output).run();
}

} // namespace vdt
