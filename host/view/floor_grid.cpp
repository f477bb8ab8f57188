#include "view/floor_grid.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr int kMostLines = 20;  // to each side of the middle
constexpr int kMajor = 10;      // every so many lines a stronger one
constexpr int kPieces = 16;     // of a line; it fades from one to the next
constexpr Float kEdgeOn = 0.02; // sine of the angle to the floor

struct Grid {
    Float middleX = 0, middleZ = 0, radius = 0, step = 0;
};

// False where lines so far out cannot be told apart.
bool gridFor(const ViewFrame& frame, const Extent& shown, Grid& grid)
{
    constexpr Float kFarthest = 1e6; // lines from the world's axes
    Vector middle;
    Float radius = 500;
    if (!shown.empty()) {
        middle = (shown.minimum + shown.maximum) * 0.5;
        radius = std::max((shown.maximum - shown.minimum).GetLength() / 2, 1e-3);
    }
    if (frame.perspective) radius = std::max(radius, Len(frame.worldFromCamera.off - middle) / 2);
    radius *= 1.5;
    const Float least = radius / kMostLines;
    const Float decade = std::pow(10.0, std::floor(std::log10(least)));
    Float step = decade;
    for (const Float factor : {2.0, 5.0, 10.0})
        if (step < least) step = factor * decade;
    if (!(std::max(std::abs(middle.x), std::abs(middle.z)) < kFarthest * step) || !std::isfinite(radius)) return false;
    grid = {std::round(middle.x / step) * step, std::round(middle.z / step) * step, radius, step};
    return true;
}

} // namespace

void DrawFloorGrid(const ViewFrame& frame, const Extent& shown, DrawList& list)
{
    if (std::abs(frame.worldFromCamera.v3.y) < kEdgeOn) return;

    Grid grid;
    if (!gridFor(frame, shown, grid)) return;
    DrawState state;
    state.matrix.off = Vector(grid.middleX, 0, grid.middleZ);
    state.depthWrite = false;
    const int lines = static_cast<int>(grid.radius / grid.step);
    for (const bool alongX : {true, false}) {
        const Float middle = alongX ? grid.middleZ : grid.middleX;
        for (int i = -lines; i <= lines; ++i) {
            const auto number = static_cast<int64_t>(std::llround(middle / grid.step)) + i;
            const float strength = number % kMajor == 0 ? 0.6F : 0.3F;
            const std::array<float, 3> color = number != 0 ? std::array{0.27F, 0.28F, 0.3F}
                                               : alongX    ? std::array{0.62F, 0.25F, 0.25F}
                                                           : std::array{0.25F, 0.35F, 0.62F};
            const auto end = [&](int piece) {
                const Float across = i * grid.step;
                const Float along = grid.radius * (2.0 * piece / kPieces - 1);
                const Float outward = std::min(std::hypot(across, along) / grid.radius, 1.0);
                const auto opacity = static_cast<float>((1 - outward) * (number == 0 ? 1.0F : strength));
                const auto a = static_cast<float>(along), b = static_cast<float>(across);
                return DrawVertex{{alongX ? a : b, 0, alongX ? b : a}, {color[0], color[1], color[2], opacity}};
            };
            for (int piece = 0; piece < kPieces; ++piece) {
                const DrawVertex ends[] = {end(piece), end(piece + 1)};
                list.add(DrawKind::Lines, state, ends, 2);
            }
        }
    }
}

} // namespace host
