// A complete model of a plant that a foreign file knows as bare branches: materials, leaves, frames and a bound.
#pragma once

#include "convert/plant_draft.h"
#include "vdt/messages/message_handler.h"
#include "vdt/model/model.h"

#include <string>

namespace verdanth {

struct ModelOptions {
    std::string name;   // botanical
    std::string source; // the file that the branches came from
    int32_t woodMatid = 0;
    int32_t leafMatid = 1;
    bool leaves = true;
    double leafSize = 0; // centimetres; 0: a hundredth of the plant's largest extent
};

/// The model, in centimetres and y up, with one adult variant. The draft is a tree whose positions and radii are in
/// those terms.
vdt::Model BuildModel(const PlantDraft& tree, const ModelOptions& options, vdt::MessageHandler& messages);

} // namespace verdanth
