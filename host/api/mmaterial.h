// Parameters of the standard material. The numbers are this host's own, but for that of the colour: whoever builds
// against another host takes that one's header.
#pragma once

enum {
    MATERIAL_USE_COLOR = 2000, // Bool, as all of these
    MATERIAL_USE_ALPHA = 2001,
    MATERIAL_USE_BUMP = 2002,
    MATERIAL_USE_NORMAL = 2003,
    MATERIAL_USE_DISPLACEMENT = 2004,
    MATERIAL_USE_REFLECTION = 2005,
    MATERIAL_USE_SPECULAR = 2006,
    MATERIAL_COLOR_COLOR = 2100,   // Vector
    MATERIAL_COLOR_SHADER = 2101,  // link, as all shaders
    MATERIAL_ALPHA_SHADER = 2200,  // white is opaque
    MATERIAL_BUMP_SHADER = 2300,   // heights
    MATERIAL_BUMP_STRENGTH = 2301, // Float
    MATERIAL_NORMAL_SHADER = 2400, // in tangent space
    MATERIAL_DISPLACEMENT_SHADER = 2500,
    MATERIAL_DISPLACEMENT_HEIGHT = 2501, // Float, host units
    MATERIAL_DISPLACEMENT_TYPE = 2502,   // Int32
    MATERIAL_DISPLACEMENT_TYPE_INTENSITY = 0,
    MATERIAL_DISPLACEMENT_TYPE_INTENSITY_CENTERED = 1, // a middle grey moves nothing
    MATERIAL_SPECULAR_COLOR = 2600,                    // Vector
    MATERIAL_SPECULAR_WIDTH = 2601,                    // Float
    MATERIAL_SPECULAR_HEIGHT = 2602                    // Float
};
