// Values of parameters, whole and in parts.
#pragma once

#include "c4d_customdatatype.h"
#include "core/node.h"

namespace host {

// The parts of a vector.
constexpr Int32 kVectorX = 1000;
constexpr Int32 kVectorY = 1001;
constexpr Int32 kVectorZ = 1002;

/// The part of `whole` that `part` names: a component of a vector, an entry of a container, what a custom type offers.
/// An empty `part` is the whole. False: no such part.
bool GetPart(const GeData& whole, const DescID& part, GeData& value);
/// Changes the part in `whole`, with the value converted to the part's type where that is a number.
bool SetPart(GeData& whole, const DescID& part, const GeData& value);

/// Makes `value` one of the described data type: numbers among each other and texts to file names. False if it is no
/// such thing, with the value as it was.
bool ConvertTo(Int32 dataType, GeData& value);
/// Limits numbers and the components of vectors by DESC_MIN and DESC_MAX of a parameter's container.
void ClampTo(const BaseContainer& described, GeData& value);

} // namespace host
