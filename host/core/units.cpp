// Lengths between documents of different units, and colours between the two spaces that a document can be in.
#include "c4d.h"
#include "customgui_unitscale.h"

#include <cmath>

namespace {

double metresOf(DOCUMENT_UNIT unit)
{
    switch (unit) {
    case DOCUMENT_UNIT_KM: return 1000.0;
    case DOCUMENT_UNIT_M: return 1.0;
    case DOCUMENT_UNIT_MM: return 1e-3;
    case DOCUMENT_UNIT_MICRO: return 1e-6;
    case DOCUMENT_UNIT_NM: return 1e-9;
    case DOCUMENT_UNIT_MILE: return 1609.344;
    case DOCUMENT_UNIT_YARD: return 0.9144;
    case DOCUMENT_UNIT_FOOT: return 0.3048;
    case DOCUMENT_UNIT_INCH: return 0.0254;
    default: return 0.01; // centimetres, also where no unit is told
    }
}

// Metres that one unit of `data` stands for. A scale that is no positive number would make lengths vanish or divide by
// nothing, so it counts as 1.
double metresOf(const UnitScaleData* data)
{
    Float scale = 1.0;
    DOCUMENT_UNIT unit = DOCUMENT_UNIT_CM;
    if (data) data->GetUnitScale(scale, unit);
    if (!std::isfinite(scale) || scale <= 0.0) scale = 1.0;
    return scale * metresOf(unit);
}

double toLinear(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double toSrgb(double value)
{
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
}

} // namespace

Float CalculateTranslationScale(const UnitScaleData* src, const UnitScaleData* dst)
{
    const double factor = metresOf(src) / metresOf(dst);
    return std::isfinite(factor) && factor > 0.0 ? factor : 1.0; // scales at the ends of the number range
}

Vector TransformColor(const Vector& input, COLORSPACETRANSFORMATION colortransformation)
{
    switch (colortransformation) {
    // A view shows sRGB.
    case COLORSPACETRANSFORMATION_LINEAR_TO_SRGB:
    case COLORSPACETRANSFORMATION_LINEAR_TO_VIEW: return Vector(toSrgb(input.x), toSrgb(input.y), toSrgb(input.z));
    case COLORSPACETRANSFORMATION_SRGB_TO_LINEAR:
        return Vector(toLinear(input.x), toLinear(input.y), toLinear(input.z));
    default: return input;
    }
}
