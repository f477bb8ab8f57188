// What a geometry file joins its points to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace geolib {

/// Point indices are what the file says, negative ones and those beyond its points included: who uses them checks.
class Primitive {
public:
    virtual ~Primitive() = default;

    virtual size_t vertexCount() const = 0;
    /// `position` below vertexCount().
    virtual int32_t vertexIndex(size_t position) const = 0;
    virtual void setVertexIndex(size_t position, int32_t pointIndex) = 0;
    /// The order of the curve between the vertices: 2 for straight edges.
    virtual int order() const { return 2; }
    virtual std::string_view typeName() const = 0;
    /// As it stands in a file, type word first, without attributes and without the end of the line.
    virtual void write(std::ostream& stream) const = 0;
};

/// A polygon if closed, else a polyline.
class Polygon final : public Primitive {
public:
    size_t vertexCount() const override { return vertices.size(); }
    int32_t vertexIndex(size_t position) const override { return vertices[position]; }
    void setVertexIndex(size_t position, int32_t pointIndex) override { vertices[position] = pointIndex; }
    std::string_view typeName() const override { return "Poly"; }
    void write(std::ostream& stream) const override
    {
        // A stream's own way with numbers would follow its locale.
        stream << typeName() << ' ' << std::to_string(vertices.size()) << (closed ? " <" : " :");
        for (const int32_t vertex : vertices) stream << ' ' << std::to_string(vertex);
    }

    std::vector<int32_t> vertices; // point indices
    bool closed = false;
};

} // namespace geolib
