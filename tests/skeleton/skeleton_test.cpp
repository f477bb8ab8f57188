#include "support/skeleton_builder.h"
#include "vdt/skeleton/ring.h"

namespace vdt::test {
namespace {

TEST(Rings, KeepTheOrderOfLinkingAndEnterAtTheLatestVertexThatGoesOn)
{
    Skeleton skeleton = SkeletonBuilder().trunk(4).side(2, 2).side(2, 2).through({5, 2, 4}).side(2, 2).take();
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_EQ(Outline(skeleton), "0: 0 1 2 3\n1: 2 4\n2: 2 5\n3: 5 2 4\n4: 2 6\n"
                                 "point 0: 0.0\npoint 1: 0.1\npoint 2: 3.1 0.2 1.0 2.0 4.0\npoint 3: 0.3\n"
                                 "point 4: 3.2 1.1\npoint 5: 2.1 3.0\npoint 6: 4.1\n");

    SkeletonVertex& entry = *skeleton.points[2].firstVertex;
    EXPECT_FALSE(LinkVertex(skeleton, entry)) << "it is linked already";
    EXPECT_FALSE(LinkVertex(skeleton, *skeleton.points[0].firstVertex)) << "it is alone on its point";

    UnlinkVertex(skeleton, entry);
    EXPECT_EQ(skeleton.points[2].firstVertex, &VertexAt(skeleton, 0, 2)) << "the successor becomes the entry";
    EXPECT_TRUE(LinkVertex(skeleton, entry));
    EXPECT_TRUE(CheckSkeleton(skeleton));
}

TEST(Branches, OfFewerThanTwoVerticesOrThroughMissingPointsAreRefused)
{
    Skeleton skeleton = SkeletonBuilder().trunk(3).take();
    const std::string before = Everything(skeleton);
    const std::vector<VertexAttributes> attributes(2);
    EXPECT_EQ(skeleton.AddBranch(0, std::vector<uint64_t>{1}, attributes), kNone);
    EXPECT_EQ(skeleton.AddBranch(0, std::vector<uint64_t>{1, 3}, attributes), kNone);
    EXPECT_EQ(skeleton.InsertVertex(0, 3, {}, kNone), kNone);
    EXPECT_EQ(skeleton.InsertVertex(1, 0, {}, kNone), kNone);
    EXPECT_EQ(Everything(skeleton), before);
}

TEST(Branches, TakeVerticesAtAnyPlace)
{
    Skeleton skeleton = SkeletonBuilder().point({0, 0, 0}).point({1, 0, 0}).point({2, 0, 0}).point({3, 0, 0}).take();
    skeleton.ResizeBranches(1);
    EXPECT_EQ(skeleton.InsertVertex(0, 1, {}, 7), 0u);
    EXPECT_EQ(skeleton.InsertVertex(0, 0, {}, 0), 0u);
    EXPECT_EQ(skeleton.InsertVertex(0, 3, {}, kNone), 2u);
    EXPECT_EQ(skeleton.InsertVertex(0, 2, {}, 2), 2u);
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_EQ(Outline(skeleton).substr(0, 11), "0: 0 1 2 3\n");
}

TEST(Connectors, QueueUpOnTheirPointAndMoveWithSetConnector)
{
    Skeleton skeleton = SkeletonBuilder().trunk(2).connector(1).connector(1).connector(1).take();
    EXPECT_TRUE(skeleton.SetConnector(0, {.group = 9}, 1)) << "it stays in its place";
    EXPECT_EQ(skeleton.connectors[0].attributes.group, 9);
    EXPECT_EQ(Outline(skeleton), "0: 0 1\npoint 0: 0.0\npoint 1: 0.1, connectors 0 1 2\n");
    EXPECT_TRUE(skeleton.SetConnector(0, {}, 0));
    EXPECT_TRUE(skeleton.SetConnector(1, {}, 0));
    EXPECT_EQ(Outline(skeleton), "0: 0 1\npoint 0: 0.0, connectors 0 1\npoint 1: 0.1, connectors 2\n");
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_FALSE(skeleton.SetConnector(0, {}, 2));
    EXPECT_EQ(skeleton.AddConnector({}, 2), kNone);
}

TEST(Connectors, RemovedOneByOneLeaveTheOthersIndicesAlone)
{
    Skeleton skeleton = SkeletonBuilder().trunk(2).connector(0).connector(1).connector(0).connector(0).take();
    EXPECT_TRUE(skeleton.RemoveConnector(0));
    EXPECT_EQ(skeleton.points[0].firstConnector, 2u);
    EXPECT_EQ(skeleton.points[1].firstConnector, 1u);
    EXPECT_EQ(skeleton.connectors[1].nextConnector, 3u);

    // Nobody renumbers: wrong numbers must not lead out of the array or around for ever.
    while (skeleton.RemoveConnector(0)) skeleton.SetConnector(0, {}, 1);
    skeleton.AddConnector({}, 0);
    skeleton.AddConnector({}, 0);
    EXPECT_FALSE(skeleton.RemoveConnectors({}));
    EXPECT_TRUE(skeleton.RemoveConnectors({0, 0, 5}));
    EXPECT_TRUE(skeleton.connectors.size() == 1);
}

TEST(Removal, OfABranchTakesBarePointsAlong)
{
    Skeleton skeleton = SkeletonBuilder().trunk(4).side(1, 3).side(2, 3).connector(4).connector(7).take();
    EXPECT_TRUE(skeleton.RemoveBranch(1));
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_EQ(Outline(skeleton), "0: 0 1 2 3\n1: 2 5 6\npoint 0: 0.0\npoint 1: 0.1\npoint 2: 0.2 1.0\npoint 3: 0.3\n"
                                 "point 4:, connectors 0\npoint 5: 1.1\npoint 6: 1.2, connectors 1\n");
    EXPECT_FALSE(skeleton.RemoveBranch(2));
    EXPECT_FALSE(skeleton.RemoveBranches({}));
    EXPECT_TRUE(skeleton.RemoveBranches({1, 0, 1, 9}));
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_EQ(skeleton.points.size(), 2u);
}

TEST(Removal, OfAPointShortensBranchesAndTakesConnectorsAlong)
{
    Skeleton skeleton = SkeletonBuilder().trunk(4).side(1, 3).connector(1).connector(2).connector(1).take();
    EXPECT_TRUE(skeleton.RemovePoint(1));
    EXPECT_TRUE(CheckSkeleton(skeleton));
    EXPECT_EQ(Outline(skeleton), "0: 0 1 2\n1: 3 4\npoint 0: 0.0\npoint 1: 0.1, connectors 0\npoint 2: 0.2\n"
                                 "point 3: 1.0\npoint 4: 1.1\n");
    EXPECT_FALSE(skeleton.RemovePoint(5));
}

TEST(Removal, OfManyInOnePassEqualsOneByOne)
{
    for (uint32_t seed = 0; seed < 40; ++seed) {
        SCOPED_TRACE(seed);
        const Skeleton original = seed % 2 ? RandomTangle(seed, 12) : RandomTree(seed, 12);
        Dice dice(seed);
        std::vector<uint64_t> doomed;
        for (uint64_t i = 0; i < original.branches.size(); ++i)
            if (dice.below(2)) doomed.push_back(i);
        if (doomed.empty()) continue;

        Skeleton atOnce = original, oneByOne = original;
        std::vector<uint64_t> unsorted(doomed.rbegin(), doomed.rend());
        unsorted.insert(unsorted.end(), doomed.begin(), doomed.end());
        EXPECT_TRUE(atOnce.RemoveBranches(unsorted));
        for (size_t i = doomed.size(); i-- > 0;) EXPECT_TRUE(oneByOne.RemoveBranch(doomed[i]));
        EXPECT_EQ(Everything(atOnce), Everything(oneByOne));
        EXPECT_TRUE(CheckSkeleton(atOnce));
    }
}

TEST(Edits, InAnyOrderLeaveAValidSkeletonAndACopyEqualsIt)
{
    for (uint32_t seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE(seed);
        Skeleton skeleton = seed % 2 ? RandomTangle(seed, 20) : RandomTree(seed, 20);
        Dice dice(seed + 1000);
        for (int step = 0; step < 60; ++step) {
            const uint64_t any = dice.below(64), other = dice.below(64);
            switch (dice.below(9)) {
            case 0: skeleton.RemovePoint(any); break;
            case 1: skeleton.RemoveBranches({any, other}); break;
            case 2: skeleton.RemoveConnectors({any, other}); break;
            case 3: skeleton.InsertVertex(any % 16, other, {.radius = 0.5}, dice.below(8)); break;
            case 4: skeleton.SetConnector(any, {}, other); break;
            case 5: skeleton.AddConnector({.group = 3}, any); break;
            case 6:
                skeleton.AddBranch(7, std::vector<uint64_t>{any, other, any}, std::vector<VertexAttributes>(3));
                break;
            case 7:
                if (skeleton.points.empty()) break;
                skeleton.AddPoint(skeleton.points.front());
                EXPECT_EQ(skeleton.points.back().restPosition, skeleton.points.front().restPosition);
                break;
            case 8:
                skeleton.ResizePoints(skeleton.points.size() + any / 8 - 3);
                skeleton.ResizeBranches(skeleton.branches.size() - skeleton.branches.size() / 8);
                skeleton.ResizeConnectors(skeleton.connectors.size() * 7 / 8 + 1);
                break;
            }
            ASSERT_TRUE(CheckSkeleton(skeleton)) << "step " << step;
        }

        const std::string text = Everything(skeleton);
        Skeleton copy(skeleton);
        EXPECT_TRUE(CheckSkeleton(copy));
        copy.Assign(copy);
        EXPECT_EQ(Everything(copy), text);
        skeleton.Clear();
        EXPECT_TRUE(skeleton.isEmpty());
        copy.InsertVertex(0, 0, {}, kNone); // a place that was given back before the copy
        EXPECT_TRUE(CheckSkeleton(copy));
        const Skeleton moved = std::move(copy);
        EXPECT_TRUE(CheckSkeleton(moved));
    }
}

TEST(Bounds, LookAtWhatTheModeNames)
{
    Skeleton skeleton =
        SkeletonBuilder().trunk(2).radius(0, 1, 2).point({-9, 0, 0}).point({0, 9, 0}).connector(3).take();
    struct Row {
        BoundsMode mode;
        Box box;
    };
    const Row rows[] = {{BoundsMode::AllPoints, {{-9, 0, 0}, {0, 9, 1}}},
                        {BoundsMode::BranchPoints, {{0, 0, 0}, {0, 0, 1}}},
                        {BoundsMode::BranchPointsAndRadii, {{-2, -2, -1}, {2, 2, 3}}},
                        {BoundsMode::ConnectorPoints, {{0, 9, 0}, {0, 9, 0}}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.mode));
        Box box;
        skeleton.GetBounds(box, row.mode);
        EXPECT_EQ(box, row.box);
        Box larger{{-50, -50, -50}, {50, 50, 50}};
        skeleton.GetBounds(larger, row.mode);
        EXPECT_EQ(larger.max.x, 50);
    }
}

} // namespace
} // namespace vdt::test
