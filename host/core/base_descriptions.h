// The descriptions of the host's own types, as the texts of resource files.
#pragma once

#include <string_view>

namespace host {

struct BaseDescription {
    std::string_view name;
    std::string_view layout;
    std::string_view symbols;
    std::string_view english;
    std::string_view german;
};

/// Null if the host has no description of that name.
const BaseDescription* FindBaseDescription(std::string_view name);

/// The name of the description of one of the host's own types; empty if it has none.
std::string_view BaseDescriptionName(int type);

} // namespace host
