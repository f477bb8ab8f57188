#include "placing/placing.h"

#include "c4d_symbols.h"
#include "materials/apply_materials.h"
#include "materials/material_factory.h"
#include "materials/material_twins.h"
#include "materials/renderer.h"
#include "plant/plant_object.h"
#include "plant/plant_units.h"
#include "support/c4d_message_handler.h"
#include "support/library_location.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/plugin_ids.h"
#include "support/resources.h"
#include "support/text.h"

#include <algorithm>

namespace {

std::vector<BaseObject*> activeObjects(const BaseDocument& document)
{
    const AutoAlloc<AtomArray> active;
    std::vector<BaseObject*> objects;
    if (!active) return objects;
    document.GetActiveObjects(*active, GETACTIVEOBJECTFLAGS_CHILDREN);
    for (Int32 i = 0; i < active->GetCount(); ++i) objects.push_back(static_cast<BaseObject*>(active->GetIndex(i)));
    return objects;
}

Bool arePlants(const std::vector<BaseObject*>& objects)
{
    const auto isPlant = [](const BaseObject* object) { return object->GetType() == kPlantObjectId; };
    return !objects.empty() && std::ranges::all_of(objects, isPlant);
}

// A list of names as the questions show it.
String asLine(const BaseList2D& node)
{
    return String("\n") + node.GetName();
}

Bool isConfirmed(Int32 question, const String& names)
{
    return GeOutString(LoadText(question, names), GEMB_YESNO | GEMB_ICONQUESTION) == GEMB_R_YES;
}

// Asks what there is to ask. What is not taken over stays in `entries`.
void giveMaterials(BaseDocument& document, const std::vector<BaseObject*>& plants, MaterialEntries& entries,
                   LayerObject* layer)
{
    std::vector<BaseMaterial*> twins;
    for (const MaterialEntry& entry : entries) twins.push_back(findTwin(document, entry));

    String tagged;
    Bool hasUntagged = false;
    for (BaseObject* plant : plants) {
        if (plant->GetTag(Ttexture))
            tagged += asLine(*plant);
        else
            hasUntagged = true;
    }
    const Bool replaceTags = !tagged.Content() || isConfirmed(IDS_REPLACE_TEXTURE_TAGS, tagged);
    if (!replaceTags && !hasUntagged) return;

    String known;
    for (const BaseMaterial* twin : twins)
        if (twin) known += asLine(*twin);
    if (!known.Content() || !isConfirmed(IDS_REUSE_MATERIALS, known)) twins.clear();

    const MaterialUse use{.objects = plants, .existing = twins, .overwrite = replaceTags, .layer = layer};
    for (BaseMaterial* material : applyMaterials(document, entries, use)) document.AddUndo(UNDOTYPE_NEW, material);
}

} // namespace

Bool AllActiveObjectsArePlants(BaseDocument* document)
{
    if (!document) document = GetActiveDocument();
    return document && arePlants(activeObjects(*document));
}

Bool SetModelOnObject(BaseObject* object, const Filename& file, const vdt::Model& model)
{
    VerdanthSelectionData selection;
    if (!PlantOf(object) || !GeFExist(file)) return false;
    const String label = GetLocalizedText(model.labels);
    object->SetName(label.Content() ? label : ToHostString(model.name));
    if (!ReadSelection(*object, selection)) return false;
    selection.file = file;
    selection.Update(object->GetDocument());
    return WriteSelection(*object, selection);
}

Bool ApplyModelToSelection(BaseDocument* document, const Filename& file, Int32 kind, Int32 option, LayerObject* layer)
{
    if (!document) return false;
    const std::vector<BaseObject*> plants = activeObjects(*document);
    if (!arePlants(plants) || !GeFExist(file)) return false;
    C4dMessageHandler messages(GeGetCurrentThread());
    const vdt::ModelHandle handle = ModelCache().acquire(ModelPath(file), messages, vdt::kNone);
    const vdt::Model* model = handle.model();
    if (!model) return false;

    // Plants that get a model together share its materials, so the first one's unit is taken for all.
    std::vector<vdt::MaterialData> materials = model->materials;
    const Float scale = ObjectScale(*plants.front(), model);
    for (vdt::MaterialData& material : materials) material.displacementHeight *= scale;

    MaterialEntries entries;
    const Bool isAutomatic = kind == static_cast<Int32>(Renderer::Automatic);
    const Int32 renderer = isAutomatic ? detectRenderer(document) : kind;
    const Bool converted =
        convertMaterials(materials, entries, DocumentColourSpace(document), renderer, option, 0, document);

    for (BaseObject* plant : plants) {
        document->AddUndo(UNDOTYPE_CHANGE, plant);
        SetModelOnObject(plant, file, *model);
    }
    if (converted) giveMaterials(*document, plants, entries, layer);
    return true;
}
