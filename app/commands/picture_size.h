// How large a picture is, as commands let their user say it.
#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

namespace verdanth {

class Console;

/// Adds --size, which keeps the text until ParsePictureSize reads it.
void AddSizeOption(CLI::App& command, std::string& text);

/// "640" or "640x480". False, with the error told, if it is neither.
bool ParsePictureSize(const std::string& text, uint32_t& width, uint32_t& height, Console& console);

} // namespace verdanth
