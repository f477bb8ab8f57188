// The data type of lengths with a unit.
#pragma once

#include "c4d_customdatatype.h"

namespace host {

/// For the registry, under CUSTOMDATATYPE_UNITSCALE; the caller's.
CustomDataTypeClass* NewUnitScaleDataType();
constexpr Int32 kUnitScaleDiskLevel = 0;

} // namespace host
