// Makes a tree of a draft: what model files want and foreign files do not promise.
#pragma once

#include "convert/plant_draft.h"
#include "vdt/messages/message_handler.h"

namespace verdanth {

/// Afterwards each branch has two vertices or more, its neighbours lie apart and never straight back, the first branch
/// is the trunk, each other one begins on a point that another one goes through, and no point is gone through twice.
/// Points without vertices are gone. What is dropped is told. False, with the error told, if nothing is left.
bool MakeTree(PlantDraft& draft, vdt::MessageHandler& messages);

} // namespace verdanth
