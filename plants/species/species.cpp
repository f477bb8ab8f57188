#include "species/species.h"

#include "grower/plant_library.h"

namespace grower {

const std::vector<SpeciesRecipe>& DefaultSpecies()
{
    static const std::vector<SpeciesRecipe> species{
        AcerPalmatum(),          BetulaPendula(),      DryopterisFilixMas(), HelianthusAnnuus(), HydrangeaMacrophylla(),
        LavandulaAngustifolia(), MiscanthusSinensis(), PhoenixCanariensis(), PiceaAbies(),       PinusSylvestris(),
        PopulusNigraItalica(),   PrunusSerrulata(),    QuercusRobur(),       SalixBabylonica(),
    };
    return species;
}

} // namespace grower
