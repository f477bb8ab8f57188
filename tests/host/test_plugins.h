// Plug-ins of the tests' own: a generator and scene hooks. What they are told goes into a journal, as it happens.
#pragma once

#include "c4d.h"
#include "core/document_messages.h"

#include <functional>
#include <string>
#include <vector>

namespace host::test {

constexpr Int32 kGenerator = 1099001;
constexpr Int32 kHook = 1099002;
constexpr Int32 kEarlyHook = 1099003;
constexpr Int32 kParameter = 2001;     // how many points the generator's product has; 3 at first
constexpr Int32 kFileParameter = 2002; // a file that it says it needs

/// Lines "name: message", as "plant: 1001078/1004 file=oak.vdt".
class Journal {
public:
    static void add(const std::string& line) { lines().push_back(line); }
    /// The lines since the last look that begin so.
    static std::vector<std::string> take(std::string_view beginning = "");

private:
    static std::vector<std::string>& lines();
};

/// Makes a polygon object of kParameter points whenever it must.
class Generator : public ObjectData {
public:
    static NodeData* Alloc() { return NewObjClear(Generator); }
    static Generator& Of(BaseObject* object) { return *static_cast<Generator*>(object->GetNodeData()); }

    Bool Init(GeListNode* node) override;
    void Free(GeListNode*) override { --alive; }
    Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags, AliasTrans* trn) override;
    Bool Message(GeListNode* node, Int32 type, void* data) override;
    BaseObject* GetVirtualObjects(BaseObject* op, HierarchyHelp* hh) override;

    std::function<BaseObject*(BaseObject*, HierarchyHelp*)> build; // instead of the usual product
    std::function<void(Int32 type, void* data)> onMessage;
    Int32 calls = 0;
    Int32 builds = 0;
    Int32 member = 0; // goes over with copies

    static inline Int32 alive = 0;
};

std::string NameOf(const GeListNode* node);
/// Behind what the parent, or the document, has already.
BaseObject* Add(BaseDocument& document, Int32 type, const char* name, BaseObject* parent = nullptr);
/// The names of a row of objects and of what stands below, as "a(b c) d".
std::string TreeOf(BaseObject* first);
/// The points of a generator's product; -1 if it is none.
Int32 PointsOf(BaseObject* cache);
inline Int32 ParameterOf(BaseObject* object)
{
    return object->GetDataInstance()->GetInt32(kParameter);
}

/// Registers the plug-ins and empties the journal.
void RegisterTestPlugins();

} // namespace host::test
