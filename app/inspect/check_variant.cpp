#include "inspect/check_variant.h"

#include "vdt/skeleton/ring.h"
#include "vdt/skeleton/walker.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace verdanth {
namespace {

std::string counted(uint64_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Marks every branch that can be reached from the branches that begin on `root`.
void markTree(const vdt::Skeleton& skeleton, uint64_t root, std::vector<bool>& marked)
{
    std::vector<const vdt::SkeletonVertex*> open;
    const auto enter = [&](const vdt::SkeletonVertex& vertex) {
        if (vertex.prev || marked[vertex.branch]) return;
        marked[vertex.branch] = true;
        open.push_back(&vertex);
    };
    const auto enterPoint = [&](const vdt::SkeletonVertex& vertex) {
        enter(vertex);
        for (const vdt::SkeletonVertex& other : vdt::RingOthers(vertex)) enter(other);
    };
    if (skeleton.points[root].firstVertex) enterPoint(*skeleton.points[root].firstVertex);
    while (!open.empty()) {
        const vdt::SkeletonVertex* vertex = open.back();
        open.pop_back();
        for (; vertex; vertex = vertex->next) enterPoint(*vertex);
    }
}

void checkReach(const vdt::Skeleton& skeleton, const std::string& title, FindingList& findings)
{
    if (skeleton.branches.empty()) return;
    std::vector<bool> walked(skeleton.branches.size());
    vdt::SkeletonWalker walker(skeleton, true, vdt::WalkFilter::None);
    while (walker.advance()) walked[walker.vertex().branch] = true;

    std::vector<uint64_t> roots;
    skeleton.FindRoots(roots);
    std::vector<bool> underOtherRoots = walked;
    for (size_t i = 1; i < roots.size(); ++i) markTree(skeleton, roots[i], underOtherRoots);

    uint64_t besides = 0;
    uint64_t unreachable = 0;
    uint64_t firstUnreachable = 0;
    for (size_t branch = 0; branch < walked.size(); ++branch) {
        if (walked[branch] || !skeleton.branches[branch].firstVertex) continue;
        if (underOtherRoots[branch])
            ++besides;
        else if (unreachable++ == 0)
            firstUnreachable = branch;
    }
    if (besides > 0)
        findings.warn("root", title + ": only the tree of the first root (point " + std::to_string(roots.front()) +
                                  ") is built; " + counted(roots.size() - 1, "other root", "other roots") + " with " +
                                  counted(besides, "branch is", "branches are") + " never walked");
    if (unreachable > 0)
        findings.warn("branch", title + ": " + counted(unreachable, "branch hangs", "branches hang") +
                                    " on no root and can never be reached; the first is branch " +
                                    std::to_string(firstUnreachable));
}

void checkPoints(const vdt::Skeleton& skeleton, const std::string& title, FindingList& findings)
{
    uint64_t broken = 0;
    for (const vdt::SkeletonPoint& point : skeleton.points) broken += !vdt::IsFinite(point.position);
    if (broken > 0)
        findings.warn("number", title + ": " + counted(broken, "skeleton point is", "skeleton points are") +
                                    " not at a finite position");

    uint64_t coincident = 0;
    uint64_t firstBranch = 0;
    uint64_t empty = 0;
    for (size_t i = 0; i < skeleton.branches.size(); ++i) {
        const vdt::SkeletonVertex* vertex = skeleton.branches[i].firstVertex;
        empty += !vertex || !vertex->next;
        for (; vertex && vertex->next; vertex = vertex->next) {
            if (skeleton.points[vertex->point].position != skeleton.points[vertex->next->point].position) continue;
            if (coincident++ == 0) firstBranch = i;
        }
    }
    if (coincident > 0)
        findings.warn("coincident", title + ": " + counted(coincident, "pair", "pairs") +
                                        " of neighbouring branch points lie on one another; the first is on branch " +
                                        std::to_string(firstBranch));
    if (empty > 0)
        findings.warn("branch", title + ": " + counted(empty, "branch is", "branches are") +
                                    " left without a trace, having fewer than two vertices");
}

// The bound has to hold the skeleton, and to lie within the box that leaves room for the largest leaf everywhere.
void checkBound(const vdt::ModelVariant& variant, const std::string& title, FindingList& findings)
{
    constexpr double kSlack = 0.02; // of the computed box's diagonal
    const vdt::Box outer = variant.computeBound();
    if (outer.isEmpty()) return;
    if (variant.bound.isEmpty()) {
        if (!variant.extref.empty())
            findings.warn("bound", title + ": no stored bound, so its size is unknown until it is loaded");
        return;
    }

    vdt::Box inner;
    variant.skeleton.GetBounds(inner, vdt::BoundsMode::AllPoints);
    const double slack = outer.diagonal() * kSlack;
    const auto holds = [slack](const vdt::Box& a, const vdt::Box& b) {
        return b.isEmpty() || (a.min.x <= b.min.x + slack && a.min.y <= b.min.y + slack && a.min.z <= b.min.z + slack &&
                               a.max.x >= b.max.x - slack && a.max.y >= b.max.y - slack && a.max.z >= b.max.z - slack);
    };
    if (!holds(variant.bound, inner))
        findings.warn("bound", title + ": the stored bound does not hold the skeleton");
    else if (!holds(outer, variant.bound))
        findings.warn("bound", title + ": the stored bound is larger than the plant with all its foliage");
}

void checkFoliage(const vdt::ModelVariant& variant, const std::string& title, FindingList& findings)
{
    std::map<int32_t, uint64_t> connectors;
    std::set<int32_t> groups;
    for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
        ++connectors[connector.attributes.group];

    std::set<std::string> unknownSeasons;
    uint64_t brokenPoints = 0;
    for (const vdt::VariantMesh& record : variant.meshes) {
        groups.insert(record.group);
        const auto hasName = [&](const vdt::Qualifier& q) { return q.name == record.qualifier; };
        if (!record.qualifier.empty() && std::none_of(variant.qualifiers.begin(), variant.qualifiers.end(), hasName))
            unknownSeasons.insert(record.qualifier);
        if (!record.mesh) continue;
        for (const vdt::Vector3& position : record.mesh->positions) brokenPoints += !vdt::IsFinite(position);
    }
    for (const std::string& season : unknownSeasons)
        findings.warn("season", title + ": foliage for \"" + season + "\", which is no season of the variant");
    for (const auto& [group, count] : connectors)
        if (!groups.contains(group))
            findings.warn("group", title + ": " + counted(count, "connector", "connectors") + " of group " +
                                       std::to_string(group) + ", for which there is no mesh");
    if (brokenPoints > 0)
        findings.warn("number", title + ": " + counted(brokenPoints, "mesh point is", "mesh points are") +
                                    " not at a finite position");
}

} // namespace

void CheckVariant(const CheckedVariant& checked, FindingList& findings)
{
    const vdt::ModelVariant& variant = checked.variant;
    if (variant.skeleton.isEmpty() && variant.meshes.empty())
        findings.warn("variant", checked.title + ": holds neither skeleton nor meshes");
    checkReach(variant.skeleton, checked.title, findings);
    checkPoints(variant.skeleton, checked.title, findings);
    if (!checked.framesStored && !variant.skeleton.branches.empty())
        findings.warn("orient", checked.title + ": complete in its file, but its branches have no \"orient\"; frames "
                                                "are computed for variants in files of their own only");
    checkBound(variant, checked.title, findings);
    checkFoliage(variant, checked.title, findings);
}

void CheckMaterialIds(const CheckedVariant& checked, const vdt::Model& model, FindingList& findings)
{
    std::set<int32_t> known;
    for (const vdt::MaterialData& material : model.materials) known.insert(material.matid);

    std::map<int32_t, uint64_t> missing;
    const auto count = [&](int32_t id) {
        if (!known.contains(id)) ++missing[id];
    };
    for (const vdt::SkeletonBranch& branch : checked.variant.skeleton.branches) count(branch.matid);
    for (const vdt::VariantMesh& record : checked.variant.meshes)
        if (record.mesh) std::for_each(record.mesh->materials.begin(), record.mesh->materials.end(), count);
    for (const vdt::ProxyMesh& proxy : checked.variant.proxies)
        std::for_each(proxy.mesh.materials.begin(), proxy.mesh.materials.end(), count);
    for (const auto& [id, uses] : missing)
        findings.warn("material", checked.title + ": material id " + std::to_string(id) + " is used by " +
                                      counted(uses, "branch or polygon", "branches and polygons") +
                                      ", but there is no such material");
}

} // namespace verdanth
