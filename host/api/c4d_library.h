// The registry, and libraries that plug-ins offer to each other.
#pragma once

#include "c4d_baselist.h"

enum REGISTRYTYPE {
    REGISTRYTYPE_ANY = 0,
    REGISTRYTYPE_OBJECT = 2,
    REGISTRYTYPE_TAG = 6,
    REGISTRYTYPE_MATERIAL = 7,
    REGISTRYTYPE_SHADER = 8,
    REGISTRYTYPE_VIDEOPOST = 13,
    REGISTRYTYPE_SCENEHOOK = 14,
    REGISTRYTYPE_DESCRIPTION = 16,
    REGISTRYTYPE_LIBRARY = 17,
    REGISTRYTYPE_CUSTOMDATATYPE = 18
} ENUM_END_LIST(REGISTRYTYPE);

class Registry : public GeListNode {
public:
    Registry* GetNext();
    Registry* GetPred();
    REGISTRYTYPE GetMainID();
    Int32 GetSubID();
    void* GetData();

protected:
    using GeListNode::GeListNode;
};

Bool GeRegistryAdd(Int32 sub_id, REGISTRYTYPE main_id, void* data);
Bool GeRegistryRemove(Int32 sub_id, REGISTRYTYPE main_id);
Registry* GeRegistryFind(Int32 sub_id, REGISTRYTYPE main_id);

/// What every library record begins with.
struct C4DLibrary {
    Int32 version;
    Int32 size;
};

#define LIBOFFSET(s, m) (static_cast<Int32>(offsetof(s, m)))

/// Sets version and size of the record, which stays the caller's and lives to the end of the program. False if the id
/// is taken.
Bool InstallLibrary(Int32 id, C4DLibrary* lib, Int32 version, Int32 size);
/// The record; null if there is none, or if `offset` lies beyond its size.
C4DLibrary* CheckLib(Int32 id, Int offset, C4DLibrary** store);
