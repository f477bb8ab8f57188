// From the world into the picture and back, for one frame of a view.
//
// Screen coordinates are pixels from the frame's upper left corner, y down; their z is the depth in camera space, so
// every point of the screen with its depth has one place in the world.
#pragma once

#include "view/draw_list.h"

namespace host {

Vector ScreenFromCamera(const ViewFrame& frame, const Vector& p);
Vector CameraFromScreen(const ViewFrame& frame, const Vector& p);

/// World units that one pixel covers at a depth. In perspective it is zero at the eye and negative behind it.
Float UnitsPerPixel(const ViewFrame& frame, Float depth);

/// A box in the world; nothing while `minimum` exceeds `maximum`.
struct Extent {
    Vector minimum{1}, maximum{-1};

    bool empty() const { return minimum.x > maximum.x; }
    /// Points that are nowhere (not a number, or infinite) add nothing.
    void add(const Vector& point);
    /// The corners of a box around `centre`, which `matrix` takes into the world. Radii may be negative.
    void add(const Matrix& matrix, const Vector& centre, const Vector& radius);
    Vector corner(int index) const;
};

/// The axes of a camera: the viewer stands round the scene by `turn` and above it by `elevation`, both radians. At 0
/// and 0 he looks along the world's z axis; with `turn` he walks to his right.
Matrix CameraAxes(Float turn, Float elevation);
/// Those of an axis view (Pleft, Pfront, ...), or of nothing else.
bool AxisViewAxes(Int32 projection, Matrix& axes);

/// Finds the place from which a camera, without turning, sees all that is added. It looks at the middle of an extent.
class Framing {
public:
    Framing(const ViewFrame& turned, const Extent& extent);

    void add(const Vector& point);

    /// The frame with the camera where all is seen with a margin if `distanceFactor` is 1, and so much farther away
    /// otherwise. In a parallel view `pixelsPerUnit` is set instead of a distance.
    ViewFrame framed(Float distanceFactor) const;

private:
    ViewFrame frame; // with the camera in the middle
    Matrix cameraFromWorld;
    Float halfWidth, halfHeight; // pixels to be filled
    Float distance, pixels;      // as far as is known by now
    Float deepest = 0;
};

} // namespace host
