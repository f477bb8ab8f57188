// The data type of choices among a picture's layers.
#pragma once

#include "c4d_customdatatype.h"

namespace host {

/// For the registry, under CUSTOMDATATYPE_LAYERSET; the caller's.
CustomDataTypeClass* NewLayerSetType();
constexpr Int32 kLayerSetDiskLevel = 0;

} // namespace host
