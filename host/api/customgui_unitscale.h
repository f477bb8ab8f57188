// A length with its unit, as a value.
#pragma once

#include "c4d_customdatatype.h"

#define CUSTOMGUI_UNITSCALE 200000274
#define CUSTOMDATATYPE_UNITSCALE 200000275

enum DOCUMENT_UNIT {
    DOCUMENT_UNIT_UNDEF = 0,
    DOCUMENT_UNIT_KM = 1,
    DOCUMENT_UNIT_M = 2,
    DOCUMENT_UNIT_CM = 3,
    DOCUMENT_UNIT_MM = 4,
    DOCUMENT_UNIT_MICRO = 5,
    DOCUMENT_UNIT_NM = 6,
    DOCUMENT_UNIT_MILE = 7,
    DOCUMENT_UNIT_YARD = 8,
    DOCUMENT_UNIT_FOOT = 9,
    DOCUMENT_UNIT_INCH = 10
} ENUM_END_LIST(DOCUMENT_UNIT);

#define UNITSCALE_SCALE 1
#define UNITSCALE_UNIT 2

class UnitScaleData : public CustomDataType {
public:
    static UnitScaleData* Alloc(); // 1 cm
    static void Free(UnitScaleData*& data);

    Bool SetUnitScale(Float factor, DOCUMENT_UNIT kind);
    Bool GetUnitScale(Float& factor, DOCUMENT_UNIT& kind) const;

    friend Bool operator==(const UnitScaleData& a, const UnitScaleData& b)
    {
        return a.scale == b.scale && a.unit == b.unit;
    }
    friend Bool operator!=(const UnitScaleData& a, const UnitScaleData& b) { return !(a == b); }

private:
    friend class UnitScaleDataType;
    UnitScaleData() = default;
    ~UnitScaleData() = default;

    Float scale = 1;
    DOCUMENT_UNIT unit = DOCUMENT_UNIT_CM;
};
