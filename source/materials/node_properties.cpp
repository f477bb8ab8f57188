#include "materials/node_properties.h"

#include "support/plugin_ids.h"

void SetNodeProperty(BaseList2D& node, const String& name, const GeData& value)
{
    BaseContainer properties = node.GetDataInstance()->GetContainer(kPlantObjectId);
    Int32 index = 0;
    for (; const GeData* property = properties.GetIndexData(index); ++index) {
        const BaseContainer* held = property->GetContainer();
        if (held && held->GetString(kNodePropertyName) == name) break;
    }
    BaseContainer property;
    property.SetString(kNodePropertyName, name);
    property.SetData(kNodePropertyValue, value);
    properties.SetContainer(index, property);
    node.GetDataInstance()->SetContainer(kPlantObjectId, properties);
}
