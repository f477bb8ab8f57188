// glTF 2.0, as one binary file or as text with a buffer file and textures beside it.
//
// The layout of the buffer is worked out first: how many vertices each primitive has follows from its mesh and the
// number of copies. The copies themselves are made while the buffer is written, one at a time, so that memory does
// not grow with them.
#include "console/as_written.h"
#include "export/export_scene.h"
#include "export/gltf_images.h"
#include "export/triangles.h"
#include "lookup/species.h"

#include <algorithm>
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
constexpr double kAlphaCutoff = 0.5;

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

    // The highest index is left free: it restarts a primitive.
    bool hasShortIndices() const { return vertexCount <= 0xFFFF; }
    uint64_t indexBytes() const { return (indexCount * (hasShortIndices() ? 2 : 4) + 3) / 4 * 4; }
};

// One mesh of the file, and where in the scene it stands.
struct GltfMesh {
    std::string name;
    std::vector<Primitive> primitives;
    std::span<const Placement> nodes; // empty: one node at the origin
};

// What a primitive's copies look like where they stand.
template <class Visit> void forEachCopy(const Primitive& primitive, Visit visit)
{
    for (const Piece& piece : primitive.pieces)
        for (const Placement& copy : piece.copies) visit(piece.triangles, Placer(copy));
}

float lineared(float channel)
{
    return channel <= 0.04045F ? channel / 12.92F : std::pow((channel + 0.055F) / 1.055F, 2.4F);
}

Json described(const Float3& v)
{
    return {v.x, v.y, v.z};
}

