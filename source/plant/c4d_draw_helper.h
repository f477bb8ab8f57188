// What a viewport draws of a plant that has no geometry of its own there: branches as polylines, foliage as points.
//
// Filled once a build, in host space, and read by the drawing as often as the view changes. Colours of nodes are sRGB,
// of points linear: that is what the host's two drawing operations expect.
#pragma once

#include "c4d.h"
#include "vdt/generate/draw_helper.h"

#include <vector>

struct DrawPolylineHeader {
    UInt64 count = 0;    // of nodes
    Float maxRadius = 0; // host units
};

struct DrawNode {
    Vector position;
    Vector tangent; // unit or zero
    Vector32 colour;
    Float radius = 0; // host units
};

class C4dDrawHelper : public vdt::DrawHelper {
public:
    bool BeginPoints(uint64_t count, double newMeanArea) override;
    bool AddDrawPoint(const vdt::Vector3& position, const vdt::Color3f& colour) override;
    bool AddPolyline(std::span<const vdt::Vector3> positions, std::span<const vdt::Color3f> colours,
                     std::span<const double> radii) override;

    /// Empties all lists; scale and density stay.
    void clear();

    Float scale = 1;    // host units for one of the model's
    Float meanArea = 0; // of the foliage that a point stands for, model units
    Float density = 1;  // how many points are drawn, against the usual
    std::vector<Vector32> points;
    std::vector<Float32> pointColours; // linear, three a point
    std::vector<DrawPolylineHeader> polylines;
    std::vector<DrawNode> nodes; // of all polylines, in their order
};
