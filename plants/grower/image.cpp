#include "grower/image.h"

#include <png.h>

#include <algorithm>

namespace grower {
namespace {

uint8_t toByte(double value)
{
    return static_cast<uint8_t>(std::clamp(value, 0.0, 1.0) * 255 + 0.5);
}

// The samples of a picture of the image's size as a PNG's bytes.
std::vector<uint8_t> encoded(const std::vector<uint8_t>& samples, const Image& image, uint32_t format)
{
    png_image encoder{};
    encoder.version = PNG_IMAGE_VERSION;
    encoder.width = image.width;
    encoder.height = image.height;
    encoder.format = format;
    encoder.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = samples.size() + image.height + 65536;
    std::vector<uint8_t> bytes(size);
    if (!png_image_write_to_memory(&encoder, bytes.data(), &size, 0, samples.data(), 0, nullptr)) return {};
    bytes.resize(size);
    return bytes;
}

} // namespace

vdt::Color3f MeanColor(const Image& image)
{
    double sum[3] = {};
    double weight = 0;
    for (const vdt::Color4f& pixel : image.pixels) {
        sum[0] += pixel.r * pixel.a;
        sum[1] += pixel.g * pixel.a;
        sum[2] += pixel.b * pixel.a;
        weight += pixel.a;
    }
    if (weight == 0) return {};

    // Two decimals are plenty for a mean, and read well in the file.
    const auto rounded = [&](double part) { return static_cast<float>(std::round(part / weight * 100) / 100); };
    return {rounded(sum[0]), rounded(sum[1]), rounded(sum[2])};
}

std::vector<uint8_t> EncodePng(const Image& image)
{
    std::vector<uint8_t> bytes;
    bytes.reserve(image.pixels.size() * 4);
    for (const vdt::Color4f& pixel : image.pixels) {
        bytes.insert(bytes.end(), {toByte(pixel.r), toByte(pixel.g), toByte(pixel.b)});
        if (image.hasAlpha) bytes.push_back(toByte(pixel.a));
    }
    return encoded(bytes, image, image.hasAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB);
}

std::vector<uint8_t> EncodeMask(const Image& image)
{
    std::vector<uint8_t> bytes;
    bytes.reserve(image.pixels.size());
    for (const vdt::Color4f& pixel : image.pixels) bytes.push_back(toByte(pixel.a));
    return encoded(bytes, image, PNG_FORMAT_GRAY);
}

Image NormalsOfHeights(const Image& heights, double steepness)
{
    Image normals(heights.width, heights.height, false);
    const uint32_t width = heights.width;
    const uint32_t height = heights.height;
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            const double alongU = heights.at((x + 1) % width, y).r - heights.at((x + width - 1) % width, y).r;
            const double alongV = heights.at(x, (y + height - 1) % height).r - heights.at(x, (y + 1) % height).r;
            const vdt::Vector3 normal =
                vdt::Normalized({-alongU * steepness * width / 2, -alongV * steepness * width / 2, 1});
            normals.at(x, y) = {static_cast<float>(normal.x * 0.5 + 0.5), static_cast<float>(normal.y * 0.5 + 0.5),
                                static_cast<float>(normal.z * 0.5 + 0.5), 1};
        }
    }
    return normals;
}

vdt::Color3f Mix(const vdt::Color3f& a, const vdt::Color3f& b, double share)
{
    const auto t = static_cast<float>(std::clamp(share, 0.0, 1.0));
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

vdt::Color3f Scaled(const vdt::Color3f& color, double factor)
{
    const auto f = static_cast<float>(factor);
    return {color.r * f, color.g * f, color.b * f};
}

} // namespace grower
