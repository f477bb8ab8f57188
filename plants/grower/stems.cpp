// Stems that stand on stems, order by order, after Weber and Penn, "Creation and Rendering of Realistic Trees", 1995:
// angles, lengths and turns with their variation along the parent, vertical attraction, and pruning by an envelope.
// Here the envelope also gives the first order its length, stems grow by steps of even length, and a stem's number of
// children follows from their distance.
#include "grower/stems.h"

#include <algorithm>
#include <iterator>

namespace grower {
namespace {

constexpr vdt::Vector3 kUp{0, 1, 0};

double radians(double degrees)
{
    return degrees * vdt::kPi / 180;
}

double mix(double atFoot, double atTip, double share)
{
    return atFoot + (atTip - atFoot) * share;
}

vdt::Vector3 sidewaysOf(const vdt::Vector3& direction)
{
    const vdt::Vector3 side = vdt::Cross(direction, kUp);
    return vdt::Length(side) > 1e-3 ? vdt::Normalized(side) : vdt::Vector3{1, 0, 0};
}

// `direction` turned away by `angle`, towards the place `turn` around it. Degrees.
vdt::Vector3 turnedAway(const vdt::Vector3& direction, double angle, double turn)
{
    const vdt::Vector3 side = sidewaysOf(direction);
    const vdt::Vector3 other = vdt::Cross(side, direction);
    const vdt::Vector3 outward = side * std::cos(radians(turn)) + other * std::sin(radians(turn));
    return vdt::Normalized(direction * std::cos(radians(angle)) + outward * std::sin(radians(angle)));
}

class Grower {
public:
    explicit Grower(const AgeRecipe& ageRecipe) : age(ageRecipe), random(ageRecipe.seed) {}

    Stems run()
    {
        std::vector<uint64_t> thinFrom;
        if (age.scaffold) {
            stems = GrowScaffold(age, random, thinFrom);
        } else {
            addStem({.start = {0, 0, 0}, .direction = kUp, .length = age.height * age.trunkLength}, age.trunk, 0);
            thinFrom = {0};
        }

        uint64_t begin = 0;
        for (int layer = 1; layer <= static_cast<int>(age.stems.size()); ++layer) {
            const uint64_t end = stems.size();
            for (uint64_t parent = begin; parent < end; ++parent)
                addChildren(parent, layer, layer == 1 ? thinFrom[parent] : 0);
            begin = end;
        }
        stretchToHeight();
        CutTrunkByBark(age, stems);
        return std::move(stems);
    }

private:
    struct Start {
        vdt::Vector3 start;
        vdt::Vector3 direction;
        double length;
        uint64_t parent = vdt::kNone;
        uint64_t parentVertex = 0;
    };

    bool isInCrown(const vdt::Vector3& place) const
    {
        return std::hypot(place.x, place.z) <= age.height * ProfileValue(age.crown, place.y / age.height);
    }

    // How far it is from `start` along `direction` to the crown's edge.
    double distanceToEdge(const vdt::Vector3& start, const vdt::Vector3& direction) const
    {
        const double step = age.height / 200;
        double distance = step;
        while (distance < 2 * age.height && isInCrown(start + direction * distance)) distance += step;
        return distance;
    }

    void addStem(const Start& start, const StemRecipe& recipe, int layer)
    {
        const auto count = static_cast<uint64_t>(std::max(1.0, std::round(start.length / recipe.segment)));
        const double step = start.length / static_cast<double>(count);
        Stem stem{.layer = layer,
                  .parent = start.parent,
                  .parentVertex = start.parentVertex,
                  .material = recipe.material,
                  .vertices = {}};
        stem.vertices.reserve(count + 1);
        stem.vertices.push_back({.position = start.start});
        vdt::Vector3 direction = start.direction;
        const double lowest = recipe.clearance.mean > 0 ? random.around(recipe.clearance) : 0;
        for (uint64_t i = 0; i < count; ++i) {
            const double share = static_cast<double>(i) / static_cast<double>(count);
            const double pull = mix(recipe.pull, recipe.pullAtTip, share);
            direction = vdt::Normalized(direction + kUp * pull);
            direction = turnedAway(direction, recipe.wander * random.between(0, 1.6), random.between(0, 360));
            const vdt::Vector3 next = stem.vertices.back().position + direction * step;
            if (next.y < lowest) break; // twigs end above the ground
            stem.vertices.push_back({.position = next});
        }
        if (stem.vertices.size() > 1) stems.push_back(std::move(stem));
    }

