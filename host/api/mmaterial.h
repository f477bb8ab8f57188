// Parameters of the standard material.
#pragma once

enum {
    MATERIAL_COLOR_COLOR = 2100 // Vector
};
