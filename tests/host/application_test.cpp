#include "core/console.h"
#include "core/string_access.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

namespace host::test {
namespace {

std::string log;

// A part that tells of its steps; `Name` makes the types differ.
template <char Name> struct TellingPart : ApplicationPart {
    TellingPart() { log += Name; }
    ~TellingPart() override { log += '-', log += Name; }
    void end(Ending step) override
    {
        if (step == Ending::Documents || step == Ending::Registrations) log += Name;
    }
};
struct NestingPart final : TellingPart<'n'> {
    NestingPart() { PartOf<TellingPart<'b'>>(); }
};

TEST(Application, PartsAreMadeOnDemandAndEndLastMadeFirst)
{
    for (int round = 0; round < 2; ++round) {
        log.clear();
        TestHost host;
        PartOf<TellingPart<'a'>>();
        PartOf<NestingPart>(); // asks for another while it is made
        PartOf<TellingPart<'b'>>();
        EXPECT_EQ(log, "anb");
        log.clear();
        EXPECT_EQ(&PartOf<TellingPart<'a'>>(), &Application::current().part<TellingPart<'a'>>());
        host.end();
        EXPECT_FALSE(Application::running());
        EXPECT_EQ(log, "nba"
                       "nba"
                       "-n-b-a");
    }
}

TEST(Application, ExactlyTheHostsLanguageIsTheDefaultOne)
{
    for (const char* code : {"US", "DE", "FR", "IT", "ES", "JP", "CN", "KR"}) {
        SCOPED_TRACE(code);
        TestHost host({.language = code});
        std::string defaults;
        String extension, name;
        Bool isDefault = false;
        Int32 index = 0;
        for (; GeGetLanguage(index, &extension, &name, &isDefault); ++index) {
            EXPECT_TRUE(name.Content());
            if (isDefault) defaults += Utf8Of(extension);
        }
        EXPECT_EQ(defaults, code);
        EXPECT_FALSE(GeGetLanguage(-1, nullptr, nullptr, nullptr));
        EXPECT_TRUE(GeGetLanguage(index - 1, nullptr, nullptr, nullptr));
    }
}

TEST(Application, QuestionsAreRefusedWhereNobodyAnswers)
{
    struct Row {
        GEMB buttons;
        GEMB_R answer;
    };
    const Row rows[] = {{GEMB_OK, GEMB_R_OK},
                        {GEMB_OKCANCEL, GEMB_R_CANCEL},
                        {GEMB_ABORTRETRYIGNORE, GEMB_R_ABORT},
                        {GEMB_YESNOCANCEL, GEMB_R_CANCEL},
                        {GEMB_YESNO, GEMB_R_NO},
                        {GEMB_RETRYCANCEL, GEMB_R_CANCEL}};
    std::vector<std::string> console;
    const Application application({.console = [&console](std::string_view line) { console.emplace_back(line); }});
    for (const Row& row : rows) EXPECT_EQ(GeOutString("Well?", row.buttons | GEMB_ICONQUESTION), row.answer);
    EXPECT_EQ(console, std::vector<std::string>(std::size(rows), "Well?"));
    Filename file("kept");
    EXPECT_FALSE(file.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_LOAD, "Find it"));
    EXPECT_EQ(file, Filename("kept"));
    EXPECT_EQ(console.back(), "Find it");
}

TEST(Application, AnswersComeInOrderAndAChosenNameGetsItsSuffix)
{
    TestHost host;
    host.dialogs.answers = {GEMB_R_YES, GEMB_R_NO};
    EXPECT_EQ(GeOutString("One", GEMB_YESNO), GEMB_R_YES);
    EXPECT_EQ(GeOutString("Two", GEMB_YESNO), GEMB_R_NO);
    MessageDialog("Three");
    ASSERT_EQ(host.dialogs.messages.size(), 3u);
    EXPECT_EQ(host.dialogs.messages[2].flags, GEMB_ICONEXCLAMATION);

    host.dialogs.files = {std::nullopt, "/a/oak", "/a/oak.VDT", "/a/b"};
    Filename file("/start");
    const auto choose = [&file](FILESELECT mode) {
        file.FileSelect(FILESELECTTYPE_ANYTHING, mode, "Where?", "vdt");
        return Utf8Of(file.GetString());
    };
    EXPECT_EQ(choose(FILESELECT_SAVE), "/start"); // cancelled
    EXPECT_EQ(choose(FILESELECT_SAVE), "/a/oak.vdt");
    EXPECT_EQ(choose(FILESELECT_SAVE), "/a/oak.VDT");
    EXPECT_EQ(choose(FILESELECT_LOAD), "/a/b");
    EXPECT_EQ(host.dialogs.fileQuestions[1].start, "/start");
}

TEST(Application, TheStatusBarIsNeverBeyondFullOrEmpty)
{
    const TestHost host;
    for (const auto& [told, shown] : {std::pair{250, 100}, {-3, 0}, {40, 40}}) {
        StatusSetBar(told);
        EXPECT_EQ(PartOf<StatusBar>().percent, shown);
    }
}

} // namespace
} // namespace host::test
