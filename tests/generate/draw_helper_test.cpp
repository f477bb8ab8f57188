#include "support/skeleton_builder.h"
#include "vdt/generate/draw_helper.h"
#include "vdt/generate/foliage.h"
#include "vdt/math/mersenne_twister.h"
#include "vdt/skeleton/walker.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>

namespace vdt::test {
namespace {

using testing::ElementsAre;

class RecordingHelper final : public DrawHelper {
public:
    struct Polyline {
        std::vector<Vector3> positions;
        std::vector<Color3f> colours;
        std::vector<double> radii;

        friend bool operator==(const Polyline&, const Polyline&) = default;
    };
    struct Point {
        Vector3 position;
        Color3f colour;

        friend bool operator==(const Point&, const Point&) = default;
    };

    bool BeginPoints(uint64_t count, double area) override
    {
        announced = count;
        meanArea = area;
        return wantsPoints;
    }
    bool AddDrawPoint(const Vector3& position, const Color3f& colour) override
    {
        points.push_back({position, colour});
        return points.size() < stopAfter;
    }
    bool AddPolyline(std::span<const Vector3> positions, std::span<const Color3f> colours,
                     std::span<const double> radii) override
    {
        polylines.push_back(
            {{positions.begin(), positions.end()}, {colours.begin(), colours.end()}, {radii.begin(), radii.end()}});
        return false; // no matter
    }

