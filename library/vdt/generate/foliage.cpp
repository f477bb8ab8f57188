#include "vdt/generate/foliage.h"

namespace vdt {
namespace {

// Grows the arrays once for all copies.
void reserveFoliage(const Skeleton& skeleton, std::span<const VariantMesh> foliage, std::string_view season,
                    Mesh& output)
{
    uint64_t pointCount = 0, polygonCount = 0, cornerCount = 0;
    for (const VariantMesh& record : foliage) {
        if (!IsShown(record, season)) continue;
        uint64_t copies = 0;
        for (const SkeletonConnector& connector : skeleton.connectors)
            copies += IsPlacedAt(skeleton, connector, record);
        pointCount += copies * record.mesh->positions.size();
        polygonCount += copies * record.mesh->polygonEnds.size();
        cornerCount += copies * record.mesh->polygonVertices.size();
    }
    output.reserveMore(pointCount, cornerCount, polygonCount, cornerCount);
}

} // namespace

Matrix ConnectorFrame(const Skeleton& skeleton, const SkeletonConnector& connector)
{
    const Quaternion orient = Normalized(connector.attributes.orient);
    Matrix frame = ToMatrix(orient, skeleton.points[connector.point].position);
    // Row vectors: the scale applies before the turn.
    for (int axis = 0; axis < 3; ++axis) frame.setRow(axis, connector.attributes.scale * frame.row(axis));
    return frame;
}

void PlaceFoliage(const Skeleton& skeleton, std::span<const VariantMesh> foliage, std::string_view season,
                  MeshOutputAccessor& output)
{
    if (Mesh* mesh = dynamic_cast<Mesh*>(&output)) reserveFoliage(skeleton, foliage, season, *mesh);

    for (const VariantMesh& record : foliage) {
        if (!IsShown(record, season)) continue;
        for (const SkeletonConnector& connector : skeleton.connectors)
            if (IsPlacedAt(skeleton, connector, record))
                output.AppendMesh(*record.mesh, ConnectorFrame(skeleton, connector));
    }
}

} // namespace vdt
