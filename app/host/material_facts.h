// What host materials were told, as JSON: each parameter in the order of its telling, with all that it links.
//
// A material is {"name", "type", "parameters"}; a parameter {"id", "kind", "value"}, with "second" where it stands at a
// second level of the id, and "name" where the host's own headers have one. A shader is a value of the kind "texture".
// What goes by name stands in "properties", and a network of shaders in "network", as nodes with inputs.
#pragma once

#include "c4d.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace verdanth {

/// The materials of an object, by its texture tags in order, each with "matid" and "side" before its name. A material
/// that only another one links stands in that one's "parts".
nlohmann::ordered_json DescribeMaterials(BaseDocument& document, BaseObject& object);

/// The pictures that described materials name, each once, in order.
std::vector<std::string> TextureFilesOf(const nlohmann::ordered_json& materials);

/// Described materials for a reader at a terminal. Files below `folder` are named from there.
void PrintMaterials(const nlohmann::ordered_json& materials, const std::string& folder, std::ostream& out);

} // namespace verdanth
