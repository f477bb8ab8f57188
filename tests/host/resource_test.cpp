#include "core/resource_folder.h"
#include "core/string_access.h"
#include "support/test_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::test {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

std::vector<std::string> saidOf(const ResourceFaults& faults)
{
    std::vector<std::string> lines;
    for (const ResourceFault& fault : faults.list()) lines.push_back(ToText(fault));
    return lines;
}

// A statement and all below it on one line: "LONG A { MIN 1; CYCLE { B~7; } }".
std::string lineOf(const ResourceStatement& statement)
{
    std::string line = statement.keyword;
    for (const ResourceValue& value : statement.values) {
        const bool isText = value.kind == ResourceValue::Kind::Text;
        line += isText ? " \"" + value.text + "\"" : " " + value.text;
    }
    if (!statement.icon.empty()) line += "~" + statement.icon;
    if (!statement.hasBlock) return line + ";";
    line += " {";
    for (const ResourceStatement& child : statement.children) line += " " + lineOf(child);
    return line + " }";
}

TEST(ResourceSymbols, CountOnAndTakeBothKindsOfNumbers)
{
    ResourceFaults faults;
    const SymbolTable table = ParseSymbols({"a.h", R"(// a guard, as compilers want it
#ifndef A_H__
#define A_H__
enum {
    FIRST, SECOND, /* a jump, over
    two lines */ TENTH = 10, ELEVENTH,
    HEX = 0x1F, AFTER_HEX, NEGATIVE = -2, AFTER_NEGATIVE, HIGH = 0xFFFFFFFF, ALIAS = TENTH, // the last has a comma
};
enum Named { MORE = 400006001 };
#endif
)"},
                                           faults);
    EXPECT_THAT(table.inOrder, ElementsAre("FIRST", "SECOND", "TENTH", "ELEVENTH", "HEX", "AFTER_HEX", "NEGATIVE",
                                           "AFTER_NEGATIVE", "HIGH", "ALIAS", "MORE"));
    EXPECT_THAT(table.values, UnorderedElementsAre(Pair("FIRST", 0), Pair("SECOND", 1), Pair("TENTH", 10),
                                                   Pair("ELEVENTH", 11), Pair("HEX", 31), Pair("AFTER_HEX", 32),
                                                   Pair("NEGATIVE", -2), Pair("AFTER_NEGATIVE", -1), Pair("HIGH", -1),
                                                   Pair("ALIAS", 10), Pair("MORE", 400006001)));
    EXPECT_THAT(saidOf(faults), ElementsAre());
}

TEST(ResourceSymbols, LoseNoMoreThanTheEntryThatIsWrong)
{
    struct Row {
        const char* text;
        std::vector<std::string> symbols;
        std::vector<std::string> faults;
    };
    const Row rows[] = {
        {"enum { A = 1 << 3, B };", {"A", "B"}, {"a.h:1: expected \",\" or \"}\", found \"<\""}},
        {"enum { A = 1, B = X, C };", {"A", "C"}, {"a.h:1: expected a number of 32 bits, found \"X\""}},
        {"enum {\n A = 2147483647,\n B,\n C = 3 };",
         {"A", "C"},
         {"a.h:3: counting has left the range of 32 bits at \"B\""}},
        {"enum { A = 2147483648, B };", {"B"}, {"a.h:1: expected a number of 32 bits, found \"2147483648\""}},
        {"enum { A, A = 0, A = 1, B };", {"A", "B"}, {"a.h:1: \"A\" has another number already"}},
        {"struct S { int i; }; enum { A };", {"A"}, {"a.h:1: expected \"enum\", found \"struct\""}},
        {"enum { A, B",
         {"A", "B"},
         {"a.h:1: expected \",\" or \"}\", found the file's end", "a.h:1: expected \";\", found the file's end"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        ResourceFaults faults;
        EXPECT_EQ(ParseSymbols({"a.h", row.text}, faults).inOrder, row.symbols);
        EXPECT_EQ(saidOf(faults), row.faults);
    }
}

TEST(ResourceStrings, KnowEscapesAndUtf8)
{
    struct Row {
        const char* written;
        const char* text;
        size_t faultCount;
    };
    const Row rows[] = {
        {"\"two\\nlines\"", "two\nlines", 0},
        {R"("a \"quote\" and a \\")", "a \"quote\" and a \\", 0},
        {R"("\u00dcber \u00DF")",
         "\xC3\x9C"
         "ber \xC3\x9F",
         0},
        {R"("\ud83c\udf33")", "\xF0\x9F\x8C\xB3", 0},
        {"\"\xC3\x9C"
         "ber\"",
         "\xC3\x9C"
         "ber",
         0},
        {"\"// no comment, /* neither */ #\"", "// no comment, /* neither */ #", 0},
        {"\"\xC3 cut\"", "\xEF\xBF\xBD cut", 1},
        {R"("\ud83c alone")", "\xEF\xBF\xBD alone", 1},
        {R"("\u00")", "00", 1},
        {R"("\q")", "q", 1},
        {"\"left open", "left open", 2}, // and the semicolon is missed
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.written);
        ResourceFaults faults;
        const std::string before = "STRINGTABLE { A ", after = row.faultCount == 2 ? "\n; B \"b\"; }" : "; B \"b\"; }";
        const StringTable table = ParseStrings({"a.str", before + row.written + after}, faults);
        ASSERT_EQ(table.entries.size(), 2u);
        EXPECT_EQ(table.entries[0].text, row.text);
        EXPECT_EQ(table.entries[1].text, "b");
        EXPECT_EQ(faults.list().size(), std::min(row.faultCount, size_t{1}));
    }
}

