// glTF 2.0, as one binary file or as text with a buffer file and textures beside it.
//
// The layout of the buffer is worked out first: how many vertices each primitive has follows from its mesh and the
// number of copies. The copies themselves are made while the buffer is written, one at a time, so that memory does
// not grow with them.
#include "console/as_written.h"
#include "console/json_text.h"
#include "export/export_scene.h"
#include "export/gltf_materials.h"
#include "export/srgb.h"
#include "export/triangles.h"
#include "lookup/species.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <span>

namespace verdanth {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFloat = 5126;
constexpr int kUnsignedShort = 5123;
constexpr int kUnsignedInt = 5125;
constexpr int kArrayBuffer = 34962;
constexpr int kElementArrayBuffer = 34963;
constexpr int kRepeat = 10497;
constexpr int kLinear = 9729;
constexpr int kLinearMipmapLinear = 9987;
constexpr const char* kInstancing = "EXT_mesh_gpu_instancing";
constexpr const char* kLevels = "MSFT_lod";

// Triangles, and the copies of them that a primitive holds.
struct Piece {
    TriangleMesh triangles;
    std::span<const Placement> copies;
};

struct Primitive {
    uint32_t material;
    std::vector<Piece> pieces;
    uint64_t vertexCount = 0;
    uint64_t indexCount = 0;
    Float3 min{0, 0, 0}, max{0, 0, 0};
    std::optional<size_t> back{}; // the material of a second surface that faces the other way

    // The highest index is left free: it restarts a primitive.
    bool hasShortIndices() const { return vertexCount <= 0xFFFF; }
    uint64_t indexBytes() const { return (indexCount * (hasShortIndices() ? 2 : 4) + 3) / 4 * 4; }
    uint64_t triangleCount() const { return indexCount / 3 * (back ? 2 : 1); }
    uint64_t bytes() const
    {
        const uint64_t ownOfASide = vertexCount * 12 + indexBytes(); // normals and indices
        return vertexCount * 20 + ownOfASide * (back ? 2 : 1);
    }
};

// One mesh of the file, and where in the scene it stands.
struct GltfMesh {
    std::string name;
    std::vector<Primitive> primitives{};
    std::span<const Placement> copies{}; // empty: it stands once, at the origin
    const SceneCloud* cloud = nullptr;   // points in place of primitives
    std::string instances{};             // a node's text for all copies, where one node has them all

    bool isEmpty() const { return primitives.empty() && !cloud; }
    uint64_t copyCount() const { return std::max<uint64_t>(copies.size(), 1); }
};
using GltfLevel = std::vector<GltfMesh>;

// What a primitive's copies look like where they stand.
template <class Visit> void forEachCopy(const Primitive& primitive, Visit visit)
{
    for (const Piece& piece : primitive.pieces)
        for (const Placement& copy : piece.copies) visit(piece.triangles, Placer(copy));
}

Json described(const Float3& v)
{
    return {v.x, v.y, v.z};
}

void extend(Float3& min, Float3& max, const Float3& p)
{
    min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
}

std::string jsonLine(const Json& value)
{
    return JsonText(value, kOneLine);
}

void appendNumbers(std::string& text, std::initializer_list<double> numbers)
{
    char separator = '[';
    for (const double number : numbers) {
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<float>(number)).ptr;
        text += separator;
        text.append(digits, end);
        separator = ',';
    }
    text += ']';
}

// Column vectors turn the other way.
std::array<float, 4> columnTurn(const vdt::Quaternion& q)
{
    return {-q.x, -q.y, -q.z, q.w};
}

class GltfWriter {
public:
    GltfWriter(const Scene& source, const ExportOptions& exportOptions, OutputFiles& outputFiles,
               vdt::MessageHandler& handler)
        : scene(&source),
          options(&exportOptions),
          files(&outputFiles),
          messages(&handler),
          binary(FoldName(exportOptions.path).ends_with(".glb")),
          textureFiles(exportOptions.path, source.materials, outputFiles),
          images(binary ? nullptr : &textureFiles, handler),
          materials(source.materials, exportOptions.backs, images)
    {
    }

