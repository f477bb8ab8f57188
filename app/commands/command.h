// What the commands have in common. Each command adds its options to the parser and leaves its work behind, to be run
// once the whole line is understood.
#pragma once

#include "console/console.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace verdanth {

/// The chosen command's work; gives the exit status.
using CommandWork = std::function<int(Console&)>;

void AddInfoCommand(CLI::App& program, CommandWork& chosen);
void AddCheckCommand(CLI::App& program, CommandWork& chosen);
void AddExportCommand(CLI::App& program, CommandWork& chosen);
void AddConvertCommand(CLI::App& program, CommandWork& chosen);
void AddMaterialsCommand(CLI::App& program, CommandWork& chosen);
void AddRenderCommand(CLI::App& program, CommandWork& chosen);
void AddSceneCommand(CLI::App& program, CommandWork& chosen);
void AddViewCommand(CLI::App& program, CommandWork& chosen);
void AddListCommand(CLI::App& program, CommandWork& chosen);

/// Adds --library.
void AddLibraryOption(CLI::App& command, std::string& folder);

/// Adds --format with the choices "table" and "json".
void AddFormatOption(CLI::App& command, std::string& format);

/// Adds an option that takes one of several words, whatever their case; the first of them is the default.
template <class Choice>
void AddChoice(CLI::App& command, const std::string& name, Choice& target,
               const std::vector<std::pair<std::string, Choice>>& choices, const std::string& description)
{
    std::vector<std::string> words;
    std::string allWords;
    for (const auto& [word, choice] : choices) {
        words.push_back(word);
        allWords += (allWords.empty() ? "" : "|") + word;
    }
    const auto take = [&target, choices](const std::string& word) {
        for (const auto& [other, choice] : choices)
            if (other == word) target = choice;
    };
    command.add_option_function<std::string>(name, take, description)
        ->transform(CLI::IsMember(words, CLI::ignore_case).description(""))
        ->default_str(words.front())
        ->type_name(allWords);
}

/// What stands below a command's options in its help.
std::string ExampleText(const std::string& line, const std::string& explanation);

} // namespace verdanth
