#include "geometry/triangulation.h"
#include "vdt/math/mersenne_twister.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

namespace {

using testing::IsEmpty;
using vdt::Vector3;

using Outline = std::vector<Vector3>;

// "0 1 2 3; 3 4 0": the corners of each piece.
std::string text(const std::vector<PolygonPiece>& pieces)
{
    std::string result;
    for (const PolygonPiece& piece : pieces) {
        result += result.empty() ? "" : ";";
        for (uint32_t i = 0; i < piece.cornerCount; ++i) result += " " + std::to_string(piece.corners[i]);
    }
    return result;
}

double areaOf(const Outline& outline, const PolygonPiece& piece)
{
    Vector3 doubled{};
    for (uint32_t i = 2; i < piece.cornerCount; ++i)
        doubled += vdt::Cross(outline[piece.corners[i - 1]] - outline[piece.corners[0]],
                              outline[piece.corners[i]] - outline[piece.corners[0]]);
    return vdt::Length(doubled) / 2;
}

// Every corner is used, every piece has corners of its own, and there are n - 2 triangles' worth of them.
void checkPieces(const Outline& outline, const std::vector<PolygonPiece>& pieces)
{
    std::vector<int> uses(outline.size());
    size_t triangles = 0;
    for (const PolygonPiece& piece : pieces) {
        triangles += piece.cornerCount - 2;
        for (uint32_t i = 0; i < piece.cornerCount; ++i) {
            ASSERT_LT(piece.corners[i], outline.size());
            ++uses[piece.corners[i]];
            EXPECT_EQ(std::count(piece.corners.begin(), piece.corners.begin() + piece.cornerCount, piece.corners[i]),
                      1);
        }
    }
    EXPECT_EQ(triangles, outline.size() - 2);
    EXPECT_EQ(std::ranges::count(uses, 0), 0);
}

TEST(Triangulation, CutsKnownOutlinesAsEver)
{
    struct Row {
        const char* name;
        Outline outline;
        const char* pieces;
    };
    const Row rows[] = {
        {"line", {{0, 0, 0}, {1, 0, 0}}, ""},
        {"triangle", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, " 0 1 2"},
        {"quad", {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, " 0 1 2; 2 3 0"},
        {"pentagon", {{0, 0, 0}, {4, 0, 0}, {5.5, 3, 0}, {1, 5, 0}, {-1, 2, 0}}, " 0 1 2 3; 3 4 0"},
        {"house", {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 7, 0}, {0, 4, 0}}, " 3 4 0 1; 1 2 3"},
        {"L", {{0, 0, 0}, {4, 0, 0}, {4, 2, 0}, {2, 2, 0}, {2, 4, 0}, {0, 4, 0}}, " 5 0 1 2; 4 5 2 3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(text(TriangulatePolygon(row.outline)), row.pieces);
        if (row.outline.size() < 5) continue;

        // The same seen along the other axes, from behind as well: the flattened outline is the same each time.
        Outline alongX, alongY, mirroredZ, mirroredX;
        for (const Vector3& p : row.outline) {
            alongX.push_back({3, p.x, p.y});
            alongY.push_back({p.y, 3, p.x});
            mirroredZ.push_back({p.y, p.x, 3});
            mirroredX.push_back({3, p.y, p.x});
        }
        for (const Outline& outline : {alongX, alongY, mirroredZ, mirroredX})
            EXPECT_EQ(text(TriangulatePolygon(outline)), row.pieces);
    }
}

TEST(Triangulation, CoversOutlinesAroundACentreOnce)
{
    vdt::MersenneTwister random(7);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const size_t corners = 5 + random.index(20);
        Outline outline;
        for (size_t i = 0; i < corners; ++i) {
            const double angle = 2 * vdt::kPi * static_cast<double>(i) / static_cast<double>(corners);
            const double radius = 1 + 0.4 * random.real(); // convex for the most part, with dents
            outline.push_back({radius * std::cos(angle), 2, radius * std::sin(angle)});
        }
        const std::vector<PolygonPiece> pieces = TriangulatePolygon(outline);
        checkPieces(outline, pieces);

        double pieceArea = 0;
        for (const PolygonPiece& piece : pieces) pieceArea += areaOf(outline, piece);
        double outlineArea = 0;
        for (uint32_t i = 0; i < corners; ++i)
            outlineArea += areaOf({{0, 2, 0}, outline[i], outline[(i + 1) % corners]}, {{0, 1, 2, 0}, 3});
        EXPECT_NEAR(pieceArea, outlineArea, 1e-9);
    }
}

TEST(Triangulation, GivesAllTrianglesWhateverTheOutlineIsLike)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const Outline outlines[] = {
        {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}, {-1, 1, 0}, {3, 1, 0}}, // crosses itself
        Outline(7, Vector3{1, 2, 3}),                                        // one place
        {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}},             // a line
        {{0, 0, 0}, {none, 0, 0}, {2, 0, none}, {3, 1, 0}, {4, 0, 0}, {1e300, 1e300, -1e300}},
    };
    for (const Outline& outline : outlines) checkPieces(outline, TriangulatePolygon(outline));

    vdt::MersenneTwister random(11);
    for (int round = 0; round < 300; ++round) {
        Outline outline(5 + random.index(30));
        for (Vector3& p : outline) p = {std::floor(5 * random.real()), std::floor(5 * random.real()), 0};
        checkPieces(outline, TriangulatePolygon(outline));
    }
}

TEST(Triangulation, TakesLargeStarsAndRefusesTheLargest)
{
    Outline star;
    for (size_t i = 0; i < kMostPolygonCorners; ++i) {
        const double angle = 2 * vdt::kPi * static_cast<double>(i) / static_cast<double>(kMostPolygonCorners);
        star.push_back({(1 + 9.0 * (i % 2)) * std::cos(angle), (1 + 9.0 * (i % 2)) * std::sin(angle), 0});
    }
    checkPieces(star, TriangulatePolygon(star));
    star.push_back({0, 0, 0});
    EXPECT_THAT(TriangulatePolygon(star), IsEmpty());
}

} // namespace
