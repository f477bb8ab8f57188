#include "export/export_scene.h"

#include "lookup/species.h"

#include <filesystem>

namespace verdanth {
namespace {

using Writer = bool (*)(const Scene&, const ExportOptions&, OutputFiles&, ExportSummary&, vdt::MessageHandler&);

Writer writerFor(const std::string& path)
{
    const std::string suffix = FoldName(std::filesystem::path(path).extension().string());
    if (suffix == ".glb" || suffix == ".gltf") return WriteGltf;
    if (suffix == ".obj") return WriteObj;
    if (suffix == ".ply") return WritePly;
    return nullptr;
}

void tellOfBacks(const Scene& scene, const ExportOptions& options, vdt::MessageHandler& messages)
{
    if (options.backs == BackForm::Own && IsGltfPath(options.path)) return;
    for (const SceneMaterial& material : scene.materials)
        if (material.back) messages.message("material \"" + material.name + "\": its back is shown like its front");
}

} // namespace

bool IsExportPath(const std::string& path)
{
    return writerFor(path) != nullptr;
}

bool IsGltfPath(const std::string& path)
{
    return writerFor(path) == WriteGltf;
}

bool ExportScene(const Scene& scene, const ExportOptions& options, ExportSummary& summary,
                 vdt::MessageHandler& messages)
{
    const Writer write = writerFor(options.path);
    if (!write) {
        messages.error(options.path + ": the suffix names no format; .glb, .gltf, .obj and .ply do");
        return false;
    }

    tellOfBacks(scene, options, messages);
    OutputFiles files;
    messages.beginProgress("writing");
    const bool written = write(scene, options, files, summary, messages);
    messages.endProgress();
    if (!written || messages.isCancelled()) return false;

    summary.bytes = files.size();
    std::string problem;
    if (files.commit(problem)) return true;
    messages.error(problem);
    return false;
}

} // namespace verdanth
