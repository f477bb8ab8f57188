#include "plant/c4d_draw_helper.h"

#include "geometry/handedness.h"
#include "support/colour_space.h"

#include <algorithm>

bool C4dDrawHelper::BeginPoints(uint64_t count, double newMeanArea)
{
    points.clear();
    pointColours.clear();
    points.reserve(count);
    pointColours.reserve(3 * count);
    meanArea = newMeanArea;
    return true;
}

bool C4dDrawHelper::AddDrawPoint(const vdt::Vector3& position, const vdt::Color3f& colour)
{
    points.push_back(Vector32(ToHost(position, scale)));
    const Vector linear = SrgbToLinear(ToHostColour(colour));
    for (const Float channel : {linear.x, linear.y, linear.z}) pointColours.push_back(static_cast<Float32>(channel));
    return true;
}

bool C4dDrawHelper::AddPolyline(std::span<const vdt::Vector3> positions, std::span<const vdt::Color3f> colours,
                                std::span<const double> radii)
{
    const size_t count = std::min({positions.size(), colours.size(), radii.size()});
    DrawPolylineHeader header{.count = count, .maxRadius = 0};
    for (size_t i = 0; i < count; ++i) {
        DrawNode node;
        node.position = ToHost(positions[i], scale);
        if (i > 0) node.tangent += node.position - ToHost(positions[i - 1], scale);
        if (i + 1 < count) node.tangent += ToHost(positions[i + 1], scale) - node.position;
        node.tangent = node.tangent.GetNormalized();
        node.colour = Vector32(colours[i].r, colours[i].g, colours[i].b);
        node.radius = scale * radii[i];
        header.maxRadius = FMax(header.maxRadius, node.radius);
        nodes.push_back(node);
    }
    polylines.push_back(header);
    return true;
}

void C4dDrawHelper::clear()
{
    points.clear();
    pointColours.clear();
    polylines.clear();
    nodes.clear();
    meanArea = 0;
}
