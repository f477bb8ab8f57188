#include "materials/arnold_network.h"

Int32 ArnoldNetwork::addNode(Int32 type, const String& name)
{
    Node& node = nodes.emplace_back();
    node.data.SetInt32(kNodeType, type);
    node.data.SetString(kNodeName, name);
    return static_cast<Int32>(nodes.size() - 1);
}

void ArnoldNetwork::setInput(Int32 node, const Char* input, const GeData& value)
{
    addInput(node, input, kInputValue, value);
}

void ArnoldNetwork::linkInput(Int32 node, const Char* input, Int32 source)
{
    addInput(node, input, kInputNode, GeData(source));
}

BaseContainer ArnoldNetwork::toContainer() const
{
    BaseContainer container;
    if (surface != NOTOK) container.SetInt32(kNetworkSurface, surface);
    if (displacement != NOTOK) container.SetInt32(kNetworkDisplacement, displacement);
    Int32 id = kNetworkFirstNode;
    for (const Node& node : nodes) container.SetContainer(id++, node.data);
    return container;
}

void ArnoldNetwork::addInput(Int32 node, const Char* input, Int32 kind, const GeData& value)
{
    BaseContainer data;
    data.SetString(kInputName, input);
    data.SetData(kind, value);
    Node& owner = nodes[static_cast<size_t>(node)];
    owner.data.SetContainer(kNodeFirstInput + owner.inputCount++, data);
}
