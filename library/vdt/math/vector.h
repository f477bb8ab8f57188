// Vectors of three doubles, and the one rule for normalising them.
#pragma once

#include <algorithm>
#include <cmath>

namespace vdt {

constexpr double kSmallestDirection = 1e-10;       // a vector with no component above this has no direction
constexpr double kEpsilon = 2.220446049250313e-16; // one rounding step of a double at 1
constexpr double kPi = 3.141592653589793;

/// A position, direction or extent. Left uninitialised by default, so that large arrays need not be cleared.
struct Vector3 {
    double x, y, z;

    friend bool operator==(const Vector3&, const Vector3&) = default;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector3 operator-(const Vector3& a)
{
    return {-a.x, -a.y, -a.z};
}
inline Vector3 operator*(const Vector3& a, double s)
{
    return {a.x * s, a.y * s, a.z * s};
}
inline Vector3 operator*(double s, const Vector3& a)
{
    return {s * a.x, s * a.y, s * a.z};
}
inline Vector3 operator/(const Vector3& a, double s)
{
    return {a.x / s, a.y / s, a.z / s};
}
inline Vector3& operator+=(Vector3& a, const Vector3& b)
{
    return a = a + b;
}

inline double Dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 Cross(const Vector3& a, const Vector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double Length(const Vector3& a)
{
    return std::sqrt(Dot(a, a));
}

/// True if some component exceeds `threshold` in magnitude; false for not-a-number throughout.
inline bool ExceedsInMagnitude(const Vector3& a, double threshold)
{
    return std::fabs(a.x) > threshold || std::fabs(a.y) > threshold || std::fabs(a.z) > threshold;
}

inline bool IsFinite(const Vector3& a)
{
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/// Brings `a` to unit length. False, with `a` left as it is, if it has no direction.
inline bool Normalize(Vector3& a)
{
    if (!ExceedsInMagnitude(a, kSmallestDirection)) return false;
    a = a / Length(a);
    return true;
}

/// `a` at unit length, or as it is if it has no direction.
inline Vector3 Normalized(Vector3 a)
{
    Normalize(a);
    return a;
}

/// A pair of texture coordinates, u to the right and v upwards.
struct Vector2f {
    float u, v;

    friend bool operator==(const Vector2f&, const Vector2f&) = default;
};

/// A colour without alpha, sRGB, 0 to 1.
struct Color3f {
    float r = 0, g = 0, b = 0;

    friend bool operator==(const Color3f&, const Color3f&) = default;
};

/// A colour with alpha, sRGB, 0 to 1.
struct Color4f {
    float r = 0, g = 0, b = 0, a = 1;

    friend bool operator==(const Color4f&, const Color4f&) = default;
};

} // namespace vdt
