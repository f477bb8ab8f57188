// Edges are numbered in order of first appearance, so the tables depend on the polygons' order alone. They are found
// through chains: each edge stands in the chain of that end on which fewer corners meet. A chain is a few edges long
// even where thousands of polygons meet in one point.
#include "vdt/memory/assert.h"
#include "vdt/mesh/topology_builder.h"

#include <algorithm>
#include <charconv>

namespace vdt {
namespace {

// Turns the counts in starts[1..n] into the beginnings of n packed lists, shifted by one place: filling list i
// through starts[i + 1]++ leaves starts[i] at its beginning and starts[i + 1] at its end.
void beginLists(Array<uint32_t>& starts)
{
    uint32_t begin = 0;
    for (size_t list = 1; list < starts.size(); ++list) {
        const uint32_t count = starts[list];
        starts[list] = begin;
        begin += count;
    }
}

class EdgeFinder {
public:
    // `cornerCounts`: the corners that meet at each point.
    EdgeFinder(const uint32_t* cornerCounts, uint64_t pointCount, uint64_t cornerCount, Array<MeshEdge>& edges)
        : corners(cornerCounts),
          list(edges)
    {
        chains.assign(pointCount, -1);
        nextInChain.resize(cornerCount);
        list.resize(cornerCount); // as many as there could be; memory that is never written costs nothing
    }

    // The edge between two different points, seen from polygon `face`.
    int32_t find(int32_t a, int32_t b, int32_t face)
    {
        const int32_t low = std::min(a, b), high = std::max(a, b);
        int32_t& chain = chains[static_cast<size_t>(corners[high] < corners[low] ? high : low)];
        for (int32_t edge = chain; edge >= 0; edge = nextInChain[static_cast<size_t>(edge)]) {
            MeshEdge& known = list[static_cast<size_t>(edge)];
            if (known.low != low || known.high != high) continue;
            known.rightFace = face;
            return edge;
        }
        list[static_cast<size_t>(count)] = {low, high, face, -1};
        nextInChain[static_cast<size_t>(count)] = chain;
        chain = count;
        return count++;
    }

    void finish() { list.resize(static_cast<size_t>(count)); }

private:
    const uint32_t* corners;
    Array<MeshEdge>& list;
    Array<int32_t> chains;      // per point: the latest edge in its chain, -1 for none
    Array<int32_t> nextInChain; // per edge
    int32_t count = 0;
};

// Packs the links of each point. starts[point + 1] holds the point's corner count on entry, as in beginLists.
void linkPoints(const FlatPolygons<uint64_t>& polygons, std::span<const MeshEdge> edges, PointLinkTable& links)
{
    uint32_t* const cornersAtPoint = links.polygonStarts.data() + 1;
    beginLists(links.polygonStarts);
    links.polygons.resize(polygons.vertices.size());
    size_t corner = 0;
    int32_t face = 0;
    for (const uint64_t end : polygons.ends) {
        for (; corner < end; ++corner) links.polygons[cornersAtPoint[polygons.vertices[corner]]++] = face;
        ++face;
    }

    links.edgeStarts.assign(links.polygonStarts.size(), 0);
    uint32_t* const edgesAtPoint = links.edgeStarts.data() + 1;
    for (const MeshEdge& edge : edges) {
        ++edgesAtPoint[edge.low];
        ++edgesAtPoint[edge.high];
    }
    beginLists(links.edgeStarts);
    links.edges.resize(2 * edges.size());
    int32_t index = 0;
    for (const MeshEdge& edge : edges) {
        links.edges[edgesAtPoint[edge.low]++] = index;
        links.edges[edgesAtPoint[edge.high]++] = index;
        ++index;
    }
}

} // namespace

template <class Index>
void FindEdges(const FlatPolygons<Index>& polygons, const uint32_t* cornerCounts, uint64_t pointCount,
               Array<int32_t>& cornerEdges, Array<MeshEdge>& edges)
{
    const Index* const vertices = polygons.vertices.data();
    const size_t cornerCount = polygons.vertices.size();
    VDT_ASSERT(FitsTopology(cornerCount, pointCount));

    // A corner whose edge has no length gets no entry: the polygon's later entries move up, the rest stay 0.
    EdgeFinder finder(cornerCounts, pointCount, cornerCount, edges);
    cornerEdges.resize(cornerCount);
    size_t corner = 0;
    int32_t face = 0;
    for (const Index end : polygons.ends) {
        const size_t first = corner;
        size_t place = first;
        for (; corner < end; ++corner) {
            const Index a = vertices[corner], b = vertices[corner + 1 < end ? corner + 1 : first];
            if (a != b) cornerEdges[place++] = finder.find(static_cast<int32_t>(a), static_cast<int32_t>(b), face);
        }
        while (place < end) cornerEdges[place++] = 0;
        ++face;
    }
    finder.finish();
}

template void FindEdges<uint32_t>(const FlatPolygons<uint32_t>&, const uint32_t*, uint64_t, Array<int32_t>&,
                                  Array<MeshEdge>&);
template void FindEdges<uint64_t>(const FlatPolygons<uint64_t>&, const uint32_t*, uint64_t, Array<int32_t>&,
                                  Array<MeshEdge>&);

void ReportTopologyTime(MessageHandler& messages, const Stopwatch& stopwatch)
{
    char number[32];
    const double seconds = static_cast<double>(stopwatch.milliseconds()) / 1000.0;
    const auto written = std::to_chars(std::begin(number), std::end(number), seconds, std::chars_format::fixed);
    messages.debug("subdiv helper generation time : " + std::string(number, written.ptr) + "s");
}

void Mesh::BuildTopology(MessageHandler& messages)
{
    // Points may have come without a polygon.
    if (topologyValid && pointLinks.size() == positions.size()) return;

    const Stopwatch stopwatch;
    topologyValid = FitsTopology(polygonVertices.size(), positions.size());
    if (topologyValid) {
        const FlatPolygons<uint64_t> polygons{polygonEnds, polygonVertices};
        pointLinks.polygonStarts.assign(positions.size() + 1, 0);
        uint32_t* const cornersAtPoint = pointLinks.polygonStarts.data() + 1;
        for (const uint64_t vertex : polygonVertices) ++cornersAtPoint[vertex];
        FindEdges(polygons, cornersAtPoint, positions.size(), cornerEdges, edges);
        linkPoints(polygons, edges, pointLinks);
    } else {
        pointLinks = {};
        cornerEdges.clear();
        edges.clear();
    }
    ReportTopologyTime(messages, stopwatch);
}

} // namespace vdt
