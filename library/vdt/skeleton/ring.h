// The vertices of all branches that stand on one point form that point's ring.
//
// A ring is a circular list through SkeletonVertex::ring, in order of linking. A vertex alone on its point has a
// null link, so a ring has one member or at least two; no vertex ever links to itself. The point knows the ring's
// entry and the member before it, so linking takes constant time. Rings do not own vertices.
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

/// Enters `vertex` into the ring of its point, which must not hold it yet. False, with nothing changed, if it is
/// linked somewhere already. The point's entry moves to `vertex` unless that is the first of its branch.
bool LinkVertex(Skeleton& skeleton, SkeletonVertex& vertex);

/// Takes `vertex` out of the ring of its point. If it was the point's entry, its successor becomes the entry.
void UnlinkVertex(Skeleton& skeleton, SkeletonVertex& vertex);

} // namespace vdt
