#include "support/check_mesh.h"
#include "support/foreign_mesh.h"
#include "support/literal_hull.h"
#include "vdt/math/mersenne_twister.h"

#include <cstring>
#include <functional>

namespace vdt::test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

using Random = MersenneTwister;

double within(Random& random, double reach)
{
    return reach * (2 * random.real() - 1);
}

Vector3 inBall(Random& random, double radius)
{
    for (;;) {
        const Vector3 p{within(random, radius), within(random, radius), within(random, radius)};
        if (Length(p) <= radius && Length(p) > 0.1 * radius) return p;
    }
}

Vector3 onShell(Random& random)
{
    const Vector3 p = Normalized(inBall(random, 1));
    return {10 * p.x, 15 * p.y, 10 * p.z};
}

Vector3 onLattice(Random& random, uint64_t side, double step)
{
    const auto coordinate = [&] { return step * static_cast<double>(random.index(side)); };
    return {coordinate(), coordinate(), coordinate()};
}

Vector3 rounded(const Vector3& p)
{
    return {std::round(p.x), std::round(p.y), std::round(p.z)};
}

std::vector<Vector3> cloudOf(size_t count, uint32_t seed, const std::function<Vector3(Random&)>& point)
{
    Random random(seed);
    std::vector<Vector3> points(count);
    for (Vector3& p : points) p = point(random);
    return points;
}

Mesh hullOf(const std::vector<Vector3>& points)
{
    Mesh mesh;
    BuildConvexHull(points, mesh);
    return mesh;
}

TEST(ConvexHull, HasTheTrianglesOfThePlainProcedureInItsOrder)
{
    struct Row {
        const char* name;
        std::function<Vector3(Random&)> point;
        std::vector<size_t> counts = {5, 6, 9, 20, 60, 200, 600};
    };
    const auto tilted = [](Random& r) {
        const double a = within(r, 1), b = within(r, 1);
        return Vector3{a, b, 0.3 * a + 0.7 * b + (r.index(10) == 0 ? 1 : 0)};
    };
    const auto sometimesNoNumber = [](Random& r) {
        Vector3 p = inBall(r, 1);
        if (const uint64_t kind = r.index(60); kind < 3) p.y = kind == 0 ? INFINITY : kind == 1 ? -INFINITY : NAN;
        return p;
    };
    const Row rows[] = {
        {"volume", [](Random& r) { return inBall(r, 10); }},
        {"volume of a mountain", [](Random& r) { return inBall(r, 1e5); }},
        {"volume of a planet, where rounding exceeds the tolerance", [](Random& r) { return inBall(r, 1e9); }},
        {"speck", [](Random& r) { return inBall(r, 1e-5); }},
        {"far from the origin",
         [](Random& r) {
             return inBall(r, 3) + Vector3{1e4, -1e4, 1e4};
         }},
        {"needle",
         [](Random& r) {
             return Vector3{within(r, 1e4), within(r, 1), within(r, 1e-3)};
         }},
        {"shell", onShell},
        {"lattice", [](Random& r) { return onLattice(r, 4, 1); }},
        {"lattice that rounds", [](Random& r) { return onLattice(r, 9, 0.1); }},
        {"few places", [](Random& r) { return onLattice(r, 2, 3); }},
        {"clusters", [](Random& r) { return onLattice(r, 2, 1) + inBall(r, 1e-3); }},
        {"almost a lattice", [](Random& r) { return onLattice(r, 3, 1) + inBall(r, 1e-13); }},
        {"two discs",
         [](Random& r) {
             return onShell(r) * 1e-1 + Vector3{0, r.index(2) ? 50.0 : 0, 0};
         }},
        {"plane",
         [](Random& r) {
             return Vector3{within(r, 1), 2, within(r, 1)};
         }},
        {"tilted plane and some points off it", tilted, {5, 20, 60}}, // runs to its end at 64 faces a point
        {"rounded shell", [](Random& r) { return rounded(2 * onShell(r)); }, {5, 20, 60, 200, 400}},
        {"not all are numbers", sometimesNoNumber},
    };
    for (const Row& row : rows) {
        for (const size_t count : row.counts) {
            for (uint32_t seed = 1; seed <= (count > 100 ? 2 : 6); ++seed) {
                SCOPED_TRACE(testing::Message() << row.name << ", " << count << " points, seed " << seed);
                const std::vector<Vector3> points = cloudOf(count, seed, row.point);
                const Mesh hull = hullOf(points);
                const std::vector<std::array<uint64_t, 3>> expected = LiteralHull(points);
                ASSERT_THAT(expected, SizeIs(hull.polygonEnds.size()));
                for (size_t corner = 0; corner < 3 * expected.size(); ++corner)
                    ASSERT_EQ(std::memcmp(&hull.positions[hull.polygonVertices[corner]],
                                          &points[expected[corner / 3][corner % 3]], sizeof(Vector3)),
                              0);
            }
        }
    }
}

