#include "grower/blade.h"

namespace grower {
namespace {

constexpr double kNarrowest = 0.02; // in the shape's lengths: a blade whose shape begins in a point still has a foot

// What lies across a blade: left edge, midrib and right edge; at the tip the midrib alone.
struct BladeRow {
    vdt::Vector3 middle;
    vdt::Vector3 facing;
    double edge = 0; // the edges' distance from the midrib, of half the picture
    double along = 0;
};

std::vector<BladeRow> rowsOf(const LeafShape& shape, const BladeBody& body)
{
    const double pictureHalfWidth = LeafHalfWidth(shape);
    const auto angleAt = [&](double share) {
        return (body.lean + body.arch * std::pow(share, body.stiffness)) * vdt::kPi / 180;
    };
    std::vector<BladeRow> rows;
    vdt::Vector3 place{0, 0, 0};
    for (int i = 0; i <= body.pieces; ++i) {
        const double along = static_cast<double>(i) / body.pieces;
        if (i > 0) {
            const double angle = angleAt(along - 0.5 / body.pieces);
            place += vdt::Vector3{0, std::cos(angle), -std::sin(angle)} * (body.length / body.pieces);
        }
        const double width = std::max(ProfileValue(shape.halfWidth, along), kNarrowest) * 1.04; // as LeafHalfWidth
        const double angle = angleAt(along);
        rows.push_back({place, {0, std::sin(angle), std::cos(angle)}, std::min(width / pictureHalfWidth, 1.0), along});
    }
    rows.back().edge = 0;
    return rows;
}

} // namespace

void AddBlade(vdt::Mesh& mesh, const LeafShape& shape, const BladeBody& body, const vdt::Matrix& frame)
{
    const double lift = std::sin(body.fold * vdt::kPi / 180);
    const double reach = std::cos(body.fold * vdt::kPi / 180);
    const auto addPoint = [&](const BladeRow& row, double side) {
        const double out = row.edge * body.width / 2;
        const vdt::Vector3 place =
            row.middle + vdt::Vector3{side * reach * out, 0, 0} + row.facing * (std::fabs(side) * lift * out);
        return mesh.AddPoint(vdt::TransformPoint(place, frame), {0, 0, 0});
    };
    const auto coordinate = [](const BladeRow& row, double side) {
        return vdt::Vector2f{static_cast<float>(0.5 + side * row.edge / 2), static_cast<float>(row.along)};
    };

    const std::vector<BladeRow> rows = rowsOf(shape, body);
    uint64_t below = 0; // the left edge of the row before
    for (size_t i = 0; i + 1 < rows.size(); ++i) {
        const uint64_t left = addPoint(rows[i], -1);
        addPoint(rows[i], 0);
        addPoint(rows[i], 1);
        for (uint64_t half = 0; i > 0 && half < 2; ++half) {
            const double side = half == 0 ? -1 : 0;
            vdt::AddQuad(mesh, {below + half, below + half + 1, left + half + 1, left + half},
                         {coordinate(rows[i - 1], side), coordinate(rows[i - 1], side + 1),
                          coordinate(rows[i], side + 1), coordinate(rows[i], side)},
                         body.material);
        }
        below = left;
    }

    const BladeRow& last = rows[rows.size() - 2];
    const uint64_t tip = addPoint(rows.back(), 0);
    for (uint64_t half = 0; half < 2; ++half) {
        const double side = half == 0 ? -1 : 0;
        vdt::AddTriangle(mesh, {below + half, below + half + 1, tip},
                         {coordinate(last, side), coordinate(last, side + 1), coordinate(rows.back(), 0)},
                         body.material);
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
