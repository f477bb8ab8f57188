#include "vdt/generate/control_mesh.h"

#include "vdt/mesh/mesh_writer.h"
#include "vdt/mesh/stopwatch.h"
#include "vdt/skeleton/ring.h"

#include <algorithm>
#include <array>
#include <string>

namespace vdt {
namespace {

constexpr double kZeroRadius = kEpsilon;                // such a twig has no surface
constexpr double kAreaFactor = 1.772453850905516 * 0.5; // a square of this half width has the circle's area
constexpr double kHairpin = 0.001, kStraight = 0.999;   // cosines of half a bend that no mitre helps or needs
constexpr double kLargestStretch = 20;                  // of a mitred ring
constexpr Vector2f kFootCoordinates[] = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
constexpr Vector2f kTipCoordinates[] = {{1, 0}, {1, 1}, {0, 1}, {0, 0}};

using Ring = std::array<uint64_t, 4>;

enum class RingNormals { Outwards, Forwards, Backwards };

// What is known of a branch while the walk is on it.
struct MeshGeneratorData {
    Ring ring{}; // the ring reached so far
    bool hasRing = false;
    float lastTexV = 0;
    int32_t subdivisionLevel = 0; // of all the branch's polygons
};

// A vertex's frame: x and y span the ring, z goes along the branch.
struct RingFrame {
    Vector3 x, y, z, origin;
};

// A radius that is no number, or none that geometry could have, makes no surface.
double usableRadius(const SkeletonVertex& vertex)
{
    return std::isfinite(vertex.attributes.radius) ? vertex.attributes.radius : 0;
}

// The other vertices on the tip's point that go on with a surface: 0, 1 or 2 for more than one.
int countContinuations(const SkeletonVertex& tip)
{
    int continuations = 0;
    for (const SkeletonVertex& other : RingOthers(tip))
        if (usableRadius(other) > kZeroRadius && ++continuations == 2) break;
    return continuations;
}

// At a bend a ring would pinch the tube. The frame is stretched in the plane of the bend, across the tangent, as in a
// mitred pipe joint. The two unit directions differ by just the direction across, so changing to the bend's axes,
// stretching one and changing back come down to adding the stretch along that direction.
inline void MiterFrame(RingFrame& frame, const Skeleton& skeleton, const SkeletonVertex& vertex)
{
    const Vector3 a = frame.origin - skeleton.points[vertex.prev->point].position;
    const Vector3 b = skeleton.points[vertex.next->point].position - frame.origin;
    if (!ExceedsInMagnitude(a, kSmallestDirection) || !ExceedsInMagnitude(b, kSmallestDirection)) return;

    const double lengthA = Length(a), lengthB = Length(b);
    const double halfAngleCosine = std::sqrt((1 + Dot(a, b) / (lengthA * lengthB)) / 2);
    if (!(halfAngleCosine > kHairpin && halfAngleCosine < kStraight)) return;

    // The stretch is 1 / cosine. No root or division more than it takes: this is a tube's dearest arithmetic.
    const double cosine = std::max(halfAngleCosine, 1 / kLargestStretch);
    const Vector3 across = b * lengthA - a * lengthB;
    const double share = (1 - cosine) / (cosine * Dot(across, across));
    for (Vector3* axis : {&frame.x, &frame.y, &frame.z}) *axis += (share * Dot(*axis, across)) * across;
}

// `v` divided by the frame's volume and brought to unit length, if it has a direction then.
inline Vector3 unitNormal(const Vector3& v, double volume)
{
    if (!ExceedsInMagnitude(v, kSmallestDirection * std::fabs(volume))) return v / volume;
    return v * (1 / std::copysign(Length(v), volume));
}

// Of the ring's four points. Normals go by the inverse transpose of the frame; by the axes themselves where the frame
// has no volume.
inline void findNormals(const RingFrame& frame, RingNormals kind, Vector3 (&normals)[4])
{
    const Vector3 yz = Cross(frame.y, frame.z);
    double volume = Dot(frame.x, yz);
    const bool isFlat = volume == 0;
    if (isFlat) volume = 1;
    if (kind == RingNormals::Outwards) {
        const Vector3 x = isFlat ? Vector3{1, 0, 0} : yz;
        const Vector3 y = isFlat ? Vector3{0, 1, 0} : Cross(frame.z, frame.x);
        normals[0] = unitNormal(x + y, volume);
        normals[1] = unitNormal(x - y, volume);
        normals[2] = -normals[0];
        normals[3] = -normals[1];
        return;
    }
    const Vector3 z = unitNormal(isFlat ? Vector3{0, 0, 1} : Cross(frame.x, frame.y), volume);
    for (Vector3& normal : normals) normal = kind == RingNormals::Forwards ? z : -z;
}

template <class Writer> class TubeMesher {
public:
    TubeMesher(const ControlMeshRequest& controlMeshRequest, const Writer& meshWriter)
        : request(controlMeshRequest),
          skeleton(controlMeshRequest.skeleton),
          writer(meshWriter),
          levels(controlMeshRequest.polygonLevels)
    {
    }

    /// False if the skeleton is not a tree and the mesh ends early.
    bool run()
    {
        makeRoomForAll();
        SkeletonWalker walker(skeleton, false, WalkFilter::SkipDeadSides);
        bool complete = true;
        while (complete && walker.advance()) complete = visit(walker.vertex(), walker.depth());
        writer.finish();
        levels.resize(polygonCount);
        return complete;
    }

private:
    // What one vertex can need: two rings, a tube's four sides and a cap.
    static constexpr uint64_t kVertexPoints = 8, kVertexQuads = 5;

    // As much as a tree can need: memory that stays unwritten costs nothing.
    void makeRoomForAll()
    {
        uint64_t vertexCount = 0;
        for (const SkeletonBranch& branch : skeleton.branches) vertexCount += branch.vertexCount;
        const uint64_t capCount = skeleton.branches.size() + 1;
        const uint64_t pointCount = 4 * (vertexCount + capCount) + kVertexPoints;
        const uint64_t quadCount = 4 * vertexCount + capCount + kVertexQuads;
        writer.reserve(pointCount, quadCount, 4 * quadCount);
        levels.resize(quadCount);
        if (request.pointSources) request.pointSources->reserve(pointCount);
    }

    bool visit(const SkeletonVertex& vertex, uint64_t depth)
    {
        // Where branches meet in a circle the walk may come by more often than branches have rings.
        writer.makeRoom(kVertexPoints, kVertexQuads, 4 * kVertexQuads);
        if (levels.size() < polygonCount + kVertexQuads) levels.resize(2 * levels.size() + kVertexQuads);

        if (!vertex.prev) {
            const int64_t level = request.subdivisionLevel - static_cast<int64_t>(depth) + 1;
            openBranches.push_back({carriedRing, hasCarriedRing, 0, static_cast<int32_t>(std::max<int64_t>(0, level))});
            hasCarriedRing = false;
        }
        if (openBranches.empty() || !MeshSegment(vertex, depth, openBranches.back())) return false;

        if (!vertex.next) {
            // One branch alone goes on from here: it takes over this ring, and the tube has no seam.
            if (vertex.prev && countContinuations(vertex) == 1) {
                carriedRing = openBranches.back().ring;
                hasCarriedRing = openBranches.back().hasRing;
            }
            openBranches.pop_back();
        }
        return true;
    }

    bool MeshSegment(const SkeletonVertex& vertex, uint64_t depth, MeshGeneratorData& data)
    {
        double radius = usableRadius(vertex);
        if (data.subdivisionLevel <= 0) radius *= kAreaFactor;
        if (!vertex.prev) {
            if (!data.hasRing) beginTube(vertex, radius, depth == 1, data);
            return true;
        }
        if (!data.hasRing) return false;

        RingFrame frame = frameOf(vertex);
        if (vertex.next) MiterFrame(frame, skeleton, vertex);
        const Ring ring = MakeRing(frame, radius, RingNormals::Outwards, vertex.point);
        const float texV = vertex.attributes.tex_v;
        const int32_t material = skeleton.branches[vertex.branch].matid;
        // Compatibility: the last segment's v runs backwards; existing scenes are mapped so.
        if (vertex.next)
            joinRings(ring, texV, data.ring, data.lastTexV, material);
        else
            joinRings(ring, data.lastTexV, data.ring, texV, material);
        for (int quad = 0; quad < 4; ++quad) levels[polygonCount++] = data.subdivisionLevel;
        data.ring = ring;
        data.lastTexV = texV;

        if (!vertex.next && radius > kZeroRadius && countContinuations(vertex) == 0) {
            const Ring cap = MakeRing(frame, radius, RingNormals::Forwards, vertex.point);
            writer.addQuad({cap[3], cap[2], cap[1], cap[0]}, kTipCoordinates, material);
            levels[polygonCount++] = data.subdivisionLevel;
        }
        return true;
    }

    // Side branches begin open, inside their parent.
    void beginTube(const SkeletonVertex& vertex, double radius, bool isTrunk, MeshGeneratorData& data)
    {
        const RingFrame frame = frameOf(vertex);
        data.ring = MakeRing(frame, radius, RingNormals::Outwards, vertex.point);
        data.hasRing = true;
        data.lastTexV = vertex.attributes.tex_v;
        if (!isTrunk) return;

        const Ring cap = MakeRing(frame, radius, RingNormals::Backwards, vertex.point);
        writer.addQuad({cap[0], cap[1], cap[2], cap[3]}, kFootCoordinates, skeleton.branches[vertex.branch].matid);
        levels[polygonCount++] = data.subdivisionLevel;
    }

    RingFrame frameOf(const SkeletonVertex& vertex) const
    {
        const Matrix matrix = ToMatrix(vertex.attributes.orient, skeleton.points[vertex.point].position);
        return {matrix.row(0), matrix.row(1), matrix.row(2), matrix.row(3)};
    }

    Ring MakeRing(const RingFrame& frame, double radius, RingNormals kind, uint64_t point)
    {
        Vector3 normals[4];
        findNormals(frame, kind, normals);
        const Vector3 kx = radius * frame.x, ky = radius * frame.y;
        const Vector3 sum = kx + ky, difference = kx - ky;
        if (request.pointSources) request.pointSources->insert(request.pointSources->end(), 4, point);
        const uint64_t p0 = writer.addPoint(sum + frame.origin, normals[0]);
        const uint64_t p1 = writer.addPoint(difference + frame.origin, normals[1]);
        const uint64_t p2 = writer.addPoint(-sum + frame.origin, normals[2]);
        const uint64_t p3 = writer.addPoint(-difference + frame.origin, normals[3]);
        return {p0, p1, p2, p3};
    }

    // Four quads from `back` to `front`, with u falling from 1 to 0 around the tube.
    void joinRings(const Ring& front, float frontV, const Ring& back, float backV, int32_t material)
    {
        for (size_t k = 0; k < 4; ++k) {
            const size_t next = (k + 1) % 4;
            const float u0 = 1 - static_cast<float>(k) / 4;
            const float u1 = 1 - static_cast<float>(k + 1) / 4;
            writer.addQuad({front[k], front[next], back[next], back[k]},
                           {{u0, frontV}, {u1, frontV}, {u1, backV}, {u0, backV}}, material);
        }
    }

    const ControlMeshRequest& request;
    const Skeleton& skeleton;
    Writer writer;
    std::vector<int32_t>& levels; // one entry a polygon, and room for more behind
    uint64_t polygonCount = 0;
    std::vector<MeshGeneratorData> openBranches; // as the walk has them
    Ring carriedRing{};                          // from a tip to the branch that goes on there
    bool hasCarriedRing = false;
};

template <class Writer> bool meshTubes(const ControlMeshRequest& request, const Writer& writer)
{
    return TubeMesher<Writer>(request, writer).run();
}

} // namespace

void GenerateControlMesh(const ControlMeshRequest& request)
{
    const Stopwatch stopwatch;
    request.polygonLevels.clear();
    if (request.pointSources) request.pointSources->clear();

    Mesh* mesh = dynamic_cast<Mesh*>(&request.output);
    const bool direct = mesh && MeshWriter::suits(*mesh);
    const bool complete =
        direct ? meshTubes(request, MeshWriter(*mesh)) : meshTubes(request, AccessorWriter(request.output));
    if (!complete) return;
    request.messages.debug("Time to create control mesh: " + std::to_string(stopwatch.milliseconds()) + "ms");
}

} // namespace vdt
