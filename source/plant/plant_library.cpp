#include "plant/plant_library.h"

#include "geometry/c4d_mesh_output_accessor.h"
#include "geometry/handedness.h"
#include "geometry/selection_names.h"
#include "plant/plant_build.h"
#include "plant/plant_units.h"
#include "support/text.h"
#include "vdt/generate/point_cloud.h"

#include <algorithm>

namespace {

// A plant for the length of one operation, with a handle of its own.
struct Asked {
    explicit Asked(BaseObject* asked) : object(asked), plant(PlantOf(asked))
    {
        if (plant) model = plant->model;
    }

    Float scale() const { return ObjectScale(*object, model.model()); }

    BaseObject* object;
    BasePlantObject* plant; // null if the object is no plant
    vdt::ModelHandle model;
    vdt::NullMessageHandler silent;
};

template <class List> Int32 countOf(const List& list, Int32 wanted)
{
    return static_cast<Int32>(std::min<uint64_t>(list.size(), static_cast<uint64_t>(std::max(wanted, 0))));
}

// Twice the count must be a number, too.
Int32 branchCount(const vdt::ModelVariant& variant, Int32 wanted)
{
    return countOf(variant.skeleton.branches, std::min(wanted, LIMIT<Int32>::MAX / 2));
}

struct CloudLimits {
    Int32 segments, points;
};

// The plant's own cloud where it has one, else a new one in `room`.
const C4dDrawHelper& cloudOf(const Asked& asked, const vdt::ModelVariant& variant, std::string_view season,
                             const CloudLimits& limits, C4dDrawHelper& room)
{
    if (!asked.plant->drawHelper.points.empty()) return asked.plant->drawHelper;

    vdt::Color3f others;
    DefaultColour(DocumentOf(*asked.object), others);
    const PlantColours colours = MaterialColours(*asked.object, asked.model.model());
    room.scale = asked.scale();
    room.density = asked.object->GetDataInstance()->GetFloat(PLANT_FOLIAGE_THINNING);
    vdt::FillDrawHelper(room, variant,
                        {.season = season,
                         .colours = colours,
                         .defaultColour = others,
                         .maxSegments = static_cast<uint64_t>(std::max(limits.segments, 0)),
                         .maxPoints = static_cast<uint64_t>(std::max(limits.points, 0))});
    return room;
}

Vector32 colourOf(const vdt::Model& model, const PlantColours& colours, int32_t material)
{
    const auto found = colours.find(material);
    const bool isOfModel =
        std::ranges::find(model.materials, material, &vdt::MaterialData::matid) != model.materials.end();
    if (found == colours.end() || !isOfModel) return Vector32();
    return Vector32(found->second.r, found->second.g, found->second.b);
}

Int32 fetchSurface(const Asked& asked, const vdt::ModelVariant& variant, Int32 wanted, PlantPoint* points)
{
    vdt::Array<vdt::CloudSample> samples;
    const std::string season = SeasonOf(*asked.object, variant);
    vdt::SamplePoints(variant, season, static_cast<uint64_t>(std::max(wanted, 0)), samples, true, nullptr);

    const PlantColours colours = MaterialColours(*asked.object, asked.model.model());
    const Float scale = asked.scale();
    const Int32 count = countOf(samples, wanted);
    for (Int32 i = 0; i < count; ++i) {
        const vdt::CloudSample& sample = samples[static_cast<size_t>(i)];
        points[i] = {ToHost(sample.position, scale), Vector32(ToHost(sample.normal, scale)),
                     colourOf(*asked.model.model(), colours, sample.material)};
    }
    return count;
}

Int32 fetchFoliage(const Asked& asked, const vdt::ModelVariant& variant, Int32 wanted, PlantPoint* points)
{
    C4dDrawHelper room;
    const std::string season = SeasonOf(*asked.object, variant);
    const C4dDrawHelper& cloud = cloudOf(asked, variant, season, {.segments = 0, .points = wanted}, room);
    const Int32 count = countOf(cloud.points, wanted);
    for (Int32 i = 0; i < count; ++i) {
        const Float32* colour = &cloud.pointColours[3 * static_cast<size_t>(i)];
        points[i] = {Vector(cloud.points[static_cast<size_t>(i)]), Vector32(0, 1, 0),
                     Vector32(colour[0], colour[1], colour[2])};
    }
    return count;
}

BaseObject* buildNamedProxy(BaseObject* object, const String& name)
{
    Asked asked(object);
    if (!asked.plant) return nullptr;
    const Float scale = asked.scale();
    C4dMeshOutputAccessor output(false, scale);
    const PlantBuild build{*asked.plant, *object, asked.model, scale, output, asked.silent};
    return BuildProxy(build, ToUtf8(name)) ? output.TakeObject() : nullptr;
}

BaseObject* buildRenderMesh(BaseObject* object, Int32* isCache)
{
    Asked asked(object);
    GeData mode;
    *isCache = 0;
    if (!asked.plant || !object->GetParameter(PLANT_DISPLAY_MODE, mode, DESCFLAGS_GET_0)) return nullptr;
    // Proxies may stand in the cache while the full mesh is asked for, so the mode alone does not tell.
    const Bool isFull = mode.GetInt32() == PLANT_DISPLAY_MODE_FULL && asked.plant->builtMode == PLANT_DISPLAY_MODE_FULL;
    BaseObject* cache = isFull ? object->GetCache() : nullptr;
    if (cache && cache->GetType() == Opolygon) {
        *isCache = 1;
        return cache;
    }

    const Float scale = asked.scale();
    C4dMeshOutputAccessor output(true, scale);
    output.SetPrefix(SelectionPrefix(object));
    const PlantBuild build{*asked.plant, *object, asked.model, scale, output, asked.silent};
    return BuildFull(build) ? output.TakeObject() : nullptr;
}

Int32 countPoints(BaseObject* object, Int32 wanted, Int32 kind)
{
    const Asked asked(object);
    if (!asked.plant) return -1;
    if (kind == static_cast<Int32>(PlantPoints::Surface)) return wanted;
    const vdt::ModelVariant* variant = ReadyVariant(asked.model);
    if (kind != static_cast<Int32>(PlantPoints::Foliage) || !variant) return -1;
    return countOf(variant->skeleton.connectors, wanted);
}

Int32 fetchPoints(BaseObject* object, Int32 wanted, PlantPoint* points, Int32 kind)
{
    const Asked asked(object);
    const vdt::ModelVariant* variant = ReadyVariant(asked.model);
    if (!variant) return -1;
    switch (static_cast<PlantPoints>(kind)) {
    case PlantPoints::Surface: return fetchSurface(asked, *variant, wanted, points);
    case PlantPoints::Foliage: return fetchFoliage(asked, *variant, wanted, points);
    default: return -1;
    }
}

Int32 countBranches(BaseObject* object, Int32 wanted, Int32* count)
{
    const Asked asked(object);
    const vdt::ModelVariant* variant = ReadyVariant(asked.model);
    *count = variant ? branchCount(*variant, wanted) : -1;
    return variant ? 2 * *count : -1;
}

Int32 fetchBranches(BaseObject* object, Int32 wanted, DrawPolylineHeader* headers, DrawNode* nodes,
                    Int32* polylineCount)
{
    const Asked asked(object);
    const vdt::ModelVariant* variant = ReadyVariant(asked.model);
    *polylineCount = 0;
    if (!variant) return 0;

    C4dDrawHelper room;
    const C4dDrawHelper& cloud = cloudOf(asked, *variant, {}, {.segments = wanted, .points = 0}, room);
    const Int32 mostHeaders = branchCount(*variant, wanted);
    const uint64_t mostNodes = 2 * static_cast<uint64_t>(mostHeaders);
    uint64_t written = 0, next = 0;
    for (const DrawPolylineHeader& polyline : cloud.polylines) {
        const uint64_t count = std::min<uint64_t>(polyline.count, mostNodes - written);
        if (*polylineCount == mostHeaders) break;
        if (count >= 2) {
            headers[(*polylineCount)++] = {count, polyline.maxRadius};
            std::copy_n(cloud.nodes.begin() + static_cast<ptrdiff_t>(next), count, nodes + written);
            written += count;
        }
        next += polyline.count;
    }
    return static_cast<Int32>(written);
}

} // namespace

PlantObjectLibrary g_PlantObjectLibrary = {{},          buildNamedProxy, buildRenderMesh, countPoints,
                                           fetchPoints, countBranches,   fetchBranches};
