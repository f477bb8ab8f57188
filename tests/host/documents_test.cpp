#include "core/documents.h"
#include "core/edits.h"
#include "core/string_access.h"
#include "customgui_unitscale.h"
#include "support/test_host.h"
#include "test_plugins.h"

#include <gmock/gmock.h>

#include <limits>

namespace host::test {
namespace {

using testing::ElementsAre;

class DocumentTest : public testing::Test {
protected:
    DocumentTest()
    {
        RegisterTestPlugins();
        document = BaseDocument::Alloc();
        InsertBaseDocument(document);
        SetActiveDocument(document);
        Journal::take();
    }

    std::string activeNames(GETACTIVEOBJECTFLAGS flags) const
    {
        const AutoAlloc<AtomArray> active;
        document->GetActiveObjects(*active, flags);
        std::string names;
        for (Int32 i = 0; i < active->GetCount(); ++i) {
            names += (i > 0 ? " " : "") + NameOf(static_cast<BaseObject*>(active->GetIndex(i)));
        }
        return names;
    }

    TestHost host;
    BaseDocument* document;
};

TEST_F(DocumentTest, InsertingTellsTheHooksAloneAndRefusesCircles)
{
    BaseObject* first = Add(*document, kGenerator, "first");
    document->InsertMaterial(BaseMaterial::Alloc(Mmaterial));
    first->MakeTag(Ttexture);
    const std::vector<std::string> told = Journal::take();
    ASSERT_EQ(told.size(), 6u) << "two hooks, three nodes";
    EXPECT_EQ(told[0], "hook: 1001078/1010 node=first");
    EXPECT_THAT(told[3], testing::StartsWith("early hook: 1001078/1012"));
    EXPECT_THAT(told[4], testing::StartsWith("hook: 1001078/1011"));
    EXPECT_TRUE(document->GetChanged());

    BaseObject* below = Add(*document, Onull, "below", first);
    BaseObject* second = Add(*document, Onull, "second");
    second->Remove();
    document->InsertObject(second, nullptr, nullptr);
    document->InsertObject(first, below, nullptr); // a parent below its child
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "second first(below)");
}

TEST_F(DocumentTest, NamesAreMadeUniqueByTheSmallestFreeNumber)
{
    const char* const rows[][2] = {{"Oak", "Oak"},       {"Oak", "Oak .1"},       {"Oak", "Oak .2"},
                                   {"Oak .1", "Oak .3"}, {"Oak .", "Oak ."},      {"Oak .", "Oak . .1"},
                                   {"Oak .x", "Oak .x"}, {"Oak .x", "Oak .x .1"}, {"", ""},
                                   {"", " .1"}};
    for (const auto& [name, given] : rows) {
        BaseObject* object = BaseObject::Alloc(Onull);
        object->SetName(String(name));
        document->InsertObject(object, nullptr, nullptr, true);
        EXPECT_EQ(NameOf(object), given) << name;
    }
    EXPECT_EQ(document->SearchObject(String("Oak .3"))->GetNext(), document->SearchObject(String("Oak .2")));
}

TEST_F(DocumentTest, ActiveObjectsComeInTreeOrderOrInOrderOfSelection)
{
    constexpr GETACTIVEOBJECTFLAGS kChildren = GETACTIVEOBJECTFLAGS_CHILDREN;
    BaseObject* a = Add(*document, Onull, "a");
    BaseObject* b = Add(*document, Onull, "b", a);
    BaseObject* c = Add(*document, Onull, "c");
    const UInt32 data = c->GetDirty(DIRTYFLAGS_DATA);
    const UInt32 selections = document->GetDirty(DIRTYFLAGS_SELECTION_OBJECTS);

    document->SetActiveObject(c);
    EXPECT_EQ(document->GetActiveObject(), c);
    document->SetActiveObject(b, SELECTION_ADD);
    EXPECT_EQ(document->GetActiveObject(), nullptr) << "two are active";
    document->SetActiveObject(a, SELECTION_ADD);
    EXPECT_EQ(activeNames(kChildren), "a b c");
    EXPECT_EQ(activeNames(kChildren | GETACTIVEOBJECTFLAGS_SELECTIONORDER), "c b a");
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_0), "a c") << "b stands below another active one";
    document->SetActiveObject(c, SELECTION_SUB);
    EXPECT_EQ(activeNames(kChildren | GETACTIVEOBJECTFLAGS_SELECTIONORDER), "b a");
    EXPECT_EQ(c->GetDirty(DIRTYFLAGS_DATA), data);
    EXPECT_EQ(document->GetDirty(DIRTYFLAGS_SELECTION_OBJECTS), selections + 4);

    BaseDocument* other = BaseDocument::Alloc();
    document->SetActiveObject(Add(*other, Onull, "foreign"));
    EXPECT_EQ(activeNames(kChildren), "a b");
    BaseDocument::Free(other);
}

