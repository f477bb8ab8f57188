// Parameters of the bitmap shader.
#pragma once

enum {
    BITMAPSHADER_FILENAME = 1000, // Filename
    BITMAPSHADER_LAYERSET = 1005  // LayerSet: which part of the picture
};
