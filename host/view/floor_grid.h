// The lines on the floor by which one sees where up is and how large things are.
#pragma once

#include "view/projection.h"

namespace host {

/// Lines through the world's floor around and below what is shown, a round number of units apart, fading outwards; the
/// world's axes are coloured. Nothing where the floor is seen edge on.
void DrawFloorGrid(const ViewFrame& frame, const Extent& shown, DrawList& list);

} // namespace host
