#include "core/assets.h"
#include "core/documents.h"
#include "core/edits.h"
#include "core/evaluation.h"
#include "core/string_access.h"
#include "core/worker.h"
#include "obase.h"
#include "oinstance.h"
#include "support/test_host.h"
#include "test_plugins.h"

#include <gmock/gmock.h>

#include <atomic>

namespace host::test {
namespace {

using testing::ElementsAre;

class EvaluationTest : public testing::Test {
protected:
    EvaluationTest()
    {
        RegisterTestPlugins();
        document = BaseDocument::Alloc();
        InsertBaseDocument(document);
        SetActiveDocument(document);
    }
    ~EvaluationTest() override
    {
        host.end();
        EXPECT_EQ(Generator::alive, 0);
    }

    bool evaluate(BUILDFLAGS flags = BUILDFLAGS_0) { return document->ExecutePasses(nullptr, true, true, true, flags); }

    BaseObject* addInstance(const char* name, BaseObject* target, BaseObject* parent = nullptr)
    {
        BaseObject* instance = Add(*document, Oinstance, name, parent);
        instance->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, target);
        return instance;
    }

    TestHost host;
    BaseDocument* document;
};

TEST_F(EvaluationTest, GeneratorsAreAskedInEveryPassAndKnowWhatChangedSinceTheLast)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    Generator& generator = Generator::Of(object);
    EXPECT_TRUE(evaluate());
    BaseObject* cache = object->GetCache();
    EXPECT_EQ(PointsOf(cache), 3);
    EXPECT_EQ(cache->GetCacheParent(), object);
    EXPECT_EQ(cache->GetUp(), nullptr);
    EXPECT_EQ(cache->GetDocument(), document);
    EXPECT_TRUE(object->GetBit(BIT_CONTROLOBJECT));

    const UInt32 caches = object->GetDirty(DIRTYFLAGS_CACHE);
    EXPECT_TRUE(evaluate());
    object->SetMl(MatrixMove(Vector(5, 0, 0)));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(generator.calls, 3);
    EXPECT_EQ(generator.builds, 1) << "a matrix is no data";
    EXPECT_EQ(object->GetCache(), cache);
    EXPECT_EQ(object->GetDirty(DIRTYFLAGS_CACHE), caches);
    EXPECT_EQ(cache->GetMg().off, Vector(5, 0, 0));

