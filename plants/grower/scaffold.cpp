// The wood of a tree whose branches compete for space: Runions, Lane and Prusinkiewicz, "Modeling Trees with a Space
// Colonization Algorithm", 2007. Buds are strewn into the crown; each pulls at the nearest wood, the wood grows a step
// towards the buds that pull at it, and a bud that is reached is gone.
#include "grower/stems.h"

#include <map>
#include <tuple>

namespace grower {
namespace {

struct WoodNode {
    vdt::Vector3 position;
    uint64_t parent = vdt::kNone; // earlier in the list
    int children = 0;
};

// A place that wants to be reached, and the wood nearest to it so far.
struct Bud {
    vdt::Vector3 position;
    uint64_t nearest = vdt::kNone;
    double distance = 0; // to that, squared
};

class Colony {
public:
    Colony(const AgeRecipe& ageRecipe, Random& randomSource)
        : age(ageRecipe),
          recipe(*ageRecipe.scaffold),
          random(randomSource)
    {
    }

    std::vector<WoodNode> run()
    {
        strewBuds();
        growBole();
        growLeaders();
        constexpr int kMostRounds = 600;
        for (int round = 0; round < kMostRounds && growOneStep(); ++round) {
            const double near = recipe.nearEnough * recipe.nearEnough;
            std::erase_if(buds, [&](const Bud& bud) { return bud.distance < near; });
        }
        return std::move(nodes);
    }

private:
    void addNode(const vdt::Vector3& position, uint64_t parent)
    {
        if (parent != vdt::kNone) ++nodes[parent].children;
        for (Bud& bud : buds) {
            const vdt::Vector3 way = bud.position - position;
            const double distance = vdt::Dot(way, way);
            if (bud.nearest != vdt::kNone && distance >= bud.distance) continue;
            bud.nearest = nodes.size();
            bud.distance = distance;
        }
        nodes.push_back({position, parent});
    }

    void strewBuds()
    {
        std::vector<vdt::Vector3> clumps;
        for (int tries = 0; static_cast<int>(clumps.size()) < recipe.clumps && tries < 40 * recipe.clumps; ++tries) {
            const vdt::Vector3 place = placeInBox();
            if (takesBud(place)) clumps.push_back(place);
        }
        for (int tries = 0; static_cast<int>(buds.size()) < recipe.buds && tries < 40 * recipe.buds; ++tries) {
            const vdt::Vector3 place = clumps.empty() ? placeInBox() : placeInClump(clumps);
            if (takesBud(place)) buds.push_back({.position = place});
        }
    }

    // Anywhere in the box around the crown.
    vdt::Vector3 placeInBox()
    {
        double widest = 0;
        for (const ProfilePoint& point : age.crown) widest = std::max(widest, point.value * age.height);
        const double low = age.crown.front().at * age.height;
        const double high = age.crown.back().at * age.height;
        return {random.between(-widest, widest), random.between(low, high), random.between(-widest, widest)};
    }

    vdt::Vector3 placeInClump(const std::vector<vdt::Vector3>& clumps)
    {
        const vdt::Vector3& centre = clumps[random.below(static_cast<uint32_t>(clumps.size()))];
        for (;;) {
            const vdt::Vector3 way{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1)};
            if (vdt::Dot(way, way) > 1) continue;
            return centre + vdt::Vector3{way.x, way.y * recipe.clumpHeight, way.z} * recipe.clumpRadius;
        }
    }

    bool takesBud(const vdt::Vector3& place)
    {
        const double radius = age.height * ProfileValue(age.crown, place.y / age.height);
        const double out = std::hypot(place.x, place.z);
        return out <= radius && out >= recipe.hollow * radius * random.real();
    }

    // The bare trunk, up into the crown.
    void growBole()
    {
        const double top = (age.crown.front().at + recipe.clearance) * age.height;
        const double stray = 0.25 * recipe.wander;
        vdt::Vector3 place{0, 0, 0};
        vdt::Vector3 direction{0, 1, 0};
        addNode(place, vdt::kNone);
        while (place.y < top) {
            const vdt::Vector3 push{random.between(-stray, stray), 0.3, random.between(-stray, stray)};
            direction = vdt::Normalized(direction + push);
            place += direction * recipe.step;
            addNode(place, nodes.size() - 1);
        }
    }

    // Where the trunk divides at once, all around.
    void growLeaders()
    {
        if (recipe.leaders < 2) return;
        const uint64_t fork = nodes.size() - 1;
        const double start = random.between(0, 2 * vdt::kPi);
        for (int leader = 0; leader < recipe.leaders; ++leader) {
            const double turn = start + 2 * vdt::kPi * (leader + random.between(-0.25, 0.25)) / recipe.leaders;
            const double angle = recipe.leaderAngle * random.between(0.6, 1.4) * vdt::kPi / 180;
            const vdt::Vector3 direction{std::sin(angle) * std::cos(turn), std::cos(angle),
                                         std::sin(angle) * std::sin(turn)};
            uint64_t parent = fork;
            for (double grown = 0; grown < recipe.leaderLength * age.height; grown += recipe.step) {
                const vdt::Vector3 stray{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1)};
                const vdt::Vector3 way = vdt::Normalized(direction + stray * recipe.wander);
                addNode(nodes[parent].position + way * recipe.step, parent);
                parent = nodes.size() - 1;
            }
        }
    }

