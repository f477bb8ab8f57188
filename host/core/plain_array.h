// Plain elements in one block of memory that grows where it stands.
//
// Meshes of plug-ins grow by doubling and are cut to size at the end, with millions of elements: no step copies
// anything, and what was never written costs nothing. New elements are zero.
#pragma once

#include "ge_sys_math.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace host {

/// Bytes that are zero until they are written. Large blocks are the system's own pages.
class ZeroedBlock {
public:
    ZeroedBlock() = default;
    ZeroedBlock(const ZeroedBlock&) = delete;
    ZeroedBlock& operator=(const ZeroedBlock&) = delete;
    ~ZeroedBlock() { resize(0); }

    void* data() const { return memory; }
    size_t size() const { return byteCount; }
    /// Keeps what is there up to the lesser of both sizes. False, with nothing changed, without memory.
    bool resize(size_t wanted);

private:
    bool isPaged() const;
    bool moveTo(size_t wanted, bool paged);

    void* memory = nullptr;
    size_t byteCount = 0;
};

template <class T> class PlainArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));

public:
    T* data() { return static_cast<T*>(block.data()); }
    const T* data() const { return static_cast<const T*>(block.data()); }
    size_t size() const { return count; }
    T& operator[](size_t i) { return data()[i]; }
    const T& operator[](size_t i) const { return data()[i]; }
    operator std::span<const T>() const { return {data(), count}; }

    /// Room for so many, so that resize() up to there cannot fail. False, with nothing changed, without memory.
    bool reserve(size_t wanted) { return wanted <= room() || resizeBlock(wanted); }

    /// False, with nothing changed, without memory. Growing in small steps is not slow; shrinking gives memory back.
    bool resize(size_t wanted)
    {
        if (wanted > room() && !resizeBlock(std::max(wanted, count + count / 2)) && !resizeBlock(wanted)) return false;
        if (wanted < count && !resizeBlock(wanted))
            ClearMem(data() + wanted, static_cast<Int>((count - wanted) * sizeof(T)));
        count = wanted;
        return true;
    }

    bool assign(std::span<const T> elements)
    {
        if (!resize(elements.size())) return false;
        CopyMem(elements.data(), data(), static_cast<Int>(elements.size_bytes()));
        return true;
    }

private:
    size_t room() const { return block.size() / sizeof(T); }
    bool resizeBlock(size_t wanted)
    {
        return wanted <= LIMIT<size_t>::MAX / 2 / sizeof(T) && block.resize(wanted * sizeof(T));
    }

    ZeroedBlock block; // nothing is written behind `count`
    size_t count = 0;
};

} // namespace host
