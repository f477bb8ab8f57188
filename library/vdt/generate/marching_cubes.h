// How a surface cuts a cube: Lorensen and Cline, "Marching Cubes: A High Resolution 3D Surface Construction Algorithm",
// 1987, in the form with one row for each of the 256 ways of marking corners.
#pragma once

#include <cstdint>

namespace vdt {

/// The cube's corners, in units of its size: four around the bottom, then four around the top.
constexpr uint8_t kCubeCorners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                        {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

/// The corners that each edge joins: four around the bottom, four around the top, four upright.
constexpr uint8_t kCubeEdges[12][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                       {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

/// The triangles for each set of marked corners, a bit a corner: three edges a triangle, each a hexadecimal digit. A
/// row names exactly the edges between a marked and an unmarked corner.
extern const char kCubeTriangles[256][16];

/// The number of the edge that a digit of kCubeTriangles stands for.
constexpr uint32_t EdgeOfDigit(char digit)
{
    return static_cast<uint32_t>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
}

} // namespace vdt
