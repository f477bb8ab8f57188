#include "test_plugins.h"

#include "core/string_access.h"

namespace host::test {

std::string TextOfName(const GeListNode* node)
{
    return Utf8Of(static_cast<const BaseList2D*>(node)->GetName());
}

std::string TextOfMessage(Int32 type, const void* data)
{
    std::string text = std::to_string(type);
    if (type == MSG_MULTI_DOCUMENTIMPORTED) {
        const auto& imported = *static_cast<const DocumentImported*>(data);
        text += " path=" + Utf8Of(imported.doc->GetDocumentPath().GetFileString());
        text += imported.gui_allowed ? " gui" : "";
    } else if (type == MSG_DOCUMENTINFO) {
        const auto& info = *static_cast<const DocumentInfoData*>(data);
        text += "/" + std::to_string(info.type);
        if (info.filename.Content()) text += " file=" + Utf8Of(info.filename.GetFileString());
        if (info.bl) text += " node=" + TextOfName(info.bl);
        text += info.gui_allowed ? " gui" : "";
    } else if (type == MSG_MULTI_RENDERNOTIFICATION) {
        const auto& render = *static_cast<const RenderNotificationData*>(data);
        text += render.start ? " start" : " end";
        text += render.external ? " external" : "";
    } else if (type == MSG_DESCRIPTION_INITUNDO) {
        text += " " + std::to_string((*static_cast<const DescriptionInitUndo*>(data)->descid)[0].id);
    } else if (type == MSG_DESCRIPTION_POSTSETPARAMETER) {
        text += " " + std::to_string((*static_cast<const DescriptionPostSetValue*>(data)->descid)[0].id);
    } else if (type == MSG_DESCRIPTION_CHECKUPDATE) {
        text += " " + std::to_string((*static_cast<const DescriptionCheckUpdate*>(data)->descid)[0].id);
    } else if (type == MSG_DESCRIPTION_COMMAND) {
        text += " " + std::to_string(static_cast<const DescriptionCommand*>(data)->id[0].id);
    }
    return text;
}

Bool Generator::Init(GeListNode* node)
{
    ++alive;
    static_cast<BaseList2D*>(node)->GetDataInstance()->SetInt32(kParameter, 3);
    return true;
}

void Generator::Free(GeListNode*)
{
    --alive;
}

Bool Generator::CopyTo(NodeData* dest, GeListNode*, GeListNode* dnode, COPYFLAGS, AliasTrans*)
{
    Journal::add(TextOfName(dnode) + ": copied");
    static_cast<Generator*>(dest)->member = member;
    return true;
}

Bool Generator::Message(GeListNode* node, Int32 type, void* data)
{
    Journal::add(TextOfName(node) + ": " + TextOfMessage(type, data));
    const auto* object = static_cast<BaseList2D*>(node);
    if (type == MSG_GETALLASSETS) {
        const Filename file = object->GetDataInstance()->GetFilename(kFileParameter);
        static_cast<AssetData*>(data)->Add(file, static_cast<BaseList2D*>(node));
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
    return PolygonObject::Alloc(op->GetDataInstance()->GetInt32(kParameter), 1);
}

Bool Hook::Message(GeListNode* node, Int32 type, void* data)
{
    Journal::add(TextOfName(node) + ": " + TextOfMessage(type, data));
    return true;
}

EXECUTIONRESULT Hook::Execute(BaseSceneHook* node, BaseDocument*, BaseThread*, Int32 priority, EXECUTIONFLAGS)
{
    Journal::add(TextOfName(node) + ": execute " + std::to_string(priority));
    return EXECUTIONRESULT_OK;
}

void RegisterTestPlugins()
{
    RegisterObjectPlugin(kGenerator, String("Generator"), OBJECT_GENERATOR, Generator::Alloc, String(), nullptr, 0);
    RegisterSceneHookPlugin(kHook, String("hook"), 0, Hook::Alloc, EXECUTIONPRIORITY_DYNAMICS, 0);
    RegisterSceneHookPlugin(kOtherHook, String("early hook"), 0, Hook::Alloc, EXECUTIONPRIORITY_INITIAL, 0);
    Generator::alive = 0;
    Journal::take();
}

namespace {

BaseObject* add(BaseDocument& document, Int32 type, const char* name, BaseObject* parent)
{
    BaseObject* object = BaseObject::Alloc(type);
    object->SetName(String(name));
    BaseObject* last = parent ? parent->GetDownLast() : document.GetFirstObject();
    while (last && last->GetNext()) last = last->GetNext();
    document.InsertObject(object, parent, last);
    return object;
}

} // namespace

BaseObject* AddGenerator(BaseDocument& document, const char* name, BaseObject* parent)
{
    return add(document, kGenerator, name, parent);
}

BaseObject* AddNull(BaseDocument& document, const char* name, BaseObject* parent)
{
    return add(document, Onull, name, parent);
}

std::string TreeOf(BaseObject* first)
{
    std::string text;
    for (BaseObject* object = first; object; object = object->GetNext()) {
        if (object != first) text += ' ';
        text += TextOfName(object);
        if (object->GetDown()) text += "(" + TreeOf(object->GetDown()) + ")";
    }
    return text;
}

} // namespace host::test
