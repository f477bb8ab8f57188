// What stands in host materials, as text: one line a parameter, its id, its kind and its value.
#pragma once

#include "materials/material_entry.h"

#include <functional>
#include <string>

namespace host::test {

/// All parameters of the entries' materials and of their parts, those that the host itself set among them. Colours
/// are shown as `shown` gives them. Reports shaders that are linked and not owned, or owned and not linked.
std::string WrittenParameters(const MaterialEntries& entries,
                              const std::function<Vector(const Vector&)>& shown = std::identity());

} // namespace host::test
