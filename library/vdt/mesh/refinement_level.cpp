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
    const uint64_t polygonCount = mesh.polygonEnds.size();
    Array<uint32_t> chosen;
    const auto chooseAll = [&] {
        chosen.resize(polygonCount);
        std::iota(chosen.begin(), chosen.end(), 0);
        return std::move(chosen);
    };
    if (std::all_of(levels.begin(), levels.end(), [](int32_t level) { return level > 0; })) return chooseAll();

    std::vector<uint8_t> refined(mesh.positions.size(), 0);
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon)
        if (levels[polygon] > 0)
            for (const uint64_t point : mesh.corners(polygon)) refined[point] = 1;

    chosen.reserve(polygonCount);
    bool borrowed = false;
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        const std::span<const uint64_t> corners = mesh.corners(polygon);
        borrowed |= hasRepeatedCorner(corners);
        if (std::any_of(corners.begin(), corners.end(), [&](uint64_t point) { return refined[point]; }))
            chosen.push_back(static_cast<uint32_t>(polygon));
    }
    return borrowed ? chooseAll() : chosen;
}

// A part that is all of the mesh keeps the mesh's numbers.
RefinementLevel wholeMesh(const Mesh& mesh, std::span<const int32_t> levels)
{
    RefinementLevel whole;
    whole.positions = mesh.positions;
    whole.materials = mesh.materials;
    whole.levels = levels;
    whole.ends.assign(mesh.polygonEnds.begin(), mesh.polygonEnds.end());
    whole.vertices.resize(mesh.polygonVertices.size());
    std::transform(mesh.polygonVertices.begin(), mesh.polygonVertices.end(), whole.vertices.begin(),
                   [](uint64_t point) { return static_cast<uint32_t>(point); });

    // Generators give each corner a coordinate of its own, in order.
    uint64_t corner = 0;
    const uint64_t cornerCount = mesh.polygonCoordinates.size();
    while (corner < cornerCount && mesh.polygonCoordinates[corner] == corner) ++corner;
    whole.coordinates = std::span(mesh.coordinates).first(corner);
    if (corner < cornerCount) {
        whole.ownCoordinates.resize(cornerCount);
        for (corner = 0; corner < cornerCount; ++corner)
            whole.ownCoordinates[corner] = mesh.coordinates[mesh.polygonCoordinates[corner]];
        whole.coordinates = whole.ownCoordinates;
    }
    return whole;
}

