// Draws the plants that views show as point clouds: branches as ribbons that face the camera, foliage as points, both
// thinned out by the pixels that they cover.
#pragma once

#include "c4d.h"

class PlantDrawSceneHook : public SceneHookData {
public:
    static NodeData* Alloc();

    Bool Draw(BaseSceneHook* node, BaseDocument* document, BaseDraw* view, BaseDrawHelp* help, BaseThread* thread,
              SCENEHOOKDRAW flags) override;
};

/// Draws `plant` with its space at `matrix`, as far as `standing` is visible: the plant itself, or an instance of it.
void DrawPlant(const Matrix& matrix, BaseObject& standing, BaseObject& plant, BaseDraw& view);
