// The basic types of the plug-in API, memory helpers and the operators of flag enums.
//
// These headers are the contract between host and plug-ins: names, signatures and constants of the R16 to R19 plug-in
// API, as far as plug-ins of ours use them. A plug-in includes "c4d.h" and nothing of the host's other folders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

typedef int Bool; // 32 bits, not C++ bool: overrides must say Bool too
typedef char Char;
typedef unsigned char UChar;
typedef std::int16_t Int16;
typedef std::uint16_t UInt16;
typedef std::int32_t Int32;
typedef std::uint32_t UInt32;
typedef std::int64_t Int64;
typedef std::uint64_t UInt64;
typedef std::intptr_t Int;
typedef std::uintptr_t UInt;
typedef float Float32;
typedef double Float64;
typedef double Float;
typedef std::uint16_t Utf16Char;
typedef char32_t Utf32Char;

typedef void* UVWHandle;
typedef const void* ConstUVWHandle;
typedef void* NormalHandle;
typedef const void* ConstNormalHandle;

#define NOTOK (-1) // a third state beside true and false; no index

template <class T> struct LIMIT {
    static constexpr T MIN = std::numeric_limits<T>::lowest();
    static constexpr T MAX = std::numeric_limits<T>::max();
};

inline Int32 LMin(Int32 a, Int32 b)
{
    return a < b ? a : b;
}
inline Int32 LMax(Int32 a, Int32 b)
{
    return a > b ? a : b;
}
inline Float FMin(Float a, Float b)
{
    return a < b ? a : b;
}
inline Float FMax(Float a, Float b)
{
    return a > b ? a : b;
}

/// Ends a plain enum.
#define ENUM_END_LIST(E)
/// Ends an enum of flags: combining them gives the enum again.
#define ENUM_END_FLAGS(E)                                                                                              \
    inline constexpr E operator|(E a, E b)                                                                             \
    {                                                                                                                  \
        return static_cast<E>(static_cast<Int32>(a) | static_cast<Int32>(b));                                          \
    }                                                                                                                  \
    inline constexpr E operator&(E a, E b)                                                                             \
    {                                                                                                                  \
        return static_cast<E>(static_cast<Int32>(a) & static_cast<Int32>(b));                                          \
    }                                                                                                                  \
    inline constexpr E operator~(E a)                                                                                  \
    {                                                                                                                  \
        return static_cast<E>(~static_cast<Int32>(a));                                                                 \
    }                                                                                                                  \
    inline E& operator|=(E& a, E b)                                                                                    \
    {                                                                                                                  \
        return a = a | b;                                                                                              \
    }                                                                                                                  \
    inline E& operator&=(E& a, E b)                                                                                    \
    {                                                                                                                  \
        return a = a & b;                                                                                              \
    }

namespace host {

// One object in zeroed memory; null if there is none. `delete` takes it.
template <class T, class... Arguments> T* NewZeroed(Arguments&&... arguments)
{
    void* memory = ::operator new(sizeof(T), std::nothrow);
    if (!memory) return nullptr;
    std::memset(memory, 0, sizeof(T));
    return new (memory) T(std::forward<Arguments>(arguments)...);
}

template <class T> T* NewArray(Int count, bool clear)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (count < 0 || static_cast<UInt>(count) > LIMIT<UInt>::MAX / sizeof(T)) return nullptr;
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(T);
    void* memory = ::operator new(bytes, std::nothrow);
    if (memory && clear) std::memset(memory, 0, bytes);
    return static_cast<T*>(memory);
}

template <class T> void DeleteAndClear(T*& object)
{
    delete object;
    object = nullptr;
}

template <class T> void FreeArray(T*& memory)
{
    ::operator delete(memory);
    memory = nullptr;
}

} // namespace host

#define NewObjClear(T, ...) ::host::NewZeroed<T>(__VA_ARGS__)
#define NewObj(T, ...) ::host::NewZeroed<T>(__VA_ARGS__)
#define DeleteObj(object) ::host::DeleteAndClear(object)
#define NewMem(T, count) ::host::NewArray<T>(count, false)
#define NewMemClear(T, count) ::host::NewArray<T>(count, true)
#define DeleteMem(memory) ::host::FreeArray(memory)

/// Source first, unlike the C library.
inline void CopyMem(const void* source, void* destination, Int bytes)
{
    if (bytes > 0) std::memcpy(destination, source, static_cast<std::size_t>(bytes));
}
inline void ClearMem(void* memory, Int bytes)
{
    if (bytes > 0) std::memset(memory, 0, static_cast<std::size_t>(bytes));
}

/// Placed first in a class: makes SUPER a name of its base.
#define INSTANCEOF(Class, Base)                                                                                        \
private:                                                                                                               \
    typedef Base SUPER;                                                                                                \
                                                                                                                       \
public:
