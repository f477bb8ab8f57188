#include "app/read_back.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <map>
#include <sstream>

namespace verdanth::test {
namespace {

using Json = nlohmann::json;

template <class Number> Number numberAt(const std::string& bytes, size_t place)
{
    Number number{};
    EXPECT_LE(place + sizeof number, bytes.size());
    if (place + sizeof number <= bytes.size()) std::memcpy(&number, bytes.data() + place, sizeof number);
    return number;
}

std::string unescaped(const std::string& uri)
{
    std::string path = uri;
    for (size_t i = 0; (i = path.find('%', i)) != path.npos; ++i)
        path.replace(i, 3, 1, static_cast<char>(std::stoi(path.substr(i + 1, 2), nullptr, 16)));
    return path;
}

// One accessor's values, after checking that they lie in their view and the view in the buffer.
std::vector<std::vector<double>> accessorValues(const ReadScene& scene, size_t index)
{
    const Json& accessor = scene.document["accessors"].at(index);
    const Json& view = scene.document["bufferViews"].at(accessor["bufferView"].get<size_t>());
    const std::string type = accessor["type"];
    const size_t components = type == "SCALAR" ? 1 : static_cast<size_t>(type.back() - '0'); // VEC2 and on
    const int kind = accessor["componentType"];
    const size_t size = kind == 5123 ? 2 : 4;
    const size_t count = accessor["count"];
    const size_t offset = view["byteOffset"];
    EXPECT_EQ(offset % 4, 0u);
    EXPECT_EQ(count * components * size, view["byteLength"].get<size_t>());
    EXPECT_LE(offset + view["byteLength"].get<size_t>(), scene.buffer.size());

    std::vector<std::vector<double>> values(count, std::vector<double>(components));
    for (size_t i = 0; i < count * components; ++i) {
        const size_t place = offset + i * size;
        values[i / components][i % components] = kind == 5126   ? numberAt<float>(scene.buffer, place)
                                                 : kind == 5123 ? numberAt<uint16_t>(scene.buffer, place)
                                                                : numberAt<uint32_t>(scene.buffer, place);
    }
    for (size_t c = 0; accessor.contains("min") && c < components; ++c) {
        double low = values[0][c], high = values[0][c];
        for (const auto& value : values) low = std::min(low, value[c]), high = std::max(high, value[c]);
        EXPECT_EQ(low, accessor["min"][c].get<double>());
        EXPECT_EQ(high, accessor["max"][c].get<double>());
    }
    return values;
}

vdt::Vector3 vectorOf(const std::vector<double>& v)
{
    return {v[0], v[1], v[2]};
}

// A node's own turn, for column vectors as glTF has them, told from first principles: v + 2 u x (u x v + w v).
vdt::Vector3 turned(const Json& q, const vdt::Vector3& v)
{
    const vdt::Vector3 u{q[0], q[1], q[2]};
    return v + 2.0 * vdt::Cross(u, vdt::Cross(u, v) + q[3].get<double>() * v);
}

void readPoints(ReadScene& scene, const Json& primitive)
{
    const auto attribute = [&](const char* name) { return accessorValues(scene, primitive["attributes"][name]); };
    const auto positions = attribute("POSITION");
    const auto normals = attribute("NORMAL");
    const auto colors = attribute("COLOR_0");
    ASSERT_EQ(positions.size(), normals.size());
    ASSERT_EQ(positions.size(), colors.size());
    for (size_t i = 0; i < positions.size(); ++i)
        scene.points.push_back({vectorOf(positions[i]), vectorOf(normals[i]), vectorOf(colors[i])});
}

void readPrimitive(ReadScene& scene, const Json& node, const Json& primitive)
{
    if (primitive.value("mode", 4) == 0) return readPoints(scene, primitive);
    const auto attribute = [&](const char* name) { return accessorValues(scene, primitive["attributes"][name]); };
    const auto positions = attribute("POSITION");
    const auto normals = attribute("NORMAL");
    const auto coordinates = attribute("TEXCOORD_0");
    const auto indices = accessorValues(scene, primitive["indices"]);
    EXPECT_EQ(positions.size(), normals.size());
    EXPECT_EQ(positions.size(), coordinates.size());
    EXPECT_EQ(indices.size() % 3, 0u);

    const Json turn = node.value("rotation", Json{0, 0, 0, 1});
    const Json shift = node.value("translation", Json{0, 0, 0});
    const double scale = node.contains("scale") ? node["scale"][0].get<double>() : 1;
    for (size_t i = 0; i < indices.size(); i += 3) {
        ReadPolygon polygon;
        polygon.material = scene.document["materials"].at(primitive["material"].get<size_t>())["name"];
        for (size_t c = 0; c < 3; ++c) {
            // A mirroring node turns triangles round.
            const auto index = static_cast<size_t>(indices[i + (scale < 0 ? 2 - c : c)][0]);
            ASSERT_LT(index, positions.size());
            polygon.corners.push_back(
                {turned(turn, vectorOf(positions[index]) * scale) + vdt::Vector3{shift[0], shift[1], shift[2]},
                 turned(turn, vectorOf(normals[index])) * (scale < 0 ? -1 : 1),
                 {static_cast<float>(coordinates[index][0]), 1 - static_cast<float>(coordinates[index][1])}});
        }
        scene.polygons.push_back(std::move(polygon));
    }
}

void readMesh(ReadScene& scene, const Json& node)
{
    for (const Json& primitive : scene.document["meshes"].at(node["mesh"].get<size_t>())["primitives"])
        readPrimitive(scene, node, primitive);
}

// One node that stands for many: each has a place in three lists.
void readInstances(ReadScene& scene, const Json& node, const Json& lists)
{
    const auto turns = accessorValues(scene, lists["ROTATION"]);
    const auto shifts = accessorValues(scene, lists["TRANSLATION"]);
    const auto scales = accessorValues(scene, lists["SCALE"]);
    ASSERT_EQ(turns.size(), shifts.size());
    ASSERT_EQ(turns.size(), scales.size());
    for (size_t i = 0; i < turns.size(); ++i)
        readMesh(scene,
                 {{"mesh", node["mesh"]}, {"rotation", turns[i]}, {"translation", shifts[i]}, {"scale", scales[i]}});
}

void readNode(ReadScene& scene, size_t index)
{
    const Json node = scene.document["nodes"].at(index);
    const Json extensions = node.value("extensions", Json::object());
    if (extensions.contains("EXT_mesh_gpu_instancing"))
        readInstances(scene, node, extensions["EXT_mesh_gpu_instancing"]["attributes"]);
    else if (node.contains("mesh"))
        readMesh(scene, node);
    if (node.contains("children"))
        for (const Json& child : node["children"]) readNode(scene, child);
}

} // namespace

ReadScene ReadGltfFile(const std::string& path, size_t level)
{
    ReadScene scene;
    const std::string content = vdt::test::BytesOfFile(path);
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (path.ends_with(".glb")) {
        EXPECT_EQ(content.substr(0, 4), "glTF");
        EXPECT_EQ(numberAt<uint32_t>(content, 4), 2u);
        EXPECT_EQ(numberAt<uint32_t>(content, 8), content.size());
        const size_t length = numberAt<uint32_t>(content, 12);
        EXPECT_EQ(content.substr(16, 4), "JSON");
        EXPECT_EQ(length % 4, 0u);
        scene.document = Json::parse(content.substr(20, length));
        EXPECT_EQ(numberAt<uint32_t>(content, 20 + length), content.size() - length - 28);
        EXPECT_EQ(content.substr(24 + length, 4), std::string("BIN\0", 4));
        scene.buffer = content.substr(28 + length);
    } else {
        scene.document = Json::parse(content);
        scene.buffer = vdt::test::BytesOfFile(folder / unescaped(scene.document["buffers"][0]["uri"]));
    }
    EXPECT_EQ(scene.document["buffers"][0]["byteLength"].get<size_t>(), scene.buffer.size());
    for (const Json& image : scene.document.value("images", Json::array())) {
        EXPECT_FALSE(image.contains("uri") && path.ends_with(".glb"));
        const bool inPlace = !image.contains("uri") || std::filesystem::exists(folder / unescaped(image["uri"]));
        EXPECT_TRUE(inPlace) << image;
    }
    for (const Json& root : scene.document["scenes"][0]["nodes"])
        readNode(scene, level == 0 ? root.get<size_t>()
                                   : scene.document["nodes"]
                                         .at(root.get<size_t>())["extensions"]["MSFT_lod"]["ids"]
                                         .at(level - 1)
                                         .get<size_t>());
    return scene;
}

ReadScene ReadObjFile(const std::string& path)
{
    ReadScene scene;
    std::vector<vdt::Vector3> points, normals;
    std::vector<vdt::Vector2f> coordinates;
    std::string material;
    std::istringstream lines(vdt::test::BytesOfFile(path));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword;
        words >> keyword;
        vdt::Vector3 v{0, 0, 0};
        if (keyword == "v" || keyword == "vn") {
            EXPECT_TRUE(words >> v.x >> v.y >> v.z) << line;
            (keyword == "v" ? points : normals).push_back(v);
        } else if (keyword == "vt") {
            EXPECT_TRUE(words >> v.x >> v.y) << line;
            coordinates.push_back({static_cast<float>(v.x), static_cast<float>(v.y)});
        } else if (keyword == "usemtl") {
            words >> material;
        } else if (keyword == "f") {
            ReadPolygon polygon{material, {}};
            size_t p = 0, t = 0, n = 0;
            for (char slash; words >> p >> slash >> t >> slash >> n;)
                polygon.corners.push_back({points.at(p - 1), normals.at(n - 1), coordinates.at(t - 1)});
            scene.polygons.push_back(std::move(polygon));
        } else {
            EXPECT_TRUE(keyword == "o" || keyword == "mtllib" || keyword == "#") << line;
        }
    }
    return scene;
}

