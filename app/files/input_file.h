// Whether a file that something refers to can be used, and why not.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace verdanth {

/// Why the file at `path` has no content to give: "does not exist", "is a folder", "is empty" or the system's own
/// words. Empty if it has some.
std::string ProblemOfFile(const std::string& path);

/// The whole file; none with `problem` told as above.
std::optional<std::vector<uint8_t>> ReadWholeFile(const std::string& path, std::string& problem);

/// True if both paths lead to one file that exists.
bool IsSameFile(const std::string& a, const std::string& b);

} // namespace verdanth
