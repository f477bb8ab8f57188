// A level is split in one pass over its corners. Children that are not refined further go to the output as they are
// made, in the order in which a mesh of theirs would list them; only levels between are kept, and only until the
// levels below them are done.
#include "vdt/mesh/subdivision.h"

#include "vdt/mesh/mesh_writer.h"
#include "vdt/mesh/refinement_level.h"
#include "vdt/mesh/topology_builder.h"

#include <algorithm>
#include <cmath>

namespace vdt {
namespace {

// Where the refined part of a level came to stand in the output, for the polygons that border on it; -1 where it did
// not come there.
struct Seam {
    Array<int32_t> vertexPoints; // the moved copy of each point
    Array<int32_t> edgePoints;   // the point on each edge
};

// The corners of a polygon on its way to the output. Those beyond the fifth are counted only: such a polygon is left
// out.
struct CornerList {
    int32_t points[5];
    Vector2f coordinates[5];
    size_t count = 0;

    void add(int32_t point, const Vector2f& coordinate)
    {
        if (count < 5) {
            points[count] = point;
            coordinates[count] = coordinate;
        }
        ++count;
    }

    // A step of two levels or more leaves corners without a point.
    bool isWritable() const
    {
        return count >= 3 && count <= 5 && std::none_of(points, points + count, [](int32_t p) { return p < 0; });
    }