TEST_F(DocumentTest, CopiesHaveNodesOfTheirOwnWhoseLinksStayAmongThem)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    Generator::Of(object).member = 7;
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    document->InsertMaterial(material);
    static_cast<TextureTag*>(object->MakeTag(Ttexture))->SetMaterial(material);
    document->SetDocumentPath(Filename("/scenes"));
    document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0);
    Journal::take();

    BaseDocument* copy = CloneDocument(*document);
    ASSERT_TRUE(copy);
    EXPECT_THAT(Journal::take(), ElementsAre("plant: 11", "hook: 11", "early hook: 11")) << "each hook once";
    EXPECT_EQ(copy->GetDocumentPath(), document->GetDocumentPath());
    BaseObject* copied = copy->GetFirstObject();
    EXPECT_EQ(Generator::Of(copied).member, 7);
    EXPECT_EQ(copied->GetCache(), nullptr);
    EXPECT_NE(copy->GetFirstMaterial(), material);
    EXPECT_EQ(static_cast<TextureTag*>(copied->GetTag(Ttexture))->GetMaterial(), copy->GetFirstMaterial());
    BaseDocument::Free(copy);
}

TEST_F(DocumentTest, TheListTellsItsDocumentsWhenTheyGo)
{
    Add(*document, kGenerator, "one");
    BaseDocument* two = BaseDocument::Alloc();
    Add(*two, kGenerator, "two");
    SetActiveDocument(two);
    EXPECT_EQ(GetActiveDocument(), document) << "it is in no list";
    InsertBaseDocument(two);
    SetActiveDocument(two);
    KillDocument(two);
    EXPECT_EQ(two, nullptr);
    EXPECT_EQ(GetActiveDocument(), document);
    EXPECT_EQ(Generator::alive, 1);
    host.end();
    EXPECT_EQ(Generator::alive, 0);
    std::vector<std::string> told = Journal::take();
    std::erase_if(told, [](const std::string& line) { return line.find("hook") != std::string::npos; });
    EXPECT_THAT(told, ElementsAre("two: 1001078/1000", "two: 1001078/1008", "one: 1001078/1000", "one: 1001078/1008"));
}

TEST_F(DocumentTest, UsersEditsAreOneStepEachWithTheirMessagesInOrder)
{
    Add(*document, kGenerator, "Generator");
    Journal::take();
    BaseObject* made = CreateFromMenu(kGenerator);
    ASSERT_TRUE(made);
    EXPECT_EQ(CreateFromMenu(12345678), nullptr);
    EXPECT_THAT(Journal::take("G"), ElementsAre("Generator: 22")) << "before it has a name of its own";
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "Generator .1 Generator");
    EXPECT_EQ(document->GetActiveObject(), made);

    made->SetName(String("plant"));
    {
        BaseList2D* const edited[] = {made};
        ParameterGesture gesture(edited, DescID(kParameter));
        EXPECT_TRUE(gesture.set(GeData(Int32(5))));
        EXPECT_TRUE(gesture.set(GeData(Int32(6))));
    }
    PressButton(*made, DescID(4711));
    EXPECT_THAT(Journal::take("plant"),
                ElementsAre("plant: 16 2001", "plant: 19 2001", "plant: 17 2001", "plant: 20", "plant: 19 2001",
                            "plant: 17 2001", "plant: 20", "plant: 31", "plant: 18 4711"));
    EXPECT_EQ(ParameterOf(made), 6);
    EXPECT_TRUE(document->DoUndo());
    EXPECT_EQ(ParameterOf(made), 3);
    EXPECT_TRUE(document->DoUndo());
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "Generator");
    EXPECT_TRUE(document->DoRedo());
    EXPECT_EQ(document->GetFirstObject(), made);
}

TEST(Units, TheFactorIsTheQuotientOfLengthsAndNeverZero)
{
    struct Row {
        Float sourceScale;
        DOCUMENT_UNIT source;
        Float targetScale;
        DOCUMENT_UNIT target;
        Float factor;
    };
    constexpr Float kNan = std::numeric_limits<Float>::quiet_NaN();
    const Row rows[] = {
        {1, DOCUMENT_UNIT_M, 1, DOCUMENT_UNIT_CM, 100},        {2, DOCUMENT_UNIT_FOOT, 3, DOCUMENT_UNIT_INCH, 8},
        {1, DOCUMENT_UNIT_MILE, 1, DOCUMENT_UNIT_YARD, 1760},  {1, DOCUMENT_UNIT_UNDEF, 1, DOCUMENT_UNIT_MM, 10},
        {0, DOCUMENT_UNIT_M, 1, DOCUMENT_UNIT_M, 1},           {kNan, DOCUMENT_UNIT_M, -3, DOCUMENT_UNIT_M, 1},
        {1e300, DOCUMENT_UNIT_KM, 1e-300, DOCUMENT_UNIT_NM, 1}};
    for (const Row& row : rows) {
        const AutoAlloc<UnitScaleData> source;
        const AutoAlloc<UnitScaleData> target;
        source->SetUnitScale(row.sourceScale, row.source);
        target->SetUnitScale(row.targetScale, row.target);
        EXPECT_NEAR(CalculateTranslationScale(source, target), row.factor, 1e-9 * row.factor);
    }
    EXPECT_EQ(CalculateTranslationScale(nullptr, nullptr), 1.0);
}

} // namespace
} // namespace host::test
