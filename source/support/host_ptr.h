// Pointers that own what the host allocated, for as long as no document does.
#pragma once

#include "c4d.h"

#include <memory>

template <class T> struct HostFree {
    void operator()(T* object) const { T::Free(object); }
};

template <class T> using HostPtr = std::unique_ptr<T, HostFree<T>>;
