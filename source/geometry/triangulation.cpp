#include "geometry/triangulation.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace {

using vdt::Vector3;

using Triangle = std::array<uint32_t, 3>;

constexpr uint32_t kNoCorner = ~uint32_t{0};
constexpr double kRectangleScore = 0.02; // quads whose corners are this close to right angles stay two triangles

Vector3 newellNormal(std::span<const Vector3> outline)
{
    Vector3 normal{};
    for (size_t i = 0; i < outline.size(); ++i) {
        const Vector3& a = outline[i];
        const Vector3& b = outline[(i + 1) % outline.size()];
        normal += {(a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x), (a.x - b.x) * (a.y + b.y)};
    }
    return vdt::Normalized(normal);
}

// The outline seen along the axis that its normal follows most, from the side where it runs counter-clockwise.
std::vector<Vector3> flattened(std::span<const Vector3> outline)
{
    const Vector3 normal = newellNormal(outline);
    const double x = std::fabs(normal.x), y = std::fabs(normal.y), z = std::fabs(normal.z);
    double Vector3::*dropped = nullptr;
    if (x < y)
        dropped = y < z ? &Vector3::z : &Vector3::y;
    else
        dropped = z < x ? &Vector3::x : &Vector3::z;

    double Vector3::*across = dropped == &Vector3::x ? &Vector3::y : dropped == &Vector3::y ? &Vector3::z : &Vector3::x;
    double Vector3::*upward = dropped == &Vector3::x ? &Vector3::z : dropped == &Vector3::y ? &Vector3::x : &Vector3::y;
    if (normal.*dropped < 0) std::swap(across, upward);

    std::vector<Vector3> flat(outline.size());
    std::ranges::transform(outline, flat.begin(), [&](const Vector3& p) { return Vector3{p.*across, p.*upward, 0}; });
    return flat;
}

// The angle at `corner` between the edges to two others, 0 to 2 pi, below pi where a counter-clockwise outline is
// convex.
double angleAt(const Vector3& corner, const Vector3& previous, const Vector3& next)
{
    const Vector3 toPrevious = vdt::Normalized(previous - corner);
    const Vector3 toNext = vdt::Normalized(next - corner);
    const double cosine = vdt::Dot(toPrevious, toNext);
    if (cosine >= 1) return 0;
    if (cosine <= -1) return vdt::kPi;
    const bool turnsBack = vdt::Cross(toPrevious, toNext).z >= 0;
    return turnsBack ? 2 * vdt::kPi - std::acos(cosine) : std::acos(cosine);
}

bool isStrictlyInside(const Vector3& p, const Vector3& a, const Vector3& b, const Vector3& c)
{
    const double area = vdt::Cross(b - a, c - a).z;
    if (area == 0) return false;
    return vdt::Cross(b - p, c - p).z / area > 0 && vdt::Cross(c - p, a - p).z / area > 0 &&
           vdt::Cross(a - p, b - p).z / area > 0;
}

// Ear clipping. Corners are kept in a ring and the convex ones in order of their score, so that a round need not look
// at them all: the first that is an ear is the one to cut.
class EarCutter {
public:
    explicit EarCutter(std::span<const Vector3> flatOutline) : points(flatOutline), ring(flatOutline.size())
    {
        const uint32_t count = static_cast<uint32_t>(points.size());
        for (uint32_t i = 0; i < count; ++i) ring[i] = {.previous = (i + count - 1) % count, .next = (i + 1) % count};
        for (uint32_t i = 0; i < count; ++i) judge(i);
    }

    std::vector<Triangle> cut()
    {
        std::vector<Triangle> triangles;
        for (size_t left = points.size(); left > 3; --left) {
            const uint32_t ear = chooseEar();
            triangles.push_back({ring[ear].previous, ear, ring[ear].next});
            takeOut(ear);
        }
        const uint32_t first = firstCorner();
        triangles.push_back({first, ring[first].next, ring[ring[first].next].next});
        return triangles;
    }

private:
    struct RingCorner {
        uint32_t previous, next;
        uint32_t blocker = kNoCorner; // a reflex corner that was found inside this one's triangle
        double score = 0;             // how flat the triangle's flattest corner is: 0 is a line
        bool convex = false;
        bool inRing = true;
    };

    // Looks at the angle of a corner and at the triangle that it makes with its neighbours, after one of them changed.
    void judge(uint32_t corner)
    {
        RingCorner& at = ring[corner];
        if (at.convex) byScore.erase({at.score, corner});

        const Vector3 &a = points[at.previous], &b = points[corner], &c = points[at.next];
        const double angle = angleAt(b, a, c);
        at.convex = angle < vdt::kPi;
        at.blocker = kNoCorner;
        at.score = std::min({std::fabs(vdt::kPi - angle), std::fabs(vdt::kPi - angleAt(a, c, b)),
                             std::fabs(vdt::kPi - angleAt(c, b, a))});
        if (std::isnan(at.score)) at.score = 0; // a position that is no number: the order must stand all the same
        if (at.convex) byScore.insert({at.score, corner});
    }

    uint32_t chooseEar()
    {
        for (const auto& [score, corner] : byScore)
            if (isEar(corner)) return corner;
        if (!byScore.empty()) return byScore.begin()->second;

        // No corner is convex, so the outline crosses itself: all count as convex, and some may be ears in that.
        uint32_t flattest = firstCorner();
        for (uint32_t i = flattest; i < ring.size(); ++i)
            if (ring[i].inRing && ring[i].score < ring[flattest].score) flattest = i;
        return flattest;
    }

