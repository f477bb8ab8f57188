// Wavefront OBJ with its material library. Polygons stay as they are; all copies are written out.
#include "export/export_scene.h"
#include "export/line_buffer.h"
#include "export/texture_files.h"
#include "export/triangles.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace verdanth {
namespace {

// Names end at a blank in these files.
std::string oneWord(const std::string& name)
{
    std::string word = name;
    std::replace_if(
        word.begin(), word.end(), [](unsigned char c) { return c <= ' ' || c == '#' || c == 0x7F; }, '_');
    return word;
}

std::string oneLine(const std::string& text)
{
    std::string line = text;
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    return line;
}

class ObjWriter {
public:
    ObjWriter(const Scene& source, const ExportOptions& exportOptions, OutputFiles& outputFiles,
              vdt::MessageHandler& handler)
        : scene(&source),
          options(&exportOptions),
          files(&outputFiles),
          messages(&handler),
          textureFiles(exportOptions.path, source.materials, outputFiles)
    {
        std::set<std::string> used;
        for (const SceneMaterial& material : source.materials) {
            std::string word = oneWord(material.name);
            while (!used.insert(word).second) word.append("_").append(std::to_string(material.matid));
            materialNames.push_back(std::move(word));
        }
    }

    void write(ExportSummary& summary)
    {
        placeTextures();
        const std::filesystem::path library = std::filesystem::path(options->path).replace_extension(".mtl");
        writeMaterials(files->create(library.string()));

        OutputFile& file = files->create(options->path);
        file.text("# " + oneLine(scene->name) + ", in metres, Y up\nmtllib " + oneLine(library.filename().string()) +
                  "\n");
        uint64_t copiesLeft = 0;
        for (const SceneLevel& level : scene->levels) copiesLeft += copiesOf(level);
        const uint64_t allCopies = copiesLeft;

        for (size_t level = 0; level < scene->levels.size(); ++level) {
            const std::string suffix = LevelSuffix(*scene, level);
            const auto writeAll = [&](const SceneObject& object) {
                if (object.mesh.polygonEnds.empty()) return;
                beginObject(file, object.mesh, suffix);
                for (const Placement& placement : object.placements) {
                    if (messages->isCancelled()) return;
                    writeCopy(file, object.mesh, placement);
                    summary.vertices += object.mesh.points.size();
                    summary.polygons += object.mesh.polygonEnds.size();
                    if (--copiesLeft % 64 == 0)
                        messages->progress(1 - static_cast<float>(copiesLeft) / static_cast<float>(allCopies));
                }
            };
            writeAll(scene->levels[level].body);
            std::ranges::for_each(scene->levels[level].foliage, writeAll);
        }
    }

private:
    static uint64_t copiesOf(const SceneLevel& level)
    {
        uint64_t copies = level.body.placements.size();
        for (const SceneObject& object : level.foliage) copies += object.placements.size();
        return copies;
    }

    // Texture coordinates are the same for all copies: they are written once.
    void beginObject(OutputFile& file, const SceneMesh& mesh, const std::string& suffix)
    {
        file.text("o " + oneLine(mesh.name) + suffix + "\n");
        coordinateBase = coordinateCount + 1;
        coordinateCount += mesh.vertices.size();
        for (const SceneVertex& vertex : mesh.vertices) {
            LineBuffer line;
            line.add('v').add('t').add(' ').add(vertex.coordinate.u).add(' ').add(vertex.coordinate.v).add('\n');
            file.text(line.text());
        }

        polygonOrder.resize(mesh.polygonEnds.size());
        for (size_t i = 0; i < polygonOrder.size(); ++i) polygonOrder[i] = static_cast<uint32_t>(i);
        std::ranges::stable_sort(polygonOrder, {}, [&](uint32_t polygon) { return mesh.polygonMaterials[polygon]; });
        finitePoints.assign(mesh.points.size(), false);
        for (const SceneVertex& vertex : mesh.vertices) finitePoints[vertex.point] = true;
    }

    void writeCopy(OutputFile& file, const SceneMesh& mesh, const Placement& placement)
    {
        const Placer placer(placement);
        for (size_t i = 0; i < mesh.points.size(); ++i) {
            // A point that no polygon uses may stand anywhere, also where no number is.
            writeTriple(file, "v", finitePoints[i] ? placer.point(mesh.points[i]) : Float3{0, 0, 0});
        }
        for (const Float3& normal : mesh.normals) writeTriple(file, "vn", placer.normal(normal));

        uint32_t material = ~uint32_t{0};
        for (const uint32_t polygon : polygonOrder) {
            if (mesh.polygonMaterials[polygon] != material) {
                material = mesh.polygonMaterials[polygon];
                file.text("usemtl " + materialNames[material] + "\n");
            }
            writePolygon(file, mesh, polygon, placer.mirrors());
        }
        pointBase += mesh.points.size();
    }

