// The light that falls on a plant: a bright sky, a warm sun of some width, and what the ground gives back.
#pragma once

#include "picture/float_math.h"
#include "picture/sampler.h"

namespace verdanth {

/// Where the sun stands. Degrees.
struct SunPosition {
    double azimuth = -40;  // from where the viewer stands: to his left below 0, behind the plant at 180
    double elevation = 50; // above the horizon
};

class Sky {
public:
    /// `viewAzimuth`: the direction in which the viewer stands, in degrees.
    Sky(const SunPosition& sun, double viewAzimuth);

    /// What comes in from a direction of unit length, without the sun.
    Light radiance(const Float3& direction) const;
    /// A direction towards the sun's disc.
    Float3 towardsSun(const SamplePoint& sample) const;
    /// What the whole disc gives to a surface that faces it.
    Light sunIrradiance() const;

    /// Of the light that falls on open level ground, the part that comes from the sun, 0 to 1.
    float sunShareOnGround() const { return sunShare; }

private:
    Float3 sunDirection;
    float sunShare;
};

/// A direction above a surface with `normal`, by the cosine to it.
Float3 CosineDirection(const Float3& normal, const SamplePoint& sample);

} // namespace verdanth
