#include "core/document.h"

#include "core/application.h"
#include "core/document_messages.h"
#include "core/node_class.h"
#include "customgui_unitscale.h"
#include "ddoc.h"
#include "drendersettings.h"

#include <algorithm>
#include <string>

namespace host {
namespace {

constexpr Int32 kFramesPerSecond = 30;
constexpr Float kDefaultGrey = 0.8;

void fillSettings(BaseContainer& settings)
{
    const AutoAlloc<UnitScaleData> unit;
    settings.SetData(DOCUMENT_DOCUNIT, GeData(CUSTOMDATATYPE_UNITSCALE, *unit));
    settings.SetBool(DOCUMENT_LINEARWORKFLOW, true);
    settings.SetInt32(DOCUMENT_COLORPROFILE, DOCUMENT_COLORPROFILE_SRGB);
    settings.SetVector(DOCUMENT_DEFAULTMATERIAL_COLOR, Vector(kDefaultGrey));
}

void addRenderSetting(DocumentCore& document)
{
    NodeCore* setting = AllocNode(NodeKind::RenderData, Rbase);
    if (!setting) return;
    setting->container.SetInt32(RDATA_RENDERENGINE, RDATA_RENDERENGINE_STANDARD);
    setting->bits |= BIT_ACTIVERENDERDATA;
    document.renderSettings.InsertLast(*setting);
}

void addViews(DocumentCore& document)
{
    for (const Int32 projection : {Pperspective, Ptop, Pright, Pfront}) {
        NodeCore* view = AllocNode(NodeKind::View, kViewType);
        if (!view) return; // a host that draws nothing
        view->container.SetInt32(kViewProjection, projection);
        document.views.InsertLast(*view);
    }
}

void addHooks(DocumentCore& document)
{
    for (const NodeClass* hookClass : PartOf<Registrations>().Classes(NodeKind::SceneHook)) {
        if (NodeCore* hook = AllocNode(NodeKind::SceneHook, hookClass->id)) document.hooks.InsertLast(*hook);
    }
}

// What a new document holds.
void prepareDocument(NodeCore& node)
{
    DocumentCore& document = static_cast<DocumentCore&>(node);
    fillSettings(document.container);
    addRenderSetting(document);
    addViews(document);
    addHooks(document);
}

// The name without " .7" at its end.
String withoutNumber(const String& name)
{
    Int32 dot = 0;
    if (!name.FindLast(String(" ."), &dot) || dot + 2 >= name.GetLength()) return name;
    for (Int i = dot + 2; i < name.GetLength(); ++i) {
        if (name[i] < '0' || name[i] > '9') return name;
    }
    return name.Left(dot);
}

template <class Use> void forEachBelow(const NodeCore& node, const Use& use)
{
    for (NodeCore* child = node.firstChild; child; child = child->next) {
        use(*child);
        forEachBelow(*child, use);
    }
}

NodeCore* searchName(const NodeCore& below, const String& name)
{
    for (NodeCore* child = below.firstChild; child; child = child->next) {
        if (child->name == name) return child;
        if (NodeCore* found = searchName(*child, name)) return found;
    }
    return nullptr;
}

} // namespace

DocumentCore::DocumentCore(const NodeClass& usedClass) : NodeCore(usedClass)
{
    MakeFacade<BaseDocument>();
}

std::vector<ListCore*> DocumentCore::Branches() const
{
    std::vector<ListCore*> branches = {&layers, &materials, &objects, &renderSettings, &hooks, &views};
    const std::vector<ListCore*> inherited = NodeCore::Branches();
    branches.insert(branches.end(), inherited.begin(), inherited.end());
    return branches;
}

bool DocumentCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    DocumentCore& document = static_cast<DocumentCore&>(copy);
    document.path = path;
    document.fileName = fileName;
    document.time = time;
    return NodeCore::CopyBodyTo(copy, flags, translation);
}

bool DocumentCore::WriteBody(HyperFile& file) const
{
    return NodeCore::WriteBody(file) && file.WriteTime(time);
}

bool DocumentCore::ReadBody(HyperFile& file, Int32 level)
{
    return NodeCore::ReadBody(file, level) && file.ReadTime(&time);
}

void DocumentCore::FreeCaches()
{
    undo.flush();
    NodeCore::FreeCaches();
}

UniqueNames::UniqueNames(const ListCore& list, const NodeCore* newcomer)
{
    forEachBelow(list, [&](const NodeCore& other) {
        if (!newcomer || !newcomer->Contains(other)) taken.insert(other.name);
    });
}

