#include "export/mean_color.h"

#include "export/picture.h"

#include <array>
#include <cmath>

namespace verdanth {

float LinearOf(float srgb)
{
    return srgb <= 0.04045F ? srgb / 12.92F : std::pow((srgb + 0.055F) / 1.055F, 2.4F);
}

float SrgbOf(float linear)
{
    return linear <= 0.0031308F ? linear * 12.92F : 1.055F * std::pow(linear, 1 / 2.4F) - 0.055F;
}

vdt::Color3f MeanColor(const SceneMaterial& material)
{
    std::string problem;
    std::optional<Picture> picture;
    if (!material.colorTexture.empty()) picture = ReadPng(material.colorTexture, problem);
    if (!picture) return material.color;
    if (!material.alphaTexture.empty() && material.alphaTexture != material.colorTexture)
        if (const std::optional<Picture> mask = ReadPng(material.alphaTexture, problem))
            picture = WithAlphaOf(*picture, *mask);

    std::array<double, 256> light;
    for (size_t byte = 0; byte < light.size(); ++byte) light[byte] = LinearOf(static_cast<float>(byte) / 255);
    double sums[3] = {};
    double weight = 0;
    for (size_t i = 0; i + 3 < picture->pixels.size(); i += 4) {
        const uint8_t* pixel = &picture->pixels[i];
        for (int channel = 0; channel < 3; ++channel) sums[channel] += light[pixel[channel]] * pixel[3];
        weight += pixel[3];
    }
    if (weight == 0) return material.color;
    const auto mean = [&](int channel) { return SrgbOf(static_cast<float>(sums[channel] / weight)); };
    return {mean(0), mean(1), mean(2)};
}

} // namespace verdanth
