#include "c4d_objectdata.h"
#include "c4d_resource.h"
#include "c4d_scenehookdata.h"
#include "core/node_class.h"
#include "core/object.h"
#include "core/scene_hook.h"

#include <algorithm>

namespace host {
namespace {

Registrations* present = nullptr;

const NodeClass& pluginClass()
{
    static const NodeClass made{.kind = NodeKind::Plugin};
    return made;
}

const NodeClass& entryClass()
{
    static const NodeClass made{.kind = NodeKind::RegistryEntry};
    return made;
}

} // namespace

PluginCore::PluginCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BasePlugin>();
}

EntryCore::EntryCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<::Registry>();
}

HookCore::HookCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseSceneHook>();
}

PLUGINTYPE PluginTypeOf(NodeKind kind)
{
    switch (kind) {
    case NodeKind::Object: return PLUGINTYPE_OBJECT;
    case NodeKind::Tag: return PLUGINTYPE_TAG;
    case NodeKind::Material: return PLUGINTYPE_MATERIAL;
    case NodeKind::Shader: return PLUGINTYPE_SHADER;
    case NodeKind::VideoPost: return PLUGINTYPE_VIDEOPOST;
    case NodeKind::SceneHook: return PLUGINTYPE_SCENEHOOK;
    case NodeKind::SceneLoader: return PLUGINTYPE_SCENELOADER;
    default: return PLUGINTYPE_ANY;
    }
}

Registrations::Registrations()
{
    present = this;
    EnterGeometryClasses(*this);
    EnterMaterialClasses(*this);
    EnterDocumentClasses(*this);
    EnterViewClasses(*this);
    EnterNodeClasses(*this);
}

Registrations::~Registrations()
{
    for (const std::unique_ptr<NodeClass>& nodeClass : classes) BaseBitmap::Free(nodeClass->icon);
    present = nullptr;
}

Registrations* Registrations::Current()
{
    if (!present && Application::running()) PartOf<Registrations>();
    return present;
}

void Registrations::end(Ending step)
{
    if (step != Ending::Registrations) return;
    plugins.Flush();
    entries.Flush();
    for (auto& [id, custom] : customData) DeleteObj(custom.type);
    customData.clear();
}

const NodeClass* Registrations::EnterClass(NodeClass nodeClass)
{
    const std::pair<NodeKind, Int32> key(nodeClass.kind, nodeClass.id);
    if (classesById.contains(key)) return nullptr;

    const PLUGINTYPE type = PluginTypeOf(nodeClass.kind);
    if (type != PLUGINTYPE_ANY && !EnterPlugin(type, nodeClass.id, nodeClass.name, nodeClass.info)) return nullptr;
    const NodeClass* entered = classes.emplace_back(std::make_unique<NodeClass>(std::move(nodeClass))).get();
    classesById.emplace(key, entered);
    return entered;
}

const NodeClass* Registrations::FindClass(NodeKind kind, Int32 id) const
{
    const auto found = classesById.find({kind, id});
    return found == classesById.end() ? nullptr : found->second;
}

const NodeClass* Registrations::FindClass(Int32 id) const
{
    // The map is in order of the kinds.
    const auto found = std::ranges::find(classesById, id, [](const auto& entry) { return entry.first.second; });
    return found == classesById.end() ? nullptr : found->second;
}

std::vector<const NodeClass*> Registrations::Classes(NodeKind kind) const
{
    std::vector<const NodeClass*> found;
    for (const std::unique_ptr<NodeClass>& nodeClass : classes) {
        if (nodeClass->kind == kind) found.push_back(nodeClass.get());
    }
    return found;
}

bool Registrations::EnterCustomData(const String& name, Int32 info, CustomDataTypeClass* type, Int32 diskLevel)
{
    if (!type) return false;
    const Int32 id = type->GetId();
    if (customData.contains(id) || !EnterPlugin(PLUGINTYPE_CUSTOMDATATYPE, id, name, info, type)) return false;
    customData.emplace(id, CustomDataClass{type, name, info, diskLevel});
    return true;
}

