#include "grower/organs.h"

namespace grower {
namespace {

double radians(double degrees)
{
    return degrees * vdt::kPi / 180;
}

} // namespace

vdt::Matrix StandingFrame(const vdt::Vector3& origin, vdt::Vector3 direction, const vdt::Vector3& facing)
{
    if (!vdt::Normalize(direction)) direction = {0, 1, 0};
    vdt::Vector3 front = facing - direction * vdt::Dot(facing, direction);
    if (vdt::Length(front) < 1e-6) front = vdt::Cross({1, 0, 0}, direction);
    if (vdt::Length(front) < 1e-6) front = {0, 0, 1};
    front = vdt::Normalized(front);

    vdt::Matrix frame = vdt::Matrix::Identity();
    frame.setRow(0, vdt::Cross(direction, front));
    frame.setRow(1, direction);
    frame.setRow(2, front);
    frame.setRow(3, origin);
    return frame;
}

std::vector<SprayPlace> SprayPlaces(const SprayShape& spray)
{
    std::vector<SprayPlace> places;
    Random random(spray.seed);
    double turn = 0;
    for (int i = 0; i < spray.leaves; ++i) {
        const double share = spray.leaves > 1 ? double(i) / (spray.leaves - 1) : 1.0;
        const double place = spray.length * (spray.firstAt + (spray.lastAt - spray.firstAt) * share);
        const double angle = radians(random.around(spray.angle) * (1 - share) + spray.angleAtTip * share);
        const vdt::Vector3 outward{std::cos(radians(turn)), 0, std::sin(radians(turn))};
        const vdt::Vector3 direction = outward * std::sin(angle) + vdt::Vector3{0, std::cos(angle), 0};
        const vdt::Vector3 towardsTip = vdt::Normalized(vdt::Vector3{0, 1, 0} - direction * direction.y);
        const vdt::Vector3 facing = towardsTip * (1 - spray.flat) + vdt::Vector3{0, 0, spray.flat};

        const double factor = random.around(spray.scale) * (1 + (spray.scaleAtTip - 1) * share);
        places.push_back({StandingFrame({0, place, 0}, direction, facing), factor});
        turn += random.around(spray.turn);
    }
    return places;
}

void AddSpray(vdt::Mesh& mesh, const SprayShape& spray, const LeafShape& shape, const LeafBody& body)
{
    for (const SprayPlace& place : SprayPlaces(spray)) {
        LeafBody leaf = body;
        leaf.length *= place.factor;
        AddLeaf(mesh, shape, leaf, place.frame);
    }
}

void AddTurned(vdt::Mesh& mesh, const TurnedBody& body, const vdt::Matrix& frame)
{
    const auto sides = static_cast<uint64_t>(body.sides);
    const double length = body.outline.back().at - body.outline.front().at;
    uint64_t below = 0;
    float belowV = 0;
    for (const ProfilePoint& ring : body.outline) {
        const auto v = static_cast<float>((ring.at - body.outline.front().at) / length * body.repeat);
        uint64_t first = 0;
        for (uint64_t side = 0; side < sides; ++side) {
            const double angle = 2 * vdt::kPi * static_cast<double>(side) / body.sides;
            const vdt::Vector3 place{ring.value * std::sin(angle), ring.at, ring.value * std::cos(angle)};
            const uint64_t point = mesh.AddPoint(vdt::TransformPoint(place, frame), vdt::Vector3{0, 0, 0});
            if (side == 0) first = point;
        }
        for (uint64_t side = 0; side < sides && &ring != &body.outline.front(); ++side) {
            const uint64_t other = (side + 1) % sides;
            const auto u = [&](uint64_t column) { return static_cast<float>(column) / static_cast<float>(sides); };
            vdt::AddQuad(mesh, {below + side, below + other, first + other, first + side},
                         {{u(side), belowV}, {u(side + 1), belowV}, {u(side + 1), v}, {u(side), v}}, body.material);
        }
        below = first;
        belowV = v;
    }
}

void AddCard(vdt::Mesh& mesh, double width, double height, int32_t material, const vdt::Matrix& frame)
{
    const auto point = [&](double x, double y) {
        return mesh.AddPoint(vdt::TransformPoint({x, y, 0}, frame), vdt::Vector3{0, 0, 0});
    };
    const uint64_t corners[4] = {point(-width / 2, 0), point(width / 2, 0), point(width / 2, height),
                                 point(-width / 2, height)};
    vdt::AddQuad(mesh, corners, {{0, 0}, {1, 0}, {1, 1}, {0, 1}}, material);
}

} // namespace grower
