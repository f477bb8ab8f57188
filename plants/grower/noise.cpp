#include "grower/noise.h"

#include <algorithm>
#include <cmath>

namespace grower {
namespace {

int wrapped(int value, int period)
{
    const int rest = value % period;
    return rest < 0 ? rest + period : rest;
}

double gradient(uint32_t hash, double x, double y)
{
    switch (hash & 7) {
    case 0: return x + y;
    case 1: return x - y;
    case 2: return y - x;
    case 3: return -x - y;
    case 4: return 1.4142 * x;
    case 5: return -1.4142 * x;
    case 6: return 1.4142 * y;
    default: return -1.4142 * y;
    }
}

double fade(double t)
{
    return t * t * t * (t * (t * 6 - 15) + 10);
}

} // namespace

uint32_t HashOf(int x, int y, uint32_t seed)
{
    uint32_t h = static_cast<uint32_t>(x) * 0x9E3779B1u ^ static_cast<uint32_t>(y) * 0x85EBCA77u ^ seed * 0xC2B2AE3Du;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    return h ^ (h >> 15);
}

double Noise(double x, double y, int periodX, int periodY, uint32_t seed)
{
    const int cellX = static_cast<int>(std::floor(x));
    const int cellY = static_cast<int>(std::floor(y));
    const double insideX = x - cellX;
    const double insideY = y - cellY;
    const auto corner = [&](int stepX, int stepY) {
        const uint32_t hash = HashOf(wrapped(cellX + stepX, periodX), wrapped(cellY + stepY, periodY), seed);
        return gradient(hash, insideX - stepX, insideY - stepY);
    };
    const double shareX = fade(insideX);
    const double low = corner(0, 0) + shareX * (corner(1, 0) - corner(0, 0));
    const double high = corner(0, 1) + shareX * (corner(1, 1) - corner(0, 1));
    return low + fade(insideY) * (high - low);
}

double FractalNoise(double x, double y, int cellsX, int cellsY, int octaves, uint32_t seed)
{
    double sum = 0;
    double height = 1;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += height * Noise(x * cellsX, y * cellsY, cellsX, cellsY, seed + static_cast<uint32_t>(octave) * 101);
        cellsX *= 2;
        cellsY *= 2;
        height *= 0.5;
    }
    return sum;
}

CellPlace Cells(double x, double y, int cellsX, int cellsY, uint32_t seed)
{
    const double atX = x * cellsX;
    const double atY = y * cellsY;
    const int cellX = static_cast<int>(std::floor(atX));
    const int cellY = static_cast<int>(std::floor(atY));
    double first = 1e9;
    double second = 1e9;
    CellPlace place;
    for (int stepY = -1; stepY <= 1; ++stepY) {
        for (int stepX = -1; stepX <= 1; ++stepX) {
            const uint32_t hash = HashOf(wrapped(cellX + stepX, cellsX), wrapped(cellY + stepY, cellsY), seed);
            const double dx = cellX + stepX + (hash & 0xFFFF) / 65536.0 - atX;
            const double dy = cellY + stepY + (hash >> 16) / 65536.0 - atY;
            const double distance = std::sqrt(dx * dx + dy * dy);
            if (distance < first) {
                second = first;
                first = distance;
                place.number = HashOf(static_cast<int>(hash & 0x7FFFFFFF), 1, seed);
            } else {
                second = std::min(second, distance);
            }
        }
    }
    place.nearest = first;
    place.border = second - first;
    return place;
}

double SmoothStep(double low, double high, double value)
{
    const double t = std::clamp((value - low) / (high - low), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

} // namespace grower
