#include "view/view.h"

#include "core/document.h"
#include "core/node_class.h"

#include <algorithm>

namespace host {
namespace {

constexpr Float kFocalLength = 36, kAperture = 36; // millimetres

std::unique_ptr<ObjectCore> newCamera()
{
    const NodeClass* camera = Registrations::Current()->FindClass(NodeKind::Object, Ocamera);
    return std::make_unique<ObjectCore>(*camera);
}

// Behind the front of a scene a little aside and above, where a scene of some metres is in sight.
Matrix usualCamera()
{
    Matrix camera = CameraAxes(0.6, 0.4);
    camera.off = camera.v3 * -1000.0;
    return camera;
}

} // namespace

ViewCore::ViewCore(const NodeClass& nodeClassOfView) : NodeCore(nodeClassOfView), ownCamera(newCamera())
{
    MakeFacade<BaseDraw>();
    ownCamera->SetLocal(usualCamera());
}

ViewCore::~ViewCore() = default;

bool ViewCore::CopyBodyTo(NodeCore& copy, COPYFLAGS flags, AliasTrans* translation) const
{
    if (!NodeCore::CopyBodyTo(copy, flags, translation)) return false;
    auto& other = static_cast<ViewCore&>(copy);
    other.ownCamera->SetLocal(ownCamera->Local());
    other.chosen = 0; // a camera of another document
    other.width = width;
    other.height = height;
    other.parallelPixels = parallelPixels;
    other.options = options;
    return true;
}

void ViewCore::setSize(Int32 newWidth, Int32 newHeight)
{
    width = std::max(newWidth, 1);
    height = std::max(newHeight, 1);
}

void ViewCore::setProjection(Int32 newProjection)
{
    container.SetInt32(kViewProjection, newProjection);
}

Int32 ViewCore::projection() const
{
    return container.GetInt32(kViewProjection, Pperspective);
}

BaseObject* ViewCore::sceneCamera(const BaseDocument* document) const
{
    NodeCore* found = chosen ? FindNode(chosen) : nullptr;
    return found && found->Document() == CoreOf(document) ? found->As<BaseObject>() : nullptr;
}

BaseObject* ViewCore::camera() const
{
    DocumentCore* document = Document();
    BaseObject* scene = document ? sceneCamera(document->As<BaseDocument>()) : nullptr;
    return scene ? scene : editorCamera();
}

void ViewCore::setSceneCamera(BaseObject* object)
{
    chosen = object ? CoreOf(object)->GetMarker() : 0;
}

ViewFrame ViewCore::frame() const
{
    if (recorder.recorded()) return recorder.recorded()->frame;
    ViewFrame seen;
    seen.width = width;
    seen.height = height;
    seen.perspective = projection() == Pperspective;
    seen.pixelsPerUnit = seen.perspective ? width * kFocalLength / kAperture : parallelPixels;
    seen.worldFromCamera = camera()->GetMg();
    seen.worldFromCamera.Normalize();
    Matrix axes;
    if (AxisViewAxes(projection(), axes)) {
        axes.off = seen.worldFromCamera.off;
        seen.worldFromCamera = axes;
    }
    return seen;
}

ViewFrame ViewCore::frameAlong(const Matrix& axes) const
{
    ViewFrame seen = frame();
    const Vector at = seen.worldFromCamera.off;
    if (!AxisViewAxes(projection(), seen.worldFromCamera)) seen.worldFromCamera = axes;
    seen.worldFromCamera.off = at;
    return seen;
}

void ViewCore::look(const ViewFrame& seen)
{
    if (!seen.perspective) parallelPixels = seen.pixelsPerUnit;
    chosen = 0;
    ownCamera->SetLocal(seen.worldFromCamera);
}

BaseDrawHelp ViewCore::drawHelp(BaseDocument& document) const
{
    return BaseDrawHelp(&document);
}

void EnterViewClasses(Registrations& registrations)
{
    NodeClass camera;
    camera.id = Ocamera;
    camera.kind = NodeKind::Object;
    camera.make = MakeCore<ObjectCore>;
    camera.name = String("Camera");
    camera.bases = {Obase};
    registrations.EnterClass(camera);

    NodeClass view;
    view.id = kViewType;
    view.kind = NodeKind::View;
    view.make = MakeCore<ViewCore>;
    registrations.EnterClass(view);
}

} // namespace host
