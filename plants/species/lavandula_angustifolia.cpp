#include "species/species.h"
namespace grower { SpeciesRecipe LavandulaAngustifolia(){ return {.name="Lavandula"}; } }
