#include "core/document.h"
#include "core/undo.h"
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

    void change(BaseObject* object, Int32 value)
    {
        document->StartUndo();
        document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
        object->GetDataInstance()->SetInt32(kParameter, value);
        document->EndUndo();
    }

    TestHost host;
    BaseDocument* document;
};

TEST_F(UndoTest, AChangeGoesBackIntoTheLiveNodeThroughThePlugIn)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
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
    EXPECT_EQ(object->GetNodeData(), data);
    EXPECT_EQ(TreeOf(object), "plant");
    EXPECT_EQ(ParameterOf(object), 3);
    EXPECT_EQ(object->GetMl(), Matrix());
    EXPECT_EQ(Generator::Of(object).member, 1);
    EXPECT_TRUE(object->IsDirty(DIRTYFLAGS_DATA)) << "the cache is of another state";
    EXPECT_THAT(Journal::take(), ElementsAre("plant: 1001078/1013", "hook: 1001078/1013", "early hook: 1001078/1013"));

    ASSERT_TRUE(document->DoRedo());
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "changed");
    EXPECT_EQ(ParameterOf(object), 9);
    EXPECT_EQ(Generator::Of(object).member, 2);
    EXPECT_EQ(object->GetMl().off, Vector(1, 2, 3));
    EXPECT_THAT(Journal::take("changed"), ElementsAre("changed: 1001078/1014"));
}

TEST_F(UndoTest, TheOutermostPairMakesTheStepAndAnOpenOneEndsWithTheNext)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    EXPECT_FALSE(document->EndUndo());
    document->StartUndo();
    change(object, 4);
    change(object, 5);
    EXPECT_TRUE(document->EndUndo());

    // Without a pair around it a record begins a step, which the next step ends.
    for (const Int32 value : {6, 7}) {
        document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
        object->GetDataInstance()->SetInt32(kParameter, value);
    }
    change(object, 8);

    // A pair without records is no step; one that was never closed ends with the undo.
    document->StartUndo();
    document->EndUndo();
    document->StartUndo();
    document->AddUndo(UNDOTYPE_CHANGE_SMALL, object);
    object->GetDataInstance()->SetInt32(kParameter, 9);

    std::vector<Int32> values;
    while (document->DoUndo()) values.push_back(ParameterOf(object));
    while (document->DoRedo()) values.push_back(ParameterOf(object));
    EXPECT_THAT(values, ElementsAre(8, 7, 5, 3, 5, 7, 8, 9));
}

TEST_F(UndoTest, ARecordReachesAsFarAsItsKindSays)
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
        BaseObject* object = Add(*document, kGenerator, "plant");
        BaseObject* child = Add(*document, kGenerator, "child", object);
        object->MakeTag(Ttexture);

        object->GetDataInstance()->SetInt32(kParameter, 8);
        child->GetDataInstance()->SetInt32(kParameter, 9);
        document->StartUndo();
        document->AddUndo(row.type, object);
        object->GetDataInstance()->SetInt32(kParameter, 18);
        object->SetBit(BIT_ACTIVE);
        child->GetDataInstance()->SetInt32(kParameter, 19);
        object->KillTag(Ttexture);
        object->MakeTag(Tphong);
        Add(*document, Onull, "added", object);
        document->EndUndo();

        document->DoUndo();
        EXPECT_EQ(ParameterOf(object), row.content ? 8 : 18);
        EXPECT_FALSE(object->GetBit(BIT_ACTIVE));
        EXPECT_EQ(object->GetTag(Ttexture) != nullptr, row.tags);
        EXPECT_EQ(object->GetTag(Tphong) == nullptr, row.tags);
        EXPECT_EQ(TreeOf(object->GetDown()), row.children ? "child" : "child added");
        EXPECT_EQ(ParameterOf(child), row.children ? 9 : 19) << "and it is the same child";
        document->DoRedo();
        EXPECT_EQ(ParameterOf(object), 18);
        EXPECT_TRUE(object->GetTag(Tphong));
        EXPECT_EQ(TreeOf(object->GetDown()), "child added");
        document->FlushUndoBuffer();
        BaseObject::Free(object);
    }
}

