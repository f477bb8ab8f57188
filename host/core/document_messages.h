// Messages that go round a document: to it and to all nodes in it.
#pragma once

#include "core/document.h"

#include <vector>

namespace host {

/// The document, then all nodes in it but those of caches: parents first, a node's tags and shaders before its
/// children.
std::vector<NodeCore*> NodesOf(DocumentCore& document);

/// Sends to the document and to all nodes in it. Nodes that come while the message goes round do not get it; nodes that
/// go do no harm.
void SendToNodes(DocumentCore& document, Int32 type, void* data);
/// The same for document information. Of `info` the caller fills in what belongs to the event; document, file format
/// and whether the user may be asked are the host's to know.
void SendDocumentInfo(DocumentCore& document, DocumentInfoData info);
void SendDocumentInfoToHooks(DocumentCore& document, DocumentInfoData info);

/// What the files of this host are called in messages.
constexpr Int32 kSceneFormat = 1001026;

/// True while there is a person to ask.
bool HasUserInterface();

} // namespace host
