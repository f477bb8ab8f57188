// Rotations as quaternions of four floats, in the order x, y, z, w.
#pragma once

#include "vdt/math/matrix.h"

namespace vdt {

struct Quaternion {
    float x = 0, y = 0, z = 0, w = 1;

    friend bool operator==(const Quaternion&, const Quaternion&) = default;
};

/// The rotation of `q` with `origin` in row 3. Computed in doubles; a zero quaternion gives the identity rotation.
inline Matrix ToMatrix(const Quaternion& q, const Vector3& origin)
{
    const double x = q.x;
    const double y = q.y;
    const double z = q.z;
    const double w = q.w;
    return {{{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (w * y + x * z), 0},
             {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x), 0},
             {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y), 0},
             {origin.x, origin.y, origin.z, 1}}};
}

/// The rotation part of `a` as a quaternion, narrowed to floats: Shoemake, "Animating Rotation with Quaternion
/// Curves", 1985. The inverse of ToMatrix for rotations.
Quaternion ToQuaternion(const Matrix& a);

/// `q` at unit length, computed in floats; as it is if no component exceeds 1.1920929e-7 in magnitude.
Quaternion Normalized(const Quaternion& q);

} // namespace vdt
