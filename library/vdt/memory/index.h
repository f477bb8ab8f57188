// Indices are unsigned 64-bit, with all ones for none.
#pragma once

#include <cstdint>

namespace vdt {

constexpr uint64_t kNone = ~uint64_t{0};

} // namespace vdt
