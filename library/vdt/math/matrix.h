// 4 x 4 matrices of doubles for row vectors: p' = p M. Rows 0 to 2 are the frame's axes, row 3 its origin.
#pragma once

#include "vdt/math/vector.h"

namespace vdt {

struct Matrix {
    double m[4][4];

    static constexpr Matrix Identity() { return {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}; }

    Vector3 row(int i) const { return {m[i][0], m[i][1], m[i][2]}; }

    void setRow(int i, const Vector3& v)
    {
        m[i][0] = v.x;
        m[i][1] = v.y;
        m[i][2] = v.z;
    }

    friend bool operator==(const Matrix&, const Matrix&) = default;
};

/// First `a`, then `b`, as row vectors see it.
Matrix operator*(const Matrix& a, const Matrix& b);

/// The inverse; the identity where the determinant is 0.
Matrix Inverse(const Matrix& a);

Matrix Transpose(const Matrix& a);

/// What normals go through when points go through `a`: the transpose of its inverse.
inline Matrix NormalMatrix(const Matrix& a)
{
    return Transpose(Inverse(a));
}

/// p with w = 1 through `a`.
inline Vector3 TransformPoint(const Vector3& p, const Matrix& a)
{
    return {p.x * a.m[0][0] + p.y * a.m[1][0] + p.z * a.m[2][0] + a.m[3][0],
            p.x * a.m[0][1] + p.y * a.m[1][1] + p.z * a.m[2][1] + a.m[3][1],
            p.x * a.m[0][2] + p.y * a.m[1][2] + p.z * a.m[2][2] + a.m[3][2]};
}

/// v with w = 0 through `a`: no translation.
inline Vector3 TransformVector(const Vector3& v, const Matrix& a)
{
    return {v.x * a.m[0][0] + v.y * a.m[1][0] + v.z * a.m[2][0], v.x * a.m[0][1] + v.y * a.m[1][1] + v.z * a.m[2][1],
            v.x * a.m[0][2] + v.y * a.m[1][2] + v.z * a.m[2][2]};
}

} // namespace vdt
