#include "core/document_messages.h"

#include "core/application.h"

namespace host {
namespace {

void sendToEach(const std::vector<NodeCore*>& nodes, Int32 type, void* data)
{
    // An answer may free nodes that are still to come: what is kept over the calls is their identity.
    std::vector<Marker> markers;
    markers.reserve(nodes.size());
    for (const NodeCore* node : nodes) markers.push_back(node->GetMarker());
    for (const Marker marker : markers) {
        if (NodeCore* node = FindNode(marker)) SendTo(*node, type, data);
    }
}

} // namespace

bool HasUserInterface()
{
    return Application::current().options().userInterface;
}

std::vector<NodeCore*> NodesOf(DocumentCore& document)
{
    std::vector<NodeCore*> nodes;
    VisitBelow(document, [&](NodeCore& node) { nodes.push_back(&node); });
    return nodes;
}

void SendToNodes(DocumentCore& document, Int32 type, void* data)
{
    sendToEach(NodesOf(document), type, data);
}

DocumentInfoData DocumentInfo(DocumentCore& document, Int32 type)
{
    DocumentInfoData info;
    info.type = type;
    info.fileformat = kSceneFormat;
    info.doc = document.As<BaseDocument>();
    info.gui_allowed = HasUserInterface();
    return info;
}

void SendDocumentInfo(DocumentCore& document, Int32 type)
{
    SendDocumentInfo(document, DocumentInfo(document, type));
}

void SendDocumentInfo(DocumentCore& document, DocumentInfoData info)
{
    SendToNodes(document, MSG_DOCUMENTINFO, &info);
}

void SendToHooks(DocumentCore& document, Int32 type, void* data)
{
    std::vector<NodeCore*> hooks;
    for (NodeCore* hook = document.hooks.firstChild; hook; hook = hook->next) hooks.push_back(hook);
    sendToEach(hooks, type, data);
}

} // namespace host
