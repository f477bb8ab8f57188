// QuickHull after Barber, Dobkin and Huhdanpaa, "The Quickhull Algorithm for Convex Hulls", 1996, in its plainest form:
// faces are visited in the order of their making; a face that has points outside takes the farthest of them into the
// hull; all faces that see that point go, and one new face joins it to each edge around the hole.
//
// What makes it fast changes nothing in the result. A face's outside points are looked for among those of the two faces
// at its edge, if it can be shown that no point that matters is anywhere else. Which faces see a point is asked of all
// faces, in single precision first. Nothing is taken from neighbourhood alone: in flat parts of a cloud rounding makes
// faces visible that are not next to each other.
#include "vdt/mesh/convex_hull.h"

#include "vdt/memory/array.h"
#include "vdt/mesh/point_boxes.h"

#include <array>
#include <deque>
#include <limits>
#include <optional>

namespace vdt {
namespace {

constexpr double kFar = 1e38;             // coordinates beyond stand for no position
constexpr double kApart = 1e-8;           // corners of the first triangle differ by more
constexpr double kOnFace = 1e-6;          // points no farther out than this are not worth a face
constexpr double kMissable = kOnFace / 2; // how far out a point may be that a face does not list
constexpr uint64_t kFacesPerPoint = 64;
constexpr uint64_t kListedPerPoint = 32; // how often all lists together may hold each point, on average
constexpr uint32_t kUnsortedPasses = 64; // over all points, before these are gathered in boxes
constexpr uint32_t kNoIndex = ~uint32_t{0};

struct HullFace {
    std::array<uint32_t, 3> vertices;
    std::array<uint32_t, 3> neighbours; // across the edges from corner 0, 1 and 2
    HullPlane plane;
    double missed;          // every point farther out than this is in the list
    uint64_t key = kNone;   // faces are numbered in the order of their making; none for a place that is free
    uint64_t listStart = 0; // the list of points outside, in the pool
    uint32_t listCount = 0;
    uint32_t farthest; // of the points outside; none if they are all as good as on the face
    bool removed;      // sees the point that is being taken in
};

// The planes of some faces in single precision, relative to the cloud's centre.
struct PlaneBlock {
    static constexpr size_t kLanes = 16;

    float normalX[kLanes], normalY[kLanes], normalZ[kLanes], offset[kLanes];
};

// An edge of the hole, in the direction that its new face has.
struct HorizonEdge {
    uint32_t from, to;
    uint32_t removedFace, keptFace;

    uint64_t order() const { return uint64_t{from} << 32 | to; }
};

struct CloudPoint {
    Vector3 position;
    uint32_t stamp; // the last list whose making met this point
};

bool areApart(const Vector3& a, const Vector3& b)
{
    return ExceedsInMagnitude(a - b, kApart);
}

// Three corners that are no line. False if there are none.
bool findFirstTriangle(std::span<const Vector3> points, std::array<uint32_t, 3>& corners)
{
    size_t found = 0;
    Vector3 a{}, b{};
    for (uint32_t i = 0; i < points.size(); ++i) {
        const Vector3& p = points[i];
        if (found == 0) {
            if (!(p.x > -kFar)) continue;
            a = p;
        } else if (found == 1) {
            if (!(p.x < kFar && areApart(p, a))) continue;
            b = p;
        } else if (!(p.y < kFar && areApart(p, a) && areApart(p, b)) ||
                   !ExceedsInMagnitude(HullPlane(a, b, p).normal, kApart)) {
            continue;
        }
        corners[found] = i;
        if (++found == 3) return true;
    }
    return false;
}

class HullBuilder {
public:
    explicit HullBuilder(std::span<const Vector3> cloudPoints);

    void build();
    /// The corners of all faces that stand, in the order of their making.
    std::vector<std::array<uint32_t, 3>> triangles() const;

private:
    struct Pending {
        uint64_t key;
        uint32_t slot;
    };

