// A smooth skin around points: the surface on which the sum of their fields has one value.
#pragma once

#include "vdt/generate/field_function.h"
#include "vdt/mesh/mesh_accessors.h"

#include <span>

namespace vdt {

/// Writes the surface where the field of all points has the value `threshold`, as triangles without a material
/// (-1). A point's texture coordinates are its x and y. Writes nothing where BuildFieldGrid makes no grid.
void Polygonize(std::span<const Vector3> points, const FieldFunction& field, double threshold,
                MeshOutputAccessor& output);

} // namespace vdt
