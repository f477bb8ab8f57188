#include "vdt/skeleton/frames.h"

#include "vdt/skeleton/walker.h"

#include <algorithm>
#include <vector>

namespace vdt {
namespace {

constexpr double kParallel = 1e-8; // two unit vectors whose product stays below this span no plane

Vector3 direction(const Skeleton& skeleton, const SkeletonVertex& from, const SkeletonVertex& to)
{
    return Normalized(skeleton.points[to.point].position - skeleton.points[from.point].position);
}

double acosClamped(double cosine)
{
    return std::acos(std::clamp(cosine, -1.0, 1.0));
}

Matrix rotationAboutX(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {{{1, 0, 0, 0}, {0, c, s, 0}, {0, -s, c, 0}, {0, 0, 0, 1}}};
}

Matrix rotationAboutZ(double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {{{c, s, 0, 0}, {-s, c, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
}

// Hands frames down a walk: one open frame for each branch that still goes on.
class FrameCarrier {
public:
    explicit FrameCarrier(const Skeleton& source) : skeleton(source) {}

    /// Gives the next vertex of the walk its orientation. False if no frame is left to carry on.
    bool orient(SkeletonVertex& vertex, uint64_t depth)
    {
        const Vector3 tangent = VertexTangent(skeleton, vertex);
        if (!vertex.prev && depth == 1) {
            frames.push_back(FrameFromTangent(tangent, skeleton.points[vertex.point].position));
            store(vertex);
            return true;
        }
        if (!vertex.prev && !openBranch()) return false;
        if (frames.empty()) return false;

        frames.back() = AdvanceFrame(tangent, frames.back());
        store(vertex);
        if (!vertex.next) closeBranch(vertex);
        return true;
    }

private:
    bool openBranch()
    {
        if (frames.empty()) {
            if (storedCount < 2) return false;
            frames.push_back(ToMatrix(secondLastStored, {0, 0, 0}));
            return true;
        }
        // The frame of a tip makes room for the branch that goes on from there.
        if (!popPending) frames.emplace_back(frames.back());
        popPending = false;
        return true;
    }

    void closeBranch(const SkeletonVertex& tip)
    {
        if (tip.ring && tip.prev)
            popPending = true;
        else
            frames.pop_back();
    }

    void store(SkeletonVertex& vertex)
    {
        vertex.attributes.orient = ToQuaternion(frames.back());
        secondLastStored = lastStored;
        lastStored = vertex.attributes.orient;
        ++storedCount;
    }

    const Skeleton& skeleton;
    std::vector<Matrix> frames;
    Quaternion lastStored, secondLastStored;
    uint64_t storedCount = 0;
    bool popPending = false; // the top frame belongs to a tip on which other branches may begin
};

double largestExtent(const Vector3& size)
{
    if (size.x > size.y) return size.x > size.z ? size.x : size.z;
    return size.y > size.z ? size.y : size.z;
}

} // namespace

Vector3 VertexTangent(const Skeleton& skeleton, const SkeletonVertex& vertex)
{
    Vector3 tangent{0, 0, 0};
    if (vertex.next) tangent += direction(skeleton, vertex, *vertex.next);
    if (vertex.prev) tangent += direction(skeleton, *vertex.prev, vertex);
    return tangent;
}

Matrix FrameFromTangent(Vector3 tangent, const Vector3& position)
{
    Normalize(tangent);
    Matrix frame = Matrix::Identity();
    const double theta = acosClamped(tangent.z);
    if (theta > kEpsilon) {
        const Vector3 flat = Normalized(Vector3{tangent.x, tangent.y, 0});
        const double phi = tangent.x > 0 ? -acosClamped(-flat.y) : acosClamped(-flat.y);
        frame = rotationAboutZ(phi) * rotationAboutX(theta) * rotationAboutZ(-phi);
    }
    frame.setRow(3, position);
    return frame;
}

Matrix AdvanceFrame(Vector3 tangent, const Matrix& previous)
{
    Normalize(tangent);
    Vector3 across = Cross(previous.row(1), tangent);
    if (!ExceedsInMagnitude(across, kParallel)) across = previous.row(0);
    if (!ExceedsInMagnitude(across, kParallel)) across = {1, 0, 0};
    const Vector3 y = Normalized(Cross(tangent, across));
    const Vector3 x = Normalized(Cross(y, tangent));

    Matrix frame = previous;
    frame.setRow(0, x);
    frame.setRow(1, y);
    frame.setRow(2, tangent);
    return frame;
}

bool Skeleton::ComputeOrientations()
{
    FrameCarrier carrier(*this);
    SkeletonWalker walker(*this, false, WalkFilter::SkipDeadSides);
    while (walker.advance())
        if (!carrier.orient(const_cast<SkeletonVertex&>(walker.vertex()), walker.depth())) return false;
    return true;
}

bool Skeleton::ComputeWeights()
{
    Box box;
    Vector3 sum{0, 0, 0};
    for (const SkeletonPoint& point : points) {
        box.extend(point.position);
        sum += point.position;
    }
    if (box.isEmpty()) return false;

    const Vector3 mean = sum / static_cast<double>(points.size());
    const Vector3 center = (mean + box.center()) * 0.5;
    const auto radius = static_cast<float>(largestExtent(box.size()) / 2);
    for (SkeletonPoint& point : points) {
        const float share = static_cast<float>(Length(point.position - center)) / radius;
        point.weight = share < 1 ? 1 - share : 0; // 0 also where a crown without extent gives no number
    }
    return true;
}

} // namespace vdt
