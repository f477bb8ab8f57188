// JSON as text.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace verdanth {

constexpr int kOneLine = -1;
constexpr int kForPeople = 2; // blanks a level

/// Bytes that are no UTF-8 are replaced.
inline std::string JsonText(const nlohmann::ordered_json& value, int indent)
{
    return value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace verdanth
