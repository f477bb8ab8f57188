// One placed copy of a foliage mesh as a source of surface samples.
#pragma once

#include "vdt/generate/point_cloud_source.h"
#include "vdt/math/matrix.h"
#include "vdt/mesh/mesh.h"

namespace vdt {

/// The sum of the polygons' areas, taken as triangles and quads.
double MeshArea(const MeshInputAccessor& mesh);

class LeafMesh final : public PointCloudSource {
public:
    /// `leaf` must outlive this.
    LeafMesh(const Mesh& leaf, const Matrix& frame, float pointWeight) : mesh(leaf), matrix(frame), weight(pointWeight)
    {
    }

    /// Of the mesh as it is stored: the scale of the placement is left to the cloud.
    double Area() const override { return MeshArea(mesh); }
    /// Anywhere on the polygon that `t` chooses; all polygons are equally likely.
    CloudSample Sample(double t, MersenneTwister& random) const override;
    LitSample SampleLit(double t, MersenneTwister& random, const Vector3& direction) const override;

    const Mesh& mesh;
    Matrix matrix; // see ConnectorFrame
    float weight;  // of the connector's point
};

} // namespace vdt
