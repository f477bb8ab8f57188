// The ids by which renderers enter what they bring: materials, shaders, engines. Each is its maker's, from the host's
// registry of ids.
#pragma once

#include "ge_sys_math.h"

// Materials.
constexpr Int32 kVrayMaterialId = 1020295;
constexpr Int32 kVrayTwoSidedMaterialId = 1026701;
constexpr Int32 kMiaMaterialId = 1024953;
constexpr Int32 kCoronaMaterialId = 1032100;
constexpr Int32 kTheaMaterialId = 1027842;
constexpr Int32 kArnoldMaterialId = 1033991;
constexpr Int32 kOctaneMaterialId = 1029501;
constexpr Int32 kOctaneMixMaterialId = 1029622;
constexpr Int32 kMaxwellMaterialId = 1021237;
constexpr Int32 kIrayMaterialId = 1034130;

// Shaders.
constexpr Int32 kTheaTextureId = 1034346;
constexpr Int32 kOctaneImageTextureId = 1029508;

// Arnold's network: the entry of a material that holds one, and the roots in it.
constexpr Int32 kArnoldNetworkId = 1029989;
constexpr Int32 kArnoldStandardId = 1034187;
constexpr Int32 kArnoldDisplacementId = 1035951;

// Engines, which render settings name. Maxwell's is an effect among the settings' video posts.
constexpr Int32 kVrayEngineId = 1019782;
constexpr Int32 kMiaEngineId = 1024946;
constexpr Int32 kMiaSecondEngineId = 1025688;
constexpr Int32 kTheaEngineId = 1027844;
constexpr Int32 kOctaneEngineId = 1029525;
constexpr Int32 kArnoldEngineId = 1029988;
constexpr Int32 kCoronaEngineId = 1030480;
constexpr Int32 kMaxwellEffectId = 1009988;
