// Floats in JSON: 0.2F as 0.2, not as the double 0.20000000298023224 that it is.
#pragma once

#include <charconv>

namespace verdanth {

/// The double that the float's shortest text gives. What is not finite stays as it is.
inline double AsWritten(float value)
{
    char text[64];
    const char* end = std::to_chars(text, text + sizeof text, value).ptr;
    double result = value;
    std::from_chars(text, end, result);
    return result;
}

} // namespace verdanth
