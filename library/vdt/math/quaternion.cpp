#include "vdt/math/quaternion.h"

namespace vdt {
namespace {

constexpr float kSmallestComponent = 1.1920929e-7F; // one rounding step of a float at 1

Quaternion narrowed(double x, double y, double z, double w)
{
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z), static_cast<float>(w)};
}

} // namespace

Quaternion ToQuaternion(const Matrix& a)
{
    const auto& m = a.m;
    const double fourSquaredW = 1 + m[0][0] + m[1][1] + m[2][2];
    if (fourSquaredW > kEpsilon) {
        const double fourW = 2 * std::sqrt(fourSquaredW);
        return narrowed((m[2][1] - m[1][2]) / fourW, (m[0][2] - m[2][0]) / fourW, (m[1][0] - m[0][1]) / fourW,
                        fourW / 4);
    }

    // A turn by about 180 degrees: the axis is read off its largest component.
    if (m[0][0] > m[1][1] && m[0][0] > m[2][2]) {
        const double fourX = 2 * std::sqrt(1 + m[0][0] - m[1][1] - m[2][2]);
        return narrowed(fourX / 4, (m[0][1] + m[1][0]) / fourX, (m[0][2] + m[2][0]) / fourX,
                        (m[2][1] - m[1][2]) / fourX);
    }
    if (m[1][1] > m[2][2]) {
        const double fourY = 2 * std::sqrt(1 + m[1][1] - m[0][0] - m[2][2]);
        return narrowed((m[0][1] + m[1][0]) / fourY, fourY / 4, (m[1][2] + m[2][1]) / fourY,
                        (m[0][2] - m[2][0]) / fourY);
    }
    const double fourZ = 2 * std::sqrt(1 + m[2][2] - m[0][0] - m[1][1]);
    return narrowed((m[0][2] + m[2][0]) / fourZ, (m[1][2] + m[2][1]) / fourZ, fourZ / 4, (m[1][0] - m[0][1]) / fourZ);
}

Quaternion Normalized(const Quaternion& q)
{
    const float largest = std::max({std::fabs(q.x), std::fabs(q.y), std::fabs(q.z), std::fabs(q.w)});
    if (!(largest > kSmallestComponent)) return q;

    const float length = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    return {q.x / length, q.y / length, q.z / length, q.w / length};
}

} // namespace vdt
