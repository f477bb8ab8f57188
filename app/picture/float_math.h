// Arithmetic on three floats: positions and directions, and colours as linear light.
#pragma once

#include "export/scene.h"
#include "export/srgb.h"

#include <algorithm>
#include <cmath>

namespace verdanth {

/// Linear light: red, green, blue.
using Light = Float3;

constexpr float kPif = 3.14159265F;

inline Float3 operator+(const Float3& a, const Float3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Float3 operator-(const Float3& a, const Float3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Float3 operator-(const Float3& a)
{
    return {-a.x, -a.y, -a.z};
}
inline Float3 operator*(const Float3& a, float s)
{
    return {a.x * s, a.y * s, a.z * s};
}
/// Channel by channel, for light that a colour filters.
inline Float3 operator*(const Float3& a, const Float3& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline Float3& operator+=(Float3& a, const Float3& b)
{
    return a = a + b;
}

inline float Dot(const Float3& a, const Float3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Float3 Cross(const Float3& a, const Float3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// At unit length; straight up if it has no direction.
inline Float3 Normalized(const Float3& a)
{
    const float length = std::sqrt(Dot(a, a));
    return length > 0 && std::isfinite(length) ? a * (1 / length) : Float3{0, 1, 0};
}

inline Float3 Mix(const Float3& a, const Float3& b, float share)
{
    return a + (b - a) * share;
}

/// 0 up to `from`, 1 from `to` on, smooth between.
inline float SmoothStep(float from, float to, float value)
{
    const float t = std::clamp((value - from) / (to - from), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

inline float Luminance(const Light& light)
{
    return 0.2126F * light.x + 0.7152F * light.y + 0.0722F * light.z;
}

inline Light LightOfSrgb(const vdt::Color3f& color)
{
    return {LinearFromSrgb(color.r), LinearFromSrgb(color.g), LinearFromSrgb(color.b)};
}

/// The direction with the coordinates `local` in a frame whose third axis is `normal`, of unit length: Duff and
/// others, "Building an Orthonormal Basis, Revisited", 2017.
inline Float3 AroundNormal(const Float3& local, const Float3& normal)
{
    const float sign = std::copysign(1.0F, normal.z);
    const float a = -1 / (sign + normal.z);
    const float b = normal.x * normal.y * a;
    const Float3 first{1 + sign * normal.x * normal.x * a, sign * b, -sign * normal.x};
    const Float3 second{b, sign + normal.y * normal.y * a, -normal.y};
    return first * local.x + second * local.y + normal * local.z;
}

} // namespace verdanth
