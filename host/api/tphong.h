// Parameters of the phong tag.
#pragma once

enum {
    PHONGTAG_PHONG_ANGLELIMIT = 1001, // Bool
    PHONGTAG_PHONG_ANGLE = 1002,      // Float, radians
    PHONGTAG_PHONG_USEEDGES = 1003    // Bool
};
