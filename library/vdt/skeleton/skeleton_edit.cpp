// Building and cutting. Whatever takes things away marks them all first and then drops them in one pass: emptying a
// point on which thousands of branches stand takes no longer than emptying thousands of points.
#include "vdt/skeleton/ring.h"
#include "vdt/skeleton/skeleton.h"

#include <algorithm>

namespace vdt {
namespace {

using Marks = std::vector<bool>; // one for each element of an array

Marks marked(const std::vector<uint64_t>& indices, uint64_t count)
{
    Marks marks(count);
    for (const uint64_t index : indices)
        if (index < count) marks[index] = true;
    return marks;
}

Marks markedFrom(uint64_t first, uint64_t count)
{
    Marks marks(count);
    std::fill(marks.begin() + static_cast<std::ptrdiff_t>(first), marks.end(), true);
    return marks;
}

bool anyMarked(const Marks& marks)
{
    return std::find(marks.begin(), marks.end(), true) != marks.end();
}

// The index that each element has once the marked ones are gone.
std::vector<uint64_t> indicesWithout(const Marks& doomed)
{
    std::vector<uint64_t> newIndices(doomed.size(), kNone);
    uint64_t count = 0;
    for (uint64_t i = 0; i < doomed.size(); ++i)
        if (!doomed[i]) newIndices[i] = count++;
    return newIndices;
}

template <class T> void dropMarked(Array<T>& elements, const Marks& doomed)
{
    uint64_t count = 0;
    for (uint64_t i = 0; i < elements.size(); ++i)
        if (!doomed[i]) elements[count++] = elements[i];
    elements.resize(count);
}

void appendToBranch(SkeletonBranch& branch, SkeletonVertex& vertex)
{
    vertex.prev = branch.lastVertex;
    (branch.lastVertex ? branch.lastVertex->next : branch.firstVertex) = &vertex;
    branch.lastVertex = &vertex;
}

void insertBefore(SkeletonBranch& branch, SkeletonVertex& successor, SkeletonVertex& vertex)
{
    vertex.next = &successor;
    vertex.prev = successor.prev;
    (successor.prev ? successor.prev->next : branch.firstVertex) = &vertex;
    successor.prev = &vertex;
}

void takeOutOfBranch(SkeletonBranch& branch, SkeletonVertex& vertex)
{
    (vertex.prev ? vertex.prev->next : branch.firstVertex) = vertex.next;
    (vertex.next ? vertex.next->prev : branch.lastVertex) = vertex.prev;
    --branch.vertexCount;
}

// Leaves only vertices that belong to a branch on the point. Those that go forget the point, so that the next of them
// does not start this again.
void dropVerticesWithoutBranch(SkeletonPoint& point)
{
    SkeletonVertex* const entry = point.firstVertex;
    point.firstVertex = nullptr;
    point.lastVertex = nullptr;
    SkeletonVertex* vertex = entry;
    do {
        SkeletonVertex* const successor = vertex->ring;
        vertex->ring = nullptr;
        if (vertex->branch == kNone) {
            vertex->point = kNone;
        } else {
            (point.lastVertex ? point.lastVertex->ring : point.firstVertex) = vertex;
            point.lastVertex = vertex;
        }
        vertex = successor;
    } while (vertex && vertex != entry);
    if (point.firstVertex != point.lastVertex) point.lastVertex->ring = point.firstVertex;
}

} // namespace

void Skeleton::ResizePoints(uint64_t count)
{
    if (count < points.size()) erasePoints(markedFrom(count, points.size()));
    points.resize(count);
}

void Skeleton::ResizeBranches(uint64_t count)
{
    if (count < branches.size()) eraseBranches(markedFrom(count, branches.size()));
    branches.resize(count);
}

void Skeleton::ResizeConnectors(uint64_t count)
{
    if (count < connectors.size()) eraseConnectors(markedFrom(count, connectors.size()));
    connectors.resize(count);
}

uint64_t Skeleton::AddPoint(const SkeletonPoint& source)
{
    SkeletonPoint point;
    point.position = source.position;
    point.restPosition = source.restPosition;
    point.weight = source.weight;
    points.push_back(point);
    return points.size() - 1;
}

uint64_t Skeleton::AddPoint(const Vector3& position)
{
    SkeletonPoint point;
    point.position = position;
    point.restPosition = position;
    points.push_back(point);
    return points.size() - 1;
}

uint64_t Skeleton::AddBranch(int32_t matid, std::span<const uint64_t> pointIndices,
                             std::span<const VertexAttributes> attributes)
{
    const uint64_t count = std::min(pointIndices.size(), attributes.size());
    if (count < 2) return kNone;
    for (const uint64_t point : pointIndices.first(count))
        if (point >= points.size()) return kNone;

    const uint64_t branch = branches.size();
    branches.emplace_back().matid = matid;
    for (uint64_t i = 0; i < count; ++i) InsertVertex(branch, pointIndices[i], attributes[i], kNone);
    return branch;
}

uint64_t Skeleton::InsertVertex(uint64_t branchIndex, uint64_t point, const VertexAttributes& attributes,
                                uint64_t place)
{
    if (branchIndex >= branches.size() || point >= points.size()) return kNone;

    SkeletonBranch& branch = branches[branchIndex];
    SkeletonVertex& vertex = *pool.allocate({.branch = branchIndex, .point = point, .attributes = attributes});
    if (place >= branch.vertexCount) {
        place = branch.vertexCount;
        appendToBranch(branch, vertex);
    } else {
        SkeletonVertex* successor = branch.firstVertex;
        for (uint64_t i = 0; i < place; ++i) successor = successor->next;
        insertBefore(branch, *successor, vertex);
    }
    ++branch.vertexCount;
    LinkVertex(*this, vertex);
    return place;
}

uint64_t Skeleton::AddConnector(const ConnectorAttributes& attributes, uint64_t point)
{
    if (point >= points.size()) return kNone;

    const uint64_t index = connectors.size();
    connectors.push_back({point, kNone, attributes});
    LinkConnector(*this, index);
    return index;
}

bool Skeleton::SetConnector(uint64_t index, const ConnectorAttributes& attributes, uint64_t point)
{
    if (index >= connectors.size() || point >= points.size()) return false;

    SkeletonConnector& connector = connectors[index];
    connector.attributes = attributes;
    if (connector.point == point) return true;

    if (connector.point < points.size()) UnlinkConnector(*this, index);
    connector.point = point;
    LinkConnector(*this, index);
    return true;
}

bool Skeleton::RemoveConnector(uint64_t index)
{
    if (index >= connectors.size()) return false;

    if (connectors[index].point < points.size()) UnlinkConnector(*this, index);
    connectors.erase(connectors.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
}

bool Skeleton::RemoveConnectors(const std::vector<uint64_t>& indices)
{
    if (indices.empty()) return false;

    eraseConnectors(marked(indices, connectors.size()));
    return true;
}

bool Skeleton::RemovePoint(uint64_t index)
{
    if (index >= points.size()) return false;

    erasePoints(marked({index}, points.size()));
    return true;
}

bool Skeleton::RemoveBranch(uint64_t index)
{
    return index < branches.size() && RemoveBranches({index});
}

bool Skeleton::RemoveBranches(const std::vector<uint64_t>& indices)
{
    if (indices.empty()) return false;

    erasePoints(eraseBranches(marked(indices, branches.size())));
    return true;
}

void Skeleton::eraseConnectors(const Marks& doomed)
{
    if (!anyMarked(doomed)) return;

    // Close the rings around what goes, under the numbers to come.
    const std::vector<uint64_t> newIndices = indicesWithout(doomed);
    std::vector<uint64_t> ring;
    for (SkeletonPoint& point : points) {
        ring.clear();
        for (const uint64_t member : PointConnectors(*this, point))
            if (!doomed[member]) ring.push_back(member);
        for (uint64_t i = 0; i < ring.size(); ++i)
            connectors[ring[i]].nextConnector = ring.size() == 1 ? kNone : newIndices[ring[(i + 1) % ring.size()]];
        point.firstConnector = ring.empty() ? kNone : newIndices[ring.front()];
        point.lastConnector = ring.empty() ? kNone : newIndices[ring.back()];
    }
    dropMarked(connectors, doomed);
}

void Skeleton::erasePoints(const Marks& doomed)
{
    if (!anyMarked(doomed)) return;

    Marks connectorsToo(connectors.size());
    for (uint64_t i = 0; i < connectors.size(); ++i)
        connectorsToo[i] = connectors[i].point < doomed.size() && doomed[connectors[i].point];
    eraseConnectors(connectorsToo);

    for (uint64_t i = 0; i < points.size(); ++i) {
        if (!doomed[i]) continue;
        SkeletonVertex* const entry = points[i].firstVertex;
        for (SkeletonVertex* vertex = entry; vertex;) {
            SkeletonVertex* const successor = vertex->ring;
            takeOutOfBranch(branches[vertex->branch], *vertex);
            pool.release(vertex);
            vertex = successor == entry ? nullptr : successor;
        }
    }

    const std::vector<uint64_t> newIndices = indicesWithout(doomed);
    for (SkeletonConnector& connector : connectors)
        if (connector.point < newIndices.size()) connector.point = newIndices[connector.point];
    for (const SkeletonBranch& branch : branches)
        for (SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next)
            vertex->point = newIndices[vertex->point];
    dropMarked(points, doomed);
}

// Gives the points that were left bare.
Marks Skeleton::eraseBranches(const Marks& doomed)
{
    Marks bare(points.size());
    if (!anyMarked(doomed)) return bare;

    // Mark all vertices before the rings are cleaned, so that no ring needs it twice.
    std::vector<SkeletonVertex*> dropped;
    for (uint64_t i = 0; i < branches.size(); ++i) {
        if (!doomed[i]) continue;
        for (SkeletonVertex* vertex = branches[i].firstVertex; vertex; vertex = vertex->next) {
            vertex->branch = kNone;
            dropped.push_back(vertex);
        }
    }
    for (const SkeletonVertex* vertex : dropped) {
        const uint64_t pointIndex = vertex->point;
        if (pointIndex == kNone) continue;
        SkeletonPoint& point = points[pointIndex];
        dropVerticesWithoutBranch(point);
        bare[pointIndex] = !point.firstVertex && point.firstConnector == kNone;
    }
    for (SkeletonVertex* vertex : dropped) pool.release(vertex);

    dropMarked(branches, doomed);
    for (uint64_t i = 0; i < branches.size(); ++i)
        for (SkeletonVertex* vertex = branches[i].firstVertex; vertex && vertex->branch != i; vertex = vertex->next)
            vertex->branch = i;
    return bare;
}

} // namespace vdt