    std::vector<Polyline> polylines;
    std::vector<Point> points;
    uint64_t announced = kNone;
    double meanArea = -1;
    bool wantsPoints = true;
    size_t stopAfter = kNone;
};

const std::map<int32_t, Color3f> kColours{{0, {0.5F, 0.25F, 0}}, {2, {0, 0.25F, 1}}, {10, {0, 1, 0}}, {11, {1, 1, 1}}};
const Color3f kDefault{0.75F, 0.5F, 0.25F};

DrawOptions options(uint64_t maxSegments, uint64_t maxPoints, bool shaded = false)
{
    return {.season = "summer",
            .colours = kColours,
            .defaultColour = kDefault,
            .shaded = shaded,
            .maxSegments = maxSegments,
            .maxPoints = maxPoints};
}

RecordingHelper filled(const ModelVariant& variant, const DrawOptions& drawOptions)
{
    RecordingHelper helper;
    FillDrawHelper(helper, variant, drawOptions);
    return helper;
}

// A box of 1 by 2 by 3 as triangles of the given materials.
std::unique_ptr<Mesh> leaf(std::initializer_list<int32_t> materials)
{
    auto mesh = std::make_unique<Mesh>();
    for (const Vector3& corner : {Vector3{0, 0, 0}, {1, 0, 3}, {1, 2, 0}}) mesh->AddPoint(corner, {0, 0, 1});
    for (const int32_t material : materials) AddTriangle(*mesh, {0, 1, 2}, {{0, 0}, {0, 0}, {0, 0}}, material);
    return mesh;
}

ModelVariant plant(uint32_t seed)
{
    ModelVariant variant;
    variant.skeleton = RandomTree(seed, 1 + seed);
    Dice dice(seed);
    for (SkeletonPoint& point : variant.skeleton.points) point.weight = static_cast<float>(dice.real(0, 1));
    // Radii of which many are equal and many nothing.
    for (const SkeletonBranch& branch : variant.skeleton.branches)
        for (SkeletonVertex* v = branch.firstVertex; v; v = v->next) v->attributes.radius = dice.below(3) * 0.5;
    for (uint64_t i = 0; i < 3 * seed; ++i)
        variant.skeleton.AddConnector({.scale = dice.real(0, 2), .group = static_cast<int32_t>(dice.below(3))},
                                      dice.below(static_cast<uint32_t>(variant.skeleton.points.size())));
    variant.meshes.emplace_back(0, "", leaf({10, 10, 99}));
    variant.meshes.emplace_back(1, "winter", leaf({11}));
    variant.meshes.emplace_back(1, "summer", leaf({11}));
    variant.meshes.emplace_back(2, "", nullptr);
    return variant;
}

Color3f shade(const Color3f& c, float w, bool shaded)
{
    if (!shaded) return c;
    return {c.r + (0.25F * c.r - c.r) * w, c.g + (0.25F * c.g - c.g) * w, c.b + (0.25F * c.b - c.b) * w};
}

// The same stream by an ordered multimap and a shuffled list of all points with their colours: slow and plain.
RecordingHelper literal(const ModelVariant& variant, const DrawOptions& drawOptions)
{
    RecordingHelper helper;
    const Skeleton& skeleton = variant.skeleton;
    const auto colourOf = [&](int32_t material) {
        return kColours.contains(material) ? kColours.at(material) : kDefault;
    };
    std::multimap<double, uint64_t> filed;
    double largest = 0;
    SkeletonWalker walker(skeleton, true, WalkFilter::SkipThinRuns);
    while (walker.advance()) {
        const SkeletonVertex& v = walker.vertex();
        largest = v.prev ? std::max(largest, v.attributes.radius) : v.attributes.radius;
        if (!v.next) filed.emplace(largest, v.branch);
    }
    uint64_t total = 0;
    for (auto entry = filed.rbegin(); entry != filed.rend() && total < drawOptions.maxSegments; ++entry) {
        const SkeletonBranch& branch = skeleton.branches[entry->second];
        RecordingHelper::Polyline& line = helper.polylines.emplace_back();
        for (const SkeletonVertex* v = branch.firstVertex; v; v = v->next) {
            const SkeletonPoint& point = skeleton.points[v->point];
            line.positions.push_back(point.position);
            line.colours.push_back(shade(colourOf(branch.matid), point.weight, drawOptions.shaded));
            line.radii.push_back(v->attributes.radius);
        }
        total += line.radii.size() - 1;
    }

    double area = 0;
    std::vector<std::pair<uint64_t, Color3f>> all, list;
    for (const VariantMesh& record : variant.meshes) {
        if (!record.mesh || !record.appliesTo(drawOptions.season)) continue;
        Color3f mean;
        for (const int32_t material : record.mesh->materials) {
            mean.r += colourOf(material).r;
            mean.g += colourOf(material).g;
            mean.b += colourOf(material).b;
        }
        const auto count = static_cast<float>(record.mesh->materials.size());
        mean = {mean.r / count, mean.g / count, mean.b / count};
        for (const SkeletonConnector& connector : skeleton.connectors) {
            if (connector.attributes.group != record.group) continue;
            const float weight = skeleton.points[connector.point].weight;
            all.emplace_back(connector.point, shade(mean, weight, drawOptions.shaded));
            area += (1.0 * 3 + 2 * 3 + 2 * 1) / 3 * connector.attributes.scale;
        }
    }
    for (size_t i = 0; i < all.size(); ++i)
        if (i == 0 || all[i].first != all[i - 1].first) list.push_back(all[i]);
    for (size_t i = 1; i < list.size(); ++i) std::swap(list[i], list[RandomBelow(static_cast<uint32_t>(i + 1))]);
    list.resize(std::min<size_t>(list.size(), drawOptions.maxPoints));
    helper.BeginPoints(list.size(), area / static_cast<double>(list.size()));
    for (const auto& [point, colour] : list) helper.AddDrawPoint(skeleton.points[point].position, colour);
    return helper;
}

TEST(FillDrawHelper, StreamsThickBranchesFirstAndShuffledPoints)
{
    size_t polylines = 0, points = 0;
    for (uint32_t seed = 1; seed < 60; ++seed) {
        const ModelVariant variant = plant(seed);
        for (const uint64_t limit : {1, 5, 30, 1000}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", limit " << limit);
            const DrawOptions drawOptions = options(limit, limit, seed % 2);
            const RecordingHelper helper = filled(variant, drawOptions), expected = literal(variant, drawOptions);
            ASSERT_EQ(helper.polylines, expected.polylines);
            ASSERT_EQ(helper.points, expected.points);
            EXPECT_EQ(helper.announced, helper.points.size());
            EXPECT_THAT(helper.meanArea, testing::NanSensitiveDoubleEq(expected.meanArea));
            polylines += helper.polylines.size();
            points += helper.points.size();
        }
    }
    EXPECT_GT(polylines, 1000);
    EXPECT_GT(points, 1000);
}

std::vector<size_t> sizes(const RecordingHelper& helper)
{
    std::vector<size_t> counts;
    for (const RecordingHelper::Polyline& line : helper.polylines) counts.push_back(line.radii.size());
    return counts;
}

TEST(FillDrawHelper, TakesBranchesByTheirLargestRadiusUntilThereAreEnoughSegments)
{
    ModelVariant variant; // branches of 7, 3, 4 and 5 vertices
    variant.skeleton = SkeletonBuilder().trunk(7).side(1, 3).side(3, 4).side(5, 5).take();
    for (const SkeletonBranch& branch : variant.skeleton.branches)
        for (SkeletonVertex* v = branch.firstVertex; v; v = v->next) v->attributes.radius = 1;
    VertexAt(variant.skeleton, 2, 1).attributes.radius = 2;
    // Of equally thick ones the last filed first: side branches are walked from the tip back.
    EXPECT_THAT(sizes(filled(variant, options(100, 0))), ElementsAre(4, 3, 5, 7));
    EXPECT_THAT(sizes(filled(variant, options(6, 0))), ElementsAre(4, 3, 5)); // the last goes beyond the limit
    EXPECT_THAT(sizes(filled(variant, options(5, 0))), ElementsAre(4, 3));
    EXPECT_THAT(sizes(filled(variant, options(0, 0))), ElementsAre());
    VertexAt(variant.skeleton, 2, 0).attributes.radius = std::numeric_limits<double>::quiet_NaN();
    VertexAt(variant.skeleton, 3, 0).attributes.radius = std::numeric_limits<double>::infinity();
    EXPECT_THAT(sizes(filled(variant, options(100, 0))), ElementsAre(5, 4, 3, 7));
}

TEST(FillDrawHelper, compatibility_ABranchThatBeginsThinGoesOnWithTheRadiusBefore)
{
    ModelVariant variant; // the tip-most side branch is walked first, the others take its radius or not
    variant.skeleton = SkeletonBuilder().trunk(7).side(1, 4).side(3, 5).side(5, 6).take();
    const double radii[] = {1, 0.3, 0.2, 5};
    for (uint64_t branch = 0; branch < 4; ++branch)
        for (SkeletonVertex* v = variant.skeleton.branches[branch].firstVertex; v; v = v->next)
            v->attributes.radius = radii[branch];
    EXPECT_THAT(sizes(filled(variant, options(100, 0))), ElementsAre(6, 7, 4, 5));
    VertexAt(variant.skeleton, 2, 0).attributes.radius = 0;
    VertexAt(variant.skeleton, 2, 1).attributes.radius = 0;
    EXPECT_THAT(sizes(filled(variant, options(100, 0))), ElementsAre(5, 6, 7, 4));
}

TEST(FillDrawHelper, ARunOfLeavesOnOnePointIsOnePoint)
{
    ModelVariant variant;
    SkeletonBuilder builder;
    builder.trunk(4);
    for (const uint64_t point : {1, 1, 2, 2, 2, 1}) builder.connector(point);
    variant.skeleton = builder.take();
    variant.meshes.emplace_back(0, "", leaf({10}));
    const RecordingHelper helper = filled(variant, options(0, 100));
    EXPECT_EQ(helper.points.size(), 3);
    EXPECT_DOUBLE_EQ(helper.meanArea, 6 * (11.0 / 3) / 3); // all leaves count
}

TEST(FillDrawHelper, ListensToTheHelperAndToTheLimits)
{
    const ModelVariant variant = plant(20);
    const RecordingHelper all = filled(variant, options(10, 1000));
    ASSERT_GT(all.points.size(), 15);

    RecordingHelper refusing;
    refusing.wantsPoints = false;
    FillDrawHelper(refusing, variant, options(10, 1000));
    EXPECT_EQ(refusing.announced, all.points.size());
    EXPECT_TRUE(refusing.points.empty());

    RecordingHelper stopping;
    stopping.stopAfter = 3;
    FillDrawHelper(stopping, variant, options(10, 1000));
    EXPECT_EQ(stopping.points.size(), 3);

    const RecordingHelper none = filled(variant, options(10, 0));
    EXPECT_EQ(none.announced, 0);
    EXPECT_EQ(none.meanArea, std::numeric_limits<double>::infinity());

    // A shorter list is the beginning of the longer one.
    const RecordingHelper some = filled(variant, options(10, 7));
    EXPECT_TRUE(std::equal(some.points.begin(), some.points.end(), all.points.begin()));
    EXPECT_DOUBLE_EQ(some.meanArea * 7, all.meanArea * static_cast<double>(all.points.size()));
}

TEST(FillDrawHelper, PlantsThatAreNoneDrawNothingOrLittle)
{
    EXPECT_EQ(filled({}, options(10, 10)).announced, 0);
    for (uint32_t seed = 0; seed < 30; ++seed) {
        ModelVariant tangle;
        tangle.skeleton = RandomTangle(seed, 12);
        tangle.meshes.emplace_back(0, "", std::make_unique<Mesh>());
        const RecordingHelper helper = filled(tangle, options(kNone, kNone));
        for (const RecordingHelper::Point& point : helper.points) EXPECT_EQ(point.colour, kDefault);
        EXPECT_TRUE(helper.announced == 0 || helper.meanArea == 0);
    }
}

} // namespace
} // namespace vdt::test
