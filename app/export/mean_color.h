// One colour for a whole material, for forms of a plant that have no room for textures.
#pragma once

#include "export/scene.h"

namespace verdanth {

/// sRGB's transfer function and its inverse, for one channel, 0 to 1.
float LinearOf(float srgb);
float SrgbOf(float linear);

/// The mean of the colour texture's light where the surface is not cut out; without a texture that can be read, the
/// material's colour. sRGB.
vdt::Color3f MeanColor(const SceneMaterial& material);

} // namespace verdanth
