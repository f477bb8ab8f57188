// The vertices of all branches that stand on one point form that point's ring, and its connectors another.
//
// A ring is a circular list through SkeletonVertex::ring or SkeletonConnector::nextConnector, in order of linking. A
// member alone on its point has a null link, so a ring has one member or at least two; no member ever links to
// itself. The point knows the ring's entry and the member before it, so linking takes constant time, while taking one
// member out takes time by the size of the ring. Rings do not own their members.
#pragma once

#include "vdt/skeleton/skeleton.h"

#include <iterator>

namespace vdt {

/// The other vertices on `vertex`'s point, starting behind it. Valid until one is linked or erased there.
class RingOthers {
public:
    explicit RingOthers(const SkeletonVertex& vertex) : self(&vertex) {}

    struct Iterator {
        const SkeletonVertex* at; // null once the circle is closed
        const SkeletonVertex* self;

        const SkeletonVertex& operator*() const { return *at; }
        Iterator& operator++()
        {
            at = at->ring == self ? nullptr : at->ring;
            return *this;
        }
        bool operator==(std::default_sentinel_t) const { return at == nullptr; }
    };

    Iterator begin() const { return {self->ring, self}; }
    std::default_sentinel_t end() const { return {}; }

private:
    const SkeletonVertex* self;
};

/// The indices of a point's connectors from the entry on. Valid until one is linked or erased there.
class PointConnectors {
public:
    PointConnectors(const Skeleton& skeleton, const SkeletonPoint& point)
        : connectors(skeleton.connectors),
          first(point.firstConnector)
    {
    }

    struct Iterator {
        const Array<SkeletonConnector>& connectors;
        uint64_t at;
        uint64_t first;
        uint64_t stepsLeft; // indices that were not renumbered may not lead back to the entry

        uint64_t operator*() const { return at; }
        Iterator& operator++()
        {
            at = connectors[at].nextConnector;
            if (at == first || --stepsLeft == 0) at = kNone;
            return *this;
        }
        bool operator==(std::default_sentinel_t) const { return at >= connectors.size(); }
    };

    Iterator begin() const { return {connectors, first, first, connectors.size()}; }
    std::default_sentinel_t end() const { return {}; }

private:
    const Array<SkeletonConnector>& connectors;
    uint64_t first;
};

/// Enters `vertex` into the ring of its point, which must not hold it yet. False, with nothing changed, if it is
/// linked somewhere already. The point's entry moves to `vertex` unless that is the first of its branch.
inline bool LinkVertex(Skeleton& skeleton, SkeletonVertex& vertex)
{
    SkeletonPoint& point = skeleton.points[vertex.point];
    if (vertex.ring || point.firstVertex == &vertex) return false;
    if (!point.firstVertex) {
        point.firstVertex = &vertex;
        point.lastVertex = &vertex;
        return true;
    }

    vertex.ring = point.firstVertex;
    point.lastVertex->ring = &vertex;

    // A branch's first vertex has no incoming direction, so it makes a poor entry.
    if (vertex.prev)
        point.firstVertex = &vertex;
    else
        point.lastVertex = &vertex;
    return true;
}

/// Takes `vertex` out of the ring of its point. If it was the point's entry, its successor becomes the entry.
void UnlinkVertex(Skeleton& skeleton, SkeletonVertex& vertex);

/// Enters the connector at `index` into the ring of its point, which must not hold it yet, before the entry.
void LinkConnector(Skeleton& skeleton, uint64_t index);

/// Takes the connector at `index` out of the ring of its point. If it was the entry, its successor becomes the entry.
void UnlinkConnector(Skeleton& skeleton, uint64_t index);

/// True if branches begin on the point and none goes through it or ends there.
bool IsRoot(const SkeletonPoint& point);

} // namespace vdt
