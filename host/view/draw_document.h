// One redraw of one view: the order in which host and plug-ins draw.
#pragma once

#include "view/view.h"

class BaseThread;

namespace host {

/// Records what `view` shows of the document as it was evaluated last. Runs on the thread that evaluates, or on any
/// other while nobody changes the document. Breaks off between objects if `thread` says so; false then.
bool DrawDocument(BaseDocument& document, ViewCore& view, BaseThread* thread, DrawList& list);

} // namespace host
