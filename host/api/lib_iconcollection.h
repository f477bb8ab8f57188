// Icons by the id of what they stand for.
#pragma once

#include "c4d_basebitmap.h"

enum ICONFLAG { ICONFLAG_0 = 0, ICONFLAG_COPY = (1 << 0), ICONFLAG_OVERWRITE = (1 << 1), ICONFLAG_2X = (1 << 2) };
ENUM_END_FLAGS(ICONFLAG)

/// Without ICONFLAG_COPY the bitmap has to stay. A width or height of -1 takes all of it.
Bool RegisterIcon(Int32 id, BaseBitmap* bmp, Int32 x = 0, Int32 y = 0, Int32 w = -1, Int32 h = -1,
                  ICONFLAG flags = ICONFLAG_0);
Bool GetIcon(Int32 id, IconData* data);
