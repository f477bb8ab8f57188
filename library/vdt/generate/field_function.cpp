#include "vdt/generate/field_function.h"

namespace vdt {
namespace {

// The kernel's coefficients of d^2, d^4 and d^6: 22/9, 17/9 and 4/9.
constexpr double kSquare = 2.4444444444444446;
constexpr double kFourth = 1.8888888888888888;
constexpr double kSixth = 0.4444444444444444;
constexpr double kSmallestSquare = 1e-8; // nearer than its root a point pulls nowhere

} // namespace

double WyvillFieldFunction::Value(const Vector3& a, const Vector3& b) const
{
    const Vector3 difference = a - b;
    const double d2 = Dot(difference, difference);
    const double r2 = radiusSquared;
    if (d2 > r2) return 0;
    return 1 - d2 * kSquare / r2 + d2 * d2 * kFourth / (r2 * r2) - d2 * d2 * d2 * kSixth / (r2 * r2 * r2);
}

Vector3& WyvillFieldFunction::Gradient(Vector3& out, const Vector3& a, const Vector3& b) const
{
    out = {0, 0, 0};
    const Vector3 difference = a - b;
    const double d2 = Dot(difference, difference);
    const double r2 = radiusSquared;
    if (d2 > r2 || d2 < kSmallestSquare) return out;

    // Compatibility: the kernel's derivative has d^3 and d^5 where the radius stands here. The shading of blobs in
    // existing scenes depends on it.
    const double d = std::sqrt(d2);
    const double g =
        r2 * 4 * radius * kFourth / (r2 * r2) - r2 * 6 * r2 * radius * kSixth / (r2 * r2 * r2) - 2 * d / r2 * kSquare;
    return out = difference * g / d;
}

} // namespace vdt
