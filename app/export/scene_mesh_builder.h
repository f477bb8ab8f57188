// Takes what a generator writes and makes a scene mesh of it.
#pragma once

#include "export/scene.h"
#include "vdt/mesh/mesh_accessors.h"
#include "vdt/messages/message_handler.h"

#include <functional>

namespace verdanth {

class SceneMeshBuilder final : public vdt::MeshOutputAccessor {
public:
    /// `materialIndex` turns a material id into a position in the scene's materials.
    SceneMeshBuilder(SceneMesh& target, double metersPerUnit, std::function<uint32_t(int32_t)> materialIndex)
        : mesh(&target),
          scale(metersPerUnit),
          indexOfMaterial(std::move(materialIndex))
    {
    }

    bool SetName(std::string_view name) override;
    uint64_t AddPoint(const vdt::Vector3& position, const vdt::Vector3& normal) override;
    uint64_t AddUV(float u, float v) override;
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t> textureIndices,
                    int32_t material) override;

    /// Gives every point a unit normal: its own, else the mean of its polygons.
    void finish();

    uint64_t droppedPolygons = 0; // for positions that are not finite, or more points than a mesh can count

private:
    uint32_t vertexFor(uint64_t point, const vdt::Vector2f& coordinate);

    SceneMesh* mesh;
    double scale;
    std::function<uint32_t(int32_t)> indexOfMaterial;
    vdt::Array<vdt::Vector2f> coordinates;
    std::vector<uint32_t> firstVertex; // one a point: the last vertex made on it
    std::vector<uint32_t> nextVertex;  // one a vertex: another one on its point
    std::vector<uint32_t> polygon;     // the one under construction
};

/// Warns of polygons that builders dropped, if there are any.
void TellOfDroppedPolygons(uint64_t dropped, vdt::MessageHandler& messages);

} // namespace verdanth
