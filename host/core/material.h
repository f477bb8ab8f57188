// Materials, shaders, render settings and their effects.
#pragma once

#include "c4d_basedocument.h"
#include "core/node.h"

#include <map>

namespace host {

struct MaterialCore : NodeCore {
    explicit MaterialCore(const NodeClass& nodeClass);
};

/// With reflectance layers: which there are stands in the container, with all that belongs to them.
struct StandardMaterialCore : MaterialCore {
    explicit StandardMaterialCore(const NodeClass& nodeClass);

    const BaseContainer* Layers() const; // by data ids; null: none yet
    ReflectionLayer* AddLayer();
    ReflectionLayer* LayerAt(Int32 index);

private:
    ReflectionLayer* lend(Int32 dataId);

    std::map<Int32, ReflectionLayer> lent; // by data id, where they stay
};

struct ShaderCore : NodeCore {
    explicit ShaderCore(const NodeClass& nodeClass);
};

struct VideoPostCore : NodeCore {
    explicit VideoPostCore(const NodeClass& nodeClass);
};

struct RenderDataCore : NodeCore {
    explicit RenderDataCore(const NodeClass& nodeClass);

    std::vector<ListCore*> Branches() const override;

    mutable ListCore videoPosts{this};
};

/// True if the nodes are of one type and agree in their containers, without what is linked, and in their shaders, which
/// are compared in order, with what hangs in and below them. Names do not count.
bool SameLook(const NodeCore& a, const NodeCore& b);

} // namespace host
