#include "test_plugins.h"

#include "core/string_access.h"

namespace host::test {
namespace {

// What of a message matters to tests.
std::string textOf(Int32 type, const void* data)
{
    const auto parameter = [](const DescID* id) { return " " + std::to_string((*id)[0].id); };
    std::string text = std::to_string(type);
    switch (type) {
    case MSG_MULTI_DOCUMENTIMPORTED: {
        const auto& imported = *static_cast<const DocumentImported*>(data);
        return text + (imported.doc->GetDocumentPath().Content() ? "" : " no path") +
               (imported.gui_allowed ? " gui" : "");
    }
    case MSG_DOCUMENTINFO: {
        const auto& info = *static_cast<const DocumentInfoData*>(data);
        text += "/" + std::to_string(info.type);
        if (info.filename.Content()) text += " file=" + Utf8Of(info.filename.GetFileString());
        if (info.bl) text += " node=" + NameOf(info.bl);
        return text + (info.gui_allowed ? " gui" : "");
    }
    case MSG_MULTI_RENDERNOTIFICATION: {
        const auto& render = *static_cast<const RenderNotificationData*>(data);
        return text + (render.start ? " start" : " end") + (render.external ? " external" : "");
    }
    case MSG_DESCRIPTION_INITUNDO: return text + parameter(static_cast<const DescriptionInitUndo*>(data)->descid);
    case MSG_DESCRIPTION_POSTSETPARAMETER:
        return text + parameter(static_cast<const DescriptionPostSetValue*>(data)->descid);
    case MSG_DESCRIPTION_CHECKUPDATE: return text + parameter(static_cast<const DescriptionCheckUpdate*>(data)->descid);
    case MSG_DESCRIPTION_COMMAND: return text + parameter(&static_cast<const DescriptionCommand*>(data)->id);
    default: return text;
    }
}

class Hook : public SceneHookData {
public:
    static NodeData* Alloc() { return NewObjClear(Hook); }

    Bool Message(GeListNode* node, Int32 type, void* data) override
    {
        Journal::add(NameOf(node) + ": " + textOf(type, data));
        return true;
    }
    EXECUTIONRESULT Execute(BaseSceneHook* node, BaseDocument*, BaseThread*, Int32 priority, EXECUTIONFLAGS) override
    {
        Journal::add(NameOf(node) + ": execute " + std::to_string(priority));
        return EXECUTIONRESULT_OK;
    }
};

} // namespace

std::vector<std::string>& Journal::lines()
{
    static std::vector<std::string> kept;
    return kept;
}

std::vector<std::string> Journal::take(std::string_view beginning)
{
    std::vector<std::string> found = std::exchange(lines(), {});
    std::erase_if(found, [&](const std::string& line) { return !line.starts_with(beginning); });
    return found;
}

Bool Generator::Init(GeListNode* node)
{
    ++alive;
    static_cast<BaseList2D*>(node)->GetDataInstance()->SetInt32(kParameter, 3);
    return true;
}

Bool Generator::CopyTo(NodeData* dest, GeListNode*, GeListNode*, COPYFLAGS, AliasTrans*)
{
    static_cast<Generator*>(dest)->member = member;
    return true;
}

Bool Generator::Message(GeListNode* node, Int32 type, void* data)
{
    Journal::add(NameOf(node) + ": " + textOf(type, data));
    auto* object = static_cast<BaseList2D*>(node);
    if (type == MSG_GETALLASSETS) {
        static_cast<AssetData*>(data)->Add(object->GetDataInstance()->GetFilename(kFileParameter), object);
    }
    if (onMessage) onMessage(type, data);
    return true;
}

BaseObject* Generator::GetVirtualObjects(BaseObject* op, HierarchyHelp* hh)
{
    ++calls;
    if (build) return build(op, hh);
    const bool stale = op->CheckCache(hh);
    if (!stale && !op->IsDirty(DIRTYFLAGS_DATA)) return op->GetCache(hh);
    ++builds;
    return PolygonObject::Alloc(ParameterOf(op), 1);
}

std::string NameOf(const GeListNode* node)
{
    return Utf8Of(static_cast<const BaseList2D*>(node)->GetName());
}

BaseObject* Add(BaseDocument& document, Int32 type, const char* name, BaseObject* parent)
{
    BaseObject* object = BaseObject::Alloc(type);
    object->SetName(String(name));
    BaseObject* last = parent ? parent->GetDown() : document.GetFirstObject();
    while (last && last->GetNext()) last = last->GetNext();
    document.InsertObject(object, parent, last);
    return object;
}

std::string TreeOf(BaseObject* first)
{
    std::string text;
    for (BaseObject* object = first; object; object = object->GetNext()) {
        text += (object == first ? "" : " ") + NameOf(object);
        if (object->GetDown()) text += "(" + TreeOf(object->GetDown()) + ")";
    }
    return text;
}

Int32 PointsOf(BaseObject* cache)
{
    return cache && cache->GetType() == Opolygon ? static_cast<PolygonObject*>(cache)->GetPointCount() : -1;
}

void RegisterTestPlugins()
{
    RegisterObjectPlugin(kGenerator, String("Generator"), OBJECT_GENERATOR, Generator::Alloc, String(), nullptr, 0);
    RegisterSceneHookPlugin(kHook, String("hook"), 0, Hook::Alloc, EXECUTIONPRIORITY_DYNAMICS, 0);
    RegisterSceneHookPlugin(kEarlyHook, String("early hook"), 0, Hook::Alloc, EXECUTIONPRIORITY_INITIAL, 0);
    Generator::alive = 0;
    Journal::take();
}

} // namespace host::test
