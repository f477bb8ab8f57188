// Pictures.
#pragma once

#include "c4d_file.h"

#include <vector>

class BaseBitmap;
class BitmapLoaderPlugin;

enum IMAGERESULT {
    IMAGERESULT_OK = 1,
    IMAGERESULT_NOTEXISTING = -1,
    IMAGERESULT_WRONGTYPE = -2,
    IMAGERESULT_OUTOFMEMORY = -3,
    IMAGERESULT_FILEERROR = -4,
    IMAGERESULT_FILESTRUCTURE = -5,
    IMAGERESULT_MISC_ERROR = -6,
    IMAGERESULT_PARAM_ERROR = -7
} ENUM_END_LIST(IMAGERESULT);

enum INITBITMAPFLAGS { INITBITMAPFLAGS_0 = 0, INITBITMAPFLAGS_GRAYSCALE = (1 << 0) };
ENUM_END_FLAGS(INITBITMAPFLAGS)

class BaseBitmap {
public:
    static BaseBitmap* Alloc();
    static void Free(BaseBitmap*& bitmap);

    /// Loads a file, recognised by its content: PNG or TIFF. IMAGERESULT_OK is not 0.
    IMAGERESULT Init(const Filename& name, Int32 frame = -1, Bool* ismovie = nullptr);
    IMAGERESULT Init(Int32 x, Int32 y, Int32 depth = 24, INITBITMAPFLAGS flags = INITBITMAPFLAGS_0);
    void FlushAll();

    BaseBitmap* GetClone() const;
    BaseBitmap* GetClonePart(Int32 x, Int32 y, Int32 w, Int32 h) const; // the caller's
    Bool CopyTo(BaseBitmap* dst) const;

    Int32 GetBw() const { return width; }
    Int32 GetBh() const { return height; }
    Int32 GetBt() const { return depth; } // bits a pixel
    void Clear(Int32 r, Int32 g, Int32 b);
    void GetPixel(Int32 x, Int32 y, UInt16* r, UInt16* g, UInt16* b) const; // 0 to 255
    Bool SetPixel(Int32 x, Int32 y, Int32 r, Int32 g, Int32 b);
    BaseBitmap* GetInternalChannel(); // the alpha channel; null if there is none
    void GetAlphaPixel(BaseBitmap* channel, Int32 x, Int32 y, UInt16* val) const;

private:
    BaseBitmap() = default;
    ~BaseBitmap();

    Int32 width = 0, height = 0, depth = 0;
    std::vector<UChar> pixels; // red, green, blue from the upper left
    BaseBitmap* alpha = nullptr;
};

enum ICONDATAFLAGS { ICONDATAFLAGS_0 = 0, ICONDATAFLAGS_APPLYCOLORPROFILE = (1 << 0) };
ENUM_END_FLAGS(ICONDATAFLAGS)

/// A part of a bitmap, which stays its owner's.
struct IconData {
    BaseBitmap* bmp = nullptr;
    Int32 x = 0, y = 0, w = 0, h = 0;
    ICONDATAFLAGS flags = ICONDATAFLAGS_0;

    IconData() = default;
    IconData(BaseBitmap* bitmap, Int32 left, Int32 top, Int32 partWidth, Int32 partHeight)
        : bmp(bitmap),
          x(left),
          y(top),
          w(partWidth),
          h(partHeight)
    {
    }
    BaseBitmap* GetClonePart() const; // the caller's
};
