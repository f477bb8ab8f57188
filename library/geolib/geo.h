// Reads geometry in Houdini's classic text format, "PGEOMETRY V5": points, attributes, and polygons or polylines.
//
// The file's counts are promises: nothing is allocated for them before what they count has been read. Point and
// primitive groups, attributes of the whole and all other kinds of primitives are not known.
#pragma once

#include "geolib/attribute.h"
#include "geolib/primitive.h"

#include <array>
#include <istream>
#include <memory>
#include <string_view>
#include <vector>

namespace geolib {

class Geo {
public:
    /// Replaces everything by what `stream` holds. False if that is not of the format or ends before the last
    /// primitive; what was complete by then stays.
    bool read(std::istream& stream);

    /// The first attribute of that name; kNoAttribute if there is none.
    size_t findAttribute(AttributeClass elements, std::string_view name) const;
    /// The value of one element, the default where the file gives none. Both indices have to exist. Vertices are
    /// numbered through all primitives, in file order.
    AttributeValue value(AttributeClass elements, size_t attribute, size_t element) const;
    AttributeValue pointValue(size_t attribute, size_t point) const
    {
        return value(AttributeClass::Point, attribute, point);
    }

    const std::vector<GeoAttribute>& attributes(AttributeClass elements) const
    {
        return attributeTables[static_cast<size_t>(elements)];
    }

    std::vector<std::array<float, 4>> points;                 // x, y, z, w
    std::array<std::vector<GeoAttribute>, 3> attributeTables; // by AttributeClass
    std::vector<std::unique_ptr<Primitive>> primitives;
    std::array<AttributeRows, 3> values; // by AttributeClass
    size_t lastLine = 0;                 // the line, from 1, on which reading ended
};

} // namespace geolib
