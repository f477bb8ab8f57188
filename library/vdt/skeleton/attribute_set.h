// What an operator sees of the object that it works in: a container of parameters by id, and a placement.
#pragma once

#include "vdt/math/matrix.h"

#include <cstdint>
#include <string>

namespace vdt {

/// Ids of what an object itself has, beside those of its parameters.
enum ObjectAttribute : int32_t {
    kObjectName = 10000,
    kObjectPosition = 10001, // absolute
    kObjectRotation = 10002, // absolute
    kObjectScale = 10003,    // absolute
    kObjectGlobalMatrix = 10004,
    kObjectLocalMatrix = 10005,
};

/// Setters tell whether there is a container to write to. Getters write to `found`, unless it is null, whether there
/// was something to read. The order of the operations, with the destructor last, is fixed: implementations outside the
/// library are built against it.
class AttributeSetInterface {
public:
    virtual bool IsWritable() const = 0;
    virtual bool SetFloat(int32_t id, double value) = 0;
    virtual bool SetInt(int32_t id, int32_t value) = 0;
    virtual bool SetString(int32_t id, const std::string& value) = 0;
    virtual bool HasContainer() const = 0;
    virtual bool SetBool(int32_t id, bool value) = 0;
    virtual std::string GetString(int32_t id, bool* found = nullptr) const = 0;
    virtual double GetFloat(int32_t id, bool* found = nullptr) const = 0;
    virtual int32_t GetInt(int32_t id, bool* found = nullptr) const = 0;
    virtual void GetVector(Vector3& value, int32_t id, bool* found = nullptr) const = 0;
    virtual void GetMatrix(Matrix& value, int32_t id, bool* found = nullptr) const = 0;
    virtual bool GetBool(int32_t id, bool* found = nullptr) const = 0;
    virtual ~AttributeSetInterface() = default;
};

} // namespace vdt
