// Crossing between the models' right-handed world and the host's left-handed one. No minus sign for it stands anywhere
// else: z changes its sign, so polygons turn their winding.
#pragma once

#include "c4d.h"
#include "vdt/math/vector.h"

/// A model position in host units, at `scale` host units for one of the model's.
inline Vector ToHost(const vdt::Vector3& modelPosition, Float scale)
{
    return Vector(scale * modelPosition.x, scale * modelPosition.y, -(scale * modelPosition.z));
}

inline Vector ToHostDirection(const vdt::Vector3& modelDirection)
{
    return Vector(modelDirection.x, modelDirection.y, -modelDirection.z);
}

/// For positions (host units stay) and directions.
inline vdt::Vector3 ToModel(const Vector& hostVector)
{
    return {hostVector.x, hostVector.y, -hostVector.z};
}

inline CPolygon ToHostTriangle(Int32 a, Int32 b, Int32 c)
{
    return CPolygon(c, b, a, a);
}

inline CPolygon ToHostQuad(Int32 a, Int32 b, Int32 c, Int32 d)
{
    return CPolygon(d, c, b, a);
}
