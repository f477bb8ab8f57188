#include "vdt/generate/draw_helper.h"

#include "vdt/generate/foliage.h"
#include "vdt/math/mersenne_twister.h"
#include "vdt/memory/prefetch.h"
#include "vdt/skeleton/walker.h"

#include <limits>

namespace vdt {
namespace {

Color3f colourOf(int32_t material, const DrawOptions& options)
{
    const auto found = options.colours.find(material);
    return found == options.colours.end() ? options.defaultColour : found->second;
}

// A quarter of the brightness is left where the weight is 1.
Color3f darkened(const Color3f& colour, float weight)
{
    const auto channel = [weight](float c) { return c + (0.25F * c - c) * weight; };
    return {channel(colour.r), channel(colour.g), channel(colour.b)};
}

Color3f shadedColour(const Color3f& colour, const SkeletonPoint& point, const DrawOptions& options)
{
    return options.shaded ? darkened(colour, point.weight) : colour;
}

// A branch and what decides when it is drawn. Filed in the order of the walk; of branches equally thick the one filed
// later is drawn first.
struct FiledBranch {
    double largestRadius;
    uint64_t filing;
    uint64_t branch;

    bool operator<(const FiledBranch& other) const
    {
        if (largestRadius != other.largestRadius) return largestRadius < other.largestRadius;
        return filing < other.filing;
    }
};

std::vector<FiledBranch> fileBranches(const Skeleton& skeleton)
{
    constexpr double kThinnest = -std::numeric_limits<double>::infinity(); // also for what is no number
    std::vector<FiledBranch> filed;
    filed.reserve(skeleton.branches.size());
    double largest = kThinnest;
    SkeletonWalker walker(skeleton, true, WalkFilter::SkipThinRuns);
    while (walker.advance()) {
        const SkeletonVertex& vertex = walker.vertex();
        const double radius = vertex.attributes.radius;
        // Compatibility: where the walk passes over a thin first vertex, the branch before lends its radius. Existing
        // scenes show the branches in this order.
        if (!vertex.prev)
            largest = std::max(kThinnest, radius);
        else if (radius > largest)
            largest = radius;
        if (!vertex.next) filed.push_back({largest, filed.size(), vertex.branch});
    }
    return filed;
}

class BranchWriter {
public:
    BranchWriter(DrawHelper& drawHelper, const Skeleton& source, const DrawOptions& drawOptions)
        : helper(drawHelper),
          skeleton(source),
          options(drawOptions)
    {
    }

    void write(const SkeletonBranch& branch)
    {
        positions.clear();
        colours.clear();
        radii.clear();
        const Color3f colour = colourOf(branch.matid, options);
        for (const SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next) {
            const SkeletonPoint& point = skeleton.points[vertex->point];
            positions.push_back(point.position);
            colours.push_back(shadedColour(colour, point, options));
            radii.push_back(vertex->attributes.radius);
        }
        helper.AddPolyline(positions, colours, radii);
    }

private:
    DrawHelper& helper;
    const Skeleton& skeleton;
    const DrawOptions& options;
    std::vector<Vector3> positions;
    std::vector<Color3f> colours;
    std::vector<double> radii;
};

void writeBranches(DrawHelper& helper, const Skeleton& skeleton, const DrawOptions& options)
{
    if (options.maxSegments == 0) return;

    // A heap rather than a sorted list: of tens of thousands of branches only a few hundred are drawn.
    std::vector<FiledBranch> heap = fileBranches(skeleton);
    std::make_heap(heap.begin(), heap.end());
    BranchWriter writer(helper, skeleton, options);
    uint64_t total = 0;
    while (!heap.empty() && total < options.maxSegments) {
        std::pop_heap(heap.begin(), heap.end());
        const SkeletonBranch& branch = skeleton.branches[heap.back().branch];
        heap.pop_back();
        writer.write(branch);
        total += branch.vertexCount - 1;
    }
}

struct FoliagePoint {
    uint64_t point; // of the skeleton
    Color3f colour; // not yet darkened
};

struct FoliagePoints {
    std::vector<FoliagePoint> points; // one for each run of connectors on one point
    double area = 0;                  // of all leaves, roughly
};

// How much of a leaf is seen, on average over all directions, if it fills its box as a sheet: a third of the areas of
// three sides.
double seenArea(const Mesh& mesh)
{
    Box box;
    mesh.GetBounds(box);
    if (box.isEmpty()) return 0;
    const Vector3 size = box.size();
    const double dx = std::fabs(size.x), dy = std::fabs(size.y), dz = std::fabs(size.z);
    return (dx * dz + dy * dz + dy * dx) / 3;
}

Color3f meanColour(const Mesh& mesh, const DrawOptions& options)
{
    const uint64_t polygonCount = mesh.PolygonCount();
    if (polygonCount == 0) return options.defaultColour;

    Color3f sum;
    std::vector<uint64_t> vertices;
    std::vector<Vector3> coordinates;
    int32_t material = 0;
    for (uint64_t polygon = 0; polygon < polygonCount; ++polygon) {
        if (!mesh.GetPolygon(polygon, vertices, coordinates, material)) continue;
        const Color3f colour = colourOf(material, options);
        sum = {sum.r + colour.r, sum.g + colour.g, sum.b + colour.b};
    }
    const auto count = static_cast<float>(polygonCount);
    return {sum.r / count, sum.g / count, sum.b / count};
}

FoliagePoints collectFoliage(const ModelVariant& variant, const DrawOptions& options)
{
    FoliagePoints foliage;
    const Skeleton& skeleton = variant.skeleton;
    for (const VariantMesh& record : variant.meshes) {
        if (!IsShown(record, options.season)) continue;
        const double area = seenArea(*record.mesh);
        const Color3f colour = meanColour(*record.mesh, options);
        for (const SkeletonConnector& connector : skeleton.connectors) {
            if (!IsPlacedAt(skeleton, connector, record)) continue;
            foliage.area += area * connector.attributes.scale;
            if (foliage.points.empty() || foliage.points.back().point != connector.point)
                foliage.points.push_back({connector.point, colour});
        }
    }
    return foliage;
}

void writePoints(DrawHelper& helper, const ModelVariant& variant, const DrawOptions& options)
{
    constexpr uint64_t kAhead = 8; // shuffled points lie anywhere in memory

    FoliagePoints foliage = collectFoliage(variant, options);
    std::vector<FoliagePoint>& points = foliage.points;
    ShuffleRange(points.begin(), points.end());
    const uint64_t count = std::min<uint64_t>(points.size(), options.maxPoints);

    if (!helper.BeginPoints(count, foliage.area / static_cast<double>(count))) return;
    const Array<SkeletonPoint>& skeletonPoints = variant.skeleton.points;
    for (uint64_t i = 0; i < count; ++i) {
        if (i + kAhead < count) Prefetch(skeletonPoints[points[i + kAhead].point]);
        const SkeletonPoint& point = skeletonPoints[points[i].point];
        if (!helper.AddDrawPoint(point.position, shadedColour(points[i].colour, point, options))) return;
    }
}

} // namespace

bool DrawHelper::BeginPoints(uint64_t /*count*/, double /*meanArea*/)
{
    return true;
}

void FillDrawHelper(DrawHelper& helper, const ModelVariant& variant, const DrawOptions& options)
{
    writeBranches(helper, variant.skeleton, options);
    writePoints(helper, variant, options);
}

} // namespace vdt