void UniqueNames::Give(NodeCore& node)
{
    giveOne(node);
    forEachBelow(node, [this](NodeCore& child) { giveOne(child); });
}

void UniqueNames::giveOne(NodeCore& node)
{
    if (taken.insert(node.name).second) return;
    const String stem = withoutNumber(node.name) + String(" .");
    for (Int32 number = 1;; ++number) {
        const String tried = stem + String::IntToString(number);
        if (!taken.insert(tried).second) continue;
        node.name = tried;
        node.Raise(DIRTYFLAGS_DATA);
        return;
    }
}

void TellInsertion(NodeCore& node)
{
    DocumentCore* document = node.Document();
    if (!document) return;
    document->changed = true;

    Int32 type = MSG_DOCUMENTINFO_TYPE_OBJECT_INSERT;
    if (node.Kind() == NodeKind::Tag) type = MSG_DOCUMENTINFO_TYPE_TAG_INSERT;
    if (node.Kind() == NodeKind::Material) type = MSG_DOCUMENTINFO_TYPE_MATERIAL_INSERT;
    DocumentInfoData info = DocumentInfo(*document, type);
    info.bl = node.As<BaseList2D>();
    SendToHooks(*document, MSG_DOCUMENTINFO, &info);
}

BaseDocument* CloneDocument(BaseDocument& document)
{
    if (GeIsMainThread()) StopAllThreads();
    AutoAlloc<AliasTrans> links;
    if (!links || !links->Init(&document)) return nullptr;
    NodeCore* clone = CloneNode(*CoreOf(&document), COPYFLAGS_DOCUMENT, links);
    if (!clone) return nullptr;
    links->Translate(true);
    SendToNodes(static_cast<DocumentCore&>(*clone), MSG_MULTI_DOCUMENTCLONED, nullptr);
    return clone->As<BaseDocument>();
}

void EnterDocumentClasses(Registrations& registry)
{
    NodeClass document;
    document.id = Tbasedocument;
    document.kind = NodeKind::Document;
    document.make = MakeCore<DocumentCore>;
    document.prepare = prepareDocument;
    registry.EnterClass(document);
}

} // namespace host

using host::CoreOf;
using host::DocumentCore;
using host::FacadeOf;
using host::NodeCore;

BaseDocument* BaseDocument::Alloc()
{
    return FacadeOf<BaseDocument>(host::AllocNode(host::NodeKind::Document, Tbasedocument));
}

void BaseDocument::Free(BaseDocument*& document)
{
    if (document && CoreOf(document)->IsLinked()) return KillDocument(document); // it is open
    host::FreeNode(CoreOf(document));
    document = nullptr;
}

BaseDocument* BaseDocument::GetNext()
{
    return FacadeOf<BaseDocument>(core->next);
}

Filename BaseDocument::GetDocumentName()
{
    return CoreOf(this)->fileName;
}

void BaseDocument::SetDocumentName(const Filename& name)
{
    CoreOf(this)->fileName = name;
}

Filename BaseDocument::GetDocumentPath()
{
    return CoreOf(this)->path;
}

void BaseDocument::SetDocumentPath(const Filename& path)
{
    CoreOf(this)->path = path;
}

BaseObject* BaseDocument::GetFirstObject()
{
    return FacadeOf<BaseObject>(CoreOf(this)->objects.firstChild);
}

BaseMaterial* BaseDocument::GetFirstMaterial()
{
    return FacadeOf<BaseMaterial>(CoreOf(this)->materials.firstChild);
}

GeListHead* BaseDocument::GetLayerObjectRoot()
{
    return CoreOf(this)->layers.As<GeListHead>();
}

RenderData* BaseDocument::GetFirstRenderData()
{
    return FacadeOf<RenderData>(CoreOf(this)->renderSettings.firstChild);
}

RenderData* BaseDocument::GetActiveRenderData()
{
    NodeCore* active = CoreOf(this)->renderSettings.firstChild;
    host::forEachBelow(CoreOf(this)->renderSettings, [&](NodeCore& setting) {
        if (setting.bits & BIT_ACTIVERENDERDATA) active = &setting;
    });
    return FacadeOf<RenderData>(active);
}

void BaseDocument::SetActiveRenderData(RenderData* data)
{
    if (!data || CoreOf(data)->Document() != core) return;
    host::forEachBelow(CoreOf(this)->renderSettings, [](NodeCore& setting) { setting.bits &= ~BIT_ACTIVERENDERDATA; });
    CoreOf(data)->bits |= BIT_ACTIVERENDERDATA;
}

