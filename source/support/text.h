// Texts between the host's strings and the library's, which are UTF-8.
#pragma once

#include "c4d.h"

#include <string>
#include <string_view>

std::string ToUtf8(const String& text);
std::string ToUtf8(const Filename& path);
String ToHostString(std::string_view utf8);