const CustomDataClass* Registrations::FindCustomData(Int32 id) const
{
    const auto found = customData.find(id);
    return found == customData.end() ? nullptr : &found->second;
}

const CustomDataClass* Registrations::FindCustomData(std::string_view keyword) const
{
    for (const auto& [id, custom] : customData) {
        const Char* symbol = custom.type->GetResourceSym();
        if (symbol && keyword == symbol) return &custom;
    }
    return nullptr;
}

PluginCore* Registrations::EnterPlugin(PLUGINTYPE type, Int32 id, const String& name, Int32 info, void* structure)
{
    if (FindPlugin(id, type)) return nullptr;
    auto* plugin = new PluginCore(pluginClass());
    plugin->id = id;
    plugin->type = type;
    plugin->name = name;
    plugin->info = info;
    plugin->file = module;
    plugin->structure = structure;
    plugins.InsertLast(*plugin);
    return plugin;
}

PluginCore* Registrations::FindPlugin(Int32 id, PLUGINTYPE type) const
{
    for (NodeCore* node = plugins.firstChild; node; node = node->next) {
        auto* plugin = static_cast<PluginCore*>(node);
        if (plugin->id == id && (type == PLUGINTYPE_ANY || plugin->type == type)) return plugin;
    }
    return nullptr;
}

bool Registrations::AddEntry(Int32 subId, REGISTRYTYPE mainId, void* record)
{
    if (FindEntry(subId, mainId)) return false;
    auto* entry = new EntryCore(entryClass());
    entry->subId = subId;
    entry->mainId = mainId;
    entry->record = record;
    entries.InsertLast(*entry);
    return true;
}

bool Registrations::RemoveEntry(Int32 subId, REGISTRYTYPE mainId)
{
    EntryCore* entry = FindEntry(subId, mainId);
    FreeNode(entry);
    return entry != nullptr;
}

EntryCore* Registrations::FindEntry(Int32 subId, REGISTRYTYPE mainId)
{
    for (NodeCore* node = entries.firstChild; node; node = node->next) {
        auto* entry = static_cast<EntryCore*>(node);
        if (entry->subId == subId && (mainId == REGISTRYTYPE_ANY || entry->mainId == mainId)) return entry;
    }
    return nullptr;
}

CustomDataTypeClass* FindCustomDataType(Int32 id)
{
    const Registrations* registry = Registrations::Current();
    const CustomDataClass* custom = registry ? registry->FindCustomData(id) : nullptr;
    return custom ? custom->type : nullptr;
}

Int32 CustomDataDiskLevel(Int32 id)
{
    const Registrations* registry = Registrations::Current();
    const CustomDataClass* custom = registry ? registry->FindCustomData(id) : nullptr;
    return custom ? custom->diskLevel : 0;
}

} // namespace host

using namespace host;

Bool RegisterObjectPlugin(Int32 id, const String& str, Int32 info, DataAllocator* g, const String& description,
                          BaseBitmap* icon, Int32 disklevel)
{
    Registrations* registry = Registrations::Current();
    if (!registry || !g || registry->FindClass(NodeKind::Object, id)) return false;

    NodeClass added{.id = id, .kind = NodeKind::Object, .make = MakeCore<ObjectCore>, .name = str, .info = info};
    const bool hasPolygons = info & OBJECT_POLYGONOBJECT;
    if (hasPolygons || (info & OBJECT_POINTOBJECT)) {
        const NodeClass* geometry = registry->FindClass(NodeKind::Object, Opolygon);
        if (!geometry) return false;
        added.make = geometry->make;
        added.bases = {Opoint};
        if (hasPolygons) added.bases.push_back(Opolygon);
    }
    added.description = description;
    added.diskLevel = disklevel;
    added.allocator = g;
    added.icon = icon ? icon->GetClone() : nullptr;
    if (!registry->EnterClass(std::move(added))) return false;
    if (description.Content()) RegisterDescription(id, description);
    return true;
}

