// Long narrow organs that bend under their own weight: blades of grass, the strands of a plume, rays of a flower.
#pragma once

#include "grower/organs.h"

namespace grower {

struct BladeBody {
    double length = 50;   // model units
    double width = 1;     // at the widest place
    double lean = 0;      // degrees that the foot leans away from the facing side
    double arch = 90;     // degrees by which the tip has turned further
    double stiffness = 1; // 1: bends evenly; above: stiff at the foot, limp at the tip
    double fold = 0;      // degrees that each half is raised along the midrib
    int pieces = 5;
    int32_t material = 0;
};

/// Adds a strip that grows along +y of `frame` and arches away from +z. It has the outline of `shape`, at a width of
/// its own, and carries the picture that PaintLeaf makes of it. `shape` has no stalk.
void AddBlade(vdt::Mesh& mesh, const LeafShape& shape, const BladeBody& body, const vdt::Matrix& frame);

/// Blades around a piece of axis: a tuft if that is short, a plume if the blades are.
void AddBladeSpray(vdt::Mesh& mesh, const SprayShape& spray, const LeafShape& shape, const BladeBody& body);

} // namespace grower
