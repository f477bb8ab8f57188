// Everything that a model file says about its plant, and what its variants cost to build, as one JSON document.
//
// The document is what `verdanth info --format json` prints; the readable form is made from it, so both say the same.
#pragma once

#include "lookup/open_plant.h"

#include <nlohmann/json.hpp>

#include <ostream>
#include <string>

namespace verdanth {

class Console;

/// Describes the plant with all its variants, or with the one at `onlyVariant` unless that is kNone. Loads and builds
/// each variant in turn. A variant that cannot be loaded has "loaded": false. Stops early on cancelling.
nlohmann::ordered_json DescribePlant(OpenPlant& plant, uint64_t onlyVariant, Console& console);

/// The same document for a reader at a terminal.
void PrintPlantFacts(const nlohmann::ordered_json& facts, std::ostream& out);

} // namespace verdanth
