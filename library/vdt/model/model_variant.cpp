#include "vdt/model/model_variant.h"

#include <algorithm>

namespace vdt {

void ModelVariant::releaseGeometry()
{
    geometryDropped = geometryDropped || (extref.empty() && (!skeleton.isEmpty() || !meshes.empty()));
    skeleton.Clear();
    meshes.clear();
}

Box ModelVariant::computeBound() const
{
    if (!extref.empty() && skeleton.isEmpty()) return bound;

    Box box;
    skeleton.GetBounds(box, BoundsMode::AllPoints);
    if (skeleton.points.empty() || skeleton.connectors.empty()) return box;

    // Whatever is placed at a connector reaches no farther than the largest mesh's diagonal.
    Box foliage;
    skeleton.GetBounds(foliage, BoundsMode::ConnectorPoints);
    if (!foliage.isEmpty()) {
        double reach = 0;
        for (const VariantMesh& record : meshes) {
            Box meshBound;
            if (record.mesh) record.mesh->GetBounds(meshBound);
            if (!meshBound.isEmpty()) reach = std::max(reach, meshBound.diagonal());
        }
        foliage.min = foliage.min - Vector3{reach, reach, reach};
        foliage.max = foliage.max + Vector3{reach, reach, reach};
    }
    box.extend(foliage);
    return box;
}

void ModelVariant::reset()
{
    *this = ModelVariant();
}

void ModelVariant::mapExtref(const PathMapper& mapper)
{
    if (!IsAbsolutePath(extref)) extref = mapper.map(extref);
}

} // namespace vdt
