// The plug-in's part of a node.
#pragma once

#include "c4d_basedata.h"
#include "c4d_baselist.h"

namespace host {
struct NodeCore;
}

class NodeData : public BaseData {
public:
    /// The node that this belongs to.
    GeListNode* Get() const { return attachedNode; }

    /// After the allocation; false makes it fail.
    virtual Bool Init([[maybe_unused]] GeListNode* owner) { return true; }
    virtual void Free([[maybe_unused]] GeListNode* owner) {}
    /// `level` is the class's disk level when the file was written. The container has been read already.
    virtual Bool Read([[maybe_unused]] GeListNode* owner, [[maybe_unused]] HyperFile* hf, [[maybe_unused]] Int32 level)
    {
        return true;
    }
    /// The host saves the container itself.
    virtual Bool Write([[maybe_unused]] GeListNode* owner, [[maybe_unused]] HyperFile* hf) { return true; }
    /// Copies members; the container has been copied already.
    virtual Bool CopyTo([[maybe_unused]] NodeData* dest, [[maybe_unused]] GeListNode* snode,
                        [[maybe_unused]] GeListNode* dnode, [[maybe_unused]] COPYFLAGS flags,
                        [[maybe_unused]] AliasTrans* trn)
    {
        return true;
    }
    virtual Bool Message([[maybe_unused]] GeListNode* owner, [[maybe_unused]] Int32 type, [[maybe_unused]] void* data)
    {
        return true;
    }
    virtual Bool IsInstanceOf([[maybe_unused]] const GeListNode* owner, [[maybe_unused]] Int32 type) const
    {
        return false;
    }
    virtual Bool GetDDescription([[maybe_unused]] GeListNode* owner, [[maybe_unused]] Description* description,
                                 [[maybe_unused]] DESCFLAGS_DESC& flags)
    {
        return true;
    }
    virtual Bool GetDParameter([[maybe_unused]] GeListNode* owner, [[maybe_unused]] const DescID& id,
                               [[maybe_unused]] GeData& t_data, [[maybe_unused]] DESCFLAGS_GET& flags)
    {
        return true;
    }
    virtual Bool SetDParameter([[maybe_unused]] GeListNode* owner, [[maybe_unused]] const DescID& id,
                               [[maybe_unused]] const GeData& t_data, [[maybe_unused]] DESCFLAGS_SET& flags)
    {
        return true;
    }
    /// False greys the parameter out.
    virtual Bool GetDEnabling([[maybe_unused]] GeListNode* owner, [[maybe_unused]] const DescID& id,
                              [[maybe_unused]] const GeData& t_data, [[maybe_unused]] DESCFLAGS_ENABLE flags,
                              [[maybe_unused]] const BaseContainer* itemdesc)
    {
        return true;
    }

private:
    friend struct host::NodeCore;

    GeListNode* attachedNode = nullptr;
};
