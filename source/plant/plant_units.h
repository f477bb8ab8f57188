// Where a plant stands, and how large its model's unit is there.
#pragma once

#include "c4d.h"
#include "vdt/model/model.h"

/// The document that an object belongs to, also from within a cache. Null if it is in none.
BaseDocument* DocumentOf(BaseObject& object);

/// Host units for one of the model's units, by the object's parameters. Above 0. Without a model its unit counts as
/// the centimetre.
Float ObjectScale(BaseObject& object, const vdt::Model* model);