TEST(ResourceStrings, KeepBothNamesAndSkipEntriesWithout)
{
    ResourceFaults faults;
    const StringTable table =
        ParseStrings({"a.str", "\xEF\xBB\xBF// a mark first\nSTRINGTABLE Oname\n{\n"
                               "Oname \"Title\";\nA \"Long\" \"Short\";\nB;\n42 \"c\";\nD \"d\"\n}"},
                     faults);
    EXPECT_EQ(table.name, "Oname");
    std::vector<std::string> entries;
    for (const StringEntry& entry : table.entries)
        entries.push_back(entry.symbol + "=" + entry.text + "," + entry.shortText);
    EXPECT_THAT(entries, ElementsAre("Oname=Title,", "A=Long,Short", "D=d,"));
    EXPECT_THAT(saidOf(faults),
                ElementsAre("a.str:6: \"B\" has no text", "a.str:7: expected a symbol, found \"42\"",
                            "a.str:7: expected a symbol, found \"c\"", "a.str:9: expected \";\", found \"}\""));
}

TEST(ResourceLayout, IsATreeOfStatements)
{
    ResourceFaults faults;
    const ResourceLayout layout = ParseLayout({"a.res", R"(CONTAINER Oname {
    NAME Oname; INCLUDE Obase;
    GROUP ID_OBJECTPROPERTIES {
        DEFAULT 1;
        GROUP { COLUMNS 2; LONG A { MIN -1; MAX 0x10; CYCLE { B; C~1027000; -1; D~ICON; } } }
        REAL E { UNIT PERCENT; MIN .5; MAX 1e2; MINEX; }; // a semicolon too many
        STRING F { DEFAULT "text"; }
    }
})"},
                                              faults);
    EXPECT_EQ(layout.kind + " " + layout.name, "CONTAINER Oname");
    std::vector<std::string> lines;
    for (const ResourceStatement& statement : layout.statements) lines.push_back(lineOf(statement));
    EXPECT_THAT(lines,
                ElementsAre("NAME Oname;", "INCLUDE Obase;",
                            "GROUP ID_OBJECTPROPERTIES { DEFAULT 1; GROUP { COLUMNS 2; LONG A { MIN -1; MAX 0x10; "
                            "CYCLE { B; C~1027000; -1; D~ICON; } } } REAL E { UNIT PERCENT; MIN .5; MAX 1e2; "
                            "MINEX; } STRING F { DEFAULT \"text\"; } }"));
    EXPECT_THAT(saidOf(faults), ElementsAre());
}

