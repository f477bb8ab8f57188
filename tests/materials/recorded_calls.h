// Every setter call that the converters make, one line a call: the slot, the operation, the values.
#pragma once

#include "vdt/model/material_data.h"

#include <string>
#include <vector>

namespace vdt::test {

/// `renderer` by name, as "mia". For the one without setters the fields of its record.
std::vector<std::string> RecordedCalls(const std::string& renderer, const MaterialData& material, int32_t quality);

/// The shortest text that reads back to the number; as 32 bits where that is enough.
std::string NumberText(double number);

} // namespace vdt::test
