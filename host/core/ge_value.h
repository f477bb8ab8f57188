// What a GeData holds beside numbers. The data's type says which member counts.
#pragma once

#include "c4d_basecontainer.h"
#include "c4d_baselist.h"

#include <variant>

namespace host {

struct GeValue {
    GeValue() = default;
    GeValue(const GeValue&) = delete;
    GeValue& operator=(const GeValue&) = delete;
    ~GeValue();

    std::variant<std::monostate, Vector, Matrix, String, Filename, BaseTime, BaseContainer> plain;
    BaseLink link; // DA_ALIASLINK

    Int32 customType = 0;
    CustomDataType* custom = nullptr; // made and freed by the class that is registered under `customType`

    /// A default value of a type of custom data; null if the type is not registered.
    static std::unique_ptr<GeValue> OfCustomType(Int32 type);

    // The identity of a link's target, as it is kept in files; 0 for none.

    static UInt64 TargetOf(const BaseLink& link) { return link.marker; }
    static GeData LinkTo(UInt64 marker);
};

} // namespace host
