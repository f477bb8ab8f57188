#include "core/evaluation.h"

#include "core/documents.h"
#include "core/edits.h"
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
        BaseObject* instance = AddNull(*document, "placeholder", parent);
        BaseObject* made = BaseObject::Alloc(Oinstance);
        made->SetName(String(name));
        made->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, target);
        document->InsertObject(made, parent, instance);
        instance->Remove();
        BaseObject::Free(instance);
        return made;
    }

    TestHost host;
    BaseDocument* document;
};

Int32 pointsOf(BaseObject* cache)
{
    return cache && cache->GetType() == Opolygon ? static_cast<PolygonObject*>(cache)->GetPointCount() : -1;
}

TEST_F(EvaluationTest, GeneratorsAreAskedInEveryPassAndKnowWhatChangedSinceTheLast)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Generator& generator = Generator::Of(object);
    EXPECT_TRUE(evaluate());
    BaseObject* cache = object->GetCache();
    EXPECT_EQ(pointsOf(cache), 3);
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
    EXPECT_EQ(pointsOf(object->GetCache()), 4);
    EXPECT_EQ(object->GetDirty(DIRTYFLAGS_CACHE), caches + 1);
    EXPECT_TRUE(evaluate(BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_TRUE(evaluate(BUILDFLAGS_EXTERNALRENDERER));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(generator.builds, 4) << "once for the renderer, once back";
}

TEST_F(EvaluationTest, WhatAGeneratorWritesIntoItselfCausesNoEndlessRebuild)
{
    BaseObject* object = AddGenerator(*document, "plant");
    Int32 builds = 0;
    Generator::Of(object).build = [&](BaseObject* op, HierarchyHelp* hh) -> BaseObject* {
        EXPECT_EQ(hh->GetDocument(), document);
        EXPECT_EQ(hh->GetLOD(), 1.0);
        const bool stale = op->CheckCache(hh);
        if (!stale && !op->IsDirty(DIRTYFLAGS_DATA)) return op->GetCache(hh);
        op->GetDataInstance()->SetString(4711, String::IntToString(++builds));
        return BaseObject::Alloc(Onull);
    };
    for (Int32 i = 0; i < 3; ++i) EXPECT_TRUE(evaluate());
    EXPECT_EQ(builds, 1);
}

TEST_F(EvaluationTest, NothingFreesTheCacheAndIsAskedAgainOnceAPass)
{
    BaseObject* object = AddGenerator(*document, "plant");
    EXPECT_TRUE(evaluate());
    Int32 calls = 0;
    Generator::Of(object).build = [&](BaseObject*, HierarchyHelp*) -> BaseObject* {
        ++calls;
        return nullptr;
    };
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(object->GetCache(), nullptr);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(calls, 2);

    // Nor may something be a cache that stands in the scene already.
    BaseObject* other = AddNull(*document, "other");
    Generator::Of(object).build = [&](BaseObject*, HierarchyHelp*) { return other; };
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(object->GetCache(), nullptr);
    EXPECT_EQ(TreeOf(document->GetFirstObject()), "plant other");
}

TEST_F(EvaluationTest, SwitchAndLayerEndAGeneratorButVisibilityDoesNot)
{
    BaseObject* object = AddGenerator(*document, "plant");
    LayerObject* layer = LayerObject::Alloc();
    document->GetLayerObjectRoot()->InsertLast(layer);
    object->SetLayerObject(layer);
    object->SetEditorMode(MODE_OFF);
    object->SetRenderMode(MODE_OFF);
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(object->GetCache());

    object->SetDeformMode(false);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(object->GetCache(), nullptr);
    EXPECT_FALSE(object->GetBit(BIT_CONTROLOBJECT));
    object->SetDeformMode(true);
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(object->GetCache());

    LayerData data = *object->GetLayerData(document);
    data.generators = false;
    object->SetLayerData(document, data);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(object->GetCache(), nullptr);
    EXPECT_EQ(Generator::Of(object).calls, 2);
}

TEST_F(EvaluationTest, HooksRunByPriorityThenParentsBeforeChildrenUnlessTheseWereUsedUp)
{
    BaseObject* parent = AddGenerator(*document, "parent");
    BaseObject* used = AddGenerator(*document, "used", parent);
    BaseObject* free = AddGenerator(*document, "free", parent);
    AddGenerator(*document, "last");
    std::vector<std::string> order;
    for (BaseObject* object : {parent, used, free, parent->GetNext()}) {
        Generator::Of(object).build = [&, object](BaseObject* op, HierarchyHelp*) {
            EXPECT_EQ(op, object);
            Journal::add("build " + TextOfName(op));
            if (op == parent) used->Touch();
            return BaseObject::Alloc(Onull);
        };
    }
    Journal::take();
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(document->ExecutePasses(nullptr, true, true, false, BUILDFLAGS_0));
    EXPECT_THAT(Journal::take(),
                ElementsAre("early hook: execute 1000", "hook: execute 4000", "build parent", "build free",
                            "build last", "early hook: execute 1000", "hook: execute 4000"));
}

TEST_F(EvaluationTest, GeneratorsInCachesAreEvaluatedInTurnToABound)
{
    BaseObject* object = AddGenerator(*document, "outer");
    BaseObject* inner = nullptr;
    Generator::Of(object).build = [&](BaseObject* op, HierarchyHelp*) {
        if (!op->GetCache()) {
            inner = BaseObject::Alloc(kGenerator);
            inner->SetMl(MatrixMove(Vector(0, 2, 0)));
        }
        return inner;
    };
    object->SetMl(MatrixMove(Vector(1, 0, 0)));
    EXPECT_TRUE(evaluate());
    EXPECT_TRUE(evaluate());
    ASSERT_EQ(object->GetCache(), inner);
    EXPECT_EQ(Generator::Of(inner).calls, 2);
    EXPECT_EQ(Generator::Of(inner).builds, 1);
    EXPECT_EQ(pointsOf(inner->GetCache()), 3);
    EXPECT_EQ(inner->GetCache()->GetMg().off, Vector(1, 2, 0));

    // One that holds itself without end.
    std::function<BaseObject*(BaseObject*, HierarchyHelp*)> endless = [&](BaseObject*, HierarchyHelp*) {
        BaseObject* next = BaseObject::Alloc(kGenerator);
        Generator::Of(next).build = endless;
        return next;
    };
    Generator::Of(object).build = endless;
    EXPECT_TRUE(evaluate());
    EXPECT_LT(Generator::alive, 1000);
}

class Breaker final : public C4DThread {
public:
    ~Breaker() override { End(); }
    void Main() override { work(Get()); }
    const Char* GetThreadName() override { return "breaker"; }
    std::function<void(BaseThread*)> work;
};

TEST_F(EvaluationTest, ABrokenPassDropsItsResultNotesNothingAndIsDueAgain)
{
    BaseObject* object = AddGenerator(*document, "plant");
    EXPECT_TRUE(evaluate());
    BaseObject* cache = object->GetCache();
    object->GetDataInstance()->SetInt32(kParameter, 9);

    Breaker thread;
    Generator::Of(object).build = [&](BaseObject*, HierarchyHelp* hh) {
        thread.End(false);
        EXPECT_TRUE(hh->GetThread()->TestBreak());
        return BaseObject::Alloc(kGenerator);
    };
    bool whole = true;
    thread.work = [&](BaseThread* base) {
        whole = document->ExecutePasses(base, true, true, true, BUILDFLAGS_0);
    };
    ASSERT_TRUE(thread.Start());
    thread.Wait();
    EXPECT_FALSE(whole);
    EXPECT_EQ(object->GetCache(), cache) << "what stood before stays";
    EXPECT_EQ(Generator::alive, 1);
    EXPECT_TRUE(object->IsDirty(DIRTYFLAGS_DATA));

    Generator::Of(object).build = nullptr;
    PartOf<Documents>().FinishPasses();
    PartOf<Worker>().join();
    EXPECT_EQ(pointsOf(object->GetCache()), 9);
    EXPECT_FALSE(CoreOf(document)->passDue);
}

TEST_F(EvaluationTest, TheWorkerIsJoinedBeforeTheMainThreadTouchesNodes)
{
    BaseObject* object = AddGenerator(*document, "plant");
    std::atomic<Int32> inside = 0;
    std::atomic<bool> overlapped = false;
    Generator::Of(object).onMessage = [&](Int32, void*) { overlapped = overlapped || inside > 0; };
    Generator::Of(object).build = [&](BaseObject* op, HierarchyHelp* hh) -> BaseObject* {
        ++inside;
        EXPECT_TRUE(hh->GetThread());
        while (!hh->GetThread()->TestBreak()) std::this_thread::yield();
        const Int32 points = op->GetDataInstance()->GetInt32(kParameter);
        --inside;
        return PolygonObject::Alloc(points, 1);
    };
    for (Int32 i = 0; i < 20; ++i) {
        StartPass(*document);
        EXPECT_TRUE(EditParameter(*object, DescID(kParameter), GeData(10 + i)));
    }
    EXPECT_FALSE(overlapped);
    EXPECT_EQ(object->GetCache(), nullptr) << "all were broken off";
    Generator::Of(object).build = nullptr;
    StartPass(*document);
    PartOf<Worker>().join();
    EXPECT_EQ(pointsOf(object->GetCache()), 29);
}

TEST_F(EvaluationTest, ARenderEvaluatesAClone)
{
    BaseObject* object = AddGenerator(*document, "plant");
    EXPECT_TRUE(evaluate());
    BaseObject* cache = object->GetCache();
    Journal::take();
    EXPECT_TRUE(Render(*document, BUILDFLAGS_EXTERNALRENDERER, [&](BaseDocument& rendered) {
        BaseObject* copy = rendered.GetFirstObject();
        EXPECT_NE(copy, object);
        EXPECT_EQ(Generator::Of(copy).builds, 1);
        EXPECT_EQ(pointsOf(copy->GetCache()), 3);
        Journal::add("plant: rendered");
        return true;
    }));
    EXPECT_THAT(Journal::taken("plant"), ElementsAre("plant: copied", "plant: 11", "plant: 1001071 start external",
                                                     "plant: rendered", "plant: 1001071 end external"));
    EXPECT_EQ(object->GetCache(), cache);
    EXPECT_EQ(Generator::Of(object).builds, 1);
    EXPECT_EQ(Generator::alive, 1);
}

TEST_F(EvaluationTest, InstancesShowWhatTheirTargetShows)
{
    BaseObject* instance = addInstance("instance", nullptr);
    BaseObject* object = AddGenerator(*document, "plant");
    object->SetMl(MatrixMove(Vector(100, 0, 0)));
    instance->SetMl(MatrixMove(Vector(0, 0, 7)));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr) << "it shows nothing yet";

    instance->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, object);
    EXPECT_TRUE(evaluate());
    BaseObject* cache = instance->GetCache();
    EXPECT_EQ(pointsOf(cache), 3) << "the target is evaluated first";
    EXPECT_NE(cache, object->GetCache());
    EXPECT_EQ(cache->GetMg().off, Vector(0, 0, 7));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), cache) << "nothing changed";
    EXPECT_EQ(Generator::Of(object).calls, 3);

    object->GetDataInstance()->SetInt32(kParameter, 6);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(pointsOf(instance->GetCache()), 6);
    object->SetMl(MatrixMove(Vector(50, 0, 0)));
    cache = instance->GetCache();
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), cache) << "where the target stands does not matter";

    instance->GetDataInstance()->SetBool(INSTANCEOBJECT_RENDERINSTANCE, true);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr);
    instance->GetDataInstance()->SetBool(INSTANCEOBJECT_RENDERINSTANCE, false);
    object->Remove();
    BaseObject::Free(object);
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache(), nullptr);
}

