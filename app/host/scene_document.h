// Documents of the host with several plants: what stands in them, and the scene that they make.
#pragma once

#include "c4d.h"
#include "export/scene.h"

#include <string>
#include <vector>

namespace verdanth {

class Console;

/// One object of a document.
struct SceneItem {
    std::string name;
    int depth = 0; // 0 at the top level
    bool plant = false;
    std::string file; // of a plant, as its object names it
    std::string variant;
    std::string season;
    std::string statistics;         // what the object tells of its last build
    vdt::Vector3 position{0, 0, 0}; // metres, right-handed
    uint64_t points = 0;            // of the mesh that the host holds
    uint64_t polygons = 0;
};

/// How many metres a unit of the document is.
double MetersPerDocumentUnit(BaseDocument& document);

uint64_t CountMaterials(BaseDocument& document);

/// All objects, parents first, of a document that has been evaluated.
std::vector<SceneItem> DescribeDocument(BaseDocument& document);

/// Everything that the host built, in metres, with the looks of the models. Plants that are equal but for their place
/// share one mesh. False, with the error told, if there is nothing to show. `libraryFolder` is where model files that
/// have moved may be.
bool ReadDocument(BaseDocument& document, const std::string& libraryFolder, MaterialQuality quality, Scene& scene,
                  Console& console);

} // namespace verdanth
