#include "core/undo.h"

#include "core/document.h"
#include "core/string_access.h"
#include "support/test_host.h"
#include "test_plugins.h"

#include <gmock/gmock.h>

#include <random>

namespace host::test {
namespace {

using testing::ElementsAre;

class UndoTest : public testing::Test {
protected:
    UndoTest()
    {
        RegisterTestPlugins();
        document = BaseDocument::Alloc();
    }
    ~UndoTest() override
    {
        BaseDocument::Free(document);
        EXPECT_EQ(Generator::alive, 0);
    }

    std::string tree() const { return TreeOf(document->GetFirstObject()); }
    Int32 parameter(BaseObject* object) const { return object->GetDataInstance()->GetInt32(kParameter); }

    void change(BaseObject* object, Int32 value, UNDOTYPE type = UNDOTYPE_CHANGE)
    {
        document->StartUndo();
        document->AddUndo(type, object);
        object->SetParameter(DescID(kParameter), GeData(value), DESCFLAGS_SET_0);
        document->EndUndo();
    }

    TestHost host;
    BaseDocument* document;
};

TEST_F(UndoTest, AChangeGoesBackIntoTheLiveNodeThroughThePlugIn)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Generator::Of(object).member = 1;
    const NodeData* data = object->GetNodeData();
    document->StartUndo();
    document->AddUndo(UNDOTYPE_CHANGE, object);
    object->SetParameter(DescID(kParameter), GeData(Int32(9)), DESCFLAGS_SET_0);
    object->SetName(String("changed"));
    object->SetMl(MatrixMove(Vector(1, 2, 3)));
    Generator::Of(object).member = 2;
    document->EndUndo();
    object->Touch();
    Journal::take();

    ASSERT_TRUE(document->DoUndo());
    EXPECT_EQ(document->GetFirstObject(), object);
    EXPECT_EQ(object->GetNodeData(), data);
    EXPECT_EQ(parameter(object), 3);
    EXPECT_EQ(tree(), "plant");
    EXPECT_EQ(object->GetMl(), Matrix());
    EXPECT_EQ(Generator::Of(object).member, 1);
    EXPECT_TRUE(object->IsDirty(DIRTYFLAGS_DATA)) << "the cache is of another state";
    const std::vector<std::string> told = Journal::take();
    EXPECT_EQ(std::ranges::count(told, "plant: 1001078/1013"), 1);
    EXPECT_EQ(std::ranges::count(told, "hook: 1001078/1013"), 1);
    EXPECT_EQ(std::ranges::count_if(told, [](const auto& line) { return line.starts_with("plant: 19"); }), 0);

    ASSERT_TRUE(document->DoRedo());
    EXPECT_EQ(parameter(object), 9);
    EXPECT_EQ(tree(), "changed");
    EXPECT_EQ(Generator::Of(object).member, 2);
    EXPECT_EQ(object->GetMl().off, Vector(1, 2, 3));
    EXPECT_THAT(Journal::taken("changed: 1001078"), ElementsAre("changed: 1001078/1014"));
    EXPECT_FALSE(document->DoRedo());
}

TEST_F(UndoTest, TheOutermostPairMakesTheStepAndAnOpenOneEndsWithTheNext)
{
    BaseObject* object = AddGenerator(*document, "plant");
    EXPECT_FALSE(document->EndUndo());
    document->StartUndo();
    change(object, 4);
    change(object, 5);
    EXPECT_TRUE(document->EndUndo());

    // Without a pair around it a record begins a step, which the next step ends.
    document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
    object->GetDataInstance()->SetInt32(kParameter, 6);
    document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
    object->GetDataInstance()->SetInt32(kParameter, 7);
    change(object, 8);

    // A pair without records is no step; one that was never closed ends with the undo.
    document->StartUndo();
    document->EndUndo();
    document->StartUndo();
    document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
    object->GetDataInstance()->SetInt32(kParameter, 9);

    std::vector<Int32> values;
    while (document->DoUndo()) values.push_back(parameter(object));
    EXPECT_THAT(values, ElementsAre(8, 7, 5, 3));
    values.clear();
    while (document->DoRedo()) values.push_back(parameter(object));
    EXPECT_THAT(values, ElementsAre(5, 7, 8, 9));
}

TEST_F(UndoTest, NewAndDeletedNodesComeAndGoAtTheirPlaces)
{
    AddNull(*document, "a");
    BaseObject* b = AddGenerator(*document, "b");
    BaseObject* c = AddNull(*document, "c", b);
    AddNull(*document, "d");

    document->StartUndo();
    BaseObject* fresh = AddGenerator(*document, "new", c);
    document->AddUndo(UNDOTYPE_NEW, fresh);
    document->EndUndo();
    document->StartUndo();
    document->AddUndo(UNDOTYPE_DELETE, b);
    b->Remove();
    document->EndUndo();
    EXPECT_EQ(tree(), "a d");

    document->DoUndo();
    EXPECT_EQ(tree(), "a b(c(new)) d");
    EXPECT_EQ(document->SearchObject(String("b")), b);
    document->DoUndo();
    EXPECT_EQ(tree(), "a b(c) d");
    EXPECT_EQ(Generator::alive, 2) << "the new one waits for being done again";
    document->DoRedo();
    EXPECT_EQ(c->GetDown(), fresh);
    document->DoRedo();
    EXPECT_EQ(tree(), "a d");

    // A new step ends what could have been done again, and the nodes in it.
    document->DoUndo();
    document->DoUndo();
    change(b, 4);
    EXPECT_EQ(Generator::alive, 2) << "b and the clone that the new step keeps";
    EXPECT_FALSE(document->DoRedo());
}

TEST_F(UndoTest, AFreedNodeComesBackUnderItsOldLinks)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Generator::Of(object).member = 5;
    BaseObject* child = AddGenerator(*document, "child", object);
    child->MakeTag(Ttexture);
    BaseContainer linking;
    linking.SetLink(1, child);

