// sRGB's transfer function, from and to linear light, for one channel from 0 to 1.
#pragma once

#include <cmath>

namespace verdanth {

inline float LinearFromSrgb(float value)
{
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

inline float SrgbFromLinear(float value)
{
    return value <= 0.0031308F ? value * 12.92F : 1.055F * std::pow(value, 1 / 2.4F) - 0.055F;
}

} // namespace verdanth
