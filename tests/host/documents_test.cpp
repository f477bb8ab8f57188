#include "core/documents.h"

#include "core/edits.h"
#include "core/string_access.h"
#include "customgui_unitscale.h"
#include "ddoc.h"
#include "drendersettings.h"
#include "support/test_host.h"
#include "test_plugins.h"

#include <gmock/gmock.h>

#include <cmath>
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
        Journal::take();
    }
    ~DocumentTest() override { BaseDocument::Free(document); }

    std::string activeNames(GETACTIVEOBJECTFLAGS flags) const
    {
        const AutoAlloc<AtomArray> active;
        document->GetActiveObjects(*active, flags);
        std::string names;
        for (Int32 i = 0; i < active->GetCount(); ++i) {
            if (i > 0) names += ' ';
            names += TextOfName(static_cast<BaseObject*>(active->GetIndex(i)));
        }
        return names;
    }

    TestHost host;
    BaseDocument* document;
};

TEST_F(DocumentTest, AFreshOneHasWhatASceneNeeds)
{
    const BaseContainer* settings = document->GetSettingsInstance(DOCUMENTSETTINGS_DOCUMENT);
    EXPECT_EQ(settings, document->GetDataInstance());
    EXPECT_EQ(document->GetSettingsInstance(DOCUMENTSETTINGS_GENERAL), nullptr);
    EXPECT_TRUE(settings->GetBool(DOCUMENT_LINEARWORKFLOW));
    const auto* unit = static_cast<const UnitScaleData*>(
        settings->GetCustomDataType(DOCUMENT_DOCUNIT, CUSTOMDATATYPE_UNITSCALE));
    ASSERT_TRUE(unit);
    EXPECT_DOUBLE_EQ(CalculateTranslationScale(unit, nullptr), 1.0);
    ASSERT_TRUE(document->GetActiveRenderData());
    EXPECT_EQ(document->GetActiveRenderData(), document->GetFirstRenderData());
    EXPECT_EQ(document->GetLayerObjectRoot()->GetFirst(), nullptr);
    ASSERT_TRUE(document->FindSceneHook(kHook));
    EXPECT_EQ(document->FindSceneHook(kHook)->GetDocument(), document);
    EXPECT_EQ(document->FindSceneHook(kGenerator), nullptr);
    EXPECT_FALSE(document->GetChanged());
    EXPECT_EQ(document->GetDocument(), document);
}

TEST_F(DocumentTest, InsertingTakesFreePlacesAndTellsTheHooksAlone)
{
    BaseObject* first = AddGenerator(*document, "first");
    EXPECT_THAT(Journal::take(), ElementsAre("hook: 1001078/1010 node=first", "early hook: 1001078/1010 node=first"));
    EXPECT_TRUE(document->GetChanged());

    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    document->InsertMaterial(material);
    first->MakeTag(Ttexture);
    const std::vector<std::string> told = Journal::taken("hook");
    ASSERT_EQ(told.size(), 2u);
    EXPECT_THAT(told[0], testing::StartsWith("hook: 1001078/1012"));
    EXPECT_THAT(told[1], testing::StartsWith("hook: 1001078/1011"));

    BaseObject* second = BaseObject::Alloc(Onull);
    second->SetName(String("second"));
    document->InsertObject(second, nullptr, nullptr);
    BaseObject* below = AddNull(*document, "below", first);
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "second first(below)");

    // A parent cannot be put below its child.
    document->InsertObject(first, below, nullptr);
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "second first(below)");
}

