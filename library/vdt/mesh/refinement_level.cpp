#include "vdt/mesh/refinement_level.h"

#include "vdt/mesh/topology_builder.h"

#include <algorithm>
#include <numeric>

namespace vdt {
namespace {

bool hasRepeatedCorner(std::span<const uint64_t> corners)
{
    for (size_t corner = 0; corner < corners.size(); ++corner)
        if (corners[corner] == corners[corner + 1 < corners.size() ? corner + 1 : 0]) return true;
    return false;
}

// The polygons with a corner on a refined point, ascending. If there is a corner without an edge of its own they are
// all polygons: such a corner borrows the mesh's first edge, which then has to be there with both its polygons.
Array<uint32_t> polygonsToGather(const Mesh& mesh, std::span<const int32_t> levels)
{
    std::vector<uint8_t> refined(mesh.positions.size(), 0);
    const uint64_t polygonCount = mesh.polygonEnds.size();
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon)
        if (levels[polygon] > 0)
            for (const uint64_t point : mesh.corners(polygon)) refined[point] = 1;

    Array<uint32_t> chosen;
    chosen.reserve(polygonCount);
    bool borrowed = false;
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        const std::span<const uint64_t> corners = mesh.corners(polygon);
        borrowed |= hasRepeatedCorner(corners);
        if (std::any_of(corners.begin(), corners.end(), [&](uint64_t point) { return refined[point]; }))
            chosen.push_back(static_cast<uint32_t>(polygon));
    }
    if (borrowed) {
        chosen.resize(polygonCount);
        std::iota(chosen.begin(), chosen.end(), 0);
    }
    return chosen;
}

} // namespace

int32_t RefinementLevel::highestLevel() const
{
    return levels.empty() ? -1 : *std::max_element(levels.begin(), levels.end());
}

void RefinementLevel::markRefinedPoints()
{
    refined.assign(positions.size(), 0);
    for (uint64_t polygon = 0; polygon < ends.size(); ++polygon)
        if (levels[polygon] > 0)
            for (uint32_t corner = start(polygon); corner < ends[polygon]; ++corner) refined[vertices[corner]] = 1;
}

bool RefinementLevel::prepare()
{
    if (!FitsTopology(vertices.size(), positions.size())) return false;

    Array<uint32_t> cornerCounts;
    cornerCounts.assign(positions.size(), 0);
    for (const uint32_t point : vertices) ++cornerCounts[point];
    FindEdges<uint32_t>({ends, vertices}, cornerCounts.data(), positions.size(), cornerEdges, edges);

    sums.assign(positions.size(), PointSums());
    sumFacePoints();
    sumEdges();
    return !edges.empty(); // without edges nothing can be split
}

void RefinementLevel::sumFacePoints()
{
    facePoints.resize(polygonCount());
    uint32_t corner = 0;
    for (uint64_t polygon = 0; polygon < polygonCount(); ++polygon) {
        const uint32_t first = corner, end = ends[polygon];
        Vector3 sum{0, 0, 0};
        for (; corner < end; ++corner) sum += positions[vertices[corner]];
        const Vector3 middle = sum / static_cast<double>(end - first);
        for (corner = first; corner < end; ++corner) sums[vertices[corner]].facePoints += middle;
        facePoints[polygon] = middle;
    }
}

void RefinementLevel::sumEdges()
{
    const auto addBoundary = [this](int32_t point, int32_t other) {
        PointSums& sum = sums[static_cast<size_t>(point)];
        Vector3& boundary = boundarySums[static_cast<size_t>(point)];
        if (sum.boundaryCount == 0)
            boundary = positions[static_cast<size_t>(other)] + 6 * positions[static_cast<size_t>(point)];
        if (sum.boundaryCount == 1) boundary += positions[static_cast<size_t>(other)];
        ++sum.boundaryCount;
    };
    boundarySums.resize(positions.size());
    for (const MeshEdge& edge : edges) {
        PointSums& low = sums[static_cast<size_t>(edge.low)];
        PointSums& high = sums[static_cast<size_t>(edge.high)];
        low.neighbours += positions[static_cast<size_t>(edge.high)];
        high.neighbours += positions[static_cast<size_t>(edge.low)];
        ++low.edgeCount;
        ++high.edgeCount;
        if (edge.rightFace >= 0) continue;
        addBoundary(edge.low, edge.high);
        addBoundary(edge.high, edge.low);
    }
}

Vector3 RefinementLevel::edgePoint(int32_t edge) const
{
    const MeshEdge& e = edges[static_cast<size_t>(edge)];
    const Vector3 ends2 = positions[static_cast<size_t>(e.low)] + positions[static_cast<size_t>(e.high)];
    if (e.rightFace < 0) return ends2 * 0.5;
    return (ends2 + facePoints[static_cast<size_t>(e.leftFace)] + facePoints[static_cast<size_t>(e.rightFace)]) * 0.25;
}

