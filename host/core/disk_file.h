// Whole files from and to disk.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace host {

/// Nothing if there is no regular file or it cannot be read to its end.
std::optional<std::vector<uint8_t>> LoadFile(const std::filesystem::path& path);

/// Writes beside the file and renames, so that at any moment the whole old or the whole new content stands under the
/// name. False: the old file is as it was, and nothing else is left.
bool SaveFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

} // namespace host