    static void writeTriple(OutputFile& file, std::string_view keyword, const Float3& value)
    {
        LineBuffer line;
        for (const char c : keyword) line.add(c);
        line.add(' ').add(value.x).add(' ').add(value.y).add(' ').add(value.z).add('\n');
        file.text(line.text());
    }

    void writePolygon(OutputFile& file, const SceneMesh& mesh, uint32_t polygon, bool backwards)
    {
        const uint32_t start = mesh.polygonStart(polygon);
        const uint32_t count = mesh.polygonEnds[polygon] - start;
        file.text("f");
        for (uint32_t i = 0; i < count; ++i) {
            const uint32_t vertex = mesh.corners[start + (backwards ? count - 1 - i : i)];
            const uint64_t point = pointBase + mesh.vertices[vertex].point;
            LineBuffer corner;
            corner.add(' ').add(point).add('/').add(coordinateBase + vertex).add('/').add(point);
            file.text(corner.text());
        }
        file.text("\n");
    }

    void writeMaterials(OutputFile& file)
    {
        file.text("# Colours are sRGB. Pr is the roughness of physically based shading.\n");
        for (size_t i = 0; i < scene->materials.size(); ++i) {
            const SceneMaterial& material = scene->materials[i];
            const std::string color = placedTexture(material.colorTexture);
            file.text("\nnewmtl " + materialNames[i] + "\n");
            writeColor(file, "Kd", color.empty() ? material.color : vdt::Color3f{1, 1, 1});
            const std::string highlight = placedTexture(material.specularTexture);
            writeColor(file, "Ks", highlight.empty() ? material.specularColor : vdt::Color3f{1, 1, 1});
            file.text("Ns ");
            file.number(shininess(material.roughness));
            file.text("\nPr ");
            file.number(material.roughness);
            file.text("\nd 1\nillum 2\n");
            writeMap(file, "map_Kd", color);
            writeMap(file, "map_d", placedTexture(material.alphaTexture));
            writeMap(file, "map_Ks", highlight);
            writeMap(file, "norm", placedTexture(material.normalTexture));
            const std::string bump = placedTexture(material.bumpTexture);
            LineBuffer strength;
            strength.add(material.bumpStrength);
            writeMap(file, "map_Bump -bm " + std::string(strength.text()), bump);
        }
    }

    // The exponent of the highlight whose width fits the roughness.
    static float shininess(float roughness)
    {
        constexpr float kMost = 1000;
        const float alpha = roughness * roughness;
        return alpha * alpha > 2 / kMost ? std::max(2 / (alpha * alpha) - 2, 0.0F) : kMost;
    }

    static void writeColor(OutputFile& file, std::string_view keyword, const vdt::Color3f& color)
    {
        writeTriple(file, keyword, {color.r, color.g, color.b});
    }

    static void writeMap(OutputFile& file, const std::string& keyword, const std::string& path)
    {
        if (!path.empty()) file.text(keyword + " " + oneLine(path) + "\n");
    }

    // Before the files that name them.
    void placeTextures()
    {
        std::string problem; // told when the texture is named
        for (const SceneMaterial& material : scene->materials) {
            for (const std::string& texture : material.SceneSide::textures())
                if (!texture.empty()) textureFiles.place(texture, problem);
            if (!material.alphaTexture.empty()) textureFiles.place(material.alphaTexture, problem);
        }
    }

    std::string placedTexture(const std::string& texture)
    {
        if (texture.empty()) return {};
        std::string problem;
        std::string path = textureFiles.place(texture, problem);
        if (!problem.empty()) messages->warning("texture " + texture + " " + problem + "; it is left out");
        return path;
    }

    const Scene* scene;
    const ExportOptions* options;
    OutputFiles* files;
    vdt::MessageHandler* messages;
    TextureFiles textureFiles;
    std::vector<std::string> materialNames;
    std::vector<uint32_t> polygonOrder;
    std::vector<bool> finitePoints;
    uint64_t pointBase = 1; // of the copy being written: indices count from 1
    uint64_t coordinateBase = 1;
    uint64_t coordinateCount = 0;
};

} // namespace

bool WriteObj(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
              vdt::MessageHandler& messages)
{
    if (!scene.finest().cloud.isEmpty()) {
        messages.error(options.path + ": OBJ knows no points with normals; .glb, .gltf and .ply do");
        return false;
    }
    ObjWriter(scene, options, files, messages).write(summary);
    return true;
}

} // namespace verdanth
