// How much of a plant is kept when a smaller skeleton is derived from it; see Skeleton::Reduce.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace vdt {

class Skeleton;
struct VariantMesh;

struct ReductionParameters {
    static constexpr uint32_t kAllLevels = std::numeric_limits<uint32_t>::max();

    uint32_t maxLevel = kAllLevels; // the deepest branching level that is kept; the trunk is level 1
    float minRadius = 0;            // a branch ends at its first vertex that is no thicker, model units
    float foliageAmount = 1;        // the share of connectors that is kept, enlarged so that the crown stays as dense
    float foliageThinning = 1;      // a further share, with nothing enlarged for it

    /// True if a skeleton reduced by these is the whole skeleton.
    bool keepAll() const;

    friend bool operator==(const ReductionParameters&, const ReductionParameters&) = default;
};

/// The skeleton reduced, in `room`, or `whole` itself where there is nothing to reduce.
const Skeleton& ReducedSkeleton(const Skeleton& whole, std::span<const VariantMesh> foliage, std::string_view season,
                                const ReductionParameters& parameters, Skeleton& room);

} // namespace vdt
