// Ids of parameters, and descriptions: what parameters a node has and how they are shown.
#pragma once

#include "c4d_basecontainer.h"

class AtomArray;
class HyperFile;

#define DESC_NAME 1
#define DESC_SHORT_NAME 2
#define DESC_VERSION 3
#define DESC_CHILDREN 4
#define DESC_MIN 5
#define DESC_MAX 6
#define DESC_MINEX 7
#define DESC_MAXEX 8
#define DESC_STEP 9
#define DESC_ANIMATE 10
#define DESC_ANIMATE_OFF 0
#define DESC_ANIMATE_ON 1
#define DESC_ANIMATE_MIX 2
#define DESC_ASKOBJECT 11
#define DESC_UNIT 12
#define DESC_PARENTGROUP 13
#define DESC_CYCLE 14
#define DESC_HIDE 15
#define DESC_DEFAULT 16
#define DESC_ACCEPT 17
#define DESC_SEPARATORLINE 18
#define DESC_REFUSE 19
#define DESC_PARENTID 20
#define DESC_CUSTOMGUI 21
#define DESC_COLUMNS 22
#define DESC_LAYOUTGROUP 23
#define DESC_REMOVEABLE 24
#define DESC_GUIOPEN 25
#define DESC_EDITABLE 26
#define DESC_MINSLIDER 27
#define DESC_MAXSLIDER 28
#define DESC_GROUPSCALEV 29
#define DESC_SCALEH 30
#define DESC_LAYOUTVERSION 31
#define DESC_ALIGNLEFT 32
#define DESC_FITH 33
#define DESC_NEWLINE 34
#define DESC_TITLEBAR 35
#define DESC_CYCLEICONS 36
#define DESC_CYCLESYMBOLS 37
#define DESC_PARENT_COLLAPSE 38
#define DESC_IDENT 999

#define DESC_UNIT_FLOAT 1718773089   // 'frea'
#define DESC_UNIT_INT 1718382183     // 'flng'
#define DESC_UNIT_PERCENT 1718642531 // 'fpct'
#define DESC_UNIT_DEGREE 1717855591  // 'fdeg'
#define DESC_UNIT_METER 1718446450   // 'fmet'
#define DESC_UNIT_TIME 1718904173    // 'ftim'

#define DTYPE_NONE 0
#define DTYPE_GROUP 1
#define DTYPE_COLOR 3
#define DTYPE_SUBCONTAINER 5
#define DTYPE_MULTIPLEDATA 6
#define DTYPE_TEXTURE 7
#define DTYPE_BUTTON 8
#define DTYPE_DYNAMIC 10
#define DTYPE_SEPARATOR 11
#define DTYPE_STATICTEXT 12
#define DTYPE_POPUP 13
#define DTYPE_LONG 15
#define DTYPE_REAL 19
#define DTYPE_TIME 22
#define DTYPE_VECTOR 23
#define DTYPE_MATRIX 25
#define DTYPE_STRING 130
#define DTYPE_FILENAME 131
#define DTYPE_BASELISTLINK 133
#define DTYPE_BOOL 400006001
#define DTYPE_NORMAL 400006005

enum DESCFLAGS_DESC {
    DESCFLAGS_DESC_0 = 0,
    DESCFLAGS_DESC_RESOLVEMULTIPLEDATA = (1 << 0),
    DESCFLAGS_DESC_LOADED = (1 << 1),
    DESCFLAGS_DESC_RECURSIONLOCK = (1 << 2),
    DESCFLAGS_DESC_DONTLOADDEFAULT = (1 << 3),
    DESCFLAGS_DESC_MAPTAGS = (1 << 4),
    DESCFLAGS_DESC_NEEDDEFAULTVALUE = (1 << 5)
};
ENUM_END_FLAGS(DESCFLAGS_DESC)