TEST_F(DocumentTest, NamesAreMadeUniqueByTheSmallestFreeNumber)
{
    struct Row {
        const char* name;
        const char* given;
    };
    const Row rows[] = {{"Oak", "Oak"},     {"Oak", "Oak .1"},         {"Oak", "Oak .2"},     {"Oak .1", "Oak .3"},
                        {"Oak .", "Oak ."}, {"Oak .", "Oak . .1"},     {"Oak .x", "Oak .x"},  {"Oak .x", "Oak .x .1"},
                        {"", ""},           {"", " .1"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        BaseObject* object = BaseObject::Alloc(Onull);
        object->SetName(String(row.name));
        document->InsertObject(object, nullptr, nullptr, true);
        EXPECT_EQ(Utf8Of(object->GetName()), row.given);
    }
    EXPECT_EQ(document->SearchObject(String("Oak .3"))->GetNext(), document->SearchObject(String("Oak .2")));
}

TEST_F(DocumentTest, ActiveObjectsComeInTreeOrderOrInOrderOfSelection)
{
    BaseObject* a = AddNull(*document, "a");
    BaseObject* b = AddNull(*document, "b", a);
    BaseObject* c = AddNull(*document, "c");
    const UInt32 data = c->GetDirty(DIRTYFLAGS_DATA);
    const UInt32 selections = document->GetDirty(DIRTYFLAGS_SELECTION_OBJECTS);

    document->SetActiveObject(c);
    EXPECT_EQ(document->GetActiveObject(), c);
    document->SetActiveObject(b, SELECTION_ADD);
    EXPECT_EQ(document->GetActiveObject(), nullptr) << "two are active";
    document->SetActiveObject(a, SELECTION_ADD);
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_CHILDREN), "a b c");
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_CHILDREN | GETACTIVEOBJECTFLAGS_SELECTIONORDER), "c b a");
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_0), "a c") << "b stands below another active one";
    document->SetActiveObject(c, SELECTION_SUB);
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_SELECTIONORDER | GETACTIVEOBJECTFLAGS_CHILDREN), "b a");
    EXPECT_EQ(c->GetDirty(DIRTYFLAGS_DATA), data);
    EXPECT_EQ(document->GetDirty(DIRTYFLAGS_SELECTION_OBJECTS), selections + 4);

    BaseDocument* other = BaseDocument::Alloc();
    BaseObject* foreign = AddNull(*other, "foreign");
    document->SetActiveObject(foreign);
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_0), "a") << "an object of another document changes nothing";
    BaseDocument::Free(other);
    document->SetActiveObject(nullptr);
    EXPECT_EQ(activeNames(GETACTIVEOBJECTFLAGS_CHILDREN), "");
}

TEST_F(DocumentTest, CopiesHaveNodesOfTheirOwnWhoseLinksStayAmongThem)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Generator::Of(object).member = 7;
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    document->InsertMaterial(material);
    static_cast<TextureTag*>(object->MakeTag(Ttexture))->SetMaterial(material);
    document->SetDocumentPath(Filename("/scenes"));
    document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0);
    ASSERT_TRUE(object->GetCache());
    Journal::take();

    BaseDocument* copy = CloneDocument(*document);
    ASSERT_TRUE(copy);
    const std::vector<std::string> told = Journal::take();
    EXPECT_EQ(std::ranges::count(told, "plant: 11"), 1);
    EXPECT_EQ(std::ranges::count(told, "hook: 11"), 1);
    EXPECT_EQ(copy->GetDocumentPath(), document->GetDocumentPath());
    BaseObject* copied = copy->GetFirstObject();
    EXPECT_EQ(Generator::Of(copied).member, 7);
    EXPECT_EQ(copied->GetCache(), nullptr);
    ASSERT_NE(copy->GetFirstMaterial(), material);
    EXPECT_EQ(static_cast<TextureTag*>(copied->GetTag(Ttexture))->GetMaterial(), copy->GetFirstMaterial());
    Int32 hooks = 0;
    for (BaseList2D* hook = copy->FindSceneHook(kHook); hook; hook = hook->GetNext()) ++hooks;
    EXPECT_EQ(hooks, 2) << "the copy's own hooks were written over";
    BaseDocument::Free(copy);
}

TEST_F(DocumentTest, TheListOwnsItsDocumentsAndTellsThemWhenTheyGo)
{
    EXPECT_EQ(GetActiveDocument(), nullptr);
    BaseDocument* one = BaseDocument::Alloc();
    AddGenerator(*one, "one");
    BaseDocument* two = BaseDocument::Alloc();
    AddGenerator(*two, "two");
    InsertBaseDocument(one);
    InsertBaseDocument(two);
    SetActiveDocument(document);
    EXPECT_EQ(GetActiveDocument(), nullptr) << "it is in no list";
    Journal::take();

    SetActiveDocument(two);
    EXPECT_THAT(Journal::taken("t"), ElementsAre("two: 1001078/1000"));
    KillDocument(two);
    EXPECT_EQ(two, nullptr);
    EXPECT_EQ(GetActiveDocument(), one);
    EXPECT_THAT(Journal::taken("two"), ElementsAre("two: 1001078/1008"));
    EXPECT_EQ(Generator::alive, 1);
    BaseDocument::Free(document);
    host.end();
    EXPECT_THAT(Journal::taken("one"), ElementsAre("one: 1001078/1008"));
    EXPECT_EQ(Generator::alive, 0);
}

