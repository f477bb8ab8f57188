#include "support/skeleton_builder.h"
#include "vdt/generate/draw_helper.h"
#include "vdt/math/mersenne_twister.h"

#include <gmock/gmock.h>

#include <limits>
#include <utility>

namespace vdt::test {
namespace {

using testing::ElementsAre;

using Point = std::pair<Vector3, Color3f>;

class RecordingHelper final : public DrawHelper {
public:
    bool BeginPoints(uint64_t count, double area) override
    {
        announced = count;
        meanArea = area;
        return stopAfter > 0;
    }
    bool AddDrawPoint(const Vector3& position, const Color3f& colour) override
    {
        points.emplace_back(position, colour);
        return points.size() < stopAfter;
    }
    bool AddPolyline(std::span<const Vector3> positions, std::span<const Color3f> colours,
                     std::span<const double> radii) override
    {
        std::vector<Point>& line = polylines.emplace_back();
        for (size_t i = 0; i < positions.size(); ++i) line.emplace_back(positions[i], colours[i]);
        thickest.push_back(*std::max_element(radii.begin(), radii.end()));
        return false; // no matter
    }

    std::vector<std::vector<Point>> polylines;
    std::vector<double> thickest; // of each polyline
    std::vector<Point> points;
    uint64_t announced = kNone;
    double meanArea = -1;
    size_t stopAfter = kNone;
};

const std::map<int32_t, Color3f> kColours{{0, {0.5F, 0.25F, 0}}, {10, {0, 1, 0}}, {11, {1, 1, 1}}};
const Color3f kDefault{0.75F, 0.5F, 0.25F};

RecordingHelper filled(const ModelVariant& variant, uint64_t maxSegments, uint64_t maxPoints, size_t stopAfter = kNone)
{
    RecordingHelper helper;
    helper.stopAfter = stopAfter;
    FillDrawHelper(helper, variant, {"summer", kColours, kDefault, true, maxSegments, maxPoints});
    return helper;
}

std::vector<size_t> sizes(const Skeleton& skeleton, uint64_t maxSegments)
{
    ModelVariant variant;
    variant.skeleton = skeleton;
    std::vector<size_t> counts;
    for (const std::vector<Point>& line : filled(variant, maxSegments, 0).polylines) counts.push_back(line.size());
    return counts;
}

TEST(FillDrawHelper, TakesBranchesByTheirLargestRadiusUntilThereAreEnoughSegments)
{
    Skeleton tree = SkeletonBuilder().trunk(7).side(1, 3).side(3, 4).side(5, 5).take();
    for (const SkeletonBranch& branch : tree.branches)
        for (SkeletonVertex* v = branch.firstVertex; v; v = v->next) v->attributes.radius = 1;
    VertexAt(tree, 2, 1).attributes.radius = 2;
    // Of equally thick ones the last filed first: side branches are walked from the tip back.
    EXPECT_THAT(sizes(tree, 100), ElementsAre(4, 3, 5, 7));
    EXPECT_THAT(sizes(tree, 6), ElementsAre(4, 3, 5)); // the last goes beyond the limit
    EXPECT_THAT(sizes(tree, 5), ElementsAre(4, 3));
    EXPECT_THAT(sizes(tree, 0), ElementsAre());
    VertexAt(tree, 2, 0).attributes.radius = std::numeric_limits<double>::quiet_NaN();
    VertexAt(tree, 3, 0).attributes.radius = std::numeric_limits<double>::infinity();
    EXPECT_THAT(sizes(tree, 100), ElementsAre(5, 4, 3, 7));
}

TEST(FillDrawHelper, compatibility_ABranchThatBeginsThinGoesOnWithTheRadiusBefore)
{
    Skeleton tree = SkeletonBuilder().trunk(2).side(1, 5).side(1, 4).take();
    VertexAt(tree, 1, 0).attributes.radius = 5;
    EXPECT_THAT(sizes(tree, 100), ElementsAre(5, 4, 2));
    VertexAt(tree, 2, 0).attributes.radius = VertexAt(tree, 2, 1).attributes.radius = 0;
    EXPECT_THAT(sizes(tree, 100), ElementsAre(4, 5, 2)); // as thick as the one before it, and filed later
}

// A box of 1 by 2 by 3 as triangles of the given materials.
std::unique_ptr<Mesh> leaf(std::initializer_list<int32_t> materials)
{
    auto mesh = std::make_unique<Mesh>();
    for (const Vector3& corner : {Vector3{0, 0, 0}, {1, 0, 3}, {1, 2, 0}}) mesh->AddPoint(corner, {0, 0, 1});
    for (const int32_t material : materials) AddTriangle(*mesh, {0, 1, 2}, {{0, 0}, {0, 0}, {0, 0}}, material);
    return mesh;
}

TEST(FillDrawHelper, StreamsShadedBranchesAndAnEvenSampleOfTheFoliage)
{
    for (uint32_t seed = 1; seed < 40; ++seed) {
        ModelVariant variant;
        variant.skeleton = RandomTree(seed, 1 + seed);
        Dice dice(seed);
        for (SkeletonPoint& point : variant.skeleton.points) point.weight = static_cast<float>(dice.real(0, 1));
        for (const SkeletonBranch& branch : variant.skeleton.branches)
            for (SkeletonVertex* v = branch.firstVertex; v; v = v->next) v->attributes.radius = dice.real(0.1, 1);
        for (uint32_t i = 0; i < 4 * seed; ++i) // runs on one point now and then
            variant.skeleton.AddConnector({.scale = dice.real(0, 2)}, dice.below(2) * dice.below(seed));
        variant.meshes.emplace_back(0, "", leaf({11, 11, 10, 99}));
        variant.meshes.emplace_back(0, "winter", leaf({11}));
        variant.meshes.emplace_back(0, "summer", leaf({11}));
        variant.meshes.emplace_back(0, "", nullptr);

        const auto shaded = [&](const Color3f& c, uint64_t point) {
            const float left = 1 - 0.75F * variant.skeleton.points[point].weight;
            return Point{variant.skeleton.points[point].position, {c.r * left, c.g * left, c.b * left}};
        };
        const auto near = [](const Point& a, const Point& b) {
            const Color3f &c = a.second, &d = b.second;
            return a.first == b.first && std::fabs(c.r - d.r) + std::fabs(c.g - d.g) + std::fabs(c.b - d.b) < 1e-6F;
        };
        const RecordingHelper all = filled(variant, kNone, kNone), some = filled(variant, 12, 7);
        EXPECT_TRUE(std::is_sorted(all.thickest.rbegin(), all.thickest.rend()));
        std::vector<Point> trunk;
        for (const SkeletonVertex* v = variant.skeleton.branches[0].firstVertex; v; v = v->next)
            trunk.push_back(shaded(kColours.at(0), v->point));
        EXPECT_TRUE(std::any_of(all.polylines.begin(), all.polylines.end(), [&](const std::vector<Point>& line) {
            return std::equal(line.begin(), line.end(), trunk.begin(), trunk.end(), near);
        }));
        EXPECT_LE(some.polylines.size(), all.polylines.size());
        EXPECT_TRUE(std::equal(some.polylines.begin(), some.polylines.end(), all.polylines.begin()));

        double area = 0;
        uint64_t last = kNone;
        std::vector<Point> expected;
        for (const Color3f& mean : {Color3f{2.75F / 4, 3.5F / 4, 2.25F / 4}, Color3f{1, 1, 1}}) {
            for (const SkeletonConnector& connector : variant.skeleton.connectors) {
                if (connector.attributes.group != 0) continue;
                area += 11.0 / 3 * connector.attributes.scale;
                if (std::exchange(last, connector.point) != connector.point)
                    expected.push_back(shaded(mean, connector.point));
            }
        }
        ShuffleRange(expected.begin(), expected.end());
        EXPECT_TRUE(std::equal(all.points.begin(), all.points.end(), expected.begin(), expected.end(), near)) << seed;
        EXPECT_EQ(some.announced, std::min<size_t>(7, expected.size()));
        EXPECT_TRUE(std::equal(some.points.begin(), some.points.end(), all.points.begin()));
        EXPECT_NEAR(some.meanArea * static_cast<double>(some.announced), area, 1e-9);
        EXPECT_EQ(filled(variant, 10, kNone, 1).points.size(), 1); // stops when told to
        EXPECT_EQ(filled(variant, 10, kNone, 0).points.size(), 0);
        EXPECT_EQ(filled(variant, 10, 0).meanArea, std::numeric_limits<double>::infinity());
    }
}

TEST(FillDrawHelper, DrawsWhatIsNoTreeAndLeavesOfNothing)
{
    for (uint32_t seed = 0; seed < 30; ++seed) {
        ModelVariant tangle;
        tangle.skeleton = RandomTangle(seed, 12);
        tangle.meshes.emplace_back(0, "", std::make_unique<Mesh>());
        const RecordingHelper helper = filled(tangle, kNone, kNone);
        EXPECT_EQ(helper.points.size(), helper.announced);
        EXPECT_TRUE(helper.points.empty() || helper.meanArea == 0);
    }
}

} // namespace
} // namespace vdt::test
