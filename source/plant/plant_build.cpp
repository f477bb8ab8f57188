#include "plant/plant_build.h"

#include "c4d_symbols.h"
#include "geometry/c4d_mesh_output_accessor.h"
#include "geometry/selection_names.h"
#include "obase.h"
#include "plant/plant_units.h"
#include "support/c4d_message_handler.h"
#include "support/colour_space.h"
#include "support/model_cache.h"
#include "support/model_path.h"
#include "support/resources.h"
#include "vdt/generate/coarse_mesh.h"
#include "vdt/generate/plant_mesh.h"

#include <algorithm>

namespace {

constexpr uint64_t kMostCloudSegments = 1000; // views stay fluid however large the plant is
constexpr uint64_t kMostCloudPoints = 20000;
constexpr vdt::Color4f kFoliageGreen{0.3F, 0.7F, 0.27F, 1}; // of plants whose model tells no colour

// True if the cache is gone, or if the object was built for the other kind of renderer.
Bool checkCache(BasePlantObject& plant, BaseObject& object, HierarchyHelp& help)
{
    const BUILDFLAGS flags = help.GetBuildFlags();
    const BUILDFLAGS before = plant.lastBuildFlags;
    plant.lastBuildFlags = flags;
    plant.lastLod = help.GetLOD();
    return !object.GetCache(&help) || (flags & BUILDFLAGS_EXTERNALRENDERER) != (before & BUILDFLAGS_EXTERNALRENDERER);
}

Bool isBuiltInMode(const BasePlantObject& plant, const PlantDisplay& display)
{
    if (!display.rendering) return display.mode == plant.builtMode;
    if (display.viewMode == display.mode) return true;
    // Compatibility: where renders get the proxy, a build of it does not count as one. Reached by values alone that the
    // parameter does not offer.
    const Int32 expected = display.proxyOnly == PLANT_PROXY_ONLY_OFF ? PLANT_DISPLAY_MODE_FULL : PLANT_DISPLAY_MODE_BOX;
    return expected == plant.builtMode;
}

// Makes the plant show the file and variant that the object's parameters name. False if they cannot be read.
Bool showChosenModel(BasePlantObject& plant, BaseObject& object, vdt::MessageHandler& messages)
{
    VerdanthSelectionData selection;
    GeData variant;
    if (!ReadSelection(object, selection)) return false;
    if (!object.GetParameter(PLANT_VARIANT, variant, DESCFLAGS_GET_0)) return false;
    const std::string path = ModelPath(selection.ResolvePath(DocumentOf(object), true));
    plant.model = ModelCache().acquire(path, messages, ToVariantIndex(variant.GetInt32()));
    return true;
}

Bool buildMode(const PlantBuild& build, Int32 mode)
{
    switch (mode) {
    case PLANT_DISPLAY_MODE_FULL: return BuildFull(build);
    case PLANT_DISPLAY_MODE_PROXY: return BuildProxy(build, "");
    case PLANT_DISPLAY_MODE_CLOUD: return BuildCloud(build);
    default: return BuildBox(build);
    }
}

vdt::ReductionParameters reductionOf(const BaseContainer& container, Float scale)
{
    vdt::ReductionParameters reduction;
    const Int32 level = container.GetInt32(PLANT_MAX_LEVEL);
    if (container.GetBool(PLANT_LIMIT_LEVEL) && level >= 0) reduction.maxLevel = static_cast<uint32_t>(level);
    if (container.GetBool(PLANT_LIMIT_RADIUS))
        reduction.minRadius = static_cast<float>(container.GetFloat(PLANT_MIN_RADIUS)) / static_cast<float>(scale);
    reduction.foliageAmount = static_cast<float>(container.GetFloat(PLANT_FOLIAGE_AMOUNT));
    reduction.foliageThinning = static_cast<float>(container.GetFloat(PLANT_FOLIAGE_THINNING));
    return reduction;
}

void addCorners(const vdt::ModelVariant& variant, vdt::MeshOutputAccessor& output)
{
    const vdt::Box bound = variant.computeBound();
    if (bound.isEmpty()) return;
    output.AddPoint(bound.min, vdt::Vector3{});
    output.AddPoint(bound.max, vdt::Vector3{});
}

String countText(size_t count)
{
    return String::IntToString(static_cast<Int64>(count));
}

// What the panel says of the last build: of the mesh where there is one, else of the plant behind the cloud or box.
// False if there is nothing to say.
Bool statisticsText(const PlantBuild& build, const PlantDisplay& display, const PolygonObject* output, String& text)
{
    const Bool showsMesh = display.proxyOnly == PLANT_PROXY_ONLY_ON || display.viewMode == PLANT_DISPLAY_MODE_PROXY ||
                           display.viewMode == PLANT_DISPLAY_MODE_FULL;
    if (showsMesh) {
        text = LoadText(IDS_STATISTICS_MESH, String::IntToString(output ? output->GetPointCount() : 0),
                        String::IntToString(output ? output->GetPolygonCount() : 0));
        return true;
    }
    // A box is shown without the plant's geometry, so that is not loaded to be counted either.
    const Bool mayLoad = display.mode != PLANT_DISPLAY_MODE_BOX;
    const vdt::ModelVariant* variant = build.model.variantData(build.messages, mayLoad);
    if (!variant || !variant->hasGeometry()) return false;
    const vdt::Skeleton& skeleton = variant->skeleton;
    text = LoadText(IDS_STATISTICS_SKELETON, countText(skeleton.points.size()), countText(skeleton.branches.size()),
                    countText(skeleton.connectors.size()));
    return true;
}

// Straight into the container: a parameter set here would be a change that asks for the next build.
void writeStatistics(const PlantBuild& build, const PlantDisplay& display, const PolygonObject* output)
{
    String text;
    BaseContainer* container = build.object.GetDataInstance();
    if (!container || !statisticsText(build, display, output, text)) return;
    build.plant.statistics = text;
    if (container->GetString(PLANT_STATISTICS) != text) container->SetString(PLANT_STATISTICS, text);
}

void paint(const PlantBuild& build, BaseObject& output)
{
    const vdt::Model* model = build.model.model();
    if (!model) return;
    const auto told = model->foliageColors.find("");
    const vdt::Color4f foliage = told != model->foliageColors.end() ? told->second : kFoliageGreen;

    ObjectColorProperties properties;
    output.GetColorProperties(&properties);
    const Vector colour(foliage.r, foliage.g, foliage.b);
    properties.color = SrgbToParameter(colour, DocumentColourSpace(DocumentOf(build.object)));
    properties.usecolor = ID_BASEOBJECT_USECOLOR_AUTOMATIC;
    output.SetColorProperties(&properties);
}

BaseObject* finish(const PlantBuild& build, const PlantDisplay& display)
{
    build.plant.builtMode = display.mode;
    PolygonObject* output = build.output.TakeObject();
    writeStatistics(build, display, output);
    if (!output) return nullptr;

    paint(build, *output);
    output->KillTag(Tphong); // the plant's own rules
    if (build.object.CopyTagsTo(output, true, false, false, nullptr)) return output;
    PolygonObject::Free(output);
    return nullptr;
}

} // namespace

