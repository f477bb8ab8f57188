#include "vdt/materials/material_converter.h"

#include <algorithm>
#include <cmath>

namespace vdt {

bool IsBlack(const Color3f& color)
{
    constexpr float kBlack = 1e-5f;
    return color.r <= kBlack && color.g <= kBlack && color.b <= kBlack;
}

float ReflectivityOf(float specularRoughness)
{
    const float base = 1 + specularRoughness;
    const float square = base * base;
    const float power = square * square * base;
    return std::max(1 / power - specularRoughness / 32, 0.0f);
}

float GlossinessOf(float specularRoughness)
{
    return std::max(std::cos(specularRoughness * 1.5707964f), 0.0f);
}

} // namespace vdt
