#include "vdt/skeleton/reduce.h"

#include "vdt/math/mersenne_twister.h"
#include "vdt/memory/assert.h"
#include "vdt/mesh/variant_mesh.h"
#include "vdt/skeleton/branch_cut.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vdt {
namespace {

constexpr double kShareTolerance = 1e-6; // a share this near to 0 or 1 counts as that
constexpr double kSmallestArea = 1e-12;

bool isBelowOne(float share)
{
    return share + kShareTolerance < 1;
}

bool isNothing(float share)
{
    return share <= kShareTolerance;
}

double meanFaceArea(const Box& box)
{
    const Vector3 size = box.size();
    const double dx = std::fabs(size.x), dy = std::fabs(size.y), dz = std::fabs(size.z);
    return (dx * dz + dy * dz + dy * dx) / 3;
}

// The share of the crown's face that one leaf covers.
float leafShare(const Skeleton& skeleton, std::span<const VariantMesh> foliage, std::string_view season)
{
    double leafArea = 0;
    uint64_t leafCount = 0;
    for (const VariantMesh& record : foliage) {
        if (!record.mesh || !record.appliesTo(season)) continue;
        Box leaf;
        record.mesh->GetBounds(leaf);
        const double area = meanFaceArea(leaf);
        for (const SkeletonConnector& connector : skeleton.connectors) {
            if (connector.attributes.group != record.group) continue;
            leafArea += area * connector.attributes.scale;
            ++leafCount;
        }
    }
    Box crown;
    skeleton.GetBounds(crown, BoundsMode::ConnectorPoints);

    constexpr float kUnknown = 0.001F;
    const double meanLeaf = leafArea / static_cast<double>(leafCount);
    const double meanCrown = meanFaceArea(crown);
    if (!(meanLeaf > kSmallestArea && meanCrown > kSmallestArea)) return kUnknown;
    const double share = meanLeaf / meanCrown;
    return std::isnan(share) ? kUnknown : static_cast<float>(std::min(share, 1.0));
}

// By how much leaves have to grow so that a share of them hides as much of the crown as all did. Of n leaves that
// each cover f, the share of the crown that shows through is (1 - f)^n.
float enlargement(float f, float amount)
{
    const float exponent = 1 / amount;
    const auto shownThrough = static_cast<float>(std::pow(static_cast<double>(1 - f), static_cast<double>(exponent)));
    return (1 - shownThrough) / f;
}

uint64_t shareOf(uint64_t count, float share)
{
    return std::min(static_cast<uint64_t>(static_cast<float>(count) * share), count);
}

// Every connector gets a point of its own, also where several shared one.
void copyConnector(const Skeleton& source, uint64_t from, const ConnectorAttributes& attributes, Skeleton& target,
                   uint64_t to)
{
    const uint64_t point = source.connectors[from].point;
    if (point < source.points.size()) target.SetConnector(to, attributes, target.AddPoint(source.points[point]));
}

void selectConnectors(const Skeleton& source, std::span<const VariantMesh> foliage, std::string_view season,
                      const ReductionParameters& parameters, Skeleton& target)
{
    uint64_t keptCount = source.connectors.size();
    float f = 1;
    if (isBelowOne(parameters.foliageAmount)) {
        keptCount = shareOf(keptCount, parameters.foliageAmount);
        f = leafShare(source, foliage, season);
    }

    // One order for all shares: a smaller share keeps the beginning of what a larger one keeps.
    std::vector<uint64_t> kept(source.connectors.size());
    std::iota(kept.begin(), kept.end(), 0);
    MersenneTwister random;
    ShuffleRange(kept.begin(), kept.end(), random);
    if (isBelowOne(parameters.foliageThinning)) keptCount = shareOf(keptCount, parameters.foliageThinning);
    kept.resize(keptCount);

    target.ResizeConnectors(keptCount);
    const double scale = enlargement(f, parameters.foliageAmount);
    for (uint64_t i = 0; i < keptCount; ++i) {
        ConnectorAttributes attributes = source.connectors[kept[i]].attributes;
        attributes.scale = scale; // Compatibility: in place of its own, or thinned crowns of existing scenes change
        copyConnector(source, kept[i], attributes, target, i);
    }
}

} // namespace

bool ReductionParameters::keepAll() const
{
    return minRadius <= 0 && maxLevel == kAllLevels && !isBelowOne(foliageAmount) && !isBelowOne(foliageThinning);
}

const Skeleton& ReducedSkeleton(const Skeleton& whole, std::span<const VariantMesh> foliage, std::string_view season,
                                const ReductionParameters& parameters, Skeleton& room)
{
    if (parameters.keepAll()) return whole;
    whole.Reduce(foliage, season, room, parameters);
    return room;
}

void Skeleton::Reduce(std::span<const VariantMesh> foliage, std::string_view season, Skeleton& target,
                      const ReductionParameters& parameters) const
{
    VDT_ASSERT(this != &target);
    target.Clear();
    if (parameters.keepAll()) {
        target.Assign(*this);
        return;
    }

    const float minRadius = std::max(parameters.minRadius, 0.0F);
    CopyBranchesUntil(*this, target, [&](const SkeletonVertex& vertex, uint64_t depth) {
        return depth > parameters.maxLevel || vertex.attributes.radius <= minRadius;
    });

    if (isNothing(parameters.foliageAmount) || isNothing(parameters.foliageThinning)) return;
    target.points.reserve(target.points.size() + connectors.size());
    if (isBelowOne(parameters.foliageAmount) || isBelowOne(parameters.foliageThinning)) {
        selectConnectors(*this, foliage, season, parameters, target);
        return;
    }
    target.ResizeConnectors(connectors.size());
    for (uint64_t i = 0; i < connectors.size(); ++i) copyConnector(*this, i, connectors[i].attributes, target, i);
}

} // namespace vdt