enum DESCFLAGS_GET {
    DESCFLAGS_GET_0 = 0,
    DESCFLAGS_GET_PARAM_GET = (1 << 1),
    DESCFLAGS_GET_NO_GLOBALDATA = (1 << 4),
    DESCFLAGS_GET_NO_GEDATADEFAULTVALUE = (1 << 5)
};
ENUM_END_FLAGS(DESCFLAGS_GET)

enum DESCFLAGS_SET {
    DESCFLAGS_SET_0 = 0,
    DESCFLAGS_SET_PARAM_SET = (1 << 1),
    DESCFLAGS_SET_USERINTERACTION = (1 << 2),
    DESCFLAGS_SET_DONTCHECKMINMAX = (1 << 3),
    DESCFLAGS_SET_DONTAFFECTINHERITANCE = (1 << 6),
    DESCFLAGS_SET_FORCESET = (1 << 7)
};
ENUM_END_FLAGS(DESCFLAGS_SET)

enum DESCFLAGS_ENABLE { DESCFLAGS_ENABLE_0 = 0 };
ENUM_END_FLAGS(DESCFLAGS_ENABLE)

struct DescLevel {
    Int32 id = 0;
    Int32 dtype = 0;
    Int32 creator = 0;

    DescLevel() = default;
    DescLevel(Int32 t_id) : id(t_id) {}
    DescLevel(Int32 t_id, Int32 t_datatype, Int32 t_creator) : id(t_id), dtype(t_datatype), creator(t_creator) {}

    Bool operator==(const DescLevel& other) const
    {
        return id == other.id && dtype == other.dtype && creator == other.creator;
    }
    Bool operator!=(const DescLevel& other) const { return !(*this == other); }
};

/// The parameter's id, and behind it those of its parts: a component of a vector, a field of a custom type.
class DescID {
public:
    DescID() = default;
    DescID(Int32 id1) : DescID(DescLevel(id1)) {}
    DescID(const DescLevel& id1) { PushId(id1); }
    DescID(const DescLevel& id1, const DescLevel& id2) : DescID(id1) { PushId(id2); }
    DescID(const DescLevel& id1, const DescLevel& id2, const DescLevel& id3) : DescID(id1, id2) { PushId(id3); }

    void SetId(const DescLevel& level);
    void PushId(const DescLevel& level);               // beyond the deepest level nothing happens
    const DescLevel& operator[](Int32 position) const; // an empty level past the end
    Int32 GetDepth() const { return depth; }
    /// True if this id begins with all levels of `cmp`; `position` is told how many those are.
    Bool IsPartOf(const DescID& cmp, Int32* position) const;
    /// Without the first `shift` levels.
    DescID operator<<(Int32 shift) const;

    friend Bool operator==(const DescID& a, const DescID& b);
    friend Bool operator!=(const DescID& a, const DescID& b) { return !(a == b); }

    Bool Read(HyperFile* hf);
    Bool Write(HyperFile* hf) const;

private:
    static constexpr Int32 kDeepest = 4;

    DescLevel levels[kDeepest];
    Int32 depth = 0;
};

namespace host {
struct DescriptionData;
}

/// A description of one node's parameters: a copy that may be edited.
class Description {
public:
    static Description* Alloc();
    static void Free(Description*& description);

    Bool LoadDescription(Int32 id);         // by the type of node
    Bool LoadDescription(const String& id); // by the name of the resource
    /// The parameter's container of DESC_ keys, edited in place; null if there is no such parameter.
    BaseContainer* GetParameterI(const DescID& id, AtomArray* ar);
    const BaseContainer* GetParameter(const DescID& id, BaseContainer& temp, AtomArray* ar) const;
    Bool SetParameter(const DescID& id, const BaseContainer& param, const DescID& groupid);
    /// Not null while one parameter alone is asked for.
    const DescID* GetSingleDescID();

    void* BrowseInit();
    Bool GetNext(void* handle, const BaseContainer** bc, DescID& id, DescID& groupid);
    void BrowseFree(void*& handle);

private:
    friend struct host::DescriptionData;
    Description();
    ~Description();

    std::unique_ptr<host::DescriptionData> data;
};
