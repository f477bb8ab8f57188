#include "view/view_renderer.h"

#include "view/gl_objects.h"
#include "view/shaders.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace host {
namespace {

constexpr GLsizei kWantedSamples = 8; // a pixel

std::array<float, 16> columnsOf(const Matrix& m)
{
    const std::array<float, 3> a = Narrow(m.v1), b = Narrow(m.v2), c = Narrow(m.v3), d = Narrow(m.off);
    return {a[0], a[1], a[2], 0, b[0], b[1], b[2], 0, c[0], c[1], c[2], 0, d[0], d[1], d[2], 1};
}

// What turns normals where `m` turns points: its cofactors, which exist for flattened things too.
Matrix normalMatrix(const Matrix& m)
{
    return Matrix(Vector(), Cross(m.v2, m.v3), Cross(m.v3, m.v1), Cross(m.v1, m.v2));
}

struct DepthRange {
    Float nearest, farthest;
};

// The depths of all that is drawn in space, with the nearest one kept well in front of the eye.
DepthRange depthsOf(const DrawList& list, const Matrix& cameraFromWorld)
{
    Float nearest = 1e30, farthest = -1e30;
    for (const DrawBatch& batch : list.batches) {
        if (batch.state.space == DrawSpace::Screen || batch.box.empty()) continue;
        const Matrix matrix =
            batch.state.space == DrawSpace::World ? cameraFromWorld * batch.state.matrix : batch.state.matrix;
        for (int corner = 0; corner < 8; ++corner) {
            const auto at = [&batch, corner](size_t axis) {
                return static_cast<Float>(corner >> axis & 1 ? batch.box.maximum[axis] : batch.box.minimum[axis]);
            };
            const Float depth = (matrix * Vector(at(0), at(1), at(2))).z;
            if (!std::isfinite(depth)) continue;
            nearest = std::min(nearest, depth);
            farthest = std::max(farthest, depth);
        }
    }
    if (!(nearest <= farthest)) return {0.1, 1};
    const Float margin = 0.01 * (farthest - nearest) + 1e-4;
    nearest -= margin;
    farthest += margin;
    if (!list.frame.perspective) return {nearest, farthest};

    // 24 bits of depth are spread unevenly: they give out where the range is wider than this.
    constexpr Float kWidestRange = 20000;
    farthest = std::max(farthest, 1e-3);
    return {std::max(nearest, farthest / kWidestRange), farthest};
}

GLenum depthFunction(DepthTest test)
{
    switch (test) {
    case DepthTest::Always: return GL_ALWAYS;
    case DepthTest::Less: return GL_LESS;
    case DepthTest::LessEqual: return GL_LEQUAL;
    case DepthTest::Equal: return GL_EQUAL;
    case DepthTest::Greater: return GL_GREATER;
    }
    return GL_ALWAYS;
}

const void* offsetPointer(size_t offset)
{
    return reinterpret_cast<const void*>(offset); // NOLINT(performance-no-int-to-ptr): the interface wants it so
}

void attribute(GLuint place, GLint components, size_t stride, size_t offset, GLuint divisor)
{
    glEnableVertexAttribArray(place);
    glVertexAttribPointer(place, components, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride), offsetPointer(offset));
    glVertexAttribDivisor(place, divisor);
}

template <class Item> void fill(const GlBuffer& buffer, const std::vector<Item>& items)
{
    buffer.fill(items.data(), items.size() * sizeof(Item));
}

} // namespace

struct ViewRenderer::Resources {
    GlProgram mesh, flat, line, backdrop;
    GlBuffer vertices{GL_ARRAY_BUFFER}, meshVertices{GL_ARRAY_BUFFER}, meshIndices{GL_ELEMENT_ARRAY_BUFFER};
    GlCanvas canvas, resolved;
    GLuint vertexArray = 0;

    Matrix cameraFromWorld;
    DepthRange depths{0.1, 1};

    Resources() { glGenVertexArrays(1, &vertexArray); }
    Resources(const Resources&) = delete;
    Resources& operator=(const Resources&) = delete;
    ~Resources() { glDeleteVertexArrays(1, &vertexArray); }

