// The record behind BaseDraw: a view of a document, with its camera, its frame and what a redraw records.
#pragma once

#include "c4d_basedraw.h"
#include "core/object.h"
#include "view/draw_recorder.h"
#include "view/projection.h"

#include <memory>

namespace host {

/// What is shown beside the scene.
struct ViewOptions {
    bool grid = true;   // on the floor
    bool boxes = true;  // around objects without polygons, and around active ones
    bool meshes = true; // polygons of the host's objects
};

struct ViewCore : NodeCore {
    explicit ViewCore(const NodeClass& nodeClass);
    ~ViewCore() override;

    bool CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const override;

    /// Of the frame, in pixels.
    void setSize(Int32 newWidth, Int32 newHeight);
    /// Pperspective, Pparallel or an axis view. Those look along their axis, the others where the camera does.
    void setProjection(Int32 newProjection);
    Int32 projection() const;
    /// The camera that is looked through: the one of the scene that was chosen, else the editor's.
    BaseObject* camera() const;
    BaseObject* editorCamera() const { return ownCamera->As<BaseObject>(); }
    /// The chosen one, if it stands in `document`; else null.
    BaseObject* sceneCamera(const BaseDocument* document) const;
    void setSceneCamera(BaseObject* object);

    /// As it is now; during a redraw as it was at its beginning.
    ViewFrame frame() const;

    /// The frame with the camera turned to `axes`; axis views keep their direction.
    ViewFrame frameAlong(const Matrix& axes) const;
    /// Takes a frame's camera for the editor's own, which is looked through from now on.
    void look(const ViewFrame& seen);

    /// For callbacks that draw into this view.
    BaseDrawHelp drawHelp(BaseDocument& document) const;

    ViewOptions options;
    DrawRecorder recorder;

private:
    std::unique_ptr<ObjectCore> ownCamera;
    Marker chosen = 0;
    Int32 width = 800, height = 600;
    Float parallelPixels = 1; // that a unit covers
};

inline ViewCore* CoreOf(const BaseView* view)
{
    return static_cast<ViewCore*>(NodeCore::Of(view));
}

} // namespace host
