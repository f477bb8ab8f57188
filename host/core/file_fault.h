// Words for what is wrong with a file.
#pragma once

#include "c4d_file.h"

#include <filesystem>
#include <string>

namespace host {

std::string NameForReport(const std::filesystem::path& file);

/// "the data ends too early, at byte 123"
std::string FaultText(FILEERROR error, size_t position);

} // namespace host
