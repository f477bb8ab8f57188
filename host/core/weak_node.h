// A reference to a node that becomes null when the node goes.
//
// The references to one node form a list that hangs on the node; a node that dies walks it once. Copying, assigning and
// letting go cost a few pointers, and nothing global is touched: threads that work on nodes of their own do not meet
// here.
#pragma once

namespace host {

struct NodeCore;

class WeakNode {
public:
    WeakNode() = default;
    explicit WeakNode(NodeCore* target) { Set(target); }
    WeakNode(const WeakNode& other) { Set(other.target); }
    WeakNode& operator=(const WeakNode& other)
    {
        Set(other.target);
        return *this;
    }
    ~WeakNode() { Set(nullptr); }

    NodeCore* Get() const { return target; }
    void Set(NodeCore* newTarget);

private:
    friend struct NodeCore;

    NodeCore* target = nullptr;
    WeakNode* next = nullptr;
    WeakNode* previous = nullptr; // null for the first of the target's list
};

} // namespace host
