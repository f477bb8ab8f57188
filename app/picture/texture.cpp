#include "picture/texture.h"

#include "export/relief.h"

#include <array>

namespace verdanth {
namespace {

// The four pixels around a place, and how much the right and lower ones count.
struct Neighbours {
    size_t index[4]; // upper left, upper right, lower left, lower right
    float right, lower;

    template <class Value> auto blend(Value value) const
    {
        const auto upper = value(index[0]) * (1 - right) + value(index[1]) * right;
        const auto under = value(index[2]) * (1 - right) + value(index[3]) * right;
        return upper * (1 - lower) + under * lower;
    }
};

// Where `coordinate` lies on an axis of `size` pixels, 0 to size.
float wrapped(float coordinate, float size)
{
    const float part = coordinate - std::floor(coordinate);
    return part >= 0 && part < 1 ? part * size : 0; // beyond float's whole numbers there is no part, nor for infinity
}

Neighbours around(const Picture& picture, const vdt::Vector2f& coordinate)
{
    const auto axis = [](float place, uint32_t size, uint32_t& first, uint32_t& second, float& share) {
        const float shifted = place - 0.5F;
        const float whole = std::floor(shifted);
        share = shifted - whole;
        first = whole < 0 ? size - 1 : std::min(static_cast<uint32_t>(whole), size - 1);
        second = first + 1 < size ? first + 1 : 0;
    };
    uint32_t left = 0, right = 0, upper = 0, lower = 0;
    Neighbours result{};
    const auto width = static_cast<float>(picture.width);
    const auto height = static_cast<float>(picture.height);
    axis(wrapped(coordinate.u, width), picture.width, left, right, result.right);
    axis(wrapped(1 - coordinate.v, height), picture.height, upper, lower, result.lower);
    const size_t upperRow = size_t{upper} * picture.width;
    const size_t lowerRow = size_t{lower} * picture.width;
    result.index[0] = upperRow + left;
    result.index[1] = upperRow + right;
    result.index[2] = lowerRow + left;
    result.index[3] = lowerRow + right;
    return result;
}

const std::array<float, 256>& linearBytes()
{
    static const std::array<float, 256> table = [] {
        std::array<float, 256> values{};
        for (size_t i = 0; i < values.size(); ++i) values[i] = LinearFromSrgb(static_cast<float>(i) / 255);
        return values;
    }();
    return table;
}

} // namespace

Texture::Texture(Picture source) : picture(std::move(source))
{
    const size_t count = size_t{picture.width} * picture.height;
    for (size_t i = 0; i < count; ++i) alphaUsed = alphaUsed || picture.pixels[i * 4 + 3] != 255;
    mask.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* p = &picture.pixels[i * 4];
        mask.push_back(alphaUsed ? p[3] : static_cast<uint8_t>((p[0] * 2 + p[1] * 5 + p[2]) / 8));
    }
}

Light Texture::color(const vdt::Vector2f& coordinate) const
{
    const std::array<float, 256>& linear = linearBytes();
    return around(picture, coordinate).blend([&](size_t pixel) {
        const uint8_t* p = &picture.pixels[pixel * 4];
        return Light{linear[p[0]], linear[p[1]], linear[p[2]]};
    });
}

Float3 Texture::raw(const vdt::Vector2f& coordinate) const
{
    return around(picture, coordinate).blend([&](size_t pixel) {
        const uint8_t* p = &picture.pixels[pixel * 4];
        return Float3{static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])} * (1 / 255.0F);
    });
}

float Texture::opacity(const vdt::Vector2f& coordinate) const
{
    return around(picture, coordinate).blend([&](size_t pixel) { return static_cast<float>(mask[pixel]); }) / 255;
}

const Texture* TextureStore::find(const std::string& path)
{
    return path.empty() ? nullptr : findMade(path, 0);
}

const Texture* TextureStore::findRelief(const SceneSide& side)
{
    if (!side.normalTexture.empty()) return find(side.normalTexture);
    return side.bumpTexture.empty() ? nullptr : findMade(side.bumpTexture, side.bumpStrength);
}

// The picture, or with a strength other than 0 the normals of its heights.
const Texture* TextureStore::findMade(const std::string& path, float bumpStrength)
{
    const auto [entry, isNew] = textures.emplace(std::pair(path, bumpStrength), nullptr);
    if (!isNew) return entry->second.get();
    std::string problem;
    std::optional<Picture> picture = ReadPng(path, problem);
    if (picture && bumpStrength != 0) picture = NormalsOfHeights(*picture, bumpStrength);
    if (picture)
        entry->second = std::make_unique<Texture>(std::move(*picture));
    else
        messages->warning("texture " + path + " " + problem + "; it is left out of the picture");
    return entry->second.get();
}

} // namespace verdanth