ReadScene ReadPlyFile(const std::string& path)
{
    ReadScene scene;
    const std::string content = vdt::test::BytesOfFile(path);
    std::istringstream lines(content);
    std::map<std::string, size_t> counts;
    std::string line;
    while (std::getline(lines, line) && line != "end_header") {
        std::istringstream words(line);
        std::string keyword, element;
        if (words >> keyword >> element && keyword == "element") words >> counts[element];
    }
    const auto vertices = static_cast<size_t>(lines.tellg());
    if (!counts.contains("face")) { // a cloud
        constexpr size_t kPoint = 6 * 4 + 3;
        EXPECT_EQ(vertices + counts["vertex"] * kPoint, content.size());
        for (size_t i = 0; i < counts["vertex"]; ++i) {
            const size_t at = vertices + i * kPoint;
            const auto number = [&](size_t k) { return numberAt<float>(content, at + k * 4); };
            const auto channel = [&](size_t k) { return numberAt<uint8_t>(content, at + 24 + k) / 255.0; };
            scene.points.push_back({{number(0), number(1), number(2)},
                                    {number(3), number(4), number(5)},
                                    {channel(0), channel(1), channel(2)}});
        }
        return scene;
    }
    size_t place = vertices + counts["vertex"] * 32;
    for (size_t i = 0; i < counts["face"]; ++i) {
        ReadPolygon polygon;
        const auto corners = numberAt<uint8_t>(content, place++);
        for (size_t c = 0; c < corners; ++c, place += 4) {
            const auto index = numberAt<uint32_t>(content, place);
            EXPECT_LT(index, counts["vertex"]);
            const auto number = [&](size_t k) { return numberAt<float>(content, vertices + index * 32 + k * 4); };
            polygon.corners.push_back(
                {{number(0), number(1), number(2)}, {number(3), number(4), number(5)}, {number(6), number(7)}});
        }
        polygon.material = std::to_string(numberAt<int32_t>(content, place));
        place += 4 + 3;
        scene.polygons.push_back(std::move(polygon));
    }
    EXPECT_EQ(place, content.size());
    return scene;
}

