#include "host/renderer_materials.h"

#include "console/console.h"
#include "console/json_text.h"
#include "core/stand_in_renderers.h"
#include "host/host_session.h"
#include "host/material_facts.h"
#include "host/plant_object.h"
#include "oplant.h"
#include "placing/placing_library.h"

#include <algorithm>

namespace verdanth {
namespace {

// Null if the name is empty or the host cannot make one.
LayerObject* layerOf(BaseDocument& document, const std::string& name)
{
    if (name.empty()) return nullptr;
    GeListHead* layers = document.GetLayerObjectRoot();
    const String wanted = HostText(name);
    for (auto* layer = static_cast<LayerObject*>(layers->GetFirst()); layer; layer = layer->GetNext())
        if (layer->GetName() == wanted) return layer;
    LayerObject* layer = LayerObject::Alloc();
    if (!layer) return nullptr;
    layer->SetName(wanted);
    layers->InsertLast(layer);
    return layer;
}

// A plant's name and the parameters that say which of its model's looks it has: a new model brings its own.
class KeptLook {
public:
    explicit KeptLook(BaseObject& kept) : plant(&kept), name(kept.GetName())
    {
        plant->GetParameter(DescID(PLANT_VARIANT), variant, DESCFLAGS_GET_0);
        plant->GetParameter(DescID(PLANT_QUALIFIER), qualifier, DESCFLAGS_GET_0);
    }
    KeptLook(const KeptLook&) = delete;
    KeptLook& operator=(const KeptLook&) = delete;
    ~KeptLook()
    {
        plant->SetName(name);
        plant->SetParameter(DescID(PLANT_VARIANT), variant, DESCFLAGS_SET_0);
        plant->SetParameter(DescID(PLANT_QUALIFIER), qualifier, DESCFLAGS_SET_0);
    }

private:
    BaseObject* plant;
    String name;
    GeData variant, qualifier;
};

// The module applies models to what is active.
bool applyModel(BaseDocument& document, BaseObject& plant, const std::string& file, const MaterialChoice& choice)
{
    const auto* library =
        static_cast<PlantPlacingLibrary*>(CheckLib(kPlantPlacingLibraryId, sizeof(PlantPlacingLibrary), nullptr));
    if (!library) return false;

    const KeptLook look(plant);
    document.SetActiveObject(&plant);
    const bool applied =
        library->ApplyModelToSelection(&document, Filename(HostText(file)), choice.renderer,
                                       static_cast<Int32>(choice.quality), layerOf(document, choice.layer));
    document.SetActiveObject(nullptr);
    return applied;
}

} // namespace

bool AddRendererMaterials(BaseDocument& document, BaseObject& plant, const std::string& file, const vdt::Model& model,
                          const MaterialChoice& choice, Console& console)
{
    const std::string name(kRendererNames[choice.renderer]);
    const host::StandInRenderer* renderer = host::FindStandInRenderer(name); // none for the scene's own
    const bool isThere = !renderer || host::UseRenderer(document, *renderer);
    if (isThere && applyModel(document, plant, file, choice) && (model.materials.empty() || plant.GetTag(Ttexture)))
        return true;
    console.error("the module makes no materials for the renderer " + name);
    return false;
}

nlohmann::ordered_json TellRenderer(const std::string& file, const vdt::Model& model, const MaterialChoice& choice,
                                    Console& console)
{
    const OwnDocument document;
    BaseObject* plant = document ? AddPlant(*document.get(), {.file = file}, 1) : nullptr;
    if (!plant) {
        console.error("the module makes no plant object");
        return nullptr;
    }
    if (!AddRendererMaterials(*document.get(), *plant, file, model, choice, console)) return nullptr;
    return {{"renderer", kRendererNames[std::max(choice.renderer, kStandardRenderer)]},
            {"materials", DescribeMaterials(*document.get(), *plant)}};
}

bool AddRendererExtras(const std::string& file, const std::string& libraryFolder, const vdt::Model& model,
                       const MaterialChoice& choice, Scene& scene, Console& console)
{
    HostSession session;
    if (!session.start(libraryFolder, console)) return false;
    const nlohmann::ordered_json told = TellRenderer(file, model, choice, console);
    if (told.is_null()) return false;
    for (SceneMaterial& material : scene.materials) {
        nlohmann::ordered_json own = {{"name", told["renderer"]}, {"materials", nlohmann::ordered_json::array()}};
        for (const auto& each : told["materials"])
            if (each["matid"] == material.matid) own["materials"].push_back(each);
        if (!own["materials"].empty()) material.extras = JsonText(own, kOneLine);
    }
    return true;
}

} // namespace verdanth
