#include "plant/plant_object.h"

#include "selection/models_being_read.h"
#include "support/c4d_message_handler.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/plugin_ids.h"

namespace {

BaseObject& objectOf(GeListNode* node)
{
    return *static_cast<BaseObject*>(node);
}

// The list of a cycle parameter's entries, emptied; null if the description does not have the parameter.
BaseContainer* emptiedCycle(Description& description, Int32 parameter)
{
    BaseContainer* item = description.GetParameterI(DescLevel(parameter, DTYPE_LONG, 0), nullptr);
    if (!item) return nullptr;
    item->SetContainer(DESC_CYCLE, BaseContainer());
    return item->GetContainerInstance(DESC_CYCLE);
}

void fillVariants(Description& description, const vdt::Model& model)
{
    BaseContainer* cycle = emptiedCycle(description, PLANT_VARIANT);
    if (!cycle) return;
    Int32 index = 0;
    for (const vdt::ModelVariant& variant : model.variants) {
        cycle->SetString(index, VariantLabel(variant, index));
        ++index;
    }
}

void fillQualifiers(Description& description, const vdt::ModelHandle& model)
{
    BaseContainer* cycle = emptiedCycle(description, PLANT_QUALIFIER);
    LoadMissingQualifiers(model);
    vdt::NullMessageHandler silent;
    const vdt::ModelVariant* variant = model.variantData(silent, false);
    if (!cycle || !variant) return;
    Int32 index = 0;
    for (const vdt::Qualifier& qualifier : variant->qualifiers) cycle->SetString(index++, QualifierLabel(qualifier));
}

PlantState stateOf(const BaseContainer& container, const vdt::ModelHandle& model)
{
    vdt::NullMessageHandler silent;
    const vdt::ModelVariant* variant = model.variantData(silent, false);
    return {.hasVariants = model.model() && !model.model()->variants.empty(),
            .hasQualifiers = variant && !variant->qualifiers.empty(),
            .proxyOnly = container.GetInt32(PLANT_PROXY_ONLY) == PLANT_PROXY_ONLY_ON,
            .limitLevel = container.GetBool(PLANT_LIMIT_LEVEL) != 0,
            .limitRadius = container.GetBool(PLANT_LIMIT_RADIUS) != 0,
            .pointCloud = container.GetInt32(PLANT_DISPLAY_MODE) == PLANT_DISPLAY_MODE_CLOUD,
            .documentUnits = container.GetBool(PLANT_USE_DOCUMENT_UNITS) != 0};
}

// Scenes of the first version have a file and two indices, no selection. What cannot be told without the document
// is told once the scene has been read.
void makeSelection(BaseContainer& container)
{
    VerdanthSelectionData selection;
    vdt::ModelHandle held; // so that the file is read once
    selection.file = container.GetFilename(PLANT_LEGACY_FILE);
    selection.Update(nullptr, &held);
    const Int32 variant = container.GetInt32(PLANT_VARIANT);
    const Int32 qualifier = container.GetInt32(PLANT_QUALIFIER);
    if (variant >= 0) selection.SetPlantIndex(variant);
    ModelsBeingRead::Update(selection);
    if (qualifier >= 0) selection.SetQualifierIndex(qualifier);
    container.SetData(PLANT_SELECTION, GeData(kSelectionDataTypeId, selection));
}

} // namespace

Bool BasePlantObject::Init(GeListNode* node)
{
    builtMode = NOTOK;
    return InitPlantParameters(objectOf(node));
}

Bool BasePlantObject::Read(GeListNode* node, HyperFile* /*file*/, Int32 level)
{
    BaseObject& object = objectOf(node);
    BaseContainer* container = object.GetDataInstance();
    if (!container) return true;
    VerdanthSelectionData selection;
    if (level == 0)
        makeSelection(*container);
    else if (level == 1 && ReadSelection(object, selection))
        WriteLegacyFields(*container, selection, object.GetDocument());
    return true;
}

