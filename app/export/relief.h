// Pictures of heights turned into pictures of normals, for those who read no heights.
#pragma once

#include "export/picture.h"

namespace verdanth {

/// How far white stands above black in a picture of heights at strength 1, in widths of the picture.
constexpr double kBumpHeight = 0.02;

/// The normals of a picture of heights, as bytes from -1 to 1: red along u, green along v upwards, blue out of the
/// surface. Pixels are taken as square, and neighbours across the border are those of the next repetition. A negative
/// strength makes black the top.
Picture NormalsOfHeights(const Picture& heights, float strength);

} // namespace verdanth
