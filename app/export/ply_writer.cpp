// PLY, binary, little-endian: all copies in one list of vertices and one of polygons. Each polygon carries its
// material's id and colour, because the format knows no materials.
#include "export/export_scene.h"
#include "export/triangles.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace verdanth {
namespace {

struct PlyVertex {
    Float3 position;
    Float3 normal;
    float s, t;
};

class PlyWriter {
public:
    PlyWriter(const Scene& source, const ExportOptions& exportOptions, OutputFiles& outputFiles,
              vdt::MessageHandler& handler)
        : scene(&source),
          options(&exportOptions),
          files(&outputFiles),
          messages(&handler)
    {
        objects.push_back(&source.finest().body);
        for (const SceneObject& object : source.finest().foliage) objects.push_back(&object);
    }

    bool write(ExportSummary& summary)
    {
        if (scene->levels.size() > 1) {
            messages->error(options->path + ": a PLY file holds one level of detail; put {lod} into the name");
            return false;
        }
        if (!scene->finest().cloud.isEmpty()) return writeCloud(scene->finest().cloud, summary);
        for (const SceneObject* object : objects) {
            summary.vertices += object->mesh.vertices.size() * object->placements.size();
            summary.polygons += object->mesh.polygonEnds.size() * object->placements.size();
        }
        if (summary.vertices > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
            messages->error(options->path + ": the plant has more vertices than a PLY file can number");
            return false;
        }

        OutputFile& file = files->create(options->path);
        writeHeader(file, summary);
        const bool complete =
            forEachCopy([&](const SceneMesh& mesh, const Placer& placer) { writeVertices(file, mesh, placer); }) &&
            forEachCopy([&](const SceneMesh& mesh, const Placer& placer) { writePolygons(file, mesh, placer); });
        return complete || messages->isCancelled();
    }

private:
    template <class Visit> bool forEachCopy(Visit visit)
    {
        for (const SceneObject* object : objects) {
            if (object->mesh.polygonEnds.empty()) continue;
            for (const Placement& placement : object->placements) {
                if (messages->isCancelled()) return false;
                visit(object->mesh, Placer(placement));
            }
        }
        return true;
    }

    // Up to the properties that a point of a cloud and a corner of a polygon share.
    std::string headerStart(uint64_t vertexCount) const
    {
        std::string name = scene->name;
        std::replace_if(
            name.begin(), name.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
        return "ply\nformat binary_little_endian 1.0\ncomment " + name + ", in metres, Y up\nelement vertex " +
               std::to_string(vertexCount) +
               "\nproperty float x\nproperty float y\nproperty float z\n"
               "property float nx\nproperty float ny\nproperty float nz\n";
    }

    bool writeCloud(const SceneCloud& cloud, ExportSummary& summary)
    {
        summary.points = cloud.positions.size();
        OutputFile& file = files->create(options->path);
        file.text(headerStart(summary.points) +
                  "property uchar red\nproperty uchar green\nproperty uchar blue\nend_header\n");
        for (size_t i = 0; i < cloud.positions.size(); ++i) {
            file.write(&cloud.positions[i], sizeof cloud.positions[i]);
            file.write(&cloud.normals[i], sizeof cloud.normals[i]);
            record.clear();
            appendColor(cloud.colors[i]);
            file.text(record);
        }
        return true;
    }

    void writeHeader(OutputFile& file, const ExportSummary& summary)
    {
        file.text(headerStart(summary.vertices) +
                  "property float s\nproperty float t\n"
                  "element face " +
                  std::to_string(summary.polygons) +
                  "\nproperty list uchar int vertex_indices\n"
                  "property int material_id\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
                  "end_header\n");
    }

    void writeVertices(OutputFile& file, const SceneMesh& mesh, const Placer& placer)
    {
        vertices.resize(mesh.vertices.size());
        std::ranges::transform(mesh.vertices, vertices.begin(), [&](const SceneVertex& v) {
            return PlyVertex{placer.point(mesh.points[v.point]), placer.normal(mesh.normals[v.point]), v.coordinate.u,
                             v.coordinate.v};
        });
        file.writeAll(vertices);
    }

    void writePolygons(OutputFile& file, const SceneMesh& mesh, const Placer& placer)
    {
        for (size_t polygon = 0; polygon < mesh.polygonEnds.size(); ++polygon) {
            const uint32_t start = mesh.polygonStart(polygon);
            // The format counts corners in one byte. No plant has such a polygon, but a file might.
            const uint32_t count = std::min<uint32_t>(mesh.polygonEnds[polygon] - start, 255);
            record.clear();
            record += static_cast<char>(count);
            for (uint32_t i = 0; i < count; ++i)
                append(static_cast<int32_t>(vertexBase + mesh.corners[start + (placer.mirrors() ? count - 1 - i : i)]));
            const SceneMaterial& material = scene->materials[mesh.polygonMaterials[polygon]];
            append(material.matid);
            appendColor(material.color);
            file.text(record);
        }
        vertexBase += mesh.vertices.size();
    }

    void appendColor(const vdt::Color3f& color)
    {
        for (const float channel : {color.r, color.g, color.b})
            record += static_cast<char>(static_cast<int>(channel * 255 + 0.5F));
    }

    void append(int32_t number)
    {
        char bytes[sizeof number];
        std::memcpy(bytes, &number, sizeof number);
        record.append(bytes, sizeof bytes);
    }

    const Scene* scene;
    const ExportOptions* options;
    OutputFiles* files;
    vdt::MessageHandler* messages;
    std::vector<const SceneObject*> objects;
    vdt::Array<PlyVertex> vertices;
    std::string record;
    uint64_t vertexBase = 0;
};

} // namespace

bool WritePly(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
              vdt::MessageHandler& messages)
{
    return PlyWriter(scene, options, files, messages).write(summary);
}

} // namespace verdanth
