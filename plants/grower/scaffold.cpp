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
        constexpr int kMostRounds = 600;
        for (int round = 0; round < kMostRounds && growOneStep(); ++round) dropServedBuds();
        return std::move(nodes);
    }

private:
    using Cell = std::tuple<int, int, int>;

    Cell cellOf(const vdt::Vector3& place) const
    {
        const auto index = [&](double along) { return static_cast<int>(std::floor(along / recipe.reach)); };
        return {index(place.x), index(place.y), index(place.z)};
    }

    void addNode(const vdt::Vector3& position, uint64_t parent)
    {
        if (parent != vdt::kNone) ++nodes[parent].children;
        nodes.push_back({position, parent});
        grid[cellOf(position)].push_back(nodes.size() - 1);
    }

    void strewBuds()
    {
        double widest = 0;
        for (const ProfilePoint& point : age.crown) widest = std::max(widest, point.value * age.height);
        const double low = age.crown.front().at * age.height;
        const double high = age.crown.back().at * age.height;
        for (int tries = 0; static_cast<int>(buds.size()) < recipe.buds && tries < 40 * recipe.buds; ++tries) {
            const vdt::Vector3 place{random.between(-widest, widest), random.between(low, high),
                                     random.between(-widest, widest)};
            const double radius = age.height * ProfileValue(age.crown, place.y / age.height);
            const double out = std::hypot(place.x, place.z);
            if (out > radius || out < recipe.hollow * radius * random.real()) continue;
            buds.push_back(place);
        }
    }

    // The bare trunk, up to where the first buds are felt.
    void growBole()
    {
        const double top = (age.crown.front().at + recipe.clearance) * age.height;
        vdt::Vector3 place{0, 0, 0};
        vdt::Vector3 direction{0, 1, 0};
        addNode(place, vdt::kNone);
        while (place.y < top) {
            const double stray = 0.25 * recipe.wander;
            direction = vdt::Normalized(
                direction + vdt::Vector3{random.between(-stray, stray), 0.3, random.between(-stray, stray)});
            place += direction * recipe.step;
            addNode(place, nodes.size() - 1);
        }
    }

    // The wood that feels a bud, if any.
    uint64_t nearestNode(const vdt::Vector3& bud) const
    {
        uint64_t nearest = vdt::kNone;
        double best = recipe.reach * recipe.reach;
        const auto [cellX, cellY, cellZ] = cellOf(bud);
        for (int x = cellX - 1; x <= cellX + 1; ++x)
            for (int y = cellY - 1; y <= cellY + 1; ++y)
                for (int z = cellZ - 1; z <= cellZ + 1; ++z) {
                    const auto found = grid.find({x, y, z});
                    if (found == grid.end()) continue;
                    for (const uint64_t node : found->second) {
                        const vdt::Vector3 way = bud - nodes[node].position;
                        const double distance = vdt::Dot(way, way);
                        if (distance < best) std::tie(best, nearest) = std::tuple(distance, node);
                    }
                }
        return nearest;
    }

    bool growOneStep()
    {
        std::map<uint64_t, vdt::Vector3> pulls; // in node order, so that growth does not depend on anything else
        for (const vdt::Vector3& bud : buds) {
            const uint64_t node = nearestNode(bud);
            if (node == vdt::kNone) continue;
            const vdt::Vector3 way = vdt::Normalized(bud - nodes[node].position);
            const auto [place, isNew] = pulls.try_emplace(node, way);
            if (!isNew) place->second += way;
        }
        bool grown = false;
        constexpr int kMostChildren = 3;
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

    void dropServedBuds()
    {
        const double near = recipe.nearEnough * recipe.nearEnough;
        std::erase_if(buds, [&](const vdt::Vector3& bud) {
            const uint64_t node = nearestNode(bud);
            if (node == vdt::kNone) return false;
            const vdt::Vector3 way = bud - nodes[node].position;
            return vdt::Dot(way, way) < near;
        });
    }

    const AgeRecipe& age;
    const ScaffoldRecipe& recipe;
    Random& random;
    std::vector<vdt::Vector3> buds;
    std::vector<WoodNode> nodes;
    std::map<Cell, std::vector<uint64_t>> grid;
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
            stem.order = stems[stem.parent].order + 1;
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
