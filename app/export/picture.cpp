#include "export/picture.h"

#include "files/input_file.h"

#include <png.h>

#include <algorithm>
#include <cstring>

namespace verdanth {
namespace {

constexpr uint8_t kPngSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr uint32_t kLargestSide = 8192;

bool isPng(const std::vector<uint8_t>& bytes)
{
    return bytes.size() >= sizeof kPngSignature &&
           std::equal(std::begin(kPngSignature), std::end(kPngSignature), bytes.begin());
}

uint32_t bigEndian(const uint8_t* bytes)
{
    return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
           static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

// True if the chunks follow one another up to the one that ends the file.
bool isWholePng(const std::vector<uint8_t>& bytes)
{
    constexpr size_t kFrame = 12; // length, name and checksum of a chunk
    size_t place = sizeof kPngSignature;
    while (bytes.size() - place >= kFrame) {
        const uint64_t length = bigEndian(&bytes[place]);
        if (length > bytes.size() - place - kFrame) return false;
        if (std::memcmp(&bytes[place + 4], "IEND", 4) == 0) return true;
        place += kFrame + length;
    }
    return false;
}

bool isWholeJpeg(const std::vector<uint8_t>& bytes)
{
    // Some writers fill up behind the end mark.
    constexpr size_t kTail = 64;
    const size_t from = bytes.size() > kTail ? bytes.size() - kTail : 0;
    for (size_t i = from; i + 1 < bytes.size(); ++i)
        if (bytes[i] == 0xFF && bytes[i + 1] == 0xD9) return true;
    return false;
}

// The pixel of `picture` that a size of `width` x `height` has at (x, y).
const uint8_t* pixelAt(const Picture& picture, uint32_t width, uint32_t height, uint32_t x, uint32_t y)
{
    const uint64_t column = static_cast<uint64_t>(x) * picture.width / width;
    const uint64_t row = static_cast<uint64_t>(y) * picture.height / height;
    return &picture.pixels[(row * picture.width + column) * 4];
}

} // namespace

std::optional<PictureKind> ProbePicture(const std::string& path, std::string& problem)
{
    const auto bytes = ReadWholeFile(path, problem);
    if (!bytes) return std::nullopt;

    const bool jpeg = bytes->size() > 2 && (*bytes)[0] == 0xFF && (*bytes)[1] == 0xD8;
    if (!isPng(*bytes) && !jpeg) return PictureKind::Other;
    if (jpeg ? isWholeJpeg(*bytes) : isWholePng(*bytes)) return jpeg ? PictureKind::Jpeg : PictureKind::Png;
    problem = "is cut off";
    return std::nullopt;
}

std::optional<Picture> ReadPng(const std::string& path, std::string& problem)
{
    const auto bytes = ReadWholeFile(path, problem);
    if (!bytes) return std::nullopt;
    problem = "is no PNG picture";
    if (!isPng(*bytes)) return std::nullopt;

    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    Picture picture;
    if (png_image_begin_read_from_memory(&image, bytes->data(), bytes->size()) && image.width > 0 && image.height > 0 &&
        image.width <= kLargestSide && image.height <= kLargestSide) {
        image.format = PNG_FORMAT_RGBA;
        picture.width = image.width;
        picture.height = image.height;
        picture.pixels.resize(PNG_IMAGE_SIZE(image));
        if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr)) return picture;
    }
    problem = "is a PNG picture that cannot be read";
    if (image.message[0]) problem += std::string(": ") + image.message;
    png_image_free(&image);
    return std::nullopt;
}

std::vector<uint8_t> EncodePng(const Picture& picture)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = picture.width;
    image.height = picture.height;
    image.format = PNG_FORMAT_RGBA;

    std::vector<uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image));
    png_alloc_size_t size = bytes.size();
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, picture.pixels.data(), 0, nullptr)) size = 0;
    bytes.resize(size);
    return bytes;
}

Picture WithAlphaOf(const Picture& color, const Picture& mask)
{
    bool maskHasAlpha = false;
    for (size_t i = 3; i < mask.pixels.size(); i += 4) maskHasAlpha = maskHasAlpha || mask.pixels[i] != 255;

    Picture result{std::max(color.width, mask.width), std::max(color.height, mask.height), {}};
    result.pixels.reserve(size_t{4} * result.width * result.height);
    for (uint32_t y = 0; y < result.height; ++y) {
        for (uint32_t x = 0; x < result.width; ++x) {
            const uint8_t* c = pixelAt(color, result.width, result.height, x, y);
            const uint8_t* m = pixelAt(mask, result.width, result.height, x, y);
            const int brightness = (m[0] * 2 + m[1] * 5 + m[2]) / 8;
            const int alpha = maskHasAlpha ? m[3] : brightness;
            result.pixels.insert(result.pixels.end(), {c[0], c[1], c[2], static_cast<uint8_t>(alpha)});
        }
    }
    return result;
}

} // namespace verdanth
