// From a loaded variant to a scene.
#pragma once

#include "export/scene.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model.h"
#include "vdt/skeleton/reduce.h"

#include <string>
#include <vector>

namespace verdanth {

/// What stands for the plant.
enum class PlantForm {
    Full,  // branches and foliage
    Proxy, // the stored stand-in; without one, the hull of the crown and the branches on the way there
    Box,   // the plant's bound
    Cloud, // points scattered over its surface
    Blob,  // a smooth skin around the crown
};

/// How much of the full plant is built.
struct PlantDetail {
    int32_t subdivisionLevel = 1;
    vdt::ReductionParameters reduction{};

    friend bool operator==(const PlantDetail&, const PlantDetail&) = default;
};

struct SceneRequest {
    const vdt::Model& model;
    const vdt::ModelVariant& variant; // with its geometry
    std::string season{};
    PlantForm form = PlantForm::Full;
    bool uniform = false;                 // round all branches alike
    std::vector<PlantDetail> details{{}}; // one a level of the scene, for the full plant; other forms have one level
    uint64_t cloudPoints = 100000;
    MaterialQuality quality = MaterialQuality::High;
};

/// Names the scene after the plant. Every builder of one begins with this.
void NameScene(const SceneRequest& request, Scene& scene);

/// What every builder ends with: false, with the error told, if a level of the scene has nothing to show. `dropped`
/// polygons are told as left out.
bool FinishScene(const Scene& scene, uint64_t dropped, vdt::MessageHandler& messages);

/// Builds the plant. What cannot be taken over - a texture without content, a material id without material, numbers
/// that are not finite - is told and left out. False, with the error told, if nothing is left to show, and on
/// cancelling.
bool BuildScene(const SceneRequest& request, Scene& scene, vdt::MessageHandler& messages);

} // namespace verdanth
