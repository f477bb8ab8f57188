// Branches drawn in a modelling program, from Houdini's text geometry.
#pragma once

#include "convert/plant_draft.h"
#include "vdt/messages/message_handler.h"

#include <optional>
#include <string>

namespace verdanth {

/// Each polyline or polygon of two points or more becomes a branch. None, with the error told, if the file at `path`
/// is not of the format or cut.
std::optional<PlantDraft> ReadGeo(const std::string& path, vdt::MessageHandler& messages);

} // namespace verdanth
