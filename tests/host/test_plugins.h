// Plug-ins of the tests' own: a generator, a tag-less node of each kind that documents hold, and a scene hook. What
// they are told goes into a journal, in the order in which it happens.
#pragma once

#include "c4d.h"

#include <functional>
#include <string>
#include <vector>

namespace host::test {

constexpr Int32 kGenerator = 1099001;
constexpr Int32 kHook = 1099002;
constexpr Int32 kOtherHook = 1099003;
constexpr Int32 kParameter = 2001; // a number that the generator's product depends on
constexpr Int32 kFileParameter = 2002;

/// What plug-ins were told since the last look, as lines "name: what".
class Journal {
public:
    static void add(const std::string& line) { lines().push_back(line); }
    static std::vector<std::string> take() { return std::exchange(lines(), {}); }
    /// Only lines that begin with one of these.
    static std::vector<std::string> taken(std::string_view beginning)
    {
        std::vector<std::string> found = take();
        std::erase_if(found, [&](const std::string& line) { return !line.starts_with(beginning); });
        return found;
    }

private:
    static std::vector<std::string>& lines()
    {
        static std::vector<std::string> kept;
        return kept;
    }
};

std::string TextOfName(const GeListNode* node);
/// "13 doc=scene.vds gui=0" and the like: what of a message's data matters.
std::string TextOfMessage(Int32 type, const void* data);

/// Makes a polygon object of kParameter points whenever it must.
class Generator : public ObjectData {
public:
    static NodeData* Alloc() { return NewObjClear(Generator); }
    static Generator& Of(BaseObject* object) { return *static_cast<Generator*>(object->GetNodeData()); }

    Bool Init(GeListNode* node) override;
    void Free(GeListNode* node) override;
    Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, COPYFLAGS flags, AliasTrans* trn) override;
    Bool Message(GeListNode* node, Int32 type, void* data) override;
    BaseObject* GetVirtualObjects(BaseObject* op, HierarchyHelp* hh) override;

    std::function<BaseObject*(BaseObject*, HierarchyHelp*)> build; // instead of the usual product
    std::function<void(Int32 type, void* data)> onMessage;
    Int32 calls = 0;
    Int32 builds = 0;
    Int32 member = 0; // copied by CopyTo

    static inline Int32 alive = 0;
};

class Hook : public SceneHookData {
public:
    static NodeData* Alloc() { return NewObjClear(Hook); }

    Bool Message(GeListNode* node, Int32 type, void* data) override;
    EXECUTIONRESULT Execute(BaseSceneHook* node, BaseDocument* doc, BaseThread* bt, Int32 priority,
                            EXECUTIONFLAGS flags) override;
};

/// Registers all of them; the second hook has the lower priority. Empties the journal.
void RegisterTestPlugins();

BaseObject* AddGenerator(BaseDocument& document, const char* name, BaseObject* parent = nullptr);
BaseObject* AddNull(BaseDocument& document, const char* name, BaseObject* parent = nullptr);
/// The names of a list and of what stands below, as "a(b c) d".
std::string TreeOf(BaseObject* first);

} // namespace host::test
