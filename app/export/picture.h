// Pictures as exports need them: what a file holds, and colour and alpha of two files in one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace verdanth {

enum class PictureKind { Png, Jpeg, Other };

/// What the file at `path` begins with. None, with `problem` told, if it has no content, or if it begins as a PNG or
/// JPEG file and does not end as one.
std::optional<PictureKind> ProbePicture(const std::string& path, std::string& problem);

/// Four bytes a pixel: red, green, blue, alpha; rows from the top.
struct Picture {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;
};

/// Reads a PNG file of up to 8192 x 8192 pixels.
std::optional<Picture> ReadPng(const std::string& path, std::string& problem);

/// The picture as a PNG file's bytes; empty if that fails.
std::vector<uint8_t> EncodePng(const Picture& picture);

/// Gives `color` the cut-out of `mask`, at the finer size of the two: the mask's alpha if it has any, else its
/// brightness.
Picture WithAlphaOf(const Picture& color, const Picture& mask);

} // namespace verdanth
