// Polygons of any size cut into triangles and quads, the only ones that the host knows.
//
// A pure routine over positions. Which pieces come out is part of how plants look in existing scenes: the flattest
// ear goes first, and triangles are joined to quads only where the result is no exact rectangle.
#pragma once

#include "vdt/math/vector.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Larger polygons are not cut: the time grows with the square of the corners.
constexpr size_t kMostPolygonCorners = 4096;

/// Three or four corners, by their place in the outline.
struct PolygonPiece {
    std::array<uint32_t, 4> corners{};
    uint32_t cornerCount = 0;

    friend bool operator==(const PolygonPiece&, const PolygonPiece&) = default;
};

/// Cuts the polygon that `outline` runs around, in either direction: quads first, then the triangles that are left.
/// An outline of n corners always gives n - 2 triangles' worth, also where it crosses itself. Three corners give one
/// triangle and four give two; fewer, or too many, give nothing.
std::vector<PolygonPiece> TriangulatePolygon(std::span<const vdt::Vector3> outline);
