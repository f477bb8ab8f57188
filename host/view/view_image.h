// A picture of a view.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {

/// Four bytes a pixel: red, green, blue, alpha; rows from the top.
struct ViewImage {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;

    const uint8_t* pixel(uint32_t x, uint32_t y) const { return &pixels[4 * (size_t{y} * width + x)]; }
};

} // namespace host
