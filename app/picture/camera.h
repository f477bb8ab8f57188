// Where a picture is taken from, so that the whole plant is in it.
#pragma once

#include "picture/sampler.h"
#include "picture/traced_scene.h"

#include <span>

namespace verdanth {

/// Degrees. At azimuth 0 the viewer stands in front of the plant, on the positive z axis; he walks round it to his
/// right, so that the plant seems to turn. At elevation 90 he looks straight down.
struct ViewDirection {
    double azimuth = 0;
    double elevation = 0;
};

class Camera {
public:
    /// Sees all points of `outline` with a margin around them, for a picture of `width` x `height` pixels.
    Camera(const ViewDirection& view, std::span<const Float3> outline, uint32_t width, uint32_t height);

    /// One that sees all of `outline` while it goes round the plant through `views`, always at the same distance.
    static std::vector<Camera> Turntable(std::span<const ViewDirection> views, std::span<const Float3> outline,
                                         uint32_t width, uint32_t height);

    /// Through a place of the picture, in pixels from its upper left corner.
    SceneRay ray(float x, float y) const;

    /// Half the picture's width where the plant stands.
    float halfWidthAtPlant() const;

    const ViewDirection& view() const { return direction; }

private:
    struct Reach;
    Camera(const ViewDirection& view, uint32_t width, uint32_t height);
    Reach reachOf(std::span<const Float3> outline) const;
    void standFor(const Reach& reach);

    ViewDirection direction;
    Float3 right, up, back; // back: from the plant towards the viewer
    Float3 position{0, 0, 0};
    float halfWidth, halfHeight; // of the picture at distance 1
    float pictureWidth, pictureHeight;
};

} // namespace verdanth
