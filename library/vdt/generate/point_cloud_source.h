// What a point cloud is sampled from, and what comes out.
#pragma once

#include "vdt/math/mersenne_twister.h"
#include "vdt/math/vector.h"

#include <cstdint>

namespace vdt {

struct CloudSample {
    Vector3 position;
    Vector3 normal;
    float weight; // 1 at the crown's centre to 0 outside
    int32_t material;

    friend bool operator==(const CloudSample&, const CloudSample&) = default;
};

struct LitSample {
    Vector3 position;
    float shade; // 0 for dark to 1 for full light
    int32_t material;

    friend bool operator==(const LitSample&, const LitSample&) = default;
};

/// A piece of surface. `t` runs from 0 to 1 over it; the rest of a sample's place is drawn from `random`.
class PointCloudSource {
public:
    virtual ~PointCloudSource() = default;

    /// How many samples it gets, measured against other sources.
    virtual double Area() const = 0;
    virtual CloudSample Sample(double t, MersenneTwister& random) const = 0;
    /// The same sample under a light that shines along -`direction`, a unit vector.
    virtual LitSample SampleLit(double t, MersenneTwister& random, const Vector3& direction) const = 0;
};

/// `normal` on the side that `direction` points to; on the other one where it is at right angles to it.
inline Vector3 TurnedTowards(const Vector3& direction, const Vector3& normal)
{
    return -Dot(direction, normal) < 0 ? normal : -normal;
}

} // namespace vdt
