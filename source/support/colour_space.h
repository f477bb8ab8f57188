// Colours between the plants' sRGB and what a document holds. The one place that names the host's transformations.
#pragma once

#include "c4d.h"
#include "vdt/math/vector.h"

/// What the colours of a document's parameters are.
enum class ColourSpace : Int32 { Linear = 0, Srgb = 2 };

/// Linear in a document whose colours are managed and declared linear, and where there is nothing to ask.
ColourSpace DocumentColourSpace(BaseDocument* document);

Vector SrgbToLinear(const Vector& colour);
Vector LinearToSrgb(const Vector& colour);

/// A plant's sRGB colour as the number that a parameter of such a document takes, and back.
Vector SrgbToParameter(const Vector& colour, ColourSpace space);
Vector ParameterToSrgb(const Vector& colour, ColourSpace space);

inline Vector ToHostColour(const vdt::Color3f& colour)
{
    return Vector(colour.r, colour.g, colour.b);
}

inline vdt::Color3f ToModelColour(const Vector& colour)
{
    return {static_cast<float>(colour.x), static_cast<float>(colour.y), static_cast<float>(colour.z)};
}
