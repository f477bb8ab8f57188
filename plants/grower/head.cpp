// The spiral of Vogel, "A Better Way to Construct the Sunflower Head", 1979, wrapped around a ball.
#include "grower/head.h"

#include "grower/organs.h"

namespace grower {
namespace {

constexpr double kGoldenAngle = 2.399963229728653; // radians

double radians(double degrees)
{
    return degrees * vdt::kPi / 180;
}

} // namespace

std::vector<vdt::Matrix> HeadPlaces(const HeadShape& head)
{
    std::vector<vdt::Matrix> places;
    Random random(head.seed);
    const double cap = 1 - std::cos(radians(head.opening));
    for (int i = 0; i < head.florets; ++i) {
        const double rise = 1 - cap * (i + 0.5) / head.florets; // even steps of it are even areas of the ball
        const double out = std::sqrt(std::max(0.0, 1 - rise * rise));
        const double turn = kGoldenAngle * i;
        const vdt::Vector3 way{out * std::cos(turn), rise, out * std::sin(turn)};
        const double radius = head.radius * (1 + head.unevenness * random.between(-1, 1));
        const vdt::Vector3 origin{way.x * radius, head.rise + way.y * radius * head.height, way.z * radius};
        const vdt::Vector3 facing = vdt::Normalized(vdt::Vector3{way.x, way.y / head.height, way.z});
        const vdt::Vector3 towardsRim{-way.x * rise, out * out + 1e-9, -way.z * rise};
        places.push_back(StandingFrame(origin, towardsRim - facing * vdt::Dot(towardsRim, facing), facing));
    }
    return places;
}

void AddFloret(vdt::Mesh& mesh, const FloretShape& floret, const LeafShape& petal, const LeafBody& body,
               const vdt::Matrix& frame)
{
    Random random(floret.seed);
    for (int i = 0; i < floret.petals; ++i) {
        const double turn = 2 * vdt::kPi * (i + floret.uneven * random.between(-1, 1)) / floret.petals;
        const vdt::Vector3 outward = frame.row(0) * std::cos(turn) + frame.row(1) * std::sin(turn);
        const double raised = radians(floret.raised * (1 + floret.uneven * random.between(-1, 1)));
        LeafBody own = body;
        own.length *= 1 + floret.uneven * random.between(-0.5, 0.5);
        AddLeaf(mesh, petal, own,
                StandingFrame(frame.row(3) + outward * floret.middle,
                              outward * std::cos(raised) + frame.row(2) * std::sin(raised), frame.row(2)));
    }
}

} // namespace grower
