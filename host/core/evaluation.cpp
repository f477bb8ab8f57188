#include "core/evaluation.h"

#include "core/application.h"
#include "core/document_messages.h"
#include "core/instances.h"
#include "core/node_class.h"
#include "core/object.h"
#include "core/worker.h"

#include <algorithm>
#include <unordered_set>

namespace host {
namespace {

constexpr Int32 kDeepestNesting = 200; // of generators in caches and of instances of instances

template <class Use> void forEachObject(const NodeCore& below, const Use& use)
{
    for (NodeCore* object = below.firstChild; object; object = object->next) {
        use(static_cast<ObjectCore&>(*object));
        forEachObject(*object, use);
    }
}

void freeChain(ObjectCore* root)
{
    while (root) {
        ObjectCore* following = static_cast<ObjectCore*>(root->next);
        FreeNode(root);
        root = following;
    }
}

class Pass {
public:
    Pass(DocumentCore& scene, const PassOptions& passOptions) : document(scene), options(passOptions) {}

    bool run()
    {
        forEachObject(document.objects, [](ObjectCore& object) { object.bits &= ~BIT_CONTROLOBJECT; });
        if (options.expressions && !runHooks(0, EXECUTIONPRIORITY_GENERATOR)) return false;
        if (options.caches) {
            for (NodeCore* object = document.objects.firstChild; object; object = object->next) {
                if (!evaluateTree(static_cast<ObjectCore&>(*object))) return false;
            }
        }
        return !options.expressions || runHooks(EXECUTIONPRIORITY_GENERATOR, LIMIT<Int32>::MAX);
    }

private:
    bool broken() const { return options.thread && options.thread->TestBreak(); }

    // The hooks whose priority is at least `from` and below `to`, in order of priority.
    bool runHooks(Int32 from, Int32 to)
    {
        std::vector<NodeCore*> hooks;
        for (NodeCore* hook = document.hooks.firstChild; hook; hook = hook->next) {
            if (hook->data && hook->nodeClass->priority >= from && hook->nodeClass->priority < to) {
                hooks.push_back(hook);
            }
        }
        std::ranges::stable_sort(hooks, {}, [](const NodeCore* hook) { return hook->nodeClass->priority; });
        for (NodeCore* hook : hooks) {
            if (broken() || !execute(*hook)) return false;
        }
        return !broken();
    }

    bool execute(NodeCore& hook)
    {
        EXECUTIONFLAGS flags = EXECUTIONFLAGS_EXPRESSION;
        if (options.animation) flags |= EXECUTIONFLAGS_ANIMATION;
        if (options.caches) flags |= EXECUTIONFLAGS_CACHEBUILDING;
        if (options.flags & (BUILDFLAGS_INTERNALRENDERER | BUILDFLAGS_EXTERNALRENDERER)) flags |= EXECUTIONFLAGS_RENDER;
        return static_cast<SceneHookData*>(hook.data)->Execute(hook.As<BaseSceneHook>(), document.As<BaseDocument>(),
                                                               options.thread, hook.nodeClass->priority,
                                                               flags) == EXECUTIONRESULT_OK;
    }

    // False: broken off.
    bool evaluateTree(ObjectCore& object)
    {
        if (broken() || !evaluateObject(object)) return false;
        for (NodeCore* child = object.firstChild; child; child = child->next) {
            if (!evaluateTree(static_cast<ObjectCore&>(*child))) return false;
        }
        return true;
    }

    bool evaluateObject(ObjectCore& object)
    {
        // An instance may have asked for it before its turn; its parent may have used it up as input.
        if ((object.bits & BIT_CONTROLOBJECT) || !evaluated.insert(&object).second) return true;
        const bool instance = object.IsInstanceOf(Oinstance);
        if (!instance && !object.IsGenerator()) return true;
        if (!object.deformMode || !layerGenerates(object) || nesting >= kDeepestNesting) {
            object.SetCache(nullptr);
            return true;
        }

        ++nesting;
        const bool finished = instance ? buildInstance(object) : generate(object);
        const bool whole = finished && evaluateCache(object);
        --nesting;
        return whole;
    }

    bool layerGenerates(const ObjectCore& object) const
    {
        const LayerData* layer = object.As<BaseObject>()->GetLayerData(document.As<BaseDocument>());
        return !layer || layer->generators;
    }

    bool generate(ObjectCore& object)
    {
        if (!object.data) return true;
        HierarchyHelp help =
            NodeCore::MakeHierarchyHelp(document.As<BaseDocument>(), options.thread, options.flags, object.Global());
        BaseObject* answer = static_cast<ObjectData*>(object.data)->GetVirtualObjects(object.As<BaseObject>(), &help);
        ObjectCore* root = CoreOf(answer);

        // What stands in a scene cannot be a cache as well.
        const bool present = root && root == object.Cache();
        if (root && !present && (root->IsLinked() || root->CacheParent() || root == &object)) root = nullptr;
        if (broken()) {
            if (!present) freeChain(root);
            return false;
        }
        object.SetCache(root);
        object.Touch();
        return true;
    }

    bool buildInstance(ObjectCore& object)
    {
        ObjectCore* target = InstanceTarget(object, document);
        if (target && !evaluateTree(*target)) return false;
        UpdateInstance(object, target, clonesLeft);
        object.Touch();
        return true;
    }

    bool evaluateCache(ObjectCore& object)
    {
        for (NodeCore* root = object.Cache(); root; root = root->next) {
            root->bits &= ~BIT_CONTROLOBJECT;
            forEachObject(*root, [](ObjectCore& inner) { inner.bits &= ~BIT_CONTROLOBJECT; });
        }
        for (NodeCore* root = object.Cache(); root; root = root->next) {
            if (!evaluateTree(static_cast<ObjectCore&>(*root))) return false;
        }
        return true;
    }

    DocumentCore& document;
    PassOptions options;
    std::unordered_set<const ObjectCore*> evaluated;
    Int32 nesting = 0;
    std::size_t clonesLeft = kMostInstanceClones;
};

} // namespace

bool Evaluate(DocumentCore& document, const PassOptions& options)
{
    const bool whole = Pass(document, options).run();
    document.passDue = !whole;
    return whole;
}

void StartPass(BaseDocument& document)
{
    PartOf<Worker>().start([core = CoreOf(&document)](BaseThread* thread) { Evaluate(*core, {.thread = thread}); });
}

bool Render(BaseDocument& document, BUILDFLAGS flags, const std::function<bool(BaseDocument& rendered)>& draw)
{
    StopAllThreads();
    BaseDocument* clone = CloneDocument(document);
    if (!clone) return false;

    RenderNotificationData notification;
    notification.doc = clone;
    notification.start = true;
    notification.external = (flags & BUILDFLAGS_EXTERNALRENDERER) != 0;
    SendToNodes(*CoreOf(clone), MSG_MULTI_RENDERNOTIFICATION, &notification);
    const bool drawn = Evaluate(*CoreOf(clone), {.flags = flags}) && draw(*clone);
    notification.start = false;
    SendToNodes(*CoreOf(clone), MSG_MULTI_RENDERNOTIFICATION, &notification);

    BaseDocument::Free(clone);
    return drawn;
}

} // namespace host

Bool BaseDocument::ExecutePasses(BaseThread* bt, Bool animation, Bool expressions, Bool caches, BUILDFLAGS flags)
{
    return host::Evaluate(*host::CoreOf(this), {.thread = bt,
                                                .animation = animation != 0,
                                                .expressions = expressions != 0,
                                                .caches = caches != 0,
                                                .flags = flags});
}
