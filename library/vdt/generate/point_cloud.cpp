#include "vdt/generate/point_cloud.h"

#include "vdt/generate/foliage.h"
#include "vdt/generate/leaf_mesh.h"
#include "vdt/memory/prefetch.h"
#include "vdt/skeleton/walker.h"

#include <limits>
#include <new>
#include <optional>

namespace vdt {
namespace {

constexpr double kFullTurn = 6.283185307179586; // radians
constexpr double kCylinderTolerance = 1e-8;     // model units

// The X axis turned right-handed by `angle` about `axis`, which is a unit vector or next to nothing.
Vector3 turnedX(const Vector3& axis, double angle)
{
    const double w = std::cos(angle / 2);
    const Vector3 v = axis * std::sin(angle / 2);
    return {1 - 2 * (v.y * v.y + v.z * v.z), 2 * (v.x * v.y + w * v.z), 2 * (v.x * v.z - w * v.y)};
}

// All that there is to sample, in order, with the area that lies before each source. The sources themselves are made
// when samples come to them: most clouds have fewer samples than the plant has sources.
class SourceTable {
public:
    SourceTable(const ModelVariant& plant, std::string_view season) : variant(plant)
    {
        addBranches();
        for (const VariantMesh& record : variant.meshes)
            if (IsShown(record, season)) addFoliage(record);
    }

    bool isEmpty() const { return segments.empty() && leaves.empty(); }
    double totalArea() const { return total; }

    void sample(double step, std::span<CloudSample> samples) const
    {
        MersenneTwister random(MersenneTwister::kDefaultSeed);
        const uint64_t sourceCount = segments.size() + leaves.size();
        uint64_t cursor = 0;
        double start = 0, end = endOf(0);
        std::optional<ConicalFrustrum> segment;
        std::optional<LeafMesh> leaf;
        for (uint64_t i = 0; i < samples.size(); ++i) {
            const double x = random.real() * step + static_cast<double>(i) * step;
            const uint64_t before = cursor;
            while (!(end > x) && cursor + 1 < sourceCount) {
                start = end;
                end = endOf(++cursor);
            }
            const double t = part(x, start, end);
            // Made where it belongs: to copy a sample that was just written is to wait for it.
            void* const place = &samples[i];
            if (cursor < segments.size()) {
                if (!segment || cursor != before) segment.emplace(makeSegment(cursor));
                ::new (place) CloudSample(segment->Sample(t, random));
            } else {
                if (!leaf || cursor != before) leaf.emplace(makeLeaf(leaves[cursor - segments.size()]));
                ::new (place) CloudSample(leaf->Sample(t, random));
            }
        }
    }

private:
    struct Segment {
        const SkeletonVertex* top;
        double end; // the area of all sources up to and with this one
    };
    struct Leaf {
        const Mesh* mesh;
        uint64_t connector;
        double end;
    };

    // Keeps the ends ascending, so that the samples find their sources in one pass.
    double endAfter(double area)
    {
        if (area > 0 && area <= std::numeric_limits<double>::max()) total += area;
        return total;
    }

    double endOf(uint64_t source) const
    {
        return source < segments.size() ? segments[source].end : leaves[source - segments.size()].end;
    }

    // How far `x` is on its way from `start` to `end`; a source without an area is sampled at its beginning.
    static double part(double x, double start, double end)
    {
        const double t = (x - start) / (end - start);
        return t > 0 ? std::min(t, 1.0) : 0;
    }

    void addBranches()
    {
        const Skeleton& skeleton = variant.skeleton;
        uint64_t vertexCount = 0;
        for (const SkeletonBranch& branch : skeleton.branches) vertexCount += branch.vertexCount;
        segments.reserve(vertexCount);
        SkeletonWalker walker(skeleton, false, WalkFilter::SkipDeadSides);
        while (walker.advance()) {
            const SkeletonVertex& top = walker.vertex();
            if (!top.prev) continue;
            const double length =
                Length(skeleton.points[top.point].position - skeleton.points[top.prev->point].position);
            const double area = ConicalFrustrum::Area(top.prev->attributes.radius, top.attributes.radius, length);
            segments.push_back({&top, endAfter(area)});
        }
    }

    void addFoliage(const VariantMesh& record)
    {
        const double area = MeshArea(*record.mesh);
        const Skeleton& skeleton = variant.skeleton;
        for (uint64_t i = 0; i < skeleton.connectors.size(); ++i) {
            const SkeletonConnector& connector = skeleton.connectors[i];
            // Compatibility: an area grows by the square of the scale, but clouds are shared out by the scale once.
            if (IsPlacedAt(skeleton, connector, record))
                leaves.push_back({record.mesh.get(), i, endAfter(area * connector.attributes.scale)});
        }
    }

