// Plain elements in one block of memory that grows where it stands if the system can.
//
// Meshes of plug-ins grow by doubling and are cut to size at the end, with millions of elements: each step costs no
// copy then. New elements are zero.
#pragma once

#include "ge_sys_math.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace host {

template <class T> class PlainArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));

public:
    PlainArray() = default;
    PlainArray(const PlainArray&) = delete;
    PlainArray& operator=(const PlainArray&) = delete;
    ~PlainArray() { std::free(block); }

    T* data() { return block; }
    const T* data() const { return block; }
    size_t size() const { return count; }
    T& operator[](size_t i) { return block[i]; }
    const T& operator[](size_t i) const { return block[i]; }
    operator std::span<const T>() const { return {block, count}; }

    /// Room for so many, so that resize() up to there cannot fail. False, with nothing changed, without memory.
    bool reserve(size_t wanted) { return wanted <= room || reallocate(wanted); }

    /// False, with nothing changed, without memory. Growing in small steps is not slow; shrinking gives memory back.
    bool resize(size_t wanted)
    {
        if (wanted > room && !reallocate(std::max(wanted, room + room / 2)) && !reallocate(wanted)) return false;
        if (wanted > count) ClearMem(block + count, static_cast<Int>((wanted - count) * sizeof(T)));
        if (wanted < count) reallocate(wanted);
        count = wanted;
        return true;
    }

    bool assign(std::span<const T> elements)
    {
        if (!resize(elements.size())) return false;
        CopyMem(elements.data(), block, static_cast<Int>(elements.size_bytes()));
        return true;
    }

private:
    bool reallocate(size_t wanted)
    {
        if (wanted == 0) {
            std::free(block);
            block = nullptr;
            room = 0;
            return true;
        }
        if (wanted > LIMIT<size_t>::MAX / 2 / sizeof(T)) return false;
        void* moved = std::realloc(static_cast<void*>(block), wanted * sizeof(T));
        if (!moved) return false;
        block = static_cast<T*>(moved);
        room = wanted;
        return true;
    }

    T* block = nullptr;
    size_t count = 0, room = 0;
};

} // namespace host
