// What the host tells a plant: a scene was loaded or is to be saved, a parameter was set, files are collected.

#include "c4d_symbols.h"
#include "geometry/phong_tag.h"
#include "plant/plant_object.h"
#include "selection/models_being_read.h"
#include "support/c4d_message_handler.h"
#include "support/library_location.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/resources.h"
#include "support/text.h"

namespace {

// By the end of the name alone, and by the last suffix: what else may be wrong shows when the file is read.
Bool isAcceptable(const Filename& file)
{
    constexpr std::string_view kCompressed = "vdt.gz";
    const std::string path = ToUtf8(file);
    if (file.GetSuffix().ToLower() == "vdt") return true;
    return path.size() > kCompressed.size() && path.ends_with(kCompressed);
}

// Where the scene's own index tells more than the chosen name: nothing was chosen by name, or several have that name.
template <class Choice>
Bool indexDecides(const std::vector<Choice>& choices, Int32 index, const String& name, Bool wasNamed)
{
    if (index < 0 || index >= static_cast<Int32>(choices.size())) return false;
    return !wasNamed || choices[static_cast<size_t>(index)].name == name;
}

// Updates the choice of a scene that was just read. The two indices are those of the object.
void updateFromScene(VerdanthSelectionData& selection, BaseDocument* document, Int32 plant, Int32 qualifier)
{
    const Bool plantWasNamed = selection.plantName.Content();
    const Bool qualifierWasNamed = selection.qualifierName.Content();
    selection.Update(document);
    if (indexDecides(selection.plants, plant, selection.plantName, plantWasNamed)) {
        selection.SetPlantIndex(plant);
        selection.Update(document);
    }
    if (indexDecides(selection.qualifiers, qualifier, selection.qualifierName, qualifierWasNamed))
        selection.SetQualifierIndex(qualifier);
}

} // namespace

Bool BasePlantObject::Message(GeListNode* node, Int32 type, void* data)
{
    BaseObject& object = *static_cast<BaseObject*>(node);
    switch (type) {
    case MSG_MENUPREPARE: SetPhong(&object, 0); break;
    case MSG_MULTI_CLEARSUGGESTEDFOLDER: stripFolder(object); break;
    case MSG_DESCRIPTION_POSTSETPARAMETER:
        if (const auto* set = static_cast<DescriptionPostSetValue*>(data); set && set->descid)
            parameterSet(object, (*set->descid)[0].id);
        break;
    case MSG_MULTI_DOCUMENTIMPORTED:
        if (const auto* imported = static_cast<DocumentImported*>(data); imported && imported->gui_allowed)
            findMissingFile(object, imported->doc);
        break;
    case MSG_GETALLASSETS:
        if (auto* assets = static_cast<AssetData*>(data); assets && !(assets->flags & ASSETDATA_FLAG_NET))
            reportAssets(object, *assets);
        break;
    case MSG_DOCUMENTINFO:
        if (const auto* info = static_cast<DocumentInfoData*>(data)) documentInformation(object, *info);
        break;
    default: break;
    }
    return true;
}

void BasePlantObject::documentInformation(BaseObject& object, const DocumentInfoData& information)
{
    VerdanthSelectionData selection;
    BaseContainer* container = object.GetDataInstance();
    if (!container || !ReadSelection(object, selection)) return;
    switch (information.type) {
    case MSG_DOCUMENTINFO_TYPE_LOAD:
    case MSG_DOCUMENTINFO_TYPE_MERGE: reload(object, selection, information.doc); break;
    case MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE: WriteLegacyFields(*container, selection, information.doc); break;
    default: break;
    }
}

