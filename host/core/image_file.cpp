#include "core/image_file.h"

#include <png.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <tiffio.h>

namespace host {
namespace {

// Deflate makes a byte of at most so many, and a byte holds at most so many pixels: more cannot be in a file.
constexpr std::uint64_t kMostPixelsPerByte = 1032 * 8;

bool isSizeBelievable(std::uint64_t width, std::uint64_t height, size_t fileSize)
{
    if (width == 0 || height == 0 || width > kMostPixels || height > kMostPixels) return false;
    return width * height <= std::min(kMostPixels, fileSize * kMostPixelsPerByte);
}

IMAGERESULT readPng(std::string_view file, Picture& picture)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) return IMAGERESULT_FILESTRUCTURE;
    const std::unique_ptr<png_image, void (*)(png_image*)> end(&image, png_image_free);
    if (!isSizeBelievable(image.width, image.height, file.size())) return IMAGERESULT_OUTOFMEMORY;

    picture.hasAlpha = (image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
    image.format = PNG_FORMAT_RGBA;
    picture.width = static_cast<Int32>(image.width);
    picture.height = static_cast<Int32>(image.height);
    picture.rgba.resize(PNG_IMAGE_SIZE(image));
    const bool complete = png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr) != 0;
    return complete ? IMAGERESULT_OK : IMAGERESULT_FILESTRUCTURE;
}

// A TIFF file in memory, as libtiff reads files.
struct TiffSource {
    std::string_view bytes;
    toff_t place = 0;
};

tmsize_t readBytes(thandle_t handle, void* destination, tmsize_t count)
{
    auto& source = *static_cast<TiffSource*>(handle);
    if (source.place >= source.bytes.size() || count <= 0) return 0;
    const size_t given = std::min(static_cast<size_t>(count), source.bytes.size() - source.place);
    std::memcpy(destination, source.bytes.data() + source.place, given);
    source.place += given;
    return static_cast<tmsize_t>(given);
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t)
{
    return 0;
}

toff_t seek(thandle_t handle, toff_t offset, int origin)
{
    auto& source = *static_cast<TiffSource*>(handle);
    const toff_t start = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? source.place : source.bytes.size();
    return source.place = start + offset;
}

int close(thandle_t)
{
    return 0;
}

toff_t sizeOf(thandle_t handle)
{
    return static_cast<TiffSource*>(handle)->bytes.size();
}

int keepQuiet(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

std::unique_ptr<TIFF, void (*)(TIFF*)> openTiff(TiffSource& source)
{
    // What a file can be unpacked to, and room for libtiff's own tables.
    constexpr size_t kMostGrowth = 1100;
    constexpr size_t kOwnTables = size_t{1} << 20;
    const size_t most = std::min(size_t{4} * kMostPixels, source.bytes.size() * kMostGrowth + kOwnTables);
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                               TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), static_cast<tmsize_t>(most));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepQuiet, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), keepQuiet, nullptr);
    TIFF* file = TIFFClientOpenExt("picture", "rm", &source, readBytes, writeNothing, seek, close, sizeOf, nullptr,
                                   nullptr, options.get());
    return {file, TIFFClose};
}

enum class TiffAlpha { None, Separate, Multiplied };

// libtiff multiplies colours by an alpha that the file keeps apart, which loses what is nearly transparent. It is told
// that this has been done already.
TiffAlpha prepareAlpha(TIFF& file)
{
    uint16_t count = 0;
    const uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(&file, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    if (count == 0 || !kinds || kinds[0] == EXTRASAMPLE_UNSPECIFIED) return TiffAlpha::None;
    if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) return TiffAlpha::Multiplied;
    std::vector<uint16_t> claimed(kinds, kinds + count);
    claimed[0] = EXTRASAMPLE_ASSOCALPHA;
    TIFFSetField(&file, TIFFTAG_EXTRASAMPLES, count, claimed.data());
    return TiffAlpha::Separate;
}

void divideByAlpha(std::span<std::uint8_t> rgba)
{
    for (size_t i = 0; i < rgba.size(); i += 4) {
        const unsigned alpha = rgba[i + 3];
        for (size_t k = i; alpha > 0 && k < i + 3; ++k) {
            rgba[k] = static_cast<std::uint8_t>(std::min((rgba[k] * 255U + alpha / 2) / alpha, 255U));
        }
    }
}

IMAGERESULT readTiff(std::string_view bytes, Picture& picture)
{
    TiffSource source{bytes};
    const auto file = openTiff(source);
    if (!file) return IMAGERESULT_FILESTRUCTURE;
    uint32_t width = 0;
    uint32_t height = 0;
    TIFFGetField(file.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &height);
    if (!isSizeBelievable(width, height, bytes.size())) return IMAGERESULT_OUTOFMEMORY;

    const TiffAlpha alpha = prepareAlpha(*file);
    std::vector<uint32_t> raster(size_t{width} * height);
    constexpr int kStopOnError = 1;
    if (!TIFFReadRGBAImageOriented(file.get(), width, height, raster.data(), ORIENTATION_TOPLEFT, kStopOnError)) {
        return IMAGERESULT_FILESTRUCTURE;
    }
    picture.width = static_cast<Int32>(width);
    picture.height = static_cast<Int32>(height);
    picture.hasAlpha = alpha != TiffAlpha::None;
    picture.rgba.reserve(raster.size() * 4);
    for (const uint32_t pixel : raster) {
        const unsigned parts[] = {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel), TIFFGetA(pixel)};
        for (const unsigned part : parts) picture.rgba.push_back(static_cast<std::uint8_t>(part));
    }
    if (alpha == TiffAlpha::Multiplied) divideByAlpha(picture.rgba);
    return IMAGERESULT_OK;
}

} // namespace

IMAGERESULT ReadPicture(std::string_view file, Picture& picture)
{
    using namespace std::string_view_literals;
    picture = {};
    IMAGERESULT result = IMAGERESULT_WRONGTYPE;
    if (file.starts_with("\x89PNG\r\n\x1a\n"sv)) result = readPng(file, picture);
    if (file.starts_with("II*\0"sv) || file.starts_with("MM\0*"sv)) result = readTiff(file, picture);
    if (result != IMAGERESULT_OK) picture = {};
    return result;
}

} // namespace host
