#include "view/mesh_recorder.h"

#include "c4d_baseselect.h"
#include "c4d_tools.h"
#include "tphong.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace host {
namespace {

struct Polygons {
    const Vector* points;
    Int32 pointCount;
    const CPolygon* corners;
    Int32 count;

    bool valid(Int32 polygon) const
    {
        for (Int32 corner = 0; corner < 4; ++corner)
            if (corners[polygon][corner] < 0 || corners[polygon][corner] >= pointCount) return false;
        return true;
    }
    Vector normal(Int32 polygon) const
    {
        const CPolygon& p = corners[polygon];
        return Cross(points[p.c] - points[p.a], points[p.d] - points[p.b]).GetNormalized();
    }
};

// Four a polygon, or none.
using CornerNormals = std::vector<Vector32>;

CornerNormals normalsOfTag(PolygonObject& object, Int32 count)
{
    CornerNormals normals;
    auto* tag = static_cast<NormalTag*>(object.GetTag(Tnormal));
    ConstNormalHandle stored = tag && tag->GetDataCount() >= count ? tag->GetDataAddressR() : nullptr;
    if (!stored) return normals;
    normals.reserve(size_t{4} * static_cast<size_t>(count));
    for (Int32 i = 0; i < count; ++i) {
        NormalStruct corners;
        NormalTag::Get(stored, i, corners);
        for (const Vector& normal : {corners.a, corners.b, corners.c, corners.d}) normals.emplace_back(normal);
    }
    return normals;
}

// The mean of the polygons at each corner that differ from the corner's own by no more than the tag's angle.
CornerNormals smoothNormals(PolygonObject& object, const Polygons& polygons)
{
    CornerNormals normals;
    BaseTag* tag = object.GetTag(Tphong);
    Neighbor neighbors;
    if (!tag || !neighbors.Init(polygons.pointCount, polygons.corners, polygons.count, nullptr)) return normals;
    const BaseContainer* settings = tag->GetDataInstance();
    const bool limited = settings->GetBool(PHONGTAG_PHONG_ANGLELIMIT);
    const Float angle = limited ? settings->GetFloat(PHONGTAG_PHONG_ANGLE) : std::numbers::pi;
    const Float leastCosine = std::cos(std::clamp(angle, 0.0, std::numbers::pi)) - 1e-9;

    std::vector<Vector> flat(static_cast<size_t>(polygons.count));
    for (Int32 i = 0; i < polygons.count; ++i)
        if (polygons.valid(i)) flat[static_cast<size_t>(i)] = polygons.normal(i);
    normals.reserve(4 * flat.size());
    for (Int32 i = 0; i < polygons.count; ++i) {
        const Vector& own = flat[static_cast<size_t>(i)];
        for (Int32 corner = 0; corner < 4; ++corner) {
            Int32* sharing = nullptr;
            Int32 sharingCount = 0;
            if (polygons.valid(i)) neighbors.GetPointPolys(polygons.corners[i][corner], &sharing, &sharingCount);
            Vector sum;
            for (Int32 k = 0; k < sharingCount; ++k) {
                const Vector& other = flat[static_cast<size_t>(sharing[k])];
                if (Dot(own, other) >= leastCosine) sum += other;
            }
            normals.emplace_back(sum.GetNormalized());
        }
    }
    return normals;
}

// For each polygon the number of its part.
std::vector<uint32_t> partsOf(Int32 count, const std::vector<const BaseSelect*>& claims)
{
    std::vector<uint32_t> parts(static_cast<size_t>(count), 0);
    for (size_t i = 0; i < claims.size(); ++i) {
        const auto part = static_cast<uint32_t>(i + 1);
        if (!claims[i]) std::fill(parts.begin(), parts.end(), part);
        Int32 first = 0, last = 0;
        for (Int32 run = 0; claims[i] && claims[i]->GetRange(run, count, &first, &last); ++run)
            for (Int32 k = std::max(first, 0); k <= last && k < count; ++k) parts[static_cast<size_t>(k)] = part;
    }
    return parts;
}

// Corners of their own for each polygon where there are normals, else those of the object's points.
void addVertices(DrawList& list, const Polygons& polygons, const CornerNormals& normals)
{
    if (normals.empty()) {
        for (Int32 i = 0; i < polygons.pointCount; ++i)
            list.meshVertices.push_back({Narrow(polygons.points[i]), {0, 0, 0}});
        return;
    }
    for (Int32 i = 0; i < polygons.count; ++i) {
        for (Int32 corner = 0; corner < 4; ++corner) {
            const Vector32& normal = normals[static_cast<size_t>(i) * 4 + static_cast<size_t>(corner)];
            const Vector position = polygons.valid(i) ? polygons.points[polygons.corners[i][corner]] : Vector();
            list.meshVertices.push_back({Narrow(position), {normal.x, normal.y, normal.z}});
        }
    }
}

std::vector<DrawMesh> addMesh(DrawList& list, const Polygons& polygons, const CornerNormals& normals,
                              const std::vector<uint32_t>& parts, size_t partCount)
{
    addVertices(list, polygons, normals);
    std::vector<size_t> starts;
    for (uint32_t part = 0; part < partCount; ++part) {
        starts.push_back(list.meshIndices.size());
        for (Int32 i = 0; i < polygons.count; ++i) {
            if (parts[static_cast<size_t>(i)] != part || !polygons.valid(i)) continue;
            const auto index = [&](Int32 corner) {
                return static_cast<uint32_t>(normals.empty() ? polygons.corners[i][corner] : i * 4 + corner);
            };
            list.meshIndices.insert(list.meshIndices.end(), {index(0), index(1), index(2)});
            if (!polygons.corners[i].IsTriangle())
                list.meshIndices.insert(list.meshIndices.end(), {index(0), index(2), index(3)});
        }
    }
    starts.push_back(list.meshIndices.size());

    const DrawMesh whole = list.closeMesh();
    std::vector<DrawMesh> meshes;
    for (size_t part = 0; part < partCount; ++part) {
        DrawMesh mesh = whole;
        mesh.firstIndex = starts[part];
        mesh.indexCount = starts[part + 1] - starts[part];
        meshes.push_back(mesh);
    }
    return meshes;
}

} // namespace

const std::vector<DrawMesh>& MeshRecorder::record(PolygonObject& object, const std::vector<const BaseSelect*>& claims)
{
    const auto [entry, fresh] = known.try_emplace({&object, claims});
    if (!fresh) return entry->second;

    const Polygons polygons{object.GetPointR(), object.GetPointCount(), object.GetPolygonR(), object.GetPolygonCount()};
    entry->second.resize(claims.size() + 1);
    if (!polygons.points || !polygons.corners || polygons.count <= 0) return entry->second;

    CornerNormals normals = normalsOfTag(object, polygons.count);
    if (normals.empty()) normals = smoothNormals(object, polygons);
    entry->second = addMesh(list, polygons, normals, partsOf(polygons.count, claims), claims.size() + 1);
    return entry->second;
}

} // namespace host
