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

/// What the files of this host are called in messages.
constexpr Int32 kSceneFormat = 1001026;

/// The answer to the question that comes with MSG_DOCUMENTINFO_TYPE_BEFOREMERGE.
enum class MergeAnswer : Int32 { Cancel = 0, Merge = 1, NewScene = 2 };

/// A document information (MSG_DOCUMENTINFO_TYPE_...) with all fields that belong to every kind.
DocumentInfoData DocumentInfo(DocumentCore& document, Int32 type);
/// Sends it to the document and to all nodes in it.
void SendDocumentInfo(DocumentCore& document, Int32 type);
void SendDocumentInfo(DocumentCore& document, DocumentInfoData info);
void SendToHooks(DocumentCore& document, Int32 type, void* data);

/// True while there is a person to ask.
bool HasUserInterface();

} // namespace host