    object->GetDataInstance()->SetInt32(kParameter, 4);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(PointsOf(object->GetCache()), 4);
    EXPECT_EQ(object->GetDirty(DIRTYFLAGS_CACHE), caches + 1);
    EXPECT_TRUE(evaluate(BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_TRUE(evaluate(BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(generator.builds, 4) << "once for the renderer, once back";
}

TEST_F(EvaluationTest, AGeneratorMayWriteIntoItselfAndMayAnswerNothing)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    Generator& generator = Generator::Of(object);
    Int32 builds = 0;
    generator.build = [&](BaseObject* op, HierarchyHelp* hh) -> BaseObject* {
        EXPECT_EQ(hh->GetDocument(), document);
        const bool stale = op->CheckCache(hh);
        if (!stale && !op->IsDirty(DIRTYFLAGS_DATA)) return op->GetCache(hh);
        op->GetDataInstance()->SetString(4711, String::IntToString(++builds));
        return BaseObject::Alloc(Onull);
    };
    for (Int32 i = 0; i < 3; ++i) EXPECT_TRUE(evaluate());
    EXPECT_EQ(builds, 1) << "its own writes make it no dirtier";

    // What stands in the scene already cannot be a cache.
    BaseObject* other = Add(*document, Onull, "other");
    for (BaseObject* answer : {static_cast<BaseObject*>(nullptr), other, object}) {
        generator.build = [answer](BaseObject*, HierarchyHelp*) { return answer; };
        EXPECT_TRUE(evaluate());
        EXPECT_EQ(object->GetCache(), nullptr);
    }
    EXPECT_EQ(generator.calls, 6) << "once a pass";
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant other");
}

TEST_F(EvaluationTest, SwitchAndLayerEndAGeneratorButVisibilityDoesNot)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    LayerObject* layer = LayerObject::Alloc();
    document->GetLayerObjectRoot()->InsertLast(layer);
    object->SetLayerObject(layer);
    object->SetEditorMode(MODE_OFF);
    object->SetRenderMode(MODE_OFF);
    const auto switchTo = [&](bool on, Bool layerOn) {
        object->SetDeformMode(on);
        LayerData data = *object->GetLayerData(document);
        data.generators = layerOn;
        object->SetLayerData(document, data);
        EXPECT_TRUE(evaluate());
        return object->GetCache() && object->GetBit(BIT_CONTROLOBJECT);
    };
    EXPECT_TRUE(switchTo(true, true));
    EXPECT_FALSE(switchTo(false, true));
    EXPECT_TRUE(switchTo(true, true));
    EXPECT_FALSE(switchTo(true, false));
    EXPECT_EQ(Generator::Of(object).calls, 2);
}

TEST_F(EvaluationTest, HooksRunByPriorityThenParentsBeforeChildrenUnlessTheseWereUsedUp)
{
    BaseObject* parent = Add(*document, kGenerator, "parent");
    BaseObject* used = Add(*document, kGenerator, "used", parent);
    for (BaseObject* object :
         {parent, used, Add(*document, kGenerator, "free", parent), Add(*document, kGenerator, "last")}) {
        Generator::Of(object).build = [=](BaseObject* op, HierarchyHelp*) {
            Journal::add("build " + NameOf(op));
            if (op == parent) used->Touch();
            return BaseObject::Alloc(Onull);
        };
    }
    Journal::take();
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(document->ExecutePasses(nullptr, true, false, true, BUILDFLAGS_0));
    EXPECT_THAT(Journal::take(), ElementsAre("early hook: execute 1000", "hook: execute 4000", "build parent",
                                             "build free", "build last", "build parent", "build free", "build last"));
}

TEST_F(EvaluationTest, GeneratorsInCachesAreEvaluatedInTurnToABound)
{
    BaseObject* object = Add(*document, kGenerator, "outer");
    object->SetMl(MatrixMove(Vector(1, 0, 0)));
    BaseObject* inner = BaseObject::Alloc(kGenerator);
    inner->SetMl(MatrixMove(Vector(0, 2, 0)));
    Generator::Of(object).build = [&](BaseObject*, HierarchyHelp*) { return inner; };
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(Generator::Of(inner).calls, 2);
    EXPECT_EQ(Generator::Of(inner).builds, 1);
    ASSERT_EQ(PointsOf(inner->GetCache()), 3);
    EXPECT_EQ(inner->GetCache()->GetMg().off, Vector(1, 2, 0));

    std::function<BaseObject*(BaseObject*, HierarchyHelp*)> endless = [&](BaseObject*, HierarchyHelp*) {
        BaseObject* next = BaseObject::Alloc(kGenerator);
        Generator::Of(next).build = endless;
        return next;
    };
    Generator::Of(object).build = endless;
    EXPECT_TRUE(evaluate());
    EXPECT_LT(Generator::alive, 1000);
}

TEST_F(EvaluationTest, ABrokenPassDropsItsResultNotesNothingAndIsDueAgain)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    EXPECT_TRUE(evaluate());
    BaseObject* cache = object->GetCache();
    object->GetDataInstance()->SetInt32(kParameter, 9);
    Generator::Of(object).build = [&](BaseObject*, HierarchyHelp* hh) {
        hh->GetThread()->End(false);
        return BaseObject::Alloc(kGenerator);
    };
    StartPass(*document);
    PartOf<Worker>().join();
    EXPECT_EQ(object->GetCache(), cache) << "what stood before stays";
    EXPECT_EQ(Generator::alive, 1);
    EXPECT_TRUE(object->IsDirty(DIRTYFLAGS_DATA));

    Generator::Of(object).build = nullptr;
    PartOf<Documents>().FinishPasses();
    PartOf<Worker>().join();
    EXPECT_EQ(PointsOf(object->GetCache()), 9);
    EXPECT_FALSE(CoreOf(document)->passDue);
}

TEST_F(EvaluationTest, TheWorkerIsJoinedBeforeTheMainThreadTouchesNodes)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    std::atomic<bool> inside = false;
    bool overlapped = false;
    Generator::Of(object).onMessage = [&](Int32, void*) { overlapped |= inside; };
    Generator::Of(object).build = [&](BaseObject* op, HierarchyHelp* hh) -> BaseObject* {
        if (!hh->GetThread()) return nullptr;
        inside = true;
        while (!hh->GetThread()->TestBreak()) std::this_thread::yield();
        const Int32 points = ParameterOf(op);
        inside = false;
        return PolygonObject::Alloc(points, 1);
    };
    const Filename file(TextOf(host.folder.path("scene")));
    const std::function<bool()> commands[] = {
        [&] { return EditParameter(*object, DescID(kParameter), GeData(object->GetDirty(DIRTYFLAGS_DATA) + 0.0)); },
        [&] { return document->DoUndo() && document->DoRedo(); },
        [&] { return document->ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0) != 0; },
        [&] { return SaveScene(*document, file) && MergeScene(*document, file, SCENEFILTER_MATERIALS); },
        [&] { return Render(*document, BUILDFLAGS_0, [](BaseDocument&) { return true; }); },
        [&] { return CreateFromMenu(Onull) && CollectAssets(*document, ASSETDATA_FLAG_0).empty(); }};
    for (const auto& command : commands) {
        StartPass(*document);
        EXPECT_TRUE(command());
        EXPECT_FALSE(PartOf<Worker>().busy());
    }
    EXPECT_FALSE(overlapped);
    EXPECT_EQ(object->GetCache(), nullptr) << "all were broken off";
    Generator::Of(object).onMessage = nullptr; // the object outlives what it refers to
    Generator::Of(object).build = nullptr;
}