TEST_F(EvaluationTest, InstancesOfGroupsKeepThePlacesWithin)
{
    BaseObject* group = AddNull(*document, "group");
    BaseObject* first = AddGenerator(*document, "first", group);
    addInstance("second", first, group)->SetMl(MatrixMove(Vector(0, 3, 0)));
    group->SetMl(MatrixMove(Vector(1000, 0, 0)));
    first->SetMl(MatrixMove(Vector(2, 0, 0)));
    BaseObject* instance = addInstance("instance", group);
    EXPECT_TRUE(evaluate());
    BaseObject* cache = instance->GetCache();
    ASSERT_TRUE(cache);
    ASSERT_TRUE(cache->GetDown() && cache->GetDown()->GetNext());
    EXPECT_EQ(pointsOf(cache->GetDown()), 3);
    EXPECT_EQ(cache->GetDown()->GetMg().off, Vector(2, 0, 0));
    EXPECT_EQ(cache->GetDownLast()->GetMg().off, Vector(0, 3, 0));

    first->SetMl(MatrixMove(Vector(4, 0, 0)));
    EXPECT_TRUE(evaluate());
    EXPECT_EQ(instance->GetCache()->GetDown()->GetMg().off, Vector(4, 0, 0));
}

TEST_F(EvaluationTest, InstancesInCirclesShowNothingAndEndlessOnesEnd)
{
    BaseObject* self = addInstance("self", nullptr);
    self->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, self);
    BaseObject* group = AddNull(*document, "group");
    BaseObject* ofParent = addInstance("of parent", group, group);
    BaseObject* one = addInstance("one", nullptr);
    BaseObject* two = addInstance("two", one);
    one->GetDataInstance()->SetLink(INSTANCEOBJECT_LINK, two);
    BaseObject* outside = addInstance("outside", two);
    EXPECT_TRUE(evaluate());
    for (BaseObject* object : {self, ofParent, one, two}) EXPECT_EQ(object->GetCache(), nullptr) << TextOfName(object);
    EXPECT_TRUE(!outside->GetCache() || !outside->GetCache()->GetDown());

    // Each group holds two of the group before.
    BaseObject* previous = AddGenerator(*document, "plant");
    for (Int32 i = 0; i < 12; ++i) {
        BaseObject* holder = AddNull(*document, "holder");
        addInstance("left", previous, holder);
        addInstance("right", previous, holder);
        previous = holder;
    }
    EXPECT_TRUE(evaluate());
    Int32 polygons = 0;
    const auto count = [&](auto&& recurse, BaseObject* object) -> void {
        polygons += object->GetType() == Opolygon;
        for (BaseObject* part = object->GetCache(); part; part = part->GetNext()) recurse(recurse, part);
        for (BaseObject* child = object->GetDown(); child; child = child->GetNext()) recurse(recurse, child);
    };
    count(count, previous);
    EXPECT_EQ(polygons, 4096);
}

} // namespace
} // namespace host::test
