#include "host/parameter_names.h"

#include "mmaterial.h"
#include "mreflection.h"

#include <algorithm>

namespace verdanth {
namespace {

constexpr ParameterName kMaterialNames[] = {{MATERIAL_USE_COLOR, "MATERIAL_USE_COLOR", true},
                                            {MATERIAL_USE_ALPHA, "MATERIAL_USE_ALPHA", true},
                                            {MATERIAL_USE_BUMP, "MATERIAL_USE_BUMP", true},
                                            {MATERIAL_USE_NORMAL, "MATERIAL_USE_NORMAL", true},
                                            {MATERIAL_USE_DISPLACEMENT, "MATERIAL_USE_DISPLACEMENT", true},
                                            {MATERIAL_USE_REFLECTION, "MATERIAL_USE_REFLECTION", true},
                                            {MATERIAL_USE_SPECULAR, "MATERIAL_USE_SPECULAR", true},
                                            {MATERIAL_COLOR_COLOR, "MATERIAL_COLOR_COLOR"},
                                            {MATERIAL_COLOR_SHADER, "MATERIAL_COLOR_SHADER"},
                                            {MATERIAL_ALPHA_SHADER, "MATERIAL_ALPHA_SHADER"},
                                            {MATERIAL_BUMP_SHADER, "MATERIAL_BUMP_SHADER"},
                                            {MATERIAL_BUMP_STRENGTH, "MATERIAL_BUMP_STRENGTH"},
                                            {MATERIAL_NORMAL_SHADER, "MATERIAL_NORMAL_SHADER"},
                                            {MATERIAL_DISPLACEMENT_SHADER, "MATERIAL_DISPLACEMENT_SHADER"},
                                            {MATERIAL_DISPLACEMENT_HEIGHT, "MATERIAL_DISPLACEMENT_HEIGHT"},
                                            {MATERIAL_DISPLACEMENT_TYPE, "MATERIAL_DISPLACEMENT_TYPE"},
                                            {MATERIAL_SPECULAR_COLOR, "MATERIAL_SPECULAR_COLOR"},
                                            {MATERIAL_SPECULAR_WIDTH, "MATERIAL_SPECULAR_WIDTH"},
                                            {MATERIAL_SPECULAR_HEIGHT, "MATERIAL_SPECULAR_HEIGHT"},
                                            {REFLECTION_LAYERS, "REFLECTION_LAYERS"}};

// By the number behind a layer's own.
constexpr ParameterName kLayerNames[] = {
    {REFLECTION_LAYER_MAIN_DISTRIBUTION, "REFLECTION_LAYER_MAIN_DISTRIBUTION"},
    {REFLECTION_LAYER_MAIN_VALUE_ROUGHNESS, "REFLECTION_LAYER_MAIN_VALUE_ROUGHNESS"},
    {REFLECTION_LAYER_COLOR_COLOR, "REFLECTION_LAYER_COLOR_COLOR"},
    {REFLECTION_LAYER_COLOR_TEXTURE, "REFLECTION_LAYER_COLOR_TEXTURE"}};

template <class Names> ParameterName find(const Names& names, Int32 id)
{
    const auto* found = std::ranges::find(names, id, &ParameterName::id);
    return found == std::end(names) ? ParameterName() : *found;
}

} // namespace

ParameterName NameOfMaterialParameter(Int32 id)
{
    const bool isOfLayer = id >= REFLECTION_LAYER_LAYER_DATA;
    return isOfLayer ? find(kLayerNames, (id - REFLECTION_LAYER_LAYER_DATA) % REFLECTION_LAYER_LAYER_SIZE)
                     : find(kMaterialNames, id);
}

} // namespace verdanth