    bool write(ExportSummary& summary)
    {
        for (size_t level = 0; level < scene->levels.size(); ++level)
            levels.push_back(gatherMeshes(scene->levels[level], LevelSuffix(*scene, level)));
        for (const GltfLevel& level : levels)
            for (const GltfMesh& mesh : level) addTo(summary, mesh);
        if (summary.polygons == 0 && summary.points == 0) {
            messages->error("nothing to write: no polygon has an area");
            return false;
        }

        document["asset"] = {{"version", "2.0"}, {"generator", "verdanth " VERDANTH_VERSION}};
        document["scene"] = 0;
        document["scenes"] = Json::array({{{"name", scene->name}, {"nodes", {0}}}});
        for (GltfLevel& level : levels)
            for (GltfMesh& mesh : level) describeMesh(mesh);
        if (!fitsFormat(bufferSize)) return false;
        describeMaterials();
        describeImages();
        describeExtensions();
        document["buffers"] = Json::array({{{"byteLength", bufferSize}}});
        return binary ? writeBinary() : writeText();
    }

private:
    static void addTo(ExportSummary& summary, const GltfMesh& mesh)
    {
        if (mesh.cloud) summary.points += mesh.cloud->positions.size();
        for (const Primitive& primitive : mesh.primitives) {
            summary.vertices += primitive.vertexCount * mesh.copyCount();
            summary.polygons += primitive.triangleCount() * mesh.copyCount();
        }
    }

    GltfLevel gatherMeshes(const SceneLevel& source, const std::string& suffix)
    {
        static const Placement origin;
        const auto addPiece = [](Primitive& primitive, const SceneMesh& mesh, std::span<const Placement> copies) {
            Piece piece{TrianglesOf(mesh, primitive.material), copies};
            primitive.vertexCount += piece.triangles.positions.size() * copies.size();
            primitive.indexCount += piece.triangles.indices.size() * copies.size();
            primitive.pieces.push_back(std::move(piece));
        };
        GltfLevel meshes;
        const auto addObject = [&](const SceneObject& object, std::span<const Placement> copies) {
            GltfMesh& mesh = meshes.emplace_back(GltfMesh{.name = object.mesh.name + suffix, .copies = copies});
            for (const uint32_t material : MaterialsOf(object.mesh)) {
                mesh.primitives.push_back({material, {}});
                addPiece(mesh.primitives.back(), object.mesh, {&origin, 1});
            }
        };

        if (!source.cloud.isEmpty()) meshes.push_back({.name = "points" + suffix, .cloud = &source.cloud});
        addObject(source.body, {});
        if (options->foliage != FoliageForm::Merged) {
            for (const SceneObject& object : source.foliage) addObject(object, object.placements);
        } else {
            for (uint32_t material = 0; material < scene->materials.size(); ++material) {
                Primitive primitive{material, {}};
                for (const SceneObject& object : source.foliage)
                    if (std::ranges::find(object.mesh.polygonMaterials, material) != object.mesh.polygonMaterials.end())
                        addPiece(primitive, object.mesh, object.placements);
                GltfMesh& mesh =
                    meshes.emplace_back(GltfMesh{.name = "foliage " + scene->materials[material].name + suffix});
                mesh.primitives.push_back(std::move(primitive));
            }
        }

        // A mesh without a primitive, and a primitive without a vertex, may not be written.
        for (GltfMesh& mesh : meshes)
            std::erase_if(mesh.primitives, [](const Primitive& p) { return p.indexCount == 0; });
        std::erase_if(meshes, [](const GltfMesh& mesh) { return mesh.isEmpty(); });
        for (GltfMesh& mesh : meshes)
            for (Primitive& primitive : mesh.primitives) measure(primitive);
        return meshes;
    }

