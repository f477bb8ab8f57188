#include "commands/command.h"
#include "console/json_text.h"
#include "exit_status.h"
#include "files/input_file.h"
#include "inspect/library_facts.h"
#include "lookup/species.h"
#include "vdt/model/language.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace verdanth {
namespace {

struct ListOptions {
    std::string library;
    std::string language;
    std::string filter;
    std::string format = "table";
};

// The language of the user's environment as a tag: "de-DE" of "de_DE.UTF-8"; English if it names none.
std::string environmentLanguage()
{
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value) continue;
        std::string tag(value);
        tag.resize(std::min(tag.find_first_of(".@"), tag.size()));
        std::replace(tag.begin(), tag.end(), '_', '-');
        tag = vdt::normalizeLanguage(tag);
        return tag.empty() ? "en" : tag;
    }
    return "en";
}

int runList(const ListOptions& options, Console& console)
{
    const std::string language =
        options.language.empty() ? environmentLanguage() : vdt::normalizeLanguage(options.language);
    if (language.empty()) {
        console.error("\"" + options.language + "\" is no language; en and de-DE are");
        return kFailure;
    }
    const std::string folder = FindLibrary(options.library);
    if (folder.empty()) {
        console.error("no plant library found; 'verdanth list DIR' names one");
        return kFailure;
    }
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored)) {
        console.setSubject(folder);
        const std::string problem = ProblemOfFile(folder);
        console.error(problem.empty() ? "is no folder" : problem);
        return kFailure;
    }

    const LibraryAnswer answer = DescribeLibrary({folder, language, options.filter}, console);
    if (console.isCancelled()) return kFailure;
    if (options.format == "json")
        console.out() << JsonText(answer.facts, kForPeople) << '\n';
    else
        PrintLibraryFacts(answer.facts, console.out());
    return answer.status;
}

} // namespace

void AddListCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("list", "List the plants of a library: names, heights, seasons, sizes");
    const auto options = std::make_shared<ListOptions>();
    command
        ->add_option("library,--library", options->library,
                     "The plant library's folder; else VERDANTH_PLANTS, else plants beside the program")
        ->type_name("DIR");
    command->add_option("--language", options->language, "Of common names, such as de or en-US; else the environment's")
        ->type_name("TAG");
    command->add_option("--filter", options->filter, "Only plants with this in their common or botanical name")
        ->type_name("TEXT");
    AddFormatOption(*command, options->format);
    command->footer(ExampleText("verdanth list --language de --filter birke", "lists the birches, with German names") +
                    "\nExit status: 0 if all is well, 1 if a variant's file is missing, 2 if a plant cannot be read.");
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runList(*options, console); }; });
}

} // namespace verdanth
