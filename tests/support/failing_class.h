// Lets the host run out of nodes of one type, once, at a chosen moment.
#pragma once

#include "core/node_class.h"

namespace host::test {

/// While it lives, the n-th node of the type, counted from 1, cannot be made; copies count too. One at a time.
class FailingClass {
public:
    FailingClass(NodeKind kind, Int32 type, int nth)
        : failing(const_cast<NodeClass*>(Registrations::Current()->FindClass(kind, type)))
    {
        make = std::exchange(failing->make, countedMake);
        left = nth;
    }
    FailingClass(const FailingClass&) = delete;
    FailingClass& operator=(const FailingClass&) = delete;
    ~FailingClass() { failing->make = make; }

    /// True once the node was refused.
    static bool HasFailed() { return left <= 0; }

private:
    static std::unique_ptr<NodeCore> countedMake(const NodeClass& nodeClass)
    {
        return --left == 0 ? nullptr : make(nodeClass);
    }

    static inline int left = 0;
    static inline NodeMaker make = nullptr;
    NodeClass* failing;
};

} // namespace host::test
