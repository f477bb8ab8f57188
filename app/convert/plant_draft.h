// A plant as a foreign file tells it: branches through shared points, which need not form a tree yet.
#pragma once

#include "vdt/math/vector.h"

#include <cstdint>
#include <vector>

namespace verdanth {

struct DraftVertex {
    uint64_t point = 0;
    double radius = 1;
    vdt::Color3f color{1, 1, 1};
};

using DraftBranch = std::vector<DraftVertex>; // from the root end to the tip

/// All points are finite and all indices in range.
struct PlantDraft {
    std::vector<vdt::Vector3> points;
    std::vector<float> weights; // one a point; empty if the file has none
    std::vector<DraftBranch> branches;
    double centimeters = 1; // how long the unit of positions and radii is, unless the user knows better
    bool zUp = false;       // else y; likewise
};

} // namespace verdanth
