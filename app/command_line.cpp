#include "command_line.h"

#include "commands/command.h"
#include "console/interrupt.h"
#include "exit_status.h"

#include <algorithm>
#include <exception>

namespace verdanth {
namespace {

// The help of the innermost command that was named.
std::string helpOf(CLI::App& command)
{
    const std::vector<CLI::App*> chosen = command.get_subcommands();
    if (!chosen.empty()) return chosen.front()->help("verdanth " + command.get_name());
    return command.help("verdanth");
}

int parseAndRun(const std::vector<std::string>& arguments, Console& console)
{
    CLI::App program(
        "Plant models: what they hold, whether they are whole, and their geometry and pictures for others.",
        "verdanth");
    program.set_version_flag("--version", "verdanth " VERDANTH_VERSION);
    program.require_subcommand(0, 1);
    program.footer(ExampleText("verdanth info \"Silver Birch\"", "tells about a plant of the default library") +
                   "\n'verdanth COMMAND --help' tells a command's options.");
    CommandWork work;
    AddListCommand(program, work);
    AddInfoCommand(program, work);
    AddCheckCommand(program, work);
    AddExportCommand(program, work);
    AddConvertCommand(program, work);
    AddRenderCommand(program, work);
    AddViewCommand(program, work);
    AddSceneCommand(program, work);
    AddMaterialsCommand(program, work);

    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // it takes them from the back
    } catch (const CLI::CallForHelp&) {
        const std::vector<CLI::App*> chosen = program.get_subcommands();
        console.out() << (chosen.empty() ? program.help() : helpOf(*chosen.front()));
        return kSuccess;
    } catch (const CLI::Success& request) { // the version
        console.out() << request.what() << '\n';
        return kSuccess;
    } catch (const CLI::ParseError& problem) {
        console.error(std::string(problem.what()) + "; 'verdanth --help' tells more");
        return kFailure;
    }
    if (!work) {
        console.out() << program.help();
        return kSuccess;
    }
    return work(console);
}

} // namespace

void AddLibraryOption(CLI::App& command, std::string& folder)
{
    command
        .add_option("--library", folder,
                    "The plant library's folder; else VERDANTH_PLANTS, else plants beside the program")
        ->type_name("DIR");
}

void AddFormatOption(CLI::App& command, std::string& format)
{
    command.add_option("--format", format, "How to print: for people or for programs")
        ->check(CLI::IsMember({"table", "json"}).description(""))
        ->capture_default_str()
        ->type_name("table|json");
}

std::string ExampleText(const std::string& line, const std::string& explanation)
{
    return "Example:\n  " + line + "\n    " + explanation;
}

int RunCommandLine(std::vector<std::string> arguments, Console& console)
{
    int status = kFailure;
    try {
        status = parseAndRun(arguments, console);
    } catch (const std::exception& problem) { // memory has run out, or a path cannot be told in this system's letters
        console.error(problem.what());
    }
    console.out().flush();
    if (CaughtSignal()) return kSignalStatus + CaughtSignal();
    if (console.out().good()) return status;
    console.setSubject("");
    console.error("the result cannot be written to its end");
    return kFailure;
}

} // namespace verdanth
