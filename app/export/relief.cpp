#include "export/relief.h"

#include <algorithm>
#include <cmath>

namespace verdanth {
namespace {

// Brightness, with white as 1.
double heightAt(const Picture& picture, uint32_t x, uint32_t y)
{
    const uint8_t* p = &picture.pixels[(size_t{y} * picture.width + x) * 4];
    return (p[0] * 2 + p[1] * 5 + p[2]) / (8 * 255.0);
}

uint8_t byteOf(double component)
{
    return static_cast<uint8_t>(std::lround(std::clamp(component * 0.5 + 0.5, 0.0, 1.0) * 255));
}

} // namespace

Picture NormalsOfHeights(const Picture& heights, float strength)
{
    const uint32_t width = heights.width;
    const uint32_t height = heights.height;
    const double pixels = double{strength} * kBumpHeight * width; // from black to white
    Picture normals{width, height, {}};
    normals.pixels.reserve(heights.pixels.size());
    for (uint32_t y = 0; y < height; ++y) {
        const uint32_t above = (y + height - 1) % height;
        const uint32_t below = (y + 1) % height;
        for (uint32_t x = 0; x < width; ++x) {
            const double alongU = heightAt(heights, (x + 1) % width, y) - heightAt(heights, (x + width - 1) % width, y);
            const double alongV = heightAt(heights, x, above) - heightAt(heights, x, below);
            const double slopeU = alongU / 2 * pixels;
            const double slopeV = alongV / 2 * pixels;
            const double length = std::hypot(slopeU, slopeV, 1.0);
            normals.pixels.insert(normals.pixels.end(),
                                  {byteOf(-slopeU / length), byteOf(-slopeV / length), byteOf(1 / length), 255});
        }
    }
    return normals;
}

} // namespace verdanth