BaseObject* PlantObjectPlayer::GetVirtualObjects(BaseObject* object, HierarchyHelp* help)
{
    PlantDisplay display;
    if (!ReadDisplay(*object, help->GetBuildFlags(), display)) return nullptr;
    if (!NeedsBuild(*this, *object, *help, display)) return object->GetCache(help);

    materialDirty.clear();
    drawHelper.clear();
    C4dMessageHandler messages(help->GetThread());
    if (!showChosenModel(*this, *object, messages)) return nullptr;

    const Bool hasNormals = display.mode != PLANT_DISPLAY_MODE_PROXY;
    const Float scale = ObjectScale(*object, model.model());
    C4dMeshOutputAccessor output(hasNormals, scale);
    output.SetPrefix(SelectionPrefix(object));
    const PlantBuild build{*this, *object, model, scale, output, messages};
    return buildMode(build, display.mode) ? finish(build, display) : nullptr;
}

Bool ReadDisplay(BaseObject& object, BUILDFLAGS flags, PlantDisplay& display)
{
    GeData proxyOnly, viewMode;
    if (!object.GetParameter(PLANT_PROXY_ONLY, proxyOnly, DESCFLAGS_GET_0)) return false;
    if (!object.GetParameter(PLANT_DISPLAY_MODE, viewMode, DESCFLAGS_GET_0)) return false;

    display.proxyOnly = proxyOnly.GetInt32();
    const Bool proxyAlways = display.proxyOnly == PLANT_PROXY_ONLY_ON;
    display.viewMode = proxyAlways ? PLANT_DISPLAY_MODE_PROXY : viewMode.GetInt32();
    display.rendering = (flags & (BUILDFLAGS_INTERNALRENDERER | BUILDFLAGS_EXTERNALRENDERER)) != 0;
    const Int32 renderMode =
        display.proxyOnly == PLANT_PROXY_ONLY_OFF ? PLANT_DISPLAY_MODE_FULL : PLANT_DISPLAY_MODE_PROXY;
    display.mode = display.rendering ? renderMode : display.viewMode;
    return true;
}

