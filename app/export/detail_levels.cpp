#include "export/detail_levels.h"

#include "console/text_table.h"
#include "vdt/generate/control_mesh.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <map>

namespace verdanth {
namespace {

constexpr double kTolerance = 0.1; // of a budget

// Counts what subdivision makes of a control mesh from the corners of its polygons.
class CornerCounter final : public vdt::MeshOutputAccessor {
public:
    bool SetName(std::string_view) override { return true; }
    uint64_t AddPoint(const vdt::Vector3&, const vdt::Vector3&) override { return points++; }
    uint64_t AddUV(float, float) override { return coordinates++; }
    bool AddPolygon(std::span<const uint64_t> vertices, std::span<const uint64_t>, int32_t) override
    {
        corners.push_back(static_cast<uint32_t>(vertices.size()));
        return true;
    }

    uint64_t points = 0;
    uint64_t coordinates = 0;
    std::vector<uint32_t> corners; // one a polygon
};

bool differs(uint64_t count, uint64_t budget, double tolerance)
{
    const auto wanted = static_cast<double>(budget);
    return std::fabs(static_cast<double>(count) - wanted) > tolerance * wanted;
}

uint64_t trianglesIn(uint64_t corners)
{
    return corners > 2 ? corners - 2 : 0;
}

uint64_t trianglesIn(const vdt::Mesh& mesh)
{
    uint64_t triangles = 0;
    for (uint64_t i = 0; i < mesh.polygonEnds.size(); ++i)
        triangles += trianglesIn(mesh.polygonEnds[i] - mesh.polygonStart(i));
    return triangles;
}

// Searches in one plant. Counting needs no more than control meshes.
class DetailSearch {
public:
    DetailSearch(const SceneRequest& plant, vdt::MessageHandler& handler) : request(&plant), messages(&handler)
    {
        const vdt::ModelVariant& variant = plant.variant;
        for (const vdt::VariantMesh& record : variant.meshes)
            if (record.mesh && record.appliesTo(plant.season))
                trianglesOfGroup[record.group] += trianglesIn(*record.mesh);
        for (const vdt::SkeletonBranch& branch : variant.skeleton.branches)
            for (const vdt::SkeletonVertex* v = branch.firstVertex; v; v = v->next)
                if (std::isfinite(v->attributes.radius)) radii.push_back(static_cast<float>(v->attributes.radius));
        std::sort(radii.begin(), radii.end());
        radii.erase(std::unique(radii.begin(), radii.end()), radii.end());
    }

    TriangleCount count(const PlantDetail& detail) const { return {countBranches(detail), countFoliage(detail)}; }

    PlantDetail find(const PlantDetail& most, uint64_t budget) const
    {
        const TriangleCount all = count(most);
        if (all.total() <= budget) return most;
        const double share = static_cast<double>(budget) / static_cast<double>(all.total());
        const auto branchBudget = static_cast<uint64_t>(share * static_cast<double>(all.branches));

        const PlantDetail cut = withFewerBranches(most, branchBudget);
        const uint64_t branches = countBranches(cut);
        const uint64_t kept = connectorsWithin(budget > branches ? budget - branches : 0, most, cut);
        const PlantDetail below = fitted(withConnectors(kept, most, cut), most, budget);
        if (!differs(count(below).total(), budget, kTolerance / 2)) return below;
        const PlantDetail above = fitted(withConnectors(kept + 1, most, cut), most, budget);
        return distance(above, budget) < distance(below, budget) ? above : below;
    }

private:
    uint64_t countBranches(const PlantDetail& detail) const
    {
        vdt::ReductionParameters bare = detail.reduction;
        bare.foliageAmount = 0;
        vdt::Skeleton skeleton;
        request->variant.skeleton.Reduce(request->variant.meshes, request->season, skeleton, bare);
        CornerCounter counter;
        std::vector<int32_t> levels;
        vdt::NullMessageHandler silence;
        vdt::GenerateControlMesh({.skeleton = skeleton,
                                  .foliage = request->variant.meshes,
                                  .output = counter,
                                  .subdivisionLevel = detail.subdivisionLevel,
                                  .polygonLevels = levels,
                                  .messages = silence});
        uint64_t triangles = 0;
        for (size_t i = 0; i < counter.corners.size(); ++i) {
            const int32_t level = detail.subdivisionLevel > 0 && request->uniform ? detail.subdivisionLevel
                                  : i < levels.size()                             ? levels[i]
                                                                                  : 0;
            // The first step makes a quad at each corner, each further one four quads of one.
            triangles += level > 0 ? counter.corners[i] * 2ULL << (2 * (level - 1)) : trianglesIn(counter.corners[i]);
        }
        return triangles;
    }

    uint64_t countFoliage(const PlantDetail& detail) const
    {
        vdt::ReductionParameters leavesAlone = detail.reduction;
        leavesAlone.maxLevel = 0;
        vdt::Skeleton skeleton;
        request->variant.skeleton.Reduce(request->variant.meshes, request->season, skeleton, leavesAlone);
        uint64_t triangles = 0;
        for (const vdt::SkeletonConnector& connector : skeleton.connectors) {
            const auto found = trianglesOfGroup.find(connector.attributes.group);
            if (found != trianglesOfGroup.end()) triangles += found->second;
        }
        return triangles;
    }

