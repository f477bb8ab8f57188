// Polygon objects as meshes of a draw list.
#pragma once

#include "c4d_basetag.h"
#include "view/draw_list.h"

#include <map>
#include <vector>

class BaseSelect;

namespace host {

/// Reads each object once, so that many instances of it share a mesh.
class MeshRecorder {
public:
    explicit MeshRecorder(DrawList& recorded) : list(recorded) {}

    /// The object's polygons in parts: the first holds those that no selection claims, each further one those of
    /// selection i - 1 that no later one claims. A null selection claims all. Corners have the normals of the object's
    /// normal tag, else those of its phong tag; without both, polygons are flat.
    const std::vector<DrawMesh>& record(PolygonObject& object, const std::vector<const BaseSelect*>& claims);

private:
    DrawList& list;
    std::map<std::pair<const PolygonObject*, std::vector<const BaseSelect*>>, std::vector<DrawMesh>> known;
};

} // namespace host
