// Turns drawing calls into a draw list, through the state that such calls set and follow.
//
// Colours given to lines and polygons are display colours; those of point arrays are linear. Without a list to record
// into, calls do nothing.
#pragma once

#include "c4d_basedraw.h"
#include "view/draw_list.h"

namespace host {

class DrawRecorder {
public:
    /// The list must live until `end`.
    void begin(DrawList& recorded);
    void end() { list = nullptr; }
    DrawList* recorded() const { return list; }

    /// The state that every callback finds: world coordinates, a white pen, opaque, lines of one pixel; the depth test
    /// as it is told. So a plug-in that restores nothing harms nobody.
    void reset(bool depth);

    void setSpace(DrawSpace space, const Matrix& matrix);
    void setPen(const Vector& color) { pen = color; }
    void setPointSize(Float pixels);
    void setTransparency(Int32 transparency);
    void setDepth(bool enable) { testsDepth = enable; }
    bool setParameter(Int32 id, const GeData& value);
    GeData parameter(Int32 id) const;

    void line(const Vector& begin, const Vector& end);
    void polygon(const Vector* corners, const Vector* colors, int count);
    /// `components` of color a point: three, or four with the opacity; else the pen's.
    void points(Int32 count, const Vector32* positions, const Float32* colors, Int32 components);
    /// Square marks of so many pixels.
    void mark(const Vector& position, Float pixels);
    // On the screen, whatever the space, in front of everything.
    void pointOnScreen(const Vector& position);
    void lineOnScreen(const Vector& begin, const Vector& end);

    /// A mesh in the present space, lit.
    void mesh(const DrawMesh& shape, const Vector& color, DrawColors colors);

private:
    DrawState stateFor(Float size, DrawColors colors = DrawColors::Display) const;
    DrawState screenState(Float size) const;
    DrawVertex vertex(const Vector& position, const Vector& color) const;

    DrawList* list = nullptr;
    DrawSpace space = DrawSpace::World;
    Matrix matrix;
    Vector pen{1};
    Float pointSize = 2;
    Float opacity = 1;
    Float lineWidth = 1;
    Int32 depthMode = DRAW_Z_LOWEREQUAL;
    bool testsDepth = true;
};

} // namespace host
