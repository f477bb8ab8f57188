// One colour for a whole material, for forms of a plant that have no room for textures.
#pragma once

#include "export/scene.h"

namespace verdanth {

/// The mean of the colour texture's light where `alphaTexture`, or the colour texture's own alpha if there is none,
/// cuts nothing out; without a colour texture that can be read, the side's colour. sRGB.
vdt::Color3f MeanColor(const SceneSide& side, const std::string& alphaTexture);

/// Of the front.
inline vdt::Color3f MeanColor(const SceneMaterial& material)
{
    return MeanColor(material, material.alphaTexture);
}

} // namespace verdanth
