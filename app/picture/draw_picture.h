// Draws a plant as it stands in the light.
#pragma once

#include "export/picture.h"
#include "export/scene.h"
#include "picture/camera.h"
#include "picture/sky.h"

namespace verdanth {

enum class Ground {
    Plain,       // one colour all round, with the plant's shadow on it
    Transparent, // nothing but the shadow
    None,        // nothing, not even the shadow
};

struct PictureSettings {
    uint32_t width = 512;
    uint32_t height = 512;
    uint32_t samples = 64; // a pixel
    Ground ground = Ground::Plain;
    vdt::Color3f background{0.95F, 0.95F, 0.93F}; // sRGB, of plain ground
    SunPosition sun{};
    unsigned threads = 0; // 0: as many as the machine has
};

/// Draws what `camera`, made for the settings' width and height, sees. The same scene and settings give the same
/// picture whatever the number of threads. False on cancelling.
bool DrawPicture(const TracedScene& scene, const Camera& camera, const PictureSettings& settings, Picture& picture,
                 vdt::MessageHandler& messages);

} // namespace verdanth
