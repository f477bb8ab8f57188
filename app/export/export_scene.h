// Writes a scene to a file of one of the formats that other programs read.
#pragma once

#include "export/scene.h"
#include "files/output_files.h"
#include "vdt/messages/message_handler.h"

#include <cstdint>
#include <string>

namespace verdanth {

/// How copies of foliage stand in a glTF file. Other formats know no copies: they are always merged there.
enum class FoliageForm {
    Merged,    // all copies in one mesh a material
    Nodes,     // each mesh once, with a node a copy
    Instances, // each mesh once, with a list of its places for the graphics card
};

/// What becomes of materials whose backs look other than their fronts. Other formats than glTF know one look alone.
enum class BackForm {
    Shared, // both sides look like the front
    Own,    // surfaces twice, each seen from one side
};

struct ExportOptions {
    std::string path; // its suffix tells the format: .glb .gltf .obj .ply
    FoliageForm foliage = FoliageForm::Merged;
    BackForm backs = BackForm::Shared;
};

/// What was written, counting each copy.
struct ExportSummary {
    uint64_t vertices = 0;
    uint64_t polygons = 0; // triangles in glTF
    uint64_t points = 0;   // of clouds
    uint64_t bytes = 0;    // of all files
};

/// True if the path's suffix names a format that can be written.
bool IsExportPath(const std::string& path);

/// True if the path's format is glTF, which alone can hold copies of one mesh, backs that look other than their fronts,
/// and a material's extras.
bool IsGltfPath(const std::string& path);

/// Writes all files, and moves them into place once they are complete. False, with the error told unless the user
/// cancels, if that fails; nothing has changed then.
bool ExportScene(const Scene& scene, const ExportOptions& options, ExportSummary& summary,
                 vdt::MessageHandler& messages);

/// The writers behind it. Each adds its files to `files`, the main one last. False, with the error told, for a scene
/// that the format cannot hold; on cancelling they give up early.
bool WriteGltf(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
               vdt::MessageHandler& messages);
bool WriteObj(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
              vdt::MessageHandler& messages);
bool WritePly(const Scene& scene, const ExportOptions& options, OutputFiles& files, ExportSummary& summary,
              vdt::MessageHandler& messages);

} // namespace verdanth
