// The document: lists of objects, materials, layers, render settings and hooks.
#pragma once

#include "c4d_basedocument.h"
#include "core/node.h"

namespace host {

struct DocumentCore : NodeCore {
    explicit DocumentCore(const NodeClass& nodeClass);

    std::vector<ListCore*> Branches() const override;

    mutable ListCore layers{this};
    mutable ListCore materials{this};
    mutable ListCore objects{this};
    mutable ListCore renderSettings{this};
    mutable ListCore hooks{this};
};

inline DocumentCore* CoreOf(const BaseDocument* document)
{
    return static_cast<DocumentCore*>(NodeCore::Of(document));
}

} // namespace host
