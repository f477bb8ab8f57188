// Materials that the module makes for a renderer, as whoever places a plant by hand gets them.
#pragma once

#include "c4d.h"
#include "vdt/materials/material_converter.h"
#include "vdt/model/model.h"

#include <string>
#include <string_view>

namespace verdanth {

class Console;

/// By the number that the module knows them by. The first is the scene's own, whichever that is.
constexpr std::string_view kRendererNames[] = {"auto", "standard", "vray",   "mia",     "corona",
                                               "thea", "arnold",   "octane", "maxwell", "iray"};
constexpr int32_t kSceneRenderer = 0;

/// Which materials a plant is to have.
struct MaterialChoice {
    int32_t renderer = kSceneRenderer;
    int32_t quality = vdt::kQualityHigh;
    std::string layer = {}; // by name, made if there is none; empty for none
};

/// Gives a plant of the document materials of the model's, each with a texture tag. Materials that the document has
/// already are used again. The plant stays as it is otherwise. Has the document use a renderer that is named. False,
/// with the error told, if the module makes none.
bool AddRendererMaterials(BaseDocument& document, BaseObject& plant, const std::string& file, const vdt::Model& model,
                          const MaterialChoice& choice, Console& console);

} // namespace verdanth