TEST_F(UndoTest, AFreedNodeComesBackUnderItsOldLinks)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    BaseObject* child = Add(*document, kGenerator, "child", object);
    Generator::Of(child).member = 5;
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
    ASSERT_EQ(TreeOf(document->GetFirstObject()), "plant(child)");
    child = document->GetFirstObject()->GetDown();
    EXPECT_EQ(linking.GetLink(1, document), child);
    EXPECT_EQ(Generator::Of(child).member, 5);
    EXPECT_TRUE(child->GetTag(Ttexture));
    document->DoUndo();
    EXPECT_EQ(ParameterOf(child), 3) << "older steps find the node that came back";
}

TEST_F(UndoTest, MaterialsTagsAndSettingsAreUndoneToo)
{
    BaseMaterial* material = BaseMaterial::Alloc(Mmaterial);
    BaseObject* object = Add(*document, Onull, "object");
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
}

TEST_F(UndoTest, StepsAreLimitedAndForeignNodesRefused)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    for (Int32 i = 0; i < 200; ++i) change(object, 10 + i);
    EXPECT_LE(Generator::alive, 101);
    Int32 steps = 0;
    while (document->DoUndo()) ++steps;
    EXPECT_EQ(ParameterOf(object), 209 - steps);

    BaseObject* loose = BaseObject::Alloc(kGenerator);
    EXPECT_FALSE(document->AddUndo(UNDOTYPE_CHANGE, loose));
    BaseObject::Free(loose);
}

// The whole of a scene, so that two states can be compared.
std::string stateOf(BaseObject* first)
{
    std::string state;
    for (BaseObject* object = first; object; object = object->GetNext()) {
        state += NameOf(object) + "=" + std::to_string(ParameterOf(object));
        for (BaseTag* tag = object->GetFirstTag(); tag; tag = tag->GetNext()) state += " #" + NameOf(tag);
        state += " (" + stateOf(object->GetDown()) + ")";
    }
    return state;
}

void collect(BaseObject* first, std::vector<BaseObject*>& objects)
{
    for (BaseObject* object = first; object; object = object->GetNext()) {
        objects.push_back(object);
        collect(object->GetDown(), objects);
    }
}

TEST_F(UndoTest, AnyRunOfEditsGoesBackAndForth)
{
    std::mt19937 random(4357);
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
    const auto edit = [&] {
        std::vector<BaseObject*> objects;
        collect(document->GetFirstObject(), objects);
        BaseObject* object = objects.empty() ? nullptr : objects[below(objects.size())];
        const std::size_t kind = object ? below(5) : 0;
        const Int32 number = static_cast<Int32>(below(1000));
        if (kind == 0) {
            BaseObject* made = Add(*document, kGenerator, std::to_string(number).c_str(), below(2) ? object : nullptr);
            document->AddUndo(UNDOTYPE_NEW, made);
        } else if (kind == 1) {
            document->AddUndo(UNDOTYPE_DELETE, object);
            object->Remove();
            if (below(2)) BaseObject::Free(object);
        } else if (kind <= 3) {
            document->AddUndo(kind == 2 ? UNDOTYPE_CHANGE : UNDOTYPE_CHANGE_SMALL, object);
            object->GetDataInstance()->SetInt32(kParameter, number);
            if (kind == 2) object->MakeTag(Tphong)->SetName(String::IntToString(number));
        } else if (BaseTag* tag = object->GetFirstTag()) {
            document->AddUndo(UNDOTYPE_DELETE, tag);
            BaseTag::Free(tag);
        }
    };

    const UndoStack& stack = CoreOf(document)->undo;
    std::vector<std::string> states = {""};
    for (Int32 step = 0; step < 40; ++step) {
        document->StartUndo();
        for (std::size_t edits = 1 + below(4); edits > 0; --edits) edit();
        document->EndUndo();
        if (stack.stepsToUndo() == states.size()) states.push_back(stateOf(document->GetFirstObject()));
    }
    for (Int32 round = 0; round < 2; ++round) {
        while (document->DoUndo()) ASSERT_EQ(stateOf(document->GetFirstObject()), states[stack.stepsToUndo()]);
        while (document->DoRedo()) ASSERT_EQ(stateOf(document->GetFirstObject()), states[stack.stepsToUndo()]);
    }
    EXPECT_EQ(stack.stepsToUndo(), states.size() - 1);
    while (document->DoUndo()) {
    } // what was only removed is in the scene again, so that nothing is left over
}

} // namespace
} // namespace host::test