    bool isEar(uint32_t corner)
    {
        const auto blocks = [&](uint32_t other) {
            const RingCorner& at = ring[corner];
            return ring[other].inRing && !ring[other].convex &&
                   isStrictlyInside(points[other], points[at.previous], points[corner], points[at.next]);
        };
        if (ring[corner].blocker != kNoCorner && blocks(ring[corner].blocker)) return false;
        for (uint32_t other = 0; other < ring.size(); ++other) {
            if (!blocks(other)) continue;
            ring[corner].blocker = other;
            return false;
        }
        return true;
    }

    void takeOut(uint32_t corner)
    {
        RingCorner& at = ring[corner];
        if (at.convex) byScore.erase({at.score, corner});
        at.inRing = false;
        ring[at.previous].next = at.next;
        ring[at.next].previous = at.previous;
        judge(at.previous);
        judge(at.next);
    }

    uint32_t firstCorner() const
    {
        return static_cast<uint32_t>(std::ranges::find(ring, true, &RingCorner::inRing) - ring.begin());
    }

    std::span<const Vector3> points;
    std::vector<RingCorner> ring;
    std::set<std::pair<double, uint32_t>> byScore; // the convex corners; of equal scores the first corner comes first
};

struct QuadCandidate {
    std::array<uint32_t, 4> corners;
    double score;
    uint32_t partner; // the second triangle
};

// How far the corners are from right angles, on average. Compatibility: corner 0 counts as right.
double quadScore(std::span<const Vector3> points, const std::array<uint32_t, 4>& corners)
{
    double sum = 0;
    for (size_t i = 1; i < 4; ++i) {
        const Vector3& corner = points[corners[i]];
        sum += std::fabs(vdt::kPi / 2 - angleAt(corner, points[corners[i - 1]], points[corners[(i + 1) % 4]]));
    }
    return sum / 4;
}

bool contains(const Triangle& triangle, uint32_t corner)
{
    return std::ranges::find(triangle, corner) != triangle.end();
}

// The quad of two triangles that share exactly two corners, the first one's own corner in second place.
bool joinTriangles(const Triangle& first, const Triangle& second, std::array<uint32_t, 4>& quad)
{
    const auto isOwn = [&](uint32_t corner) { return !contains(second, corner); };
    if (std::ranges::count_if(first, isOwn) != 1) return false;

    const size_t own = static_cast<size_t>(std::ranges::find_if(first, isOwn) - first.begin());
    const auto other = std::ranges::find_if(second, [&](uint32_t corner) { return !contains(first, corner); });
    quad = {first[(own + 2) % 3], first[own], first[(own + 1) % 3], *other};
    return true;
}

// For each triangle the quads that it could make with later ones.
std::vector<std::vector<QuadCandidate>> findCandidates(std::span<const Vector3> points,
                                                       const std::vector<Triangle>& triangles)
{
    std::vector<std::vector<QuadCandidate>> candidates(triangles.size());
    for (uint32_t i = 0; i < triangles.size(); ++i) {
        for (uint32_t j = i + 1; j < triangles.size(); ++j) {
            std::array<uint32_t, 4> quad{};
            if (!joinTriangles(triangles[i], triangles[j], quad)) continue;
            candidates[i].push_back({.corners = quad, .score = quadScore(points, quad), .partner = j});
        }
    }
    return candidates;
}

// The best quad of a triangle with its first three partners that are free; null if none is good enough.
const QuadCandidate* bestOf(const std::vector<QuadCandidate>& candidates, const std::vector<bool>& used)
{
    const QuadCandidate* best = nullptr;
    int matches = 0;
    for (const QuadCandidate& candidate : candidates) {
        if (used[candidate.partner]) continue;
        if (candidate.score > kRectangleScore && (!best || candidate.score < best->score)) best = &candidate;
        if (++matches == 3) break;
    }
    return best;
}

std::vector<PolygonPiece> mergeToQuads(std::span<const Vector3> points, const std::vector<Triangle>& triangles)
{
    const std::vector<std::vector<QuadCandidate>> candidates = findCandidates(points, triangles);
    std::vector<bool> used(triangles.size());
    std::vector<PolygonPiece> pieces;
    for (;;) {
        const QuadCandidate* best = nullptr;
        size_t first = 0;
        for (size_t i = 0; i < triangles.size(); ++i) {
            if (used[i]) continue;
            const QuadCandidate* candidate = bestOf(candidates[i], used);
            if (!candidate || (best && candidate->score >= best->score)) continue;
            best = candidate;
            first = i;
        }
        if (!best) break;

        pieces.push_back({.corners = best->corners, .cornerCount = 4});
        used[first] = used[best->partner] = true;
    }
    for (size_t i = 0; i < triangles.size(); ++i)
        if (!used[i])
            pieces.push_back({.corners = {triangles[i][0], triangles[i][1], triangles[i][2], 0}, .cornerCount = 3});
    return pieces;
}

} // namespace

std::vector<PolygonPiece> TriangulatePolygon(std::span<const Vector3> outline)
{
    if (outline.size() < 3 || outline.size() > kMostPolygonCorners) return {};
    if (outline.size() == 3) return {{{0, 1, 2, 0}, 3}};
    if (outline.size() == 4) return {{{0, 1, 2, 0}, 3}, {{2, 3, 0, 0}, 3}};

    const std::vector<Vector3> flat = flattened(outline);
    return mergeToQuads(flat, EarCutter(flat).cut());
}
