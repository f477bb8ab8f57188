// A plant's surface, branches and leaves alike, as scattered points: a light stand-in for its geometry.
//
// Every cloud is drawn by a generator of its own with the same seed, so that it does not flicker between builds.
#pragma once

#include "vdt/generate/point_cloud_source.h"
#include "vdt/memory/array.h"
#include "vdt/model/model_variant.h"

#include <string_view>

namespace vdt {

/// The ends of a segment of a branch.
struct FrustrumEnds {
    double baseRadius, topRadius; // model units
    float baseWeight, topWeight;
};

/// The mantle of one segment of a branch.
class ConicalFrustrum final : public PointCloudSource {
public:
    ConicalFrustrum(const Vector3& basePoint, const Vector3& segment, const FrustrumEnds& ends, int32_t matid);

    /// Not the mantle's true area: the product of the radii stands where it has their sum.
    double Area() const override { return Area(baseRadius, topRadius, length); }
    static double Area(double baseRadius, double topRadius, double length);

    CloudSample Sample(double t, MersenneTwister& random) const override;
    LitSample SampleLit(double t, MersenneTwister& random, const Vector3& direction) const override;

    Vector3 base;
    Vector3 axis; // unit length unless the segment has no direction
    double topRadius;
    double baseRadius;
    float topWeight;
    float baseWeight;
    double length;
    bool isCylinder;
    int32_t material;
};

/// Scatters `count` samples over an expanded variant, in even strata of area: first along the branches in the order of
/// a walk, then over the foliage that `season` shows. With `shuffle`, in an order of which any prefix is an even
/// sample too. `areaPerSample`, unless null, is told how much area each stands for. A plant with neither branches nor
/// foliage gives no samples and tells no area. Areas that are negative or no finite numbers count as 0.
void SamplePoints(const ModelVariant& variant, std::string_view season, uint64_t count, Array<CloudSample>& samples,
                  bool shuffle, double* areaPerSample);

/// A cloud without shuffling, lit from both sides by a light towards `direction`. False, with nothing written, unless
/// there are exactly `count` samples.
bool SampleLitCloud(const ModelVariant& variant, std::string_view season, uint64_t count, Vector3 direction,
                    Array<LitSample>& samples);

} // namespace vdt
