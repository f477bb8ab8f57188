#include "support/skeleton_builder.h"

#include "vdt/skeleton/ring.h"

#include <map>
#include <set>
#include <sstream>

namespace vdt::test {
namespace {

VertexAttributes taperedAttributes(uint64_t place, uint64_t count)
{
    VertexAttributes attributes;
    attributes.radius = 1.0 - static_cast<double>(place) / static_cast<double>(count + 1);
    attributes.tex_v = static_cast<float>(place);
    return attributes;
}

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
        ConnectorAttributes attributes;
        attributes.group = static_cast<int32_t>(dice.below(4));
        attributes.scale = dice.real(0.5, 2);
        skeleton.AddConnector(attributes, randomPoint(skeleton, dice));
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
    const uint64_t branch = skeleton.branches.size();
    const Vector3 root{10.0 * static_cast<double>(branch), 0, 0};
    skeleton.ResizeBranches(branch + 1);
    skeleton.InsertVertex(branch, skeleton.AddPoint(root), taperedAttributes(0, vertexCount), kNone);
    appendUpwards(branch, vertexCount, root, {0, 0, 1});
    return *this;
}

SkeletonBuilder& SkeletonBuilder::side(uint64_t place, uint64_t vertexCount, uint64_t parent)
{
    const uint64_t branch = skeleton.branches.size();
    const double angle = 2.4 * static_cast<double>(branch);
    const uint64_t point = VertexAt(skeleton, parent, place).point;
    skeleton.ResizeBranches(branch + 1);
    skeleton.InsertVertex(branch, point, taperedAttributes(0, vertexCount), kNone);
    appendUpwards(branch, vertexCount, skeleton.points[point].position, {std::cos(angle), std::sin(angle), 0.5});
    return *this;
}

SkeletonBuilder& SkeletonBuilder::through(std::initializer_list<uint64_t> points)
{
    const std::vector<uint64_t> indices(points);
    const std::vector<VertexAttributes> attributes(indices.size());
    EXPECT_NE(skeleton.AddBranch(0, indices, attributes), kNone);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::point(const Vector3& position)
{
    skeleton.AddPoint(position);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::connector(uint64_t point, int32_t group)
{
    ConnectorAttributes attributes;
    attributes.group = group;
    EXPECT_NE(skeleton.AddConnector(attributes, point), kNone);
    return *this;
}

SkeletonBuilder& SkeletonBuilder::radius(uint64_t branch, uint64_t place, double value)
{
    VertexAt(skeleton, branch, place).attributes.radius = value;
    return *this;
}

void SkeletonBuilder::appendUpwards(uint64_t branch, uint64_t count, Vector3 position, const Vector3& step)
{
    for (uint64_t i = 1; i < count; ++i) {
        position += step;
        skeleton.InsertVertex(branch, skeleton.AddPoint(position), taperedAttributes(i, count), kNone);
    }
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
        for (uint32_t i = dice.below(7); i > 0; --i)
            indices.push_back(skeleton.AddPoint(skeleton.points[indices.back()].position + dice.position(1)));
        std::vector<VertexAttributes> attributes(indices.size());
        for (VertexAttributes& each : attributes) each.radius = dice.below(8) == 0 ? 0 : dice.real(0.1, 1);
        append(skeleton, indices, attributes);

        // Nothing may begin on the root, or it would be a second trunk.
        if (skeleton.points.size() == 2) skeleton.InsertVertex(0, skeleton.AddPoint(Vector3{0, 0, 1}), {}, kNone);
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
        for (uint64_t i = 0; i < skeleton.points.size(); ++i) vertexRing(i);
        expect(ringMembers == vertices.size(), "vertices outside of all rings", ringMembers);
        for (uint64_t i = 0; i < skeleton.points.size(); ++i) connectorRing(i);
        for (uint64_t i = 0; i < skeleton.connectors.size(); ++i) {
            const bool placed = skeleton.connectors[i].point != kNone;
            expect(placed == (connectors.count(i) == 1), "connector and rings disagree, connector", i);
        }
    }

    std::string faults() const { return text.str(); }

private:
    void expect(bool condition, const char* fault, uint64_t where)
    {
        if (!condition) text << fault << ' ' << where << '\n';
    }

    void branch(uint64_t index)
    {
        const SkeletonBranch& branch = skeleton.branches[index];
        const SkeletonVertex* previous = nullptr;
        uint64_t count = 0;
        for (const SkeletonVertex* v = branch.firstVertex; v; previous = v, v = v->next, ++count) {
            if (!vertices.insert(v).second) return expect(false, "vertex on two lists or twice on one, branch", index);
            expect(v->prev == previous, "prev does not lead back, branch", index);
            expect(v->branch == index, "vertex names another branch, branch", index);
            expect(v->point < skeleton.points.size(), "vertex without a point, branch", index);
        }
        expect(branch.lastVertex == previous, "tip is not the last vertex, branch", index);
        expect(branch.vertexCount == count, "vertex count, branch", index);
    }

    void vertexRing(uint64_t index)
    {
        const SkeletonPoint& point = skeleton.points[index];
        const SkeletonVertex* const first = point.firstVertex;
        const SkeletonVertex* last = nullptr;
        uint64_t count = 0;
        for (const SkeletonVertex* v = first; v; v = v->ring == first ? nullptr : v->ring) {
            if (!vertices.count(v)) return expect(false, "ring member on no list, point", index);
            if (++count > vertices.size()) return expect(false, "ring does not close, point", index);
            expect(v->point == index, "ring member stands elsewhere, point", index);
            expect(v->ring != v, "vertex links to itself, point", index);
            last = v;
        }
        expect(count < 2 || last->ring == first, "ring is open, point", index);
        expect(point.lastVertex == last, "last ring member, point", index);
        ringMembers += count;
    }

    void connectorRing(uint64_t index)
    {
        const SkeletonPoint& point = skeleton.points[index];
        uint64_t last = kNone;
        uint64_t count = 0;
        for (uint64_t at = point.firstConnector; at != kNone;) {
            if (at >= skeleton.connectors.size()) return expect(false, "connector out of range, point", index);
            if (!connectors.insert(at).second) return expect(false, "connector is in two places, point", index);
            const SkeletonConnector& connector = skeleton.connectors[at];
            expect(connector.point == index, "connector stands elsewhere, point", index);
            expect(connector.nextConnector != at, "connector links to itself, point", index);
            last = at;
            ++count;
            at = connector.nextConnector == point.firstConnector ? kNone : connector.nextConnector;
        }
        expect(count < 2 || skeleton.connectors[last].nextConnector == point.firstConnector,
               "connector ring is open, point", index);
        expect(point.lastConnector == last, "last connector, point", index);
        expect(count == skeleton.ConnectorCount(index), "connector count, point", index);
    }

    const Skeleton& skeleton;
    std::set<const SkeletonVertex*> vertices;
    std::set<uint64_t> connectors;
    uint64_t ringMembers = 0;
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

} // namespace vdt::test
