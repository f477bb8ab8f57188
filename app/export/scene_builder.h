// From a loaded variant to a scene.
#pragma once

#include "export/scene.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model.h"
#include "vdt/skeleton/reduce.h"

#include <string>

namespace verdanth {

struct SceneRequest {
    const vdt::Model& model;
    const vdt::ModelVariant& variant; // with its geometry
    std::string season;
    int32_t subdivisionLevel = 1;
    bool uniform = false;
    vdt::ReductionParameters reduction{};
};

/// Builds the plant. What cannot be taken over - a texture without content, a material id without material, numbers
/// that are not finite - is told and left out. False, with the error told, if nothing is left to show, and on
/// cancelling.
bool BuildScene(const SceneRequest& request, Scene& scene, vdt::MessageHandler& messages);

} // namespace verdanth
