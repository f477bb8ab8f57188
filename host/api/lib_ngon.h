// Outlines of polygons with more than four corners. This host keeps none: the operations are without effect.
#pragma once

#include "c4d_baseobject.h"

#define LIBRARY_NGON 1015903

class NgonBase {
public:
    void UpdateNgons(PolygonObject* op);
    Bool ResetPoints(PolygonObject* op);

private:
    friend struct host::NodeCore;
    friend struct NgonRecord;
    NgonBase() = default;
    ~NgonBase() = default;
};
