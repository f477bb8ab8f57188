// Radii by the pipe model of Shinozaki and others, "A Quantitative Analysis of Plant Form: The Pipe Model Theory",
// 1964: a stem is as thick as the twigs and the length that it carries demand. The exponent that joins radii is the one
// that makes the trunk as thick as the recipe says.
#include "grower/stems.h"

namespace grower {
namespace {

// What each vertex carries: every tip counts one, every piece of stem a little by its length. Falls along each stem.
std::vector<std::vector<double>> loads(const Stems& stems, double pieceLength)
{
    std::vector<std::vector<double>> load(stems.size());
    for (size_t i = 0; i < stems.size(); ++i) load[i].assign(stems[i].vertices.size(), 0);
    for (size_t i = stems.size(); i-- > 0;) {
        const Stem& stem = stems[i];
        std::vector<double>& own = load[i];
        own.back() += 1;
        for (size_t v = stem.vertices.size() - 1; v-- > 0;) {
            const double piece = vdt::Length(stem.vertices[v + 1].position - stem.vertices[v].position);
            own[v] += own[v + 1] + piece / pieceLength;
        }
        // A side branch that starts here is borne from here on down.
        if (stem.parent != vdt::kNone) load[stem.parent][stem.parentVertex] += own.front();
    }
    return load;
}

} // namespace

void ThickenStems(const AgeRecipe& age, Stems& stems)
{
    if (stems.empty()) return;
    const double pieceLength = std::max(age.tipRadius * 300, 1.0);
    const std::vector<std::vector<double>> load = loads(stems, pieceLength);
    const double exponent =
        std::clamp(std::log(load[0][0]) / std::log(std::max(age.trunkRadius / age.tipRadius, 1.5)), 0.8, 6.0);
    const double unit = age.trunkRadius / std::pow(load[0][0], 1 / exponent);

    for (size_t i = 0; i < stems.size(); ++i) {
        double barkV = 0;
        for (size_t v = 0; v < stems[i].vertices.size(); ++v) {
            StemVertex& vertex = stems[i].vertices[v];
            vertex.radius = unit * std::pow(load[i][v], 1 / exponent);
            if (i == 0) vertex.radius *= 1 + age.flare * std::exp(-vertex.position.y / age.flareHeight);
            if (v == 0) continue;

            // One texture length for each turn around the stem, so that bark is never stretched.
            const StemVertex& before = stems[i].vertices[v - 1];
            const double piece = vdt::Length(vertex.position - before.position);
            barkV += piece / (vdt::kPi * (vertex.radius + before.radius));
            vertex.barkV = barkV;
        }
    }
}

} // namespace grower
