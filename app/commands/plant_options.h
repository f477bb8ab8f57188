// The options by which a command lets its user choose a plant and how much of it is built.
#pragma once

#include "export/scene_builder.h"
#include "host/plant_object.h"
#include "lookup/open_plant.h"

#include <CLI/CLI.hpp>

#include <string>

namespace verdanth {

class Console;

struct PlantOptions {
    std::string plant; // a file or a species
    std::string library;
    std::string variant;
    std::string season;
    PlantForm form = PlantForm::Full;
    uint64_t points = 100000; // of a cloud
    PlantDetail detail;
    bool uniform = false;
};

/// A plant with the variant and season that were asked for. The variant's geometry stays while this lives.
struct RequestedPlant {
    OpenPlant open;
    const vdt::ModelVariant* variant = nullptr;
    std::string season;
};

/// Adds the plant itself and the options that choose it and its parts: those that a plant object keeps.
void AddPlantObjectOptions(CLI::App& command, PlantOptions& options);
/// The same, and what else may stand for the plant.
void AddPlantOptions(CLI::App& command, PlantOptions& options);
/// Adds --display; the proxy is the default.
void AddDisplayOption(CLI::App& command, PlantDisplay& display);

/// Opens the plant and loads the variant. False, with the error told, if that fails or the user cancels.
bool LoadRequestedPlant(const PlantOptions& options, RequestedPlant& plant, Console& console);

/// Loads another variant of an open plant, in the season that `season` means; the one before it goes. False, with the
/// error told, if that fails.
bool LoadVariantOf(RequestedPlant& plant, uint64_t index, const std::string& season, Console& console);

/// Builds the scene: through the module where a plant object can make it as one mesh of sensible size, else from the
/// library itself.
/// `copies` asks for foliage as copies of its meshes, which no object has. False, with the error told, on failure.
bool BuildRequestedScene(const RequestedPlant& plant, const PlantOptions& options, const SceneRequest& request,
                         bool copies, Scene& scene, Console& console);

/// What to build of the loaded plant; valid while `plant` is.
SceneRequest SceneRequestOf(const RequestedPlant& plant, const PlantOptions& options);

} // namespace verdanth
