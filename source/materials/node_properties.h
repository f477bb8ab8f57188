// Properties of nodes that go by name, as some renderers want them on the nodes of others.
#pragma once

#include "c4d.h"

/// Sets a property of any type, or adds it. It is kept with the node's parameters.
void SetNodeProperty(BaseList2D& node, const String& name, const GeData& value);

// Where the properties are: under an id that is no other parameter's, a container of one container a property.
constexpr Int32 kNodePropertyName = 1; // String
constexpr Int32 kNodePropertyValue = 2;
