#include "plant/plant_parameters.h"

#include "customgui_unitscale.h"
#include "support/plugin_ids.h"

#include <algorithm>
#include <iterator>

namespace {

using State = const PlantState&;

bool always(State /*state*/)
{
    return true;
}

bool hasVariants(State state)
{
    return state.hasVariants;
}

bool hasQualifiers(State state)
{
    return state.hasQualifiers;
}

bool showsGeometry(State state)
{
    return !state.proxyOnly;
}

bool limitsLevel(State state)
{
    return state.limitLevel && !state.proxyOnly;
}

bool limitsRadius(State state)
{
    return state.limitRadius && !state.proxyOnly;
}

bool showsCloud(State state)
{
    return state.pointCloud;
}

bool hasOwnUnits(State state)
{
    return !state.documentUnits;
}

constexpr PlantParameter kParameters[] = {
    {PLANT_SELECTION, kSelectionDataTypeId, Initial::ByParameter, 0, always},
    {PLANT_VARIANT, DTYPE_LONG, Initial::ByParameter, 0, hasVariants},
    {PLANT_QUALIFIER, DTYPE_LONG, Initial::ByParameter, 0, hasQualifiers},
    {PLANT_FOLIAGE_THINNING, DTYPE_REAL, Initial::IntoContainer, 1, showsGeometry},
    {PLANT_LEGACY_FILE, DTYPE_FILENAME, Initial::None, 0, always},
    {PLANT_LIMIT_LEVEL, DTYPE_BOOL, Initial::IntoContainer, 0, showsGeometry},
    {PLANT_MAX_LEVEL, DTYPE_LONG, Initial::IntoContainer, 3, limitsLevel},
    {PLANT_LIMIT_RADIUS, DTYPE_BOOL, Initial::IntoContainer, 0, showsGeometry},
    {PLANT_MIN_RADIUS, DTYPE_REAL, Initial::IntoContainer, 1, limitsRadius},
    {PLANT_FOLIAGE_AMOUNT, DTYPE_REAL, Initial::IntoContainer, 1, showsGeometry},
    {PLANT_SUBDIVISION_MODE, DTYPE_LONG, Initial::IntoContainer, 0, showsGeometry},
    {PLANT_SUBDIVISION_LEVEL, DTYPE_LONG, Initial::IntoContainer, 1, showsGeometry},
    {PLANT_DISPLAY_MODE, DTYPE_LONG, Initial::IntoContainer, 0, showsGeometry},
    {PLANT_CLOUD_OPTION_A, DTYPE_BOOL, Initial::IntoContainer, 0, showsCloud},
    {PLANT_CLOUD_SHADING, DTYPE_BOOL, Initial::IntoContainer, 1, showsCloud},
    {PLANT_CLOUD_OPTION_B, DTYPE_BOOL, Initial::IntoContainer, 1, showsCloud},
    {PLANT_PROXY_ONLY, DTYPE_LONG, Initial::None, 0, always},
    {PLANT_STATISTICS, DTYPE_STRING, Initial::None, 0, always},
    {PLANT_USE_DOCUMENT_UNITS, DTYPE_BOOL, Initial::IntoContainer, 1, always},
    {PLANT_UNITS, CUSTOMDATATYPE_UNITSCALE, Initial::None, 0, hasOwnUnits},
};

GeData initialValue(const PlantParameter& parameter)
{
    if (parameter.type == kSelectionDataTypeId) return GeData(parameter.type, DEFAULTVALUE);
    if (parameter.type == DTYPE_REAL) return GeData(parameter.value);
    return GeData(static_cast<Int32>(parameter.value));
}

} // namespace

std::span<const PlantParameter> PlantParameters()
{
    return kParameters;
}

bool IsPlantParameterEnabled(Int32 id, const PlantState& state)
{
    const auto* found = std::ranges::find(kParameters, id, &PlantParameter::id);
    return found == std::end(kParameters) || found->isEnabled(state);
}

Bool InitPlantParameters(BaseList2D& object)
{
    BaseContainer* container = object.GetDataInstance();
    if (!container) return false;

    for (const PlantParameter& parameter : kParameters) {
        const GeData value = initialValue(parameter);
        if (parameter.initial == Initial::ByParameter) object.SetParameter(parameter.id, value, DESCFLAGS_SET_0);
    }
    for (const PlantParameter& parameter : kParameters)
        if (parameter.initial == Initial::IntoContainer) container->SetData(parameter.id, initialValue(parameter));
    return true;
}

Bool ReadSelection(BaseList2D& object, VerdanthSelectionData& selection)
{
    GeData value;
    if (!object.GetParameter(PLANT_SELECTION, value, DESCFLAGS_GET_0)) return false;
    const CustomDataType* data = value.GetCustomDataType(kSelectionDataTypeId);
    if (!data) return false;
    selection = *static_cast<const VerdanthSelectionData*>(data);
    return true;
}

Bool WriteSelection(BaseList2D& object, const VerdanthSelectionData& selection)
{
    return object.SetParameter(PLANT_SELECTION, GeData(kSelectionDataTypeId, selection), DESCFLAGS_SET_0);
}

void StoreIndex(BaseContainer& container, Int32 id, Int32 index)
{
    if (index >= 0 && container.GetInt32(id, NOTOK) != index) container.SetInt32(id, index);
}

void WriteLegacyFields(BaseContainer& container, const VerdanthSelectionData& selection, BaseDocument* document)
{
    const Filename file = selection.ResolvePath(document, true);
    if (container.GetFilename(PLANT_LEGACY_FILE) != file) container.SetFilename(PLANT_LEGACY_FILE, file);
    StoreIndex(container, PLANT_VARIANT, selection.GetPlantIndex());
    StoreIndex(container, PLANT_QUALIFIER, selection.GetQualifierIndex());
}
