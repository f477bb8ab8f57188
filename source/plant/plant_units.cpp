#include "plant/plant_units.h"

#include "customgui_unitscale.h"
#include "ddoc.h"
#include "oplant.h"

namespace {

DOCUMENT_UNIT unitOf(const vdt::Model* model)
{
    switch (model ? model->unit : vdt::kCentimeters) {
    case vdt::kMillimeters: return DOCUMENT_UNIT_MM;
    case vdt::kMeters: return DOCUMENT_UNIT_M;
    default: return DOCUMENT_UNIT_CM;
    }
}

const UnitScaleData* unitIn(const CustomDataType* data)
{
    return static_cast<const UnitScaleData*>(data);
}

} // namespace

BaseDocument* DocumentOf(BaseObject& object)
{
    for (BaseObject* at = &object; at;) {
        if (BaseDocument* document = at->GetDocument()) return document;
        BaseObject* parent = at->GetUp();
        at = parent ? parent : at->GetCacheParent();
    }
    return nullptr;
}

Float ObjectScale(BaseObject& object, const vdt::Model* model)
{
    const UnitScaleData* target = nullptr;
    GeData own; // holds the object's unit as long as it is looked at
    if (!object.GetDataInstance()->GetBool(PLANT_USE_DOCUMENT_UNITS)) {
        object.GetParameter(PLANT_UNITS, own, DESCFLAGS_GET_0);
        target = unitIn(own.GetCustomDataType(CUSTOMDATATYPE_UNITSCALE));
    } else if (BaseDocument* document = DocumentOf(object)) {
        target = unitIn(document->GetDataInstance()->GetCustomDataType(DOCUMENT_DOCUNIT, CUSTOMDATATYPE_UNITSCALE));
    }

    AutoAlloc<UnitScaleData> source;
    if (!source) return 1;
    source->SetUnitScale(1.0, unitOf(model));
    const Float scale = CalculateTranslationScale(source, target);
    return scale > 0 ? scale : 1; // no number is not above 0 either
}
