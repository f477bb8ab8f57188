// Foliage: small meshes placed at a skeleton's connectors.
#pragma once

#include "vdt/math/matrix.h"
#include "vdt/mesh/variant_mesh.h"
#include "vdt/skeleton/skeleton.h"

#include <span>
#include <string_view>

namespace vdt {

/// True if the record has a mesh that is shown in `season`.
inline bool IsShown(const VariantMesh& record, std::string_view season)
{
    return record.mesh && record.appliesTo(season);
}

/// True if the connector places the record's mesh. One that stands on no point places nothing.
inline bool IsPlacedAt(const Skeleton& skeleton, const SkeletonConnector& connector, const VariantMesh& record)
{
    return connector.attributes.group == record.group && connector.point < skeleton.points.size();
}

/// Where a mesh placed at `connector` stands: scaled by its scale, turned by its orient, moved to its point.
Matrix ConnectorFrame(const Skeleton& skeleton, const SkeletonConnector& connector);

/// Appends, record by record, each mesh that applies to `season` at every connector of its group.
void PlaceFoliage(const Skeleton& skeleton, std::span<const VariantMesh> foliage, std::string_view season,
                  MeshOutputAccessor& output);

} // namespace vdt