// JSON text; bytes that are no UTF-8 are replaced.
std::string jsonText(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
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
          images(binary ? nullptr : &textureFiles, handler)
    {
    }

    bool write(ExportSummary& summary)
    {
        gatherMeshes();
        for (const GltfMesh& mesh : meshes) {
            const uint64_t copies = std::max<uint64_t>(mesh.nodes.size(), 1);
            for (const Primitive& primitive : mesh.primitives) {
                summary.vertices += primitive.vertexCount * copies;
                summary.polygons += primitive.indexCount / 3 * copies;
            }
        }
        if (summary.polygons == 0) {
            messages->error("nothing to write: no polygon has an area");
            return false;
        }

        document["asset"] = {{"version", "2.0"}, {"generator", "verdanth " VERDANTH_VERSION}};
        document["scene"] = 0;
        document["scenes"] = Json::array({{{"name", scene->name}, {"nodes", {0}}}});
        if (!describeMeshes()) return false;
        describeMaterials();
        describeImages();
        document["buffers"] = Json::array({{{"byteLength", bufferSize}}});
        return binary ? writeBinary() : writeText();
    }

private:
    void gatherMeshes()
    {
        static const Placement origin;
        const auto addPiece = [](Primitive& primitive, const SceneMesh& mesh, std::span<const Placement> copies) {
            Piece piece{TrianglesOf(mesh, primitive.material), copies};
            primitive.vertexCount += piece.triangles.positions.size() * copies.size();
            primitive.indexCount += piece.triangles.indices.size() * copies.size();
            primitive.pieces.push_back(std::move(piece));
        };
        const auto addObject = [&](const SceneObject& object, std::span<const Placement> nodes) {
            GltfMesh mesh{object.mesh.name, {}, nodes};
            for (const uint32_t material : MaterialsOf(object.mesh)) {
                mesh.primitives.push_back({material, {}});
                addPiece(mesh.primitives.back(), object.mesh, {&origin, 1});
            }
            meshes.push_back(std::move(mesh));
        };

        addObject(scene->body, {});
        if (options->foliage == FoliageForm::Nodes) {
            for (const SceneObject& object : scene->foliage) addObject(object, object.placements);
        } else {
            for (uint32_t material = 0; material < scene->materials.size(); ++material) {
                Primitive primitive{material, {}};
                for (const SceneObject& object : scene->foliage)
                    if (std::ranges::find(object.mesh.polygonMaterials, material) != object.mesh.polygonMaterials.end())
                        addPiece(primitive, object.mesh, object.placements);
                GltfMesh mesh{"foliage " + scene->materials[material].name, {}, {}};
                mesh.primitives.push_back(std::move(primitive));
                meshes.push_back(std::move(mesh));
            }
        }

        // A mesh without a primitive, and a primitive without a vertex, may not be written.
        for (GltfMesh& mesh : meshes)
            std::erase_if(mesh.primitives, [](const Primitive& p) { return p.indexCount == 0; });
        std::erase_if(meshes, [](const GltfMesh& mesh) { return mesh.primitives.empty(); });
        for (GltfMesh& mesh : meshes) std::ranges::for_each(mesh.primitives, measure);
    }

    static void measure(Primitive& primitive)
    {
        constexpr float kFar = std::numeric_limits<float>::max();
        primitive.min = {kFar, kFar, kFar};
        primitive.max = {-kFar, -kFar, -kFar};
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            for (const Float3& position : triangles.positions) {
                const Float3 p = placer.point(position);
                primitive.min = {std::min(primitive.min.x, p.x), std::min(primitive.min.y, p.y),
                                 std::min(primitive.min.z, p.z)};
                primitive.max = {std::max(primitive.max.x, p.x), std::max(primitive.max.y, p.y),
                                 std::max(primitive.max.z, p.z)};
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

    bool describeMeshes()
    {
        for (const GltfMesh& mesh : meshes) {
            Json primitives = Json::array();
            for (const Primitive& p : mesh.primitives) {
                const size_t position = addAccessor(p.vertexCount, "VEC3", kFloat, p.vertexCount * 12, kArrayBuffer);
                document["accessors"][position]["min"] = described(p.min);
                document["accessors"][position]["max"] = described(p.max);
                const size_t normal = addAccessor(p.vertexCount, "VEC3", kFloat, p.vertexCount * 12, kArrayBuffer);
                const size_t coordinate = addAccessor(p.vertexCount, "VEC2", kFloat, p.vertexCount * 8, kArrayBuffer);
                const int indexType = p.hasShortIndices() ? kUnsignedShort : kUnsignedInt;
                const size_t index = addAccessor(p.indexCount, "SCALAR", indexType,
                                                 p.indexCount * (p.hasShortIndices() ? 2 : 4), kElementArrayBuffer);
                primitives.push_back(
                    {{"attributes", {{"POSITION", position}, {"NORMAL", normal}, {"TEXCOORD_0", coordinate}}},
                     {"indices", index},
                     {"material", p.material}});
            }
            document["meshes"].push_back({{"name", mesh.name}, {"primitives", std::move(primitives)}});
        }
        return fitsFormat(bufferSize);
    }

    // Lengths in binary files have 32 bits.
    bool fitsFormat(uint64_t bytes)
    {
        if (bytes < std::numeric_limits<uint32_t>::max()) return true;
        messages->error(options->path + ": the plant takes more than the 4 GB that a glTF file can hold; write its " +
                        "foliage as nodes (--instances nodes), or take a lower subdivision level");
        return false;
    }

    Json textureInfo(size_t image) const { return {{"index", image}}; } // textures and images pair up one to one

    void describeMaterials()
    {
        for (const SceneMaterial& material : scene->materials) {
            const GltfBaseTexture base = images.addBaseTexture(material);
            const vdt::Color3f& c = material.color;
            Json surface = {
                {"baseColorFactor", {AsWritten(lineared(c.r)), AsWritten(lineared(c.g)), AsWritten(lineared(c.b)), 1}}};
            if (base.hasColor) surface["baseColorFactor"] = {1, 1, 1, 1};
            if (base.image) surface["baseColorTexture"] = textureInfo(*base.image);
            surface["metallicFactor"] = 0;
            surface["roughnessFactor"] = AsWritten(material.roughness);

            Json described = {{"name", material.name}, {"pbrMetallicRoughness", std::move(surface)}};
            if (const auto normal = images.add(material.normalTexture))
                described["normalTexture"] = textureInfo(*normal);
            if (base.cutOut) {
                described["alphaMode"] = "MASK";
                described["alphaCutoff"] = kAlphaCutoff;
            }
            if (material.twoSided) described["doubleSided"] = true;
            described["extras"] = {{"matid", material.matid}};
            document["materials"].push_back(std::move(described));
        }
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

    // There may be a node a leaf, so they are written as text at once.
    std::string nodesText() const
    {
        const Json extras = {{"variant", scene->variant}, {"season", scene->season}};
        std::string roots;
        std::string nodes;
        uint64_t next = 1;
        for (size_t m = 0; m < meshes.size(); ++m) {
            const GltfMesh& mesh = meshes[m];
            std::string meshReference = "\"mesh\":";
            meshReference += std::to_string(m);
            if (!roots.empty()) roots += ',';
            roots += std::to_string(next++);
            nodes += ",{\"name\":" + jsonText(mesh.name);
            if (mesh.nodes.empty()) {
                nodes += "," + meshReference + "}";
                continue;
            }

            nodes += ",\"children\":[";
            for (size_t i = 0; i < mesh.nodes.size(); ++i) {
                if (i > 0) nodes += ',';
                nodes += std::to_string(next++);
            }
            nodes += "]}";
            for (const Placement& copy : mesh.nodes) {
                const vdt::Quaternion& q = copy.rotation;
                nodes += ",{" + meshReference + ",\"translation\":";
                appendNumbers(nodes, {copy.translation.x, copy.translation.y, copy.translation.z});
                nodes += ",\"rotation\":";
                appendNumbers(nodes, {-q.x, -q.y, -q.z, q.w}); // column vectors turn the other way
                nodes += ",\"scale\":";
                appendNumbers(nodes, {copy.scale, copy.scale, copy.scale});
                nodes += '}';
            }
        }
        std::string text = "[{\"name\":";
        text +=
            jsonText(scene->name) + ",\"children\":[" + roots + "],\"extras\":" + jsonText(extras) + "}" + nodes + "]";
        return text;
    }

    std::string documentText() const
    {
        std::string text = jsonText(document);
        text.pop_back();
        return text + ",\"nodes\":" + nodesText() + "}";
    }

    void writeBuffer(OutputFile& file)
    {
        uint64_t done = 0;
        for (const GltfMesh& mesh : meshes) {
            for (const Primitive& primitive : mesh.primitives) {
                if (messages->isCancelled()) return;
                writePrimitive(file, primitive);
                done += primitive.vertexCount * 32 + primitive.indexBytes();
                messages->progress(static_cast<float>(done) / static_cast<float>(bufferSize));
            }
        }
        for (const GltfImage& image : images.images) {
            file.writeAll(image.bytes);
            file.align();
        }
    }

    void writePrimitive(OutputFile& file, const Primitive& primitive)
    {
        vdt::Array<Float3> placed;
        const auto writePlaced = [&](const vdt::Array<Float3>& values, auto place) {
            placed.resize(values.size());
            std::ranges::transform(values, placed.begin(), place);
            file.writeAll(placed);
        };
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            writePlaced(triangles.positions, [&](const Float3& p) { return placer.point(p); });
        });
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            writePlaced(triangles.normals, [&](const Float3& n) { return placer.normal(n); });
        });
        vdt::Array<vdt::Vector2f> flipped;
        for (const Piece& piece : primitive.pieces) {
            flipped = piece.triangles.coordinates;
            for (vdt::Vector2f& coordinate : flipped) coordinate.v = 1 - coordinate.v; // v runs down in glTF
            for (size_t i = 0; i < piece.copies.size(); ++i) file.writeAll(flipped);
        }
        if (primitive.hasShortIndices())
            writeIndices<uint16_t>(file, primitive);
        else
            writeIndices<uint32_t>(file, primitive);
        file.align();
    }

    template <class Index> void writeIndices(OutputFile& file, const Primitive& primitive)
    {
        vdt::Array<Index> indices;
        uint64_t base = 0;
        forEachCopy(primitive, [&](const TriangleMesh& triangles, const Placer& placer) {
            indices.resize(triangles.indices.size());
            for (size_t i = 0; i < indices.size(); ++i) indices[i] = static_cast<Index>(base + triangles.indices[i]);
            if (placer.mirrors())
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
    std::vector<GltfMesh> meshes;
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
