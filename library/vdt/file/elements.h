// The elements of model files, and the stack of those that are open.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace vdt {

enum class Element : uint8_t {
    Unknown = 0,
    Verdanth = 1,
    Plant,
    Name,
    Label,
    Meta,
    Description,
    Model,
    Bound,
    Skeleton,
    Points,
    Polylines,
    Vertices,
    Nvertices,
    Connectors,
    Attrib,
    Mesh,
    Polygons,
    Materials,
    Material,
    Front,
    Back,
    Diffuse,
    Specular,
    Alpha,
    Normal,
    Bump,
    Displacement,
    Subsurface,
    Qualifiers,
    Qualifier,
    Colors,
    Wood,
    Foliage,
    Thumbnail,
    Proxy = 35,
};

/// By exact name, case included.
Element FindElement(std::string_view name);
/// The name as it stands in files; "?" for Unknown.
std::string_view ElementName(Element element);

/// The open elements, the innermost last. Where in the file the reader stands is a question about its last entries.
class ElementStack {
public:
    void push(Element element) { open.push_back(element); }
    void pop()
    {
        if (!open.empty()) open.pop_back();
    }
    bool endsWith(std::initializer_list<Element> path) const
    {
        if (path.size() > open.size()) return false;
        auto at = open.end() - static_cast<std::ptrdiff_t>(path.size());
        for (const Element element : path)
            if (*at++ != element) return false;
        return true;
    }
    const std::vector<Element>& elements() const { return open; }

private:
    std::vector<Element> open;
};

} // namespace vdt
