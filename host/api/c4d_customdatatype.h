// Data types of plug-ins: values that parameters hold, and the classes that know how to handle them.
#pragma once

#include "c4d_basedata.h"
#include "lib_description.h"

#define CUSTOMDATATYPE_INFO_HASSUBDESCRIPTION (1 << 0)
#define CUSTOMDATATYPE_INFO_NEEDDATAFORSUBDESC (1 << 1)
#define CUSTOMDATATYPE_INFO_TOGGLEDISPLAY (1 << 2)
#define CUSTOMDATATYPE_INFO_DONTREGISTERGVTYPE (1 << 3)
#define CUSTOMDATATYPE_INFO_SUBDESCRIPTIONDISABLEGUI (1 << 4)
#define CUSTOMDATATYPE_INFO_UNDOSAMECUSTOMGUI (1 << 5)
#define CUSTOMDATATYPE_INFO_LOADSAVE (1 << 7)

enum CUSTOMTYPE {
    CUSTOMTYPE_END = 0,
    CUSTOMTYPE_FLAG = 1,
    CUSTOMTYPE_LONG = 2,
    CUSTOMTYPE_REAL = 3,
    CUSTOMTYPE_STRING = 4,
    CUSTOMTYPE_VECTOR = 5
} ENUM_END_LIST(CUSTOMTYPE);

/// One property of a type's elements in resource files; a list ends with CUSTOMTYPE_END.
struct CustomProperty {
    CUSTOMTYPE type;
    Int32 id;
    const Char* ident;
};

/// The base of all values.
struct CustomDataType {};

template <class T> struct iCustomDataType : public CustomDataType {
    static T* Alloc() { return NewObjClear(T); }
    static void Free(T*& data) { DeleteObj(data); }
};

class CustomDataTypeClass : public BaseData {
public:
    virtual Int32 GetId() = 0;
    virtual Int32 GetDataID() { return GetId(); }
    virtual Int32 GetValueID() { return GetId(); }
    virtual CustomDataType* AllocData() = 0;
    virtual void FreeData(CustomDataType* data) = 0;
    virtual Bool CopyData(const CustomDataType* src, CustomDataType* dest, AliasTrans* aliastrans) = 0;
    /// Negative, 0 or positive; 0 means that a new value is no change.
    virtual Int32 Compare(const CustomDataType* d1, const CustomDataType* d2) = 0;
    virtual Bool WriteData(const CustomDataType* d, HyperFile* hf) = 0;
    /// `level` is the type's disk level when the file was written. May run on any thread.
    virtual Bool ReadData(CustomDataType* d, HyperFile* hf, Int32 level) = 0;
    virtual const Char* GetResourceSym() = 0; // the keyword in resource files
    virtual CustomProperty* GetProperties() { return nullptr; }
    virtual void GetDefaultProperties([[maybe_unused]] BaseContainer& data) {}
    /// `id` is relative to the value. Sets the flag if it served the id.
    virtual Bool GetParameter([[maybe_unused]] const CustomDataType* data, [[maybe_unused]] const DescID& id,
                              [[maybe_unused]] GeData& t_data, DESCFLAGS_GET& flags)
    {
        return (flags & DESCFLAGS_GET_PARAM_GET) != 0;
    }
    virtual Bool SetDParameter([[maybe_unused]] CustomDataType* data, [[maybe_unused]] const DescID& id,
                               [[maybe_unused]] const GeData& t_data, DESCFLAGS_SET& flags)
    {
        return (flags & DESCFLAGS_SET_PARAM_SET) != 0;
    }
};

/// The host owns `dat` if this succeeds. False if the id is taken.
Bool RegisterCustomDataTypePlugin(const String& str, Int32 info, CustomDataTypeClass* dat, Int32 disclevel);