Bool BasePlantObject::CopyTo(NodeData* destination, GeListNode* source, GeListNode* copy, COPYFLAGS flags,
                             AliasTrans* trans)
{
    BasePlantObject& other = *static_cast<BasePlantObject*>(destination);
    other.model = model;
    other.builtMode = builtMode;
    return ObjectData::CopyTo(destination, source, copy, flags, trans);
}

Bool BasePlantObject::GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags)
{
    if (!(flags & DESCFLAGS_DESC_LOADED)) {
        if (!description->LoadDescription(node->GetType())) return false;
        flags |= DESCFLAGS_DESC_LOADED;
    }

    BaseObject& object = objectOf(node);
    VerdanthSelectionData selection;
    GeData variant;
    if (!ReadSelection(object, selection) || !selection.file.Content()) return false;
    if (!object.GetParameter(PLANT_VARIANT, variant, DESCFLAGS_GET_0)) return false;

    vdt::NullMessageHandler silent;
    const std::string path = ModelPath(selection.ResolvePath(object.GetDocument(), true));
    model = ModelCache().acquire(path, silent, ToVariantIndex(variant.GetInt32()));
    if (!model.model()) return false;
    fillVariants(*description, *model.model());
    fillQualifiers(*description, model);
    return false;
}

Bool BasePlantObject::GetDEnabling(GeListNode* node, const DescID& id, const GeData& /*value*/,
                                   DESCFLAGS_ENABLE /*flags*/, const BaseContainer* /*item*/)
{
    const BaseContainer* container = objectOf(node).GetDataInstance();
    return !container || IsPlantParameterEnabled(id[0].id, stateOf(*container, model));
}

void BasePlantObject::GetDimension(BaseObject* /*object*/, Vector* center, Vector* halfSize)
{
    if (center) *center = Vector();
    if (halfSize) *halfSize = Vector();

    vdt::NullMessageHandler silent;
    const vdt::ModelVariant* variant = model.variantData(silent, false);
    const vdt::Box bound = variant ? variant->computeBound() : vdt::Box();
    if (bound.isEmpty()) return;

    const Vector half(0.5 * (bound.max.x - bound.min.x), 0.5 * (bound.max.y - bound.min.y),
                      0.5 * (bound.min.z - bound.max.z));
    if (halfSize) *halfSize = half;
    if (center) *center = Vector(bound.min.x, bound.min.y, -bound.min.z) + half;
}

Bool BasePlantObject::RefreshFromSelection(BaseObject& object)
{
    VerdanthSelectionData selection;
    const vdt::Model* shown = model.model();
    if (!shown || !ReadSelection(object, selection) || !selection.file.Content()) return false;

    C4dMessageHandler messages(GeGetCurrentThread());
    const std::string path = ModelPath(selection.ResolvePath(object.GetDocument(), true));
    const vdt::ModelHandle fresh = ModelCache().acquire(path, messages, shown->defaultVariant);
    LoadMissingQualifiers(fresh);
    const vdt::ModelVariant* variant = fresh.variantData(messages, false);
    if (!variant) return false;

    model = fresh;
    const GeData plant(static_cast<Int32>(fresh.variant));
    const GeData qualifier(static_cast<Int32>(variant->defaultQualifier));
    const Bool written = WriteSelection(object, selection);
    const Bool plantSet = object.SetParameter(PLANT_VARIANT, plant, DESCFLAGS_SET_0);
    return object.SetParameter(PLANT_QUALIFIER, qualifier, DESCFLAGS_SET_0) && plantSet && written;
}

NodeData* PlantObjectPlayer::Alloc()
{
    return NewObjClear(PlantObjectPlayer);
}

BasePlantObject* PlantOf(BaseObject* object)
{
    if (!object || object->GetType() != kPlantObjectId) return nullptr;
    return static_cast<BasePlantObject*>(object->GetNodeData());
}
