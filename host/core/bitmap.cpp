#include "c4d_basebitmap.h"
#include "core/image_file.h"
#include "core/native_path.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

constexpr Int32 kGray = 8;
constexpr Int32 kColor = 24;
constexpr Int32 kColorAndAlpha = 32;

std::size_t partsOf(Int32 depth)
{
    return depth == kGray ? 1 : 3;
}

} // namespace

BaseBitmap::~BaseBitmap()
{
    Free(alpha);
}

BaseBitmap* BaseBitmap::Alloc()
{
    return new (std::nothrow) BaseBitmap();
}

void BaseBitmap::Free(BaseBitmap*& bitmap)
{
    delete bitmap;
    bitmap = nullptr;
}

IMAGERESULT BaseBitmap::Init(const Filename& name, Int32, Bool* ismovie)
{
    FlushAll();
    if (ismovie) *ismovie = false;
    std::error_code error;
    const std::filesystem::path path = host::FilePath(name);
    if (!std::filesystem::is_regular_file(path, error)) return IMAGERESULT_NOTEXISTING;
    std::ifstream stream(path, std::ios::binary);
    const std::string file(std::istreambuf_iterator<char>(stream), {});
    if (!stream || file.empty()) return IMAGERESULT_FILEERROR;

    host::Picture picture;
    const IMAGERESULT result = host::ReadPicture(file, picture);
    if (result != IMAGERESULT_OK) return result;
    const IMAGERESULT made = Init(picture.width, picture.height, picture.hasAlpha ? kColorAndAlpha : kColor);
    if (made != IMAGERESULT_OK) return made;
    for (std::size_t i = 0; i < picture.rgba.size() / 4; ++i) {
        std::copy_n(&picture.rgba[4 * i], 3, &pixels[3 * i]);
        if (alpha) alpha->pixels[i] = picture.rgba[4 * i + 3];
    }
    return IMAGERESULT_OK;
}

IMAGERESULT BaseBitmap::Init(Int32 x, Int32 y, Int32 depthWanted, INITBITMAPFLAGS flags)
{
    FlushAll();
    const bool isKnownDepth = depthWanted == kGray || depthWanted == kColor || depthWanted == kColorAndAlpha;
    if (x <= 0 || y <= 0 || !isKnownDepth) return IMAGERESULT_PARAM_ERROR;
    if (static_cast<std::uint64_t>(x) * static_cast<std::uint64_t>(y) > host::kMostPixels)
        return IMAGERESULT_OUTOFMEMORY;
    width = x;
    height = y;
    depth = flags & INITBITMAPFLAGS_GRAYSCALE ? kGray : depthWanted;
    pixels.assign(static_cast<std::size_t>(x) * static_cast<std::size_t>(y) * partsOf(depth), 0);
    if (depth == kColorAndAlpha) {
        alpha = Alloc();
        alpha->Init(x, y, kGray);
    }
    return IMAGERESULT_OK;
}

void BaseBitmap::FlushAll()
{
    width = height = depth = 0;
    pixels.clear();
    Free(alpha);
}

BaseBitmap* BaseBitmap::GetClone() const
{
    BaseBitmap* clone = Alloc();
    if (clone && !CopyTo(clone)) Free(clone);
    return clone;
}

BaseBitmap* BaseBitmap::GetClonePart(Int32 x, Int32 y, Int32 w, Int32 h) const
{
    if (x < 0 || y < 0 || w <= 0 || h <= 0 || w > width - x || h > height - y) return nullptr;
    BaseBitmap* part = Alloc();
    if (!part || part->Init(w, h, depth) != IMAGERESULT_OK) {
        Free(part);
        return nullptr;
    }
    const auto copyRows = [&](const BaseBitmap& from, BaseBitmap& to) {
        const std::size_t parts = partsOf(from.depth);
        const auto place = [&](const BaseBitmap& bitmap, Int32 column, Int32 row) {
            return (static_cast<std::size_t>(row) * static_cast<std::size_t>(bitmap.width) +
                    static_cast<std::size_t>(column)) *
                   parts;
        };
        for (Int32 row = 0; row < h; ++row) {
            std::copy_n(&from.pixels[place(from, x, y + row)], static_cast<std::size_t>(w) * parts,
                        &to.pixels[place(to, 0, row)]);
        }
    };
    copyRows(*this, *part);
    if (alpha) copyRows(*alpha, *part->alpha);
    return part;
}

Bool BaseBitmap::CopyTo(BaseBitmap* dst) const
{
    if (!dst || dst == this) return dst != nullptr;
    dst->FlushAll();
    dst->width = width;
    dst->height = height;
    dst->depth = depth;
    dst->pixels = pixels;
    dst->alpha = alpha ? alpha->GetClone() : nullptr;
    return true;
}

void BaseBitmap::Clear(Int32 r, Int32 g, Int32 b)
{
    for (Int32 y = 0; y < height; ++y) {
        for (Int32 x = 0; x < width; ++x) SetPixel(x, y, r, g, b);
    }
}

void BaseBitmap::GetPixel(Int32 x, Int32 y, UInt16* r, UInt16* g, UInt16* b) const
{
    const bool isInside = x >= 0 && y >= 0 && x < width && y < height;
    const std::size_t parts = partsOf(depth);
    const std::size_t pixel =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    const auto part = [&](std::size_t i) {
        return static_cast<UInt16>(isInside ? pixels[pixel * parts + std::min(i, parts - 1)] : 0);
    };
    if (r) *r = part(0);
    if (g) *g = part(1);
    if (b) *b = part(2);
}

Bool BaseBitmap::SetPixel(Int32 x, Int32 y, Int32 r, Int32 g, Int32 b)
{
    if (x < 0 || y < 0 || x >= width || y >= height) return false;
    const std::size_t parts = partsOf(depth);
    const std::size_t pixel =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    const Int32 values[] = {r, g, b};
    for (std::size_t i = 0; i < parts; ++i) {
        pixels[pixel * parts + i] = static_cast<UChar>(std::clamp(values[i], Int32{0}, Int32{255}));
    }
    return true;
}

BaseBitmap* BaseBitmap::GetInternalChannel()
{
    return alpha;
}

void BaseBitmap::GetAlphaPixel(BaseBitmap* channel, Int32 x, Int32 y, UInt16* val) const
{
    if (channel) channel->GetPixel(x, y, val, nullptr, nullptr);
}

BaseBitmap* IconData::GetClonePart() const
{
    return bmp ? bmp->GetClonePart(x, y, w, h) : nullptr;
}
