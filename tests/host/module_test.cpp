#include "c4d_plugin.h"
#include "core/string_access.h"
#include "support/test_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> calls; // "A1" for action 1 of module A, "A:1000" for a message
std::string pathsTold;

// What a module of this process answers where it does not simply agree.
struct Answers {
    Int32 version = C4DPL_VERSION;
    Int32 load = 1;
    Int32 systemStart = 1;
    Int32 start = 1;
    Int32 priority = 0;
};
Answers answersOf[3];

template <int Which> Int32 entry(Int32 action, void* first, void* second, void*)
{
    const std::string name(1, static_cast<char>('A' + Which));
    const Answers& answers = answersOf[Which];
    if (action != C4DPL_MESSAGE) calls.push_back(name + std::to_string(action));
    switch (action) {
    case C4DPL_INIT_VERSION: return answers.version;
    case C4DPL_INIT_SYS: return answers.load;
    case C4DPL_INIT: pathsTold += Utf8Of(GeGetPluginPath().GetString()); return answers.start;
    case C4DPL_MESSAGE: break;
    default: return 1;
    }
    const auto id = static_cast<Int32>(reinterpret_cast<Int>(first));
    calls.push_back(name + ":" + std::to_string(id));
    if (id == C4DMSG_PRIORITY) *static_cast<Int32*>(second) = answers.priority;
    return id == C4DPL_INIT_SYS ? answers.systemStart : 1;
}

struct ModulesTest : testing::Test {
    void SetUp() override
    {
        calls.clear();
        pathsTold.clear();
        for (Answers& answers : answersOf) answers = {};
    }
    void attachAll()
    {
        host.modules().attach(entry<0>, "/a/a.so");
        host.modules().attach(entry<1>, "/b/b.so");
        host.modules().attach(entry<2>, "/c/c.so");
    }

    TestHost host;
};

TEST_F(ModulesTest, AreStartedByPriorityAndEndedBackwards)
{
    answersOf[0].priority = -500;
    attachAll();
    EXPECT_THAT(calls, ElementsAre("A4", "A1", "B4", "B1", "C4", "C1"));
    calls.clear();
    host.modules().start();
    EXPECT_THAT(calls, ElementsAre("A:0", "B:0", "C:0", "B:1", "C:1", "A:1", "B2", "C2", "A2", "B:1000", "C:1000",
                                   "A:1000", "B:1001188", "C:1001188", "A:1001188", "B:450000215", "C:450000215",
                                   "A:450000215", "B:1002", "C:1002", "A:1002"));
    EXPECT_EQ(pathsTold, "/b/c/a"); // each its own folder
    calls.clear();
    host.end();
    EXPECT_THAT(calls,
                ElementsAre("B:1001084", "C:1001084", "A:1001084", "B:1001", "C:1001", "A:1001", "A3", "C3", "B3"));
}

TEST_F(ModulesTest, WhoRefusesItsSystemStartHearsOnlyItsEnd)
{
    answersOf[0].systemStart = C4DPL_ERROR;
    answersOf[1].start = 0; // is heard, not punished
    attachAll();
    host.modules().start();
    EXPECT_THAT(calls, Not(testing::Contains("A2")));
    EXPECT_THAT(calls, Not(testing::Contains("A:1000")));
    EXPECT_THAT(calls, testing::IsSupersetOf({"B:1000", "C:1000"}));
    EXPECT_THAT(host.console, ElementsAre(HasSubstr("/a/a.so"), HasSubstr("/b/b.so")));
    host.end();
    EXPECT_EQ(calls.back(), "A3");
}

TEST_F(ModulesTest, WhoDoesNotWantThisHostIsNotLoaded)
{
    answersOf[0].version = 4;
    answersOf[1].load = C4DPL_ERROR_VERSION;
    attachAll();
    EXPECT_EQ(host.modules().count(), 1u);
    EXPECT_FALSE(host.modules().attach(entry<2>, "/c/c.so")); // is there already
    host.modules().start();
    host.end();
    EXPECT_THAT(host.console,
                ElementsAre(HasSubstr("/a/a.so: it speaks version 4"), HasSubstr("/b/b.so: it needs a newer"),
                            HasSubstr("/c/c.so: it is loaded already")));
    EXPECT_THAT(calls, Not(testing::Contains("A1")));
    EXPECT_THAT(calls, Not(testing::Contains("B3")));
}

TEST_F(ModulesTest, WhatIsNoPlugInIsNamedWithItsCause)
{
    struct Row {
        std::string file;
        const char* cause;
    };
    std::vector<Row> rows = {
        {host.folder.write("text.so", "no library at all"), ""},
        {host.folder.write("empty.so", ""), ""},
        {host.folder.path("missing.so"), "No such file"},
        {host.folder.root.string(), ""},
        {VERDANTH_HOST_LIBRARY, "without the entry point c4d_main"},
    };
    const std::string library = vdt::test::BytesOfFile(VERDANTH_MODULE);
    constexpr size_t kBeforeItsEnd = 8192; // code and data go on behind it, whatever the build
    for (size_t size = 1; size <= kBeforeItsEnd; size *= 2)
        rows.push_back({host.folder.write("cut" + std::to_string(size) + ".so", library.substr(0, size)), ""});
    rows.back().cause = "the end is missing";
    for (const Row& row : rows) {
        SCOPED_TRACE(row.file);
        EXPECT_FALSE(host.modules().load(row.file));
        const std::string line = host.console.back();
        const size_t cause = line.find(row.file + ": ");
        ASSERT_NE(cause, std::string::npos);
        EXPECT_GT(line.size(), cause + row.file.size() + 5);
        EXPECT_THAT(line, HasSubstr(row.cause));
    }
    EXPECT_EQ(host.modules().count(), 0u);
}

} // namespace
} // namespace host::test