namespace {

// Into `list` of the document, or below `parent`; first without a predecessor. False if it cannot stand there.
bool insert(host::ListCore& list, NodeCore* node, NodeCore* parent, NodeCore* predecessor)
{
    if (!node || node == predecessor || (parent && node->Contains(*parent))) return false;
    if (predecessor && (!predecessor->IsLinked() || node->Contains(*predecessor))) predecessor = nullptr;
    node->Unlink();
    if (predecessor)
        predecessor->InsertBehind(*node);
    else
        (parent ? *parent : list).InsertChild(*node, nullptr);
    return true;
}

} // namespace

void BaseDocument::InsertRenderData(RenderData* data, RenderData* parent, RenderData* pred)
{
    insert(CoreOf(this)->renderSettings, CoreOf(data), CoreOf(parent), CoreOf(pred));
}

BaseSceneHook* BaseDocument::FindSceneHook(Int32 id) const
{
    for (NodeCore* hook = CoreOf(this)->hooks.firstChild; hook; hook = hook->next) {
        if (hook->Type() == id) return hook->As<BaseSceneHook>();
    }
    return nullptr;
}

void BaseDocument::InsertObject(BaseObject* object, BaseObject* parent, BaseObject* pred, Bool checknames)
{
    if (!insert(CoreOf(this)->objects, CoreOf(object), CoreOf(parent), CoreOf(pred))) return;
    if (checknames) host::UniqueNames(CoreOf(this)->objects, CoreOf(object)).Give(*CoreOf(object));
    host::TellInsertion(*CoreOf(object));
}

void BaseDocument::InsertMaterial(BaseMaterial* material, BaseMaterial* pred, Bool checknames)
{
    if (!insert(CoreOf(this)->materials, CoreOf(material), nullptr, CoreOf(pred))) return;
    if (checknames) host::UniqueNames(CoreOf(this)->materials, CoreOf(material)).Give(*CoreOf(material));
    host::TellInsertion(*CoreOf(material));
}

BaseObject* BaseDocument::SearchObject(const String& name)
{
    return FacadeOf<BaseObject>(host::searchName(CoreOf(this)->objects, name));
}

BaseMaterial* BaseDocument::SearchMaterial(const String& name)
{
    return FacadeOf<BaseMaterial>(host::searchName(CoreOf(this)->materials, name));
}

Bool BaseDocument::StartUndo()
{
    CoreOf(this)->undo.open();
    return true;
}

Bool BaseDocument::EndUndo()
{
    return CoreOf(this)->undo.close();
}

Bool BaseDocument::AddUndo(UNDOTYPE type, void* data)
{
    return data && GeIsMainThread() && CoreOf(this)->undo.add(type, *CoreOf(static_cast<BaseList2D*>(data)));
}

Bool BaseDocument::DoUndo(Bool multiple)
{
    bool any = CoreOf(this)->undo.undo();
    while (multiple && any && CoreOf(this)->undo.undo()) {
    }
    return any;
}

Bool BaseDocument::DoRedo()
{
    return CoreOf(this)->undo.redo();
}

void BaseDocument::FlushUndoBuffer()
{
    CoreOf(this)->undo.flush();
}

BaseContainer* BaseDocument::GetSettingsInstance(Int32 type)
{
    return type == DOCUMENTSETTINGS_DOCUMENT ? &core->container : nullptr;
}

BaseDraw* BaseDocument::GetActiveBaseDraw()
{
    return GetBaseDraw(0);
}

BaseDraw* BaseDocument::GetBaseDraw(Int32 num)
{
    NodeCore* view = num < 0 ? nullptr : CoreOf(this)->views.firstChild;
    while (view && num-- > 0) view = view->next;
    return FacadeOf<BaseDraw>(view);
}

Int32 BaseDocument::GetBaseDrawCount()
{
    Int32 count = 0;
    for (const NodeCore* view = CoreOf(this)->views.firstChild; view; view = view->next) ++count;
    return count;
}

BaseTime BaseDocument::GetTime()
{
    return CoreOf(this)->time;
}

void BaseDocument::SetTime(const BaseTime& time)
{
    CoreOf(this)->time = time;
}

Bool BaseDocument::GetChanged()
{
    return CoreOf(this)->changed;
}

void BaseDocument::SetChanged()
{
    CoreOf(this)->changed = true;
}