    void measure(Primitive& primitive) const
    {
        primitive.back = materials.backOf(primitive.material);
        constexpr float kFar = std::numeric_limits<float>::max();
        primitive.min = {kFar, kFar, kFar};
        primitive.max = {-kFar, -kFar, -kFar};
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            for (const Float3& position : triangles.positions) {
                const Float3 p = placer.point(position);
                extend(primitive.min, primitive.max, p);
            }
        });
    }

    size_t addView(uint64_t bytes, int target)
    {
        Json view = {{"buffer", 0}, {"byteOffset", bufferSize}, {"byteLength", bytes}};
        if (target) view["target"] = target;
        document["bufferViews"].push_back(std::move(view));
        bufferSize += (bytes + 3) / 4 * 4;
        return document["bufferViews"].size() - 1;
    }

    size_t addAccessor(uint64_t count, const char* type, int component, uint64_t bytes, int target)
    {
        const size_t view = addView(bytes, target);
        document["accessors"].push_back(
            {{"bufferView", view}, {"componentType", component}, {"count", count}, {"type", type}});
        return document["accessors"].size() - 1;
    }

    void describeMesh(GltfMesh& mesh)
    {
        Json primitives = Json::array();
        if (mesh.cloud) primitives.push_back(describedCloud(*mesh.cloud));
        for (const Primitive& p : mesh.primitives) {
            const size_t position = addPositions(p.vertexCount, p.min, p.max);
            const size_t coordinate = addAccessor(p.vertexCount, "VEC2", kFloat, p.vertexCount * 8, kArrayBuffer);
            const auto addSide = [&](size_t material) {
                const size_t normal = addAccessor(p.vertexCount, "VEC3", kFloat, p.vertexCount * 12, kArrayBuffer);
                const int indexType = p.hasShortIndices() ? kUnsignedShort : kUnsignedInt;
                const size_t index = addAccessor(p.indexCount, "SCALAR", indexType,
                                                 p.indexCount * (p.hasShortIndices() ? 2 : 4), kElementArrayBuffer);
                primitives.push_back(
                    {{"attributes", {{"POSITION", position}, {"NORMAL", normal}, {"TEXCOORD_0", coordinate}}},
                     {"indices", index},
                     {"material", material}});
            };
            addSide(p.material);
            if (p.back) addSide(*p.back);
        }
        document["meshes"].push_back({{"name", mesh.name}, {"primitives", std::move(primitives)}});
        if (options->foliage != FoliageForm::Instances || mesh.copies.empty()) return;

        const uint64_t count = mesh.copies.size();
        const size_t translation = addAccessor(count, "VEC3", kFloat, count * 12, 0);
        const size_t rotation = addAccessor(count, "VEC4", kFloat, count * 16, 0);
        const size_t scale = addAccessor(count, "VEC3", kFloat, count * 12, 0);
        mesh.instances =
            jsonLine({{kInstancing,
                       {{"attributes", {{"TRANSLATION", translation}, {"ROTATION", rotation}, {"SCALE", scale}}}}}});
    }

    size_t addPositions(uint64_t count, const Float3& min, const Float3& max)
    {
        const size_t accessor = addAccessor(count, "VEC3", kFloat, count * 12, kArrayBuffer);
        document["accessors"][accessor]["min"] = described(min);
        document["accessors"][accessor]["max"] = described(max);
        return accessor;
    }

    Json describedCloud(const SceneCloud& cloud)
    {
        Float3 min = cloud.positions.front(), max = min;
        for (const Float3& p : cloud.positions) extend(min, max, p);
        const uint64_t count = cloud.positions.size();
        const size_t position = addPositions(count, min, max);
        const size_t normal = addAccessor(count, "VEC3", kFloat, count * 12, kArrayBuffer);
        const size_t color = addAccessor(count, "VEC3", kFloat, count * 12, kArrayBuffer);
        constexpr int kPoints = 0;
        return {{"attributes", {{"POSITION", position}, {"NORMAL", normal}, {"COLOR_0", color}}},
                {"material", 0},
                {"mode", kPoints}};
    }

    void describeExtensions()
    {
        Json used = Json::array();
        if (levels.size() > 1) used.push_back(kLevels);
        for (const std::string& name : materials.extensions()) used.push_back(name);
        const auto hasInstances = [](const GltfMesh& mesh) { return !mesh.instances.empty(); };
        for (const GltfLevel& level : levels) {
            if (!std::ranges::any_of(level, hasInstances)) continue;
            used.push_back(kInstancing);
            document["extensionsRequired"] = {kInstancing}; // without it a crown would be a single leaf
            break;
        }
        if (!used.empty()) document["extensionsUsed"] = std::move(used);
    }

    // Lengths in binary files have 32 bits.
    bool fitsFormat(uint64_t bytes)
    {
        if (bytes < std::numeric_limits<uint32_t>::max()) return true;
        messages->error(options->path + ": the plant takes more than the 4 GB that a glTF file can hold; write its " +
                        "foliage as nodes (--instances nodes), or take a lower subdivision level");
        return false;
    }

    void describeMaterials()
    {
        if (!scene->finest().cloud.isEmpty()) {
            document["materials"] = Json::array(
                {{{"name", "points"}, {"pbrMetallicRoughness", {{"metallicFactor", 0}, {"roughnessFactor", 1}}}}});
            return;
        }
        document["materials"] = materials.describe();
    }

    void describeImages()
    {
        if (images.images.empty()) return;
        document["samplers"] = Json::array(
            {{{"magFilter", kLinear}, {"minFilter", kLinearMipmapLinear}, {"wrapS", kRepeat}, {"wrapT", kRepeat}}});
        for (size_t i = 0; i < images.images.size(); ++i) {
            const GltfImage& image = images.images[i];
            Json described = {{"name", image.name}};
            if (image.uri.empty()) {
                described["bufferView"] = addView(image.bytes.size(), 0);
                described["mimeType"] = image.mimeType;
            } else {
                described["uri"] = image.uri;
            }
            document["images"].push_back(std::move(described));
            document["textures"].push_back({{"sampler", 0}, {"source", i}});
        }
    }

    uint64_t nodeCount(const GltfLevel& level) const
    {
        uint64_t count = 1 + level.size();
        if (options->foliage == FoliageForm::Nodes)
            for (const GltfMesh& mesh : level) count += mesh.copies.size();
        return count;
    }

    // Each level's root stands before its nodes. There may be a node a leaf, so they are written as text at once.
    std::string nodesText() const
    {
        std::vector<uint64_t> roots;
        uint64_t next = 0;
        for (const GltfLevel& level : levels) {
            roots.push_back(next);
            next += nodeCount(level);
        }

        std::string text = "[";
        uint64_t mesh = 0;
        for (size_t level = 0; level < levels.size(); ++level) {
            const Json extras = {{"variant", scene->variant}, {"season", scene->season}};
            text += level > 0 ? ",{\"name\":" : "{\"name\":";
            text += jsonLine(scene->name + LevelSuffix(*scene, level)) + ",\"extras\":" + jsonLine(extras);
            if (level == 0 && roots.size() > 1)
                text += ",\"extensions\":" +
                        jsonLine({{kLevels, {{"ids", std::vector<uint64_t>(roots.begin() + 1, roots.end())}}}});
            appendNodes(text, levels[level], roots[level] + 1, mesh);
            mesh += levels[level].size();
        }
        return text + "]";
    }

    // The end of a root, and the nodes below it from `next` on.
    void appendNodes(std::string& text, const GltfLevel& level, uint64_t next, uint64_t mesh) const
    {
        std::string children;
        std::string nodes;
        for (const GltfMesh& object : level) {
            const std::string meshReference = "\"mesh\":" + std::to_string(mesh++);
            if (!children.empty()) children += ',';
            children += std::to_string(next++);
            nodes += ",{\"name\":" + jsonLine(object.name);
            if (object.copies.empty() || !object.instances.empty()) {
                nodes += "," + meshReference;
                if (!object.instances.empty()) nodes += ",\"extensions\":" + object.instances;
                nodes += "}";
                continue;
            }

            nodes += ",\"children\":[";
            for (size_t i = 0; i < object.copies.size(); ++i) {
                if (i > 0) nodes += ',';
                nodes += std::to_string(next++);
            }
            nodes += "]}";
            for (const Placement& copy : object.copies) {
                nodes += ",{" + meshReference + ",\"translation\":";
                appendNumbers(nodes, {copy.translation.x, copy.translation.y, copy.translation.z});
                nodes += ",\"rotation\":";
                const auto turn = columnTurn(copy.rotation);
                appendNumbers(nodes, {turn[0], turn[1], turn[2], turn[3]});
                nodes += ",\"scale\":";
                appendNumbers(nodes, {copy.scale, copy.scale, copy.scale});
                nodes += '}';
            }
        }
        text += ",\"children\":[" + children + "]}" + nodes;
    }

    std::string documentText() const
    {
        std::string text = jsonLine(document);
        text.pop_back();
        return text + ",\"nodes\":" + nodesText() + "}";
    }

    void writeBuffer(OutputFile& file)
    {
        uint64_t done = 0;
        for (const GltfLevel& level : levels) {
            for (const GltfMesh& mesh : level) {
                if (mesh.cloud) writeCloud(file, *mesh.cloud);
                for (const Primitive& primitive : mesh.primitives) {
                    if (messages->isCancelled()) return;
                    writePrimitive(file, primitive);
                    done += primitive.bytes();
                    messages->progress(static_cast<float>(done) / static_cast<float>(bufferSize));
                }
                if (!mesh.instances.empty()) writeInstances(file, mesh.copies);
            }
        }
        for (const GltfImage& image : images.images) {
            file.writeAll(image.bytes);
            file.align();
        }
    }

    static void writeCloud(OutputFile& file, const SceneCloud& cloud)
    {
        file.writeAll(cloud.positions);
        file.writeAll(cloud.normals);
        vdt::Array<vdt::Color3f> light = cloud.colors;
        for (vdt::Color3f& c : light) c = {LinearFromSrgb(c.r), LinearFromSrgb(c.g), LinearFromSrgb(c.b)};
        file.writeAll(light);
    }

    static void writeInstances(OutputFile& file, std::span<const Placement> copies)
    {
        std::vector<Float3> vectors;
        for (const Placement& copy : copies)
            vectors.push_back({static_cast<float>(copy.translation.x), static_cast<float>(copy.translation.y),
                               static_cast<float>(copy.translation.z)});
        file.writeAll(vectors);
        std::vector<std::array<float, 4>> turns;
        for (const Placement& copy : copies) turns.push_back(columnTurn(copy.rotation));
        file.writeAll(turns);
        vectors.clear();
        for (const Placement& copy : copies) {
            const auto scale = static_cast<float>(copy.scale);
            vectors.push_back({scale, scale, scale});
        }
        file.writeAll(vectors);
    }

    void writePrimitive(OutputFile& file, const Primitive& primitive)
    {
        vdt::Array<Float3> placed;
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            placed.resize(triangles.positions.size());
            std::ranges::transform(triangles.positions, placed.begin(),
                                   [&](const Float3& p) { return placer.point(p); });
            file.writeAll(placed);
        });
        vdt::Array<vdt::Vector2f> flipped;
        for (const Piece& piece : primitive.pieces) {
            flipped = piece.triangles.coordinates;
            for (vdt::Vector2f& coordinate : flipped) coordinate.v = 1 - coordinate.v; // v runs down in glTF
            for (size_t i = 0; i < piece.copies.size(); ++i) file.writeAll(flipped);
        }
        writeSide(file, primitive, false);
        if (primitive.back) writeSide(file, primitive, true);
    }

    // What the front, or the back, does not share with the other.
    void writeSide(OutputFile& file, const Primitive& primitive, bool isBack)
    {
        vdt::Array<Float3> placed;
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            placed.resize(triangles.normals.size());
            std::ranges::transform(triangles.normals, placed.begin(), [&](const Float3& normal) {
                const Float3 n = placer.normal(normal);
                return isBack ? Float3{-n.x, -n.y, -n.z} : n;
            });
            file.writeAll(placed);
        });
        if (primitive.hasShortIndices())
            writeIndices<uint16_t>(file, primitive, isBack);
        else
            writeIndices<uint32_t>(file, primitive, isBack);
        file.align();
    }

    template <class Index> void writeIndices(OutputFile& file, const Primitive& primitive, bool isBack)
    {
        vdt::Array<Index> indices;
        uint64_t base = 0;
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            indices.resize(triangles.indices.size());
            for (size_t i = 0; i < indices.size(); ++i) indices[i] = static_cast<Index>(base + triangles.indices[i]);
            if (placer.mirrors() != isBack)
                for (size_t i = 0; i + 2 < indices.size(); i += 3) std::swap(indices[i + 1], indices[i + 2]);
            base += triangles.positions.size();
            file.writeAll(indices);
        });
    }

    bool writeBinary()
    {
        std::string text = documentText();
        text.resize((text.size() + 3) / 4 * 4, ' ');
        constexpr uint64_t kHeaders = 12 + 2 * 8;
        const uint64_t total = kHeaders + text.size() + bufferSize;
        if (!fitsFormat(total)) return false;

        OutputFile& file = files->create(options->path);
        const auto number = [&](uint64_t value) {
            const auto narrow = static_cast<uint32_t>(value);
            const unsigned char bytes[] = {static_cast<unsigned char>(narrow), static_cast<unsigned char>(narrow >> 8),
                                           static_cast<unsigned char>(narrow >> 16),
                                           static_cast<unsigned char>(narrow >> 24)};
            file.write(bytes, sizeof bytes);
        };
        file.text("glTF");
        number(2);
        number(total);
        number(text.size());
        file.text("JSON");
        file.text(text);
        number(bufferSize);
        file.text(std::string_view("BIN\0", 4));
        writeBuffer(file);
        return true;
    }

    bool writeText()
    {
        if (!fitsFormat(bufferSize)) return false;
        const std::filesystem::path bufferPath = std::filesystem::path(options->path).replace_extension(".bin");
        document["buffers"][0]["uri"] = UriOf(bufferPath.filename().string());
        writeBuffer(files->create(bufferPath.string()));
        files->create(options->path).text(documentText());
        return true;
    }

    const Scene* scene;
    const ExportOptions* options;
    OutputFiles* files;
    vdt::MessageHandler* messages;
    bool binary;
    TextureFiles textureFiles;
    GltfImages images;
    GltfMaterials materials;
    std::vector<GltfLevel> levels;
    Json document;
    uint64_t bufferSize = 0;
};

} // namespace

bool WriteGltf(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
               vdt::MessageHandler& messages)
{
    return GltfWriter(scene, options, files, messages).write(summary);
}

} // namespace verdanth
