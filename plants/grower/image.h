// Pictures that the grower draws, and how they get onto the disk.
#pragma once

#include "vdt/math/vector.h"

#include <cstdint>
#include <string>
#include <vector>

namespace grower {

/// Row by row from the top. Colours are sRGB, 0 to 1.
struct Image {
    Image() = default;
    Image(uint32_t imageWidth, uint32_t imageHeight, bool withAlpha)
        : width(imageWidth),
          height(imageHeight),
          hasAlpha(withAlpha),
          pixels(uint64_t{imageWidth} * imageHeight)
    {
    }

    vdt::Color4f& at(uint32_t x, uint32_t y) { return pixels[uint64_t{y} * width + x]; }
    const vdt::Color4f& at(uint32_t x, uint32_t y) const { return pixels[uint64_t{y} * width + x]; }

    uint32_t width = 0;
    uint32_t height = 0;
    bool hasAlpha = false;
    std::vector<vdt::Color4f> pixels;
};

/// The mean of what can be seen of the picture: each pixel counts by its alpha.
vdt::Color3f MeanColor(const Image& image);

/// The picture as PNG bytes, the same on every run; empty if the encoder fails.
std::vector<uint8_t> EncodePng(const Image& image);

/// The picture's alpha as a grey PNG's bytes: white where the picture is opaque.
std::vector<uint8_t> EncodeMask(const Image& image);

/// The normals of a height field that repeats in both directions, as a picture. `steepness` is the slope, in texture
/// widths, that a step from 0 to 1 in the red channel over one texture width stands for.
Image NormalsOfHeights(const Image& heights, double steepness);

/// Mixes two colours; `share` is the second one's, 0 to 1.
vdt::Color3f Mix(const vdt::Color3f& a, const vdt::Color3f& b, double share);

/// `color` made lighter or darker.
vdt::Color3f Scaled(const vdt::Color3f& color, double factor);

} // namespace grower
