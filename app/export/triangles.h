// Scene meshes as triangles for formats that know nothing else, and their copies put into place.
#pragma once

#include "export/scene.h"

namespace verdanth {

/// One value of each kind a vertex; three indices a triangle. No triangle has two corners on one point or no area.
struct TriangleMesh {
    vdt::Array<Float3> positions;
    vdt::Array<Float3> normals;
    vdt::Array<vdt::Vector2f> coordinates;
    vdt::Array<uint32_t> indices;
};

/// The polygons of one material, with the vertices that they use. A quad is cut so that neither half faces the other
/// way, larger polygons from their first corner.
TriangleMesh TrianglesOf(const SceneMesh& mesh, uint32_t material);

/// The materials that a mesh uses, ascending.
std::vector<uint32_t> MaterialsOf(const SceneMesh& mesh);

/// Puts points and normals of a mesh where one copy of it stands.
class Placer {
public:
    explicit Placer(const Placement& placement);

    Float3 point(const Float3& p) const;
    Float3 normal(const Float3& n) const;
    /// True if the copy is mirrored, so that polygons have to run the other way round.
    bool mirrors() const { return mirrored; }

private:
    vdt::Matrix matrix;
    vdt::Matrix turn; // of unit scale, and negative if the matrix is
    bool mirrored;
};

} // namespace verdanth
