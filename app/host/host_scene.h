// Scenes that are read back from what the module built in the host.
#pragma once

#include "export/scene_builder.h"
#include "host/host_session.h"
#include "host/plant_object.h"

#include <memory>

namespace verdanth {

class Console;

/// The settings that make a plant object build the request's first level of detail.
PlantSettings SettingsOf(const SceneRequest& request, const std::string& file);

/// Beyond so many polygons of foliage a plant is not made one mesh: the host would take gigabytes for it.
constexpr uint64_t kMostObjectPolygons = 20'000'000;

/// The plant of a request as an object in a document of its own, in the model's unit.
class PlantInHost {
public:
    /// False, with the error told, if the module cannot be used. `request` is needed for this call alone.
    bool start(const SceneRequest& request, const std::string& file, const std::string& libraryFolder,
               Console& console);
    /// What the object becomes with this detail, valid until the next call. Null for nothing.
    PolygonObject* build(const PlantDetail& detail);

private:
    HostSession session;
    std::unique_ptr<OwnDocument> document;
    PlantSettings settings;
    BaseObject* plant = nullptr;
};

/// True if a plant object makes this form, as one mesh: the full plant, its proxy and its box.
bool IsBuiltByModule(const SceneRequest& request);

/// How many polygons the foliage of the full plant has, all copies counted.
uint64_t CountFoliagePolygons(const SceneRequest& request);

/// Builds each level of the request as a plant object in a document of its own, with the variant's parameters set by
/// their ids, and reads the meshes back. All of a level stands in its body. `libraryFolder` is where the module may
/// find files that have moved. False, with the error told, as BuildScene, and where the module cannot be used.
bool BuildSceneInHost(const SceneRequest& request, const std::string& file, const std::string& libraryFolder,
                      Scene& scene, Console& console);

} // namespace verdanth
