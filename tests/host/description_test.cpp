#include "c4d.h"
#include "c4d_resource.h"
#include "core/base_descriptions.h"
#include "core/description_builder.h"
#include "core/node_class.h"
#include "core/string_access.h"
#include "obase.h"
#include "support/test_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

namespace host::test {
namespace {

using testing::ElementsAre;

class OneParent final : public DescriptionSurroundings {
public:
    const StaticDescription* included(std::string_view name) override { return name == "Pbase" ? &*parent : nullptr; }
    CustomDataTypeClass* dataType(std::string_view) override { return nullptr; }

    std::unique_ptr<StaticDescription> parent;
};

// One description built of texts, and what was said of them.
struct Built {
    explicit Built(const std::string& layout, const std::string& symbols = "", const std::string& strings = "")
        : surroundings(std::make_unique<OneParent>())
    {
        ResourceFaults parentFaults;
        surroundings->parent =
            BuildDescription({{"p.res", "CONTAINER Pbase { GROUP G_BASIC { STRING P_NAME { } BOOL P_ON { } GROUP { } } "
                                        "GROUP G_MAIN { DEFAULT 1; } }"},
                              {"p.h", "enum { G_BASIC = 1, G_MAIN, P_NAME = 900, P_ON };"},
                              {"p.str", "STRINGTABLE Pbase { G_BASIC \"Basic\"; G_MAIN \"Main\"; P_NAME \"Name\"; }"}},
                             *surroundings, parentFaults);
        EXPECT_TRUE(parentFaults.empty());
        ResourceFaults faults;
        description = BuildDescription(
            {{"a.res", layout}, {"a.h", symbols}, {"a.str", "STRINGTABLE A {" + strings + "}"}}, *surroundings, faults);
        for (const ResourceFault& fault : faults.list()) said.push_back(ToText(fault));
    }

    BaseContainer containerOf(Int32 id) const
    {
        const DescribedParameter* parameter = description->find(id);
        return parameter ? parameter->container : BaseContainer();
    }

