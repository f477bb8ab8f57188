// Evaluation: every generator of a document is asked for what it stands for.
//
// One pass goes through the scene hooks, then through the objects, parents first. A generator is called in every pass;
// it answers with its present cache, a new object, or nothing. After its call its dirty counts are noted, so "dirty"
// inside the call means "changed since the last pass". A pass that is told to break off throws away what the generator
// gave last, notes nothing for it and is due again.
#pragma once

#include "core/document.h"

#include <functional>

namespace host {

struct PassOptions {
    BaseThread* thread = nullptr; // tells when to break off; may be null
    bool animation = true;
    bool expressions = true; // scene hooks
    bool caches = true;      // generators
    BUILDFLAGS flags = BUILDFLAGS_0;
};

/// False if the pass was broken off.
bool Evaluate(DocumentCore& document, const PassOptions& options);

/// Starts a pass on the host's worker. The document must live until the worker is joined.
void StartPass(BaseDocument& document);

/// Evaluates a clone of the document for a renderer, lends it to `draw` and frees it. The clone's nodes are told when
/// the render begins and ends. BUILDFLAGS_INTERNALRENDERER is the host's own renderer, _EXTERNALRENDERER a bridge's.
bool Render(BaseDocument& document, BUILDFLAGS flags, const std::function<bool(BaseDocument& rendered)>& draw);

} // namespace host
