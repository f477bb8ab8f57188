// The small meshes that connectors place: twigs with leaves, flowers, fruits.
//
// All of them grow along +y from the origin; what faces the light faces +z.
#pragma once

#include "grower/leaf.h"
#include "grower/random.h"

#include <memory>

namespace grower {

/// Leaves around a piece of twig.
struct SprayShape {
    int leaves = 4;
    double length = 10;     // of the piece of twig, model units
    double firstAt = -1;    // where the first leaf stands, in lengths; negative is behind the origin
    double lastAt = 0;      // where the last one stands
    Spread angle{50, 10};   // between leaf and twig, degrees
    double angleAtTip = 30; // the same for the last leaf
    Spread turn{180, 15};   // around the twig from one leaf to the next, degrees
    double flat = 1;        // 1: leaves face +z; 0: they face the twig's tip
    Spread scale{1, 0.15};  // of the leaves' length
    double scaleAtTip = 0.8;
    uint64_t seed = 1;
};

/// The frame of something that stands at `origin`, grows along `direction` and faces `facing` as well as it can.
vdt::Matrix StandingFrame(const vdt::Vector3& origin, vdt::Vector3 direction, const vdt::Vector3& facing);

/// Where one leaf of a spray stands, and how long it is compared with the others.
struct SprayPlace {
    vdt::Matrix frame;
    double factor = 1;
};

std::vector<SprayPlace> SprayPlaces(const SprayShape& spray);

void AddSpray(vdt::Mesh& mesh, const SprayShape& spray, const LeafShape& shape, const LeafBody& body);

/// A body of revolution around +y of `frame`: `outline` gives the radius along it, both in model units.
struct TurnedBody {
    Profile outline;
    int sides = 6;
    int32_t material = 0;
    double repeat = 1; // how often the texture stands along the body
};

void AddTurned(vdt::Mesh& mesh, const TurnedBody& body, const vdt::Matrix& frame);

/// A flat picture of the given width and height, standing on the origin of `frame` in its xy plane.
void AddCard(vdt::Mesh& mesh, double width, double height, int32_t material, const vdt::Matrix& frame);

} // namespace grower
