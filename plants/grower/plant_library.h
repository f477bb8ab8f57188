// Writes grown species as a plant library: one folder a species, `<Name>/<Name>.vdt.gz`, with the ages in `models/` and
// the pictures in `textures/` beside it. A preview image belongs beside the model, as `<Name>.png`.
#pragma once

#include "grower/recipe.h"
#include "vdt/messages/message_handler.h"

#include <string>

namespace grower {

/// The species of the default library, in the order of their names.
const std::vector<SpeciesRecipe>& DefaultSpecies();

/// The botanical name with underscores for blanks: the name of the folder and of the model file.
std::string FolderOf(const SpeciesRecipe& recipe);

/// Grows the species and writes it into `directory`, which is made if it is not there. False, with an error told, if a
/// file cannot be written.
bool WriteSpecies(const SpeciesRecipe& recipe, const std::string& directory, vdt::MessageHandler& messages);

} // namespace grower