Vector3 RefinementLevel::vertexPoint(uint32_t point) const
{
    const PointSums& sum = sums[point];
    // Where sheets meet the surface has no one side to round to; without edges it has no shape at all.
    if (sum.boundaryCount >= 3 || sum.edgeCount == 0) return positions[point];
    if (sum.boundaryCount == 2) return boundarySums[point] / 8;

    const double n = static_cast<double>(static_cast<float>(sum.edgeCount));
    const double share = 1 / (n * n);
    return (n - 2) / n * positions[point] + share * sum.facePoints + share * sum.neighbours;
}

void RefinementLevel::releasePositions()
{
    facePoints = {};
    sums = {};
    boundarySums = {};
}

RefinementLevel GatherRefinedPart(const Mesh& mesh, std::span<const int32_t> levels, Array<uint32_t>& meshPolygons)
{
    RefinementLevel part;
    meshPolygons.clear();
    if (std::none_of(levels.begin(), levels.end(), [](int32_t level) { return level > 0; })) return part;

    meshPolygons = polygonsToGather(mesh, levels);
    uint64_t cornerCount = 0;
    for (const uint32_t polygon : meshPolygons) cornerCount += mesh.corners(polygon).size();
    part.ends.resize(meshPolygons.size());
    part.materials.resize(meshPolygons.size());
    part.levels.resize(meshPolygons.size());
    part.vertices.resize(cornerCount);
    part.coordinates.resize(cornerCount);
    part.positions.resize(std::min(cornerCount, mesh.positions.size()));

    std::vector<int32_t> pointNumbers(mesh.positions.size(), -1);
    uint32_t corner = 0;
    int32_t pointCount = 0;
    for (size_t polygon = 0; polygon < meshPolygons.size(); ++polygon) {
        const uint64_t meshPolygon = meshPolygons[polygon];
        for (uint64_t from = mesh.polygonStart(meshPolygon); from < mesh.polygonEnds[meshPolygon]; ++from, ++corner) {
            int32_t& number = pointNumbers[mesh.polygonVertices[from]];
            if (number < 0) {
                part.positions[static_cast<size_t>(pointCount)] = mesh.positions[mesh.polygonVertices[from]];
                number = pointCount++;
            }
            part.vertices[corner] = static_cast<uint32_t>(number);
            part.coordinates[corner] = mesh.coordinates[mesh.polygonCoordinates[from]];
        }
        part.ends[polygon] = corner;
        part.materials[polygon] = mesh.materials[meshPolygon];
        part.levels[polygon] = levels[meshPolygon];
    }
    part.positions.resize(static_cast<size_t>(pointCount));
    part.markRefinedPoints();
    return part;
}

RefinementLevel SplitPolygons(const RefinementLevel& parent, Array<int32_t>& vertexPoints, Array<int32_t>& edgePoints)
{
    Array<int32_t> facePointNumbers;
    facePointNumbers.assign(parent.polygonCount(), -1);
    vertexPoints.assign(parent.positions.size(), -1);
    edgePoints.assign(parent.edges.size(), -1);

    uint64_t quadCount = 0;
    for (uint64_t polygon = 0; polygon < parent.polygonCount(); ++polygon)
        for (uint32_t corner = parent.start(polygon); corner < parent.ends[polygon]; ++corner)
            quadCount += parent.levels[polygon] > 0 || parent.refined[parent.vertices[corner]];

    RefinementLevel child;
    child.positions.resize(parent.positions.size() + parent.edges.size() + parent.polygonCount());
    child.ends.resize(quadCount);
    child.materials.resize(quadCount);
    child.levels.resize(quadCount);
    child.vertices.resize(4 * quadCount);
    child.coordinates.resize(4 * quadCount);

    int32_t pointCount = 0;
    const auto pointNumber = [&](int32_t& number, auto&& position) {
        if (number < 0) {
            child.positions[static_cast<size_t>(pointCount)] = position();
            number = pointCount++;
        }
        return static_cast<uint32_t>(number);
    };
    const auto edgeNumber = [&](int32_t edge) {
        return pointNumber(edgePoints[static_cast<size_t>(edge)], [&] { return parent.edgePoint(edge); });
    };

    uint64_t quad = 0;
    ForEachSplitCorner(parent, false, [&](const SplitCorner& split) {
        uint32_t* const vertex = child.vertices.data() + 4 * quad;
        vertex[0] = pointNumber(vertexPoints[split.point], [&] { return parent.vertexPoint(split.point); });
        vertex[1] = edgeNumber(split.edge);
        vertex[2] = pointNumber(facePointNumbers[split.polygon], [&] { return parent.facePoint(split.polygon); });
        vertex[3] = edgeNumber(split.edgeBefore);
        std::copy_n(split.coordinates, 4, child.coordinates.data() + 4 * quad);
        child.materials[quad] = parent.materials[split.polygon];
        child.levels[quad] = std::max(0, parent.levels[split.polygon]) - 1;
        child.ends[quad] = static_cast<uint32_t>(4 * quad + 4);
        ++quad;
    });
    child.positions.resize(static_cast<size_t>(pointCount));
    child.markRefinedPoints();
    return child;
}

} // namespace vdt
