// What the converters of all renderers share: the interface's root, and the rules about what a quality lets through.
//
// A converter decides which values of a neutral material go where; a class of the host's side implements its setters by
// writing parameters. Each setter is called once for each side, in the order in which it is declared, also with empty
// or default values, unless the converter says otherwise. An empty texture path means no texture. Colours are sRGB.
#pragma once

#include "vdt/model/material_data.h"

#include <cstdint>
#include <string>

namespace vdt {

constexpr int32_t kQualityLow = 0;
constexpr int32_t kQualityMedium = 1;
constexpr int32_t kQualityHigh = 2;

/// Of leaves, and of all else that light passes through or glances off.
constexpr float kIndexOfRefraction = 1.333f;

enum class SurfaceSide : int32_t { Front = 1, Back = 2 };

class MaterialConverter {
public:
    virtual ~MaterialConverter() = default;
    virtual void setMaterialName(const std::string& name) = 0;
};

/// A picture that shows from medium quality on: diffuse, cut-out, bump, normal. Empty below.
inline std::string MediumTexture(const std::string& path, int32_t quality)
{
    return quality >= kQualityMedium ? path : std::string();
}

/// A picture that shows at high quality alone: specular, subsurface, displacement. Empty below.
inline std::string HighTexture(const std::string& path, int32_t quality)
{
    return quality >= kQualityHigh ? path : std::string();
}

/// The strength of a relief, none below medium quality.
inline float BumpStrength(const MaterialSide& side, int32_t quality)
{
    return quality >= kQualityMedium ? side.bumpStrength : 0;
}

/// True if no component exceeds 1e-5.
bool IsBlack(const Color3f& color);

/// The side that light comes out of: the separate back, else the front.
inline const MaterialSide& FarSide(const MaterialData& material)
{
    return material.hasSeparateBack() ? *material.back() : material.front;
}

/// True if a renderer that takes two materials for two sides gets both.
inline bool HasTwoLooks(const MaterialData& material, int32_t quality)
{
    return quality >= kQualityHigh && material.hasSeparateBack();
}

/// How much a surface of this roughness reflects, from 1 for a mirror to 0.
float ReflectivityOf(float specularRoughness);

/// How sharply it reflects, from 1 for a mirror to 0.
float GlossinessOf(float specularRoughness);

} // namespace vdt
