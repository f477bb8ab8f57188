// One colour for a whole material, for forms of a plant that have no room for textures.
#pragma once

#include "export/scene.h"

namespace verdanth {

/// The mean of the colour texture's light where the surface is not cut out; without a texture that can be read, the
/// material's colour. sRGB.
vdt::Color3f MeanColor(const SceneMaterial& material);

} // namespace verdanth
