// Crossing between the API's texts and UTF-8.
#pragma once

#include "c4d_string.h"

#include <string>
#include <string_view>

namespace host {

String TextOf(std::string_view utf8);
std::string Utf8Of(const String& text);

} // namespace host
