// Vectors and matrices. The host's world is left-handed, Y up; angles are radians, rotations in the order HPB.
#pragma once

#include "ge_sys_math.h"

#include <cmath>

template <class T> struct VectorOf {
    T x, y, z;

    VectorOf() : x(0), y(0), z(0) {}
    explicit VectorOf(T all) : x(all), y(all), z(all) {}
    VectorOf(T ax, T ay, T az) : x(ax), y(ay), z(az) {}
    template <class U, class = std::enable_if_t<!std::is_same_v<T, U>>>
    explicit VectorOf(const VectorOf<U>& other)
        : x(static_cast<T>(other.x)),
          y(static_cast<T>(other.y)),
          z(static_cast<T>(other.z))
    {
    }

    T& operator[](Int32 index) { return index == 0 ? x : index == 1 ? y : z; }
    const T& operator[](Int32 index) const { return index == 0 ? x : index == 1 ? y : z; }

    Bool IsZero() const { return x == 0 && y == 0 && z == 0; }
    Bool IsNotZero() const { return !IsZero(); }
    T GetSquaredLength() const { return x * x + y * y + z * z; }
    T GetLength() const { return std::sqrt(GetSquaredLength()); }
    /// Zero for the zero vector.
    VectorOf GetNormalized() const
    {
        const T length = GetLength();
        return length > 0 ? VectorOf(x / length, y / length, z / length) : VectorOf();
    }
    void Normalize() { *this = GetNormalized(); }

    VectorOf& operator+=(const VectorOf& b)
    {
        x += b.x;
        y += b.y;
        z += b.z;
        return *this;
    }
    VectorOf& operator-=(const VectorOf& b)
    {
        x -= b.x;
        y -= b.y;
        z -= b.z;
        return *this;
    }

    friend VectorOf operator+(const VectorOf& a, const VectorOf& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend VectorOf operator-(const VectorOf& a, const VectorOf& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend VectorOf operator-(const VectorOf& a) { return {-a.x, -a.y, -a.z}; }
    /// By components.
    friend VectorOf operator*(const VectorOf& a, const VectorOf& b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
    friend VectorOf operator*(const VectorOf& a, T s) { return {a.x * s, a.y * s, a.z * s}; }
    friend VectorOf operator*(T s, const VectorOf& a) { return {s * a.x, s * a.y, s * a.z}; }
    friend VectorOf operator/(const VectorOf& a, T s) { return {a.x / s, a.y / s, a.z / s}; }
    friend Bool operator==(const VectorOf& a, const VectorOf& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
    friend Bool operator!=(const VectorOf& a, const VectorOf& b) { return !(a == b); }
    friend VectorOf operator!(const VectorOf& a) { return a.GetNormalized(); }
};

typedef VectorOf<Float64> Vector64;
typedef VectorOf<Float32> Vector32;
typedef Vector64 Vector;

inline Float Dot(const Vector& a, const Vector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector Cross(const Vector& a, const Vector& b)
{
    return Vector(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
}
inline Float Len(const Vector& a)
{
    return a.GetLength();
}

/// Three axes and an offset: a point p stands at off + v1 p.x + v2 p.y + v3 p.z.
struct Matrix64 {
    Vector64 off, v1, v2, v3;

    Matrix64() : v1(1, 0, 0), v2(0, 1, 0), v3(0, 0, 1) {}
    Matrix64(const Vector64& offset, const Vector64& a, const Vector64& b, const Vector64& c)
        : off(offset),
          v1(a),
          v2(b),
          v3(c)
    {
    }

    /// A direction: without the offset.
    Vector64 TransformVector(const Vector64& v) const { return v1 * v.x + v2 * v.y + v3 * v.z; }
    /// The lengths of the axes.
    Vector64 GetScale() const { return Vector64(v1.GetLength(), v2.GetLength(), v3.GetLength()); }
    void Scale(const Vector64& s)
    {
        v1 = v1 * s.x;
        v2 = v2 * s.y;
        v3 = v3 * s.z;
    }
    void Normalize()
    {
        v1.Normalize();
        v2.Normalize();
        v3.Normalize();
    }

    friend Vector64 operator*(const Matrix64& m, const Vector64& p) { return m.off + m.TransformVector(p); }
    /// First `b`, then `a`.
    friend Matrix64 operator*(const Matrix64& a, const Matrix64& b)
    {
        return Matrix64(a * b.off, a.TransformVector(b.v1), a.TransformVector(b.v2), a.TransformVector(b.v3));
    }
    friend Bool operator==(const Matrix64& a, const Matrix64& b)
    {
        return a.off == b.off && a.v1 == b.v1 && a.v2 == b.v2 && a.v3 == b.v3;
    }
    friend Bool operator!=(const Matrix64& a, const Matrix64& b) { return !(a == b); }
};

typedef Matrix64 Matrix;

/// The inverse; the unit matrix where there is none.
Matrix operator~(const Matrix& m);

Matrix MatrixMove(const Vector& offset);
Matrix MatrixScale(const Vector& scale);
Matrix MatrixRotX(Float angle);
Matrix MatrixRotY(Float angle);
Matrix MatrixRotZ(Float angle);
Matrix HPBToMatrix(const Vector& hpb);
Vector MatrixToHPB(const Matrix& m);
