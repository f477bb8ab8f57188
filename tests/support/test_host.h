// A host for one test: settings in a folder of its own, answers to its questions scripted, everything it says kept.
//
// A host with the module has the one that is linked into the tests attached, so that a test may look into its objects.
#pragma once

#include "core/application.h"
#include "core/dialogs.h"
#include "module/modules.h"
#include "support/temporary_folder.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::test {

/// Gives the answers that a test has laid out, in order; where none is left, the refusing one.
class ScriptedDialogs final : public Dialogs {
public:
    GEMB_R message(const std::string& text, GEMB flags) override;
    bool chooseFile(const FileQuestion& question, std::string& path) override;

    std::deque<GEMB_R> answers;
    std::deque<std::optional<std::string>> files; // nothing: cancelled

    struct Message {
        std::string text;
        GEMB flags;
    };
    std::vector<Message> messages; // that were shown
    std::vector<FileQuestion> fileQuestions;
};

/// What is told apart from one test to another; the rest is the test host's own.
struct TestHostOptions {
    std::string language = "US";
    bool userInterface = false;
    Int32 apiLevel = API_VERSION;
    std::map<char, std::filesystem::path> drives = {};
    std::vector<std::filesystem::path> texturePaths = {};
    std::filesystem::path settingsFile = {}; // empty: one in the folder
};

class TestHost {
public:
    explicit TestHost(const TestHostOptions& options = {});

    Modules& modules() { return application->part<Modules>(); }
    /// True if some line of the console holds `part`.
    bool said(std::string_view part) const;
    /// Ends the host before the test is over.
    void end() { application.reset(); }

    vdt::test::TemporaryFolder folder;
    ScriptedDialogs dialogs;
    std::vector<std::string> console; // lines
    std::optional<Application> application;
};

/// A host with the module in it, started.
struct ModuleHost : TestHost {
    explicit ModuleHost(const TestHostOptions& options = {});
};

/// What the linked module is told as its own file. Its resources lie beside.
Filename ModuleFile();

} // namespace host::test
