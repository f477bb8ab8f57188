#include "vdt/file/element_attributes.h"
#include "vdt/file/vdt_reader.h"

#include <algorithm>
#include <utility>

namespace vdt {

namespace {

constexpr int32_t kPrimitiveStorage = 1;
constexpr int32_t kPointStorage = 2;
constexpr int32_t kVertexStorage = 3;

constexpr uint64_t kAnyCount = kNone;

struct AttributeType {
    std::string_view name;
    bool numericFloat;
    int32_t components;
};
constexpr AttributeType kTypes[] = {
    {"float", true, 1}, {"float2", true, 2}, {"float3", true, 3}, {"float4", true, 4}, {"int", false, 1},
};
constexpr std::string_view kStorageClasses[] = {"constant", "primitive", "point", "vertex"}; // by code

// The values of a list at `index` as floats, or what the list's absence means.
float floatAt(const Array<double>* values, uint64_t index, float otherwise)
{
    return values && index < values->size() ? static_cast<float>((*values)[index]) : otherwise;
}

Color3f colorAt(const Array<double>* values, uint64_t index)
{
    if (!values) return {1, 1, 1};
    return {floatAt(values, 3 * index, 1), floatAt(values, 3 * index + 1, 1), floatAt(values, 3 * index + 2, 1)};
}

Quaternion quaternionAt(const Array<double>* values, uint64_t index)
{
    if (!values) return {};
    return {floatAt(values, 4 * index, 0), floatAt(values, 4 * index + 1, 0), floatAt(values, 4 * index + 2, 0),
            floatAt(values, 4 * index + 3, 1)};
}

double doubleAt(const Array<double>* values, uint64_t index, double otherwise)
{
    return values && index < values->size() ? (*values)[index] : otherwise;
}

int32_t integerAt(const Array<int32_t>* values, uint64_t index)
{
    return values && index < values->size() ? (*values)[index] : 0;
}

// Hands over a list with its memory; a list much shorter than the room made for it is copied, so that the memory which
// many attributes hold stays in measure with the file.
template <class Number> void takeValues(Array<Number>& kept, Array<Number>& list)
{
    if (2 * list.size() < list.capacity()) {
        kept.assign(list.begin(), list.end());
    } else {
        kept.swap(list);
    }
}

bool isIndex(int32_t value, uint64_t count)
{
    return value >= 0 && static_cast<uint64_t>(value) < count;
}

uint64_t countOf(int32_t listed)
{
    return static_cast<uint64_t>(std::max(listed, 0));
}

} // namespace

// What an attribute must be to be recognised.
struct VdtReader::AttributeRule {
    std::string_view name;
    bool numericFloat;
    int32_t components;
    int32_t storageClass;
};

bool VdtReader::atGeometryList() const
{
    return stack.endsWith({Element::Model, Element::Skeleton, Element::Polylines}) ||
           stack.endsWith({Element::Model, Element::Skeleton, Element::Connectors}) ||
           stack.endsWith({Element::Mesh, Element::Polygons});
}

bool VdtReader::inGeometryList(Element child) const
{
    return stack.endsWith({Element::Model, Element::Skeleton, Element::Polylines, child}) ||
           stack.endsWith({Element::Model, Element::Skeleton, Element::Connectors, child}) ||
           stack.endsWith({Element::Mesh, Element::Polygons, child});
}

void VdtReader::clearGeometryLists()
{
    vertexCounts.clear();
    vertexPoints.clear();
    attribs.clear();
}

void VdtReader::startAttrib(const ElementAttributes& attributes)
{
    attrib = {};
    attributes.read("name", attrib.name);
    if (const std::string* name = attributes.find("type")) {
        const auto* type = std::ranges::find(kTypes, *name, &AttributeType::name);
        if (type != std::end(kTypes)) {
            attrib.numericFloat = type->numericFloat;
            attrib.components = type->components;
        }
    }
    if (const std::string* name = attributes.find("storageclass")) {
        const auto* found = std::ranges::find(kStorageClasses, *name);
        if (found != std::end(kStorageClasses))
            attrib.storageClass = static_cast<int32_t>(found - std::begin(kStorageClasses));
    }
    reserveAttribute();
}

// The lists before an attribute tell how long it should be, which spares it growing by and by.
void VdtReader::reserveAttribute()
{
    const uint64_t elements = attrib.storageClass == kVertexStorage      ? vertexPoints.size()
                              : attrib.storageClass == kPrimitiveStorage ? vertexCounts.size()
                                                                         : 0;
    if (elements == 0 || !inGeometryList(Element::Attrib)) return;
    const uint64_t count = elements * static_cast<uint64_t>(attrib.components) + kPieceSize;
    if (attrib.numericFloat) {
        floats.values.reserve(count);
    } else {
        integers.values.reserve(count);
    }
}

void VdtReader::startMesh(const ElementAttributes& attributes)
{
    mesh = std::make_unique<Mesh>();
    meshGroup = 0;
    meshQualifier.clear();
    attributes.read("name", mesh->name);
    attributes.read("group", meshGroup);
    attributes.read("qualifier", meshQualifier);
}

bool VdtReader::endGeometryElement()
{
    const auto at = [this](std::initializer_list<Element> path) { return stack.endsWith(path); };

    if (at({Element::Model, Element::Skeleton, Element::Points})) {
        endSkeletonPoints();
    } else if (at({Element::Mesh, Element::Points})) {
        endMeshPoints();
    } else if (inGeometryList(Element::Nvertices)) {
        vertexCounts.swap(integers.values);
    } else if (inGeometryList(Element::Vertices)) {
        vertexPoints.swap(integers.values);
    } else if (at({Element::Model, Element::Skeleton, Element::Polylines})) {
        endPolylines();
    } else if (at({Element::Model, Element::Skeleton, Element::Connectors})) {
        endConnectors();
    } else if (at({Element::Mesh, Element::Polygons})) {
        endPolygons();
    } else if (at({Element::Model, Element::Mesh})) {
        endMesh();
    } else if (at({Element::Model, Element::Proxy, Element::Mesh})) {
        endProxy();
    } else if (inGeometryList(Element::Attrib) || at({Element::Model, Element::Skeleton, Element::Attrib})) {
        endAttrib();
    } else {
        return false;
    }
    return true;
}

void VdtReader::endSkeletonPoints()
{
    Skeleton& skeleton = variant.skeleton;
    const Array<double>& values = floats.values;
    const uint64_t count = values.size() / 3;
    if (values.size() % 3 != 0) onLoss("The skeleton's \"points\" end inside a triple.");

    // A second, shorter list must not take points away from under vertices and connectors.
    const bool inUse = !skeleton.branches.empty() || !skeleton.connectors.empty();
    if (inUse && count < skeleton.points.size()) {
        messageHandler->warning("A skeleton has a second, shorter list of points; the points behind it stay!");
    } else {
        skeleton.ResizePoints(count);
    }
    for (uint64_t i = 0; i < count; ++i) {
        SkeletonPoint& point = skeleton.points[i];
        point.position = point.restPosition = {values[3 * i], values[3 * i + 1], values[3 * i + 2]};
        point.weight = 0;
    }
}

void VdtReader::endMeshPoints()
{
    if (!mesh) return;
    const Array<double>& values = floats.values;
    const uint64_t count = values.size() / 3;
    if (values.size() % 3 != 0) onLoss("The \"points\" of the mesh \"" + mesh->name + "\" end inside a triple.");
    mesh->reserveMore(count, 0, 0, 0);
    for (uint64_t i = 0; i < count; ++i)
        mesh->AddPoint({values[3 * i], values[3 * i + 1], values[3 * i + 2]}, Vector3{0, 0, 0});
}

void VdtReader::endAttrib()
{
    if (attrib.name.empty()) return onLoss("An \"attrib\" without a name is left out.");

    // Directly in the skeleton there is only the points' occlusion, for which weights stand in.
    if (stack.endsWith({Element::Skeleton, Element::Attrib})) {
        Array<SkeletonPoint>& points = variant.skeleton.points;
        const bool recognised = attrib.name == "occ" && attrib.numericFloat && attrib.components == 1 &&
                                attrib.storageClass == kPointStorage && floats.values.size() == points.size();
        if (!recognised) return onLoss("The attribute \"" + attrib.name + "\" of \"skeleton\" does not fit.");
        for (uint64_t i = 0; i < points.size(); ++i) points[i].weight = static_cast<float>(floats.values[i]);
        return;
    }
    takeValues(attrib.floats, floats.values);
    takeValues(attrib.integers, integers.values);
    attribs.push_back(std::exchange(attrib, {}));
}

// The last attribute that is what the rule says and has the required count of values; null if there is none.
const VdtReader::GeometryAttribute* VdtReader::findAttribute(const AttributeRule& rule, uint64_t requiredCount)
{
    const auto fits = [&](const GeometryAttribute& attribute) {
        return attribute.name == rule.name && attribute.numericFloat == rule.numericFloat &&
               attribute.components == rule.components && attribute.storageClass == rule.storageClass &&
               (requiredCount == kAnyCount || attribute.count() == requiredCount);
    };
    const auto found = std::find_if(attribs.rbegin(), attribs.rend(), fits);
    if (found == attribs.rend()) return nullptr;
    found->used = true;
    return &*found;
}

void VdtReader::reportUnusedAttributes()
{
    for (const GeometryAttribute& attribute : attribs) {
        if (attribute.used) continue;
        onLoss("The attribute \"" + attribute.name + "\" of \"" + std::string(ElementName(stack.elements().back())) +
               "\" is unknown, of a wrong type or storage class, or has a wrong count of values (" +
               std::to_string(attribute.count()) + ").");
    }
}

void VdtReader::warnLeftOut(uint64_t count, const char* what)
{
    if (count == 0) return;
    messageHandler->warning(std::to_string(count) + " " + what +
                            " left out, since they refer to missing points or are listed wrongly!");
}

// How many vertices the lists of counts speak of.
uint64_t VdtReader::listedVertexCount() const
{
    uint64_t sum = 0;
    for (const int32_t count : vertexCounts) sum += countOf(count);
    return sum;
}

void VdtReader::endPolylines()
{
    if (vertexCounts.empty() || vertexPoints.empty()) return;

    const uint64_t listed = listedVertexCount();
    const auto* color = findAttribute({"color", true, 3, kVertexStorage}, 3 * listed);
    const auto* matid = findAttribute({"matid", false, 1, kPrimitiveStorage}, vertexCounts.size());
    const auto* orient = findAttribute({"orient", true, 4, kVertexStorage}, 4 * listed);
    const auto* radius = findAttribute({"radius", true, 1, kVertexStorage}, kAnyCount);
    const auto* texV = findAttribute({"tex_v", true, 1, kVertexStorage}, listed);
    reportUnusedAttributes();
    if (radius && radius->count() != listed) onLoss("The attribute \"radius\" has a wrong count of values.");
    if (vertexPoints.size() > listed) onLoss("More \"vertices\" are listed than \"nvertices\" speak of.");

    Skeleton& skeleton = variant.skeleton;
    skeleton.ResizeBranches(vertexCounts.size());
    skeleton.reserveVertices(std::min<uint64_t>(listed, vertexPoints.size()));
    const auto* colors = color ? &color->floats : nullptr;
    const auto* orients = orient ? &orient->floats : nullptr;
    const auto* radii = radius ? &radius->floats : nullptr;
    const auto* texVs = texV ? &texV->floats : nullptr;

    uint64_t k = 0;
    uint64_t leftOut = 0;
    for (uint64_t branch = 0; branch < vertexCounts.size(); ++branch) {
        skeleton.branches[branch].matid = integerAt(matid ? &matid->integers : nullptr, branch);
        if (vertexCounts[branch] < 0) ++leftOut;
        const uint64_t present = std::min<uint64_t>(countOf(vertexCounts[branch]), vertexPoints.size() - k);
        leftOut += countOf(vertexCounts[branch]) - present;
        for (const uint64_t end = k + present; k < end; ++k) {
            if (!isIndex(vertexPoints[k], skeleton.points.size())) {
                ++leftOut;
                continue;
            }
            skeleton.InsertVertex(branch, static_cast<uint64_t>(vertexPoints[k]),
                                  {.radius = doubleAt(radii, k, 1),
                                   .tex_v = floatAt(texVs, k, 0),
                                   .color = colorAt(colors, k),
                                   .orient = quaternionAt(orients, k)},
                                  kNone);
        }
    }
    warnLeftOut(leftOut, "vertices of polylines are");
}

void VdtReader::endConnectors()
{
    if (vertexPoints.empty()) return;

    const uint64_t listed = vertexPoints.size();
    const auto* color = findAttribute({"color", true, 3, kVertexStorage}, 3 * listed);
    const auto* orient = findAttribute({"orient", true, 4, kVertexStorage}, 4 * listed);
    const auto* scale = findAttribute({"scale", true, 1, kVertexStorage}, listed);
    const auto* group = findAttribute({"group", false, 1, kVertexStorage}, listed);
    reportUnusedAttributes();

    Skeleton& skeleton = variant.skeleton;
    const auto isPresent = [&](int32_t point) { return isIndex(point, skeleton.points.size()); };
    const auto kept = static_cast<uint64_t>(std::ranges::count_if(vertexPoints, isPresent));
    skeleton.ResizeConnectors(kept);
    uint64_t connector = 0;
    for (uint64_t i = 0; i < listed; ++i) {
        if (!isPresent(vertexPoints[i])) continue;
        skeleton.SetConnector(connector++,
                              {.color = colorAt(color ? &color->floats : nullptr, i),
                               .orient = quaternionAt(orient ? &orient->floats : nullptr, i),
                               .scale = doubleAt(scale ? &scale->floats : nullptr, i, 1),
                               .group = integerAt(group ? &group->integers : nullptr, i)},
                              static_cast<uint64_t>(vertexPoints[i]));
    }
    warnLeftOut(listed - kept, "connectors are");
}

void VdtReader::endPolygons()
{
    if (!mesh || vertexCounts.empty() || vertexPoints.empty()) return;

    const uint64_t listed = listedVertexCount();
    const auto* matid = findAttribute({"matid", false, 1, kPrimitiveStorage}, vertexCounts.size());
    const auto* tex = findAttribute({"tex", true, 2, kVertexStorage}, 2 * listed);
    reportUnusedAttributes();
    if (vertexPoints.size() > listed) onLoss("More \"vertices\" are listed than \"nvertices\" speak of.");

    const uint64_t pointCount = mesh->PointCount();
    const auto* coordinates = tex ? &tex->floats : nullptr;
    std::vector<uint64_t> corners;
    std::vector<uint64_t> cornerCoordinates;
    mesh->reserveMore(0, vertexPoints.size(), vertexCounts.size(), vertexPoints.size());
    uint64_t k = 0;
    uint64_t leftOut = 0;
    for (uint64_t polygon = 0; polygon < vertexCounts.size(); ++polygon) {
        const uint64_t count = countOf(vertexCounts[polygon]);
        const uint64_t present = std::min<uint64_t>(count, vertexPoints.size() - k);
        const auto* first = vertexPoints.data() + k;
        const bool usable = vertexCounts[polygon] >= 0 && present == count &&
                            std::all_of(first, first + count, [&](int32_t p) { return isIndex(p, pointCount); });
        if (usable) {
            corners.assign(first, first + count);
            cornerCoordinates.clear();
            for (uint64_t i = k; i < k + count; ++i)
                cornerCoordinates.push_back(
                    mesh->AddUV(floatAt(coordinates, 2 * i, 0), floatAt(coordinates, 2 * i + 1, 0)));
            mesh->AddPolygon(corners, cornerCoordinates, integerAt(matid ? &matid->integers : nullptr, polygon));
        } else {
            ++leftOut;
        }
        k += present;
    }
    warnLeftOut(leftOut, "polygons are");
}

void VdtReader::endMesh()
{
    if (!mesh) return;
    mesh->ComputeNormals();
    if (hasRoom(meshCount, kMostRecords, "meshes")) {
        variant.meshes.emplace_back(meshGroup, meshQualifier, std::move(mesh));
        ++meshCount;
    }
    mesh.reset();
    meshGroup = 0;
    meshQualifier.clear();
}

void VdtReader::endProxy()
{
    if (!mesh) return;
    mesh->ComputeNormals();
    if (hasRoom(meshCount, kMostRecords, "meshes")) {
        variant.proxies.push_back({meshQualifier, std::move(*mesh)});
        ++meshCount;
    }
    mesh.reset();
    meshGroup = 0;
    meshQualifier.clear();
}

} // namespace vdt
