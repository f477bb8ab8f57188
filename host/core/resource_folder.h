// The folder "res" of a plug-in: its texts in the host's language, and its files by name.
#pragma once

#include "c4d_resource.h"
#include "core/resource_parser.h"

#include <filesystem>
#include <map>
#include <optional>

/// What GeResource gives away: where the resources lie.
class LocalResource {
public:
    std::filesystem::path folder;
};

namespace host {

struct ResourceData : LocalResource {
    bool loaded = false;
    std::map<Int32, String> texts;
};

/// Larger files are not read: none is meant to be.
constexpr std::uintmax_t kLargestResource = 1 << 20;

/// Nothing, with a fault, if the file cannot be read; without one if there is no such file.
std::optional<ResourceText> ReadResource(const std::filesystem::path& file, ResourceFaults& faults);
/// The file at `name` in the folder of the host's language, else in that of English.
std::optional<ResourceText> ReadTranslated(const std::filesystem::path& folder, const std::filesystem::path& name,
                                           ResourceFaults& faults);
/// Says on the console what went wrong.
void PrintFaults(const ResourceFaults& faults);

} // namespace host
