#include "vdt/math/matrix.h"

namespace vdt {
namespace {

// The 2 x 2 minors of two rows, by column pair 01 02 03 12 13 23.
struct Minors {
    double c[6];

    Minors(const double (&a)[4], const double (&b)[4])
        : c{a[0] * b[1] - a[1] * b[0], a[0] * b[2] - a[2] * b[0], a[0] * b[3] - a[3] * b[0],
            a[1] * b[2] - a[2] * b[1], a[1] * b[3] - a[3] * b[1], a[2] * b[3] - a[3] * b[2]}
    {
    }
};

} // namespace

Matrix operator*(const Matrix& a, const Matrix& b)
{
    Matrix product;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            product.m[i][j] =
                a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j] + a.m[i][3] * b.m[3][j];
    return product;
}

// Laplace expansion by the minors of the upper and the lower two rows.
Matrix Inverse(const Matrix& a)
{
    const Minors upper(a.m[0], a.m[1]);
    const Minors lower(a.m[2], a.m[3]);
    const double(&s)[6] = upper.c;
    const double(&c)[6] = lower.c;
    const double determinant = s[0] * c[5] - s[1] * c[4] + s[2] * c[3] + s[3] * c[2] - s[4] * c[1] + s[5] * c[0];
    if (determinant == 0) return Matrix::Identity();

    const auto& m = a.m;
    Matrix inverse = {
        {{+m[1][1] * c[5] - m[1][2] * c[4] + m[1][3] * c[3], -m[0][1] * c[5] + m[0][2] * c[4] - m[0][3] * c[3],
          +m[3][1] * s[5] - m[3][2] * s[4] + m[3][3] * s[3], -m[2][1] * s[5] + m[2][2] * s[4] - m[2][3] * s[3]},
         {-m[1][0] * c[5] + m[1][2] * c[2] - m[1][3] * c[1], +m[0][0] * c[5] - m[0][2] * c[2] + m[0][3] * c[1],
          -m[3][0] * s[5] + m[3][2] * s[2] - m[3][3] * s[1], +m[2][0] * s[5] - m[2][2] * s[2] + m[2][3] * s[1]},
         {+m[1][0] * c[4] - m[1][1] * c[2] + m[1][3] * c[0], -m[0][0] * c[4] + m[0][1] * c[2] - m[0][3] * c[0],
          +m[3][0] * s[4] - m[3][1] * s[2] + m[3][3] * s[0], -m[2][0] * s[4] + m[2][1] * s[2] - m[2][3] * s[0]},
         {-m[1][0] * c[3] + m[1][1] * c[1] - m[1][2] * c[0], +m[0][0] * c[3] - m[0][1] * c[1] + m[0][2] * c[0],
          -m[3][0] * s[3] + m[3][1] * s[1] - m[3][2] * s[0], +m[2][0] * s[3] - m[2][1] * s[1] + m[2][2] * s[0]}}};
    for (auto& row : inverse.m)
        for (double& value : row) value /= determinant;
    return inverse;
}

Matrix Transpose(const Matrix& a)
{
    Matrix transposed;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) transposed.m[i][j] = a.m[j][i];
    return transposed;
}

} // namespace vdt
