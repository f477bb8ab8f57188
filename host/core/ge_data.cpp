#include "c4d_gedata.h"
#include "core/ge_value.h"
#include "core/node_class.h"

#include <algorithm>
#include <cmath>

namespace host {

GeValue::~GeValue()
{
    if (!custom) return;
    if (CustomDataTypeClass* type = FindCustomDataType(customType)) type->FreeData(custom);
}

std::unique_ptr<GeValue> GeValue::OfCustomType(Int32 type)
{
    CustomDataTypeClass* registered = FindCustomDataType(type);
    if (!registered) return nullptr;
    auto value = std::make_unique<GeValue>();
    value->customType = type;
    value->custom = registered->AllocData();
    return value->custom ? std::move(value) : nullptr;
}

GeData GeValue::LinkTo(UInt64 marker)
{
    BaseLink link;
    link.marker = marker;
    return GeData(&link);
}

} // namespace host

namespace {

using host::GeValue;

template <class Value> std::unique_ptr<GeValue> holding(const Value& value)
{
    auto held = std::make_unique<GeValue>();
    held->plain = value;
    return held;
}

// The value that is held, or an empty one if another type is.
template <class Value> const Value& heldOrEmpty(const std::unique_ptr<GeValue>& held)
{
    static const Value empty{};
    const Value* value = held ? std::get_if<Value>(&held->plain) : nullptr;
    return value ? *value : empty;
}

Bool isNumber(Int32 type)
{
    return type == DA_LONG || type == DA_LLONG || type == DA_REAL;
}

template <class Integer> Integer rounded(Float value)
{
    if (std::isnan(value)) return 0;
    // The largest 64-bit number is none of the doubles; the next one is out of range.
    if (value >= static_cast<Float>(LIMIT<Integer>::MAX)) return LIMIT<Integer>::MAX;
    if (value <= static_cast<Float>(LIMIT<Integer>::MIN)) return LIMIT<Integer>::MIN;
    return static_cast<Integer>(value);
}

Bool sameReal(Float a, Float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

Bool sameCustom(const GeValue& a, const GeValue& b)
{
    CustomDataTypeClass* type = host::FindCustomDataType(a.customType);
    return type && type->Compare(a.custom, b.custom) == 0;
}

} // namespace

GeData::GeData() = default;
GeData::GeData(double value) : type(DA_REAL), real(value)
{
}
GeData::GeData(Float32 value) : type(DA_REAL), real(value)
{
}
GeData::GeData(Int32 value) : type(DA_LONG), integer(value)
{
}
GeData::GeData(const Vector& value) : type(DA_VECTOR), held(holding(value))
{
}
GeData::GeData(const Matrix& value) : type(DA_MATRIX), held(holding(value))
{
}
GeData::GeData(const Char* value) : GeData(String(value))
{
}
GeData::GeData(const String& value) : type(DA_STRING), held(holding(value))
{
}
GeData::GeData(const Filename& value) : type(DA_FILENAME), held(holding(value))
{
}
GeData::GeData(const BaseTime& value) : type(DA_TIME), held(holding(value))
{
}
GeData::GeData(const BaseContainer& value) : type(DA_CONTAINER), held(holding(value))
{
}

GeData::GeData(const BaseLink* value) : type(DA_ALIASLINK), held(std::make_unique<GeValue>())
{
    if (value) value->CopyTo(&held->link, COPYFLAGS_0, nullptr);
}

GeData::GeData(BaseList2D* target) : type(DA_ALIASLINK), held(std::make_unique<GeValue>())
{
    held->link.SetLink(target);
}

GeData::GeData(void* value, VOIDVALUETYPE) : type(DA_VOID), integer(reinterpret_cast<Int>(value))
{
}
GeData::GeData(Int64 value, LLONGVALUETYPE) : type(DA_LLONG), integer(value)
{
}

GeData::GeData(Int32 datatype, const CustomDataType& value)
{
    SetCustomDataType(datatype, value);
}

GeData::GeData(Int32 datatype, DEFAULTVALUETYPE)
{
    SetDefault(datatype);
}

GeData::GeData(const GeData& other)
{
    other.CopyData(this, nullptr);
}

GeData::GeData(GeData&& other) noexcept
{
    *this = std::move(other);
}

GeData& GeData::operator=(const GeData& other)
{
    // By way of a copy: `other` may be a part of this value.
    GeData copy(other);
    return *this = std::move(copy);
}

GeData& GeData::operator=(GeData&& other) noexcept
{
    type = std::exchange(other.type, DA_NIL);
    integer = other.integer;
    real = other.real;
    const std::unique_ptr<GeValue> old = std::exchange(held, std::move(other.held));
    return *this;
}

GeData::~GeData() = default;

Int32 GeData::GetInt32() const
{
    return type == DA_REAL ? rounded<Int32>(real) : static_cast<Int32>(GetInt64());
}

Int64 GeData::GetInt64() const
{
    if (type == DA_REAL) return rounded<Int64>(real);
    return isNumber(type) ? integer : 0;
}

Float GeData::GetFloat() const
{
    return type == DA_REAL ? real : static_cast<Float>(GetInt64());
}

void* GeData::GetVoid() const
{
    return type == DA_VOID ? reinterpret_cast<void*>(static_cast<Int>(integer)) : nullptr;
}

const Vector& GeData::GetVector() const
{
    return heldOrEmpty<Vector>(held);
}

const Matrix& GeData::GetMatrix() const
{
    return heldOrEmpty<Matrix>(held);
}

const String& GeData::GetString() const
{
    return heldOrEmpty<String>(held);
}

const Filename& GeData::GetFilename() const
{
    return heldOrEmpty<Filename>(held);
}

const BaseTime& GeData::GetTime() const
{
    return heldOrEmpty<BaseTime>(held);
}

BaseContainer* GeData::GetContainer() const
{
    return held ? std::get_if<BaseContainer>(&held->plain) : nullptr;
}

BaseLink* GeData::GetBaseLink() const
{
    return type == DA_ALIASLINK ? &held->link : nullptr;
}

BaseList2D* GeData::GetLink(const BaseDocument* doc, Int32 instanceof) const
{
    const BaseLink* link = GetBaseLink();
    return link ? link->GetLink(doc, instanceof) : nullptr;
}

CustomDataType* GeData::GetCustomDataType(Int32 datatype) const
{
    return held && held->custom && type == datatype ? held->custom : nullptr;
}

void GeData::SetDefault(Int32 datatype)
{
    switch (datatype) {
    case DA_NIL: *this = GeData(); return;
    case DA_VOID: *this = GeData(nullptr, VOIDVALUE); return;
    case DA_LONG: *this = GeData(Int32(0)); return;
    case DA_LLONG: *this = GeData(Int64(0), LLONGVALUE); return;
    case DA_REAL: *this = GeData(0.0); return;
    case DA_TIME: *this = GeData(BaseTime()); return;
    case DA_VECTOR: *this = GeData(Vector()); return;
    case DA_MATRIX: *this = GeData(Matrix()); return;
    case DA_STRING: *this = GeData(String()); return;
    case DA_FILENAME: *this = GeData(Filename()); return;
    case DA_CONTAINER: *this = GeData(BaseContainer()); return;
    case DA_ALIASLINK: *this = GeData(static_cast<BaseList2D*>(nullptr)); return;
    default: break;
    }
    GeData fresh;
    fresh.held = GeValue::OfCustomType(datatype);
    if (fresh.held) fresh.type = datatype;
    *this = std::move(fresh);
}

void GeData::SetFloat(Float value)
{
    *this = GeData(value);
}

void GeData::SetInt32(Int32 value)
{
    *this = GeData(value);
}

void GeData::SetInt64(const Int64& value)
{
    *this = GeData(value, LLONGVALUE);
}

void GeData::SetVector(const Vector& value)
{
    *this = GeData(value);
}

void GeData::SetString(const String& value)
{
    *this = GeData(value);
}

void GeData::SetFilename(const Filename& value)
{
    *this = GeData(value);
}

void GeData::SetContainer(const BaseContainer& value)
{
    *this = GeData(value);
}

void GeData::SetBaseList2D(BaseList2D* target)
{
    *this = GeData(target);
}

// Nil if the type is not registered or refuses the copy.
void GeData::SetCustomDataType(Int32 datatype, const CustomDataType& value)
{
    GeData copy(datatype, DEFAULTVALUE);
    CustomDataType* own = copy.GetCustomDataType(datatype);
    if (!own || !host::FindCustomDataType(datatype)->CopyData(&value, own, nullptr)) copy = GeData();
    *this = std::move(copy);
}

Bool GeData::CopyData(GeData* destination, AliasTrans* trans) const
{
    GeData copy;
    copy.type = type;
    copy.integer = integer;
    copy.real = real;
    if (type == DA_CONTAINER) {
        copy.held = holding(BaseContainer());
        if (!GetContainer()->CopyTo(copy.GetContainer(), COPYFLAGS_0, trans)) return false;
    } else if (type == DA_ALIASLINK) {
        copy.held = std::make_unique<GeValue>();
        // A translation keeps the address of the copy, which stays: the value moves with what it holds.
        if (!held->link.CopyTo(&copy.held->link, COPYFLAGS_0, trans)) return false;
    } else if (held && held->custom) {
        copy.held = GeValue::OfCustomType(type);
        CustomDataTypeClass* registered = host::FindCustomDataType(type);
        if (!copy.held || !registered->CopyData(held->custom, copy.held->custom, trans)) {
            *destination = GeData();
            return false;
        }
    } else if (held) {
        copy.held = std::make_unique<GeValue>();
        copy.held->plain = held->plain;
    }
    *destination = std::move(copy);
    return true;
}

Bool operator==(const GeData& a, const GeData& b)
{
    if (a.type != b.type) return false;
    if (a.type == DA_REAL) return sameReal(a.real, b.real);
    if (!a.held) return a.integer == b.integer;
    if (a.type == DA_ALIASLINK) return GeValue::TargetOf(a.held->link) == GeValue::TargetOf(b.held->link);
    return a.held->custom ? sameCustom(*a.held, *b.held) : a.held->plain == b.held->plain;
}
