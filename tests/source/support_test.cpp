#include "core/console.h"
#include "core/string_access.h"
#include "support/c4d_message_handler.h"
#include "support/library_location.h"
#include "support/model_path.h"
#include "support/plugin_ids.h"
#include "support/test_host.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace host::test;

namespace {

// An environment variable for the length of a test; null takes it away.
class Variable {
public:
    Variable(const char* variable, const char* value) : name(variable)
    {
        if (const char* old = std::getenv(name)) before = old;
        set(value);
    }
    ~Variable() { set(before ? before->c_str() : nullptr); }

private:
    void set(const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }

    const char* name;
    std::optional<std::string> before;
};

TEST(MessageHandler, TellsTheHostsConsoleStatusBarAndBoxes)
{
    TestHost host;
    const host::StatusBar& bar = host::PartOf<host::StatusBar>();
    C4dMessageHandler quiet;
    quiet.beginProgress("Reading \xC3\xB6");
    EXPECT_EQ(bar.text, "Reading \xC3\xB6");
    for (const auto& [fraction, percent] :
         {std::pair{0.5f, 50}, {0.999f, 99}, {7.0f, 100}, {-1.0f, 0}, {std::nanf(""), 0}, {INFINITY, 100}}) {
        quiet.progress(fraction);
        EXPECT_EQ(bar.percent, percent);
    }
    quiet.endProgress();
    EXPECT_EQ(bar.text, "");
    quiet.message("one");
    quiet.warning("two");
    quiet.error("three");
    quiet.debug("four");
    EXPECT_EQ(host.console, (std::vector<std::string>{"one", "two", "three"}));
    EXPECT_FALSE(quiet.isCancelled());

    C4dMessageHandler loud(nullptr, true);
    loud.error("five");
    ASSERT_EQ(host.dialogs.messages.size(), 1u);
    EXPECT_EQ(host.dialogs.messages[0].text, "five");
    EXPECT_EQ(host.console.size(), 3u);
}

TEST(MessageHandler, IsCancelledOnceItsThreadIsToStop)
{
    struct Loader final : C4DThread {
        ~Loader() override { End(); }
        void Main() override
        {
            C4dMessageHandler handler(Get());
            while (!handler.isCancelled()) GeSleep(0);
        }
        const Char* GetThreadName() override { return "loader"; }
    };
    const TestHost host;
    Loader loader;
    ASSERT_TRUE(loader.Start());
    loader.End();
    EXPECT_FALSE(loader.IsRunning());
}

TEST(ModelFiles, AreToldByAllSuffixesTogether)
{
    const TestHost host;
    struct Row {
        const char* name;
        const char* suffix;
        bool model;
    };
    const Row rows[] = {
        {"oak.vdt", "vdt", true},
        {"OAK.VDT.GZ", "vdt.gz", true},
        {"a.b.vdt", "b.vdt", false},
        {"oak.gz", "gz", false},
        {"oak", "", false},
        {"", "", false},
        {"/a.b/oak.vdt", "vdt", true},
        {"C:\\a.b\\oak.vdt.gz", "vdt.gz", true},
        {"oak.longersuffix.vdt", "longersuffix.vdt", false},
        {"oak.vdt.", "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ToUtf8(GetFullSuffix(row.name)), row.suffix);
        EXPECT_EQ(IsModelFile(row.name) != 0, row.model);
    }
}

TEST(ModelFiles, HaveOneSpellingAsKeys)
{
    const TestHost host;
    EXPECT_EQ(ModelPath("/lib/oak/oak.vdt"), "\\lib\\oak\\oak.vdt");
    EXPECT_EQ(ModelPath(Filename(ToHostString("C:/\xC3\xB6/a\\b.vdt"))), "C:\\\xC3\xB6\\a\\b.vdt");
    EXPECT_EQ(ModelPath(Filename()), "");
}

TEST(ModelFiles, ThatMovedAreFoundOneFolderUpOrAmongTheTextures)
{
    TestHost host;
    host.folder.write("lib/oak/oak_1.vdt", "");
    host.folder.write("lib/up.vdt", "");
    host.folder.write("scene/tex/far.vdt", "");
    const auto windows = [](std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        return path;
    };
    const ModelPathMapper mapper;
    const std::string there = host.folder.path("lib/oak/oak_1.vdt");
    EXPECT_EQ(mapper.map(there), there);
    EXPECT_EQ(mapper.map(windows(there)), windows(there));
    EXPECT_EQ(mapper.map(host.folder.path("lib/oak/up.vdt")), windows(host.folder.path("lib/up.vdt")));

    const std::string far = host.folder.path("lib/oak/far.vdt");
    EXPECT_EQ(mapper.map(far), far); // nowhere yet
    BaseDocument* document = BaseDocument::Alloc();
    document->SetDocumentPath(Filename(ToHostString(host.folder.path("scene"))));
    InsertBaseDocument(document);
    SetActiveDocument(document);
    EXPECT_EQ(mapper.map(far), windows(host.folder.path("scene/tex/far.vdt")));
    EXPECT_EQ(mapper.map(""), "");
}

TEST(LibraryLocation, ComesFromTheUserThenFromTheInstaller)
{
    TestHost host;
    const vdt::test::TemporaryFolder configuration;
    const Variable home("XDG_CONFIG_HOME", configuration.root.c_str());
    const auto location = [] { return ToUtf8(GetPlantLibraryPath()); };
    {
        const Variable none("VERDANTH_PLANTS", nullptr);
        EXPECT_EQ(location(), "");
        configuration.write("verdanth/plants", "/opt/plants\r\nmore\n");
        EXPECT_EQ(location(), "/opt/plants");
        configuration.write("verdanth/plants", "/opt/\xC3(");
        testing::internal::CaptureStderr();
        EXPECT_EQ(location(), "");
        EXPECT_NE(testing::internal::GetCapturedStderr().find("bad conversion"), std::string::npos);
    }
    const Variable environment("VERDANTH_PLANTS", "/env/plants");
    EXPECT_EQ(location(), "/env/plants");
    BaseContainer settings;
    settings.SetFilename(kSettingLibraryFolder, Filename("D:\\plants"));
    SetWorldPluginData(kPlantBrowserId, settings);
    EXPECT_EQ(location(), "D:\\plants");
    settings.SetFilename(kSettingLibraryFolder, Filename());
    SetWorldPluginData(kPlantBrowserId, settings);
    EXPECT_EQ(location(), "/env/plants");
}

TEST(LibraryLocation, TextsFollowTheHostsLanguage)
{
    struct Row {
        const char* host;
        vdt::LocalizedTexts texts;
        const char* text;
    };
    const Row rows[] = {
        {"DE", {{"de", "Eiche"}, {"en", "Oak"}}, "Eiche"},
        {"DE", {{"fr", "Ch\xC3\xAAne"}, {"en", "Oak"}}, "Oak"},
        {"FR", {{"fr", "Ch\xC3\xAAne"}}, "Ch\xC3\xAAne"},
        {"KR", {{"ko", "1"}, {"en", "2"}}, "1"},
        {"KR", {{"en", "2"}, {"en-US", "3"}}, "2"},
        {"KR", {{"en-US", "3"}}, "3"},
        {"KR", {{"de", "4"}}, ""},
        {"XX", {{"de", "5"}, {"en", "6"}}, "6"}, // no language of the host's
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.host) + " " + row.text);
        const TestHost host({.language = row.host});
        EXPECT_EQ(ToUtf8(GetLocalizedText(row.texts)), row.text);
    }
}

} // namespace
