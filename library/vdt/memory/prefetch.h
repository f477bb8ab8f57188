// Asking for memory ahead of its use, where links lead to places that the processor cannot guess.
#pragma once

#include <cstddef>

namespace vdt {

/// Has the cache lines of `object` fetched while other work goes on. Without effect where the compiler offers none.
#if defined(__GNUC__)
// Not inlined, it would count as a function without effect, and calls of it would be dropped.
template <class T> [[gnu::always_inline]] inline void Prefetch(const T& object)
{
    constexpr std::size_t kCacheLine = 64; // bytes
    const char* const bytes = reinterpret_cast<const char*>(&object);
    for (std::size_t offset = 0; offset < sizeof(T); offset += kCacheLine) __builtin_prefetch(bytes + offset);
}
#else
template <class T> inline void Prefetch(const T&)
{
}
#endif

} // namespace vdt