Bool NeedsBuild(BasePlantObject& plant, BaseObject& object, HierarchyHelp& help, const PlantDisplay& display)
{
    // First, since it notes what it saw whatever else is found.
    if (checkCache(plant, object, help)) return true;
    if (!isBuiltInMode(plant, display) || object.IsDirty(DIRTYFLAGS_DATA)) return true;
    return display.mode == PLANT_DISPLAY_MODE_CLOUD && HasChangedMaterial(object, plant.materialDirty);
}

Bool BuildFull(const PlantBuild& build)
{
    const vdt::ModelVariant* variant = build.model.variantData(build.messages, true);
    const BaseContainer* container = build.object.GetDataInstance();
    if (!variant || !container) return false;

    const std::string season = SeasonOf(build.object, *variant);
    const vdt::PlantMeshOptions options{.season = season,
                                        .subdivisionLevel = container->GetInt32(PLANT_SUBDIVISION_LEVEL),
                                        .uniform = container->GetInt32(PLANT_SUBDIVISION_MODE) ==
                                                   PLANT_SUBDIVISION_MODE_UNIFORM,
                                        .reduction = reductionOf(*container, build.scale)};
    vdt::BuildPlantMesh(*variant, options, build.output, build.messages);
    return true;
}

Bool BuildProxy(const PlantBuild& build, std::string_view name)
{
    const vdt::ModelVariant* stub = build.model.variantData(build.messages, false);
    if (const vdt::Mesh* proxy = stub ? vdt::FindProxy(*stub, name) : nullptr) {
        build.output.AppendMesh(*proxy, vdt::Matrix::Identity());
        return true;
    }
    const vdt::ModelVariant* variant = build.model.variantData(build.messages, true);
    if (variant) vdt::BuildHullMesh(*variant, name, build.output, build.messages);
    return variant != nullptr;
}

Bool BuildCloud(const PlantBuild& build)
{
    const vdt::ModelVariant* variant = build.model.variantData(build.messages, true);
    const BaseContainer* container = build.object.GetDataInstance();
    vdt::Color3f others;
    if (!variant || !container || !DefaultColour(DocumentOf(build.object), others)) return false;

    BasePlantObject& plant = build.plant;
    const PlantColours colours = MaterialColours(build.object, build.model.model(), &plant.materialDirty);
    const std::string season = SeasonOf(build.object, *variant);
    plant.drawHelper.scale = build.scale;
    plant.drawHelper.density = container->GetFloat(PLANT_FOLIAGE_THINNING);
    vdt::FillDrawHelper(plant.drawHelper, *variant,
                        {.season = season,
                         .colours = colours,
                         .defaultColour = others,
                         .shaded = container->GetBool(PLANT_CLOUD_SHADING) != 0,
                         .maxSegments = kMostCloudSegments,
                         .maxPoints = kMostCloudPoints});
    addCorners(*variant, build.output);
    return true;
}

Bool BuildBox(const PlantBuild& build)
{
    const vdt::ModelVariant* variant = build.model.variantData(build.messages, false);
    if (variant) addCorners(*variant, build.output);
    return variant != nullptr;
}

const vdt::ModelVariant* ReadyVariant(const vdt::ModelHandle& model)
{
    vdt::NullMessageHandler silent;
    return model.variantData(silent, true);
}

std::string SeasonOf(BaseObject& object, const vdt::ModelVariant& variant)
{
    GeData value;
    if (!object.GetParameter(PLANT_QUALIFIER, value, DESCFLAGS_GET_0)) return {};
    const uint64_t index = ToVariantIndex(value.GetInt32());
    return index < variant.qualifiers.size() ? variant.qualifiers[index].name : std::string();
}