    std::unique_ptr<OneParent> surroundings;
    std::unique_ptr<StaticDescription> description;
    std::vector<std::string> said;
};

std::vector<std::string> entriesOf(const BaseContainer& container, Int32 key)
{
    std::vector<std::string> entries;
    const BaseContainer* held = container.GetContainerInstance(key);
    for (Int32 i = 0; held && held->GetIndexData(i); ++i) {
        entries.push_back(std::to_string(held->GetIndexId(i)) + "=" + Utf8Of(held->GetIndexData(i)->GetString()));
    }
    return entries;
}

TEST(DescriptionBuilder, KeepsValuesInTheUnitsOfTheProgram)
{
    const Built built(R"(CONTAINER A {
        REAL SHARE { UNIT PERCENT; MIN 0.0; MAX 200.0; STEP 7; DEFAULT 50; MINSLIDER 0; MAXSLIDER 100; }
        REAL ANGLE { DEFAULT 90; MAX 180.0; UNIT DEGREE; }
        REAL PLAIN { MIN 0.25; MINEX; UNIT METER; }
        LONG COUNT { MIN 1; MAX COUNT_MOST; DEFAULT 0x10; }
        VECTOR PLACE { DEFAULT 1 -2 3; MIN -5; UNIT PERCENT; }
        COLOR TINT { DEFAULT 0.5 0.25 1; }
        BOOL SWITCH { DEFAULT 5; }
        BASETIME WHEN { MIN 0.5; }
        STRING WORDS { DEFAULT "none"; })"
                      "}",
                      "enum { SHARE = 1000, ANGLE, PLAIN, COUNT, COUNT_MOST = 99, PLACE = 1004, TINT, SWITCH, WHEN, "
                      "WORDS };");
    EXPECT_THAT(built.said, ElementsAre());
    const BaseContainer share = built.containerOf(1000);
    EXPECT_EQ(share.GetFloat(DESC_MAX), 2.0);
    EXPECT_EQ(share.GetFloat(DESC_STEP), 0.07);
    EXPECT_EQ(share.GetFloat(DESC_MAXSLIDER), 1.0);
    EXPECT_EQ(share.GetInt32(DESC_UNIT), DESC_UNIT_PERCENT);
    EXPECT_EQ(built.description->defaultOf(1000).GetFloat(), 0.5);
    EXPECT_NEAR(built.containerOf(1001).GetFloat(DESC_MAX), std::numbers::pi, 1e-15); // wherever the unit stands
    EXPECT_NEAR(built.description->defaultOf(1001).GetFloat(), std::numbers::pi / 2, 1e-15);
    EXPECT_EQ(built.containerOf(1002).GetFloat(DESC_MIN), 0.25);
    EXPECT_TRUE(built.containerOf(1002).GetBool(DESC_MINEX));
    EXPECT_EQ(built.containerOf(1003).GetInt32(DESC_MAX), 99);
    EXPECT_EQ(built.containerOf(1003).GetType(DESC_MAX), DA_LONG);
    EXPECT_EQ(built.description->defaultOf(1003).GetInt32(), 16);
    EXPECT_TRUE(built.description->defaultOf(1004).GetVector() == Vector(0.01, -0.02, 0.03));
    EXPECT_TRUE(built.containerOf(1004).GetVector(DESC_MIN) == Vector(-0.05, -0.05, -0.05));
    EXPECT_TRUE(built.description->defaultOf(1005).GetVector() == Vector(0.5, 0.25, 1));
    EXPECT_EQ(built.description->defaultOf(1006).GetInt32(), 1);
    EXPECT_EQ(built.containerOf(1006).GetDataPointer(DESC_GUIOPEN), nullptr); // that is for groups
    EXPECT_EQ(built.containerOf(1007).GetTime(DESC_MIN).Get(), 0.5);
    EXPECT_EQ(Utf8Of(built.description->defaultOf(1008).GetString()), "none");
}

TEST(DescriptionBuilder, ListsCyclesInTheOrderOfTheFile)
{
    const Built built(
        "CONTAINER A { LONG MODE { CYCLE { C; A~ICON; -1; B~77; -1; C; UNKNOWN; } } LONG EMPTY { CYCLE { } } }",
        "enum { MODE = 1000, EMPTY, A = 5, B = 6, C = 2, ICON = 300 };", "A \"An \\u00c4\"; C \"Last\";");
    EXPECT_THAT(entriesOf(built.containerOf(1000), DESC_CYCLE),
                ElementsAre("2=Last", "5=An \xC3\x84", "-1=", "6=B", "-1="));
    EXPECT_EQ(built.containerOf(1000).GetContainer(DESC_CYCLEICONS).GetInt32(5), 300);
    EXPECT_EQ(built.containerOf(1000).GetContainer(DESC_CYCLEICONS).GetInt32(6), 77);
    EXPECT_EQ(Utf8Of(built.containerOf(1000).GetContainer(DESC_CYCLESYMBOLS).GetString(5)), "A");
    EXPECT_EQ(built.containerOf(1001).GetType(DESC_CYCLE), DA_CONTAINER); // there for code to fill
    EXPECT_THAT(built.said, ElementsAre("a.res:1: \"C\" has the number of another entry",
                                        "a.res:1: \"UNKNOWN\" is neither a symbol nor a whole number"));
}

TEST(DescriptionBuilder, PutsOwnElementsIntoGroupsOfTheParent)
{
    const Built built(
        "CONTAINER A { NAME A; GROUP G_MAIN { COLUMNS 2; BOOL MINE { } GROUP { REAL INNER { } } INCLUDE Pbase; }"
        " GROUP G_OWN { OPEN; LONG P_ON { } } HIDE P_NAME; }",
        "enum { MINE = 1000, INNER, G_OWN };", "A \"Thing\"; MINE \"Mine, all mine\" \"Mine\"; G_OWN \"Own\";");
    EXPECT_THAT(built.said, ElementsAre());
    EXPECT_EQ(Utf8Of(built.description->title), "Thing");

    std::vector<std::string> lines; // name: group
    const DescriptionData& data = built.description->data;
    for (const DescribedParameter& parameter : data.parameters) {
        const DescribedParameter* group = parameter.group.GetDepth() ? data.find(parameter.group[0].id) : nullptr;
        lines.push_back(Utf8Of(parameter.container.GetString(DESC_SHORT_NAME)) + ": " +
                        (group ? Utf8Of(group->container.GetString(DESC_SHORT_NAME)) : "top"));
    }
    EXPECT_THAT(lines, ElementsAre("Basic: top", "Name: Basic", "P_ON: Own", ": Basic", "Main: top", "Mine: Main",
                                   ": Main", "INNER: ", "Own: top"));
    EXPECT_EQ(built.description->typeOf(901), DTYPE_LONG); // replaced where it stood
    EXPECT_TRUE(built.containerOf(900).GetBool(DESC_HIDE));
    EXPECT_TRUE(built.containerOf(2).GetBool(DESC_GUIOPEN));
    EXPECT_EQ(built.containerOf(2).GetInt32(DESC_COLUMNS), 2);
    EXPECT_EQ(Utf8Of(built.containerOf(1000).GetString(DESC_NAME)), "Mine, all mine");
    EXPECT_EQ(Utf8Of(built.containerOf(1000).GetString(DESC_IDENT)), "MINE");
}

TEST(DescriptionBuilder, TellsWhatItCannotUseAndKeepsTheRest)
{
    struct Row {
        const char* inside;
        const char* fault;
    };
    const Row rows[] = {
        {"FOO P0 { }", "there is no type of element called \"FOO\""},
        {"BOOL NOBODY { }", "\"NOBODY\" is neither a symbol nor a whole number"},
        {"BOOL { }", "\"BOOL\" needs a value"},
        {"BOOL P0 { } LONG P0 { }", "\"P0\" stands here a second time"},
        {"LONG P0 { MIN 0.5; }", "\"0.5\" is neither a symbol nor a whole number"},
        {"REAL P0 { MIN \"a\"; }", "\"MIN\" needs a value of the element's type"},
        {"VECTOR P0 { DEFAULT 1 2; }", "\"DEFAULT\" needs a value of the element's type"},
        {"FILENAME P0 { DEFAULT 1; }", "\"DEFAULT\" needs a value of the element's type"},
        {"REAL P0 { MIN 2; MAX 1; }", "the least value is above the greatest; neither holds"},
        {"REAL P0 { UNIT FURLONG; }", "\"UNIT\" cannot be \"FURLONG\""},
        {"REAL P0 { ANIM; }", "\"ANIM\" cannot be \"\""},
        {"REAL P0 { CUSTOMGUI NICE; }", "\"CUSTOMGUI\" cannot be \"NICE\""},
        {"REAL P0 { HIDDEN 1; }", "\"HIDDEN\" takes no value"},
        {"REAL P0 { CYCLE { } }", "\"CYCLE\" means nothing here"},
        {"HIDE P0;", "\"P0\" is not among the elements so far"},
        {"BOOL P0 { } GROUP P0 { }", "\"P0\" is no group"},
        {"GROUP P0 { FOO; }", "\"FOO\" means nothing here"},
        {"DEFAULT 1;", "there is no type of element called \"DEFAULT\""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.inside);
        const Built built("CONTAINER A {\n" + std::string(row.inside) + "\nSTRING P1 { } }", "enum { P0 = 1000, P1 };");
        EXPECT_THAT(built.said, ElementsAre("a.res:2: " + std::string(row.fault)));
        ASSERT_TRUE(built.description);
        EXPECT_EQ(built.description->typeOf(1001), DTYPE_STRING);
    }
    EXPECT_FALSE(Built("CONTAINER A { INCLUDE Missing; BOOL P0 { } }", "enum { P0 };").description);
    EXPECT_FALSE(Built("DIALOG A { }").description);
    EXPECT_TRUE(Built("CONTAINER A { }").description);
    EXPECT_FALSE(Built("nothing of the kind").description);
}

TEST(Descriptions, OfTheHostsOwnTypesHaveTheNumbersOfItsHeaders)
{
    const std::pair<const char*, const char*> rows[] = {
        {"Obase", "obase.h"},     {"Oinstance", "oinstance.h"}, {"Oxref", "oxref.h"},
        {"Tphong", "tphong.h"},   {"Ttexture", "ttexture.h"},   {"Mmaterial", "mmaterial.h"},
        {"Xbitmap", "xbitmap.h"}, {"Dbasedocument", "ddoc.h"},  {"Drendersettings", "drendersettings.h"}};
    for (const char* language : {"US", "DE"}) {
        const TestHost host({.language = language});
        for (const auto& [name, header] : rows) {
            const StaticDescription* description = FindDescription(name);
            ASSERT_TRUE(description) << name;
            ResourceFaults faults;
            const std::string text = vdt::test::BytesOfFile(std::string(VERDANTH_MODULE_FOLDER "/host/api/") + header);
            const SymbolTable symbols = ParseSymbols({header, text}, faults);
            int shared = 0; // a header may have more than is shown
            for (const auto& [symbol, number] : symbols.values) {
                const int32_t* known = description->symbols.find(symbol);
                shared += known != nullptr;
                EXPECT_EQ(known ? *known : number, number) << symbol;
            }
            EXPECT_GT(shared, 0) << header;
        }
        for (const char* name : {"Mbase", "Xbase", "Xbitmap", "Fbase"}) EXPECT_TRUE(FindDescription(name)) << name;
        EXPECT_TRUE(host.console.empty()) << host.console.front();
    }
}

TEST(Descriptions, OfTheHostsOwnTypesHaveATextForEverySymbolThatShows)
{
    for (const char* language : {"US", "DE"}) {
        const TestHost host({.language = language});
        for (const char* name : {"Oinstance", "Oxref", "Tphong", "Ttexture", "Mmaterial", "Xbitmap", "Fbase",
                                 "Dbasedocument", "Drendersettings"}) {
            for (const DescribedParameter& parameter : FindDescription(name)->data.parameters) {
                const std::string symbol = Utf8Of(parameter.container.GetString(DESC_IDENT));
                EXPECT_NE(Utf8Of(parameter.container.GetString(DESC_NAME)), symbol) << name;
                const std::vector<std::string> entries = entriesOf(parameter.container, DESC_CYCLE);
                const std::vector<std::string> symbols = entriesOf(parameter.container, DESC_CYCLESYMBOLS);
                for (size_t i = 0; i < entries.size(); ++i) EXPECT_NE(entries[i], symbols[i]);
            }
        }
    }
}

// A host that knows a plug-in's folder "res".
struct DescriptionFiles : testing::Test {
    DescriptionFiles()
    {
        files.write("res/c4d_symbols.h", "enum { IDS_A };");
        files.write("res/strings_us/c4d_strings.str", "STRINGTABLE { IDS_A \"a\"; }");
        describe("othing", "CONTAINER Othing { NAME Othing; INCLUDE Obase; GROUP ID_OBJECTPROPERTIES { LONG T_MODE { "
                           "DEFAULT 3; MIN 1; CYCLE { } } } }");
    }
    void describe(const std::string& name, const std::string& layout)
    {
        files.write("res/description/" + name + ".res", layout);
        files.write("res/description/" + name + ".h", "enum { T_MODE = 1000 };");
        files.write("res/strings_us/description/" + name + ".str", "STRINGTABLE " + name + " { T_MODE \"Mode\"; }");
    }
    LocalResource* open()
    {
        EXPECT_TRUE(texts.Init(Filename(TextOf(files.path("res")))));
        return texts.Get();
    }