    void takeIn(uint32_t point);
    void findVisible(const Vector3& point);
    void findHorizonOfNeighbours();
    void findHorizonOfEdges();
    void joinHorizon(uint32_t point);
    uint32_t addFace(const std::array<uint32_t, 3>& vertices);
    void enterFace(uint32_t slot);
    void freeFace(uint32_t slot);
    void linkNeighbour(uint32_t slot, uint32_t from, uint32_t to, uint32_t neighbour);
    void listFromAll(HullFace& face);
    void listFromParents(HullFace& face, const HullFace& removedFace, const HullFace& keptFace);
    void openList(HullFace& face, uint64_t mostPoints);
    void list(HullFace& face, double& reach, uint32_t point, bool isNew);
    static void noteDistance(HullFace& face, double& reach, uint32_t point, double distance);
    void closeList(HullFace& face);
    void compactPool();

    std::span<const Vector3> points;
    Array<CloudPoint> cloud;
    uint32_t stamp = 0;
    uint32_t passes = 0; // over all points
    std::optional<PointBoxes> boxes;
    Vector3 center;
    double diagonal;             // of the box around all points; infinite or not a number if some point is
    double noise;                // above the error of any distance computed within the box
    float seenAbove;             // single precision errs by less than this
    std::vector<HullFace> faces; // in places that are used again
    std::vector<PlaneBlock> blocks;
    std::vector<uint32_t> freeSlots;
    std::deque<Pending> pending; // faces to visit, in the order of their making
    uint64_t faceCount = 0;
    Array<uint32_t> pool; // the lists of points outside
    uint64_t poolUsed = 0, listedCount = 0;
    std::vector<uint32_t> visible, made;
    std::vector<HorizonEdge> horizon;
    std::vector<uint32_t> faceFrom; // by point: the new face whose edge starts there
    std::vector<bool> taken;        // by point: was a corner at some time
    bool closed = true; // every edge lies between exactly two faces that run along it in opposite directions
};

HullBuilder::HullBuilder(std::span<const Vector3> cloudPoints)
    : points(cloudPoints),
      cloud(points.size()),
      faceFrom(points.size(), 0),
      taken(points.size(), false)
{
    Box box;
    for (size_t i = 0; i < points.size(); ++i) {
        cloud[i] = {points[i], 0};
        box.extend(points[i]);
    }
    center = box.center();
    diagonal = box.diagonal();
    noise = 32 * kEpsilon * diagonal;
    seenAbove = diagonal < 1e30 ? static_cast<float>(-4e-6 * diagonal) : std::numeric_limits<float>::quiet_NaN();
}

void HullBuilder::build()
{
    std::array<uint32_t, 3> corners{};
    if (!findFirstTriangle(points, corners)) return;
    for (const uint32_t corner : corners) taken[corner] = true;

    const uint32_t front = addFace(corners);
    const uint32_t back = addFace({corners[0], corners[2], corners[1]});
    faces[front].neighbours.fill(back);
    faces[back].neighbours.fill(front);
    for (const uint32_t slot : {front, back}) {
        listFromAll(faces[slot]);
        enterFace(slot);
    }

    const uint64_t faceLimit = std::min<uint64_t>(kFacesPerPoint * points.size(), kNoIndex);
    while (!pending.empty() && faceCount < faceLimit) {
        const auto [key, slot] = pending.front();
        pending.pop_front();
        if (faces[slot].key == key) takeIn(faces[slot].farthest);
    }
}

void HullBuilder::takeIn(uint32_t point)
{
    findVisible(points[point]);
    for (const uint32_t slot : visible) faces[slot].removed = true;
    horizon.clear();
    if (closed)
        findHorizonOfNeighbours();
    else
        findHorizonOfEdges();
    std::sort(horizon.begin(), horizon.end(),
              [](const HorizonEdge& a, const HorizonEdge& b) { return a.order() < b.order(); });
    joinHorizon(point);
    for (const uint32_t slot : visible) freeFace(slot);
    compactPool();
}

// All faces that have the point outside.
void HullBuilder::findVisible(const Vector3& point)
{
    visible.clear();
    const auto x = static_cast<float>(point.x - center.x);
    const auto y = static_cast<float>(point.y - center.y);
    const auto z = static_cast<float>(point.z - center.z);
    for (size_t i = 0; i < blocks.size(); ++i) {
        const PlaneBlock& block = blocks[i];
        unsigned maySee = 0; // what is not a number may
        for (size_t lane = 0; lane < PlaneBlock::kLanes; ++lane) {
            const float distance =
                block.offset[lane] - x * block.normalX[lane] - y * block.normalY[lane] - z * block.normalZ[lane];
            maySee |= static_cast<unsigned>(!(distance <= seenAbove));
        }
        if (!maySee) continue;

        const size_t end = std::min(faces.size(), (i + 1) * PlaneBlock::kLanes);
        for (size_t slot = i * PlaneBlock::kLanes; slot < end; ++slot)
            if (faces[slot].plane.distance(point) > 0) visible.push_back(static_cast<uint32_t>(slot));
    }
}

// While the surface is closed the edges of the hole are those with a face that stays on the other side.
void HullBuilder::findHorizonOfNeighbours()
{
    for (const uint32_t slot : visible) {
        const HullFace& face = faces[slot];
        for (size_t edge = 0; edge < 3; ++edge) {
            const uint32_t neighbour = face.neighbours[edge];
            if (faces[neighbour].removed) continue;
            horizon.push_back({face.vertices[edge], face.vertices[(edge + 1) % 3], slot, neighbour});
        }
    }
}

// Else they are those that an odd number of the removed faces have, in the direction of the last of these.
void HullBuilder::findHorizonOfEdges()
{
    std::sort(visible.begin(), visible.end(), [this](uint32_t a, uint32_t b) { return faces[a].key < faces[b].key; });
    for (const uint32_t slot : visible) {
        const HullFace& face = faces[slot];
        for (size_t edge = 0; edge < 3; ++edge) {
            const uint32_t neighbour = face.neighbours[edge];
            const bool stays = faces[neighbour].key != kNone && !faces[neighbour].removed;
            horizon.push_back({face.vertices[edge], face.vertices[(edge + 1) % 3], slot, stays ? neighbour : slot});
        }
    }
    const auto ends = [](const HorizonEdge& edge) { return std::minmax(edge.from, edge.to); };
    std::stable_sort(horizon.begin(), horizon.end(),
                     [&](const HorizonEdge& a, const HorizonEdge& b) { return ends(a) < ends(b); });
    size_t kept = 0;
    for (size_t first = 0, next = 0; first < horizon.size(); first = next) {
        while (next < horizon.size() && ends(horizon[next]) == ends(horizon[first])) ++next;
        if ((next - first) % 2 == 1) horizon[kept++] = horizon[next - 1];
    }
    horizon.resize(kept);
}

void HullBuilder::joinHorizon(uint32_t point)
{
    // A corner for the second time, or a hole that touches itself, makes edges with more than two faces.
    if (taken[point]) closed = false;
    taken[point] = true;
    for (size_t i = 1; i < horizon.size(); ++i) closed = closed && horizon[i].from != horizon[i - 1].from;

    made.clear();
    for (const HorizonEdge& edge : horizon) {
        const uint32_t slot = addFace({edge.from, edge.to, point});
        listFromParents(faces[slot], faces[edge.removedFace], faces[edge.keptFace]);
        enterFace(slot);
        faceFrom[edge.from] = slot;
        made.push_back(slot);
    }
    for (size_t i = 0; i < made.size(); ++i) {
        const HorizonEdge& edge = horizon[i];
        const uint32_t next = faceFrom[edge.to];
        faces[made[i]].neighbours[0] = edge.keptFace;
        faces[made[i]].neighbours[1] = next;
        faces[next].neighbours[2] = made[i];
        linkNeighbour(edge.keptFace, edge.to, edge.from, made[i]);
    }
}

// A face without a list, as its own neighbour.
uint32_t HullBuilder::addFace(const std::array<uint32_t, 3>& vertices)
{
    if (freeSlots.empty()) {
        freeSlots.push_back(static_cast<uint32_t>(faces.size()));
        faces.emplace_back();
        if (faces.size() > blocks.size() * PlaneBlock::kLanes) blocks.emplace_back();
    }
    const uint32_t slot = freeSlots.back();
    freeSlots.pop_back();
    faces[slot] = {.vertices = vertices,
                   .neighbours = {slot, slot, slot},
                   .plane = HullPlane(points[vertices[0]], points[vertices[1]], points[vertices[2]]),
                   .missed = std::min(noise, kMissable),
                   .key = faceCount++,
                   .farthest = kNoIndex,
                   .removed = false};
    return slot;
}

// Has a face take part in what follows, once its list is made.
void HullBuilder::enterFace(uint32_t slot)
{
    const HullFace& face = faces[slot];
    const Vector3& normal = face.plane.normal;
    PlaneBlock& block = blocks[slot / PlaneBlock::kLanes];
    const size_t lane = slot % PlaneBlock::kLanes;
    block.normalX[lane] = static_cast<float>(normal.x);
    block.normalY[lane] = static_cast<float>(normal.y);
    block.normalZ[lane] = static_cast<float>(normal.z);
    block.offset[lane] = static_cast<float>(Dot(face.plane.origin - center, normal));
    if (face.farthest != kNoIndex) pending.push_back({face.key, slot});
}

void HullBuilder::freeFace(uint32_t slot)
{
    HullFace& face = faces[slot];
    face.key = kNone;
    face.plane.normal = {0, 0, 0}; // sees nothing
    listedCount -= face.listCount;
    face.listCount = 0;
    PlaneBlock& block = blocks[slot / PlaneBlock::kLanes];
    const size_t lane = slot % PlaneBlock::kLanes;
    block.normalX[lane] = block.normalY[lane] = block.normalZ[lane] = 0;
    block.offset[lane] = std::numeric_limits<float>::lowest();
    freeSlots.push_back(slot);
}

void HullBuilder::linkNeighbour(uint32_t slot, uint32_t from, uint32_t to, uint32_t neighbour)
{
    HullFace& face = faces[slot];
    for (size_t edge = 0; edge < 3; ++edge)
        if (face.vertices[edge] == from && face.vertices[(edge + 1) % 3] == to) face.neighbours[edge] = neighbour;
}

void HullBuilder::listFromAll(HullFace& face)
{
    double reach = kOnFace;
    if (passes++ < kUnsortedPasses) {
        openList(face, cloud.size());
        for (uint32_t point = 0; point < cloud.size(); ++point) list(face, reach, point, true);
        return closeList(face);
    }

    // The usual end of clouds with flat parts: faces without number, many of them right through the cloud. Their lists
    // would be long, so they get none, only their farthest point.
    if (!boxes) boxes.emplace(points);
    face.missed = std::numeric_limits<double>::infinity();
    boxes->visitFarthest(face.plane.normal, face.plane.origin, reach, 2 * noise, [&](uint32_t point) {
        noteDistance(face, reach, point, face.plane.distance(cloud[point].position));
    });
}

// The new plane N goes through an edge of both parents' planes. With weights r and k for which |N - r R - k K| is
// small, a point's distance to N is at most r times that to R plus k times that to K plus that small rest times the
// cloud's diagonal. So a point that neither parent lists is not far outside N either, and by how much is known.
void HullBuilder::listFromParents(HullFace& face, const HullFace& removedFace, const HullFace& keptFace)
{
    const Vector3 &n = face.plane.normal, &r = removedFace.plane.normal, &k = keptFace.plane.normal;
    const double rr = Dot(r, r), rk = Dot(r, k), kk = Dot(k, k), nr = Dot(n, r), nk = Dot(n, k);
    const double determinant = rr * kk - rk * rk;
    double ofRemoved = 0, ofKept = 0;
    if (determinant > 1e-12 * rr * kk) {
        ofRemoved = (nr * kk - nk * rk) / determinant;
        ofKept = (nk * rr - nr * rk) / determinant;
    }
    if (!(ofRemoved > 0)) {
        ofRemoved = 0;
        ofKept = nk > 0 ? nk / kk : 0;
    } else if (!(ofKept > 0)) {
        ofRemoved = nr > 0 ? nr / rr : 0;
        ofKept = 0;
    }
    const double rest = Length(n - r * ofRemoved - k * ofKept) * diagonal;
    const auto share = [&](const HullFace& parent, double weight) {
        return weight > 0 ? weight * (parent.missed + std::fabs(parent.plane.distance(face.plane.origin)) + noise) : 0;
    };
    const double missed = share(removedFace, ofRemoved) + share(keptFace, ofKept) + rest + noise;
    if (!(missed <= kMissable)) return listFromAll(face);

    face.missed = missed;
    const uint32_t removedCount = ofRemoved > 0 ? removedFace.listCount : 0;
    const uint32_t keptCount = ofKept > 0 ? keptFace.listCount : 0;
    openList(face, uint64_t{removedCount} + keptCount);
    ++stamp;
    double reach = kOnFace;
    const uint32_t* const ofRemovedList = pool.data() + removedFace.listStart;
    for (uint32_t i = 0; i < removedCount; ++i) {
        cloud[ofRemovedList[i]].stamp = stamp;
        list(face, reach, ofRemovedList[i], true);
    }
    const uint32_t* const ofKeptList = pool.data() + keptFace.listStart;
    for (uint32_t i = 0; i < keptCount; ++i) list(face, reach, ofKeptList[i], cloud[ofKeptList[i]].stamp != stamp);
    closeList(face);
}

// Room for a list behind all others.
void HullBuilder::openList(HullFace& face, uint64_t mostPoints)
{
    face.listStart = poolUsed;
    face.listCount = 0;
    if (pool.size() < poolUsed + mostPoints) pool.resize(2 * (poolUsed + mostPoints));
}

// Adds a point that is new and outside. Branches on what cannot be foretold would cost more than the test.
inline void HullBuilder::list(HullFace& face, double& reach, uint32_t point, bool isNew)
{
    const double distance = face.plane.distance(cloud[point].position);
    pool[face.listStart + face.listCount] = point;
    face.listCount += static_cast<uint32_t>(distance > face.missed) & static_cast<uint32_t>(isNew);
    noteDistance(face, reach, point, distance);
}

// Keeps the farthest point so far, of equals the earliest.
inline void HullBuilder::noteDistance(HullFace& face, double& reach, uint32_t point, double distance)
{
    if (distance < reach || !(distance > kOnFace)) return;
    if (distance == reach && point > face.farthest) return;
    reach = distance;
    face.farthest = point;
}

// Keeps the list, or drops it where all lists together would grow out of proportion.
void HullBuilder::closeList(HullFace& face)
{
    if (listedCount + face.listCount > kListedPerPoint * points.size()) {
        face.listCount = 0;
        face.missed = std::numeric_limits<double>::infinity();
    }
    listedCount += face.listCount;
    poolUsed += face.listCount;
}

// Closes the gaps that removed faces left, once they are most of the pool.
void HullBuilder::compactPool()
{
    if (poolUsed < 2 * listedCount + 2 * points.size()) return;

    std::vector<uint32_t> order;
    for (uint32_t slot = 0; slot < faces.size(); ++slot)
        if (faces[slot].listCount > 0) order.push_back(slot);
    std::sort(order.begin(), order.end(),
              [this](uint32_t a, uint32_t b) { return faces[a].listStart < faces[b].listStart; });
    poolUsed = 0;
    for (const uint32_t slot : order) {
        HullFace& face = faces[slot];
        std::copy_n(pool.begin() + static_cast<std::ptrdiff_t>(face.listStart), face.listCount,
                    pool.begin() + static_cast<std::ptrdiff_t>(poolUsed));
        face.listStart = poolUsed;
        poolUsed += face.listCount;
    }
}

std::vector<std::array<uint32_t, 3>> HullBuilder::triangles() const
{
    std::vector<uint32_t> order;
    for (uint32_t slot = 0; slot < faces.size(); ++slot)
        if (faces[slot].key != kNone) order.push_back(slot);
    std::sort(order.begin(), order.end(), [this](uint32_t a, uint32_t b) { return faces[a].key < faces[b].key; });

    std::vector<std::array<uint32_t, 3>> result;
    result.reserve(order.size());
    for (const uint32_t slot : order) result.push_back(faces[slot].vertices);
    return result;
}

void addAllTriangles(std::span<const Vector3, 4> points, MeshOutputAccessor& output)
{
    uint64_t vertices[4], coordinates[4];
    for (size_t i = 0; i < 4; ++i) vertices[i] = output.AddPoint(points[i], {0, 0, 0});
    for (size_t i = 0; i < 4; ++i)
        coordinates[i] = output.AddUV(static_cast<float>(points[i].x), static_cast<float>(points[i].y));
    for (const auto& [a, b, c] : {std::array{2, 1, 0}, {3, 1, 0}, {3, 2, 0}, {3, 2, 1}})
        output.AddPolygon({{vertices[a], vertices[b], vertices[c]}}, {{coordinates[a], coordinates[b], coordinates[c]}},
                          -1);
}

} // namespace

void BuildConvexHull(std::span<const Vector3> points, MeshOutputAccessor& output)
{
    if (points.size() < 4 || points.size() >= kNoIndex) return;
    if (points.size() == 4) return addAllTriangles(points.first<4>(), output);

    HullBuilder builder(points);
    builder.build();

    Vector2f coordinates[3]; // compatibility: the same for every triangle
    for (size_t i = 0; i < 3; ++i) coordinates[i] = {static_cast<float>(points[i].x), static_cast<float>(points[i].y)};
    std::vector<uint64_t> outputIndices(points.size(), kNone);
    for (const std::array<uint32_t, 3>& triangle : builder.triangles()) {
        uint64_t vertices[3];
        for (size_t corner = 0; corner < 3; ++corner) {
            uint64_t& index = outputIndices[triangle[corner]];
            if (index == kNone) index = output.AddPoint(points[triangle[corner]], {0, 0, 0});
            vertices[corner] = index;
        }
        AddTriangle(output, vertices, coordinates, -1);
    }
}

namespace {

// Hands the plane of each polygon that has one to `visit`, until that gives false. True if it never did.
template <class Visit> bool forEachPlane(const MeshInputAccessor& hull, const Visit& visit)
{
    const uint64_t polygonCount = hull.PolygonCount();
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        MeshPolygon record;
        if (!ReadPolygonRecord(hull, polygon, record)) continue;
        Vector3 a{}, b{}, c{};
        const HullPlane plane(hull.GetPoint(a, record.vertices[0]), hull.GetPoint(b, record.vertices[1]),
                              hull.GetPoint(c, record.vertices[2]));
        if (!visit(plane)) return false;
    }
    return true;
}

} // namespace

