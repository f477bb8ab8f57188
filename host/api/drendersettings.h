// Parameters of render settings.
#pragma once

enum {
    RDATA_RENDERENGINE = 5300, // Int32: id of the engine's video post
    RDATA_RENDERENGINE_STANDARD = 0,
    RDATA_RENDERENGINE_PHYSICAL = 1023342
};
