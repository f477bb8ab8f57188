// Time as a fraction of whole numbers, and scope owners of the host's objects.
#pragma once

#include "ge_sys_math.h"

class BaseTime {
public:
    BaseTime() = default;
    /// To the millisecond.
    explicit BaseTime(Float seconds);
    explicit BaseTime(Float numerator, Float denominator);

    Float Get() const { return denominator != 0 ? numerator / denominator : 0; } // seconds
    Float GetNumerator() const { return numerator; }
    Float GetDenominator() const { return denominator; }

    /// -1, 0 or 1.
    Int32 Compare(const BaseTime& other) const;
    friend Bool operator==(const BaseTime& a, const BaseTime& b) { return a.Compare(b) == 0; }
    friend Bool operator!=(const BaseTime& a, const BaseTime& b) { return a.Compare(b) != 0; }
    friend Bool operator<(const BaseTime& a, const BaseTime& b) { return a.Compare(b) < 0; }
    friend BaseTime operator+(const BaseTime& a, const BaseTime& b);
    friend BaseTime operator-(const BaseTime& a, const BaseTime& b);

private:
    Float numerator = 0;
    Float denominator = 1;
};

/// Allocates a host object and frees it at the end of the scope. Null if the allocation failed.
template <class T> class AutoAlloc {
public:
    template <class... Arguments> explicit AutoAlloc(Arguments... arguments) : object(T::Alloc(arguments...)) {}
    AutoAlloc(const AutoAlloc&) = delete;
    AutoAlloc& operator=(const AutoAlloc&) = delete;
    ~AutoAlloc() { T::Free(object); }

    operator T*() const { return object; }
    operator T&() const { return *object; }
    T* operator->() const { return object; }
    T* Release()
    {
        T* given = object;
        object = nullptr;
        return given;
    }

private:
    T* object;
};

/// Takes a host object over and frees it at the end of the scope.
template <class T> class AutoFree {
public:
    AutoFree() = default;
    explicit AutoFree(T* taken) : object(taken) {}
    AutoFree(const AutoFree&) = delete;
    AutoFree& operator=(const AutoFree&) = delete;
    ~AutoFree() { T::Free(object); }

    void Set(T* taken)
    {
        T::Free(object);
        object = taken;
    }
    operator T*() const { return object; }
    T* operator->() const { return object; }
    T* Release()
    {
        T* given = object;
        object = nullptr;
        return given;
    }

private:
    T* object = nullptr;
};
