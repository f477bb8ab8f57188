// The node of a scene hook in a document.
#pragma once

#include "c4d_scenehookdata.h"
#include "core/node.h"

namespace host {

struct HookCore : NodeCore {
    explicit HookCore(const NodeClass& nodeClass);
};

inline HookCore* CoreOf(const BaseSceneHook* hook)
{
    return static_cast<HookCore*>(NodeCore::Of(hook));
}

} // namespace host
