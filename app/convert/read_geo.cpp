#include "convert/read_geo.h"

#include "console/as_written.h"
#include "geolib/geo.h"
#include "vdt/file/file_access.h"

#include <cmath>
#include <fstream>
#include <utility>

namespace verdanth {
namespace {

using geolib::AttributeClass;

constexpr double kDefaultRadius = 1;
constexpr float kDefaultGrey = 0.8F;

std::string firstLineProblem(const std::string& path)
{
    std::ifstream file;
    vdt::OpenForReading(file, path);
    while (file.peek() == ' ' || file.peek() == '\n' || file.peek() == '\r') file.get();
    if (file.peek() == '[' || file.peek() == '{')
        return "line 1: the JSON form of Houdini geometry cannot be read; save it in the classic text form";
    return "line 1: no Houdini text geometry, which begins with \"PGEOMETRY V5\"";
}

// An attribute of vertices or points; where both have it the vertex's counts.
class VertexOrPointAttribute {
public:
    VertexOrPointAttribute(const geolib::Geo& source, std::string_view name)
        : geo(source),
          ofVertices(source.findAttribute(AttributeClass::Vertex, name)),
          ofPoints(source.findAttribute(AttributeClass::Point, name))
    {
    }
    bool exists() const { return onVertices() || onPoints(); }
    bool onVertices() const { return ofVertices != geolib::kNoAttribute; }
    bool onPoints() const { return ofPoints != geolib::kNoAttribute; }
    geolib::AttributeValue value(size_t vertex, size_t point) const
    {
        return onVertices() ? geo.value(AttributeClass::Vertex, ofVertices, vertex) : pointValue(point);
    }
    geolib::AttributeValue pointValue(size_t point) const { return geo.pointValue(ofPoints, point); }

private:
    const geolib::Geo& geo;
    size_t ofVertices, ofPoints;
};

class GeoBranches {
public:
    explicit GeoBranches(const geolib::Geo& source)
        : geo(source),
          radius(source, "radius"),
          color(source, "Cd"),
          weight(source, "occ")
    {
    }

    PlantDraft take()
    {
        draft.points.reserve(geo.points.size());
        for (const auto& [x, y, z, w] : geo.points) draft.points.push_back({AsWritten(x), AsWritten(y), AsWritten(z)});
        takeWeights();
        for (const auto& primitive : geo.primitives) takeBranch(*primitive);
        return std::move(draft);
    }

    void report(vdt::MessageHandler& messages) const
    {
        const std::pair<uint64_t, const char*> losses[] = {
            {missing, "vertices that refer to missing points are left out: "},
            {infinite, "vertices on points that are not at a finite position are left out: "},
            {wrongRadii, "radii that are no usable numbers are taken for 1: "}};
        for (const auto& [count, text] : losses)
            if (count > 0) messages.warning(text + std::to_string(count));
    }

private:
    void takeWeights()
    {
        if (!weight.exists()) return;
        draft.weights.resize(geo.points.size());
        weightKnown.resize(geo.points.size());
        for (size_t i = 0; weight.onPoints() && i < geo.points.size(); ++i) setWeight(i, weight.pointValue(i)[0]);
    }

    void setWeight(size_t point, float value) { draft.weights[point] = std::isfinite(value) ? value : 0; }

    void takeBranch(const geolib::Primitive& primitive)
    {
        DraftBranch branch;
        for (size_t i = 0; i < primitive.vertexCount(); ++i, ++vertexNumber) {
            const auto point = static_cast<size_t>(primitive.vertexIndex(i)); // negative: beyond all points
            if (point >= draft.points.size()) {
                ++missing;
                continue;
            }
            const auto& [x, y, z] = draft.points[point];
            if (std::isfinite(x) && std::isfinite(y) && std::isfinite(z))
                branch.push_back({point, radiusOf(point), colorOf(point)});
            else
                ++infinite;
            if (!weight.onVertices() || weightKnown[point]) continue;
            setWeight(point, weight.value(vertexNumber, point)[0]);
            weightKnown[point] = true;
        }
        if (branch.size() >= 2) draft.branches.push_back(std::move(branch));
    }

    double radiusOf(size_t point)
    {
        if (!radius.exists()) return kDefaultRadius;
        const double value = AsWritten(radius.value(vertexNumber, point)[0]);
        if (std::isfinite(value) && value >= 0) return value;
        ++wrongRadii;
        return kDefaultRadius;
    }

    vdt::Color3f colorOf(size_t point) const
    {
        constexpr vdt::Color3f kDefault{kDefaultGrey, kDefaultGrey, kDefaultGrey};
        if (!color.exists()) return kDefault;
        const auto [r, g, b, unused] = color.value(vertexNumber, point);
        return std::isfinite(r) && std::isfinite(g) && std::isfinite(b) ? vdt::Color3f{r, g, b} : kDefault;
    }

    const geolib::Geo& geo;
    VertexOrPointAttribute radius, color, weight;
    PlantDraft draft;
    std::vector<bool> weightKnown; // from a vertex: the first one on a point counts
    size_t vertexNumber = 0;
    uint64_t missing = 0, infinite = 0, wrongRadii = 0;
};

} // namespace

std::optional<PlantDraft> ReadGeo(const std::string& path, vdt::MessageHandler& messages)
{
    std::ifstream file;
    vdt::OpenForReading(file, path);
    geolib::Geo geo;
    if (!geo.read(file)) {
        messages.error(geo.lastLine <= 2 && geo.points.empty()
                           ? firstLineProblem(path)
                           : "line " + std::to_string(geo.lastLine) +
                                 ": is cut here or goes on as no text geometry, "
                                 "behind " +
                                 std::to_string(geo.points.size()) + " points and " +
                                 std::to_string(geo.primitives.size()) + " primitives");
        return std::nullopt;
    }

    GeoBranches branches(geo);
    PlantDraft draft = branches.take();
    branches.report(messages);
    if (!draft.branches.empty()) return draft;
    messages.error("holds no polyline of two points or more");
    return std::nullopt;
}

} // namespace verdanth
