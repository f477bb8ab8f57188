// Layers: what whole groups of nodes have in common.
#pragma once

#include "core/node.h"

namespace host {

struct LayerCore : NodeCore {
    explicit LayerCore(const NodeClass& nodeClass);

    /// The settings with the soloed layers of the list taken into account: while there is one, all others are neither
    /// shown nor rendered. Valid until the next call for this layer.
    const LayerData& Effective() const;

    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;
    bool WriteBody(HyperFile& file) const override;
    bool ReadBody(HyperFile& file, Int32 level) override;

    LayerData settings;

private:
    mutable LayerData effective;
};

/// The node's own layer, a layer being its own; null without one, or if it is not in `document` (null: anywhere).
LayerCore* LayerOf(const NodeCore& node, const DocumentCore* document);
/// Null takes the node off its layer.
void SetLayer(NodeCore& node, LayerCore* layer);

inline LayerCore* CoreOf(const LayerObject* layer)
{
    return static_cast<LayerCore*>(NodeCore::Of(layer));
}

} // namespace host
