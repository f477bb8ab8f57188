#include "vdt/skeleton/skeleton.h"

#include "vdt/skeleton/ring.h"

#include <utility>

namespace vdt {
namespace {

void extendByRadii(Box& box, const SkeletonPoint& point)
{
    if (!point.firstVertex) return;

    const auto extend = [&](const SkeletonVertex& vertex) {
        const double radius = vertex.attributes.radius;
        const Vector3 reach{radius, radius, radius};
        box.extend(point.position - reach);
        box.extend(point.position + reach);
    };
    extend(*point.firstVertex);
    for (const SkeletonVertex& other : RingOthers(*point.firstVertex)) extend(other);
}

} // namespace

Skeleton& Skeleton::operator=(Skeleton&& other) noexcept
{
    Skeleton taken(std::move(other));
    Swap(taken);
    return *this;
}

void Skeleton::Clear()
{
    Skeleton empty;
    Swap(empty);
}

void Skeleton::reserveVertices(uint64_t count)
{
    pool.reserve(count);
}

Skeleton& Skeleton::Assign(const Skeleton& other)
{
    if (this == &other) return *this;

    connectors = other.connectors;
    points = other.points;
    branches = other.branches;
    pool.assign(other.pool);
    for (SkeletonPoint& point : points) {
        point.firstVertex = pool.copyOf(point.firstVertex, other.pool);
        point.lastVertex = pool.copyOf(point.lastVertex, other.pool);
    }
    for (SkeletonBranch& branch : branches) {
        branch.firstVertex = pool.copyOf(branch.firstVertex, other.pool);
        branch.lastVertex = pool.copyOf(branch.lastVertex, other.pool);
    }
    return *this;
}

void Skeleton::Swap(Skeleton& other) noexcept
{
    connectors.swap(other.connectors);
    points.swap(other.points);
    branches.swap(other.branches);
    pool.swap(other.pool);
}

uint64_t Skeleton::ConnectorCount(uint64_t point) const
{
    uint64_t count = 0;
    for ([[maybe_unused]] const uint64_t connector : PointConnectors(*this, points[point])) ++count;
    return count;
}

void Skeleton::GetBounds(Box& box, BoundsMode mode) const
{
    for (const SkeletonPoint& point : points) {
        switch (mode) {
        case BoundsMode::AllPoints: box.extend(point.position); break;
        case BoundsMode::BranchPoints:
            if (point.firstVertex) box.extend(point.position);
            break;
        case BoundsMode::BranchPointsAndRadii: extendByRadii(box, point); break;
        case BoundsMode::ConnectorPoints:
            if (point.firstConnector != kNone) box.extend(point.position);
            break;
        }
    }
}

bool Skeleton::FindRoots(std::vector<uint64_t>& roots) const
{
    roots.clear();
    for (uint64_t i = 0; i < points.size(); ++i)
        if (IsRoot(points[i])) roots.push_back(i);
    return !roots.empty();
}

} // namespace vdt
