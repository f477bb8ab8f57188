// A plug-in object that writes down what the host does with it.
#pragma once

#include "c4d.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace host::test {

/// All probes of a test share one record; a test begins with a fresh one.
struct ProbeRecord {
    std::vector<std::string> calls;   // of the kinds that are not left out below
    std::set<const NodeData*> living; // allocated and not yet deleted
    bool initFails = false;
    bool copyFails = false;
    std::function<void(GeListNode&)> onInit;
    std::function<void(GeListNode&, Int32 type, void* data)> onMessage;

    static ProbeRecord& Fresh();
};

constexpr Int32 kProbeObject = 1900001;
constexpr Int32 kProbeHook = 1900002;

class Probe : public ObjectData {
public:
    static NodeData* Alloc();
    ~Probe() override;

    Bool Init(GeListNode* owner) override;
    void Free(GeListNode* owner) override;
    Bool Message(GeListNode* owner, Int32 type, void* data) override;
    Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags, AliasTrans* trn) override;
    Bool GetDParameter(GeListNode* owner, const DescID& id, GeData& t_data, DESCFLAGS_GET& flags) override;
    Bool SetDParameter(GeListNode* owner, const DescID& id, const GeData& t_data, DESCFLAGS_SET& flags) override;
    void GetDimension(BaseObject* op, Vector* mp, Vector* rad) override;

    static constexpr Int32 kOwnParameter = 4000; // kept in `own`, never in the container
    Float own = 0;
};

/// Registers the probe; `description` may be empty.
void RegisterProbe(const char* description = "", Int32 info = OBJECT_GENERATOR);

} // namespace host::test
