#include "export/output_name.h"

#include <algorithm>
#include <string_view>

namespace verdanth {
namespace {

constexpr std::string_view kLevel = "{lod}";

std::string asFileName(std::string text)
{
    constexpr std::string_view kForbidden = " /\\:*?\"<>|";
    std::replace_if(
        text.begin(), text.end(),
        [&](unsigned char c) {
            return c < ' ' || c == 0x7F || kForbidden.find(static_cast<char>(c)) != kForbidden.npos;
        },
        '_');
    return text;
}

} // namespace

bool NamesLevels(const std::string& pattern)
{
    return pattern.find(kLevel) != std::string::npos;
}

std::string OutputName(const std::string& pattern, const OutputNameParts& parts, std::string& problem)
{
    std::string name;
    size_t place = 0;
    while (true) {
        const size_t open = pattern.find('{', place);
        name += pattern.substr(place, open - place);
        if (open == std::string::npos) return name;

        const size_t close = pattern.find('}', open);
        const std::string word = pattern.substr(open, close == std::string::npos ? close : close + 1 - open);
        if (word == "{species}")
            name += asFileName(parts.species);
        else if (word == "{variant}")
            name += asFileName(parts.variant);
        else if (word == "{season}")
            name += asFileName(parts.season);
        else if (word == kLevel)
            name += std::to_string(parts.level);
        else {
            problem = word + " is no part of a name; {species}, {variant}, {season} and {lod} are";
            return {};
        }
        place = close + 1;
    }
}

} // namespace verdanth
