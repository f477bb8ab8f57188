#include "core/settings.h"
#include "core/string_access.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

namespace host::test {
namespace {

constexpr Int32 kFirst = 1029678, kSecond = 1020000;

BaseContainer someSettings()
{
    BaseContainer inner;
    inner.SetFloat(1, 0.1);
    inner.SetVector(2, Vector(1, -2, 3e300));
    BaseContainer settings;
    settings.SetString(1, TextOf("\xC3\x96kologie \xF0\x9F\x8C\xB3"));
    settings.SetFilename(1003, Filename("C:\\plants\\oak"));
    settings.SetContainer(5, inner);
    settings.SetInt64(6, Int64{1} << 62);
    settings.SetBool(7, true);
    return settings;
}

TEST(Settings, ComeBackInTheNextRun)
{
    const vdt::test::TemporaryFolder folder;
    const TestHostOptions options{.settingsFile = folder.root / "settings"};
    for (int run = 0; run < 3; ++run) {
        TestHost host(options);
        if (run == 0) {
            SetWorldPluginData(kFirst, someSettings());
            GetWorldContainerInstance()->SetBool(WPREF_CENTER, true);
            continue;
        }
        const BaseContainer* settings = GetWorldPluginData(kFirst);
        ASSERT_TRUE(settings);
        EXPECT_TRUE(*settings == someSettings());
        EXPECT_TRUE(GetWorldContainerInstance()->GetBool(WPREF_CENTER));
        EXPECT_EQ(GetWorldPluginData(kSecond), nullptr);
        EXPECT_TRUE(host.console.empty());
    }
}

TEST(Settings, AreMergedOrReplaced)
{
    const TestHost host;
    SetWorldPluginData(kFirst, someSettings());
    BaseContainer more;
    more.SetBool(7, false);
    more.SetInt32(8, 8);
    SetWorldPluginData(kFirst, more, true);
    const BaseContainer* settings = GetWorldPluginData(kFirst);
    EXPECT_FALSE(settings->GetBool(7, true));
    EXPECT_EQ(settings->GetInt32(8), 8);
    EXPECT_EQ(settings->GetInt64(6), Int64{1} << 62);
    SetWorldPluginData(kFirst, more, false);
    EXPECT_TRUE(*GetWorldPluginData(kFirst) == more);
}

TEST(Settings, WhatIsDamagedIsToldAndTheRestKept)
{
    const vdt::test::TemporaryFolder folder;
    const std::filesystem::path file = folder.root / "settings";
    {
        const TestHost host({.settingsFile = file});
        SetWorldPluginData(kSecond, someSettings());
        SetWorldPluginData(kFirst, someSettings());
    }
    const std::string whole = folder.read("settings");
    ASSERT_GT(whole.size(), 100u);

    size_t firstKept = 0, untold = 0;
    for (size_t size = 0; size < whole.size(); size += 1 + size / 12) {
        SCOPED_TRACE(size);
        const std::string cut = whole.substr(0, size);
        folder.write("settings", cut);
        const TestHost host({.settingsFile = file});
        const BaseContainer* kept = GetWorldPluginData(kSecond); // the lower id stands before the other
        firstKept += kept && *kept == someSettings();
        if (host.said(file.string()))
            EXPECT_EQ(folder.read("settings.damaged"), cut);
        else
            ++untold;
    }
    EXPECT_GE(firstKept, 5u);
    EXPECT_LE(untold, 2u); // cut exactly between two plug-ins' settings

    for (size_t at = 0; at < whole.size(); at += 29) {
        SCOPED_TRACE(at);
        std::string changed = whole;
        changed[at] = static_cast<char>(~changed[at]);
        folder.write("settings", changed);
        const TestHost host({.settingsFile = file});
        GetWorldPluginData(kFirst);
        SetWorldPluginData(kFirst, someSettings(), false);
        EXPECT_TRUE(*GetWorldPluginData(kFirst) == someSettings());
    }
}

TEST(Settings, WhereNothingCanBeWrittenTheHostSaysSo)
{
    TestHost host({.settingsFile = "/proc/no/such/folder/settings"});
    SetWorldPluginData(kFirst, someSettings());
    host.end();
    EXPECT_TRUE(host.said("/proc/no/such/folder/settings"));
}

} // namespace
} // namespace host::test
