// Scenes from and to disk, with all that the nodes are told on the way.
#include "core/application.h"
#include "core/assets.h"
#include "core/disk_file.h"
#include "core/document_messages.h"
#include "core/documents.h"
#include "core/native_path.h"
#include "core/scene_file.h"
#include "core/string_access.h"

#include <algorithm>
#include <map>
#include <system_error>

namespace host {
namespace {

// The folder of a scene file. A bare name means the working folder, but "no folder" means "never saved".
Filename folderOf(const Filename& name)
{
    const Filename folder = name.GetDirectory();
    return folder.Content() ? folder : Filename(TextOf(std::filesystem::current_path().string()));
}

void nameAfter(DocumentCore& document, const Filename& name)
{
    document.path = folderOf(name);
    document.fileName = name.GetFile();
}

// A scene as it stands in the file, with its path set; null on failure.
DocumentCore* readScene(const Filename& name, SCENEFILTER flags)
{
    NodeCore* made = AllocNode(NodeKind::Document, Tbasedocument);
    if (!made) return nullptr;
    DocumentCore& document = static_cast<DocumentCore&>(*made);
    std::string fault;
    const bool read = ReadScene(FilePath(name), document, fault);
    if (!fault.empty()) Application::current().print(fault);
    if (!read) {
        FreeNode(made);
        return nullptr;
    }
    if (!(flags & SCENEFILTER_OBJECTS)) document.objects.Flush();
    if (!(flags & SCENEFILTER_MATERIALS)) document.materials.Flush();
    nameAfter(document, name);
    document.changed = false;
    return &document;
}

void tellImported(DocumentCore& document, bool mayAsk)
{
    DocumentImported imported;
    imported.doc = document.As<BaseDocument>();
    imported.c4dversion = GetC4DVersion();
    imported.fileformat = kSceneFormat;
    imported.gui_allowed = mayAsk;
    SendToNodes(document, MSG_MULTI_DOCUMENTIMPORTED, &imported);
}

bool mayAsk(SCENEFILTER flags)
{
    return HasUserInterface() && (flags & SCENEFILTER_DIALOGSALLOWED);
}

// Moves the nodes of a list to the front of another, in their order.
void moveList(ListCore& from, ListCore& to, bool undo)
{
    UniqueNames names(to);
    NodeCore* last = nullptr;
    while (NodeCore* node = from.firstChild) {
        VisitBelow(*node, [](NodeCore& each) { each.bits &= ~BIT_ACTIVE; });
        node->Unlink();
        names.Give(*node);
        to.InsertChild(*node, last);
        if (undo) to.Document()->undo.add(UNDOTYPE_NEW, *node);
        last = node;
    }
}

MergeAnswer askBeforeMerge(DocumentCore& document, const Filename& name)
{
    MergeAnswer answer = MergeAnswer::Merge;
    DocumentInfoData before = DocumentInfo(document, MSG_DOCUMENTINFO_TYPE_BEFOREMERGE);
    before.filename = name;
    before.data = &answer;
    SendDocumentInfo(document, before);
    return answer;
}

// Where the files of a project go. Two files cannot take one place, unless they are alike.
class ProjectFiles {
public:
    ProjectFiles(DocumentCore& saved, const Filename& projectFolder, ProjectReport& told)
        : document(saved),
          folder(projectFolder),
          report(told)
    {
    }

    void copy(const Filename& file, const Filename& oldPath)
    {
        Filename found;
        if (!GenerateTexturePath(oldPath, file, Filename(), &found)) {
            report.missing.push_back(file);
            return;
        }
        const Filename place = IsPicture(file) ? folder + Filename("tex") + found.GetFile() : folder + found.GetFile();
        if (!put(FilePath(found), FilePath(place))) {
            report.failed.push_back(file);
            return;
        }
        report.copied.push_back(place);
        DocumentInfoData info = DocumentInfo(document, MSG_DOCUMENTINFO_TYPE_MAKEPROJECT);
        info.filename = place;
        SendToHooks(document, MSG_DOCUMENTINFO, &info);
    }

private:
    bool put(const std::filesystem::path& source, const std::filesystem::path& place)
    {
        const auto [taken, fresh] = sourceOfPlace.emplace(place, source);
        std::error_code ignored;
        if (std::filesystem::equivalent(source, place, ignored)) return true;
        const std::optional<std::vector<uint8_t>> bytes = LoadFile(source);
        if (!bytes) return false;
        if (!fresh) return taken->second == source || LoadFile(place) == bytes;
        std::filesystem::create_directories(place.parent_path(), ignored);
        return SaveFile(place, *bytes);
    }

