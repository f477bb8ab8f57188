// From stems to the records of the model library.
#pragma once

#include "grower/stems.h"
#include "vdt/model/model.h"

namespace grower {

/// The wood and the places of its foliage. Positions are rounded to a hundredth of a millimetre, which keeps the
/// files small and changes nothing that can be seen.
vdt::Skeleton BuildSkeleton(const AgeRecipe& age, const Stems& stems);

/// One age of a species, complete, with everything but the paths of its file and of its textures.
vdt::ModelVariant GrowVariant(const SpeciesRecipe& recipe, const AgeRecipe& age);

/// A light stand-in: the trunk as a tube and the crown as a round hull about the connectors.
vdt::Mesh BuildProxy(const SpeciesRecipe& recipe, const vdt::Skeleton& skeleton);

} // namespace grower
