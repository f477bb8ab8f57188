// Pictures of bark that repeat around and along a branch. They are painted for one turn around the branch and as
// much along it, or several times as much, so that a trunk does not show that they repeat.
#pragma once

#include "grower/image.h"

namespace grower {

/// A bark: its colours, and its relief in the red channel, 0 to 1.
struct Bark {
    Image color;
    Image height;
};

/// White and papery, with dark breathing pores across and black cracked patches.
struct PaperBarkPaint {
    vdt::Color3f paper, peel, pore, patch;
    double patchShare = 0.15; // how much of the stem the patches cover
    int turns = 1;            // how much of the stem is shown
    uint32_t seed = 1;
};
/// `size` is the picture's width.
Bark PaintPaperBark(const PaperBarkPaint& paint, uint32_t size);

/// Ridges along the stem with cracks between them.
struct RidgedBarkPaint {
    vdt::Color3f ridge, crack, moss;
    int ridges = 14;        // around the stem
    int plates = 6;         // along one turn's length
    double mossShare = 0.1; // how much of the ridges is green
    int turns = 1;          // how much of the stem is shown
    uint32_t seed = 1;
};
Bark PaintRidgedBark(const RidgedBarkPaint& paint, uint32_t size);

/// The smooth skin of young wood, with pores and fine lines along the stem.
struct SmoothBarkPaint {
    vdt::Color3f skin, shade, pore;
    double poreShare = 0.1;
    uint32_t seed = 1;
};
Bark PaintSmoothBark(const SmoothBarkPaint& paint, uint32_t size);

/// The trunk of a palm: lozenges in rows that the leaves have left, with fibre in the gaps between them.
struct ScarredBarkPaint {
    vdt::Color3f scar, rim, fibre;
    int scars = 12; // around the stem
    int rows = 20;  // along one turn's length; an even number
    uint32_t seed = 1;
};
Bark PaintScarredBark(const ScarredBarkPaint& paint, uint32_t size);

/// `below` at the lower edge and `above` at the upper one, two pictures of one size. They meet in the middle `share` of
/// the height, first in spots.
Bark BlendBarks(const Bark& below, const Bark& above, double share, uint32_t seed);

} // namespace grower
