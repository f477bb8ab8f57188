// The ids of this family of plug-ins, as the host's registry of ids handed them out. Scenes store them.
#pragma once

#include "ge_sys_math.h"

constexpr Int32 kPlantObjectId = 1028605;  // also the command that makes a plant
constexpr Int32 kPlantBrowserId = 1029678; // also the key of the library's settings
constexpr Int32 kSelectionGuiId = 1030696;
constexpr Int32 kSelectionDataTypeId = 1030725;
constexpr Int32 kPlantDrawHookId = 1035577;
constexpr Int32 kPlantObjectLibraryId = 1036285;

// Keys of the library's settings.
constexpr Int32 kSettingLibraryFolder = 1003; // Filename
