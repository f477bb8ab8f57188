// The species of the default plant library. Each has a file of its own, with its recipe and nothing else.
#pragma once

#include "grower/recipe.h"

namespace grower {

SpeciesRecipe AcerPalmatum();
SpeciesRecipe BetulaPendula();
SpeciesRecipe DryopterisFilixMas();
SpeciesRecipe HelianthusAnnuus();
SpeciesRecipe HydrangeaMacrophylla();
SpeciesRecipe LavandulaAngustifolia();
SpeciesRecipe MiscanthusSinensis();
SpeciesRecipe PhoenixCanariensis();
SpeciesRecipe PiceaAbies();
SpeciesRecipe PinusSylvestris();
SpeciesRecipe PopulusNigraItalica();
SpeciesRecipe PrunusSerrulata();
SpeciesRecipe QuercusRobur();
SpeciesRecipe SalixBabylonica();

} // namespace grower
