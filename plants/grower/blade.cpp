#include "grower/blade.h"

#include "vdt/mesh/mesh.h"

namespace grower {

void AddBlade(vdt::Mesh& mesh, const LeafShape& shape, const BladeBody& body, const vdt::Matrix& frame)
{
    const double pictureHalfWidth = LeafHalfWidth(shape);
    const double piece = body.length / body.pieces;
    const double lift = std::sin(body.fold * vdt::kPi / 180);
    const double reach = std::cos(body.fold * vdt::kPi / 180);
    const auto angleAt = [&](double share) {
        return (body.lean + body.arch * std::pow(share, body.stiffness)) * vdt::kPi / 180;
    };

    // Rows across the blade: left edge, midrib, right edge. The tip is a row of one.
    uint64_t below = 0;
    float belowEdge = 0;
    vdt::Vector3 place{0, 0, 0};
    for (int i = 0; i <= body.pieces; ++i) {
        const double share = static_cast<double>(i) / body.pieces;
        if (i > 0) {
            const double angle = angleAt(share - 0.5 / body.pieces);
            place += vdt::Vector3{0, std::cos(angle), -std::sin(angle)} * piece;
        }
        const double part = i == body.pieces ? 0 : std::max(ProfileValue(shape.halfWidth, share), 0.02);
        const double edge = std::min(part * 1.04 / pictureHalfWidth, 1.0); // of the picture's half
        const double halfWidth = edge * body.width / 2;
        const double angle = angleAt(share);
        const vdt::Vector3 facing{0, std::sin(angle), std::cos(angle)};
        const auto addPoint = [&](double side) {
            const vdt::Vector3 across = vdt::Vector3{side * reach * halfWidth, 0, 0} + facing * (lift * halfWidth);
            return mesh.AddPoint(vdt::TransformPoint(side == 0 ? place : place + across, frame), {0, 0, 0});
        };
        const auto v = static_cast<float>(share);
        const auto belowV = static_cast<float>(share - 1.0 / body.pieces);
        const auto left = [](float width) { return 0.5f - width / 2; };
        const auto right = [](float width) { return 0.5f + width / 2; };
        if (i == body.pieces) {
            const uint64_t tip = addPoint(0);
            vdt::AddTriangle(mesh, {below, below + 1, tip}, {{left(belowEdge), belowV}, {0.5f, belowV}, {0.5f, v}},
                             body.material);
            vdt::AddTriangle(mesh, {below + 1, below + 2, tip}, {{0.5f, belowV}, {right(belowEdge), belowV}, {0.5f, v}},
                             body.material);
            return;
        }
        const uint64_t row = addPoint(-1);
        addPoint(0);
        addPoint(1);
        const auto edgeAt = static_cast<float>(edge);
        if (i > 0) {
            vdt::AddQuad(mesh, {below, below + 1, row + 1, row},
                         {{left(belowEdge), belowV}, {0.5f, belowV}, {0.5f, v}, {left(edgeAt), v}}, body.material);
            vdt::AddQuad(mesh, {below + 1, below + 2, row + 2, row + 1},
                         {{0.5f, belowV}, {right(belowEdge), belowV}, {right(edgeAt), v}, {0.5f, v}}, body.material);
        }
        below = row;
        belowEdge = edgeAt;
    }
}

void AddBladeSpray(vdt::Mesh& mesh, const SprayShape& spray, const LeafShape& shape, const BladeBody& body)
{
    for (const SprayPlace& place : SprayPlaces(spray)) {
        BladeBody blade = body;
        blade.length *= place.factor;
        AddBlade(mesh, shape, blade, place.frame);
    }
}

} // namespace grower
