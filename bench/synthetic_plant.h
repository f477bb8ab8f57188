// A large plant made up by numbers: the workload where no grown plant is at hand.
#pragma once

#include "vdt/model/model_variant.h"

namespace vdt::bench {

/// A trunk with three levels of branching off it, the same on every run: about 40,000 branches with 246,754 vertices
/// between them, frames computed, 60,000 connectors on the outermost twigs. `share` makes it smaller.
Skeleton SyntheticSkeleton(double share = 1);

/// A grid of quads with normals and texture coordinates, as a leaf has it.
Mesh SyntheticLeaf(uint64_t columns, uint64_t rows);

/// The skeleton above with leaf meshes of 8, 16 and 40 quads in groups 0 to 2.
ModelVariant SyntheticPlant(double share = 1);

} // namespace vdt::bench
