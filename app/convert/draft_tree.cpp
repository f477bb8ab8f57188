#include "convert/draft_tree.h"

#include "vdt/math/box.h"
#include "vdt/memory/index.h"

#include <algorithm>
#include <string>
#include <tuple>

namespace verdanth {
namespace {

constexpr double kCoincident = 1e-7; // of the plant's diagonal: the precision of the floats in such files
constexpr double kSmallestDistance = 10 * vdt::kSmallestDirection; // closer points have no direction
constexpr double kStraightBack = 1e-6;                             // of two unit directions the length of their sum

std::string counted(uint64_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Programs that draw each branch by itself repeat the point of the parent on which it begins.
void joinBranchStarts(PlantDraft& draft, vdt::MessageHandler& messages)
{
    std::vector<uint64_t> useCounts(draft.points.size());
    std::vector<uint64_t> owners(draft.points.size(), vdt::kNone); // a branch on the point, best one that goes through
    std::vector<uint64_t> byPosition;
    for (size_t i = 0; i < draft.branches.size(); ++i) {
        for (const DraftVertex& vertex : draft.branches[i]) {
            if (useCounts[vertex.point]++ == 0) byPosition.push_back(vertex.point);
            if (owners[vertex.point] == vdt::kNone || &vertex != &draft.branches[i].front()) owners[vertex.point] = i;
        }
    }
    const auto key = [&](uint64_t point) {
        const vdt::Vector3& p = draft.points[point];
        return std::tuple(p.x, p.y, p.z);
    };
    std::sort(byPosition.begin(), byPosition.end(),
              [&](uint64_t a, uint64_t b) { return std::tuple(key(a), a) < std::tuple(key(b), b); });

    uint64_t joined = 0;
    for (size_t i = 0; i < draft.branches.size(); ++i) {
        const uint64_t start = draft.branches[i].front().point;
        if (useCounts[start] > 1) continue;
        const auto begin = std::lower_bound(byPosition.begin(), byPosition.end(), key(start),
                                            [&](uint64_t p, const auto& wanted) { return key(p) < wanted; });
        const auto parent = std::find_if(begin, byPosition.end(), [&](uint64_t p) {
            return key(p) != key(start) || (owners[p] != i && useCounts[p] > 0);
        });
        if (parent == byPosition.end() || key(*parent) != key(start)) continue;
        draft.branches[i].front().point = *parent;
        ++useCounts[*parent];
        --useCounts[start];
        ++joined;
    }
    if (joined > 0)
        messages.message(counted(joined, "branch is", "branches are") +
                         " joined to the branch on whose point it begins");
}

// Drops vertices that give a branch no direction.
class Straightener {
public:
    explicit Straightener(PlantDraft& target)
        : draft(target),
          sameAs(target.points.size(), vdt::kNone),
          foldedOnto(target.points.size(), vdt::kNone)
    {
        vdt::Box box;
        for (const DraftBranch& branch : draft.branches)
            for (const DraftVertex& vertex : branch) box.extend(draft.points[vertex.point]);
        tolerance = std::max(kSmallestDistance, box.isEmpty() ? 0 : box.diagonal() * kCoincident);
    }

    void run(vdt::MessageHandler& messages)
    {
        // What begins on a dropped point moves, and may need a second look.
        for (int pass = 0; pass < 2; ++pass) {
            for (DraftBranch& branch : draft.branches) straighten(branch);
            moveStarts();
        }
        std::erase_if(draft.branches, [](const DraftBranch& branch) { return branch.size() < 2; });
        if (coincident > 0)
            messages.warning(counted(coincident, "point that lies on its neighbour is",
                                     "points that lie on their "
                                     "neighbours are") +
                             " dropped");
        if (backward > 0)
            messages.warning(counted(backward, "point at which a branch turns straight back is",
                                     "points at which branches turn straight back are") +
                             " dropped");
    }

private:
    const vdt::Vector3& at(uint64_t point) const { return draft.points[point]; }

    uint64_t resolve(uint64_t point)
    {
        while (sameAs[point] != vdt::kNone) {
            const uint64_t next = sameAs[point];
            if (sameAs[next] != vdt::kNone) sameAs[point] = sameAs[next]; // shortens the way for the next one
            point = next;
        }
        return point;
    }

    void straighten(DraftBranch& branch)
    {
        size_t kept = 0;
        for (DraftVertex vertex : branch) {
            vertex.point = resolve(vertex.point);
            if (kept > 0 && isCoincident(branch[kept - 1].point, vertex.point)) {
                ++coincident;
                continue;
            }
            if (kept > 1 && turnsBack(branch[kept - 2].point, branch[kept - 1].point, vertex.point)) {
                ++backward;
                foldedOnto[vertex.point] = branch[kept - 1].point;
                continue;
            }
            branch[kept++] = vertex;
        }
        branch.resize(kept);
    }

    bool isCoincident(uint64_t last, uint64_t point)
    {
        if (last == point) return true;
        if (vdt::Length(at(point) - at(last)) > tolerance) return false;
        sameAs[point] = last;
        return true;
    }

    bool turnsBack(uint64_t a, uint64_t b, uint64_t c) const
    {
        return vdt::Length(vdt::Normalized(at(b) - at(a)) + vdt::Normalized(at(c) - at(b))) < kStraightBack;
    }

    // A branch that began on a dropped point begins where its parent goes on instead.
    void moveStarts()
    {
        std::vector<bool> stands(draft.points.size());
        for (DraftBranch& branch : draft.branches)
            for (DraftVertex& vertex : branch) {
                vertex.point = resolve(vertex.point);
                if (&vertex != &branch.front()) stands[vertex.point] = true;
            }
        for (DraftBranch& branch : draft.branches) {
            if (branch.empty() || stands[branch.front().point]) continue;
            const uint64_t onto = foldedOnto[branch.front().point];
            if (onto != vdt::kNone) branch.front().point = resolve(onto);
        }
    }

    PlantDraft& draft;
    std::vector<uint64_t> sameAs;     // the point that stands for this one
    std::vector<uint64_t> foldedOnto; // of a point dropped for leading back, the one before it
    double tolerance;
    uint64_t coincident = 0;
    uint64_t backward = 0;
};

// Walks the trees of all roots and keeps the largest.
class TreeFinder {
public:
    explicit TreeFinder(PlantDraft& target)
        : draft(target),
          beginsOf(target.points.size()),
          reached(target.points.size()),
          roots(target.branches.size(), vdt::kNone),
          cuts(target.branches.size())
    {
        for (size_t i = 0; i < draft.branches.size(); ++i) beginsOf[draft.branches[i].front().point].push_back(i);
    }

    bool run(vdt::MessageHandler& messages)
    {
        std::vector<bool> passed(draft.points.size());
        for (const DraftBranch& branch : draft.branches)
            for (size_t i = 1; i < branch.size(); ++i) passed[branch[i].point] = true;

        std::vector<uint64_t> best;
        uint64_t bestSize = 0;
        for (uint64_t point = 0; point < draft.points.size(); ++point) {
            if (passed[point] || beginsOf[point].empty()) continue;
            uint64_t size = 0;
            std::vector<uint64_t> tree = walk(point, size);
            if (size > bestSize) best.swap(tree);
            bestSize = std::max(bestSize, size);
        }
        if (best.empty()) {
            messages.error("no branch begins on a point of its own, so there is no trunk");
            return false;
        }
        const uint64_t root = draft.branches[best.front()].front().point;
        tell(root, messages);
        const auto rootRadius = [&](uint64_t branch) {
            const DraftVertex& first = draft.branches[branch].front();
            return first.point == root ? first.radius : -1;
        };
        std::iter_swap(best.begin(), std::ranges::max_element(best, {}, rootRadius));
        take(best);
        giveFoot(messages);
        return true;
    }

private:
    // The branches that hang on `root`, parents first. `size` is their count of vertices.
    std::vector<uint64_t> walk(uint64_t root, uint64_t& size)
    {
        std::vector<uint64_t> tree;
        reached[root] = true;
        const auto enter = [&](uint64_t point) {
            for (const uint64_t branch : beginsOf[point]) {
                roots[branch] = root;
                if (cutAtTree(branch) >= 2) tree.push_back(branch);
            }
        };
        enter(root);
        for (size_t i = 0; i < tree.size(); ++i) { // NOLINT(modernize-loop-convert): it grows on the way
            const uint64_t branch = tree[i];
            size += cuts[branch];
            for (uint64_t k = 1; k < cuts[branch]; ++k) enter(draft.branches[branch][k].point);
        }
        return tree;
    }

    // How many vertices the branch has before it runs into a branch that is there already.
    uint64_t cutAtTree(uint64_t branch)
    {
        const DraftBranch& vertices = draft.branches[branch];
        uint64_t& count = cuts[branch];
        for (count = 1; count < vertices.size() && !reached[vertices[count].point]; ++count)
            reached[vertices[count].point] = true;
        return count;
    }

    void tell(uint64_t root, vdt::MessageHandler& messages) const
    {
        uint64_t cutBranches = 0, otherTrees = 0, loose = 0;
        for (size_t i = 0; i < draft.branches.size(); ++i) {
            otherTrees += roots[i] != vdt::kNone && roots[i] != root;
            loose += roots[i] == vdt::kNone;
            cutBranches += roots[i] == root && cuts[i] < draft.branches[i].size();
        }
        if (cutBranches > 0)
            messages.warning(counted(cutBranches, "branch runs", "branches run") +
                             " into another one or into itself; what lies behind is left out");
        if (otherTrees > 0)
            messages.warning(
                counted(otherTrees, "branch grows from another root and is", "branches grow from other roots and are") +
                " left out: a plant has one trunk");
        if (loose > 0)
            messages.warning(counted(loose, "branch hangs on no root and is", "branches hang on no root and are") +
                             " left out");
    }

    // Leaves what the chosen branches need, in the order of first use.
    void take(const std::vector<uint64_t>& tree)
    {
        PlantDraft taken;
        std::vector<uint64_t> places(draft.points.size(), vdt::kNone);
        for (const uint64_t index : tree) {
            DraftBranch& branch = draft.branches[index];
            branch.resize(cuts[index]);
            for (DraftVertex& vertex : branch) {
                uint64_t& place = places[vertex.point];
                if (place == vdt::kNone) {
                    place = taken.points.size();
                    taken.points.push_back(draft.points[vertex.point]);
                    if (!draft.weights.empty()) taken.weights.push_back(draft.weights[vertex.point]);
                }
                vertex.point = place;
            }
            taken.branches.push_back(std::move(branch));
        }
        draft.points.swap(taken.points);
        draft.weights.swap(taken.weights);
        draft.branches.swap(taken.branches);
    }

    // Branches hang on points that another one goes through, so several that begin on the root want a trunk that
    // begins below.
    void giveFoot(vdt::MessageHandler& messages)
    {
        const auto onRoot = [](const DraftBranch& branch) { return branch.front().point == 0; };
        const auto count = std::count_if(draft.branches.begin(), draft.branches.end(), onRoot);
        if (count < 2) return;

        DraftBranch& trunk = draft.branches.front();
        const vdt::Vector3 root = draft.points[0];
        const vdt::Vector3 along = draft.points[trunk[1].point] - root;
        const double length = vdt::Length(along);
        const uint64_t foot = draft.points.size();
        draft.points.push_back(root - along * (std::clamp(trunk[0].radius, length / 4, length) / length));
        if (!draft.weights.empty()) draft.weights.push_back(draft.weights[0]);
        DraftVertex first = trunk[0];
        first.point = foot;
        trunk.insert(trunk.begin(), first);
        messages.message(std::to_string(count) + " branches begin at the foot; the thickest is lengthened downwards to "
                                                 "bear the others");
    }

    PlantDraft& draft;
    std::vector<std::vector<uint64_t>> beginsOf; // the branches that begin on a point
    std::vector<bool> reached;
    std::vector<uint64_t> roots; // of each branch, kNone while it has not been walked
    std::vector<uint64_t> cuts;  // how many vertices of each walked branch stay
};

} // namespace

bool MakeTree(PlantDraft& draft, vdt::MessageHandler& messages)
{
    joinBranchStarts(draft, messages);
    Straightener(draft).run(messages);
    if (!draft.branches.empty()) return TreeFinder(draft).run(messages);
    messages.error("holds no branch of two points that lie apart");
    return false;
}

} // namespace verdanth
