#include "convert/cylinder_tree.h"

#include "convert/cylinder_table.h"
#include "vdt/file/file_access.h"
#include "vdt/memory/index.h"

#include <algorithm>
#include <fstream>
#include <span>

namespace verdanth {
namespace {

constexpr double kTipTaper = 0.5; // a branch's end against its last cylinder, which is as thick as that is on average

// The cylinders with their links as positions in the table.
class CylinderTree {
public:
    explicit CylinderTree(std::vector<Cylinder> table) : cylinders(std::move(table))
    {
        for (size_t i = 0; i < cylinders.size(); ++i) byId.emplace_back(cylinders[i].id, i);
        std::sort(byId.begin(), byId.end());
        linkChildren();
    }

    const Cylinder& operator[](uint64_t index) const { return cylinders[index]; }
    std::span<const uint64_t> childrenOf(uint64_t index) const
    {
        return {children.data() + childrenBegin[index], children.data() + childrenBegin[index + 1]};
    }

    /// The foot of the largest tree; kNone if there is none. Tells the others off.
    uint64_t findRoot(LeftOutRows& leftOut) const
    {
        std::vector<bool> seen(cylinders.size());
        uint64_t best = vdt::kNone;
        uint64_t bestSize = 0;
        for (uint64_t i = 0; i < cylinders.size(); ++i) {
            if (parents[i] != kIsRoot) continue;
            const uint64_t size = markTree(i, seen);
            if (size > bestSize) best = i;
            bestSize = std::max(size, bestSize);
        }
        for (uint64_t i = 0; i < cylinders.size(); ++i)
            if (parents[i] == kIsRoot && i != best)
                leftOut.add("a root of its own, with all that grows from it; a larger tree is kept", cylinders[i].line);
        for (uint64_t i = 0; i < cylinders.size(); ++i) {
            if (parents[i] != kHasNoParent) continue;
            leftOut.add("its parent is missing; with all that grows from it", cylinders[i].line);
            markTree(i, seen);
        }
        for (uint64_t i = 0; i < cylinders.size(); ++i)
            if (!seen[i]) leftOut.add("its parents lead round in a circle", cylinders[i].line);
        return best;
    }

    /// The child that continues the branch; kNone at a tip.
    uint64_t continuationOf(uint64_t index) const
    {
        const Cylinder& cylinder = cylinders[index];
        uint64_t best = vdt::kNone;
        const auto better = [&](uint64_t child) {
            if (best == vdt::kNone) return true;
            const Cylinder& a = cylinders[child];
            const Cylinder& b = cylinders[best];
            const bool sameBranch = cylinder.branch != kNoId && a.branch == cylinder.branch;
            const bool bestSameBranch = cylinder.branch != kNoId && b.branch == cylinder.branch;
            if (sameBranch != bestSameBranch) return sameBranch;
            if ((a.id == cylinder.extension) != (b.id == cylinder.extension)) return a.id == cylinder.extension;
            return a.radius > b.radius;
        };
        for (const uint64_t child : childrenOf(index))
            if (better(child)) best = child;
        return best;
    }

private:
    static constexpr uint64_t kIsRoot = vdt::kNone;
    static constexpr uint64_t kHasNoParent = vdt::kNone - 1;

    uint64_t find(int64_t id) const
    {
        const auto found = std::lower_bound(byId.begin(), byId.end(), std::pair<int64_t, uint64_t>(id, 0));
        return found != byId.end() && found->first == id ? found->second : kHasNoParent;
    }

    // Tables that count from 1 say 0 for no parent, those that count from 0 say -1.
    void linkChildren()
    {
        parents.resize(cylinders.size());
        childrenBegin.assign(cylinders.size() + 1, 0);
        for (size_t i = 0; i < cylinders.size(); ++i) {
            const int64_t parent = cylinders[i].parent;
            parents[i] = find(parent);
            if (parent == kNoId || parent == cylinders[i].id || (parent == 0 && parents[i] == kHasNoParent))
                parents[i] = kIsRoot;
            if (parents[i] < cylinders.size()) ++childrenBegin[parents[i] + 1];
        }
        for (size_t i = 0; i < cylinders.size(); ++i) childrenBegin[i + 1] += childrenBegin[i];
        children.resize(childrenBegin.back());
        std::vector<uint64_t> next(childrenBegin.begin(), childrenBegin.end() - 1);
        for (size_t i = 0; i < cylinders.size(); ++i)
            if (parents[i] < cylinders.size()) children[next[parents[i]]++] = i;
    }

    // Marks all that grows from `root` and gives its count.
    uint64_t markTree(uint64_t root, std::vector<bool>& seen) const
    {
        std::vector<uint64_t> open = {root};
        uint64_t count = 0;
        while (!open.empty()) {
            const uint64_t index = open.back();
            open.pop_back();
            seen[index] = true;
            ++count;
            const std::span<const uint64_t> more = childrenOf(index);
            open.insert(open.end(), more.begin(), more.end());
        }
        return count;
    }

    std::vector<Cylinder> cylinders;
    std::vector<std::pair<int64_t, uint64_t>> byId; // sorted
    std::vector<uint64_t> parents;
    std::vector<uint64_t> childrenBegin; // one a cylinder and one behind the last
    std::vector<uint64_t> children;
};

class BranchGrower {
public:
    explicit BranchGrower(const CylinderTree& source) : tree(source) {}

    PlantDraft grow(uint64_t root)
    {
        draft.centimeters = 100;
        draft.zUp = true;
        foot = tree[root].start;
        draft.points.push_back({0, 0, 0});
        open.push_back({root, {0, tree[root].radius, {1, 1, 1}}});
        // NOLINTNEXTLINE(modernize-loop-convert): each opens more
        for (size_t i = 0; i < open.size(); ++i) growBranch(OpenBranch(open[i]));
        return std::move(draft);
    }

private:
    struct OpenBranch {
        uint64_t first; // cylinder
        DraftVertex start;
    };

    void growBranch(const OpenBranch& begin)
    {
        DraftBranch branch = {begin.start};
        for (uint64_t at = begin.first; at != vdt::kNone;) {
            const uint64_t next = tree.continuationOf(at);
            const double radius = tree[at].radius;
            const double meanRadius = next == vdt::kNone ? radius * kTipTaper : (radius + tree[next].radius) / 2;
            const uint64_t point = draft.points.size();
            draft.points.push_back(tree[at].end - foot);
            branch.push_back({point, meanRadius, {1, 1, 1}});
            for (const uint64_t child : tree.childrenOf(at))
                if (child != next) open.push_back({child, {point, std::min(tree[child].radius, radius), {1, 1, 1}}});
            at = next;
        }
        draft.branches.push_back(std::move(branch));
    }

    const CylinderTree& tree;
    vdt::Vector3 foot{};
    PlantDraft draft;
    std::vector<OpenBranch> open;
};

} // namespace

std::optional<PlantDraft> ReadCylinderTree(const std::string& path, vdt::MessageHandler& messages)
{
    std::ifstream file;
    vdt::OpenForReading(file, path);
    LeftOutRows leftOut;
    std::optional<std::vector<Cylinder>> table = ReadCylinderTable(file, leftOut, messages);
    if (!table) return std::nullopt;

    const CylinderTree tree(std::move(*table));
    const uint64_t root = tree.findRoot(leftOut);
    leftOut.tell(messages);
    if (root != vdt::kNone) return BranchGrower(tree).grow(root);
    messages.error("holds no cylinder without a parent, so there is no trunk");
    return std::nullopt;
}

} // namespace verdanth
