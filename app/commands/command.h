// What the commands have in common. Each command adds its options to the parser and leaves its work behind, to be run
// once the whole line is understood.
#pragma once

#include "console/console.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace verdanth {

/// The chosen command's work; gives the exit status.
using CommandWork = std::function<int(Console&)>;

void AddInfoCommand(CLI::App& program, CommandWork& chosen);
void AddCheckCommand(CLI::App& program, CommandWork& chosen);
void AddExportCommand(CLI::App& program, CommandWork& chosen);
void AddConvertCommand(CLI::App& program, CommandWork& chosen);
void AddRenderCommand(CLI::App& program, CommandWork& chosen);
void AddListCommand(CLI::App& program, CommandWork& chosen);

/// Adds --library.
void AddLibraryOption(CLI::App& command, std::string& folder);

/// Adds --format with the choices "table" and "json".
void AddFormatOption(CLI::App& command, std::string& format);

/// What stands below a command's options in its help.
std::string ExampleText(const std::string& line, const std::string& explanation);

} // namespace verdanth
