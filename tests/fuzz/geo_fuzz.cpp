#include "fuzz/entries.h"
#include "geolib/geo.h"

#include <sstream>

namespace vdt::test {
namespace {

using geolib::AttributeClass;

std::string rowComplaint(const geolib::Geo& geo, AttributeClass elements, size_t elementCount)
{
    const std::vector<geolib::GeoAttribute>& table = geo.attributes(elements);
    const geolib::AttributeRows& rows = geo.values[static_cast<size_t>(elements)];
    if (table.empty()) return rows.ends.empty() ? "" : "values without attributes";
    if (rows.ends.size() != elementCount) return "there is not one row of values an element";

    size_t at = 0;
    for (size_t element = 0; element < elementCount; ++element) {
        if (rows.ends[element] < at) return "a row ends before it begins";
        at = rows.ends[element];
        geo.value(elements, table.size() - 1, element);
    }
    return at == rows.components.size() ? "" : "the rows do not make up the values";
}

std::string textOf(const geolib::Geo& geo)
{
    std::ostringstream text;
    text << "PGEOMETRY V5\nNPoints 0 NPrims " << geo.primitives.size()
         << "\nNPointGroups 0 NPrimGroups 0\nNPointAttrib 0 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0\n";
    for (const auto& primitive : geo.primitives) primitive->write(text << ' '), text << '\n';
    return text.str();
}

} // namespace

std::string FuzzGeo(std::string_view input)
{
    geolib::Geo geo;
    std::istringstream stream{std::string(input)};
    geo.read(stream);

    size_t kept = 4 * geo.points.size();
    for (const geolib::AttributeRows& rows : geo.values) kept += rows.components.size() + rows.ends.size();
    size_t vertices = 0;
    for (const auto& primitive : geo.primitives) vertices += primitive->vertexCount();
    if (kept + vertices + geo.primitives.size() > input.size()) return "more was kept than was there";

    const std::pair<AttributeClass, size_t> classes[] = {{AttributeClass::Point, geo.points.size()},
                                                         {AttributeClass::Vertex, vertices},
                                                         {AttributeClass::Primitive, geo.primitives.size()}};
    for (const auto& [elements, count] : classes)
        if (const std::string complaint = rowComplaint(geo, elements, count); !complaint.empty()) return complaint;

    const std::string text = textOf(geo);
    std::istringstream again(text);
    geolib::Geo copy;
    if (!copy.read(again) || textOf(copy) != text) return "written and read again the primitives differ";
    return {};
}

} // namespace vdt::test
