#include "vdt/model/model.h"

namespace vdt {

void Model::mapPaths(const PathMapper& mapper)
{
    for (MaterialData& material : materials) material.mapPaths(mapper);
    for (ModelVariant& variant : variants) variant.mapExtref(mapper);
}

} // namespace vdt
