// A plant reduced to what a viewport draws of it: thick branches first as polylines, foliage as points.
#pragma once

#include "vdt/model/model_variant.h"

#include <map>
#include <span>
#include <string_view>

namespace vdt {

/// What receives the stream. Positions and radii are in model units, colours sRGB.
class DrawHelper {
public:
    virtual ~DrawHelper() = default;

    /// Announces at most `count` points, each standing for `meanArea` of foliage. False to get none.
    virtual bool BeginPoints(uint64_t count, double meanArea);
    /// False to get no more.
    virtual bool AddDrawPoint(const Vector3& position, const Color3f& colour) = 0;
    /// One branch, from its root end; one entry a node in each list. The views end with the call.
    virtual bool AddPolyline(std::span<const Vector3> positions, std::span<const Color3f> colours,
                             std::span<const double> radii) = 0;
};

struct DrawOptions {
    std::string_view season{};                 // foliage without a season is drawn in all
    const std::map<int32_t, Color3f>& colours; // by material id
    Color3f defaultColour{};                   // of other materials
    bool shaded = false;                       // darker towards the crown's centre
    uint64_t maxSegments = 0;                  // no further branch is begun once there are so many
    uint64_t maxPoints = 0;
};

/// Streams an expanded variant: branches by falling largest radius, then one point for each run of connectors on one
/// point, in an order of which any prefix is an even sample of the crown.
void FillDrawHelper(DrawHelper& helper, const ModelVariant& variant, const DrawOptions& options);

} // namespace vdt
