// One leaf: its outline, its picture, and the few polygons that carry the picture.
//
// Leaf meshes grow along +y from the origin, where the stalk is fixed, with the upper side towards +z. The picture
// shows the whole leaf, stalk end at the bottom, tip at the top, stretched to the full width of the picture.
#pragma once

#include "grower/image.h"
#include "grower/profile.h"
#include "vdt/math/matrix.h"
#include "vdt/mesh/mesh.h"

namespace grower {

/// Lengths are in lengths of the blade.
struct LeafShape {
    Profile halfWidth{};  // from 0 at the blade's base to 1 at its tip
    double stalk = 0.2;   // length of the leaf stalk
    int lobes = 0;        // on each side
    double lobeDepth = 0; // how far they are cut towards the midrib, 0 to 1
    int teeth = 0;        // on each side
    double toothDepth = 0;
    double slant = 0.5; // how far lobes, teeth and side veins lean towards the tip
    int veins = 7;      // on each side
    // Palmate leaves: besides the middle finger, so many on each side, all from the blade's base and all shaped as said
    // above. The angle is between neighbours in degrees, the length of each that of its inner neighbour times the
    // share.
    int fingers = 0;
    double fingerAngle = 40;
    double fingerShare = 0.85;
};

struct LeafPaint {
    vdt::Color3f blade{};
    vdt::Color3f margin{}; // towards the edge, and in patches
    vdt::Color3f vein{};
    double veinStrength = 0.5;
    vdt::Color3f spot{};
    double spotShare = 0; // how much of the blade the spots cover, 0 to 1
    uint32_t seed = 1;
};

/// The widest half width, in blade lengths: half the picture's width.
double LeafHalfWidth(const LeafShape& shape);

/// True if the place lies on the blade or the stalk. `across` and `along` in blade lengths, `along` 0 at the blade's
/// base and negative on the stalk.
bool IsOnLeaf(const LeafShape& shape, double across, double along);

/// The leaf with alpha, `size` pixels square.
Image PaintLeaf(const LeafShape& shape, const LeafPaint& paint, uint32_t size);

struct LeafBody {
    double length = 5;  // with the stalk, model units
    double fold = 25;   // degrees that each half is raised along the midrib
    double droop = 0.1; // how far the tip hangs, in lengths
    int32_t material = 0;
};

/// Adds a leaf of two quads, one on each side of the midrib, at `frame`.
void AddLeaf(vdt::Mesh& mesh, const LeafShape& shape, const LeafBody& body, const vdt::Matrix& frame);

} // namespace grower
