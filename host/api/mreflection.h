// Parameters of the standard material's reflectance layers: a layer's values stand in the material under the layer's
// data id plus the number here. The numbers are this host's own, as those of mmaterial.h are.
#pragma once

enum {
    REFLECTION_LAYER_MAIN_DISTRIBUTION = 0, // Int32
    REFLECTION_DISTRIBUTION_REFLECTION = 0,
    REFLECTION_DISTRIBUTION_SPECULAR_BLINN = 1,
    REFLECTION_LAYER_MAIN_VALUE_ROUGHNESS = 1, // Float
    REFLECTION_LAYER_COLOR_COLOR = 2,          // Vector
    REFLECTION_LAYER_COLOR_TEXTURE = 3         // link
};

#define REFLECTION_LAYERS 3000              // container: the data ids of the layers, lowest layer first
#define REFLECTION_LAYER_LAYER_DATA 0x10000 // data id of the first layer ever made
#define REFLECTION_LAYER_LAYER_SIZE 0x100   // from one data id to the next
