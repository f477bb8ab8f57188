// Materials that are mixed of two where a plant part has two looks. There are no setters: the whole look is worked out
// as a record, which the renderer's side writes.
#pragma once

#include "vdt/materials/material_converter.h"

#include <optional>

namespace vdt {

/// One material's parameters. What the quality or the plant leaves out is empty.
struct OctaneLook {
    Color3f diffuseColor;
    std::string diffuseTexture;
    Color3f specularColor;
    std::string specularTexture;
    float specularRoughness = 0;
    std::string opacityTexture;
    std::string bumpTexture; // only where light shines through
    float indexOfRefraction = kIndexOfRefraction;
    std::string translucencyTexture;
};

class OctaneMaterialConverter {
public:
    /// Always succeeds; the results are below.
    bool convert(const MaterialData& material, int32_t quality);

    std::string name;
    OctaneLook front;
    std::optional<OctaneLook> back; // if there are two to mix
};

} // namespace vdt
