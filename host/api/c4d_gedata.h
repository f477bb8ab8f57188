// A value of any type. Copies are deep; links are weak.
#pragma once

#include "c4d_file.h"

#include <memory>

class BaseContainer;
class BaseDocument;
class BaseLink;
class BaseList2D;
class C4DAtomGoal;
class AliasTrans;
struct CustomDataType;

namespace host {
struct GeValue; // what does not fit into a number
}

#define DA_NIL 0
#define DA_VOID 14
#define DA_LONG 15
#define DA_REAL 19
#define DA_TIME 22
#define DA_VECTOR 23
#define DA_MATRIX 25
#define DA_LLONG 26
#define DA_BYTEARRAY 128
#define DA_STRING 130
#define DA_FILENAME 131
#define DA_CONTAINER 132
#define DA_ALIASLINK 133
#define DA_CUSTOMDATATYPE 1000000 // types of plug-ins lie above

enum VOIDVALUETYPE { VOIDVALUE = 0 };
enum LLONGVALUETYPE { LLONGVALUE = 0 };
enum DEFAULTVALUETYPE { DEFAULTVALUE = 0 };

class GeData {
public:
    GeData();
    GeData(double value);
    GeData(Float32 value);
    GeData(Int32 value);
    GeData(const Vector& value);
    GeData(const Matrix& value);
    GeData(const Char* value);
    GeData(const String& value);
    GeData(const Filename& value);
    GeData(const BaseTime& value);
    GeData(const BaseContainer& value);
    GeData(const BaseLink* value);
    GeData(BaseList2D* target);
    GeData(void* value, VOIDVALUETYPE);
    GeData(Int64 value, LLONGVALUETYPE);
    GeData(Int32 type, const CustomDataType& value); // copies it
    GeData(Int32 type, DEFAULTVALUETYPE);
    GeData(const GeData& other);
    GeData(GeData&& other) noexcept;
    GeData& operator=(const GeData& other);
    GeData& operator=(GeData&& other) noexcept;
    ~GeData();

    Int32 GetType() const { return type; }
    Bool GetBool() const { return GetInt64() != 0; }
    Int32 GetInt32() const;
    Int64 GetInt64() const;
    Float GetFloat() const;
    void* GetVoid() const;
    const Vector& GetVector() const;
    const Matrix& GetMatrix() const;
    const String& GetString() const;
    const Filename& GetFilename() const;
    const BaseTime& GetTime() const;
    BaseContainer* GetContainer() const; // this value's own; null for other types
    BaseLink* GetBaseLink() const;
    /// The target, if it lives and is an instance of the type.
    BaseList2D* GetLink(const BaseDocument* doc, Int32 instanceof = 0) const;
    /// This value's own; null for other types.
    CustomDataType* GetCustomDataType(Int32 datatype) const;

    void SetDefault(Int32 datatype);
    void SetFloat(Float value);
    void SetInt32(Int32 value);
    void SetInt64(const Int64& value);
    void SetVector(const Vector& value);
    void SetString(const String& value);
    void SetFilename(const Filename& value);
    void SetContainer(const BaseContainer& value);
    void SetBaseList2D(BaseList2D* target);
    void SetCustomDataType(Int32 datatype, const CustomDataType& value);
    Bool CopyData(GeData* destination, AliasTrans* trans) const;

    friend Bool operator==(const GeData& a, const GeData& b);
    friend Bool operator!=(const GeData& a, const GeData& b) { return !(a == b); }

private:
    Int32 type = DA_NIL;
    Int64 integer = 0; // DA_LONG, DA_LLONG, DA_VOID
    Float real = 0;    // DA_REAL
    std::unique_ptr<host::GeValue> held;
};
