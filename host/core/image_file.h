// Pictures from files: PNG and TIFF, told apart by their first bytes.
#pragma once

#include "c4d_basebitmap.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host {

struct Picture {
    Int32 width = 0;
    Int32 height = 0;
    std::vector<std::uint8_t> rgba; // rows from the top; colours are not multiplied by alpha
    bool hasAlpha = false;
};

/// A picture of more pixels is not read.
constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 26;

IMAGERESULT ReadPicture(std::string_view file, Picture& picture);

} // namespace host
