#include "support/test_host.h"

#include "core/string_access.h"
#include "shell/module_entry.h"

#include <algorithm>

namespace host::test {
namespace {

template <class Answer> std::optional<Answer> next(std::deque<Answer>& answers)
{
    if (answers.empty()) return {};
    Answer answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

} // namespace

GEMB_R ScriptedDialogs::message(const std::string& text, GEMB flags)
{
    messages.push_back({text, flags});
    return next(answers).value_or(RefusingAnswer(flags));
}

bool ScriptedDialogs::chooseFile(const FileQuestion& question, std::string& path)
{
    fileQuestions.push_back(question);
    const std::optional<std::string> chosen = next(files).value_or(std::nullopt);
    if (chosen) path = *chosen;
    return chosen.has_value();
}

TestHost::TestHost(const TestHostOptions& options)
{
    application.emplace(ApplicationOptions{.settingsFile = options.settingsFile.empty() ? folder.root / "settings"
                                                                                        : options.settingsFile,
                                           .language = options.language,
                                           .userInterface = options.userInterface,
                                           .console = [this](std::string_view line) { console.emplace_back(line); },
                                           .texturePaths = options.texturePaths,
                                           .drives = options.drives,
                                           .apiLevel = options.apiLevel,
                                           .dialogs = &dialogs});
}

bool TestHost::said(std::string_view part) const
{
    return std::ranges::any_of(console,
                               [part](const std::string& line) { return line.find(part) != std::string::npos; });
}

ModuleHost::ModuleHost(const TestHostOptions& options) : TestHost(options)
{
    modules().attach(c4d_main, ModuleFile());
    modules().start();
}

Filename ModuleFile()
{
    return Filename(TextOf(VERDANTH_MODULE_FOLDER "/verdanth.so"));
}

} // namespace host::test
