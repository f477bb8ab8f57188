// What a renderer takes of a neutral material, as a table: which of its parameters gets which value, and how.
//
// A slot is one value of one setter. A slot that the renderer lacks has no row. One function writes a slot by walking
// its rows; it is also the one place where colours become what a document's parameters hold.
#pragma once

#include "materials/texture_shader.h"
#include "support/colour_space.h"

#include <span>
#include <string>
#include <variant>

enum class Slot : Int32 {
    DiffuseColor,
    DiffuseTexture,
    DiffuseRoughness,
    SpecularEnabled,
    SpecularColor,
    SpecularTexture,
    SpecularRoughness,
    Reflectivity,
    Glossiness,
    SecondGlossiness,
    IndexOfRefraction,
    Fresnel,
    FastMode,
    ThinWalled,
    BacksideCulling,
    AlphaTexture,
    BumpTexture,
    BumpStrength,
    NormalTexture,
    DisplacementTexture,
    DisplacementHeight,
    DisplacementType,
    TranslucencyEnabled,
    TranslucencyWeight,
    TranslucencyColor,
    TranslucencyTexture,
    SubsurfaceEnabled,
    SubsurfaceWeight,
    SubsurfaceColor,
    SubsurfaceTexture
};

enum class Write : Int32 {
    Color,
    Number,
    Choice, // one of a list, by number
    Switch,
    Texture,      // a shader that the material owns, linked in the parameter
    AlphaTexture, // the same, of the picture's transparency alone
    On,           // true, whatever the value: a switch that goes with it
    One,          // 1.0 likewise: a weight
    First         // 1 likewise: the choice behind the default
};

struct ParameterRow {
    Slot slot;
    Int32 parameter;
    Write write;
    Int32 level = 0; // of the parameter's parts the one that is meant; 0: the parameter itself
};

/// A renderer.
struct ParameterMap {
    std::span<const ParameterRow> rows;
    HostPtr<BaseShader> (*loadTexture)(const std::string& path, Bool scaled) = loadTextureShader;
};

/// Where a map's parameters are.
struct ParameterTarget {
    BaseMaterial* material; // null: nothing is written
    ColourSpace colourSpace;
    Int32 firstParameter = 0; // what the map counts from
};

/// A text is the path of a picture.
using SlotValue = std::variant<bool, Int32, double, vdt::Color3f, std::string>;

/// Writes all rows of the slot. For an empty path nothing at all is written, no switch either. Gives the shader of a
/// picture, which the material owns; else null.
BaseShader* WriteSlot(const ParameterTarget& target, const ParameterMap& map, Slot slot, const SlotValue& value);

/// What a document's parameter holds for a plant's colour.
Vector ColorParameter(const vdt::Color3f& color, ColourSpace colourSpace);
