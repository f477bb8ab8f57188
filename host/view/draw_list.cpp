#include "view/draw_list.h"

#include <algorithm>

namespace host {

bool DrawState::operator==(const DrawState& other) const
{
    return space == other.space && matrix == other.matrix && depthTest == other.depthTest &&
           depthWrite == other.depthWrite && colors == other.colors && size == other.size &&
           depthOffset == other.depthOffset;
}

void DrawBox::extend(const std::array<float, 3>& point)
{
    if (empty()) {
        minimum = maximum = point;
        return;
    }
    for (size_t axis = 0; axis < 3; ++axis) {
        minimum[axis] = std::min(minimum[axis], point[axis]);
        maximum[axis] = std::max(maximum[axis], point[axis]);
    }
}

void DrawList::add(DrawKind kind, const DrawState& state, const DrawVertex* first, size_t count)
{
    if (count == 0) return;
    if (batches.empty() || batches.back().kind != kind || !(batches.back().state == state)) {
        DrawBatch batch;
        batch.kind = kind;
        batch.state = state;
        batch.first = vertices.size();
        batches.push_back(batch);
    }
    DrawBatch& batch = batches.back();
    vertices.insert(vertices.end(), first, first + count);
    batch.count += count;
    for (size_t i = 0; i < count; ++i) batch.box.extend(first[i].position);
}

DrawMesh DrawList::closeMesh()
{
    DrawMesh mesh{
        closedVertices, meshVertices.size() - closedVertices, closedIndices, meshIndices.size() - closedIndices, {}};
    for (size_t i = closedVertices; i < meshVertices.size(); ++i) mesh.box.extend(meshVertices[i].position);
    closedVertices = meshVertices.size();
    closedIndices = meshIndices.size();
    return mesh;
}

void DrawList::addMesh(const DrawMesh& mesh, const DrawState& state, const std::array<float, 4>& color)
{
    if (mesh.indexCount == 0) return;
    DrawBatch batch;
    batch.kind = DrawKind::Mesh;
    batch.state = state;
    batch.first = mesh.firstIndex;
    batch.count = mesh.indexCount;
    batch.firstVertex = mesh.firstVertex;
    batch.color = color;
    batch.box = mesh.box;
    batches.push_back(batch);
}

} // namespace host
