// The names that the host's headers give to parameters of its own materials.
#pragma once

#include "c4d.h"

namespace verdanth {

struct ParameterName {
    Int32 id = 0;
    const char* name = nullptr; // null for none
    bool isSwitch = false;      // true or false, which a container keeps as a number
};

ParameterName NameOfMaterialParameter(Int32 id);

} // namespace verdanth