    void rotateRight(size_t places)
    {
        std::rotate(points, points + 5 - places, points + 5);
        std::rotate(coordinates, coordinates + 5 - places, coordinates + 5);
    }
};

template <class Writer> class Subdivider {
public:
    Subdivider(const Writer& outputWriter, MessageHandler& messageHandler)
        : writer(outputWriter),
          messages(messageHandler)
    {
    }

    void run(const Mesh& mesh, std::span<const int32_t> levels, std::vector<int32_t>& outputIndices)
    {
        const Stopwatch stopwatch;
        Array<uint32_t> meshPolygons;
        RefinementLevel part = GatherRefinedPart(mesh, levels, meshPolygons);
        Seam seam;
        const bool refines = prepare(part, stopwatch);
        reserve(mesh, levels, part);
        if (refines) writeRefined(part, seam);

        uint64_t partPolygon = 0;
        for (uint64_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon) {
            const bool inPart = partPolygon < meshPolygons.size() && meshPolygons[partPolygon] == polygon;
            if (levels[polygon] != 0) {
            } else if (inPart) {
                const uint64_t* const points = mesh.corners(polygon).data();
                writeBordering(part, partPolygon, seam,
                               [&](uint32_t corner) -> int32_t& { return outputIndices[points[corner]]; });
            } else {
                writeUnchanged(mesh, polygon, outputIndices);
            }
            partPolygon += inPart;
        }
        writer.finish();
    }

private:
    bool prepare(RefinementLevel& level, const Stopwatch& stopwatch)
    {
        const bool refines = level.highestLevel() > 0 && level.prepare();
        ReportTopologyTime(messages, stopwatch);
        return refines;
    }

    // Room for all that is to come, exact but for the unrefined polygons around the refined part. `part` is prepared.
    void reserve(const Mesh& mesh, std::span<const int32_t> levels, const RefinementLevel& part)
    {
        uint64_t points = mesh.positions.size(), polygons = 0, corners = 0, largest = 3;
        const auto inner = [](int32_t level) { return level > 0 ? (uint64_t{1} << level) - 1 : 0; };
        for (const MeshEdge& edge : part.edges) {
            const int32_t right = edge.rightFace < 0 ? 0 : part.levels[static_cast<size_t>(edge.rightFace)];
            points += inner(std::max(right, part.levels[static_cast<size_t>(edge.leftFace)]));
        }
        for (uint64_t polygon = 0; polygon < levels.size(); ++polygon) {
            const int32_t level = levels[polygon];
            const uint64_t count = mesh.corners(polygon).size();
            if (count == 0) continue; // of any level
            largest = std::max(largest, count);
            if (level == 0) {
                ++polygons;
                corners += count;
            } else if (level > 0) {
                const uint64_t rows = inner(level - 1);
                points += 1 + count * rows * (rows + 1);
                polygons += count << (2 * (level - 1));
                corners += count << (2 * level);
            }
        }
        const uint64_t fans =
            part.polygonCount() - static_cast<uint64_t>(std::count_if(part.levels.begin(), part.levels.end(),
                                                                      [](int32_t level) { return level > 0; }));
        // The last polygons, too, are given the room that any might need.
        writer.reserve(points + 2 * largest + 1, polygons + 2 * fans + largest, corners + 5 * fans + 4 * largest);
    }

    // The refined polygons of a prepared level, down to the deepest.
    void writeRefined(RefinementLevel& level, Seam& seam)
    {
        if (level.highestLevel() > 1) return writeDeeper(level, seam);
        writeQuads(level, seam);
        level.releasePositions();
        ReportTopologyTime(messages, Stopwatch()); // one line a level; the last one takes no time
    }

    void writeDeeper(RefinementLevel& level, Seam& seam)
    {
        const Stopwatch stopwatch;
        RefinementLevel child = SplitPolygons(level, seam.vertexPoints, seam.edgePoints);
        level.releasePositions();

        std::vector<int32_t> outputIndices(child.positions.size(), -1);
        Seam childSeam;
        if (prepare(child, stopwatch)) writeRefined(child, childSeam);
        for (uint64_t polygon = 0; polygon < child.polygonCount(); ++polygon)
            if (child.levels[polygon] == 0)
                writeBordering(child, polygon, childSeam, [&](uint32_t corner) -> int32_t& {
                    return outputIndices[child.vertices[child.start(polygon) + corner]];
                });

        for (Array<int32_t>* numbers : {&seam.vertexPoints, &seam.edgePoints})
            for (int32_t& number : *numbers)
                if (number >= 0) number = outputIndices[static_cast<size_t>(number)];
    }

    // The children of polygons of level 1, with points numbered as these first name them: corner by corner its moved
    // copy, the point on the edge that leaves it, the polygon's own, the point on the edge that arrives.
    void writeQuads(const RefinementLevel& level, Seam& seam)
    {
        seam.vertexPoints.assign(level.positions.size(), -1);
        seam.edgePoints.assign(level.edges.size(), -1);
        uint32_t first = 0;
        for (uint64_t polygon = 0; polygon < level.polygonCount(); ++polygon) {
            const uint32_t end = level.ends[polygon];
            if (level.levels[polygon] > 0 && first < end) writeChildren(level, polygon, {first, end}, seam);
            first = end;
        }
    }

    struct CornerRange {
        uint32_t first, end;
    };

    void writeChildren(const RefinementLevel& level, uint64_t polygon, CornerRange corners, Seam& seam)
    {
        const uint32_t count = corners.end - corners.first;
        writer.makeRoom(2 * count + 1, count, 4 * count);
        const auto edgePoint = [&](uint32_t corner) {
            const int32_t edge = level.cornerEdges[corner];
            int32_t& number = seam.edgePoints[static_cast<size_t>(edge)];
            if (number < 0) number = addPoint(level.edgePoint(edge));
            return number;
        };

        int32_t facePoint = -1, before = -1;
        const Vector2f* const coordinates = level.coordinates.data();
        const Vector2f middle = level.middleCoordinate(polygon);
        Vector2f arriving = Midpoint(coordinates[corners.first], coordinates[corners.end - 1]);
        for (uint32_t corner = corners.first; corner < corners.end; ++corner) {
            const uint32_t after = corner + 1 < corners.end ? corner + 1 : corners.first;
            int32_t& moved = seam.vertexPoints[level.vertices[corner]];
            if (moved < 0) moved = addPoint(level.vertexPoint(level.vertices[corner]));
            const int32_t leaving = edgePoint(corner);
            if (corner == corners.first) {
                facePoint = addPoint(level.facePoint(polygon));
                before = edgePoint(corners.end - 1);
            }
            const Vector2f leavingCoordinate = Midpoint(coordinates[corner], coordinates[after]);
            const int32_t points[] = {moved, leaving, facePoint, before};
            const Vector2f uvs[] = {coordinates[corner], leavingCoordinate, middle, arriving};
            writer.addPolygonFromLists(4, points, uvs, level.materials[polygon]);
            before = leaving;
            arriving = leavingCoordinate;
        }
    }

    // A polygon of level 0 with neighbours that may be refined. `indexAt` gives the place where a corner's output
    // index is kept.
    template <class IndexAt>
    void writeBordering(const RefinementLevel& level, uint64_t polygon, const Seam& seam, const IndexAt& indexAt)
    {
        const uint32_t first = level.start(polygon), count = level.ends[polygon] - first;
        const bool isRefined = !seam.vertexPoints.empty();
        size_t insertAt = 0;
        CornerList list;
        writer.makeRoom(count, 3, 9);
        for (uint32_t corner = 0; corner < count; ++corner) {
            const uint32_t point = level.vertices[first + corner];
            const Vector2f& coordinate = level.coordinates[first + corner];
            if (level.refined[point]) {
                list.add(isRefined ? seam.vertexPoints[point] : -1, coordinate);
            } else {
                int32_t& index = indexAt(corner);
                if (index < 0) index = addPoint(level.positions[point]);
                list.add(index, coordinate);
            }
            if (!isRefined) continue;

            // A neighbour of level 1 has a point in the middle of this edge.
            const int32_t edge = level.cornerEdges[first + corner];
            const MeshEdge& faces = level.edges[static_cast<size_t>(edge)];
            const int32_t across = faces.leftFace == static_cast<int32_t>(polygon) ? faces.rightFace : faces.leftFace;
            if (across < 0 || level.levels[static_cast<size_t>(across)] != 1) continue;
            const Vector2f& next = level.coordinates[first + (corner + 1 < count ? corner + 1 : 0)];
            insertAt = list.count;
            list.add(seam.edgePoints[static_cast<size_t>(edge)],
                     {coordinate.u + (next.u - coordinate.u) * 0.5F, coordinate.v + (next.v - coordinate.v) * 0.5F});
        }

        if (!list.isWritable()) return;
        const int32_t material = level.materials[polygon];
        if (insertAt == 0)
            writer.addPolygonFromLists(list.count, list.points, list.coordinates, material);
        else if (list.count == 5)
            writeFan(list, insertAt, material);
    }

    // Three triangles that meet the neighbour's point. With points on more edges than one nothing fits.
    void writeFan(CornerList& list, size_t insertAt, int32_t material)
    {
        // Compatibility: a point on the second edge is turned as those on the later ones; existing files look so.
        list.rotateRight(insertAt == 1 ? 1 : 3);
        constexpr size_t kTriangles[3][3] = {{0, 1, 2}, {0, 2, 4}, {4, 2, 3}};
        for (const auto& [a, b, c] : kTriangles) {
            const int32_t points[] = {list.points[a], list.points[b], list.points[c]};
            const Vector2f coordinates[] = {list.coordinates[a], list.coordinates[b], list.coordinates[c]};
            writer.addPolygonFromLists(3, points, coordinates, material);
        }
    }

    // A polygon of level 0 away from all that is refined.
    void writeUnchanged(const Mesh& mesh, uint64_t polygon, std::vector<int32_t>& outputIndices)
    {
        const uint64_t first = mesh.polygonStart(polygon), end = mesh.polygonEnds[polygon];
        CornerList list;
        writer.makeRoom(end - first, 1, 5);
        for (uint64_t corner = first; corner < end; ++corner) {
            const uint64_t point = mesh.polygonVertices[corner];
            int32_t& index = outputIndices[point];
            if (index < 0) index = addPoint(mesh.positions[point]);
            list.add(index, mesh.coordinates[mesh.polygonCoordinates[corner]]);
        }
        if (list.isWritable())
            writer.addPolygonFromLists(list.count, list.points, list.coordinates, mesh.materials[polygon]);
    }

    // -1 if the output numbers its points beyond what the tables hold.
    int32_t addPoint(const Vector3& position)
    {
        const uint64_t index = writer.addPoint(position, {0, 0, 0});
        return index <= INT32_MAX ? static_cast<int32_t>(index) : -1;
    }

    Writer writer;
    MessageHandler& messages;
};

// True if no table of the run, down to the deepest level, outgrows its indices.
bool isFeasible(const Mesh& mesh, std::span<const int32_t> levels)
{
    if (!FitsTopology(mesh.polygonVertices.size(), mesh.positions.size())) return false;
    double corners = 0;
    for (uint64_t polygon = 0; polygon < levels.size(); ++polygon) {
        const double count = static_cast<double>(mesh.corners(polygon).size());
        corners += levels[polygon] > 0 ? count * std::ldexp(1.0, 2 * std::min(levels[polygon], 40)) : count;
    }
    return corners <= INT32_MAX;
}

} // namespace

void Subdivide(const Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
               std::span<const int32_t> polygonLevels)
{
    std::vector<int32_t> outputIndices;
    SubdivideLevel(mesh, output, messages, polygonLevels, outputIndices);
}

void SubdivideLevel(const Mesh& mesh, MeshOutputAccessor& output, MessageHandler& messages,
                    std::span<const int32_t> polygonLevels, std::vector<int32_t>& outputIndices)
{
    Mesh* const outputMesh = dynamic_cast<Mesh*>(&output);
    if (outputMesh == &mesh) return SubdivideLevel(Mesh(mesh), output, messages, polygonLevels, outputIndices);

    // One level for each polygon; those that none is told for stay as they are.
    const uint64_t polygonCount = mesh.polygonEnds.size();
    std::vector<int32_t> completed;
    if (polygonLevels.size() != polygonCount) {
        completed.assign(polygonLevels.begin(), polygonLevels.end());
        completed.resize(polygonCount, polygonLevels.size() == 1 ? polygonLevels[0] : 0);
        polygonLevels = completed;
    }

    outputIndices.resize(mesh.positions.size(), -1);
    if (!isFeasible(mesh, polygonLevels)) {
        messages.error("The mesh is too large to be subdivided.");
        return;
    }
    if (outputMesh && MeshWriter::suits(*outputMesh))
        Subdivider(MeshWriter(*outputMesh), messages).run(mesh, polygonLevels, outputIndices);
    else
        Subdivider(AccessorWriter(output), messages).run(mesh, polygonLevels, outputIndices);
}

} // namespace vdt
