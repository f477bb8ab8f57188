// Axis-parallel boxes.
#pragma once

#include "vdt/math/vector.h"

#include <limits>

namespace vdt {

/// Six doubles: minima, then maxima. A new box is empty: its minima are the largest double, its maxima the lowest.
struct Box {
    Vector3 min{kLargest, kLargest, kLargest};
    Vector3 max{-kLargest, -kLargest, -kLargest};

    static constexpr double kLargest = std::numeric_limits<double>::max();

    /// True if the box holds no point; a box of one point is not empty.
    bool isEmpty() const { return min.x > max.x || min.y > max.y || min.z > max.z; }

    void extend(const Vector3& p)
    {
        if (p.x < min.x) min.x = p.x;
        if (p.y < min.y) min.y = p.y;
        if (p.z < min.z) min.z = p.z;
        if (p.x > max.x) max.x = p.x;
        if (p.y > max.y) max.y = p.y;
        if (p.z > max.z) max.z = p.z;
    }

    void extend(const Box& other)
    {
        if (other.isEmpty()) return;
        extend(other.min);
        extend(other.max);
    }

    Vector3 size() const { return max - min; }
    Vector3 center() const { return (min + max) * 0.5; }
    double diagonal() const { return Length(size()); }

    friend bool operator==(const Box&, const Box&) = default;
};

} // namespace vdt
