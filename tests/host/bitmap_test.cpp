#include "core/image_file.h"
#include "core/string_access.h"
#include "lib_iconcollection.h"
#include "support/test_host.h"

#include <gtest/gtest.h>
#include <png.h>

#include <array>
#include <tiffio.h>

namespace host::test {
namespace {

using Rgba = std::array<std::uint8_t, 4>;

// Every pixel is another one, nearly transparent ones among them.
Rgba pixelAt(int x, int y)
{
    const auto part = [](int value) { return static_cast<std::uint8_t>(value & 255); };
    return {part(40 * x + 7), part(30 * y + 11), part(x * y * 13), part(x == 0 ? y : 255 - 9 * x - y)};
}

std::vector<std::uint8_t> bytesOf(int width, int height, int parts)
{
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < width * height; ++i) {
        const Rgba pixel = pixelAt(i % width, i / width);
        bytes.insert(bytes.end(), pixel.begin(), pixel.begin() + parts);
    }
    return bytes;
}

void writePng(const std::string& path, int width, int height, bool hasAlpha)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = hasAlpha ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    const std::vector<std::uint8_t> bytes = bytesOf(width, height, hasAlpha ? 4 : 3);
    ASSERT_TRUE(png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr));
}

void writeTiff(const std::string& path, const char* mode, int width, int height, bool hasAlpha, int compression)
{
    const int parts = hasAlpha ? 4 : 3;
    const std::unique_ptr<TIFF, void (*)(TIFF*)> file(TIFFOpen(path.c_str(), mode), TIFFClose);
    TIFFSetField(file.get(), TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(file.get(), TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(file.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file.get(), TIFFTAG_SAMPLESPERPIXEL, parts);
    TIFFSetField(file.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(file.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(file.get(), TIFFTAG_COMPRESSION, compression);
    const uint16_t separate = EXTRASAMPLE_UNASSALPHA;
    if (hasAlpha) TIFFSetField(file.get(), TIFFTAG_EXTRASAMPLES, 1, &separate);
    std::vector<std::uint8_t> bytes = bytesOf(width, height, parts);
    for (int row = 0; row < height; ++row) {
        ASSERT_EQ(TIFFWriteScanline(file.get(), &bytes[static_cast<size_t>(row * width * parts)],
                                    static_cast<uint32_t>(row), 0),
                  1);
    }
}

void expectPixels(BaseBitmap& bitmap, int left, int top, bool hasAlpha)
{
    EXPECT_EQ(bitmap.GetInternalChannel() != nullptr, hasAlpha);
    for (int y = 0; y < bitmap.GetBh(); ++y) {
        for (int x = 0; x < bitmap.GetBw(); ++x) {
            const Rgba expected = pixelAt(left + x, top + y);
            UInt16 r = 0, g = 0, b = 0, a = 255;
            bitmap.GetPixel(x, y, &r, &g, &b);
            bitmap.GetAlphaPixel(bitmap.GetInternalChannel(), x, y, &a);
            ASSERT_EQ((std::array{r, g, b, a}),
                      (std::array<UInt16, 4>{expected[0], expected[1], expected[2],
                                             static_cast<UInt16>(hasAlpha ? expected[3] : 255)}))
                << x << ", " << y;
        }
    }
}

struct Bitmaps : testing::Test {
    Filename name(const char* file) const { return Filename(TextOf(folder.path(file))); }

    vdt::test::TemporaryFolder folder;
};

TEST_F(Bitmaps, ComeFromPngAndTiffUnchanged)
{
    const char* names[] = {"a.png", "b.png", "c.tif", "d.tif", "e.tif", "f.tif"};
    writePng(folder.path(names[0]), 5, 7, false);
    writePng(folder.path(names[1]), 5, 7, true);
    writeTiff(folder.path(names[2]), "wl", 5, 7, false, COMPRESSION_LZW);
    writeTiff(folder.path(names[3]), "wl", 5, 7, true, COMPRESSION_ADOBE_DEFLATE);
    writeTiff(folder.path(names[4]), "wb", 5, 7, true, COMPRESSION_NONE);
    writeTiff(folder.path(names[5]), "wb", 5, 7, false, COMPRESSION_PACKBITS);
    const bool alpha[] = {false, true, false, true, true, false};
    for (size_t i = 0; i < std::size(names); ++i) {
        SCOPED_TRACE(names[i]);
        const AutoAlloc<BaseBitmap> bitmap;
        ASSERT_EQ(bitmap->Init(name(names[i])), IMAGERESULT_OK);
        EXPECT_EQ(bitmap->GetBw(), 5);
        EXPECT_EQ(bitmap->GetBh(), 7);
        expectPixels(*bitmap, 0, 0, alpha[i]);
    }
}

TEST_F(Bitmaps, TellWhyTheyCannotBeLoaded)
{
    folder.write("text.png", "no picture at all");
    folder.write("empty.tif", "");
    folder.write("start.png", "\x89PNG\r\n\x1a\n");
    folder.write("start.tif", std::string("II*\0\x08\0\0\0", 8));
    struct Row {
        const char* file;
        IMAGERESULT result;
    };
    const Row rows[] = {{"none.png", IMAGERESULT_NOTEXISTING},    {"text.png", IMAGERESULT_WRONGTYPE},
                        {"empty.tif", IMAGERESULT_FILEERROR},     {"start.png", IMAGERESULT_FILESTRUCTURE},
                        {"start.tif", IMAGERESULT_FILESTRUCTURE}, {".", IMAGERESULT_NOTEXISTING}};
    const AutoAlloc<BaseBitmap> bitmap;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.file);
        ASSERT_EQ(bitmap->Init(4, 4), IMAGERESULT_OK);
        EXPECT_EQ(bitmap->Init(name(row.file)), row.result);
        EXPECT_EQ(bitmap->GetBw(), 0); // the old content is lost
    }
    EXPECT_EQ(bitmap->Init(0, 5), IMAGERESULT_PARAM_ERROR);
    EXPECT_EQ(bitmap->Init(1 << 20, 1 << 20), IMAGERESULT_OUTOFMEMORY);
}

TEST_F(Bitmaps, SurviveEveryCutAndFlippedByte)
{
    writePng(folder.path("a.png"), 9, 9, true);
    writeTiff(folder.path("a.tif"), "wl", 9, 9, true, COMPRESSION_ADOBE_DEFLATE);
    writeTiff(folder.path("b.tif"), "wb", 9, 9, true, COMPRESSION_LZW);
    for (const char* file : {"a.png", "a.tif", "b.tif"}) {
        const std::string whole = folder.read(file);
        for (size_t i = 0; i < whole.size(); ++i) {
            std::string broken = whole;
            broken[i] = static_cast<char>(broken[i] ^ 0x5A);
            Picture picture;
            for (const std::string& bytes : {broken, whole.substr(0, i)}) {
                const bool isRead = ReadPicture(bytes, picture) == IMAGERESULT_OK;
                const auto pixels = static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height);
                EXPECT_EQ(picture.rgba.size(), 4 * pixels) << file << " at " << i;
                EXPECT_EQ(isRead, pixels > 0) << file << " at " << i;
            }
        }
    }
}

TEST_F(Bitmaps, GiveTheirPartsAway)
{
    writePng(folder.path("a.png"), 8, 6, true);
    const AutoAlloc<BaseBitmap> bitmap;
    ASSERT_EQ(bitmap->Init(name("a.png")), IMAGERESULT_OK);
    BaseBitmap* part = bitmap->GetClonePart(3, 2, 5, 4);
    ASSERT_TRUE(part);
    expectPixels(*part, 3, 2, true);
    BaseBitmap* clone = part->GetClone();
    part->Clear(300, -1, 5);
    expectPixels(*clone, 3, 2, true);
    UInt16 r = 0, g = 9, b = 0;
    part->GetPixel(4, 3, &r, &g, &b);
    EXPECT_EQ((std::array{r, g, b}), (std::array<UInt16, 3>{255, 0, 5}));
    part->GetPixel(5, 0, &r, &g, &b);
    EXPECT_EQ(r, 0);
    EXPECT_FALSE(part->SetPixel(-1, 0, 1, 1, 1));
    for (const std::array<Int32, 4>& rect : {std::array{4, 0, 5, 1}, {0, -1, 1, 1}, {0, 0, 0, 1}, {0, 6, 1, 1}}) {
        EXPECT_FALSE(bitmap->GetClonePart(rect[0], rect[1], rect[2], rect[3]));
    }
    BaseBitmap::Free(clone);
    BaseBitmap::Free(part);
}

TEST_F(Bitmaps, AreKnownAsIconsUntilTheHostEnds)
{
    writePng(folder.path("a.png"), 8, 6, true);
    const AutoAlloc<BaseBitmap> sheet;
    ASSERT_EQ(sheet->Init(name("a.png")), IMAGERESULT_OK);
    IconData icon;
    {
        const TestHost host;
        EXPECT_FALSE(GetIcon(1, &icon));
        EXPECT_TRUE(RegisterIcon(1, sheet, 2, 1, 4, 3));
        EXPECT_TRUE(RegisterIcon(1, sheet)); // the first one stays
        ASSERT_TRUE(GetIcon(1, &icon));
        EXPECT_EQ(icon.bmp, static_cast<BaseBitmap*>(sheet));
        BaseBitmap* part = icon.GetClonePart();
        expectPixels(*part, 2, 1, true);
        BaseBitmap::Free(part);

        EXPECT_TRUE(RegisterIcon(1, sheet, 1, 1, -1, 2, ICONFLAG_COPY | ICONFLAG_OVERWRITE) == false);
        EXPECT_TRUE(RegisterIcon(1, sheet, 0, 2, -1, 3, ICONFLAG_COPY | ICONFLAG_OVERWRITE));
        ASSERT_TRUE(GetIcon(1, &icon));
        EXPECT_NE(icon.bmp, static_cast<BaseBitmap*>(sheet));
        EXPECT_EQ(icon.w, 8);
        expectPixels(*icon.bmp, 0, 2, true);
        EXPECT_TRUE(RegisterIcon(2, sheet, 0, 0, -1, -1, ICONFLAG_COPY));
    }
    const TestHost next;
    EXPECT_FALSE(GetIcon(2, &icon));
}

} // namespace
} // namespace host::test
