// Materials that the module makes for a renderer, as whoever places a plant by hand gets them.
#pragma once

#include "c4d.h"
#include "export/scene.h"
#include "vdt/model/model.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace verdanth {

class Console;

/// By the number that the module knows them by. The first is the scene's own, whichever that is.
constexpr std::string_view kRendererNames[] = {"auto", "standard", "vray",   "mia",     "corona",
                                               "thea", "arnold",   "octane", "maxwell", "iray"};
constexpr int32_t kSceneRenderer = 0;
constexpr int32_t kStandardRenderer = 1; // what a scene has of which nothing else is said

/// Which materials a plant is to have.
struct MaterialChoice {
    int32_t renderer = kSceneRenderer;
    MaterialQuality quality = MaterialQuality::High;
    std::string layer = {}; // by name, made if there is none; empty for none
};

/// Gives a plant of the document materials of the model's, each with a texture tag. Materials that the document has
/// already are used again. The plant stays as it is otherwise. Has the document use a renderer that is named. False,
/// with the error told, if the module makes none.
bool AddRendererMaterials(BaseDocument& document, BaseObject& plant, const std::string& file, const vdt::Model& model,
                          const MaterialChoice& choice, Console& console);

/// What a renderer is told of the model's materials, by a plant in a document of its own: {"renderer", "materials"},
/// the latter as DescribeMaterials has them. Null, with the error told, if the module makes none.
nlohmann::ordered_json TellRenderer(const std::string& file, const vdt::Model& model, const MaterialChoice& choice,
                                    Console& console);

/// Leaves in each material of the scene, which shows the model, {"name", "materials"} of the renderer as JSON: of what
/// TellRenderer gives the materials that are for it.
/// `libraryFolder` is where the module may find files that have moved. False, with the error told, on failure.
bool AddRendererExtras(const std::string& file, const std::string& libraryFolder, const vdt::Model& model,
                       const MaterialChoice& choice, Scene& scene, Console& console);

} // namespace verdanth