Bool RegisterSceneHookPlugin(Int32 id, const String& str, Int32 info, DataAllocator* g, Int32 priority, Int32 disklevel,
                             void*)
{
    Registrations* registry = Registrations::Current();
    if (!registry || !g) return false;
    return registry->EnterClass({.id = id,
                                 .kind = NodeKind::SceneHook,
                                 .make = MakeCore<HookCore>,
                                 .name = str,
                                 .info = info,
                                 .diskLevel = disklevel,
                                 .allocator = g,
                                 .priority = priority}) != nullptr;
}

Bool RegisterCustomDataTypePlugin(const String& str, Int32 info, CustomDataTypeClass* dat, Int32 disclevel)
{
    Registrations* registry = Registrations::Current();
    return registry && registry->EnterCustomData(str, info, dat, disclevel);
}

// --- the list of plug-ins

BasePlugin* FindPlugin(Int32 id, PLUGINTYPE type)
{
    const Registrations* registry = Registrations::Current();
    return registry ? FacadeOf<BasePlugin>(registry->FindPlugin(id, type)) : nullptr;
}

BasePlugin* BasePlugin::GetNext()
{
    return FacadeOf<BasePlugin>(core->next);
}

BasePlugin* BasePlugin::GetPred()
{
    return FacadeOf<BasePlugin>(core->previous);
}

Int32 BasePlugin::GetID() const
{
    return static_cast<PluginCore*>(core)->id;
}

Int32 BasePlugin::GetInfo() const
{
    return static_cast<PluginCore*>(core)->info;
}

PLUGINTYPE BasePlugin::GetPluginType() const
{
    return static_cast<PluginCore*>(core)->type;
}

Filename BasePlugin::GetFilename()
{
    return static_cast<PluginCore*>(core)->file;
}

// --- records that plug-ins offer to each other

Bool GeRegistryAdd(Int32 sub_id, REGISTRYTYPE main_id, void* data)
{
    Registrations* registry = Registrations::Current();
    return registry && registry->AddEntry(sub_id, main_id, data);
}

Bool GeRegistryRemove(Int32 sub_id, REGISTRYTYPE main_id)
{
    Registrations* registry = Registrations::Current();
    return registry && registry->RemoveEntry(sub_id, main_id);
}

Registry* GeRegistryFind(Int32 sub_id, REGISTRYTYPE main_id)
{
    Registrations* registry = Registrations::Current();
    return registry ? FacadeOf<Registry>(registry->FindEntry(sub_id, main_id)) : nullptr;
}

Registry* Registry::GetNext()
{
    return FacadeOf<Registry>(core->next);
}

Registry* Registry::GetPred()
{
    return FacadeOf<Registry>(core->previous);
}

REGISTRYTYPE Registry::GetMainID()
{
    return static_cast<EntryCore*>(core)->mainId;
}

Int32 Registry::GetSubID()
{
    return static_cast<EntryCore*>(core)->subId;
}

void* Registry::GetData()
{
    return static_cast<EntryCore*>(core)->record;
}

Bool InstallLibrary(Int32 id, C4DLibrary* lib, Int32 version, Int32 size)
{
    Registrations* registry = Registrations::Current();
    if (!registry || !lib || !registry->AddEntry(id, REGISTRYTYPE_LIBRARY, lib)) return false;
    lib->version = version;
    lib->size = size;
    registry->EnterPlugin(PLUGINTYPE_LIBRARY, id, String(), 0, lib);
    return true;
}

C4DLibrary* CheckLib(Int32 id, Int offset, C4DLibrary** store)
{
    if (store && *store) return *store;
    Registry* found = GeRegistryFind(id, REGISTRYTYPE_LIBRARY);
    auto* library = found ? static_cast<C4DLibrary*>(found->GetData()) : nullptr;
    if (store) *store = library;
    return library && offset <= library->size ? library : nullptr;
}