    // Rounded less first, as long as that does not ask for more than is there; then cut at their thin ends.
    PlantDetail withFewerBranches(PlantDetail detail, uint64_t budget) const
    {
        while (detail.subdivisionLevel > 0 && countBranches(detail) > 2 * budget) --detail.subdivisionLevel;
        if (countBranches(detail) <= budget) return detail;

        // The thinnest limit that is enough, or the one before it where that is nearer. The thickest radius of all
        // leaves nothing.
        const auto thinnest = std::upper_bound(radii.begin(), radii.end(), detail.reduction.minRadius);
        const auto countAt = [&](float radius) {
            detail.reduction.minRadius = radius;
            return countBranches(detail);
        };
        const auto enough = std::partition_point(
            thinnest, radii.end(), [&](float radius) { return !messages->isCancelled() && countAt(radius) > budget; });
        if (enough == radii.end()) return detail;
        if (enough != thinnest && countAt(*(enough - 1)) - budget < budget - countAt(*enough))
            detail.reduction.minRadius = *(enough - 1);
        else
            detail.reduction.minRadius = *enough;
        return detail;
    }

    uint64_t distance(const PlantDetail& detail, uint64_t budget) const
    {
        const uint64_t total = count(detail).total();
        return std::max(total, budget) - std::min(total, budget);
    }

    // What leaves cannot make up, be it that they come in heaps or that there are none, branches have to.
    PlantDetail fitted(PlantDetail detail, const PlantDetail& most, uint64_t budget) const
    {
        const TriangleCount found = count(detail);
        if (!differs(found.total(), budget, kTolerance / 2)) return detail;
        const PlantDetail cut = withFewerBranches(most, budget > found.foliage ? budget - found.foliage : 0);
        detail.subdivisionLevel = cut.subdivisionLevel;
        detail.reduction.minRadius = cut.reduction.minRadius;
        return detail;
    }

    // Reduction enlarges lengths by what areas lose; with half of the loss told to be thinning, which enlarges nothing,
    // the leaves that stay have the area of all.
    PlantDetail withConnectors(uint64_t kept, const PlantDetail& most, PlantDetail detail) const
    {
        const uint64_t all = request->variant.skeleton.connectors.size();
        const double share = kept < all ? static_cast<double>(kept) / static_cast<double>(all) : 1;
        const auto half = static_cast<float>(std::sqrt(share));
        detail.reduction.foliageAmount = most.reduction.foliageAmount * half;
        detail.reduction.foliageThinning = most.reduction.foliageThinning * half;
        return detail;
    }

    // How many connectors there is room for. Reduction takes them from the front of one order, so that more of them
    // never have fewer triangles.
    uint64_t connectorsWithin(uint64_t room, const PlantDetail& most, const PlantDetail& detail) const
    {
        uint64_t kept = 0;
        const uint64_t all = request->variant.skeleton.connectors.size();
        for (uint64_t step = std::bit_floor(all); step > 0 && !messages->isCancelled(); step /= 2)
            if (countFoliage(withConnectors(kept + step, most, detail)) <= room) kept += step;
        return kept;
    }

    const SceneRequest* request;
    vdt::MessageHandler* messages;
    std::map<int32_t, uint64_t> trianglesOfGroup;
    std::vector<float> radii; // all that occur, ascending
};

} // namespace

TriangleCount CountTriangles(const SceneRequest& request, const PlantDetail& detail)
{
    vdt::NullMessageHandler silence;
    return DetailSearch(request, silence).count(detail);
}

bool FindDetails(const SceneRequest& request, const std::vector<uint64_t>& budgets, bool mustMeet,
                 std::vector<PlantDetail>& details, vdt::MessageHandler& messages)
{
    const DetailSearch search(request, messages);
    const PlantDetail most = request.details.front();
    details.clear();
    for (const uint64_t budget : budgets) {
        if (messages.isCancelled()) return false;
        details.push_back(search.find(most, budget));
        const uint64_t found = search.count(details.back()).total();
        if (found == 0 && budgets.front() > 0 && !mustMeet) {
            messages.error("the plant is too small for " + std::to_string(budgets.size()) +
                           " levels of detail, each a quarter of the one before; it can have " +
                           std::to_string(details.size() - 1));
            return false;
        }
        if (!differs(found, budget, kTolerance)) continue;
        if (mustMeet) {
            messages.error("a level of " + GroupedNumber(budget) +
                           " triangles cannot be had of this plant; the nearest has " + GroupedNumber(found));
            return false;
        }
        messages.warning("level " + std::to_string(details.size() - 1) + " has " + GroupedNumber(found) +
                         " triangles instead of " + GroupedNumber(budget) + ": no cut of the plant comes nearer");
    }
    return true;
}

} // namespace verdanth
