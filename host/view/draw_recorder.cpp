#include "view/draw_recorder.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

constexpr Float kUsualPointSize = 2;
constexpr Float kLargestSize = 64; // pixels, of points and lines; what every driver can do

Float sizeWithin(Float pixels)
{
    return std::isfinite(pixels) ? std::clamp(pixels, 0.5, kLargestSize) : 1;
}

DepthTest testOf(Int32 mode)
{
    switch (mode) {
    case DRAW_Z_GREATER: return DepthTest::Greater;
    case DRAW_Z_ALWAYS: return DepthTest::Always;
    case DRAW_Z_EQUAL: return DepthTest::Equal;
    case DRAW_Z_LOWER: return DepthTest::Less;
    default: return DepthTest::LessEqual;
    }
}

} // namespace

void DrawRecorder::begin(DrawList& recorded)
{
    list = &recorded;
    reset(true);
}

void DrawRecorder::reset(bool depth)
{
    DrawList* const kept = list;
    *this = DrawRecorder();
    list = kept;
    pointSize = kUsualPointSize;
    testsDepth = depth;
}

void DrawRecorder::setSpace(DrawSpace newSpace, const Matrix& newMatrix)
{
    space = newSpace;
    matrix = newMatrix;
}

void DrawRecorder::setPointSize(Float pixels)
{
    pointSize = sizeWithin(pixels);
}

void DrawRecorder::setTransparency(Int32 transparency)
{
    constexpr Int32 kInvisible = 255;
    opacity = 1 - static_cast<Float>(std::clamp(transparency, 0, kInvisible)) / kInvisible;
}

bool DrawRecorder::setParameter(Int32 id, const GeData& value)
{
    switch (id) {
    case DRAW_PARAMETER_LINEWIDTH: lineWidth = sizeWithin(value.GetFloat()); return true;
    case DRAW_PARAMETER_SETZ: depthMode = value.GetInt32(); return true;
    case DRAW_PARAMETER_USE_Z: testsDepth = value.GetBool(); return true;
    default: return false;
    }
}

GeData DrawRecorder::parameter(Int32 id) const
{
    switch (id) {
    case DRAW_PARAMETER_LINEWIDTH: return GeData(lineWidth);
    case DRAW_PARAMETER_SETZ: return GeData(depthMode);
    case DRAW_PARAMETER_USE_Z: return GeData(Int32{testsDepth});
    default: return GeData();
    }
}

void DrawRecorder::line(const Vector& begin, const Vector& end)
{
    if (!list) return;
    const DrawVertex ends[] = {vertex(begin, pen), vertex(end, pen)};
    list->add(DrawKind::Lines, stateFor(lineWidth), ends, 2);
}

void DrawRecorder::polygon(const Vector* corners, const Vector* colors, int count)
{
    if (!list || !corners || !colors) return;
    for (int i = 1; i + 1 < count; ++i) {
        const DrawVertex triangle[] = {vertex(corners[0], colors[0]), vertex(corners[i], colors[i]),
                                       vertex(corners[i + 1], colors[i + 1])};
        list->add(DrawKind::Triangles, stateFor(1), triangle, 3);
    }
}

void DrawRecorder::points(Int32 count, const Vector32* positions, const Float32* colors, Int32 components)
{
    if (!list || !positions || count <= 0) return;
    const bool colored = colors && components >= 3;
    const auto total = static_cast<size_t>(count);
    std::vector<DrawVertex> vertices(total);
    for (size_t i = 0; i < total; ++i) {
        vertices[i] = vertex(Vector(positions[i]), pen);
        if (!colored) continue;
        const Float32* color = colors + i * static_cast<size_t>(components);
        std::copy(color, color + 3, vertices[i].color.begin());
        if (components >= 4) vertices[i].color[3] *= color[3];
    }
    list->add(DrawKind::Points, stateFor(pointSize, colored ? DrawColors::Linear : DrawColors::Display),
              vertices.data(), total);
}

void DrawRecorder::mark(const Vector& position, Float pixels)
{
    if (!list) return;
    const DrawVertex point = vertex(position, pen);
    list->add(DrawKind::Points, stateFor(pixels), &point, 1);
}

void DrawRecorder::pointOnScreen(const Vector& position)
{
    if (!list) return;
    const DrawVertex point = vertex(position, pen);
    list->add(DrawKind::Points, screenState(pointSize), &point, 1);
}

void DrawRecorder::lineOnScreen(const Vector& begin, const Vector& end)
{
    if (!list) return;
    const DrawVertex ends[] = {vertex(begin, pen), vertex(end, pen)};
    list->add(DrawKind::Lines, screenState(lineWidth), ends, 2);
}

void DrawRecorder::mesh(const DrawMesh& shape, const Vector& color, DrawColors colors)
{
    if (!list) return;
    list->addMesh(shape, stateFor(1, colors), vertex(Vector(), color).color);
}

DrawState DrawRecorder::stateFor(Float size, DrawColors colors) const
{
    DrawState state;
    state.space = space;
    state.matrix = matrix;
    state.depthTest = testsDepth ? testOf(depthMode) : DepthTest::Always;
    state.depthWrite = testsDepth;
    state.colors = colors;
    state.size = static_cast<float>(size);
    return state;
}

DrawState DrawRecorder::screenState(Float size) const
{
    DrawState state;
    state.space = DrawSpace::Screen;
    state.depthTest = DepthTest::Always;
    state.depthWrite = false;
    state.size = static_cast<float>(size);
    return state;
}

DrawVertex DrawRecorder::vertex(const Vector& position, const Vector& color) const
{
    const std::array<float, 3> shown = Narrow(color);
    return {Narrow(position), {shown[0], shown[1], shown[2], static_cast<float>(opacity)}};
}

} // namespace host
