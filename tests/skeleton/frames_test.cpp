#include "support/skeleton_builder.h"
#include "vdt/skeleton/frames.h"
#include "vdt/skeleton/walker.h"

#include <array>
#include <limits>
#include <map>

namespace vdt::test {
namespace {

void expectNear(const Vector3& a, const Vector3& b, double tolerance = 1e-12)
{
    EXPECT_LE(Length(a - b), tolerance) << a.x << ' ' << a.y << ' ' << a.z << ", not " << b.x << ' ' << b.y << ' '
                                        << b.z;
}

void expectFrameOn(const Vector3& tangent, const Matrix& frame)
{
    expectNear(frame.row(2), tangent);
    expectNear(Cross(frame.row(0), frame.row(1)), frame.row(2));
    EXPECT_NEAR(Length(frame.row(0)), 1, 1e-12);
}

// The plain way to carry frames along: a stack of all open frames and every quaternion in the order of the walk.
bool carryFrames(const Skeleton& skeleton, std::vector<Quaternion>& history)
{
    std::vector<Matrix> stack;
    bool popPending = false;
    SkeletonWalker walker(skeleton, false, WalkFilter::SkipDeadSides);
    while (walker.advance()) {
        const SkeletonVertex& vertex = walker.vertex();
        const Vector3 tangent = VertexTangent(skeleton, vertex);
        if (!vertex.prev && walker.depth() == 1) {
            stack.push_back(FrameFromTangent(tangent, skeleton.points[vertex.point].position));
            history.push_back(ToQuaternion(stack.back()));
            continue;
        }
        if (!vertex.prev && stack.empty()) {
            if (history.size() < 2) return false;
            stack.push_back(ToMatrix(history[history.size() - 2], {0, 0, 0}));
        } else if (!vertex.prev) {
            const Matrix copy = stack.back();
            if (popPending) stack.pop_back();
            popPending = false;
            stack.push_back(copy);
        }
        if (stack.empty()) return false;
        stack.back() = AdvanceFrame(tangent, stack.back());
        history.push_back(ToQuaternion(stack.back()));
        if (vertex.next) continue;
        if (vertex.ring && vertex.prev)
            popPending = true;
        else
            stack.pop_back();
    }
    return true;
}

TEST(Frames, FromATangentTurnTheZAxisThereTheShortestWay)
{
    Dice dice(3);
    std::vector<Vector3> tangents{{0, 0, 2}, {0, 0, -3}, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {1e-11, 0, 1}};
    for (int i = 0; i < 50; ++i) tangents.push_back(dice.position(2));
    for (const Vector3& tangent : tangents) {
        SCOPED_TRACE(testing::Message() << tangent.x << ' ' << tangent.y << ' ' << tangent.z);
        const Vector3 z = Normalized(tangent);
        const Matrix frame = FrameFromTangent(tangent, {1, 2, 3});
        expectNear(frame.row(2), z, 1e-10);
        expectNear(Cross(frame.row(0), frame.row(1)), frame.row(2));
        EXPECT_EQ(frame.row(3), (Vector3{1, 2, 3}));

        // What lies across the turn stays where it is.
        const Vector3 axis = Cross({0, 0, 1}, z);
        if (Length(axis) > 1e-6) expectNear(TransformVector(axis, frame), axis, 1e-10);
    }
}

TEST(Frames, AreCarriedWithTheLeastTwistAndHaveAxesToFallBackOn)
{
    const Matrix upright = Matrix::Identity();
    EXPECT_EQ(AdvanceFrame({0, 0, 5}, upright), upright);
    expectNear(AdvanceFrame({1, 0, 0}, upright).row(1), {0, 1, 0});

    Matrix turned = upright;
    turned.setRow(0, {0, 0, 1});
    turned.setRow(1, {1, 0, 0});
    expectFrameOn({1, 0, 0}, AdvanceFrame({1, 0, 0}, turned)); // along the frame's own y axis

    Matrix flat = upright;
    flat.setRow(0, {0, 0, 0});
    flat.setRow(1, {0, 0, 0});
    flat.setRow(3, {4, 5, 6});
    const Matrix fallback = AdvanceFrame({0, 0, 1}, flat);
    expectFrameOn({0, 0, 1}, fallback);
    expectNear(fallback.row(0), {1, 0, 0});
    EXPECT_EQ(fallback.row(3), (Vector3{4, 5, 6}));
}

TEST(Frames, OfAWholeSkeletonEqualThePlainWayOfCarryingThem)
{
    for (uint32_t seed = 0; seed < 120; ++seed) {
        SCOPED_TRACE(seed);
        Skeleton skeleton = seed % 3 ? RandomTree(seed, 1 + seed) : RandomTangle(seed, 2 + seed % 20);
        if (seed % 5 == 0) skeleton.points[1].position = skeleton.points[2].position;
        std::vector<Quaternion> expected;
        const bool complete = carryFrames(skeleton, expected);
        Skeleton copy = skeleton;
        EXPECT_EQ(copy.ComputeOrientations(), complete);

        // A tangle's vertices may come up again, so the last visit counts.
        std::map<const SkeletonVertex*, Quaternion> last;
        SkeletonWalker walker(copy, false, WalkFilter::SkipDeadSides);
        for (const Quaternion& orient : expected) {
            ASSERT_TRUE(walker.advance());
            last[&walker.vertex()] = orient;
        }
        for (const auto& [vertex, orient] : last) EXPECT_EQ(vertex->attributes.orient, orient);
    }
}

TEST(Weights, FallFromTheCentreToHalfTheLargestExtent)
{
    std::array<double, 3> reach{1, 2, 4};
    do {
        SkeletonBuilder builder;
        for (const double side : {-1.0, 1.0})
            builder.point({side * reach[0], 0, 0}).point({0, side * reach[1], 0}).point({0, 0, side * reach[2]});
        Skeleton skeleton = builder.take();
        ASSERT_TRUE(skeleton.ComputeWeights());
        for (size_t i = 0; i < 6; ++i) EXPECT_EQ(skeleton.points[i].weight, 1 - static_cast<float>(reach[i % 3]) / 4);
    } while (std::next_permutation(reach.begin(), reach.end()));

    // The centre lies between the points' mean, 2, and the middle of their box, 4.
    Skeleton uneven = SkeletonBuilder().point({0, 0, 0}).point({0, 0, 0}).point({0, 0, 0}).point({8, 0, 0}).take();
    ASSERT_TRUE(uneven.ComputeWeights());
    EXPECT_EQ(uneven.points[0].weight, 0.25F);
    EXPECT_EQ(uneven.points[3].weight, 0);
}

TEST(Weights, AreZeroWithoutExtentAndRefusedWithoutPoints)
{
    Skeleton none;
    EXPECT_FALSE(none.ComputeWeights());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const Vector3& other : {Vector3{1, 2, 3}, Vector3{nan, nan, nan}}) {
        Skeleton skeleton = SkeletonBuilder().point({1, 2, 3}).point(other).take();
        EXPECT_TRUE(skeleton.ComputeWeights());
        EXPECT_EQ(skeleton.points[0].weight, 0);
        EXPECT_EQ(skeleton.points[1].weight, 0);
    }
}

} // namespace
} // namespace vdt::test
