// Branches from the cylinders that were fitted to a scanned tree.
#pragma once

#include "convert/plant_draft.h"
#include "vdt/messages/message_handler.h"

#include <optional>
#include <string>

namespace verdanth {

/// The largest tree of the table in the file at `path`, moved so that its foot is at the origin. A chain of cylinders
/// becomes a branch; others begin on it where the cylinder that they grow from ends. Rows that cannot be used are told
/// and left out. None, with the error told, if nothing remains.
std::optional<PlantDraft> ReadCylinderTree(const std::string& path, vdt::MessageHandler& messages);

} // namespace verdanth
