// A network of shaders, as a value of the material that it belongs to.
//
// Nodes are numbered from 0 and are found by type and name, their inputs by name. An input holds a value - a colour, a
// number, the file of a picture - or the number of the node that feeds it.
#pragma once

#include "c4d.h"

#include <vector>

// The network's container, and those within.
constexpr Int32 kNetworkSurface = 1;      // Int32: the node that is the surface
constexpr Int32 kNetworkDisplacement = 2; // Int32: the node that is the displacement; only if there is one
constexpr Int32 kNetworkFirstNode = 100;  // container; the next nodes follow
constexpr Int32 kNodeType = 1;            // Int32; 0: known by its name alone
constexpr Int32 kNodeName = 2;            // String
constexpr Int32 kNodeFirstInput = 100;    // container; the next inputs follow
constexpr Int32 kInputName = 1;           // String
constexpr Int32 kInputValue = 2;
constexpr Int32 kInputNode = 3; // Int32

class ArnoldNetwork {
public:
    /// Gives its number.
    Int32 addNode(Int32 type, const String& name);
    void setInput(Int32 node, const Char* input, const GeData& value);
    void linkInput(Int32 node, const Char* input, Int32 source);

    void setSurface(Int32 node) { surface = node; }
    void setDisplacement(Int32 node) { displacement = node; }

    BaseContainer toContainer() const;

private:
    struct Node {
        BaseContainer data;
        Int32 inputCount = 0;
    };
    void addInput(Int32 node, const Char* input, Int32 kind, const GeData& value);

    std::vector<Node> nodes;
    Int32 surface = NOTOK;
    Int32 displacement = NOTOK;
};
