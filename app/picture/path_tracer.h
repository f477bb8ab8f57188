// What one ray from the camera sees.
#pragma once

#include "picture/sky.h"
#include "picture/traced_scene.h"

namespace verdanth {

/// A sample of a picture. What is neither plant nor shadow is background.
struct Sighting {
    Light light{0, 0, 0}; // of the plant; black where there is none
    float plant = 0;      // 1 where the plant is
    float shadow = 0;     // where there is none: how dark its shadow on the ground is, 0 to 1
};

class PathTracer {
public:
    /// A plant stands on ground that shows its shadow and hides what is below. The shadow has faded away at a distance
    /// of `reachOfShadow` from the plant's middle; 0 for no ground.
    PathTracer(const TracedScene& tracedScene, const Sky& surroundings, float reachOfShadow);

    /// Follows up to TracedScene::kBundle rays of one pixel, each with its own sampler.
    void look(std::span<SceneRay> rays, std::span<Sampler> samplers, std::span<Sighting> sightings) const;

private:
    Light lightFrom(const Surface& first, const Float3& towardsFirstViewer, Sampler& sampler) const;
    Light sunOn(const Surface& surface, const Float3& towardsViewer, Sampler& sampler) const;
    float shadowAt(const Float3& place, Sampler& sampler) const;
    bool meetsGround(const SceneRay& ray, float& distance) const;

    const TracedScene* scene;
    const Sky* sky;
    float shadowReach;
};

} // namespace verdanth
