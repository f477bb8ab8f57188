// Smooth noise that repeats, for textures without seams.
#pragma once

#include <cstdint>

namespace grower {

/// Perlin, "Improving Noise", 2002, on a lattice that repeats after `periodX` and `periodY` cells: about -1 to 1.
double Noise(double x, double y, int periodX, int periodY, uint32_t seed);

/// The sum of `octaves` noises, each of twice the frequency and half the height of the one before: about -1 to 1.
/// `x` and `y` run from 0 to 1 over one period; `cellsX` and `cellsY` count the first noise's cells in it.
double FractalNoise(double x, double y, int cellsX, int cellsY, int octaves, uint32_t seed);

/// What a random field of cells says of a place.
struct CellPlace {
    double nearest = 0;  // distance to the nearest cell centre, in cells
    double border = 0;   // how much farther the second nearest is: 0 on the border between two cells
    uint32_t number = 0; // a random number of the nearest cell
};

/// Worley, "A Cellular Texture Basis Function", 1996, repeating like Noise.
CellPlace Cells(double x, double y, int cellsX, int cellsY, uint32_t seed);

/// 0 below `low`, 1 above `high`, smooth between. With `low` above `high` it falls.
double SmoothStep(double low, double high, double value);

/// A random number of a lattice place.
uint32_t HashOf(int x, int y, uint32_t seed);

} // namespace grower