    ConicalFrustrum makeSegment(uint64_t index) const
    {
        // Branches lie anywhere in memory, so what later segments look at is brought near: the point by its vertex.
        constexpr uint64_t kAhead = 6;
        if (index + 2 * kAhead < segments.size()) {
            Prefetch(*segments[index + 2 * kAhead].top);
            Prefetch(variant.skeleton.points[segments[index + kAhead].top->point]);
        }

        const Segment& source = segments[index];
        const SkeletonVertex& top = *source.top;
        const SkeletonPoint& topPoint = variant.skeleton.points[top.point];
        const SkeletonPoint& basePoint = variant.skeleton.points[top.prev->point];
        return {basePoint.position,
                topPoint.position - basePoint.position,
                {.baseRadius = top.prev->attributes.radius,
                 .topRadius = top.attributes.radius,
                 .baseWeight = basePoint.weight,
                 .topWeight = topPoint.weight},
                variant.skeleton.branches[top.branch].matid};
    }

    LeafMesh makeLeaf(const Leaf& source) const
    {
        const Skeleton& skeleton = variant.skeleton;
        const SkeletonConnector& connector = skeleton.connectors[source.connector];
        return {*source.mesh, ConnectorFrame(skeleton, connector), skeleton.points[connector.point].weight};
    }

    const ModelVariant& variant;
    std::vector<Segment> segments;
    std::vector<Leaf> leaves;
    double total = 0;
};

} // namespace

ConicalFrustrum::ConicalFrustrum(const Vector3& basePoint, const Vector3& segment, const FrustrumEnds& ends,
                                 int32_t matid)
    : base(basePoint),
      axis(Normalized(segment)),
      topRadius(ends.topRadius),
      baseRadius(ends.baseRadius),
      topWeight(ends.topWeight),
      baseWeight(ends.baseWeight),
      length(Length(segment)),
      isCylinder(std::fabs(ends.baseRadius - ends.topRadius) < kCylinderTolerance),
      material(matid)
{
}

double ConicalFrustrum::Area(double baseRadius, double topRadius, double length)
{
    // Compatibility: with the sum of the radii thin twigs would get far more samples than in existing scenes.
    const double difference = topRadius - baseRadius;
    return kPi * baseRadius * topRadius * std::sqrt(difference * difference + length * length);
}

CloudSample ConicalFrustrum::Sample(double t, MersenneTwister& random) const
{
    // Compatibility: the normal is X turned about the axis, not made perpendicular to it, so the samples of a segment
    // along X lie on one line.
    const Vector3 normal = turnedX(axis, random.real() * kFullTurn);
    const Vector3 onAxis = (base + axis * length - base) * t + base;
    const double radius = (topRadius - baseRadius) * t + baseRadius;
    const float weight = (topWeight - baseWeight) * static_cast<float>(t) + baseWeight;
    return {onAxis + radius * normal, normal, weight, material};
}

LitSample ConicalFrustrum::SampleLit(double t, MersenneTwister& random, const Vector3& direction) const
{
    const CloudSample sample = Sample(t, random);
    return {sample.position, static_cast<float>(std::max(0.0, Dot(sample.normal, direction))), sample.material};
}

void SamplePoints(const ModelVariant& variant, std::string_view season, uint64_t count, Array<CloudSample>& samples,
                  bool shuffle, double* areaPerSample)
{
    samples.clear();
    const SourceTable sources(variant, season);
    if (sources.isEmpty()) return;

    const double step = sources.totalArea() / static_cast<double>(count);
    samples.resize(count);
    sources.sample(step, samples);
    if (shuffle) ShuffleRange(samples.begin(), samples.end());
    if (areaPerSample) *areaPerSample = step;
}

bool SampleLitCloud(const ModelVariant& variant, std::string_view season, uint64_t count, Vector3 direction,
                    Array<LitSample>& samples)
{
    Array<CloudSample> cloud;
    SamplePoints(variant, season, count, cloud, false, nullptr);
    if (cloud.size() != count) return false;

    Normalize(direction);
    samples.resize(count);
    for (uint64_t i = 0; i < count; ++i) {
        const double light = Dot(direction, TurnedTowards(direction, cloud[i].normal));
        samples[i] = {cloud[i].position, static_cast<float>(std::max(0.0, light)), cloud[i].material};
    }
    return true;
}

} // namespace vdt
