#include "view/projection.h"

#include "c4d_basedraw.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr Float kEye = 1e-9;        // a depth that counts as the eye itself
constexpr Float kFilledShare = 0.9; // of the frame by what is framed
constexpr Float kSmallestExtent = 1e-3;

Float depthForDivision(Float depth)
{
    return std::abs(depth) > kEye ? depth : std::copysign(kEye, depth);
}

} // namespace

Vector ScreenFromCamera(const ViewFrame& frame, const Vector& p)
{
    const Float scale = frame.perspective ? frame.pixelsPerUnit / depthForDivision(p.z) : frame.pixelsPerUnit;
    return Vector(frame.width / 2.0 + p.x * scale, frame.height / 2.0 - p.y * scale, p.z);
}

Vector CameraFromScreen(const ViewFrame& frame, const Vector& p)
{
    const Float scale = UnitsPerPixel(frame, p.z);
    return Vector((p.x - frame.width / 2.0) * scale, (frame.height / 2.0 - p.y) * scale, p.z);
}

Float UnitsPerPixel(const ViewFrame& frame, Float depth)
{
    return frame.perspective ? depth / frame.pixelsPerUnit : 1 / frame.pixelsPerUnit;
}

void Extent::add(const Vector& point)
{
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return;
    if (empty()) {
        minimum = maximum = point;
        return;
    }
    minimum = Vector(std::min(minimum.x, point.x), std::min(minimum.y, point.y), std::min(minimum.z, point.z));
    maximum = Vector(std::max(maximum.x, point.x), std::max(maximum.y, point.y), std::max(maximum.z, point.z));
}

void Extent::add(const Matrix& matrix, const Vector& centre, const Vector& radius)
{
    Extent local;
    local.add(centre - radius);
    local.add(centre + radius);
    for (int i = 0; i < 8; ++i) add(matrix * local.corner(i));
}

Vector Extent::corner(int index) const
{
    return Vector(index & 1 ? maximum.x : minimum.x, index & 2 ? maximum.y : minimum.y,
                  index & 4 ? maximum.z : minimum.z);
}

Matrix CameraAxes(Float turn, Float elevation)
{
    const Float ct = std::cos(turn), st = std::sin(turn), ce = std::cos(elevation), se = std::sin(elevation);
    return Matrix(Vector(), Vector(ct, 0, st), Vector(-st * se, ce, ct * se), Vector(-st * ce, -se, ct * ce));
}

bool AxisViewAxes(Int32 projection, Matrix& axes)
{
    switch (projection) {
    case Pleft: axes = Matrix(Vector(), Vector(0, 0, -1), Vector(0, 1, 0), Vector(1, 0, 0)); return true;
    case Pright: axes = Matrix(Vector(), Vector(0, 0, 1), Vector(0, 1, 0), Vector(-1, 0, 0)); return true;
    case Pfront: axes = Matrix(); return true;
    case Pback: axes = Matrix(Vector(), Vector(-1, 0, 0), Vector(0, 1, 0), Vector(0, 0, -1)); return true;
    case Ptop: axes = Matrix(Vector(), Vector(1, 0, 0), Vector(0, 0, 1), Vector(0, -1, 0)); return true;
    case Pbottom: axes = Matrix(Vector(), Vector(1, 0, 0), Vector(0, 0, -1), Vector(0, 1, 0)); return true;
    default: return false;
    }
}

Framing::Framing(const ViewFrame& turned, const Extent& extent)
    : frame(turned),
      halfWidth(kFilledShare * turned.width / 2),
      halfHeight(kFilledShare * turned.height / 2),
      distance(kSmallestExtent),
      pixels(1 / kSmallestExtent)
{
    frame.worldFromCamera.off = (extent.minimum + extent.maximum) * 0.5;
    cameraFromWorld = ~frame.worldFromCamera;
}

void Framing::add(const Vector& point)
{
    const Vector p = cameraFromWorld * point;
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return;
    const Float x = std::abs(p.x), y = std::abs(p.y), focus = frame.pixelsPerUnit;
    distance = std::max({distance, x * focus / halfWidth - p.z, y * focus / halfHeight - p.z});
    if (x > 0) pixels = std::min(pixels, halfWidth / x);
    if (y > 0) pixels = std::min(pixels, halfHeight / y);
    deepest = std::max(deepest, -p.z);
}

ViewFrame Framing::framed(Float distanceFactor) const
{
    ViewFrame result = frame;
    Matrix& camera = result.worldFromCamera;
    if (frame.perspective) {
        camera.off -= camera.v3 * (distance * distanceFactor);
    } else {
        result.pixelsPerUnit = pixels / distanceFactor;
        camera.off -= camera.v3 * (2 * deepest + 1);
    }
    return result;
}

} // namespace host
