#include "grower/bark.h"

#include "grower/noise.h"

#include <algorithm>

namespace grower {
namespace {

// Runs over a picture `turns` times as high as wide: `paintAt(u, v, color, height)`, v upwards from 0 to 1.
template <class PaintAt> Bark paintEach(uint32_t size, int turns, const PaintAt& paintAt)
{
    const uint32_t rows = size * static_cast<uint32_t>(turns);
    Bark bark{Image(size, rows, false), Image(size, rows, false)};
    for (uint32_t y = 0; y < rows; ++y) {
        for (uint32_t x = 0; x < size; ++x) {
            vdt::Color3f color;
            double height = 0.5;
            paintAt((x + 0.5) / size, 1 - (y + 0.5) / rows, color, height);
            const auto level = static_cast<float>(std::clamp(height, 0.0, 1.0));
            bark.color.at(x, y) = {color.r, color.g, color.b, 1};
            bark.height.at(x, y) = {level, level, level, 1};
        }
    }
    return bark;
}

// Short dark dashes across the stem, one a cell: 1 inside of a dash.
double dashes(double u, double v, int cellsU, int cellsV, double share, uint32_t seed)
{
    double strongest = 0;
    const double row = v * cellsV;
    const int rowIndex = static_cast<int>(std::floor(row));
    const double column = u * cellsU + 0.37 * rowIndex * cellsU;
    for (int step = -1; step <= 1; ++step) {
        const int cell = static_cast<int>(std::floor(column)) + step;
        const int wrappedCell =
            ((cell - static_cast<int>(std::floor(0.37 * rowIndex * cellsU))) % cellsU + cellsU) % cellsU;
        const uint32_t hash = HashOf(wrappedCell, rowIndex % cellsV, seed);
        if ((hash & 0xFF) / 255.0 > share) continue;
        const double length = 0.2 + 0.7 * ((hash >> 8) & 0xFF) / 255.0;
        const double centre = cell + 0.5 + 0.4 * (((hash >> 16) & 0xFF) / 255.0 - 0.5);
        const double middle = 0.3 + 0.4 * (hash >> 24) / 255.0;
        const double across = std::fabs(column - centre) / (0.5 * length);
        const double along = std::fabs(row - rowIndex - middle) / 0.16;
        strongest = std::max(strongest, SmoothStep(1.0, 0.55, std::sqrt(across * across + along * along)));
    }
    return strongest;
}

} // namespace

Bark PaintPaperBark(const PaperBarkPaint& paint, uint32_t size)
{
    const int turns = paint.turns;
    return paintEach(size, turns, [&](double u, double v, vdt::Color3f& color, double& height) {
        // The paper: clouds of a warmer tone, and fine curls around the stem.
        const double cloud = FractalNoise(u, v, 3, 5 * turns, 4, paint.seed);
        const double curl = FractalNoise(u, v, 4, 48 * turns, 3, paint.seed + 1);
        color = Mix(paint.paper, paint.peel, SmoothStep(-0.1, 0.9, cloud + 0.45 * curl));
        color = Scaled(color, 1 + 0.05 * curl);
        height = 0.62 + 0.08 * curl;

        // Breathing pores.
        const double pore = std::max(dashes(u, v, 5, 34 * turns, 0.30, paint.seed + 2),
                                     0.8 * dashes(u, v, 11, 70 * turns, 0.22, paint.seed + 3));
        color = Mix(color, paint.pore, 0.85 * pore);
        height -= 0.10 * pore;

        // Patches, wider than high with ragged edges; their black cork is cracked along the stem.
        const double field = FractalNoise(u, v, 3, 4 * turns, 2, paint.seed + 4) +
                             0.35 * FractalNoise(u, v, 12, 20 * turns, 3, paint.seed + 5);
        const double edge = 0.75 - 1.3 * paint.patchShare;
        const double patch = SmoothStep(edge, edge + 0.10, field);
        const double cracks = SmoothStep(0.0, 0.35, Cells(u, v, 24, 12 * turns, paint.seed + 6).border);
        color = Mix(color, Scaled(paint.patch, 0.55 + 0.75 * cracks), patch);
        height = height * (1 - patch) + (0.35 + 0.65 * cracks) * patch;
    });
}

Bark PaintRidgedBark(const RidgedBarkPaint& paint, uint32_t size)
{
    const int turns = paint.turns;
    return paintEach(size, turns, [&](double u, double v, vdt::Color3f& color, double& height) {
        // Long cells along the stem, bent by noise, whose borders are the cracks.
        const double bendU = 0.030 * FractalNoise(u, v, 4, 4 * turns, 3, paint.seed);
        const double bendV = 0.05 * FractalNoise(u, v, 8, 4 * turns, 2, paint.seed + 1);
        const CellPlace plate = Cells(u + bendU, v + bendV, paint.ridges, paint.plates * turns, paint.seed + 2);
        const double grain = FractalNoise(u, v, 48, 12 * turns, 3, paint.seed + 3);
        const double rough = FractalNoise(u, v, 24, 24 * turns, 4, paint.seed + 4);
        const double ridge = SmoothStep(0.0, 0.27, plate.border + 0.07 * rough);
        height = ridge * (0.70 + 0.14 * grain + 0.16 * rough) + 0.06 * rough;

        const double tone = 0.82 + 0.30 * ((plate.number & 0xFF) / 255.0) + 0.16 * grain + 0.12 * rough;
        color = Mix(paint.crack, Scaled(paint.ridge, tone), ridge);
        const double moss = FractalNoise(u, v, 3, 3 * turns, 5, paint.seed + 5) * 0.5 + 0.5;
        color =
            Mix(color, paint.moss, 0.7 * ridge * SmoothStep(1 - paint.mossShare, 1.25 - paint.mossShare, moss + 0.2));
    });
}

Bark PaintSmoothBark(const SmoothBarkPaint& paint, uint32_t size)
{
    return paintEach(size, 1, [&](double u, double v, vdt::Color3f& color, double& height) {
        const double line = FractalNoise(u, v, 32, 4, 4, paint.seed);
        const double cloud = FractalNoise(u, v, 4, 4, 4, paint.seed + 1);
        const double pore = dashes(u, v, 10, 22, 2 * paint.poreShare, paint.seed + 2);
        color = Mix(paint.skin, paint.shade, 0.45 + 0.35 * line + 0.45 * cloud);
        color = Mix(color, paint.pore, 0.9 * pore);
        height = 0.5 + 0.12 * line + 0.10 * cloud + 0.25 * pore;
    });
}

Bark PaintScarredBark(const ScarredBarkPaint& paint, uint32_t size)
{
    return paintEach(size, 1, [&](double u, double v, vdt::Color3f& color, double& height) {
        // Each row stands in the gaps of the one below; a lozenge reaches into both of its neighbours' rows.
        const double bend = 0.10 * FractalNoise(u, v, 6, 6, 3, paint.seed);
        const double column = u * paint.scars + bend;
        const double row = v * paint.rows / 2 + bend;
        double inside = 0; // of the nearest lozenge: 1 in its middle, 0 on its edge
        uint32_t number = 0;
        for (const double shift : {0.0, 0.5}) {
            const double across = std::fabs(column - shift - std::round(column - shift));
            const double along = std::fabs(row - shift - std::round(row - shift));
            const double depth = 1 - 2 * (across + along);
            if (depth <= inside) continue;
            inside = depth;
            const auto wrapped = [](double place, int period) {
                return (static_cast<int>(std::lround(place)) % period + period) % period;
            };
            number = HashOf(wrapped(column - shift, paint.scars),
                            2 * wrapped(row - shift, paint.rows / 2) + (shift > 0), paint.seed);
        }
        const double grain = FractalNoise(u, v, 16, 64, 3, paint.seed + 1);
        const double threads = FractalNoise(u, v, 64, 16, 3, paint.seed + 2);
        const double scar = SmoothStep(0.06, 0.22, inside + 0.05 * grain);
        const double rim = scar * SmoothStep(0.45, 0.22, inside);
        color = Mix(Scaled(paint.fibre, 1 + 0.35 * threads),
                    Scaled(paint.scar, 0.85 + 0.3 * (number & 0xFF) / 255.0 + 0.16 * grain), scar);
        color = Mix(color, paint.rim, 0.7 * rim);
        height = 0.25 + 0.5 * scar + 0.12 * grain + 0.1 * threads * (1 - scar) + 0.1 * rim;
    });
}

Bark BlendBarks(const Bark& below, const Bark& above, double share, uint32_t seed)
{
    Bark blend = below;
    const uint32_t width = below.color.width;
    const uint32_t rows = below.color.height;
    const auto cells = static_cast<int>(6 * rows / width);
    for (uint32_t y = 0; y < rows; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            const double v = 1 - (y + 0.5) / rows;
            const double spots = 0.4 * share * FractalNoise((x + 0.5) / width, v, 6, cells, 3, seed);
            const double part = SmoothStep(0.5 - 0.5 * share, 0.5 + 0.5 * share, v + spots);
            const auto mixInto = [&](vdt::Color4f& pixel, const vdt::Color4f& other) {
                const vdt::Color3f mixed = Mix({pixel.r, pixel.g, pixel.b}, {other.r, other.g, other.b}, part);
                pixel = {mixed.r, mixed.g, mixed.b, 1};
            };
            mixInto(blend.color.at(x, y), above.color.at(x, y));
            mixInto(blend.height.at(x, y), above.height.at(x, y));
        }
    }
    return blend;
}

} // namespace grower
