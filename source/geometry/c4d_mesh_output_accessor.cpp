#include "geometry/c4d_mesh_output_accessor.h"

#include "geometry/handedness.h"
#include "geometry/phong_tag.h"
#include "geometry/selection_names.h"
#include "geometry/triangulation.h"
#include "lib_ngon.h"
#include "support/text.h"

#include <algorithm>

namespace {

constexpr Int32 kFirstRoom = 2;
constexpr Int32 kLastDoubling = LIMIT<Int32>::MAX / 2;

Vector textureCoordinate(const vdt::Vector2f& uv)
{
    return {uv.u, uv.v, 0};
}

// At unit length unless it has no direction: the host keeps components up to 1 alone, and clipping would bend it.
Vector32 hostNormal(const vdt::Vector3& modelNormal)
{
    const bool hasDirection = vdt::ExceedsInMagnitude(modelNormal, vdt::kSmallestDirection);
    const double factor = hasDirection ? 1 / vdt::Length(modelNormal) : 1;
    return Vector32(ToHostDirection(modelNormal * factor));
}

} // namespace

C4dMeshOutputAccessor::C4dMeshOutputAccessor(Bool withNormals, Float newScale)
{
    Reset(withNormals, newScale);
}

C4dMeshOutputAccessor::~C4dMeshOutputAccessor()
{
    PolygonObject::Free(object);
}

bool C4dMeshOutputAccessor::Reset(Bool withNormals, Float newScale)
{
    PolygonObject::Free(object);
    uvwTag = nullptr;
    normalTag = nullptr;
    materialTags.clear();
    lastSelection = nullptr;
    coordinates.clear();
    normals.clear();
    scale = newScale;

    object = PolygonObject::Alloc(kFirstRoom, kFirstRoom);
    fetchAddresses();
    if (!object) return false;
    ngons = object->GetNgonBase();
    uvwTag = static_cast<UVWTag*>(object->MakeVariableTag(Tuvw, kFirstRoom));
    if (withNormals) normalTag = static_cast<NormalTag*>(object->MakeVariableTag(Tnormal, kFirstRoom));
    fetchAddresses();
    return uvwTag && (normalTag || !withNormals) && SetPhong(object, vdt::kPi);
}

PolygonObject* C4dMeshOutputAccessor::TakeObject()
{
    PolygonObject* taken = object;
    if (taken) {
        resize(pointCount, polygonCount);
        if (ngons) {
            ngons->UpdateNgons(taken);
            ngons->ResetPoints(taken);
        }
        taken->Message(MSG_UPDATE);
    }
    clear();
    return taken;
}

void C4dMeshOutputAccessor::clear()
{
    object = nullptr;
    scale = 1;
    pointCount = polygonCount = 0;
    ngons = nullptr;
    uvwTag = nullptr;
    normalTag = nullptr;
    fetchAddresses();
    materialTags.clear();
    lastSelection = nullptr;
    coordinates = {};
    normals = {};
    prefix = String();
}

bool C4dMeshOutputAccessor::SetName(std::string_view name)
{
    if (!object) return false;
    object->SetName(ToHostString(name));
    return true;
}

uint64_t C4dMeshOutputAccessor::AddPoint(const vdt::Vector3& position, const vdt::Vector3& normal)
{
    if (!object) return vdt::kNone;
    if (pointCount == pointRoom && (pointRoom > kLastDoubling || !resize(2 * pointRoom, polygonRoom)))
        return vdt::kNone;

    points[pointCount] = ToHost(position, scale);
    if (normalTag) normals.push_back(hostNormal(normal));
    return static_cast<uint64_t>(pointCount++);
}

uint64_t C4dMeshOutputAccessor::AddUV(float u, float v)
{
    // The host keeps texture coordinates by polygons, so they wait here for theirs.
    coordinates.push_back({u, v});
    return coordinates.size() - 1;
}

bool C4dMeshOutputAccessor::AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> coordinateIndices,
                                       int32_t material)
{
    if (!object || vertices.size() < 3 || !refersToWhatIsThere(vertices, coordinateIndices)) return false;
    if (vertices.size() > 4) return addLargePolygon(vertices, coordinateIndices, material);

    BaseSelect* selection = selectionOf(material);
    if (!selection) return false;

    Piece piece{.cornerCount = vertices.size(), .points = {}, .coordinates = {}, .normals = {}};
    for (size_t corner = 0; corner < vertices.size(); ++corner) {
        piece.points[corner] = static_cast<Int32>(vertices[corner]);
        piece.coordinates[corner] = coordinateIndices[corner];
        piece.normals[corner] = vertices[corner];
    }
    return write(piece, *selection);
}

