#include "export/mean_color.h"

#include "export/picture.h"
#include "export/srgb.h"

#include <array>

namespace verdanth {

vdt::Color3f MeanColor(const SceneSide& side, const std::string& alphaTexture)
{
    std::string problem;
    std::optional<Picture> picture;
    if (!side.colorTexture.empty()) picture = ReadPng(side.colorTexture, problem);
    if (!picture) return side.color;
    if (!alphaTexture.empty() && alphaTexture != side.colorTexture)
        if (const std::optional<Picture> mask = ReadPng(alphaTexture, problem)) picture = WithAlphaOf(*picture, *mask);

    std::array<double, 256> light;
    for (size_t byte = 0; byte < light.size(); ++byte) light[byte] = LinearFromSrgb(static_cast<float>(byte) / 255);
    double sums[3] = {};
    double weight = 0;
    for (size_t i = 0; i + 3 < picture->pixels.size(); i += 4) {
        const uint8_t* pixel = &picture->pixels[i];
        for (int channel = 0; channel < 3; ++channel) sums[channel] += light[pixel[channel]] * pixel[3];
        weight += pixel[3];
    }
    if (weight == 0) return side.color;
    const auto mean = [&](int channel) { return SrgbFromLinear(static_cast<float>(sums[channel] / weight)); };
    return {mean(0), mean(1), mean(2)};
}

} // namespace verdanth
