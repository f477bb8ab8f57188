#include "support/skeleton_builder.h"

#include "vdt/skeleton/ring.h"

#include <map>
#include <set>
#include <sstream>

namespace vdt::test {
namespace {

uint64_t randomPoint(const Skeleton& skeleton, Dice& dice)
{
    return dice.below(static_cast<uint32_t>(skeleton.points.size()));
}

// A branch of any length, one vertex included, as editing may leave it.
void append(Skeleton& skeleton, const std::vector<uint64_t>& points, const std::vector<VertexAttributes>& attributes)
{
    const uint64_t branch = skeleton.branches.size();
    skeleton.ResizeBranches(branch + 1);
    skeleton.branches[branch].matid = static_cast<int32_t>(branch);
    for (uint64_t i = 0; i < points.size(); ++i) skeleton.InsertVertex(branch, points[i], attributes[i], kNone);
}

void addRandomConnectors(Skeleton& skeleton, Dice& dice, uint64_t count)
{
    for (uint64_t i = 0; i < count; ++i) {
        const auto group = static_cast<int32_t>(dice.below(4));
        skeleton.AddConnector({.scale = dice.real(0.5, 2), .group = group}, randomPoint(skeleton, dice));
    }
}

} // namespace

uint32_t Dice::below(uint32_t count)
{
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<uint32_t>(state >> 33) % count;
}

double Dice::real(double from, double to)
{
    return from + (to - from) * below(1u << 30) / double(1u << 30);
}

SkeletonBuilder& SkeletonBuilder::trunk(uint64_t vertexCount)
{
    const double place = 10.0 * static_cast<double>(skeleton.branches.size());
    return straight(skeleton.AddPoint(Vector3{place, 0, 0}), vertexCount, {0, 0, 1});
}

SkeletonBuilder& SkeletonBuilder::side(uint64_t place, uint64_t vertexCount, uint64_t parent)
{
    const double angle = 2.4 * static_cast<double>(skeleton.branches.size());
    return straight(VertexAt(skeleton, parent, place).point, vertexCount, {std::cos(angle), std::sin(angle), 0.5});
}

SkeletonBuilder& SkeletonBuilder::straight(uint64_t point, uint64_t vertexCount, const Vector3& step)
{
    const uint64_t branch = skeleton.branches.size();
    skeleton.ResizeBranches(branch + 1);
    for (uint64_t i = 0; i < vertexCount; ++i) {
        if (i > 0) point = skeleton.AddPoint(skeleton.points[point].position + step);
        const double radius = 1.0 - static_cast<double>(i) / static_cast<double>(vertexCount + 1);
        skeleton.InsertVertex(branch, point, {.radius = radius, .tex_v = static_cast<float>(i)}, kNone);
    }
    return *this;
}

SkeletonBuilder& SkeletonBuilder::through(std::initializer_list<uint64_t> points)
{
    const std::vector<uint64_t> indices(points);
    const std::vector<VertexAttributes> attributes(indices.size());
    EXPECT_NE(skeleton.AddBranch(0, indices, attributes), kNone);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::along(std::span<const Vector3> positions, double radius, int32_t matid)
{
    std::vector<uint64_t> points;
    std::vector<VertexAttributes> attributes;
    for (const Vector3& position : positions) {
        attributes.push_back({.radius = radius, .tex_v = static_cast<float>(points.size())});
        points.push_back(skeleton.AddPoint(position));
    }
    EXPECT_NE(skeleton.AddBranch(matid, points, attributes), kNone);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::point(const Vector3& position)
{
    skeleton.AddPoint(position);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::connector(uint64_t point, int32_t group)
{
    EXPECT_NE(skeleton.AddConnector({.group = group}, point), kNone);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::radius(uint64_t branch, uint64_t place, double value)
{
    VertexAt(skeleton, branch, place).attributes.radius = value;
    return *this;
}

SkeletonVertex& VertexAt(const Skeleton& skeleton, uint64_t branch, uint64_t place)
{
    SkeletonVertex* vertex = skeleton.branches[branch].firstVertex;
    for (uint64_t i = 0; i < place; ++i) vertex = vertex->next;
    return *vertex;
}

Skeleton RandomTree(uint32_t seed, uint64_t branchCount)
{
    Dice dice(seed);
    Skeleton skeleton;
    skeleton.AddPoint(Vector3{0, 0, -5});
    uint64_t attachment = skeleton.AddPoint(Vector3{0, 0, 0});
    for (uint64_t branch = 0; branch < branchCount; ++branch) {
        std::vector<uint64_t> indices{attachment};
        // Nothing may begin on the root, or it would be a second trunk.
        for (uint32_t i = dice.below(7) + (branch == 0); i > 0; --i) {
            // Straight on, by a right angle, back the same way or nearly so, not at all, or anywhere.
            const Vector3 steps[] = {{0, 0, 1}, {1, 0, 0}, {0, 0, -1}, {0.02, 0, -1}, {0, 0, 0}, dice.position(1)};
            const Vector3 step = steps[std::min(dice.below(8), 5u)];
            indices.push_back(skeleton.AddPoint(skeleton.points[indices.back()].position + step));
        }
        std::vector<VertexAttributes> attributes(indices.size());
        const auto part = [&dice] { return static_cast<float>(dice.real(-1, 1)); };
        for (VertexAttributes& each : attributes) {
            each.radius = dice.below(8) == 0 ? 0 : dice.real(0.1, 1);
            each.tex_v = part();
            each.orient = {part(), part(), part(), part()};
            if (dice.below(2)) each.orient = Normalized(each.orient);
        }
        append(skeleton, indices, attributes);
        do attachment = randomPoint(skeleton, dice);
        while (attachment < 2);
    }
    addRandomConnectors(skeleton, dice, branchCount);
    return skeleton;
}

Skeleton RandomTangle(uint32_t seed, uint64_t branchCount)
{
    Dice dice(seed);
    Skeleton skeleton;
    for (uint64_t i = 0; i < 2 + branchCount; ++i) skeleton.AddPoint(dice.position(10));
    for (uint64_t branch = 0; branch < branchCount; ++branch) {
        std::vector<uint64_t> indices;
        for (uint32_t i = 1 + dice.below(7); i > 0; --i) indices.push_back(randomPoint(skeleton, dice));
        std::vector<VertexAttributes> attributes(indices.size());
        for (VertexAttributes& each : attributes) each.radius = dice.below(3) == 0 ? 0 : 1;
        append(skeleton, indices, attributes);
    }
    addRandomConnectors(skeleton, dice, branchCount);
    return skeleton;
}

namespace {

// Collects the faults of one skeleton.
class Check {
public:
    explicit Check(const Skeleton& checked) : skeleton(checked)
    {
        for (uint64_t i = 0; i < skeleton.branches.size(); ++i) branch(i);
        for (uint64_t i = 0; i < skeleton.points.size(); ++i) {
            where = "point " + std::to_string(i);
            vertexRing(i, skeleton.points[i]);
            connectorRing(i, skeleton.points[i]);
        }
        where = "the skeleton";
        expect(ringMembers == vertices.size(), "vertices outside of all rings");
        for (uint64_t i = 0; i < skeleton.connectors.size(); ++i)
            expect((skeleton.connectors[i].point != kNone) == connectors.contains(i), "connector and rings disagree");
    }

    std::string faults() const { return text.str(); }

private:
    bool expect(bool condition, const char* fault)
    {
        if (!condition) text << where << ": " << fault << '\n';
        return condition;
    }

    void branch(uint64_t index)
    {
        where = "branch " + std::to_string(index);
        const SkeletonBranch& branch = skeleton.branches[index];
        const SkeletonVertex* previous = nullptr;
        uint64_t count = 0;
        for (const SkeletonVertex* v = branch.firstVertex; v; previous = v, v = v->next, ++count) {
            if (!expect(vertices.insert(v).second, "vertex on two lists or twice on one")) return;
            expect(v->prev == previous, "prev does not lead back");
            expect(v->branch == index, "vertex names another branch");
            expect(v->point < skeleton.points.size(), "vertex without a point");
        }
        expect(branch.lastVertex == previous, "tip is not the last vertex");
        expect(branch.vertexCount == count, "vertex count");
    }

    void vertexRing(uint64_t index, const SkeletonPoint& point)
    {
        const SkeletonVertex* const first = point.firstVertex;
        const SkeletonVertex* last = nullptr;
        uint64_t count = 0;
        for (const SkeletonVertex* v = first; v; v = v->ring == first ? nullptr : v->ring) {
            if (!expect(vertices.contains(v), "ring member on no list")) return;
            if (!expect(++count <= vertices.size(), "ring does not close")) return;
            expect(v->point == index, "ring member stands elsewhere");
            expect(v->ring != v, "vertex links to itself");
            last = v;
        }
        expect(count < 2 || last->ring == first, "ring is open");
        expect(point.lastVertex == last, "last ring member");
        ringMembers += count;
    }

    void connectorRing(uint64_t index, const SkeletonPoint& point)
    {
        uint64_t last = kNone, count = 0;
        for (uint64_t at = point.firstConnector; at != kNone; ++count) {
            if (!expect(at < skeleton.connectors.size(), "connector out of range")) return;
            if (!expect(connectors.insert(at).second, "connector is in two places")) return;
            const SkeletonConnector& connector = skeleton.connectors[last = at];
            expect(connector.point == index, "connector stands elsewhere");
            expect(connector.nextConnector != at, "connector links to itself");
            at = connector.nextConnector == point.firstConnector ? kNone : connector.nextConnector;
        }
        expect(count < 2 || skeleton.connectors[last].nextConnector == point.firstConnector, "connector ring is open");
        expect(point.lastConnector == last, "last connector");
        expect(count == skeleton.ConnectorCount(index), "connector count");
    }

    const Skeleton& skeleton;
    std::set<const SkeletonVertex*> vertices;
    std::set<uint64_t> connectors;
    uint64_t ringMembers = 0;
    std::string where;
    std::ostringstream text;
};

} // namespace

testing::AssertionResult CheckSkeleton(const Skeleton& skeleton)
{
    const std::string faults = Check(skeleton).faults();
    return faults.empty() ? testing::AssertionSuccess() : testing::AssertionFailure() << faults;
}

std::string Outline(const Skeleton& skeleton)
{
    std::ostringstream text;
    std::map<const SkeletonVertex*, std::string> names;
    for (uint64_t i = 0; i < skeleton.branches.size(); ++i) {
        text << i << ':';
        uint64_t place = 0;
        for (const SkeletonVertex* v = skeleton.branches[i].firstVertex; v; v = v->next) {
            text << ' ' << v->point;
            names[v] = std::to_string(i) + '.' + std::to_string(place++);
        }
        text << '\n';
    }
    for (uint64_t i = 0; i < skeleton.points.size(); ++i) {
        const SkeletonPoint& point = skeleton.points[i];
        text << "point " << i << ':';
        if (point.firstVertex) {
            text << ' ' << names[point.firstVertex];
            for (const SkeletonVertex& other : RingOthers(*point.firstVertex)) text << ' ' << names[&other];
        }
        if (point.firstConnector != kNone) text << ", connectors";
        for (const uint64_t connector : PointConnectors(skeleton, point)) text << ' ' << connector;
        text << '\n';
    }
    return text.str();
}

std::string Everything(const Skeleton& skeleton)
{
    std::ostringstream text;
    text << Outline(skeleton) << std::hexfloat;
    const auto tell = [&text](const auto&... values) { ((text << values << ' '), ...); };
    const auto look = [&tell](const Color3f& c, const Quaternion& q) { tell(c.r, c.g, c.b, q.x, q.y, q.z, q.w); };
    for (const SkeletonPoint& p : skeleton.points) {
        for (const Vector3& v : {p.position, p.restPosition}) tell(v.x, v.y, v.z);
        tell(p.weight);
    }
    for (const SkeletonBranch& branch : skeleton.branches) {
        tell(branch.matid);
        for (const SkeletonVertex* v = branch.firstVertex; v; v = v->next) {
            tell(v->attributes.radius, v->attributes.tex_v);
            look(v->attributes.color, v->attributes.orient);
        }
    }
    for (const SkeletonConnector& c : skeleton.connectors) {
        tell(c.point, c.attributes.scale, c.attributes.group);
        look(c.attributes.color, c.attributes.orient);
    }
    return text.str();
}

} // namespace vdt::test
