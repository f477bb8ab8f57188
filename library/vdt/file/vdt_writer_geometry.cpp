#include "vdt/file/vdt_writer_geometry.h"

#include <algorithm>
#include <cmath>

namespace vdt {
namespace {

constexpr uint64_t kMostPoints = uint64_t{1} << 31; // indices in files have 32 bits
constexpr size_t kMostCorners = 5;

// How the values of one attribute list are declared.
struct AttributeHead {
    std::string_view name;
    std::string_view type;
    std::string_view storageClass;
};

template <class WriteValues> void writeAttribute(XmlOutput& xml, const AttributeHead& head, WriteValues writeValues)
{
    xml.open("attrib");
    xml.attribute("name", head.name);
    xml.attribute("type", head.type);
    xml.attribute("storageclass", head.storageClass);
    writeValues();
    xml.close();
}

void writePoint(XmlOutput& xml, const Vector3& position)
{
    for (const double value : {position.x, position.y, position.z}) xml.number(value, 3);
}

void writeColor(XmlOutput& xml, const Color3f& color)
{
    for (const float value : {color.r, color.g, color.b}) xml.number(value, 12);
}

void writeQuaternion(XmlOutput& xml, const Quaternion& q)
{
    for (const float value : {q.x, q.y, q.z, q.w}) xml.number(value, 8);
}

void writeIndex(XmlOutput& xml, uint64_t index, uint64_t count)
{
    if (index >= count || index >= kMostPoints) xml.fail("a reference to a point that is not there");
    xml.number(index, 16);
}

template <class Visit> void forEachVertex(const Skeleton& skeleton, Visit visit)
{
    for (const SkeletonBranch& branch : skeleton.branches)
        for (const SkeletonVertex* vertex = branch.firstVertex; vertex; vertex = vertex->next) visit(*vertex);
}

bool anyVertexColored(const Skeleton& skeleton)
{
    bool any = false;
    forEachVertex(skeleton,
                  [&](const SkeletonVertex& v) { any = any || v.attributes.color != VertexAttributes().color; });
    return any;
}

void writePoints(XmlOutput& xml, const Array<SkeletonPoint>& points)
{
    xml.open("points");
    for (const SkeletonPoint& point : points) writePoint(xml, point.position);
    xml.close();
    const auto isUnset = [](const SkeletonPoint& point) { return point.weight == 0 && !std::signbit(point.weight); };
    if (std::ranges::all_of(points, isUnset)) return;
    writeAttribute(xml, {"occ", "float", "point"}, [&] {
        for (const SkeletonPoint& point : points) xml.number(point.weight, 12);
    });
}

void writePolylines(XmlOutput& xml, const Skeleton& skeleton)
{
    xml.open("polylines");
    xml.open("nvertices");
    for (const SkeletonBranch& branch : skeleton.branches) xml.number(branch.vertexCount, 16);
    xml.close();
    xml.open("vertices");
    forEachVertex(skeleton, [&](const SkeletonVertex& v) { writeIndex(xml, v.point, skeleton.points.size()); });
    xml.close();

    if (std::ranges::any_of(skeleton.branches, [](const SkeletonBranch& branch) { return branch.matid != 0; }))
        writeAttribute(xml, {"matid", "int", "primitive"}, [&] {
            for (const SkeletonBranch& branch : skeleton.branches) xml.number(branch.matid, 16);
        });
    // Always there: frames of a variant that stands complete in its file are not computed.
    writeAttribute(xml, {"orient", "float4", "vertex"}, [&] {
        forEachVertex(skeleton, [&](const SkeletonVertex& v) { writeQuaternion(xml, v.attributes.orient); });
    });
    writeAttribute(xml, {"radius", "float", "vertex"}, [&] {
        forEachVertex(skeleton, [&](const SkeletonVertex& v) { xml.number(v.attributes.radius, 8); });
    });
    writeAttribute(xml, {"tex_v", "float", "vertex"}, [&] {
        forEachVertex(skeleton, [&](const SkeletonVertex& v) { xml.number(v.attributes.tex_v, 8); });
    });
    if (anyVertexColored(skeleton))
        writeAttribute(xml, {"color", "float3", "vertex"}, [&] {
            forEachVertex(skeleton, [&](const SkeletonVertex& v) { writeColor(xml, v.attributes.color); });
        });
    xml.close();
}

void writeConnectors(XmlOutput& xml, const Skeleton& skeleton)
{
    const ConnectorAttributes defaults;
    const Array<SkeletonConnector>& connectors = skeleton.connectors;
    const auto any = [&](auto member) {
        return std::ranges::any_of(
            connectors, [&](const SkeletonConnector& c) { return !(c.attributes.*member == defaults.*member); });
    };
    xml.open("connectors");
    xml.open("vertices");
    for (const SkeletonConnector& connector : connectors) writeIndex(xml, connector.point, skeleton.points.size());
    xml.close();
    if (any(&ConnectorAttributes::color))
        writeAttribute(xml, {"color", "float3", "vertex"}, [&] {
            for (const SkeletonConnector& connector : connectors) writeColor(xml, connector.attributes.color);
        });
    writeAttribute(xml, {"orient", "float4", "vertex"}, [&] {
        for (const SkeletonConnector& connector : connectors) writeQuaternion(xml, connector.attributes.orient);
    });
    if (any(&ConnectorAttributes::scale))
        writeAttribute(xml, {"scale", "float", "vertex"}, [&] {
            for (const SkeletonConnector& connector : connectors) xml.number(connector.attributes.scale, 8);
        });
    if (any(&ConnectorAttributes::group))
        writeAttribute(xml, {"group", "int", "vertex"}, [&] {
            for (const SkeletonConnector& connector : connectors) xml.number(connector.attributes.group, 16);
        });
    xml.close();
}

void writePolygons(XmlOutput& xml, const Mesh& mesh)
{
    xml.open("polygons");
    xml.open("nvertices");
    for (uint64_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon) {
        const size_t count = mesh.corners(polygon).size();
        if (count > kMostCorners) xml.fail("a polygon of more than five corners");
        xml.number(uint64_t{count}, 16);
    }
    xml.close();
    xml.open("vertices");
    for (const uint64_t point : mesh.polygonVertices) writeIndex(xml, point, mesh.positions.size());
    xml.close();
    if (std::ranges::any_of(mesh.materials, [](int32_t material) { return material != 0; }))
        writeAttribute(xml, {"matid", "int", "primitive"}, [&] {
            for (const int32_t material : mesh.materials) xml.number(material, 16);
        });
    writeAttribute(xml, {"tex", "float2", "vertex"}, [&] {
        for (const uint64_t index : mesh.polygonCoordinates) {
            const Vector2f uv = index < mesh.coordinates.size() ? mesh.coordinates[index] : Vector2f{0, 0};
            xml.number(uv.u, 8);
            xml.number(uv.v, 8);
        }
    });
    xml.close();
}

} // namespace

void WriteSkeleton(XmlOutput& xml, const Skeleton& skeleton)
{
    // Where no branch has a vertex there are no polylines that a file could tell of.
    const bool anyVertex =
        std::ranges::any_of(skeleton.branches, [](const SkeletonBranch& branch) { return branch.vertexCount > 0; });
    if (skeleton.points.empty() && skeleton.connectors.empty() && !anyVertex) return;
    xml.open("skeleton");
    if (!skeleton.points.empty()) writePoints(xml, skeleton.points);
    if (anyVertex) writePolylines(xml, skeleton);
    if (!skeleton.connectors.empty()) writeConnectors(xml, skeleton);
    xml.close();
}

void WriteMesh(XmlOutput& xml, const Mesh& mesh, int32_t group, std::string_view qualifier)
{
    xml.open("mesh");
    if (!mesh.name.empty()) xml.attribute("name", mesh.name);
    if (group != 0) xml.attribute("group", int64_t{group});
    if (!qualifier.empty()) xml.attribute("qualifier", qualifier);
    if (!mesh.positions.empty()) {
        xml.open("points");
        for (const Vector3& position : mesh.positions) writePoint(xml, position);
        xml.close();
    }
    if (!mesh.polygonVertices.empty()) writePolygons(xml, mesh);
    xml.close();
}

} // namespace vdt