bool PointInsideHull(const Vector3& point, const MeshInputAccessor& hull)
{
    return forEachPlane(hull, [&](const HullPlane& plane) { return !(plane.distance(point) > 0); });
}

HullPlanes::HullPlanes(const MeshInputAccessor& hull)
{
    size_t count = 0;
    forEachPlane(hull, [&](const HullPlane& plane) {
        const size_t lane = count++ % kLanes;
        if (lane == 0) blocks.emplace_back();
        Block& block = blocks.back();
        block.normalX[lane] = plane.normal.x;
        block.normalY[lane] = plane.normal.y;
        block.normalZ[lane] = plane.normal.z;
        block.originX[lane] = plane.origin.x;
        block.originY[lane] = plane.origin.y;
        block.originZ[lane] = plane.origin.z;
        return true;
    });
}

bool HullPlanes::contains(const Vector3& point) const
{
    for (const Block& block : blocks) {
        int64_t outside = 0; // as wide as a distance
        for (size_t lane = 0; lane < kLanes; ++lane) {
            const double distance = (block.originX[lane] - point.x) * block.normalX[lane] +
                                    (block.originY[lane] - point.y) * block.normalY[lane] +
                                    (block.originZ[lane] - point.z) * block.normalZ[lane];
            outside |= distance > 0 ? -1 : 0;
        }
        if (outside) return false;
    }
    return true;
}

} // namespace vdt
