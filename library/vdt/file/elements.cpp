#include "vdt/file/elements.h"

#include <algorithm>
#include <iterator>

namespace vdt {
namespace {

// In the order of the enumeration.
constexpr std::string_view kNames[] = {
    "?",     "verdanth", "plant",     "name",         "label",      "meta",       "description", "model",
    "bound", "skeleton", "points",    "polylines",    "vertices",   "nvertices",  "connectors",  "attrib",
    "mesh",  "polygons", "materials", "material",     "front",      "back",       "diffuse",     "specular",
    "alpha", "normal",   "bump",      "displacement", "subsurface", "qualifiers", "qualifier",   "colors",
    "wood",  "foliage",  "thumbnail", "proxy",
};
static_assert(std::size(kNames) == static_cast<size_t>(Element::Proxy) + 1);

} // namespace

Element FindElement(std::string_view name)
{
    const auto* found = std::find(std::begin(kNames) + 1, std::end(kNames), name);
    return found == std::end(kNames) ? Element::Unknown : static_cast<Element>(found - std::begin(kNames));
}

std::string_view ElementName(Element element)
{
    return kNames[static_cast<size_t>(element)];
}

} // namespace vdt
