// Round flower heads: florets spread evenly over a ball or a part of it, and petals around a middle.
#pragma once

#include "grower/leaf.h"

#include <vector>

namespace grower {

struct HeadShape {
    int florets = 60;
    double radius = 8;
    double height = 1;     // of the ball, in widths
    double opening = 120;  // degrees from the top of the head to its last floret
    double rise = 6;       // how far along +y the ball's middle is
    double unevenness = 0; // random share of the radius
    uint64_t seed = 1;
};

/// Where the florets stand: frames that face outwards with +z. From the top of the head to its rim.
std::vector<vdt::Matrix> HeadPlaces(const HeadShape& head);

/// Petals all around the origin of `frame`, which face its +z.
struct FloretShape {
    int petals = 4;
    double middle = 0; // radius that stays free
    double raised = 0; // degrees that the petals rise from the plane
    double uneven = 0; // random share of angles and lengths
    uint64_t seed = 1;
};

void AddFloret(vdt::Mesh& mesh, const FloretShape& floret, const LeafShape& petal, const LeafBody& body,
               const vdt::Matrix& frame);

} // namespace grower