    bool build(std::string& problem)
    {
        const auto vertexText = [](const char* own) { return std::string(kProjectionText) + own; };
        const auto fragmentText = [](const char* own) { return std::string(kColorText) + own; };
        const std::string flatText = fragmentText(kFlatFragmentText);
        return mesh.build(vertexText(kMeshVertexText).c_str(), fragmentText(kMeshFragmentText).c_str(), problem) &&
               flat.build(vertexText(kFlatVertexText).c_str(), flatText.c_str(), problem) &&
               line.build(vertexText(kLineVertexText).c_str(), flatText.c_str(), problem) &&
               backdrop.build(kBackdropVertexText, flatText.c_str(), problem);
    }

    void drawBackdrop(const Backdrop& colors) const
    {
        glDisable(GL_DEPTH_TEST);
        backdrop.use();
        backdrop.set("top", colors.top);
        backdrop.set("bottom", colors.bottom);
        backdrop.set("colorIsLinear", 0);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glEnable(GL_DEPTH_TEST);
    }

    // The values of the projection that all kinds share.
    void setProjection(const GlProgram& program, const ViewFrame& frame) const
    {
        const Float range = depths.farthest - depths.nearest;
        const Float factor = frame.perspective ? (depths.farthest + depths.nearest) / range : 2 / range;
        const Float term = frame.perspective ? -2 * depths.farthest * depths.nearest / range
                                             : -(depths.farthest + depths.nearest) / range;
        const Float scale = 2 * frame.pixelsPerUnit;
        program.set("projection",
                    std::array{static_cast<float>(scale / frame.width), static_cast<float>(scale / frame.height),
                               static_cast<float>(factor), static_cast<float>(term)});
        program.set("viewport", std::array{static_cast<float>(frame.width), static_cast<float>(frame.height)});
        program.set("nearest", static_cast<float>(depths.nearest));
    }

    void drawBatch(const DrawBatch& batch, const ViewFrame& frame) const
    {
        const GlProgram& program = batch.kind == DrawKind::Mesh ? mesh : batch.kind == DrawKind::Lines ? line : flat;
        const DrawState& state = batch.state;
        glDepthFunc(depthFunction(state.depthTest));
        glDepthMask(state.depthWrite ? GL_TRUE : GL_FALSE);
        program.use();
        setProjection(program, frame);
        const Matrix matrix = state.space == DrawSpace::World ? cameraFromWorld * state.matrix : state.matrix;
        program.set("spaceFromLocal", columnsOf(matrix));
        program.set("space", (state.space == DrawSpace::Screen ? 2 : 0) + (frame.perspective ? 0 : 1));
        program.set("depthOffset", state.depthOffset);
        program.set("colorIsLinear", state.colors == DrawColors::Linear ? 1 : 0);
        if (batch.kind == DrawKind::Mesh) {
            program.set("normalFromLocal", columnsOf(normalMatrix(matrix)));
            program.set("color", batch.color);
            program.set("perspective", frame.perspective ? 1 : 0);
            program.set("up", Narrow(cameraFromWorld.TransformVector(Vector(0, 1, 0)).GetNormalized()));
            drawMesh(batch);
        } else {
            program.set("size", state.size);
            drawVertices(batch);
        }
    }

    void drawMesh(const DrawBatch& batch) const
    {
        meshVertices.bind();
        attribute(kPlacePosition, 3, sizeof(MeshVertex), offsetof(MeshVertex, position), 0);
        attribute(kPlaceNormal, 3, sizeof(MeshVertex), offsetof(MeshVertex, normal), 0);
        meshIndices.bind();
        glDrawElementsBaseVertex(GL_TRIANGLES, static_cast<GLsizei>(batch.count), GL_UNSIGNED_INT,
                                 offsetPointer(batch.first * sizeof(uint32_t)), static_cast<GLint>(batch.firstVertex));
        glDisableVertexAttribArray(kPlaceNormal);
    }

