#include "export/scene_mesh_builder.h"

#include <cmath>

namespace verdanth {
namespace {

constexpr uint32_t kNoVertex = ~uint32_t{0};

bool isFinite(const Float3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

float finiteOrZero(float value)
{
    return std::isfinite(value) ? value : 0;
}

} // namespace

bool SceneMeshBuilder::SetName(std::string_view name)
{
    mesh->name = name;
    return true;
}

uint64_t SceneMeshBuilder::AddPoint(const vdt::Vector3& position, const vdt::Vector3& normal)
{
    mesh->points.push_back(Narrowed(position * scale));
    mesh->normals.push_back(Narrowed(vdt::Normalized(normal)));
    firstVertex.push_back(kNoVertex);
    return mesh->points.size() - 1;
}

uint64_t SceneMeshBuilder::AddUV(float u, float v)
{
    coordinates.push_back({finiteOrZero(u), finiteOrZero(v)});
    return coordinates.size() - 1;
}

uint32_t SceneMeshBuilder::vertexFor(uint64_t point, const vdt::Vector2f& coordinate)
{
    // Beyond so many vertices on one point, sharing is not worth the search.
    constexpr int kLongestSearch = 16;
    int steps = 0;
    for (uint32_t vertex = firstVertex[point]; vertex != kNoVertex && steps < kLongestSearch;
         vertex = nextVertex[vertex], ++steps)
        if (mesh->vertices[vertex].coordinate == coordinate) return vertex;

    const auto vertex = static_cast<uint32_t>(mesh->vertices.size());
    mesh->vertices.push_back({static_cast<uint32_t>(point), coordinate});
    nextVertex.push_back(firstVertex[point]);
    firstVertex[point] = vertex;
    return vertex;
}

bool SceneMeshBuilder::AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> textureIndices,
                                  int32_t material)
{
    constexpr uint64_t kMostElements = kNoVertex - uint64_t{1};
    bool usable = mesh->points.size() < kMostElements && mesh->corners.size() + vertices.size() < kMostElements;
    for (const uint64_t point : vertices)
        usable = usable && point < mesh->points.size() && isFinite(mesh->points[point]);
    if (!usable) {
        ++droppedPolygons;
        return false;
    }

    // Corners that follow on the same point say nothing. What is left of a polygon that closes up is no surface.
    polygon.clear();
    for (size_t i = 0; i < vertices.size(); ++i) {
        if (vertices[i] == vertices[(i + 1) % vertices.size()]) continue;
        const bool mapped = i < textureIndices.size() && textureIndices[i] < coordinates.size();
        polygon.push_back(vertexFor(vertices[i], mapped ? coordinates[textureIndices[i]] : vdt::Vector2f{0, 0}));
    }
    if (polygon.size() < 3) return true;

    mesh->corners.insert(mesh->corners.end(), polygon.begin(), polygon.end());
    mesh->polygonEnds.push_back(static_cast<uint32_t>(mesh->corners.size()));
    mesh->polygonMaterials.push_back(indexOfMaterial(material));
    return true;
}

void SceneMeshBuilder::finish()
{
    const auto pointOf = [this](uint32_t corner) { return mesh->vertices[mesh->corners[corner]].point; };
    const auto isUnit = [](const Float3& n) { return std::fabs(vdt::Length(Widened(n)) - 1) < 1e-3; };

    std::vector<bool> wanting(mesh->points.size());
    bool any = false;
    for (size_t i = 0; i < wanting.size(); ++i) {
        wanting[i] = !isUnit(mesh->normals[i]);
        if (wanting[i]) mesh->normals[i] = {0, 0, 0};
        any = any || wanting[i];
    }
    if (!any) return;

    for (size_t i = 0; i < mesh->polygonEnds.size(); ++i) {
        const uint32_t start = mesh->polygonStart(i);
        const uint32_t end = mesh->polygonEnds[i];
        vdt::Vector3 normal{0, 0, 0};
        const vdt::Vector3 origin = Widened(mesh->points[pointOf(start)]);
        for (uint32_t c = start + 1; c + 1 < end; ++c)
            normal +=
                vdt::Cross(Widened(mesh->points[pointOf(c)]) - origin, Widened(mesh->points[pointOf(c + 1)]) - origin);
        const double length = vdt::Length(normal);
        if (!(length > 0) || !std::isfinite(length)) continue;
        for (uint32_t c = start; c < end; ++c) {
            const uint32_t point = pointOf(c);
            if (wanting[point]) mesh->normals[point] = Narrowed(Widened(mesh->normals[point]) + normal / length);
        }
    }
    for (size_t i = 0; i < wanting.size(); ++i) {
        if (!wanting[i]) continue;
        vdt::Vector3 normal = Widened(mesh->normals[i]);
        mesh->normals[i] = vdt::Normalize(normal) ? Narrowed(normal) : Float3{0, 1, 0};
    }
}

void TellOfDroppedPolygons(uint64_t dropped, vdt::MessageHandler& messages)
{
    if (dropped > 0)
        messages.warning(std::to_string(dropped) + " polygons are left out: their corners are not at finite positions");
}

} // namespace verdanth