void BasePlantObject::findMissingFile(BaseObject& object, BaseDocument* document)
{
    VerdanthSelectionData selection;
    if (!ReadSelection(object, selection) || !selection.file.Content()) return;
    const Filename path = selection.ResolvePath(document, true);
    if (GeFExist(path)) return;

    const String question = LoadText(IDS_MISSING_MODEL, path.GetString());
    if (GeOutString(question, GEMB_YESNO | GEMB_ICONQUESTION) != GEMB_R_YES) return;
    Filename chosen = path;
    if (!chosen.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_LOAD, "Load")) return;

    if (isAcceptable(chosen)) {
        selection.file = chosen;
        selection.Update(document);
    } else {
        GeOutString(LoadText(IDS_NOT_A_MODEL, chosen.GetString()), GEMB_OK | GEMB_ICONEXCLAMATION);
        selection.file = Filename();
        selection.Update(nullptr);
    }
    WriteSelection(object, selection);
}

void BasePlantObject::parameterSet(BaseObject& object, Int32 id)
{
    VerdanthSelectionData selection;
    BaseContainer* container = object.GetDataInstance();
    const bool concernsSelection = id == PLANT_SELECTION || id == PLANT_VARIANT || id == PLANT_QUALIFIER;
    if (!concernsSelection || !container || !ReadSelection(object, selection)) return;

    if (id == PLANT_SELECTION) {
        if (!selection.file.Content() || !IsModelFile(selection.file)) return;
        C4dMessageHandler messages(GeGetCurrentThread());
        const std::string path = ModelPath(selection.ResolvePath(object.GetDocument(), true));
        model = ModelCache().acquire(path, messages, ToVariantIndex(selection.GetPlantIndex()));
        StoreIndex(*container, PLANT_VARIANT, selection.GetPlantIndex());
        StoreIndex(*container, PLANT_QUALIFIER, selection.GetQualifierIndex());
        return;
    }

    const Int32 index = container->GetInt32(id);
    if (index < 0) return;
    if (id == PLANT_VARIANT) {
        selection.SetPlantIndex(index);
        selection.Update(object.GetDocument()); // another variant has other qualifiers
    } else {
        selection.SetQualifierIndex(index);
    }
    WriteSelection(object, selection);
}

void BasePlantObject::reportAssets(BaseObject& object, AssetData& assets)
{
    VerdanthSelectionData selection;
    if (!ReadSelection(object, selection) || !selection.file.Content()) return;
    const Filename path = selection.ResolvePath(object.GetDocument(), true);
    assets.Add(path, nullptr, true);

    if (!model.model()) return;
    const vdt::MakeAbsolutePathMapper besideModel(vdt::DirectoryOfPath(ToUtf8(path)));
    for (const vdt::ModelVariant& variant : model.model()->variants) {
        if (variant.extref.empty()) continue;
        const bool isAbsolute = vdt::IsAbsolutePath(variant.extref);
        const Filename file(ToHostString(isAbsolute ? variant.extref : besideModel.map(variant.extref)));
        assets.Add(Filename(ToHostString(ModelPath(file))), nullptr, true);
    }
}

void BasePlantObject::reload(BaseObject& object, const VerdanthSelectionData& asRead, BaseDocument* document)
{
    VerdanthSelectionData selection = asRead;

    // Read here first, so that what the reader has to say reaches the console. The object's old handle goes when the
    // new one is there.
    C4dMessageHandler messages(GeGetCurrentThread());
    const Filename path = selection.ResolvePath(document, true);
    const std::string key = path.Content() && GeFExist(path) ? ModelPath(path) : std::string();
    const vdt::ModelHandle held = ModelCache().acquire(key, messages, ToVariantIndex(selection.GetPlantIndex()));
    const BaseContainer& container = *object.GetDataInstance();
    updateFromScene(selection, document, container.GetInt32(PLANT_VARIANT), container.GetInt32(PLANT_QUALIFIER));
    model = held.model() ? ModelCache().acquire(key, messages, ToVariantIndex(selection.GetPlantIndex())) : held;
    ModelsBeingRead::Release(asRead);
    WriteSelection(object, selection);
}

void BasePlantObject::stripFolder(BaseObject& object)
{
    VerdanthSelectionData selection;
    if (!ReadSelection(object, selection) || !selection.file.Content()) return;
    BaseDocument* document = object.GetDocument();
    selection.file = selection.ResolvePath(document, true).GetFile();
    selection.Update(document);
    WriteSelection(object, selection);
}
