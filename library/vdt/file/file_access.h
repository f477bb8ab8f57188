// Opening and replacing files by UTF-8 paths, in which a backslash may stand for a slash.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace vdt {

std::filesystem::path ToFilePath(std::string_view utf8);

/// Opens a regular file in binary; the stream stays closed if there is none. A path that does not exist as it stands
/// is tried with its backslashes turned into slashes.
void OpenForReading(std::ifstream& file, const std::string& path);

} // namespace vdt