    // Every node that some bud within reach is nearest to grows one child. False if there is none.
    bool growOneStep()
    {
        std::map<uint64_t, vdt::Vector3> pulls;
        for (const Bud& bud : buds) {
            if (bud.distance > recipe.reach * recipe.reach) continue;
            const vdt::Vector3 way = vdt::Normalized(bud.position - nodes[bud.nearest].position);
            const auto [place, isNew] = pulls.try_emplace(bud.nearest, way);
            if (!isNew) place->second += way;
        }
        bool grown = false;
        constexpr int kMostChildren = 3; // else a node between two equal pulls would bud for ever
        for (const auto& [node, pull] : pulls) {
            if (nodes[node].children >= kMostChildren) continue;
            const vdt::Vector3 stray{random.between(-1, 1), random.between(-1, 1), random.between(-1, 1)};
            const vdt::Vector3 direction =
                vdt::Normalized(vdt::Normalized(pull) + stray * recipe.wander + vdt::Vector3{0, recipe.pull, 0});
            addNode(nodes[node].position + direction * recipe.step, node);
            grown = true;
        }
        return grown;
    }

    const AgeRecipe& age;
    const ScaffoldRecipe& recipe;
    Random& random;
    std::vector<Bud> buds;
    std::vector<WoodNode> nodes;
};

// The wood behind each node, as a length.
std::vector<double> woodBehind(const std::vector<WoodNode>& nodes)
{
    std::vector<double> behind(nodes.size(), 0);
    for (size_t i = nodes.size(); i-- > 1;)
        behind[nodes[i].parent] += behind[i] + vdt::Length(nodes[i].position - nodes[nodes[i].parent].position);
    return behind;
}

// Rounds the corners that growing by steps leaves; forks and foot stay.
void smooth(std::vector<WoodNode>& nodes)
{
    std::vector<vdt::Vector3> sums(nodes.size(), vdt::Vector3{0, 0, 0});
    for (const WoodNode& node : nodes)
        if (node.parent != vdt::kNone) sums[node.parent] += node.position;
    std::vector<vdt::Vector3> smoothed(nodes.size());
    for (size_t i = 0; i < nodes.size(); ++i) {
        const WoodNode& node = nodes[i];
        smoothed[i] = node.position;
        if (node.parent == vdt::kNone || node.children == 0) continue;
        const vdt::Vector3 middle = (nodes[node.parent].position + sums[i] / node.children) * 0.5;
        smoothed[i] = node.position * 0.5 + middle * 0.5;
    }
    for (size_t i = 0; i < nodes.size(); ++i) nodes[i].position = smoothed[i];
}

} // namespace

Stems GrowScaffold(const AgeRecipe& age, Random& random, std::vector<uint64_t>& thinFrom)
{
    std::vector<WoodNode> nodes = Colony(age, random).run();
    smooth(nodes);
    const std::vector<double> behind = woodBehind(nodes);

    // Each node's stem goes on through the child with the most wood behind it; the others begin stems of their own.
    std::vector<uint64_t> heir(nodes.size(), vdt::kNone);
    for (size_t i = 1; i < nodes.size(); ++i) {
        uint64_t& current = heir[nodes[i].parent];
        if (current == vdt::kNone || behind[i] > behind[current]) current = i;
    }

    Stems stems;
    thinFrom.clear();
    std::vector<std::pair<uint64_t, uint64_t>> place(nodes.size()); // stem and vertex of each node
    for (size_t first = 0; first < nodes.size(); ++first) {
        const uint64_t parent = nodes[first].parent;
        if (parent != vdt::kNone && heir[parent] == first) continue;

        const bool isThin = behind[first] < age.scaffold->twigWood;
        Stem stem{.material = isThin ? age.scaffold->thinMaterial : age.scaffold->material, .vertices = {}};
        if (parent != vdt::kNone) {
            std::tie(stem.parent, stem.parentVertex) = place[parent];
            stem.vertices.push_back({.position = nodes[parent].position});
        }
        uint64_t thin = vdt::kNone;
        for (uint64_t node = first; node != vdt::kNone; node = heir[node]) {
            if (thin == vdt::kNone && behind[node] < age.scaffold->twigWood) thin = stem.vertices.size();
            place[node] = {stems.size(), stem.vertices.size()};
            stem.vertices.push_back({.position = nodes[node].position});
        }
        thinFrom.push_back(thin);
        stems.push_back(std::move(stem));
    }
    return stems;
}

} // namespace grower
