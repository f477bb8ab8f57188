#include "picture/camera.h"

namespace verdanth {
namespace {

constexpr float kLens = 0.21F;         // half the picture's longer side at distance 1: a portrait lens
constexpr float kMargin = 0.05F;       // of half the picture, left free at the sides and above
constexpr float kBottomMargin = 0.12F; // below, where the shadow lies and captions go

} // namespace

// How far an outline goes in each of the camera's directions, told as the place of the plane through the lens's edge.
struct Camera::Reach {
    float right = -1e30F, left = -1e30F, top = -1e30F, bottom = -1e30F, back = -1e30F;

    void extend(const Reach& other)
    {
        right = std::max(right, other.right);
        left = std::max(left, other.left);
        top = std::max(top, other.top);
        bottom = std::max(bottom, other.bottom);
        back = std::max(back, other.back);
    }
};

Camera::Camera(const ViewDirection& view, uint32_t width, uint32_t height)
    : direction(view),
      pictureWidth(static_cast<float>(width)),
      pictureHeight(static_cast<float>(height))
{
    const double azimuth = view.azimuth * vdt::kPi / 180;
    const double elevation = view.elevation * vdt::kPi / 180;
    const auto sinA = static_cast<float>(std::sin(azimuth));
    const auto cosA = static_cast<float>(std::cos(azimuth));
    const auto sinE = static_cast<float>(std::sin(elevation));
    const auto cosE = static_cast<float>(std::cos(elevation));
    right = {cosA, 0, -sinA};
    back = {sinA * cosE, sinE, cosA * cosE};
    up = {-sinA * sinE, cosE, -cosA * sinE};
    const float longer = std::max(pictureWidth, pictureHeight);
    halfWidth = kLens * pictureWidth / longer;
    halfHeight = kLens * pictureHeight / longer;
}

Camera::Camera(const ViewDirection& view, std::span<const Float3> outline, uint32_t width, uint32_t height)
    : Camera(view, width, height)
{
    standFor(reachOf(outline));
}

std::vector<Camera> Camera::Turntable(std::span<const ViewDirection> views, std::span<const Float3> outline,
                                      uint32_t width, uint32_t height)
{
    std::vector<Camera> cameras;
    Reach reach;
    for (const ViewDirection& view : views) {
        cameras.push_back(Camera(view, width, height));
        reach.extend(cameras.back().reachOf(outline));
    }
    // The axis must not wander, so that both sides get the room that the wider one needs.
    reach.left = reach.right = std::max(reach.left, reach.right);
    for (Camera& camera : cameras) camera.standFor(reach);
    return cameras;
}

Camera::Reach Camera::reachOf(std::span<const Float3> outline) const
{
    const float slopeX = halfWidth * (1 - kMargin);
    const float slopeTop = halfHeight * (1 - kMargin);
    const float slopeBottom = halfHeight * (1 - kBottomMargin);
    Reach reach;
    for (const Float3& point : outline) {
        const float x = Dot(point, right);
        const float y = Dot(point, up);
        const float z = Dot(point, back);
        reach.right = std::max(reach.right, x + slopeX * z);
        reach.left = std::max(reach.left, slopeX * z - x);
        reach.top = std::max(reach.top, y + slopeTop * z);
        reach.bottom = std::max(reach.bottom, slopeBottom * z - y);
        reach.back = std::max(reach.back, z);
    }
    return outline.empty() ? Reach{0.5F, 0.5F, 0.5F, 0.5F, 0.5F} : reach;
}

// A point is inside the lens's edge on the right if x + slope z <= cameraX + slope cameraZ, and so on all sides. The
// nearest place at which both of two opposite edges hold follows from their sum.
void Camera::standFor(const Reach& reach)
{
    constexpr float kNearestStand = 0.01F;
    const float slopeX = halfWidth * (1 - kMargin);
    const float slopeTop = halfHeight * (1 - kMargin);
    const float slopeBottom = halfHeight * (1 - kBottomMargin);
    const float distanceX = (reach.right + reach.left) / (2 * slopeX);
    const float distanceY = (reach.top + reach.bottom) / (slopeTop + slopeBottom);
    const float distance = std::max({distanceX, distanceY, reach.back + kNearestStand});
    const float x = (reach.right - reach.left) / 2;
    const float lowest = reach.top - slopeTop * distance; // any height between these two will do
    const float highest = slopeBottom * distance - reach.bottom;
    position = right * x + up * ((lowest + highest) / 2) + back * distance;
}

float Camera::halfWidthAtPlant() const
{
    return Dot(position, back) * halfWidth;
}

SceneRay Camera::ray(float x, float y) const
{
    const float across = (2 * x / pictureWidth - 1) * halfWidth;
    const float upwards = (1 - 2 * y / pictureHeight) * halfHeight;
    return {position, Normalized(right * across + up * upwards - back)};
}

} // namespace verdanth
