#include "vdt/skeleton/ring.h"

#include "vdt/memory/assert.h"

namespace vdt {

void UnlinkVertex(Skeleton& skeleton, SkeletonVertex& vertex)
{
    SkeletonPoint& point = skeleton.points[vertex.point];
    if (!vertex.ring) {
        VDT_ASSERT(point.firstVertex == &vertex);
        point.firstVertex = nullptr;
        point.lastVertex = nullptr;
        return;
    }

    SkeletonVertex* before = point.lastVertex;
    while (before->ring != &vertex) before = before->ring;
    if (point.firstVertex == &vertex) point.firstVertex = vertex.ring;
    if (point.lastVertex == &vertex) point.lastVertex = before;
    before->ring = before == vertex.ring ? nullptr : vertex.ring;
    vertex.ring = nullptr;
}

void LinkConnector(Skeleton& skeleton, uint64_t index)
{
    SkeletonConnector& connector = skeleton.connectors[index];
    SkeletonPoint& point = skeleton.points[connector.point];
    connector.nextConnector = point.firstConnector;
    if (point.firstConnector == kNone)
        point.firstConnector = index;
    else if (point.lastConnector < skeleton.connectors.size())
        skeleton.connectors[point.lastConnector].nextConnector = index;
    point.lastConnector = index;
}

void UnlinkConnector(Skeleton& skeleton, uint64_t index)
{
    SkeletonConnector& connector = skeleton.connectors[index];
    SkeletonPoint& point = skeleton.points[connector.point];
    uint64_t before = kNone;
    for (const uint64_t member : PointConnectors(skeleton, point))
        if (skeleton.connectors[member].nextConnector == index) before = member;

    const uint64_t after = before == connector.nextConnector ? kNone : connector.nextConnector;
    if (point.firstConnector == index) point.firstConnector = connector.nextConnector;
    if (point.lastConnector == index) point.lastConnector = before;
    if (before != kNone) skeleton.connectors[before].nextConnector = after;
    connector.nextConnector = kNone;
}

bool IsRoot(const SkeletonPoint& point)
{
    if (!point.firstVertex || point.firstVertex->prev) return false;
    for (const SkeletonVertex& other : RingOthers(*point.firstVertex)) // NOLINT(readability-use-anyofallof): no range
        if (other.prev) return false;
    return true;
}

} // namespace vdt