    change(child, 7);
    document->StartUndo();
    document->AddUndo(UNDOTYPE_DELETE, object);
    object->Remove();
    BaseObject::Free(object);
    document->EndUndo();
    EXPECT_EQ(linking.GetLink(1, document), nullptr);

    document->DoUndo();
    EXPECT_EQ(tree(), "plant(child)");
    object = document->GetFirstObject();
    EXPECT_EQ(Generator::Of(object).member, 5);
    EXPECT_EQ(linking.GetLink(1, document), object->GetDown());
    EXPECT_TRUE(object->GetDown()->GetTag(Ttexture));
    EXPECT_EQ(parameter(object->GetDown()), 7);
    document->DoUndo();
    EXPECT_EQ(parameter(object->GetDown()), 3) << "older steps find the node that came back";
}

TEST_F(UndoTest, AChangeCoversTagsAndChildrenAsFarAsItsKindSays)
{
    struct Row {
        UNDOTYPE type;
        bool content, tags, children;
    };
    const Row rows[] = {{UNDOTYPE_CHANGE, true, true, true},
                        {UNDOTYPE_CHANGE_NOCHILDREN, true, true, false},
                        {UNDOTYPE_CHANGE_SMALL, true, false, false},
                        {UNDOTYPE_BITS, false, false, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.type);
        BaseObject* object = AddGenerator(*document, "plant");
        BaseObject* child = AddGenerator(*document, "child", object);
        BaseTag* old = object->MakeTag(Ttexture);
        old->SetName(String("old"));

        document->StartUndo();
        document->AddUndo(row.type, object);
        object->GetDataInstance()->SetInt32(kParameter, 8);
        object->SetBit(BIT_ACTIVE);
        child->GetDataInstance()->SetInt32(kParameter, 9);
        object->KillTag(Ttexture);
        object->MakeTag(Tphong);
        AddNull(*document, "added", object);
        document->EndUndo();

        document->DoUndo();
        EXPECT_EQ(parameter(object), row.content ? 3 : 8);
        EXPECT_FALSE(object->GetBit(BIT_ACTIVE));
        EXPECT_EQ(object->GetTag(Ttexture) != nullptr, row.tags);
        EXPECT_EQ(object->GetTag(Tphong) == nullptr, row.tags);
        EXPECT_EQ(TreeOf(object->GetDown()), row.children ? "child" : "child added");
        EXPECT_EQ(object->GetDown(), child);
        EXPECT_EQ(parameter(child), row.children ? 3 : 9);
        document->DoRedo();
        EXPECT_EQ(parameter(object), 8);
        EXPECT_TRUE(object->GetTag(Tphong));
        EXPECT_EQ(TreeOf(object->GetDown()), "child added");
        object->Remove();
        BaseObject::Free(object);
        document->FlushUndoBuffer();
    }
}

TEST_F(UndoTest, MaterialsTagsAndSettingsAreUndoneToo)
{
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    BaseObject* object = AddNull(*document, "object");
    document->StartUndo();
    document->AddUndo(UNDOTYPE_CHANGE, document);
    document->GetDataInstance()->SetInt32(4711, 1);
    document->InsertMaterial(material);
    document->AddUndo(UNDOTYPE_NEW, material);
    BaseTag* tag = object->MakeTag(Ttexture);
    document->AddUndo(UNDOTYPE_NEW, tag);
    document->EndUndo();

    document->DoUndo();
    EXPECT_EQ(document->GetFirstMaterial(), nullptr);
    EXPECT_EQ(object->GetFirstTag(), nullptr);
    EXPECT_EQ(document->GetDataInstance()->GetInt32(4711), 0);
    EXPECT_EQ(document->GetFirstObject(), object);
    document->DoRedo();
    EXPECT_EQ(document->GetFirstMaterial(), material);
    EXPECT_EQ(object->GetFirstTag(), tag);
    EXPECT_EQ(document->GetDataInstance()->GetInt32(4711), 1);
}

