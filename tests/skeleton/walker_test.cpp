#include "support/skeleton_builder.h"
#include "vdt/skeleton/ring.h"
#include "vdt/skeleton/walker.h"

namespace vdt::test {
namespace {

struct Visit {
    const SkeletonVertex* vertex;
    uint64_t depth;

    friend bool operator==(const Visit&, const Visit&) = default;
};
using Visits = std::vector<Visit>;

Visits walk(const Skeleton& skeleton, bool branchFirst, WalkFilter filter)
{
    Visits visits;
    SkeletonWalker walker(skeleton, branchFirst, filter);
    while (walker.advance()) visits.push_back({&walker.vertex(), walker.depth()});
    EXPECT_TRUE(walker.atEnd());
    return visits;
}

// "0.1/1 .." for branch 0, place 1, depth 1.
std::string told(const Visits& visits)
{
    std::string text;
    for (const Visit& visit : visits) {
        uint64_t place = 0;
        for (const SkeletonVertex* v = visit.vertex->prev; v; v = v->prev) ++place;
        text += std::to_string(visit.vertex->branch) + '.' + std::to_string(place) + '/' + std::to_string(visit.depth) +
                ' ';
    }
    return text;
}

// Both orders by recursion, for trees and without the filter of thin runs.
void visitVertexByVertex(const SkeletonVertex& first, uint64_t depth, bool skipDead, Visits& visits)
{
    for (const SkeletonVertex* v = &first; v; v = v->next) {
        visits.push_back({v, depth});
        if (!v->prev || !v->ring) continue;
        for (const SkeletonVertex& side : RingOthers(*v))
            if (!skipDead || side.attributes.radius > 0) visitVertexByVertex(side, depth + 1, skipDead, visits);
    }
}

void visitBranchByBranch(const SkeletonVertex& first, uint64_t depth, Visits& visits)
{
    const SkeletonVertex* tip = &first;
    for (const SkeletonVertex* v = &first; v; tip = v, v = v->next) visits.push_back({v, depth});
    for (const SkeletonVertex* v = tip; v->prev; v = v->prev)
        if (v->ring)
            for (const SkeletonVertex& side : RingOthers(*v)) visitBranchByBranch(side, depth + 1, visits);
}

uint64_t vertexCount(const Skeleton& skeleton)
{
    uint64_t count = 0;
    for (const SkeletonBranch& branch : skeleton.branches) count += branch.vertexCount;
    return count;
}

TEST(Walk, EqualsTheRecursionOnAnyTree)
{
    for (uint32_t seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        const Skeleton skeleton = RandomTree(seed, 1 + seed);
        const SkeletonVertex& root = *skeleton.branches[0].firstVertex;
        Visits plain, alive, byBranch;
        visitVertexByVertex(root, 1, false, plain);
        visitVertexByVertex(root, 1, true, alive);
        visitBranchByBranch(root, 1, byBranch);
        EXPECT_EQ(plain.size(), vertexCount(skeleton));
        EXPECT_EQ(walk(skeleton, false, WalkFilter::None), plain);
        EXPECT_EQ(walk(skeleton, false, WalkFilter::SkipDeadSides), alive);
        EXPECT_EQ(walk(skeleton, true, WalkFilter::None), byBranch);
        EXPECT_EQ(walk(skeleton, true, WalkFilter::SkipDeadSides), byBranch) << "dead sides count here";
    }
}

TEST(Walk, PassesOverThinRuns)
{
    struct Row {
        const char* what;
        std::vector<std::pair<uint64_t, uint64_t>> thin; // branch, place
        const char* vertexByVertex;
        const char* branchByBranch;
    };
    const Row rows[] = {
        {"one thin vertex is no run", {{0, 2}}, "0.0 0.1 1.0 1.1 1.2 0.2 0.3 0.4 ", "0.0 0.1 0.2 0.3 0.4 1.0 1.1 1.2 "},
        {"a run is visited at its first vertex",
         {{0, 2}, {0, 3}},
         "0.0 0.1 1.0 1.1 1.2 0.2 0.4 ",
         "0.0 0.1 0.2 0.4 1.0 1.1 1.2 "},
        {"a run to the tip", {{0, 3}, {0, 4}}, "0.0 0.1 1.0 1.1 1.2 0.2 0.3 ", "0.0 0.1 0.2 0.3 1.0 1.1 1.2 "},
        {"from the root", {{0, 0}, {0, 1}}, "1.0 1.1 1.2 0.2 0.3 0.4 ", "0.2 0.3 0.4 1.0 1.1 1.2 "},
        {"a side's first vertex alone", {{1, 0}}, "0.0 0.1 1.0 1.1 1.2 0.2 0.3 0.4 ", "0.0 0.1 0.2 0.3 0.4 1.1 1.2 "},
        {"a side's beginning", {{1, 0}, {1, 1}}, "0.0 0.1 1.2 0.2 0.3 0.4 ", "0.0 0.1 0.2 0.3 0.4 1.2 "},
        {"a whole side", {{1, 0}, {1, 1}, {1, 2}}, "0.0 0.1 0.2 0.3 0.4 ", "0.0 0.1 0.2 0.3 0.4 "},
    };
    const auto withoutDepth = [](std::string text) {
        for (size_t slash; (slash = text.find('/')) != text.npos;) text.erase(slash, 2);
        return text;
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        SkeletonBuilder builder;
        builder.trunk(5).side(1, 3);
        for (const auto& [branch, place] : row.thin) builder.radius(branch, place, 1e-13);
        const Skeleton skeleton = builder.take();
        EXPECT_EQ(withoutDepth(told(walk(skeleton, false, WalkFilter::SkipThinRuns))), row.vertexByVertex);
        EXPECT_EQ(withoutDepth(told(walk(skeleton, true, WalkFilter::SkipThinRuns))), row.branchByBranch);
    }
}

TEST(Walk, VisitsTheFirstRootsTreeAloneAndBeginsAgainAfterItsEnd)
{
    const Skeleton skeleton = SkeletonBuilder().trunk(2).trunk(2).take();
    std::vector<uint64_t> roots;
    EXPECT_TRUE(skeleton.FindRoots(roots));
    EXPECT_EQ(roots, (std::vector<uint64_t>{0, 2}));
    SkeletonWalker walker(skeleton, false, WalkFilter::None);
    EXPECT_TRUE(walker.advance() && walker.advance());
    EXPECT_FALSE(walker.advance());
    EXPECT_TRUE(walker.advance());
    EXPECT_EQ(&walker.vertex(), &VertexAt(skeleton, 0, 0));

    const Skeleton bare = SkeletonBuilder().point({0, 0, 0}).take();
    EXPECT_FALSE(bare.FindRoots(roots));
    EXPECT_FALSE(SkeletonWalker(bare, true, WalkFilter::None).advance());
}

TEST(Walk, OnATangleEndsWithinAsManyVisitsAsThereAreVertices)
{
    const auto check = [](Skeleton skeleton) {
        for (const bool branchFirst : {false, true})
            for (const WalkFilter filter : {WalkFilter::None, WalkFilter::SkipThinRuns, WalkFilter::SkipDeadSides})
                EXPECT_LE(walk(skeleton, branchFirst, filter).size(), vertexCount(skeleton));
        skeleton.ComputeOrientations();
    };
    for (uint32_t seed = 0; seed < 200; ++seed) check(RandomTangle(seed, 2 + seed % 30));

    // A trunk that stays on one point, dead or alive: many ways to go round and round.
    for (const double radius : {0.0, 1.0}) {
        Skeleton coil = SkeletonBuilder().point({0, 0, 0}).point({0, 0, 1}).take();
        std::vector<uint64_t> indices(200000, 1);
        indices[0] = 0;
        coil.AddBranch(0, indices, std::vector<VertexAttributes>(indices.size(), {.radius = radius}));
        check(std::move(coil));
    }

    Skeleton strayed = SkeletonBuilder().trunk(3).side(1, 3).take();
    VertexAt(strayed, 1, 1).branch = 2;
    EXPECT_EQ(told(walk(strayed, false, WalkFilter::None)), "0.0/1 0.1/1 1.0/2 2.1/2 2.1/2 2.1/2 ");
}

} // namespace
} // namespace vdt::test
