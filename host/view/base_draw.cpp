#include "c4d_basedraw.h"
#include "view/projection.h"
#include "view/view.h"

#include <cmath>

using host::CoreOf;
using host::DrawSpace;

namespace {

// Pixels that the sides of a handle have.
Float handleSize(DRAWHANDLE type)
{
    switch (type) {
    case DRAWHANDLE_MINI: return 2;
    case DRAWHANDLE_SMALL: return 4;
    case DRAWHANDLE_MIDDLE: return 6;
    case DRAWHANDLE_BIG: return 8;
    }
    return 4;
}

} // namespace

Matrix BaseView::GetMg() const
{
    return CoreOf(this)->frame().worldFromCamera;
}

Matrix BaseView::GetMi() const
{
    return ~GetMg();
}

Vector BaseView::WS(const Vector& p) const
{
    return host::ScreenFromCamera(CoreOf(this)->frame(), WC(p));
}

Vector BaseView::SW(const Vector& p) const
{
    return CW(host::CameraFromScreen(CoreOf(this)->frame(), p));
}

Vector BaseView::WC(const Vector& p) const
{
    return GetMi() * p;
}

Vector BaseView::CW(const Vector& p) const
{
    return GetMg() * p;
}

Vector BaseView::WC_V(const Vector& v) const
{
    return GetMi().TransformVector(v);
}

Vector BaseView::CW_V(const Vector& v) const
{
    return GetMg().TransformVector(v);
}

// Pixels are square here, so both directions have one answer.
Float BaseView::PW_W(const Vector& p, Bool /*horizontal*/) const
{
    return host::UnitsPerPixel(CoreOf(this)->frame(), WC(p).z);
}

Float BaseView::WP_W(const Vector& p, Bool horizontal) const
{
    const Float units = PW_W(p, horizontal);
    return units != 0 ? 1 / units : 0;
}

Int32 BaseView::GetProjection() const
{
    return CoreOf(this)->projection();
}

Bool BaseView::TestPoint(Float x, Float y) const
{
    const host::ViewFrame frame = CoreOf(this)->frame();
    return x >= 0 && y >= 0 && x < frame.width && y < frame.height;
}

void BaseView::GetFrame(Int32* cl, Int32* ct, Int32* cr, Int32* cb) const
{
    const host::ViewFrame frame = CoreOf(this)->frame();
    if (cl) *cl = 0;
    if (ct) *ct = 0;
    if (cr) *cr = frame.width - 1;
    if (cb) *cb = frame.height - 1;
}

BaseObject* BaseDraw::GetSceneCamera(const BaseDocument* doc)
{
    return CoreOf(this)->sceneCamera(doc);
}

BaseObject* BaseDraw::GetEditorCamera()
{
    return CoreOf(this)->editorCamera();
}

void BaseDraw::SetMatrix_Matrix(BaseObject* /*op*/, const Matrix& mg)
{
    CoreOf(this)->recorder.setSpace(DrawSpace::World, mg);
}

void BaseDraw::SetMatrix_Camera()
{
    CoreOf(this)->recorder.setSpace(DrawSpace::Camera, Matrix());
}

void BaseDraw::SetMatrix_Screen()
{
    CoreOf(this)->recorder.setSpace(DrawSpace::Screen, Matrix());
}

void BaseDraw::SetPen(const Vector& col, Int32 /*flags*/)
{
    CoreOf(this)->recorder.setPen(col);
}

void BaseDraw::SetPointSize(Float pointsize)
{
    CoreOf(this)->recorder.setPointSize(pointsize);
}

void BaseDraw::SetTransparency(Int32 trans)
{
    CoreOf(this)->recorder.setTransparency(trans);
}

void BaseDraw::SetDepth(Bool enable)
{
    CoreOf(this)->recorder.setDepth(enable);
}

// What plug-ins draw is shown in the colours that they give, whatever lights there are.
void BaseDraw::SetLightList(Int32 /*mode*/)
{
}

void BaseDraw::SetDrawParam(Int32 id, const GeData& data)
{
    CoreOf(this)->recorder.setParameter(id, data);
}

GeData BaseDraw::GetDrawParam(Int32 id)
{
    return CoreOf(this)->recorder.parameter(id);
}

void BaseDraw::DrawLine(const Vector& p1, const Vector& p2, Int32 /*flags*/)
{
    CoreOf(this)->recorder.line(p1, p2);
}

void BaseDraw::DrawPolygon(Vector* p, Vector* f, Bool quad)
{
    CoreOf(this)->recorder.polygon(p, f, quad ? 4 : 3);
}

// Points are never lit, so their normals change nothing.
void BaseDraw::DrawPointArray(Int32 cnt, const Vector32* vp, const Float32* vc, Int32 colcnt, const Vector32* /*vn*/)
{
    CoreOf(this)->recorder.points(cnt, vp, vc, colcnt);
}

void BaseDraw::DrawHandle(const Vector& vp, DRAWHANDLE type, Int32 /*flags*/)
{
    CoreOf(this)->recorder.mark(vp, handleSize(type));
}

void BaseDraw::DrawPoint2D(const Vector& p)
{
    CoreOf(this)->recorder.pointOnScreen(p);
}

void BaseDraw::DrawLine2D(const Vector& p1, const Vector& p2)
{
    CoreOf(this)->recorder.lineOnScreen(p1, p2);
}
