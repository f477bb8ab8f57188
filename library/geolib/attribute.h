// Attributes of points, vertices and primitives, and the values that elements have for them.
//
// A row holds what the file gives for one element, attribute after attribute: a file of a few bytes a row may define
// thousands of attributes, and a full table of their values would fill the memory. What a row lacks is the default.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace geolib {

/// What attributes belong to.
enum class AttributeClass { Point, Vertex, Primitive };

/// No attribute of that name.
constexpr size_t kNoAttribute = ~size_t{0};

constexpr size_t kMostComponents = 4; // further ones of an attribute are read and not kept

using AttributeValue = std::array<float, kMostComponents>;

struct GeoAttribute {
    std::string name;
    int32_t size = 0;          // components in the file, at least 1
    std::string type;          // the file's word for it, not interpreted
    AttributeValue defaults{}; // components that the attribute does not have are 0
    size_t firstComponent = 0; // place in an element's row

    size_t keptComponents() const
    {
        return static_cast<size_t>(size) < kMostComponents ? static_cast<size_t>(size) : kMostComponents;
    }
};

/// The values of one class.
struct AttributeRows {
    std::vector<float> components;
    std::vector<size_t> ends; // one an element: where its row ends in `components`; the row begins where the last ends

    size_t rowBegin(size_t element) const { return element ? ends[element - 1] : 0; }
};

} // namespace geolib
