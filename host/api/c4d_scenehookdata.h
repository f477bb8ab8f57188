// Scene hooks: one node a document, told of every evaluation and every drawing.
#pragma once

#include "c4d_objectdata.h"

class BaseSceneHook : public BaseList2D {
protected:
    using BaseList2D::BaseList2D;
};

class SceneHookData : public NodeData {
public:
    /// One flag at a time. Changes nothing, reads no files. `bt` may be null.
    virtual Bool Draw([[maybe_unused]] BaseSceneHook* node, [[maybe_unused]] BaseDocument* doc,
                      [[maybe_unused]] BaseDraw* bd, [[maybe_unused]] BaseDrawHelp* bh, [[maybe_unused]] BaseThread* bt,
                      [[maybe_unused]] SCENEHOOKDRAW flags)
    {
        return true;
    }
    virtual EXECUTIONRESULT Execute([[maybe_unused]] BaseSceneHook* node, [[maybe_unused]] BaseDocument* doc,
                                    [[maybe_unused]] BaseThread* bt, [[maybe_unused]] Int32 priority,
                                    [[maybe_unused]] EXECUTIONFLAGS flags)
    {
        return EXECUTIONRESULT_OK;
    }
};

Bool RegisterSceneHookPlugin(Int32 id, const String& str, Int32 info, DataAllocator* g, Int32 priority, Int32 disklevel,
                             void* emulation = nullptr);