namespace {

vdt::Vector3 areaOf(const ReadPolygon& polygon)
{
    vdt::Vector3 area{0, 0, 0};
    const vdt::Vector3& first = polygon.corners.front().position;
    for (size_t i = 1; i + 1 < polygon.corners.size(); ++i)
        area += vdt::Cross(polygon.corners[i].position - first, polygon.corners[i + 1].position - first);
    return area;
}

} // namespace

void CheckScene(const ReadScene& scene, bool facing)
{
    EXPECT_FALSE(scene.polygons.empty());
    for (const ReadPolygon& polygon : scene.polygons) {
        ASSERT_GE(polygon.corners.size(), 3u);
        const vdt::Vector3 area = areaOf(polygon);
        EXPECT_GT(vdt::Length(area), 0);
        vdt::Vector3 mean{0, 0, 0};
        for (const ReadCorner& corner : polygon.corners) {
            EXPECT_TRUE(std::isfinite(vdt::Length(corner.position)));
            EXPECT_NEAR(vdt::Length(corner.normal), 1, 1e-4);
            mean += corner.normal;
        }
        EXPECT_TRUE(!facing || vdt::Dot(mean, area) > 0) << vdt::Dot(mean, area);
    }
}

vdt::Box ReadScene::bounds() const
{
    vdt::Box box;
    for (const ReadPolygon& polygon : polygons)
        for (const ReadCorner& corner : polygon.corners) box.extend(corner.position);
    return box;
}

std::pair<vdt::Vector3, double> ReadScene::area(const std::string& material) const
{
    std::pair<vdt::Vector3, double> sum{{0, 0, 0}, 0};
    for (const ReadPolygon& polygon : polygons) {
        if (polygon.material != material) continue;
        sum.first += areaOf(polygon);
        sum.second += vdt::Length(areaOf(polygon));
    }
    return sum;
}

} // namespace verdanth::test
