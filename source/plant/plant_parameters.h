// The parameters of the plant object as one table: what they hold, what a new plant begins with, and when the attribute
// panel lets people change them. Their ids stand in the description's header.
#pragma once

#include "oplant.h"
#include "selection/selection_data.h"

#include <span>

/// What decides which parameters can be changed.
struct PlantState {
    bool hasVariants = false;   // in the model that is shown
    bool hasQualifiers = false; // in the variant that is shown
    bool proxyOnly = false;
    bool limitLevel = false;
    bool limitRadius = false;
    bool pointCloud = false; // in the viewport
    bool documentUnits = false;
};

enum class Initial {
    None,         // stands in the description alone
    ByParameter,  // set like any change, so that the object takes note
    IntoContainer // stored before anybody looks
};

struct PlantParameter {
    Int32 id;
    Int32 type; // a DTYPE or the id of a custom data type
    Initial initial;
    Float value; // of a number, before any change
    bool (*isEnabled)(const PlantState& state);
};

std::span<const PlantParameter> PlantParameters();

/// Unknown parameters are enabled.
bool IsPlantParameterEnabled(Int32 id, const PlantState& state);

/// Writes what a new plant begins with. False if the host refuses.
Bool InitPlantParameters(BaseList2D& object);

/// The object's choice of a plant. False if it has none.
Bool ReadSelection(BaseList2D& object, VerdanthSelectionData& selection);
/// Sets it like any change.
Bool WriteSelection(BaseList2D& object, const VerdanthSelectionData& selection);

/// Straight into the container, and only another value than there is: no message follows. A negative index is none and
/// is not stored.
void StoreIndex(BaseContainer& container, Int32 id, Int32 index);

/// Stores the choice in the separate parameters that older versions of the plug-in know, in the same way.
void WriteLegacyFields(BaseContainer& container, const VerdanthSelectionData& selection, BaseDocument* document);