    vdt::test::TemporaryFolder files;
    TestHost host;
    GeResource texts;
};

TEST_F(DescriptionFiles, AreFoundInLowerCaseAndTiedToOneId)
{
    LocalResource* folder = open();
    EXPECT_TRUE(RegisterDescription(1099100, "Othing", folder));
    EXPECT_FALSE(RegisterDescription(1099100, "Othing", folder));
    EXPECT_TRUE(RegisterDescription(1099101, "Othing"));
    for (const Int32 id : {1099100, 1099101}) {
        ASSERT_TRUE(FindDescription(id));
        EXPECT_EQ(FindDescription(id)->defaultOf(1000).GetInt32(), 3);
        EXPECT_EQ(FindDescription(id)->typeOf(ID_BASEOBJECT_COLOR), DTYPE_COLOR);
    }
    EXPECT_FALSE(FindDescription(1099102));

    describe("Othing", "CONTAINER Othing { LONG T_MODE { DEFAULT 4; } }");
    host.end();
    const TestHost other; // the exact name goes before the one in lower case
    texts.Free();
    open();
    EXPECT_EQ(FindDescription("Othing")->defaultOf(1000).GetInt32(), 4);
}

TEST_F(DescriptionFiles, ThatCannotBeReadAreToldOnceWithTheirPlace)
{
    describe("ocircle", "CONTAINER Ocircle { INCLUDE Ocircle; }");
    describe("obroken", "CONTAINER Obroken {\n BOOL T_MODE { MIN; }\n BOOL T_OTHER { }\n}");
    open();
    for (const char* name : {"Ocircle", "Onone", "../description/Othing", "", "/etc/passwd"}) {
        EXPECT_FALSE(FindDescription(name)) << name;
    }
    EXPECT_TRUE(host.said("ocircle.res:1: there is no description \"Ocircle\" to include"));
    EXPECT_TRUE(host.said("Onone: there is no description of this name"));
    ASSERT_TRUE(FindDescription("Obroken"));
    EXPECT_TRUE(host.said("obroken.res:3: \"T_OTHER\" is neither"));
    const size_t lines = host.console.size();
    FindDescription("Ocircle");
    FindDescription("Obroken");
    EXPECT_EQ(host.console.size(), lines);
}

TEST_F(DescriptionFiles, AreCopiedByWhoEditsThem)
{
    RegisterDescription(1099100, "Othing", open());
    const AutoAlloc<Description> first;
    const AutoAlloc<Description> second;
    ASSERT_TRUE(first->LoadDescription(1099100));
    BaseContainer* mode = first->GetParameterI(DescLevel(1000, DTYPE_LONG, 0), nullptr);
    ASSERT_TRUE(mode);
    mode->GetContainerInstance(DESC_CYCLE)->SetString(2, "Two");
    for (Int32 id = 2000; id < 2100; ++id) first->SetParameter(id, BaseContainer(), ID_OBJECTPROPERTIES);
    EXPECT_EQ(first->GetParameterI(1000, nullptr), mode); // stays where it is
    EXPECT_THAT(entriesOf(*mode, DESC_CYCLE), ElementsAre("2=Two"));

    ASSERT_TRUE(second->LoadDescription(String("Othing")));
    EXPECT_THAT(entriesOf(*second->GetParameterI(1000, nullptr), DESC_CYCLE), ElementsAre());
    EXPECT_FALSE(second->GetParameterI(2000, nullptr));
    EXPECT_FALSE(second->LoadDescription(1099102));
    EXPECT_TRUE(second->GetParameterI(1000, nullptr)); // a failure leaves what was there

    size_t count = 0;
    const BaseContainer* container = nullptr;
    DescID id, group;
    void* walk = first->BrowseInit();
    while (first->GetNext(walk, &container, id, group)) {
        EXPECT_EQ(container, first->GetParameterI(id, nullptr));
        ++count;
    }
    first->BrowseFree(walk);
    EXPECT_EQ(count, FindDescription(1099100)->data.parameters.size() + 100);
}

} // namespace
} // namespace host::test
