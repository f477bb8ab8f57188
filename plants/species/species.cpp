#include "species/species.h"

#include "grower/plant_library.h"

namespace grower {

const std::vector<SpeciesRecipe>& DefaultSpecies()
{
    static const std::vector<SpeciesRecipe> species{
        BetulaPendula(),      DryopterisFilixMas(), HelianthusAnnuus(), HydrangeaMacrophylla(), LavandulaAngustifolia(),
        MiscanthusSinensis(), PhoenixCanariensis(), PiceaAbies(),       PrunusSerrulata(),      QuercusRobur()};
    return species;
}

} // namespace grower