TEST(ConvexHull, IsClosedAndHoldsItsPoints)
{
    for (const auto& point : {std::function<Vector3(Random&)>(onShell), {[](Random& r) { return inBall(r, 15); }}}) {
        const std::vector<Vector3> points = cloudOf(5000, 11, point);
        const Mesh hull = hullOf(points);
        CheckMesh(hull);
        std::set<std::pair<uint64_t, uint64_t>> edges;
        for (size_t corner = 0; corner < hull.polygonVertices.size(); ++corner)
            edges.emplace(hull.polygonVertices[corner], hull.polygonVertices[corner - corner % 3 + (corner + 1) % 3]);
        for (const auto& [from, to] : edges) ASSERT_TRUE(edges.contains({to, from}));
        EXPECT_EQ(edges.size(), hull.polygonVertices.size());
        EXPECT_EQ(hull.polygonEnds.size(), 2 * hull.positions.size() - 4);

        const HullPlanes planes(hull);
        for (const Vector3& p : points) ASSERT_TRUE(planes.contains(p * (1 - 1e-6)));
        for (const Vector3& p : hull.positions) ASSERT_FALSE(planes.contains(p * (1 + 1e-9)));
    }
}

TEST(ConvexHull, OfFewOrFlatPoints)
{
    struct Row {
        std::vector<Vector3> points;
        const char* calls;
    };
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    const Row rows[] = {
        {{}, ""},
        {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, ""},
        {{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, "ppppuuuu3333"},
        {std::vector<Vector3>(7, {1, 2, 3}), ""},
        {{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}, {-3, -3, -3}}, ""},
        {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 0}, {9, 3, 0}}, "pppuuu3uuu3"},
        {{{0, 0, 0}, {1e-9, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 0, 7}}, "pppuuu3uuu3"}, // the second is no other place
        {{{-1e39, 0, 0}, {1e39, 0, 0}, {1e39, 0, 1}, {1e39, 1, 0}, {2e39, 1, 1}}, ""},
        {std::vector<Vector3>(9, {kNoNumber, kNoNumber, kNoNumber}), ""},
        {std::vector<Vector3>(9, {kInfinity, -kInfinity, kInfinity}), ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        ForeignMesh mesh;
        BuildConvexHull(row.points, mesh);
        EXPECT_EQ(mesh.calls, row.calls);
    }

    ForeignMesh four;
    BuildConvexHull(std::vector<Vector3>{{0, 1, 2}, {3, 4, 5}, {7, 7, 8}, {9, 1, 0}}, four);
    EXPECT_THAT(four.polygons[0].vertices, ElementsAre(2, 1, 0));
    EXPECT_THAT(four.polygons[1].vertices, ElementsAre(3, 1, 0));
    EXPECT_THAT(four.polygons[2].vertices, ElementsAre(3, 2, 0));
    EXPECT_THAT(four.polygons[3].vertices, ElementsAre(3, 2, 1));
    EXPECT_THAT(four.polygons[1].uvs, ElementsAre(Vector2f{9, 1}, Vector2f{3, 4}, Vector2f{0, 1}));
}

TEST(HullPlanes, AnswerAsTheHullDoes)
{
    Mesh odd = hullOf(cloudOf(300, 5, [](Random& r) { return inBall(r, 1); }));
    odd.AddUV(0, 0);
    odd.AddPolygon({{0, 1}}, {{0, 0}}, 0);       // a line has no plane
    odd.AddPolygon({{3, 3, 3}}, {{0, 0, 0}}, 0); // nothing is outside of a point
    AddQuad(odd, {7, 8, 9, 9}, {}, 0);
    const Mesh small = hullOf({{0, 0, 0}, {0, 0, 4}, {4, 0, 0}, {0, 4, 0}, {1, 1, 1}});
    const Mesh empty;
    Random random;
    for (const Mesh* hull : std::initializer_list<const Mesh*>{&odd, &small, &empty}) {
        const HullPlanes planes(*hull);
        int inside = 0;
        for (int i = 0; i < 2000; ++i) {
            const Vector3 p = i == 0 ? Vector3{NAN, 0, 0} : i < 100 ? onLattice(random, 3, 0.5) : inBall(random, 1.2);
            ASSERT_EQ(planes.contains(p), PointInsideHull(p, *hull));
            inside += planes.contains(p);
        }
        EXPECT_EQ(inside == 2000, hull == &empty);
        EXPECT_GT(inside, 20);
    }
}

} // namespace
} // namespace vdt::test
