// Materials that between them take every way through the converters of all renderers.
#pragma once

#include "vdt/model/model.h"

#include <vector>

namespace vdt::test {

std::vector<MaterialData> MaterialSet();

/// The one of that name in the set.
MaterialData MaterialOfSet(const std::string& name);

} // namespace vdt::test
