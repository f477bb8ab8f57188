#include "grower/leaf.h"

#include "grower/noise.h"

#include <array>

namespace grower {
namespace {

constexpr double kStalkHalfWidth = 0.014;
constexpr int kOutlineSteps = 64;

double fraction(double value)
{
    return value - std::floor(value);
}

// A place as one of the leaf's fingers sees it.
struct FingerPlace {
    double across, along;
};

// Of the finger, middle or side one, in which the place lies deepest. `across` is not negative.
FingerPlace fingerPlace(const LeafShape& shape, double across, double along)
{
    FingerPlace best{across, along};
    double bestDepth = -1e9;
    double share = 1;
    for (int finger = 0; finger <= shape.fingers; ++finger, share *= shape.fingerShare) {
        const double angle = finger * shape.fingerAngle * vdt::kPi / 180;
        const FingerPlace own{std::fabs(across * std::cos(angle) - along * std::sin(angle)) / share,
                              (across * std::sin(angle) + along * std::cos(angle)) / share};
        const double depth = (ProfileValue(shape.halfWidth, own.along) - own.across) * share;
        if (own.along < 0 || own.along > 1 || depth <= bestDepth) continue;
        best = own;
        bestDepth = depth;
    }
    return best;
}

// Visits places along the edge of the leaf without its teeth, on its right side.
template <class Visit> void walkEdge(const LeafShape& shape, const Visit& visit)
{
    constexpr int kSteps = 4 * kOutlineSteps;
    double share = 1;
    for (int finger = 0; finger <= shape.fingers; ++finger, share *= shape.fingerShare) {
        const double angle = finger * shape.fingerAngle * vdt::kPi / 180;
        for (int i = 0; i <= kSteps; ++i) {
            const double reach = i / double{kSteps};
            const double width = ProfileValue(shape.halfWidth, reach);
            for (const double side : {1.0, -1.0}) {
                const double across = reach * std::sin(angle) + side * width * std::cos(angle);
                visit(across * share, (reach * std::cos(angle) - side * width * std::sin(angle)) * share);
            }
        }
    }
}

// Half of the blade's width at a place of the midrib, with lobes and teeth as they are at that distance from it.
double halfWidthAt(const LeafShape& shape, double across, double along)
{
    double width = ProfileValue(shape.halfWidth, along);
    const double foot = along - shape.slant * across; // where the place's side vein leaves the midrib
    if (shape.lobes > 0) {
        const double wave = 0.5 + 0.5 * std::cos(2 * vdt::kPi * shape.lobes * foot);
        const double calm = SmoothStep(1.0, 0.86, along); // the end lobe is whole
        width *= 1 - shape.lobeDepth * calm * wave * wave;
    }
    if (shape.teeth > 0) {
        const double coarse = fraction(shape.teeth * foot);
        const double fine = fraction(3.0 * shape.teeth * foot);
        const double calm = SmoothStep(0.08, 0.4, along); // the blade's base is whole
        width *= 1 - shape.toothDepth * calm * (0.7 * (1 - coarse) + 0.3 * (1 - fine));
    }
    return width;
}

vdt::Color3f leafColor(const LeafShape& shape, const LeafPaint& paint, double across, double along)
{
    const double distance = std::fabs(across);
    const double width = std::max(ProfileValue(shape.halfWidth, along), 1e-3);
    if (distance > 1.2 * width + 0.05) return paint.margin; // out of sight
    const double foot = along - shape.slant * distance;

    // Patches, and the margin's colour coming in from the edge.
    const double patch = FractalNoise(across + 0.5, along * 0.8 + 0.1, 5, 5, 3, paint.seed);
    const double edge = SmoothStep(0.45, 1.05, distance / width + 0.25 * patch);
    vdt::Color3f color = Mix(paint.blade, paint.margin, 0.75 * edge);
    color = Scaled(color, 1 + 0.10 * patch);

    // The field between two veins is arched, so it darkens towards them.
    const double veinPhase = fraction(shape.veins * foot + 0.5);
    const double fromVein = shape.veins > 0 ? std::fabs(veinPhase - 0.5) / shape.veins : 1;
    color = Scaled(color, 1 - 0.10 * SmoothStep(0.03, 0.0, fromVein));
    const double sideVein = along < 0 ? 0 : SmoothStep(0.010, 0.003, fromVein) * (1 - 0.7 * distance / width);
    const double midrib = SmoothStep(0.016, 0.006, distance + 0.012 * std::max(along, 0.0));
    color = Mix(color, paint.vein, paint.veinStrength * std::max(midrib, 0.7 * std::max(sideVein, 0.0)));

    if (paint.spotShare > 0) {
        const double spots = FractalNoise(across + 0.5, along * 0.8 + 0.1, 9, 9, 4, paint.seed + 7) * 0.5 + 0.5;
        color = Mix(color, paint.spot, SmoothStep(1 - paint.spotShare, 1.12 - paint.spotShare, spots + 0.15 * edge));
    }
    return color;
}

// The two outer corners of a half leaf, so that the quad from the foot over them to the tip holds the outline.
struct HalfLeafCorners {
    double lowAlong, lowAcross;
    double highAlong, highAcross;
};

HalfLeafCorners cornersOf(const LeafShape& shape)
{
    // How far the outline stands out at each height of the whole leaf, stalk included.
    const double whole = 1 + shape.stalk;
    std::array<double, kOutlineSteps + 1> outline{};
    outline.fill(kStalkHalfWidth * 1.02);
    walkEdge(shape, [&](double across, double along) {
        const double step = std::clamp((along + shape.stalk) / whole, 0.0, 1.0) * kOutlineSteps;
        for (const double place : {std::floor(step), std::ceil(step)}) {
            double& width = outline[static_cast<size_t>(place)];
            width = std::max(width, across * 1.02);
        }
    });
    const double widest = LeafHalfWidth(shape);
    const auto widthAt = [&](int step) { return outline[static_cast<size_t>(step)]; };

    // As high as the line from the foot to the low corner allows.
    int low = 1;
    const auto holdsBelow = [&](int corner) {
        for (int i = 1; i < corner; ++i)
            if (widest * i / corner < widthAt(i)) return false;
        return true;
    };
    for (int corner = 1; corner < kOutlineSteps * 3 / 4; ++corner)
        if (holdsBelow(corner)) low = corner;

    // The high corner that costs the least area.
    HalfLeafCorners best{low * whole / kOutlineSteps, widest, whole, widest};
    double bestArea = widest * whole;
    for (int high = low + 1; high < kOutlineSteps; ++high) {
        double across = 0;
        for (int i = low + 1; i < kOutlineSteps; ++i) {
            const double share =
                i <= high ? double(i - low) / (high - low) : double(kOutlineSteps - i) / (kOutlineSteps - high);
            const double needed = i <= high ? widest + (widthAt(i) - widest) / share : widthAt(i) / share;
            across = std::max(across, needed);
        }
        const double area =
            ((widest + across) * (high - low) + across * (kOutlineSteps - high)) * whole / kOutlineSteps / 2;
        if (across > widest || area >= bestArea) continue;
        bestArea = area;
        best.highAlong = high * whole / kOutlineSteps;
        best.highAcross = across;
    }
    return best;
}

} // namespace

double LeafHalfWidth(const LeafShape& shape)
{
    double widest = kStalkHalfWidth;
    walkEdge(shape, [&](double across, double) { widest = std::max(widest, across); });
    return widest * 1.04;
}

bool IsOnLeaf(const LeafShape& shape, double across, double along)
{
    const double distance = std::fabs(across);
    if (along < 0.06 && along >= -shape.stalk && distance <= kStalkHalfWidth) return true;
    const FingerPlace place = fingerPlace(shape, distance, along);
    return place.along >= 0 && place.along <= 1 && place.across <= halfWidthAt(shape, place.across, place.along);
}

Image PaintLeaf(const LeafShape& shape, const LeafPaint& paint, uint32_t size)
{
    constexpr int kSamples = 3; // in each direction, for the alpha
    const double halfWidth = LeafHalfWidth(shape);
    const double whole = 1 + shape.stalk;

    const auto acrossAt = [&](double column) { return (column / size * 2 - 1) * halfWidth; };
    const auto alongAt = [&](double row) { return (1 - row / size) * whole - shape.stalk; };
    const auto isOnAt = [&](double column, double row) { return IsOnLeaf(shape, acrossAt(column), alongAt(row)); };

    // Most pixels are wholly inside or outside, which their corners tell.
    const uint64_t corners = uint64_t{size} + 1;
    std::vector<uint8_t> cornerIsOn(corners * corners);
    for (uint64_t i = 0; i < cornerIsOn.size(); ++i)
        cornerIsOn[i] = isOnAt(static_cast<double>(i % corners), static_cast<double>(i / corners));
    const auto coverage = [&](uint32_t x, uint32_t y) {
        const uint8_t* corner = &cornerIsOn[y * corners + x];
        const int sum = corner[0] + corner[1] + corner[corners] + corner[corners + 1];
        if (sum % 4 == 0 && isOnAt(x + 0.5, y + 0.5) == (sum == 4)) return sum / 4.0;
        int covered = 0;
        for (int sample = 0; sample < kSamples * kSamples; ++sample)
            covered += isOnAt(x + (sample % kSamples + 0.5) / kSamples, y + (sample / kSamples + 0.5) / kSamples);
        return covered / double{kSamples * kSamples};
    };

    Image image(size, size, true);
    for (uint32_t y = 0; y < size; ++y) {
        for (uint32_t x = 0; x < size; ++x) {
            // Colour goes on beyond the outline, so that filtering finds no foreign colour at the edge.
            const FingerPlace place = fingerPlace(shape, std::fabs(acrossAt(x + 0.5)), alongAt(y + 0.5));
            const double side = acrossAt(x + 0.5) < 0 ? -1 : 1;
            const vdt::Color3f color = leafColor(shape, paint, side * place.across, place.along);
            image.at(x, y) = {color.r, color.g, color.b, static_cast<float>(coverage(x, y))};
        }
    }
    return image;
}

void AddLeaf(vdt::Mesh& mesh, const LeafShape& shape, const LeafBody& body, const vdt::Matrix& frame)
{
    const double whole = 1 + shape.stalk;
    const double unit = body.length / whole;
    const double halfWidth = LeafHalfWidth(shape);
    const HalfLeafCorners corners = cornersOf(shape);
    const double lift = std::sin(body.fold * vdt::kPi / 180);
    const double reach = std::cos(body.fold * vdt::kPi / 180);

    const auto addPoint = [&](double across, double along) {
        const double share = along / whole;
        const vdt::Vector3 place{across * reach * unit, along * unit,
                                 std::fabs(across) * lift * unit - body.droop * share * share * body.length};
        return mesh.AddPoint(vdt::TransformPoint(place, frame), vdt::Vector3{0, 0, 0});
    };
    const auto coordinate = [&](double across, double along) {
        return vdt::Vector2f{static_cast<float>(0.5 + across / halfWidth / 2), static_cast<float>(along / whole)};
    };
    const uint64_t foot = addPoint(0, 0);
    const uint64_t tip = addPoint(0, whole);
    const vdt::Vector2f footAt = coordinate(0, 0);
    const vdt::Vector2f tipAt = coordinate(0, whole);
    for (const double side : {1.0, -1.0}) {
        const uint64_t low = addPoint(side * corners.lowAcross, corners.lowAlong);
        const uint64_t high = addPoint(side * corners.highAcross, corners.highAlong);
        const vdt::Vector2f lowAt = coordinate(side * corners.lowAcross, corners.lowAlong);
        const vdt::Vector2f highAt = coordinate(side * corners.highAcross, corners.highAlong);
        if (side > 0)
            vdt::AddQuad(mesh, {foot, low, high, tip}, {footAt, lowAt, highAt, tipAt}, body.material);
        else
            vdt::AddQuad(mesh, {tip, high, low, foot}, {tipAt, highAt, lowAt, footAt}, body.material);
    }
}

} // namespace grower
