// One redraw of one view: the order in which host and plug-ins draw.
#pragma once

#include "view/view.h"

class BaseThread;

namespace host {

/// Records what `view` shows of the document as it was evaluated last. Runs on the thread that evaluates, or on any
/// other while nobody changes the document. Breaks off between objects if `thread` says so; false then.
bool DrawDocument(BaseDocument& document, ViewCore& view, BaseThread* thread, DrawList& list);

/// Turns the view's own camera to `axes` and moves it so that all that host and plug-ins draw is seen; farther away by
/// `distanceFactor`. Axis views keep their direction. Without anything to see the view stays as it is.
void ShowAll(BaseDocument& document, ViewCore& view, const Matrix& axes, Float distanceFactor = 1);

} // namespace host