TEST(ResourceLayout, TellsWhereItIsBrokenAndKeepsTheRest)
{
    struct Row {
        const char* text;
        const char* kept;
        std::vector<std::string> faults;
    };
    const Row rows[] = {
        {"CONTAINER A {\n BOOL B { DEFAULT 1 }\n BOOL C { }\n}",
         "BOOL B { DEFAULT 1; } BOOL C { }",
         {"a.res:2: expected \";\" behind \"DEFAULT\""}},
        {"CONTAINER A {\n = BOOL B { }\n}", "BOOL B { }", {"a.res:2: a statement cannot begin with \"=\""}},
        {"CONTAINER A {\n BOOL B { }", "BOOL B { }", {"a.res:2: a brace is left open"}},
        {"CONTAINER A { BOOL B { } } }", "BOOL B { }", {"a.res:1: what stands behind the last brace is not read"}},
        {"CONTAINER A {\n\x01\x02 BOOL B { }\n}", "BOOL B { }", {"a.res:2: what stands here has no meaning"}},
        {"CONTAINER A { BOOL B { } /* open",
         "BOOL B { }",
         {"a.res:1: a comment is left open", "a.res:1: a brace is left open"}},
        {"CONTAINER A { REAL B { MIN 1e999; } }", "REAL B { MIN 1e999; }", {"a.res:1: \"1e999\" is no number"}},
        {"", "", {"a.res:1: expected \"CONTAINER\", found the file's end"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        ResourceFaults faults;
        std::string kept;
        for (const ResourceStatement& statement : ParseLayout({"a.res", row.text}, faults).statements) {
            kept += (kept.empty() ? "" : " ") + lineOf(statement);
        }
        EXPECT_EQ(kept, row.kept);
        EXPECT_EQ(saidOf(faults), row.faults);
    }
}

TEST(ResourceLayout, HasBoundsThatNoFileLeaves)
{
    std::string deep = "CONTAINER A { ", many = deep, faulty = deep;
    for (int i = 0; i < 200'000; ++i) {
        deep += "GROUP { ";
        many += "B;";
        faulty += "= ";
    }
    for (const std::string& text : {deep, many, faulty}) {
        ResourceFaults faults;
        const ResourceLayout layout = ParseLayout({"a.res", text}, faults);
        EXPECT_LE(layout.statements.size(), 100'000u);
        EXPECT_FALSE(faults.empty());
        EXPECT_LE(faults.list().size(), ResourceFaults::kMostFaults + 1);
    }
}

// A plug-in's folder "res" with three texts.
struct ResourceFolderTest : testing::Test {
    ResourceFolderTest()
    {
        files.write("res/c4d_symbols.h", "enum { IDS_A = 1, IDS_B, IDS_C };");
        files.write("res/strings_us/c4d_strings.str", "STRINGTABLE { IDS_A \"A # of #\"; IDS_B \"B\"; }");
    }
    Filename folder() const { return Filename(TextOf(files.path("res"))); }

    vdt::test::TemporaryFolder files;
};

TEST_F(ResourceFolderTest, FallsBackToEnglishFileByFile)
{
    files.write("res/strings_de/c4d_strings.str", "STRINGTABLE { IDS_A \"Ein \\u00c4\"; }");
    struct Row {
        const char* language;
        const char* a;
        const char* b;
    };
    const Row rows[] = {{"US", "A # of #", "B"}, {"DE", "Ein \xC3\x84", "StringNotFound"}, {"JP", "A # of #", "B"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.language);
        const TestHost host({.language = row.language});
        GeResource texts;
        ASSERT_TRUE(texts.Init(folder()));
        EXPECT_EQ(Utf8Of(texts.LoadString(1)), row.a);
        EXPECT_EQ(Utf8Of(texts.LoadString(2)), row.b); // a file of a language is complete or not: nothing is mixed in
    }
}

TEST_F(ResourceFolderTest, TellsOfMissingTextsAndSaysNothingBeforeItIsRead)
{
    TestHost host;
    GeResource texts;
    EXPECT_EQ(Utf8Of(texts.LoadString(1)), "");
    EXPECT_FALSE(texts.Init(Filename(TextOf(files.path("elsewhere")))));
    EXPECT_TRUE(host.said("c4d_symbols.h"));
    EXPECT_FALSE(texts.Init(folder())); // the first answer stays
    texts.Free();
    ASSERT_TRUE(texts.Init(folder()));
    EXPECT_EQ(Utf8Of(texts.LoadString(3)), "StringNotFound");

    files.write("res/strings_us/c4d_strings.str", "STRINGTABLE {\n IDS_A \"a\"\n; IDS_D \"d\"; IDS_B \"b\"; }");
    texts.Free();
    ASSERT_TRUE(texts.Init(folder()));
    EXPECT_EQ(Utf8Of(texts.LoadString(2)), "b");
    EXPECT_TRUE(host.said("c4d_strings.str:3: \"IDS_D\" has no number"));
}

TEST_F(ResourceFolderTest, PutsParametersInThePlacesOfMarks)
{
    const TestHost host;
    FreeResource();
    ASSERT_TRUE(resource.Init(folder()));
    EXPECT_EQ(Utf8Of(GeLoadString(1, String("1"), String("2"))), "A 1 of 2");
    EXPECT_EQ(Utf8Of(GeLoadString(1, String("1"))), "A 1 of #");
    EXPECT_EQ(Utf8Of(GeLoadString(1, String("1"), String("2"), String("3"))), "");
    EXPECT_EQ(Utf8Of(GeLoadString(2, String("1"))), "");
    EXPECT_EQ(Utf8Of(GeLoadString(1, String("(#)"), String("2"))), "A (2) of #");
    FreeResource();
}

TEST_F(ResourceFolderTest, RefusesFilesThatNobodyWroteByHand)
{
    TestHost host;
    files.write("res/strings_us/c4d_strings.str", std::string(kLargestResource + 1, ' '));
    GeResource texts;
    EXPECT_FALSE(texts.Init(folder()));
    EXPECT_TRUE(host.said("too large"));
}

} // namespace
} // namespace host::test
