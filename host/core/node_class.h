// What nodes can be made of, and everything else that plug-ins register.
//
// The registry is a part of the application. Built-in classes are entered by its constructor, plug-ins'
// ones through the Register... calls of the API. Its end deletes the plug-in class objects that were handed over; all
// nodes must be gone by then.
#pragma once

#include "c4d_basebitmap.h"
#include "c4d_baseplugin.h"
#include "c4d_customdatatype.h"
#include "c4d_file.h"
#include "c4d_library.h"
#include "c4d_nodedata.h"
#include "core/application.h"
#include "core/node.h"

#include <map>
#include <memory>
#include <string_view>
#include <vector>

namespace host {

// Info flags of tags.
constexpr Int32 kTagVisible = 1 << 0;
constexpr Int32 kTagMultiple = 1 << 1;
constexpr Int32 kTagHierarchical = 1 << 2;

using NodeMaker = std::unique_ptr<NodeCore> (*)(const NodeClass&);

/// The usual maker of a kind of core.
template <class Core> std::unique_ptr<NodeCore> MakeCore(const NodeClass& nodeClass)
{
    return std::make_unique<Core>(nodeClass);
}

/// Built-in classes fill in what their kind needs and leave the rest.
struct NodeClass {
    Int32 id = 0;
    NodeKind kind = NodeKind::Object;
    NodeMaker make = nullptr;
    String name{};        // given to new nodes
    Int32 info = 0;       // OBJECT_..., TAG_..., PLUGINFLAG_...
    String description{}; // resource name; empty: none
    Int32 diskLevel = 0;  // written with each node's own data
    DataAllocator* allocator = nullptr;
    std::vector<Int32> bases{};                // what IsInstanceOf accepts beside the id: Obase, Opoint, ...
    void (*prepare)(NodeCore& node) = nullptr; // sets a fresh node's parameters, before the data's Init
    Int32 priority = 0;                        // of a scene hook's Execute
    Int32 shownColor = 0;                      // of a material: the parameter with the colour that views show
    BaseBitmap* icon = nullptr;                // owned by the registry; null: none
};

/// A registered type of custom data.
struct CustomDataClass {
    CustomDataTypeClass* type = nullptr; // owned by the registry
    String name;
    Int32 info = 0;
    Int32 diskLevel = 0;
};

/// A registered plug-in, of any type: the node that FindPlugin answers.
struct PluginCore : NodeCore {
    explicit PluginCore(const NodeClass& nodeClass);

    Int32 id = 0;
    PLUGINTYPE type = PLUGINTYPE_ANY;
    Int32 info = 0;
    Filename file;             // of the module that registered it; empty for the host's own
    void* structure = nullptr; // the plug-in class object, where there is one
};

struct EntryCore : NodeCore {
    explicit EntryCore(const NodeClass& nodeClass);

    Int32 subId = 0;
    REGISTRYTYPE mainId = REGISTRYTYPE_ANY;
    void* record = nullptr;
};

class Registrations : public ApplicationPart {
public:
    Registrations();
    ~Registrations() override;

    /// Null while no application runs.
    static Registrations* Current();

    void end(Ending step) override;

    /// The file that following registrations come from; the loader sets it around its calls into a module.
    void SetModule(const Filename& file) { module = file; }

    /// Null if the kind has a class of this id already, or a plug-in of its type has. Classes stay where they are.
    const NodeClass* EnterClass(NodeClass nodeClass);
    const NodeClass* FindClass(NodeKind kind, Int32 id) const;
    /// Of whichever kind has it, in the order of NodeKind.
    const NodeClass* FindClass(Int32 id) const;
    /// The classes of one kind in order of registration, built-in ones first.
    std::vector<const NodeClass*> Classes(NodeKind kind) const;

    /// Takes `type` over; false (and not taken) if its id is used.
    bool EnterCustomData(const String& name, Int32 info, CustomDataTypeClass* type, Int32 diskLevel);
    const CustomDataClass* FindCustomData(Int32 id) const;
    /// By the keyword of resource files.
    const CustomDataClass* FindCustomData(std::string_view keyword) const;

    /// An entry of the plug-in list; null if the type has the id already.
    PluginCore* EnterPlugin(PLUGINTYPE type, Int32 id, const String& name, Int32 info, void* structure = nullptr);
    /// PLUGINTYPE_ANY takes whichever type has the id.
    PluginCore* FindPlugin(Int32 id, PLUGINTYPE type) const;
    ListCore& Plugins() { return plugins; }

    /// Records that plug-ins offer to each other; they stay their owners'.
    bool AddEntry(Int32 subId, REGISTRYTYPE mainId, void* record);
    bool RemoveEntry(Int32 subId, REGISTRYTYPE mainId);
    EntryCore* FindEntry(Int32 subId, REGISTRYTYPE mainId);

private:
    Filename module;
    std::vector<std::unique_ptr<NodeClass>> classes;
    std::map<std::pair<NodeKind, Int32>, const NodeClass*> classesById;
    std::map<Int32, CustomDataClass> customData;
    ListCore plugins;
    ListCore entries;
};

/// The plug-in type that registers nodes of the kind; PLUGINTYPE_ANY for kinds that only the host makes.
PLUGINTYPE PluginTypeOf(NodeKind kind);

/// Null without a registry or a type of that id.
CustomDataTypeClass* FindCustomDataType(Int32 id);
/// The version that the type's values are written with; 0 if there is no such type.
Int32 CustomDataDiskLevel(Int32 id);

// The host's own classes, entered by the registry's constructor. Each group stands in the file of its cores.
void EnterNodeClasses(Registrations& registry);     // objects without data of their own, layers, types of data
void EnterMaterialClasses(Registrations& registry); // materials, shaders, render settings
void EnterGeometryClasses(Registrations& registry); // point and polygon objects, tags with data
void EnterDocumentClasses(Registrations& registry);
void EnterViewClasses(Registrations& registry); // views, cameras

} // namespace host
