#include "support/probe_object.h"

#include <gtest/gtest.h>

namespace host::test {
namespace {

ProbeRecord record;

} // namespace

ProbeRecord& ProbeRecord::Fresh()
{
    record = {};
    return record;
}

NodeData* Probe::Alloc()
{
    Probe* made = NewObjClear(Probe);
    record.living.insert(made);
    record.calls.emplace_back("alloc");
    return made;
}

Probe::~Probe()
{
    EXPECT_EQ(record.living.erase(this), 1u);
    record.calls.emplace_back("delete");
}

Bool Probe::Init(GeListNode* owner)
{
    EXPECT_EQ(Get(), owner);
    EXPECT_EQ(owner->GetNodeData(), this);
    record.calls.emplace_back("init");
    if (record.onInit) record.onInit(*owner);
    return !record.initFails;
}

void Probe::Free(GeListNode* owner)
{
    EXPECT_EQ(Get(), owner);
    record.calls.emplace_back("free");
}

Bool Probe::Message(GeListNode* owner, Int32 type, void* data)
{
    if (record.onMessage) record.onMessage(*owner, type, data);
    return type != MSG_EDIT;
}

Bool Probe::CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS, AliasTrans*)
{
    EXPECT_EQ(snode->GetNodeData(), this);
    EXPECT_EQ(dnode->GetNodeData(), dest);
    // Values of the host are there already, what hangs on the node is not.
    auto* object = static_cast<BaseObject*>(dnode);
    EXPECT_EQ(object->GetName(), static_cast<BaseObject*>(snode)->GetName());
    record.calls.emplace_back(object->GetFirstTag() || object->GetDown() ? "copy full" : "copy");
    static_cast<Probe*>(dest)->own = own;
    return !record.copyFails;
}

Bool Probe::GetDParameter(GeListNode*, const DescID& id, GeData& t_data, DESCFLAGS_GET& flags)
{
    if (id[0].id != kOwnParameter) return false;
    t_data = GeData(own);
    flags |= DESCFLAGS_GET_PARAM_GET;
    return true;
}

Bool Probe::SetDParameter(GeListNode*, const DescID& id, const GeData& t_data, DESCFLAGS_SET& flags)
{
    if (id[0].id != kOwnParameter) return false;
    own = t_data.GetFloat();
    flags |= DESCFLAGS_SET_PARAM_SET;
    return true;
}

void Probe::GetDimension(BaseObject*, Vector* mp, Vector* rad)
{
    *mp = Vector(1, 2, 3);
    *rad = Vector(4, -5, 6);
}

void RegisterProbe(const char* description, Int32 info)
{
    ASSERT_TRUE(RegisterObjectPlugin(kProbeObject, "Probe", info, Probe::Alloc, description, nullptr, 7));
}

} // namespace host::test
