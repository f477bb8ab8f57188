// Views, and drawing into them.
#pragma once

#include "c4d_basedocument.h"

namespace host {
struct ViewCore; // the record behind a view
}

#define DRAW_PARAMETER_SETZ 2
#define DRAW_PARAMETER_USE_Z 11
#define DRAW_PARAMETER_LINEWIDTH 1000 // Float, pixels

// Of DRAW_PARAMETER_SETZ: which depths are drawn over those that are there.
#define DRAW_Z_LOWEREQUAL 0
#define DRAW_Z_GREATER 1
#define DRAW_Z_ALWAYS 2
#define DRAW_Z_EQUAL 3
#define DRAW_Z_LOWER 4

#define BDRAW_SETLIGHTLIST_NOLIGHTS (-1)
#define BDRAW_SETLIGHTLIST_SCENELIGHTS 0
#define BDRAW_SETLIGHTLIST_QUICKSHADING 1

enum { Pperspective = 0, Pparallel = 1, Pleft = 2, Pright = 3, Pfront = 4, Pback = 5, Ptop = 6, Pbottom = 7 };

enum DRAWPASS {
    DRAWPASS_OBJECT = 0,
    DRAWPASS_BOX = 1,
    DRAWPASS_HANDLES = 2,
    DRAWPASS_HIGHLIGHTS = 3,
    DRAWPASS_XRAY = 4
} ENUM_END_LIST(DRAWPASS);

enum DRAWRESULT { DRAWRESULT_ERROR = 0, DRAWRESULT_OK = 1, DRAWRESULT_SKIP = 2 } ENUM_END_LIST(DRAWRESULT);

enum DRAWHANDLE {
    DRAWHANDLE_MINI = 0,
    DRAWHANDLE_SMALL = 1,
    DRAWHANDLE_MIDDLE = 2,
    DRAWHANDLE_BIG = 3
} ENUM_END_LIST(DRAWHANDLE);

enum SCENEHOOKDRAW {
    SCENEHOOKDRAW_0 = 0,
    SCENEHOOKDRAW_DRAW_PASS = (1 << 0),
    SCENEHOOKDRAW_HIGHLIGHT_PASS_BEFORE_TOOL = (1 << 1),
    SCENEHOOKDRAW_HIGHLIGHT_PASS = (1 << 2),
    SCENEHOOKDRAW_HIGHLIGHT_PASS_INV = (1 << 3),
    SCENEHOOKDRAW_DRAW_PASS_AFTER_CLEAR = (1 << 4)
};
ENUM_END_FLAGS(SCENEHOOKDRAW)

/// Looks at the scene from the camera's frame, along its Z axis. Screen coordinates are pixels from the upper left of
/// the view, z is the depth.
class BaseView : public BaseList2D {
public:
    Matrix GetMg() const; // camera to world
    Matrix GetMi() const; // world to camera
    Vector WS(const Vector& p) const;
    Vector SW(const Vector& p) const;
    Vector WC(const Vector& p) const;
    Vector CW(const Vector& p) const;
    Vector WC_V(const Vector& v) const;
    Vector CW_V(const Vector& v) const;
    /// World units that one pixel covers at the world point `p`.
    Float PW_W(const Vector& p, Bool horizontal) const;
    /// Pixels that one world unit covers there.
    Float WP_W(const Vector& p, Bool horizontal) const;
    Int32 GetProjection() const;
    Bool TestPoint(Float x, Float y) const;
    void GetFrame(Int32* cl, Int32* ct, Int32* cr, Int32* cb) const; // inclusive

protected:
    using BaseList2D::BaseList2D;
};

class BaseDraw : public BaseView {
public:
    BaseObject* GetSceneCamera(const BaseDocument* doc); // null for the editor camera
    BaseObject* GetEditorCamera();                       // never null

    /// Coordinates that follow are local to `mg`.
    void SetMatrix_Matrix(BaseObject* op, const Matrix& mg);
    void SetMatrix_Camera();
    void SetMatrix_Screen();
    void SetPen(const Vector& col, Int32 flags = 0);
    void SetPointSize(Float pointsize); // pixels
    void SetTransparency(Int32 trans);  // 0 opaque to 255; negative resets
    void SetDepth(Bool enable);
    void SetLightList(Int32 mode);
    void SetDrawParam(Int32 id, const GeData& data);
    GeData GetDrawParam(Int32 id);

    void DrawLine(const Vector& p1, const Vector& p2, Int32 flags);
    /// One display colour a corner.
    void DrawPolygon(Vector* p, Vector* f, Bool quad);
    /// `colcnt` linear floats a point; without colours the pen.
    void DrawPointArray(Int32 cnt, const Vector32* vp, const Float32* vc = nullptr, Int32 colcnt = 0,
                        const Vector32* vn = nullptr);
    void DrawHandle(const Vector& vp, DRAWHANDLE type, Int32 flags);
    void DrawPoint2D(const Vector& p);
    void DrawLine2D(const Vector& p1, const Vector& p2);

protected:
    using BaseView::BaseView;
};

class BaseDrawHelp {
public:
    BaseDocument* GetDocument() const { return document; }
    const Matrix& GetMg() const { return matrix; }
    void SetMg(const Matrix& m) { matrix = m; }

    BaseDrawHelp(const BaseDrawHelp&) = delete;
    BaseDrawHelp& operator=(const BaseDrawHelp&) = delete;

private:
    friend struct host::ViewCore;
    explicit BaseDrawHelp(BaseDocument* drawn) : document(drawn) {}

    BaseDocument* document;
    Matrix matrix;
};