    DocumentCore& document;
    const Filename& folder;
    ProjectReport& report;
    std::map<std::filesystem::path, std::filesystem::path> sourceOfPlace;
};

} // namespace

BaseDocument* ReadDocument(const Filename& name, SCENEFILTER flags)
{
    if (GeIsMainThread()) StopAllThreads();
    DocumentCore* document = readScene(name, flags);
    if (!document) return nullptr;

    tellImported(*document, mayAsk(flags));
    DocumentInfoData info = DocumentInfo(*document, MSG_DOCUMENTINFO_TYPE_LOAD);
    info.filename = name;
    info.gui_allowed = mayAsk(flags);
    SendDocumentInfo(*document, info);
    return document->As<BaseDocument>();
}

BaseDocument* OpenDocument(const Filename& name)
{
    StopAllThreads();
    BaseDocument* document = ReadDocument(name, SCENEFILTER_OBJECTS | SCENEFILTER_MATERIALS |
                                                    SCENEFILTER_DIALOGSALLOWED | SCENEFILTER_PROGRESSALLOWED);
    if (!document) return nullptr;
    InsertBaseDocument(document);
    SetActiveDocument(document);
    EventAdd();
    return document;
}

bool MergeScene(BaseDocument& document, const Filename& name, SCENEFILTER flags)
{
    StopAllThreads();
    DocumentCore& target = *CoreOf(&document);
    switch (askBeforeMerge(target, name)) {
    case MergeAnswer::Cancel: return false;
    case MergeAnswer::NewScene: return OpenDocument(name) != nullptr;
    default: break;
    }

    DocumentCore* source = readScene(name, flags);
    if (!source) return false;
    tellImported(*source, mayAsk(flags));
    const bool undo = !(flags & SCENEFILTER_NOUNDO);
    if (undo) target.undo.open();
    moveList(source->layers, target.layers, undo);
    moveList(source->materials, target.materials, undo);
    moveList(source->objects, target.objects, undo);
    if (undo) target.undo.close();
    FreeNode(source);
    target.changed = true;

    DocumentInfoData info = DocumentInfo(target, MSG_DOCUMENTINFO_TYPE_MERGE);
    info.filename = name;
    info.gui_allowed = mayAsk(flags);
    SendDocumentInfo(target, info);
    EventAdd();
    return true;
}

bool SaveScene(BaseDocument& document, const Filename& name)
{
    StopAllThreads();
    DocumentCore& core = *CoreOf(&document);
    const bool changed = core.changed;
    DocumentInfoData info = DocumentInfo(core, MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE);
    info.filename = name;
    SendDocumentInfo(core, info);
    core.changed = changed; // what nodes write down for the file is no edit

    std::string fault;
    if (!WriteScene(core, FilePath(name), fault)) {
        Application::current().print(fault);
        return false;
    }
    nameAfter(core, name);
    info.type = MSG_DOCUMENTINFO_TYPE_SAVE_AFTER;
    SendDocumentInfo(core, info);
    core.changed = false;
    return true;
}

bool SaveProject(BaseDocument& document, const Filename& name, ProjectReport& report)
{
    StopAllThreads();
    DocumentCore& core = *CoreOf(&document);
    DocumentInfoData info = DocumentInfo(core, MSG_DOCUMENTINFO_TYPE_SAVEPROJECT_BEFORE);
    info.filename = name;
    SendDocumentInfo(core, info);

    const Filename folder = folderOf(name);
    std::error_code ignored;
    std::filesystem::create_directories(FilePath(folder), ignored);
    if (!GeFExist(folder, true)) {
        Application::current().print(Utf8Of(folder.GetString()) + ": the folder cannot be made");
        return false;
    }

    // Nodes look their bare names up at once, so the copies stand in the new folder before they strip them.
    const std::vector<RootTextureString::Asset> assets = CollectAssets(document, ASSETDATA_FLAG_0);
    const Filename oldPath = core.path;
    core.path = folder;
    ProjectFiles files(core, folder, report);
    for (const RootTextureString::Asset& asset : assets) files.copy(asset.file, oldPath);
    SendToNodes(core, MSG_MULTI_CLEARSUGGESTEDFOLDER, nullptr);
    core.changed = true;

    if (!SaveScene(document, name)) return false;
    info.type = MSG_DOCUMENTINFO_TYPE_SAVEPROJECT_AFTER;
    SendDocumentInfo(core, info);
    core.changed = false;
    return true;
}

} // namespace host

BaseDocument* LoadDocument(const Filename& name, SCENEFILTER loadflags, BaseThread*)
{
    return host::ReadDocument(name, loadflags);
}

Bool SaveDocument(BaseDocument* document, const Filename& name, Int32, Int32)
{
    return document && host::SaveScene(*document, name);
}

Bool MergeDocument(BaseDocument* document, const Filename& name, SCENEFILTER loadflags, BaseThread*)
{
    return document && host::MergeScene(*document, name, loadflags);
}