TEST_F(EvaluationTest, ARenderEvaluatesAClone)
{
    BaseObject* object = Add(*document, kGenerator, "plant");
    EXPECT_TRUE(evaluate());
    Journal::take();
    EXPECT_TRUE(Render(*document, BUILDFLAGS_EXTERNALRENDERER, [&](BaseDocument& rendered) {
        EXPECT_EQ(Generator::Of(rendered.GetFirstObject()).builds, 1);
        EXPECT_EQ(PointsOf(rendered.GetFirstObject()->GetCache()), 3);
        Journal::add("plant: rendered");
        return true;
    }));
    EXPECT_THAT(Journal::take("plant"), ElementsAre("plant: 11", "plant: 1001071 start external", "plant: rendered",
                                                    "plant: 1001071 end external"));
    EXPECT_EQ(Generator::Of(object).builds, 1);
    EXPECT_EQ(Generator::alive, 1);
}

TEST_F(EvaluationTest, InstancesShowWhatTheirTargetShows)
{
    BaseObject* instance = addInstance("instance", nullptr);
    BaseObject* object = Add(*document, kGenerator, "plant");
    BaseContainer& settings = *instance->GetDataInstance();
    instance->SetMl(MatrixMove(Vector(0, 0, 7)));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr) << "it shows nothing yet";

    settings.SetLink(INSTANCEOBJECT_LINK, object);
    object->GetDataInstance()->SetInt32(kParameter, 6);
    EXPECT_TRUE(evaluate());
    BaseObject* cache = instance->GetCache();
    ASSERT_EQ(PointsOf(cache), 6) << "the target is evaluated first";
    EXPECT_EQ(Generator::Of(object).calls, 2);
    EXPECT_EQ(cache->GetMg().off, Vector(0, 0, 7));
    object->SetMl(MatrixMove(Vector(50, 0, 0)));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), cache) << "where the target stands does not matter";

    settings.SetBool(INSTANCEOBJECT_RENDERINSTANCE, true);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr);
    settings.SetBool(INSTANCEOBJECT_RENDERINSTANCE, false);
    object->Remove();
    BaseObject::Free(object);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr);
}

TEST_F(EvaluationTest, InstancesOfGroupsKeepThePlacesWithin)
{
    BaseObject* group = Add(*document, Onull, "group");
    group->SetMl(MatrixMove(Vector(1000, 0, 0)));
    BaseObject* first = Add(*document, kGenerator, "first", group);
    addInstance("second", first, group)->SetMl(MatrixMove(Vector(0, 3, 0)));
    BaseObject* instance = addInstance("instance", group);
    for (const Vector& place : {Vector(2, 0, 0), Vector(4, 0, 0)}) {
        first->SetMl(MatrixMove(place));
        EXPECT_TRUE(evaluate());
        BaseObject* shown = instance->GetCache() ? instance->GetCache()->GetDown() : nullptr;
        ASSERT_TRUE(shown && shown->GetNext());
        EXPECT_EQ(PointsOf(shown), 3);
        EXPECT_EQ(shown->GetMg().off, place);
        EXPECT_EQ(shown->GetNext()->GetMg().off, Vector(0, 3, 0));
    }
}

TEST_F(EvaluationTest, InstancesInCirclesShowNothing)
{
    BaseObject* self = addInstance("self", nullptr);
    self->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, self);
    BaseObject* group = Add(*document, Onull, "group");
    BaseObject* ofParent = addInstance("of parent", group, group);
    BaseObject* one = addInstance("one", nullptr);
    BaseObject* two = addInstance("two", one);
    one->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, two);
    EXPECT_TRUE(evaluate());
    for (BaseObject* object : {self, ofParent, one, two}) EXPECT_EQ(object->GetCache(), nullptr) << NameOf(object);
}

} // namespace
} // namespace host::test
