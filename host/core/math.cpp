#include "ge_math.h"

#include <algorithm>

namespace {

constexpr Float kUpright = 1 - 1e-12; // the sine beyond which heading and bank turn about one axis

} // namespace

Matrix operator~(const Matrix& m)
{
    const Vector a = Cross(m.v2, m.v3);
    const Vector b = Cross(m.v3, m.v1);
    const Vector c = Cross(m.v1, m.v2);
    const Float determinant = Dot(m.v1, a);
    const Float scale = 1 / determinant;
    if (determinant == 0 || !std::isfinite(scale)) return Matrix();

    const Matrix turned(Vector(), Vector(a.x, b.x, c.x) * scale, Vector(a.y, b.y, c.y) * scale,
                        Vector(a.z, b.z, c.z) * scale);
    return Matrix(-turned.TransformVector(m.off), turned.v1, turned.v2, turned.v3);
}

Matrix MatrixMove(const Vector& offset)
{
    return Matrix(offset, Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1));
}

Matrix MatrixScale(const Vector& scale)
{
    return Matrix(Vector(), Vector(scale.x, 0, 0), Vector(0, scale.y, 0), Vector(0, 0, scale.z));
}

// A turn takes y to z, z to x, x to y.
Matrix MatrixRotX(Float angle)
{
    const Float s = std::sin(angle), c = std::cos(angle);
    return Matrix(Vector(), Vector(1, 0, 0), Vector(0, c, s), Vector(0, -s, c));
}

Matrix MatrixRotY(Float angle)
{
    const Float s = std::sin(angle), c = std::cos(angle);
    return Matrix(Vector(), Vector(c, 0, -s), Vector(0, 1, 0), Vector(s, 0, c));
}

Matrix MatrixRotZ(Float angle)
{
    const Float s = std::sin(angle), c = std::cos(angle);
    return Matrix(Vector(), Vector(c, s, 0), Vector(-s, c, 0), Vector(0, 0, 1));
}

// Bank first, then pitch, then heading.
Matrix HPBToMatrix(const Vector& hpb)
{
    return MatrixRotY(hpb.x) * MatrixRotX(hpb.y) * MatrixRotZ(hpb.z);
}

Vector MatrixToHPB(const Matrix& m)
{
    const Matrix axes(Vector(), m.v1.GetNormalized(), m.v2.GetNormalized(), m.v3.GetNormalized());
    const Float pitch = std::asin(std::clamp<Float>(-axes.v3.y, -1, 1));
    if (std::abs(axes.v3.y) > kUpright) return Vector(std::atan2(-axes.v1.z, axes.v1.x), pitch, 0);
    return Vector(std::atan2(axes.v3.x, axes.v3.z), pitch, std::atan2(axes.v1.y, axes.v2.y));
}
