#include "host/plant_object.h"

#include "host/host_session.h"
#include "oplant.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <vector>

namespace verdanth {
namespace {

bool set(BaseObject& plant, const DescID& id, const GeData& value)
{
    return plant.SetParameter(id, value, DESCFLAGS_SET_0);
}

bool setFlag(BaseObject& plant, Int32 id, bool value)
{
    return set(plant, id, GeData(static_cast<Int32>(value)));
}

vdt::Vector3 modelVector(const Vector& v)
{
    return {v.x, v.y, -v.z};
}

// One material id a polygon.
std::vector<int32_t> materialsOf(PolygonObject& mesh)
{
    std::vector<int32_t> materials(static_cast<size_t>(mesh.GetPolygonCount()), kNoMaterial);
    for (BaseTag* tag = mesh.GetFirstTag(); tag; tag = tag->GetNext()) {
        int32_t id = 0;
        if (tag->GetType() != Tpolygonselection || !MaterialIdOf(Utf8Text(tag->GetName()), id)) continue;
        const BaseSelect* selected = static_cast<SelectionTag*>(tag)->GetBaseSelect();
        Int32 first = 0, last = 0;
        for (Int32 run = 0; selected->GetRange(run, mesh.GetPolygonCount(), &first, &last); ++run)
            std::fill(materials.begin() + first, materials.begin() + last + 1, id);
    }
    return materials;
}

// The tag's corners in the order of a host polygon.
template <class Corners> const Vector& cornerOf(const Corners& corners, int i)
{
    const Vector* const all[] = {&corners.a, &corners.b, &corners.c, &corners.d};
    return *all[i];
}

// One normal a point: that of the first corner on it. Zero without a normal tag.
std::vector<vdt::Vector3> normalsOf(PolygonObject& mesh, const Matrix& matrix)
{
    std::vector<vdt::Vector3> normals(static_cast<size_t>(mesh.GetPointCount()), {0, 0, 0});
    auto* tag = static_cast<NormalTag*>(mesh.GetTag(Tnormal));
    if (!tag) return normals;
    const Matrix turn = ~matrix; // normals go through the transpose of the inverse
    const ConstNormalHandle handle = tag->GetDataAddressR();
    std::vector<bool> known(normals.size());
    const CPolygon* polygons = mesh.GetPolygonR();
    for (Int32 i = 0; i < mesh.GetPolygonCount(); ++i) {
        NormalStruct corners;
        NormalTag::Get(handle, i, corners);
        for (int c = 0; c < 4; ++c) {
            const auto point = static_cast<size_t>(polygons[i][c]);
            if (known[point]) continue;
            known[point] = true;
            const Vector& n = cornerOf(corners, c);
            normals[point] = modelVector(Vector(Dot(turn.v1, n), Dot(turn.v2, n), Dot(turn.v3, n)));
        }
    }
    return normals;
}

// True if all corners' normals look to the other side than the polygon itself, and not just askew.
bool looksAway(std::span<const uint64_t> polygon, const std::vector<vdt::Vector3>& points,
               const std::vector<vdt::Vector3>& normals)
{
    constexpr double kCosine = -0.5;
    const vdt::Vector3 area =
        vdt::Normalized(vdt::Cross(points[polygon[1]] - points[polygon[0]], points[polygon[2]] - points[polygon[0]]));
    const auto isOpposite = [&](uint64_t point) { return vdt::Dot(normals[point], area) < kCosine; };
    return std::all_of(polygon.begin(), polygon.end(), isOpposite);
}

} // namespace

BaseObject* AddPlant(BaseDocument& document, const PlantSettings& settings, double modelUnit)
{
    BaseObject* plant = BaseObject::Alloc(kPlantObject);
    if (!plant) return nullptr;
    BaseObject* last = document.GetFirstObject();
    while (last && last->GetNext()) last = last->GetNext();
    document.InsertObject(plant, nullptr, last);

    const Filename file(HostText(settings.file));
    if (set(*plant, DescID(PLANT_SELECTION, kSelectionFile), GeData(file)) &&
        set(*plant, PLANT_VARIANT, GeData(static_cast<Int32>(settings.variant))) &&
        set(*plant, PLANT_QUALIFIER, GeData(static_cast<Int32>(settings.qualifier))) &&
        SetDetail(*plant, settings, modelUnit))
        return plant;
    plant->Remove();
    BaseObject::Free(plant);
    return nullptr;
}

bool SetDetail(BaseObject& plant, const PlantSettings& settings, double modelUnit)
{
    const vdt::ReductionParameters& reduction = settings.reduction;
    const vdt::ReductionParameters whole;
    const bool limitsLevel = reduction.maxLevel != whole.maxLevel;
    const bool limitsRadius = reduction.minRadius > 0;
    return setFlag(plant, PLANT_LIMIT_LEVEL, limitsLevel) &&
           (!limitsLevel || set(plant, PLANT_MAX_LEVEL, GeData(static_cast<Int32>(reduction.maxLevel)))) &&
           setFlag(plant, PLANT_LIMIT_RADIUS, limitsRadius) &&
           (!limitsRadius || set(plant, PLANT_MIN_RADIUS, GeData(reduction.minRadius * modelUnit))) &&
           set(plant, PLANT_FOLIAGE_AMOUNT, GeData(reduction.foliageAmount)) &&
           set(plant, PLANT_FOLIAGE_THINNING, GeData(reduction.foliageThinning)) &&
           set(plant, PLANT_SUBDIVISION_LEVEL, GeData(static_cast<Int32>(settings.subdivisionLevel))) &&
           setFlag(plant, PLANT_SUBDIVISION_MODE, settings.uniform) &&
           set(plant, PLANT_DISPLAY_MODE, GeData(static_cast<Int32>(settings.display)));
}

bool Evaluate(BaseDocument& document)
{
    return document.ExecutePasses(nullptr, true, true, true, BUILDFLAGS_0);
}

bool MaterialIdOf(const std::string& name, int32_t& id)
{
    constexpr std::string_view kMark = "MAT";
    const size_t separator = name.rfind("::");
    const std::string_view own = std::string_view(name).substr(separator == std::string::npos ? 0 : separator + 2);
    if (!own.starts_with(kMark)) return false;
    const char* begin = own.data() + kMark.size();
    const char* end = own.data() + own.size();
    const auto parsed = std::from_chars(begin, end, id);
    return parsed.ec == std::errc() && parsed.ptr == end && begin != end;
}

PolygonObject* BuiltMesh(BaseObject& object)
{
    BaseObject* built = object.GetDeformCache();
    if (!built) built = object.GetCache();
    return built && built->GetType() == Opolygon ? static_cast<PolygonObject*>(built) : nullptr;
}

void WriteMesh(PolygonObject& mesh, const Matrix& matrix, vdt::MeshOutputAccessor& output)
{
    const std::vector<vdt::Vector3> normals = normalsOf(mesh, matrix);
    std::vector<vdt::Vector3> points(normals.size());
    for (size_t i = 0; i < points.size(); ++i) {
        points[i] = modelVector(matrix * mesh.GetPointR()[i]);
        output.AddPoint(points[i], normals[i]);
    }

    const std::vector<int32_t> materials = materialsOf(mesh);
    auto* coordinateTag = static_cast<UVWTag*>(mesh.GetTag(Tuvw));
    const ConstUVWHandle coordinates = coordinateTag ? coordinateTag->GetDataAddressR() : nullptr;
    const CPolygon* polygons = mesh.GetPolygonR();
    for (Int32 i = 0; i < mesh.GetPolygonCount(); ++i) {
        UVWStruct corners;
        if (coordinates) UVWTag::Get(coordinates, i, corners);
        // The other hand: corners run the other way round.
        const int count = polygons[i].IsTriangle() ? 3 : 4;
        uint64_t vertices[4], textures[4];
        for (int c = 0; c < count; ++c) {
            const int corner = count - 1 - c;
            const Vector& uv = cornerOf(corners, corner);
            vertices[c] = static_cast<uint64_t>(polygons[i][corner]);
            textures[c] = output.AddUV(static_cast<float>(uv.x), static_cast<float>(uv.y));
        }
        const std::span<uint64_t> used(vertices, static_cast<size_t>(count));
        if (looksAway(used, points, normals)) {
            std::reverse(vertices, vertices + count);
            std::reverse(textures, textures + count);
        }
        output.AddPolygon(used, {textures, used.size()}, materials[static_cast<size_t>(i)]);
    }
}

} // namespace verdanth
