// Which polygons of a mesh meet where.
#pragma once

#include "c4d_baseobject.h"

#include <vector>

/// Tables of neighbours. Keeps the pointer to the polygons, which must stay.
class Neighbor {
public:
    Neighbor() = default;
    virtual ~Neighbor() = default;

    /// `bs` null takes all polygons, else the selected ones. Polygons with corners out of range are left out.
    virtual Bool Init(Int32 pcnt, const CPolygon* vadr, Int32 vcnt, BaseSelect* bs);
    void Flush();
    /// The polygons at a point; the list is this object's.
    void GetPointPolys(Int32 pnt, Int32** dadr, Int32* dcnt);

private:
    std::vector<Int32> starts; // one more than points
    std::vector<Int32> polygons;
};
