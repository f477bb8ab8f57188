// Names of output files made from a template.
#pragma once

#include <string>

namespace verdanth {

/// What may stand in a template between braces.
struct OutputNameParts {
    std::string species;
    std::string variant;
    std::string season;
    size_t level = 0;
};

/// True if `pattern` asks for the level of detail, so that each level gets a file of its own.
bool NamesLevels(const std::string& pattern);

/// `pattern` with {species}, {variant}, {season} and {lod} filled in. What may not stand in a file's name becomes "_".
/// Empty, with `problem` told, if something else stands between braces.
std::string OutputName(const std::string& pattern, const OutputNameParts& parts, std::string& problem);

} // namespace verdanth
