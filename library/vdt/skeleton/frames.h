// Tangents and frames along branches. A frame's rows 0 and 1 span the cross-section, row 2 is the tangent, row 3 the
// position.
#pragma once

#include "vdt/math/matrix.h"
#include "vdt/skeleton/skeleton.h"

namespace vdt {

/// The sum of the unit directions to the next vertex and from the previous one, as far as there are such; not
/// normalised, zero where there is neither.
Vector3 VertexTangent(const Skeleton& skeleton, const SkeletonVertex& vertex);

/// A frame on `tangent` that turns the z axis there by the shortest way.
Matrix FrameFromTangent(Vector3 tangent, const Vector3& position);

/// `previous` carried along to `tangent` with the least twist. Keeps the previous frame's row 3.
Matrix AdvanceFrame(Vector3 tangent, const Matrix& previous);

} // namespace vdt