TEST_F(DocumentTest, CreatingFromTheMenuPreparesTheObjectBeforeItIsPlaced)
{
    EXPECT_EQ(CreateFromMenu(kGenerator), nullptr) << "no document is active";
    BaseDocument* active = BaseDocument::Alloc();
    InsertBaseDocument(active);
    SetActiveDocument(active);
    AddGenerator(*active, "Generator");
    Journal::take();

    BaseObject* made = CreateFromMenu(kGenerator);
    ASSERT_TRUE(made);
    EXPECT_THAT(Journal::taken("G"), ElementsAre("Generator: 22")) << "still with its class's name";
    EXPECT_EQ(TreeOf(active->GetFirstObject()), "Generator .1 Generator");
    EXPECT_EQ(active->GetActiveObject(), made);
    EXPECT_EQ(CreateFromMenu(12345678), nullptr);

    EXPECT_TRUE(active->DoUndo());
    EXPECT_EQ(TreeOf(active->GetFirstObject()), "Generator");
    EXPECT_TRUE(active->DoRedo());
    EXPECT_EQ(active->GetFirstObject(), made);
}

TEST_F(DocumentTest, AUsersGestureIsOneStepHoweverManyValuesComeBy)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Journal::take();
    {
        BaseList2D* const edited[] = {object};
        ParameterGesture gesture(edited, DescID(kParameter));
        EXPECT_TRUE(gesture.set(GeData(Int32(5))));
        EXPECT_TRUE(gesture.set(GeData(Int32(6))));
    }
    EXPECT_THAT(Journal::taken("plant"),
                ElementsAre("plant: 16 2001", "plant: copied", "plant: 19 2001", "plant: 17 2001", "plant: 20",
                            "plant: 19 2001", "plant: 17 2001", "plant: 20", "plant: 31"));
    EXPECT_EQ(object->GetDataInstance()->GetInt32(kParameter), 6);
    EXPECT_TRUE(document->DoUndo());
    EXPECT_EQ(object->GetDataInstance()->GetInt32(kParameter), 3);
    EXPECT_FALSE(document->DoUndo());

    PressButton(*object, DescID(4711));
    EXPECT_THAT(Journal::taken("plant: 1"), testing::Contains("plant: 18 4711"));
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
    const Row rows[] = {{1, DOCUMENT_UNIT_M, 1, DOCUMENT_UNIT_CM, 100},     {1, DOCUMENT_UNIT_CM, 1, DOCUMENT_UNIT_M, 0.01},
                        {2, DOCUMENT_UNIT_FOOT, 3, DOCUMENT_UNIT_INCH, 8},  {1, DOCUMENT_UNIT_UNDEF, 1, DOCUMENT_UNIT_MM, 10},
                        {0, DOCUMENT_UNIT_M, 1, DOCUMENT_UNIT_M, 1},        {1, DOCUMENT_UNIT_M, 0, DOCUMENT_UNIT_M, 1},
                        {kNan, DOCUMENT_UNIT_M, -3, DOCUMENT_UNIT_M, 1},    {1, DOCUMENT_UNIT_MILE, 1, DOCUMENT_UNIT_YARD, 1760},
                        {1e300, DOCUMENT_UNIT_KM, 1e-300, DOCUMENT_UNIT_NM, 1}};
    for (const Row& row : rows) {
        const AutoAlloc<UnitScaleData> source;
        const AutoAlloc<UnitScaleData> target;
        source->SetUnitScale(row.sourceScale, row.source);
        target->SetUnitScale(row.targetScale, row.target);
        EXPECT_NEAR(CalculateTranslationScale(source, target), row.factor, 1e-9 * row.factor) << row.factor;
    }
    EXPECT_DOUBLE_EQ(CalculateTranslationScale(nullptr, nullptr), 1.0);
}

TEST(Colours, GoThereAndBack)
{
    for (int i = -2; i <= 30; ++i) {
        const Vector color(i / 20.0, i / 25.0, i / 400.0);
        const Vector back = TransformColor(TransformColor(color, COLORSPACETRANSFORMATION_SRGB_TO_LINEAR),
                                           COLORSPACETRANSFORMATION_LINEAR_TO_SRGB);
        EXPECT_LT((back - color).GetLength(), 1e-6) << i;
    }
    EXPECT_NEAR(TransformColor(Vector(0.5), COLORSPACETRANSFORMATION_SRGB_TO_LINEAR).x, 0.21404114, 1e-8);
    EXPECT_EQ(TransformColor(Vector(0.3), COLORSPACETRANSFORMATION_NONE), Vector(0.3));
}

} // namespace
} // namespace host::test