bool C4dMeshOutputAccessor::refersToWhatIsThere(std::span<const uint64_t> vertices,
                                                std::span<const uint64_t> coordinateIndices) const
{
    if (coordinateIndices.size() < vertices.size()) return false;
    const auto isPoint = [this](uint64_t index) { return index < static_cast<uint64_t>(pointCount); };
    const auto isCoordinate = [this](uint64_t index) { return index < coordinates.size(); };
    return std::ranges::all_of(vertices, isPoint) && std::ranges::all_of(coordinateIndices, isCoordinate);
}

// Compatibility: what is cut is the outline of the object's first points, and the pieces look for their texture
// coordinates and normals among the first of the lists, but for the texture coordinates of quads. The surface is right
// all the same wherever the polygon is as flat and convex as those points; existing scenes are mapped so.
bool C4dMeshOutputAccessor::addLargePolygon(std::span<const uint64_t> vertices,
                                            std::span<const uint64_t> coordinateIndices, int32_t material)
{
    const size_t count = vertices.size();
    if (count > static_cast<size_t>(pointCount) || count > coordinates.size()) return false;

    std::vector<vdt::Vector3> outline(count);
    std::transform(points, points + count, outline.begin(), ToModel);
    const std::vector<PolygonPiece> cut = TriangulatePolygon(outline);
    BaseSelect* selection = cut.empty() ? nullptr : selectionOf(material);
    if (!selection) return false;

    for (const PolygonPiece& local : cut) {
        Piece piece{.cornerCount = local.cornerCount, .points = {}, .coordinates = {}, .normals = {}};
        for (size_t corner = 0; corner < local.cornerCount; ++corner) {
            const uint32_t number = local.corners[corner];
            piece.points[corner] = static_cast<Int32>(vertices[number]);
            piece.coordinates[corner] = local.cornerCount == 4 ? coordinateIndices[number] : number;
            piece.normals[corner] = number;
        }
        if (!write(piece, *selection)) return false;
    }
    return true;
}

bool C4dMeshOutputAccessor::write(const Piece& piece, BaseSelect& selection)
{
    if (polygonCount == polygonRoom && (polygonRoom > kLastDoubling || !resize(pointRoom, 2 * polygonRoom)))
        return false;

    const bool isQuad = piece.cornerCount == 4;
    const Int32* p = piece.points;
    polygons[polygonCount] = isQuad ? ToHostQuad(p[0], p[1], p[2], p[3]) : ToHostTriangle(p[0], p[1], p[2]);

    if (uvwHandle) {
        const auto at = [&](size_t corner) { return textureCoordinate(coordinates[piece.coordinates[corner]]); };
        UVWTag::Set(uvwHandle, polygonCount,
                    isQuad ? UVWStruct(at(3), at(2), at(1), at(0)) : UVWStruct(at(2), at(1), at(0), Vector()));
    }
    if (normalHandle && normals.size() == static_cast<size_t>(pointCount)) {
        NormalStruct turned;
        turned.d = Vector(normals[piece.normals[0]]);
        turned.c = isQuad ? Vector(normals[piece.normals[1]]) : turned.d;
        turned.b = Vector(normals[piece.normals[isQuad ? 2 : 1]]);
        turned.a = Vector(normals[piece.normals[isQuad ? 3 : 2]]);
        NormalTag::Set(normalHandle, polygonCount, turned);
    }
    selection.Select(polygonCount);
    ++polygonCount;
    return true;
}

BaseSelect* C4dMeshOutputAccessor::selectionOf(Int32 material)
{
    if (lastSelection && material == lastMaterial) return lastSelection;

    const auto known = materialTags.find(material);
    SelectionTag* tag = known == materialTags.end() ? nullptr : known->second;
    if (!tag) {
        tag = static_cast<SelectionTag*>(object->MakeTag(Tpolygonselection));
        if (!tag) return nullptr;
        tag->SetName(WithPrefix(prefix, MaterialSelectionName(material)));
        materialTags[material] = tag;
    }
    lastMaterial = material;
    lastSelection = tag->GetBaseSelect();
    return lastSelection;
}

bool C4dMeshOutputAccessor::resize(Int32 newPointRoom, Int32 newPolygonRoom)
{
    if (!object->ResizeObject(newPointRoom, newPolygonRoom)) return false;
    fetchAddresses();
    return true;
}

void C4dMeshOutputAccessor::fetchAddresses()
{
    pointRoom = object ? object->GetPointCount() : 0;
    polygonRoom = object ? object->GetPolygonCount() : 0;
    points = object ? object->GetPointW() : nullptr;
    polygons = object ? object->GetPolygonW() : nullptr;
    uvwHandle = uvwTag ? uvwTag->GetDataAddressW() : nullptr;
    normalHandle = normalTag ? normalTag->GetDataAddressW() : nullptr;
}
