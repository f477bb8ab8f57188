// A growing array whose resize() leaves new elements of trivial types unwritten.
//
// Generators know how much they will write before they write it. With std::vector's own resize each byte would be
// written twice, and for large meshes writing memory is the whole cost.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace vdt {

template <class T> struct UninitializedAllocator : std::allocator<T> {
    template <class U> struct rebind {
        using other = UninitializedAllocator<U>;
    };

    using std::allocator<T>::allocator;

    template <class U> void construct(U* place) noexcept(std::is_nothrow_default_constructible_v<U>)
    {
        ::new (static_cast<void*>(place)) U;
    }

    template <class U, class... Arguments> void construct(U* place, Arguments&&... arguments)
    {
        ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
    }
};

/// std::vector in everything but `resize(count)`: elements that it adds hold no value until they are assigned.
template <class T> using Array = std::vector<T, UninitializedAllocator<T>>;

} // namespace vdt
