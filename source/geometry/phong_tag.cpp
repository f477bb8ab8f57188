#include "geometry/phong_tag.h"

#include "tphong.h"

Bool SetPhong(BaseObject* object, Float angle)
{
    if (!object) return false;

    Bool useEdges = true;
    if (BaseTag* present = object->GetTag(Tphong)) {
        const BaseContainer* parameters = present->GetDataInstance();
        if (!parameters) return false;
        useEdges = parameters->GetBool(PHONGTAG_PHONG_USEEDGES);
    }

    object->KillTag(Tphong);
    BaseTag* tag = BaseTag::Alloc(Tphong);
    if (!tag) return false;

    object->InsertTag(tag);
    if (BaseContainer* parameters = tag->GetDataInstance()) {
        parameters->SetBool(PHONGTAG_PHONG_ANGLELIMIT, false);
        parameters->SetFloat(PHONGTAG_PHONG_ANGLE, angle);
        parameters->SetBool(PHONGTAG_PHONG_USEEDGES, useEdges);
    }
    return true;
}
