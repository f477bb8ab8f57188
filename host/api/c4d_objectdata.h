// Objects and scene hooks of plug-ins.
#pragma once

#include "c4d_basedraw.h"
#include "c4d_nodedata.h"

class BaseBitmap;

enum EXECUTIONRESULT {
    EXECUTIONRESULT_OK = 0,
    EXECUTIONRESULT_USERBREAK = 1,
    EXECUTIONRESULT_OUTOFMEMORY = 2
} ENUM_END_LIST(EXECUTIONRESULT);

enum EXECUTIONFLAGS {
    EXECUTIONFLAGS_0 = 0,
    EXECUTIONFLAGS_ANIMATION = (1 << 1),
    EXECUTIONFLAGS_EXPRESSION = (1 << 2),
    EXECUTIONFLAGS_CACHEBUILDING = (1 << 3),
    EXECUTIONFLAGS_CAMERAONLY = (1 << 4),
    EXECUTIONFLAGS_INDRAG = (1 << 5),
    EXECUTIONFLAGS_INMOVE = (1 << 6),
    EXECUTIONFLAGS_RENDER = (1 << 7)
};
ENUM_END_FLAGS(EXECUTIONFLAGS)

#define EXECUTIONPRIORITY_INITIAL 1000
#define EXECUTIONPRIORITY_ANIMATION 2000
#define EXECUTIONPRIORITY_EXPRESSION 3000
#define EXECUTIONPRIORITY_DYNAMICS 4000
#define EXECUTIONPRIORITY_GENERATOR 5000

class ObjectData : public NodeData {
public:
    /// Centre and half size of the object's own box. A half size may come out negative.
    virtual void GetDimension([[maybe_unused]] BaseObject* op, [[maybe_unused]] Vector* mp,
                              [[maybe_unused]] Vector* rad)
    {
    }
    virtual DRAWRESULT Draw([[maybe_unused]] BaseObject* op, [[maybe_unused]] DRAWPASS drawpass,
                            [[maybe_unused]] BaseDraw* bd, [[maybe_unused]] BaseDrawHelp* bh)
    {
        return DRAWRESULT_SKIP;
    }
    /// The present cache, a new object (the host's then), or null.
    virtual BaseObject* GetVirtualObjects([[maybe_unused]] BaseObject* op, [[maybe_unused]] HierarchyHelp* hh)
    {
        return nullptr;
    }
};

/// The host copies the icon. False if the id is taken.
Bool RegisterObjectPlugin(Int32 id, const String& str, Int32 info, DataAllocator* g, const String& description,
                          BaseBitmap* icon, Int32 disklevel);
