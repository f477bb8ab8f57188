// A plant of the size that benchmarks want, made without any recipe of the library.
#pragma once

#include "vdt/model/model.h"

namespace grower {

/// One complete variant of 40,000 branches, some 250,000 vertices, 210,000 points and 60,000 connectors, with three
/// leaf meshes: about 38 MB as text. All numbers have their full length. The same on every run.
vdt::Model GrowLargePlant();

} // namespace grower