// A part with points numbered in order of first appearance.
RefinementLevel partOfMesh(const Mesh& mesh, std::span<const int32_t> levels, std::span<const uint32_t> meshPolygons)
{
    RefinementLevel part;
    uint64_t cornerCount = 0;
    for (const uint32_t polygon : meshPolygons) cornerCount += mesh.corners(polygon).size();
    part.ends.resize(meshPolygons.size());
    part.ownMaterials.resize(meshPolygons.size());
    part.ownLevels.resize(meshPolygons.size());
    part.vertices.resize(cornerCount);
    part.ownCoordinates.resize(cornerCount);

    std::vector<int32_t> pointNumbers(mesh.positions.size(), -1);
    uint32_t corner = 0;
    for (size_t polygon = 0; polygon < meshPolygons.size(); ++polygon) {
        const uint64_t meshPolygon = meshPolygons[polygon];
        for (uint64_t from = mesh.polygonStart(meshPolygon); from < mesh.polygonEnds[meshPolygon]; ++from, ++corner) {
            int32_t& number = pointNumbers[mesh.polygonVertices[from]];
            if (number < 0) {
                number = static_cast<int32_t>(part.ownPositions.size());
                part.ownPositions.push_back(mesh.positions[mesh.polygonVertices[from]]);
            }
            part.vertices[corner] = static_cast<uint32_t>(number);
            part.ownCoordinates[corner] = mesh.coordinates[mesh.polygonCoordinates[from]];
        }
        part.ends[polygon] = corner;
        part.ownMaterials[polygon] = mesh.materials[meshPolygon];
        part.ownLevels[polygon] = levels[meshPolygon];
    }
    part.showOwn();
    return part;
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

void RefinementLevel::showOwn()
{
    positions = ownPositions;
    coordinates = ownCoordinates;
    materials = ownMaterials;
    levels = ownLevels;
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
        for (corner = first; corner < end; ++corner) sums[vertices[corner]].around += middle;
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
        low.around += positions[static_cast<size_t>(edge.high)];
        high.around += positions[static_cast<size_t>(edge.low)];
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

    const auto n = static_cast<double>(static_cast<float>(sum.edgeCount));
    return (n - 2) / n * positions[point] + 1 / (n * n) * sum.around;
}

Vector2f RefinementLevel::middleCoordinate(uint64_t polygon) const
{
    double u = 0, v = 0;
    for (uint32_t corner = start(polygon); corner < ends[polygon]; ++corner) {
        u += static_cast<double>(coordinates[corner].u);
        v += static_cast<double>(coordinates[corner].v);
    }
    const double count = ends[polygon] - start(polygon);
    return {static_cast<float>(u / count), static_cast<float>(v / count)};
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
    const bool isWhole = meshPolygons.size() == mesh.polygonEnds.size();
    part = isWhole ? wholeMesh(mesh, levels) : partOfMesh(mesh, levels, meshPolygons);
    part.markRefinedPoints();
    return part;
}

RefinementLevel SplitPolygons(const RefinementLevel& parent, Array<int32_t>& vertexPoints, Array<int32_t>& edgePoints)
{
    vertexPoints.assign(parent.positions.size(), -1);
    edgePoints.assign(parent.edges.size(), -1);

    const auto isSplit = [&](uint64_t polygon, uint32_t corner) {
        return parent.levels[polygon] > 0 || parent.refined[parent.vertices[corner]];
    };
    uint64_t quadCount = 0;
    for (uint64_t polygon = 0; polygon < parent.polygonCount(); ++polygon)
        for (uint32_t corner = parent.start(polygon); corner < parent.ends[polygon]; ++corner)
            quadCount += isSplit(polygon, corner);

    RefinementLevel child;
    child.ownPositions.resize(parent.positions.size() + parent.edges.size() + parent.polygonCount());
    child.ends.resize(quadCount);
    child.ownMaterials.resize(quadCount);
    child.ownLevels.resize(quadCount);
    child.vertices.resize(4 * quadCount);
    child.ownCoordinates.resize(4 * quadCount);

    uint32_t pointCount = 0;
    const auto newPoint = [&](const Vector3& position) {
        child.ownPositions[pointCount] = position;
        return pointCount++;
    };
    const auto vertexPoint = [&](uint32_t point) {
        int32_t& number = vertexPoints[point];
        if (number < 0) number = static_cast<int32_t>(newPoint(parent.vertexPoint(point)));
        return static_cast<uint32_t>(number);
    };
    const auto edgePoint = [&](uint32_t corner) {
        int32_t& number = edgePoints[static_cast<size_t>(parent.cornerEdges[corner])];
        if (number < 0) number = static_cast<int32_t>(newPoint(parent.edgePoint(parent.cornerEdges[corner])));
        return static_cast<uint32_t>(number);
    };

    uint64_t quad = 0;
    for (uint64_t polygon = 0; polygon < parent.polygonCount(); ++polygon) {
        const uint32_t first = parent.start(polygon), end = parent.ends[polygon];
        const Vector2f middle = parent.middleCoordinate(polygon);
        uint32_t facePoint = UINT32_MAX;
        for (uint32_t corner = first; corner < end; ++corner) {
            if (!isSplit(polygon, corner)) continue;
            const uint32_t before = corner > first ? corner - 1 : end - 1,
                           after = corner + 1 < end ? corner + 1 : first;
            if (facePoint == UINT32_MAX) facePoint = newPoint(parent.facePoint(polygon));
            uint32_t* const vertex = child.vertices.data() + 4 * quad;
            vertex[0] = vertexPoint(parent.vertices[corner]);
            vertex[1] = edgePoint(corner);
            vertex[2] = facePoint;
            vertex[3] = edgePoint(before);
            Vector2f* const coordinate = child.ownCoordinates.data() + 4 * quad;
            coordinate[0] = parent.coordinates[corner];
            coordinate[1] = Midpoint(parent.coordinates[corner], parent.coordinates[after]);
            coordinate[2] = middle;
            coordinate[3] = Midpoint(parent.coordinates[corner], parent.coordinates[before]);
            child.ownMaterials[quad] = parent.materials[polygon];
            child.ownLevels[quad] = std::max(0, parent.levels[polygon]) - 1;
            child.ends[quad] = static_cast<uint32_t>(4 * quad + 4);
            ++quad;
        }
    }
    child.ownPositions.resize(pointCount);
    child.showOwn();
    child.markRefinedPoints();
    return child;
}

} // namespace vdt
