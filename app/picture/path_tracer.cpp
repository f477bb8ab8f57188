#include "picture/path_tracer.h"

#include <array>

namespace verdanth {
namespace {

constexpr int kBounces = 2;          // from leaf to leaf: what makes a crown's inside green instead of black
constexpr float kPersistence = 1.7F; // a path worth 1 / 1.7 of the first surface's light, or more, is always followed
constexpr float kRarest = 0.25F;
constexpr float kLift = 1e-5F;                   // of a new ray's start above its surface
constexpr float kDarkestShadow = 0.8F;           // the ground is bright: its surroundings light it up
constexpr Light kDeepLight{0.16F, 0.17F, 0.15F}; // what comes from where no further bounce looks

} // namespace

PathTracer::PathTracer(const TracedScene& tracedScene, const Sky& surroundings, float reachOfShadow)
    : scene(&tracedScene),
      sky(&surroundings),
      shadowReach(reachOfShadow)
{
}

void PathTracer::look(std::span<SceneRay> rays, std::span<Sampler> samplers, std::span<Sighting> sightings) const
{
    uint32_t groundAhead = 0;
    for (size_t i = 0; i < rays.size(); ++i)
        if (meetsGround(rays[i], rays[i].farthest)) groundAhead |= 1U << i;

    std::array<Surface, TracedScene::kBundle> surfaces;
    const uint32_t met = scene->intersectBundle(rays, surfaces);
    for (size_t i = 0; i < rays.size(); ++i) {
        const SceneRay& ray = rays[i];
        sightings[i] = {};
        if (met >> i & 1)
            sightings[i] = {lightFrom(surfaces[i], -ray.direction, samplers[i]), 1, 0};
        else if (groundAhead >> i & 1)
            sightings[i].shadow = shadowAt(ray.origin + ray.direction * ray.farthest, samplers[i]);
    }
}

bool PathTracer::meetsGround(const SceneRay& ray, float& distance) const
{
    if (shadowReach <= 0 || ray.origin.y <= 0 || ray.direction.y >= 0) return false;
    distance = -ray.origin.y / ray.direction.y;
    return true;
}

Light PathTracer::lightFrom(const Surface& first, const Float3& towardsFirstViewer, Sampler& sampler) const
{
    Surface surface = first;
    Float3 towardsViewer = towardsFirstViewer;
    Light sum{0, 0, 0};
    Light reach{1, 1, 1}; // what of the light at this surface gets to the viewer
    for (int bounce = 0;; ++bounce) {
        sum += reach * sunOn(surface, towardsViewer, sampler);
        if (bounce == kBounces) return sum + reach * (surface.reflection + surface.transmission) * kDeepLight;

        // The path goes on from this side, from the other, or not at all, by how much light it would bring.
        const float reflected = Luminance(reach * surface.reflection);
        const float transmitted = Luminance(reach * surface.transmission);
        if (reflected + transmitted <= 0) return sum;
        const SamplePoint choice = sampler.next();
        const float goOn = std::clamp((reflected + transmitted) * kPersistence, kRarest, 1.0F);
        const float through = goOn * transmitted / (reflected + transmitted);
        if (choice.u >= goOn) return sum;
        const bool isThrough = choice.u < through;
        const float side = isThrough ? -1.0F : 1.0F;
        reach =
            reach * (isThrough ? surface.transmission * (1 / through) : surface.reflection * (1 / (goOn - through)));

        const SceneRay onward{surface.position + surface.flatNormal * (side * kLift),
                              CosineDirection(surface.normal * side, sampler.next())};
        towardsViewer = -onward.direction;
        if (!scene->intersect(onward, surface)) return sum + reach * sky->radiance(onward.direction);
    }
}

Light PathTracer::sunOn(const Surface& surface, const Float3& towardsViewer, Sampler& sampler) const
{
    const Float3 sunward = sky->towardsSun(sampler.next());
    const float cosine = Dot(surface.normal, sunward);
    const bool fromBehind = Dot(surface.flatNormal, sunward) < 0;
    Light given = (fromBehind ? surface.transmission : surface.reflection) * (std::fabs(cosine) / kPif);
    if (!fromBehind && cosine > 0) {
        // A highlight: Blinn, "Models of Light Reflection for Computer Synthesized Pictures", 1977.
        const float sharpness = 2 / std::max(surface.roughness * surface.roughness, 0.02F);
        const float half = std::max(Dot(surface.normal, Normalized(sunward + towardsViewer)), 0.0F);
        given += surface.gloss * (cosine * (sharpness + 2) / (8 * kPif) * std::pow(half, sharpness));
    }
    if (!fromBehind && cosine <= 0) return {0, 0, 0};
    if (given == Light{0, 0, 0}) return given;

    const float side = fromBehind ? -1.0F : 1.0F;
    const SceneRay shadowRay{surface.position + surface.flatNormal * (side * kLift), sunward};
    return scene->isOccluded(shadowRay, sampler.bits()) ? Light{0, 0, 0} : given * sky->sunIrradiance();
}

// The ground has no edge: what tells it from the background is the shadow alone, and that fades with the distance.
float PathTracer::shadowAt(const Float3& place, Sampler& sampler) const
{
    const float fade = 1 - SmoothStep(0.3F * shadowReach, shadowReach, std::hypot(place.x, place.z));
    const SamplePoint fading = sampler.next();
    if (fading.u >= fade) return 0;

    // The light that is missing is the sun's or the sky's: one of them is asked, by what each would give.
    const Float3 start{place.x, kLift, place.z};
    const SamplePoint choice = sampler.next();
    const bool askSun = choice.u < sky->sunShareOnGround();
    const Float3 lightward = askSun ? sky->towardsSun(sampler.next()) : CosineDirection({0, 1, 0}, sampler.next());
    const float lost = lightward.y > 0 && scene->isOccluded({start, lightward}, sampler.bits()) ? 1.0F : 0.0F;
    return lost * kDarkestShadow;
}

} // namespace verdanth
