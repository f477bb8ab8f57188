#include "picture/sky.h"

namespace verdanth {
namespace {

constexpr Light kZenith{0.62F, 0.78F, 1.05F};
constexpr Light kHorizon{1.12F, 1.14F, 1.12F};
constexpr Light kGroundBelow{0.46F, 0.43F, 0.37F};
constexpr Light kSun{3.5F, 3.15F, 2.55F};
constexpr float kSunRadius = 0.035F; // radians: several times the true sun's, so that shadows have soft edges

Light upperSky(float height)
{
    return Mix(kHorizon, kZenith, std::sqrt(height));
}

// What the sky gives to open level ground: its radiance over the cosine, in rings of equal height.
Light skyIrradiance()
{
    constexpr int kRings = 64;
    Light sum{0, 0, 0};
    for (int ring = 0; ring < kRings; ++ring) {
        const float height = (static_cast<float>(ring) + 0.5F) / kRings;
        sum += upperSky(height) * (2 * kPif * height / kRings);
    }
    return sum;
}

} // namespace

Sky::Sky(const SunPosition& sun, double viewAzimuth)
{
    const double azimuth = (viewAzimuth + sun.azimuth) * vdt::kPi / 180;
    const double elevation = sun.elevation * vdt::kPi / 180;
    sunDirection = {static_cast<float>(std::sin(azimuth) * std::cos(elevation)),
                    static_cast<float>(std::sin(elevation)),
                    static_cast<float>(std::cos(azimuth) * std::cos(elevation))};
    const float direct = Luminance(kSun) * std::max(sunDirection.y, 0.0F);
    sunShare = direct / (direct + Luminance(skyIrradiance()));
}

Light Sky::radiance(const Float3& direction) const
{
    constexpr float kHaze = 0.08F; // the horizon is no sharp line
    const Light above = upperSky(std::max(direction.y, 0.0F));
    return Mix(kGroundBelow, above, SmoothStep(-kHaze, kHaze, direction.y));
}

Float3 Sky::towardsSun(const SamplePoint& sample) const
{
    const float radius = kSunRadius * std::sqrt(sample.u);
    const float angle = 2 * kPif * sample.v;
    return Normalized(AroundNormal({radius * std::cos(angle), radius * std::sin(angle), 1}, sunDirection));
}

Light Sky::sunIrradiance() const
{
    return kSun;
}

Float3 CosineDirection(const Float3& normal, const SamplePoint& sample)
{
    const float radius = std::sqrt(sample.u);
    const float angle = 2 * kPif * sample.v;
    return AroundNormal({radius * std::cos(angle), radius * std::sin(angle), std::sqrt(1 - sample.u)}, normal);
}

} // namespace verdanth