    void drawVertices(const DrawBatch& batch) const
    {
        constexpr size_t kStride = sizeof(DrawVertex);
        const auto count = static_cast<GLsizei>(batch.count);
        const size_t begin = batch.first * kStride;
        const size_t position = begin + offsetof(DrawVertex, position), color = begin + offsetof(DrawVertex, color);
        vertices.bind();
        if (batch.kind != DrawKind::Lines) {
            attribute(kPlacePosition, 3, kStride, position, 0);
            attribute(kPlaceColor, 4, kStride, color, 0);
            glDrawArrays(batch.kind == DrawKind::Points ? GL_POINTS : GL_TRIANGLES, 0, count);
            return;
        }
        attribute(kPlacePosition, 3, 2 * kStride, position, 1);
        attribute(kPlaceColor, 4, 2 * kStride, color, 1);
        attribute(kPlaceEnd, 3, 2 * kStride, position + kStride, 1);
        attribute(kPlaceEndColor, 4, 2 * kStride, color + kStride, 1);
        glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, 4, count / 2);
        glDisableVertexAttribArray(kPlaceEnd);
        glDisableVertexAttribArray(kPlaceEndColor);
    }
};

ViewRenderer::ViewRenderer() = default;
ViewRenderer::~ViewRenderer() = default;

bool ViewRenderer::draw(const DrawList& list, std::string& problem)
{
    if (!resources) {
        auto made = std::make_unique<Resources>();
        if (!made->build(problem)) return false;
        resources = std::move(made);
    }

    GLint largest = 0, mostSamples = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    glGetIntegerv(GL_MAX_SAMPLES, &mostSamples);
    const ViewFrame& frame = list.frame;
    if (frame.width < 1 || frame.height < 1 || frame.width > largest || frame.height > largest ||
        !resources->canvas.resize(frame.width, frame.height, std::min(kWantedSamples, mostSamples), true)) {
        problem = "the OpenGL driver cannot draw " + std::to_string(frame.width) + " x " +
                  std::to_string(frame.height) + " pixels";
        return false;
    }

    while (glGetError() != GL_NO_ERROR) continue; // of others, before us
    glBindFramebuffer(GL_FRAMEBUFFER, resources->canvas.framebuffer());
    glViewport(0, 0, frame.width, frame.height);
    glDisable(GL_CULL_FACE);
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_FRAMEBUFFER_SRGB);
    glEnable(GL_MULTISAMPLE);
    glEnable(GL_PROGRAM_POINT_SIZE);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearDepth(1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    glBindVertexArray(resources->vertexArray);
    fill(resources->vertices, list.vertices);
    fill(resources->meshVertices, list.meshVertices);
    fill(resources->meshIndices, list.meshIndices);
    resources->cameraFromWorld = ~frame.worldFromCamera;
    resources->depths = depthsOf(list, resources->cameraFromWorld);
    resources->drawBackdrop(list.backdrop);
    for (const DrawBatch& batch : list.batches) resources->drawBatch(batch, frame);
    glBindVertexArray(0);
    glUseProgram(0);
    if (glGetError() == GL_NO_ERROR) return true;
    problem = "the OpenGL driver could not draw this";
    return false;
}

bool ViewRenderer::drawInto(const DrawList& list, unsigned framebuffer, std::string& problem)
{
    if (!draw(list, problem)) return false;
    const GLint width = list.frame.width, height = list.frame.height;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, resources->canvas.framebuffer());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    return true;
}

bool ViewRenderer::drawImage(const DrawList& list, ViewImage& image, std::string& problem)
{
    if (!draw(list, problem)) return false;
    const GLint width = list.frame.width, height = list.frame.height;
    if (!resources->resolved.resize(width, height, 0, false)) {
        problem = "the OpenGL driver has no memory for the picture";
        return false;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, resources->canvas.framebuffer());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resources->resolved.framebuffer());
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);

    image.width = static_cast<uint32_t>(width);
    image.height = static_cast<uint32_t>(height);
    image.pixels.resize(size_t{4} * image.width * image.height);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, resources->resolved.framebuffer());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);

    // Rows come from the bottom.
    const size_t row = size_t{4} * image.width;
    for (size_t y = 0; y < image.height / 2; ++y) {
        const auto upper = image.pixels.begin() + static_cast<std::ptrdiff_t>(y * row);
        const auto lower = image.pixels.begin() + static_cast<std::ptrdiff_t>((image.height - 1 - y) * row);
        std::swap_ranges(upper, upper + static_cast<std::ptrdiff_t>(row), lower);
    }
    return true;
}

} // namespace host