TEST_F(UndoTest, NodesOfNoDocumentAreRefused)
{
    BaseObject* loose = BaseObject::Alloc(kGenerator);
    EXPECT_FALSE(document->AddUndo(UNDOTYPE_CHANGE, loose));
    EXPECT_FALSE(document->AddUndo(UNDOTYPE_CHANGE, nullptr));
    BaseObject::Free(loose);
    EXPECT_FALSE(document->DoUndo());
}

TEST_F(UndoTest, StepsAreLimitedAndTheOldestGo)
{
    BaseObject* object = AddGenerator(*document, "plant");
    for (Int32 i = 0; i < 200; ++i) change(object, 10 + i);
    EXPECT_LE(Generator::alive, 101);
    Int32 steps = 0;
    while (document->DoUndo()) ++steps;
    EXPECT_EQ(parameter(object), 10 + 199 - steps);
    EXPECT_TRUE(document->DoRedo());
    EXPECT_TRUE(document->DoUndo());
    EXPECT_FALSE(document->DoUndo(true));
}

// The whole of a scene, so that two states can be compared.
std::string stateOf(BaseObject* first)
{
    std::string state;
    for (BaseObject* object = first; object; object = object->GetNext()) {
        state += TextOfName(object) + "=" + std::to_string(object->GetDataInstance()->GetInt32(kParameter));
        for (BaseTag* tag = object->GetFirstTag(); tag; tag = tag->GetNext()) state += " #" + TextOfName(tag);
        state += " (" + stateOf(object->GetDown()) + ")";
    }
    return state;
}

TEST_F(UndoTest, AnyRunOfEditsGoesBackAndForth)
{
    std::mt19937 random(4357);
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    std::vector<BaseObject*> objects;
    const auto collect = [&](auto&& self, BaseObject* first) -> void {
        for (BaseObject* object = first; object; object = object->GetNext()) {
            objects.push_back(object);
            self(self, object->GetDown());
        }
    };

    std::vector<std::string> states = {stateOf(document->GetFirstObject())};
    for (Int32 step = 0; step < 40; ++step) {
        document->StartUndo();
        for (std::size_t edit = 0; edit < 1 + below(4); ++edit) {
            objects.clear();
            collect(collect, document->GetFirstObject());
            BaseObject* object = objects.empty() ? nullptr : objects[below(objects.size())];
            const std::size_t kind = object ? below(5) : 0;
            if (kind == 0) {
                BaseObject* made = AddGenerator(*document, "n", below(2) ? object : nullptr);
                made->SetName(String("n") + String::IntToString(static_cast<Int32>(random() % 1000)));
                document->AddUndo(UNDOTYPE_NEW, made);
            } else if (kind == 1) {
                document->AddUndo(UNDOTYPE_DELETE, object);
                object->Remove();
                BaseObject::Free(object);
            } else if (kind == 2) {
                document->AddUndo(UNDOTYPE_CHANGE, object);
                object->GetDataInstance()->SetInt32(kParameter, static_cast<Int32>(random() % 1000));
                object->MakeTag(Tphong)->SetName(String::IntToString(step));
            } else if (kind == 3) {
                document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
                object->GetDataInstance()->SetInt32(kParameter, static_cast<Int32>(random() % 1000));
            } else if (BaseTag* tag = object->GetFirstTag()) {
                document->AddUndo(UNDOTYPE_DELETE, tag);
                tag->Remove();
                BaseTag::Free(tag);
            }
        }
        document->EndUndo();
        const std::string state = stateOf(document->GetFirstObject());
        if (CoreOf(document)->undo.stepsToUndo() == states.size()) states.push_back(state);
    }

    for (Int32 round = 0; round < 2; ++round) {
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            ASSERT_TRUE(document->DoUndo());
            ASSERT_EQ(stateOf(document->GetFirstObject()), states[i]) << i;
        }
        EXPECT_FALSE(document->DoUndo());
        for (std::size_t i = 1; i < states.size(); ++i) {
            ASSERT_TRUE(document->DoRedo());
            ASSERT_EQ(stateOf(document->GetFirstObject()), states[i]) << i;
        }
    }
}

} // namespace
} // namespace host::test
