#include "c4d_baseselect.h"
#include "c4d_tools.h"

namespace {

// Calls `visit` for each point of a polygon once.
template <class Visit> void forEachPoint(const CPolygon& polygon, const Visit& visit)
{
    for (Int32 corner = 0; corner < 4; ++corner) {
        bool isFirst = true;
        for (Int32 before = 0; before < corner; ++before) isFirst = isFirst && polygon[before] != polygon[corner];
        if (isFirst) visit(polygon[corner]);
    }
}

} // namespace

Bool Neighbor::Init(Int32 pcnt, const CPolygon* vadr, Int32 vcnt, BaseSelect* bs)
{
    Flush();
    if (pcnt < 0 || vcnt < 0 || (vcnt > 0 && !vadr)) return false;

    const auto forEachPolygon = [&](const auto& visit) {
        for (Int32 polygon = 0; polygon < vcnt; ++polygon) {
            const CPolygon& corners = vadr[polygon];
            bool counts = !bs || bs->IsSelected(polygon);
            forEachPoint(corners, [&](Int32 point) { counts = counts && point >= 0 && point < pcnt; });
            if (counts) visit(polygon, corners);
        }
    };

    // Counted first, then filled in polygon order: every list ascends.
    starts.assign(static_cast<size_t>(pcnt) + 1, 0);
    forEachPolygon([&](Int32, const CPolygon& corners) {
        forEachPoint(corners, [&](Int32 point) { ++starts[static_cast<size_t>(point) + 1]; });
    });
    for (size_t point = 1; point < starts.size(); ++point) starts[point] += starts[point - 1];

    polygons.resize(static_cast<size_t>(starts.back()));
    std::vector<Int32> filled(starts.begin(), starts.end() - 1);
    forEachPolygon([&](Int32 polygon, const CPolygon& corners) {
        forEachPoint(corners, [&](Int32 point) {
            polygons[static_cast<size_t>(filled[static_cast<size_t>(point)]++)] = polygon;
        });
    });
    return true;
}

void Neighbor::Flush()
{
    starts.clear();
    polygons.clear();
}

void Neighbor::GetPointPolys(Int32 pnt, Int32** dadr, Int32* dcnt)
{
    *dadr = nullptr;
    *dcnt = 0;
    const auto point = static_cast<size_t>(pnt);
    if (pnt < 0 || point + 1 >= starts.size()) return;
    *dadr = polygons.data() + starts[point];
    *dcnt = starts[point + 1] - starts[point];
}
