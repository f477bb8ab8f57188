// A plant's wood while it grows: stems as plain polylines, parents before their children.
#pragma once

#include "grower/random.h"
#include "grower/recipe.h"
#include "vdt/memory/index.h"

#include <vector>

namespace grower {

struct StemVertex {
    vdt::Vector3 position;
    double radius = 0;
    double barkV = 0; // the bark texture's v
};

struct Stem {
    int layer = 0;                // 0: trunk or scaffold; else 1 + its recipe's place in the age's stems
    uint64_t parent = vdt::kNone; // position in the list; none for the trunk
    uint64_t parentVertex = 0;    // of the parent, on which the first vertex of this stem stands
    int32_t material = 0;
    std::vector<StemVertex> vertices;
};

using Stems = std::vector<Stem>;

double StemLength(const Stem& stem);

/// The direction along the stem at a vertex, at unit length.
vdt::Vector3 StemDirection(const Stem& stem, uint64_t vertex);

/// The stems of one age, at their final size, without radii.
Stems GrowStems(const AgeRecipe& age);

/// Cuts the trunk into stems that go on from each other, where its bark changes.
void CutTrunkByBark(const AgeRecipe& age, Stems& stems);

/// The trunk and the boughs of a scaffold, in a crown of `height`. Gives each stem's thin part: the first vertex
/// from which on twigs may stand.
Stems GrowScaffold(const AgeRecipe& age, Random& random, std::vector<uint64_t>& thinFrom);

/// Gives every vertex its radius by what it carries, and its texture coordinate.
void ThickenStems(const AgeRecipe& age, Stems& stems);

} // namespace grower