    void addChildren(uint64_t parentIndex, int layer, uint64_t fromVertex)
    {
        const StemRecipe& recipe = age.stems[static_cast<size_t>(layer) - 1];
        const bool toCrownEdge = layer == 1 && !age.scaffold;
        const bool onScaffold = layer == 1 && age.scaffold;
        const Stem parent = stems[parentIndex]; // a copy: the list grows below
        const uint64_t last = parent.vertices.size() - 1;
        const double length = StemLength(parent);
        if (length <= 0) return;

        const double begin = std::max(recipe.firstAt, static_cast<double>(fromVertex) / static_cast<double>(last));
        const double bearing = (recipe.lastAt - begin) * length;
        if (bearing <= 0) return;
        const auto count = static_cast<int>(std::floor(bearing / recipe.spacing + random.real()));
        double turn = random.around(recipe.startTurn);
        for (int i = 0; i < count; ++i) {
            const double share = begin + (recipe.lastAt - begin) * (i + random.between(0.2, 0.8)) / count;
            // On one of the parent's vertices, but neither its first nor its tip.
            const auto vertex = static_cast<uint64_t>(std::round(share * static_cast<double>(last)));
            turn += random.around(recipe.turn);
            if (vertex == 0 || vertex >= last) continue;

            const double change = std::max(0.0, (share - recipe.changeFrom) / (1 - recipe.changeFrom));
            const double angle = mix(random.around(recipe.angle), recipe.angleAtTip, change);
            const vdt::Vector3 direction = turnedAway(StemDirection(parent, vertex), angle, turn);
            const vdt::Vector3& start = parent.vertices[vertex].position;
            double childLength = random.around(recipe.length);
            if (toCrownEdge)
                childLength *= distanceToEdge(start, direction);
            else
                childLength *= (onScaffold ? 1 : length) * mix(1, recipe.lengthAtTip, change);
            if (!recipe.leavesCrown) childLength = prunedLength(start, direction, childLength);
            if (childLength < recipe.shortest) continue;
            addStem({start, direction, childLength, parentIndex, vertex}, recipe, layer);
        }
    }

    // Shorter, where a straight stem of `length` would leave the crown far behind.
    double prunedLength(const vdt::Vector3& start, const vdt::Vector3& direction, double length) const
    {
        double pruned = length;
        for (int i = 0; i < 6 && !isInCrown(start + direction * pruned); ++i) pruned *= 0.85;
        return pruned;
    }

    void stretchToHeight()
    {
        double top = 0;
        for (const Stem& stem : stems)
            for (const StemVertex& vertex : stem.vertices) top = std::max(top, vertex.position.y);
        if (top <= 0) return;
        for (Stem& stem : stems)
            for (StemVertex& vertex : stem.vertices) vertex.position = vertex.position * (age.height / top);
    }

    const AgeRecipe& age;
    Random random;
    Stems stems;
};

} // namespace

double StemLength(const Stem& stem)
{
    double length = 0;
    for (size_t i = 1; i < stem.vertices.size(); ++i)
        length += vdt::Length(stem.vertices[i].position - stem.vertices[i - 1].position);
    return length;
}

vdt::Vector3 StemDirection(const Stem& stem, uint64_t vertex)
{
    const uint64_t before = vertex == 0 ? 0 : vertex - 1;
    const uint64_t after = std::min<uint64_t>(vertex + 1, stem.vertices.size() - 1);
    return vdt::Normalized(stem.vertices[after].position - stem.vertices[before].position);
}

void CutTrunkByBark(const AgeRecipe& age, Stems& stems)
{
    // Where the trunk's pieces begin, but for the first; each has two vertices at least.
    std::vector<uint64_t> cuts;
    std::vector<int32_t> materials;
    const uint64_t last = stems[0].vertices.size() - 1;
    for (const FootBark& bark : age.footBarks) {
        uint64_t cut = cuts.empty() ? 1 : cuts.back() + 1;
        while (cut < last && stems[0].vertices[cut].position.y < bark.below * age.height) ++cut;
        if (cut >= last) break;
        cuts.push_back(cut);
        materials.push_back(bark.material);
    }
    if (cuts.empty()) return;

    // What stands on the trunk stands on the last piece that has begun below.
    const uint64_t added = cuts.size();
    for (size_t i = 1; i < stems.size(); ++i) {
        Stem& stem = stems[i];
        if (stem.parent != 0) {
            stem.parent += added;
            continue;
        }
        const auto piece = std::lower_bound(cuts.begin(), cuts.end(), stem.parentVertex) - cuts.begin();
        stem.parent = static_cast<uint64_t>(piece);
        if (piece > 0) stem.parentVertex -= cuts[stem.parent - 1];
    }

    const Stem trunk = std::move(stems[0]);
    Stems pieces;
    for (uint64_t piece = 0; piece <= added; ++piece) {
        const uint64_t begin = piece == 0 ? 0 : cuts[piece - 1];
        const uint64_t end = piece == added ? last : cuts[piece];
        const auto vertexAt = [&](uint64_t vertex) {
            return trunk.vertices.begin() + static_cast<std::ptrdiff_t>(vertex);
        };
        Stem stem{.material = piece == added ? trunk.material : materials[piece],
                  .vertices = {vertexAt(begin), vertexAt(end) + 1}};
        if (piece > 0) {
            stem.parent = piece - 1;
            stem.parentVertex = pieces.back().vertices.size() - 1;
        }
        pieces.push_back(std::move(stem));
    }
    stems[0] = std::move(pieces[0]);
    stems.insert(stems.begin() + 1, std::make_move_iterator(pieces.begin() + 1), std::make_move_iterator(pieces.end()));
}

Stems GrowStems(const AgeRecipe& age)
{
    return Grower(age).run();
}

} // namespace grower
