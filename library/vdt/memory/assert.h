// Asserts are for broken promises between the library's own functions, never for what a file or a caller may contain.
#pragma once

#include <cassert>

#define VDT_ASSERT(condition) assert(condition)
