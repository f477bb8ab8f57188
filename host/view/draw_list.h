// What one redraw of a view shows, as plain records: recorded on any thread, without a graphics library, and turned
// into pixels later.
//
// Batches are drawn in order. Their coordinates are 32-bit and local to the batch's matrix, so a plant far from the
// world's origin loses nothing. Camera space has x to the right, y up and z into the scene.
#pragma once

#include "ge_math.h"

#include <array>
#include <cstdint>
#include <vector>

namespace host {

inline std::array<float, 3> Narrow(const Vector& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// How the camera sees: the frame's centre is where its z axis points.
struct ViewFrame {
    Int32 width = 0; // pixels
    Int32 height = 0;
    bool perspective = true;
    // Pixels that one world unit covers: at depth 1 in perspective, anywhere otherwise.
    Float pixelsPerUnit = 1;
    Matrix worldFromCamera;
};

enum class DrawKind : uint8_t { Mesh, Triangles, Points, Lines };

/// What a batch's matrix leads into. Screen: pixels from the upper left corner, y down, z the depth in the camera's
/// space.
enum class DrawSpace : uint8_t { World, Camera, Screen };

enum class DepthTest : uint8_t { Always, Less, LessEqual, Equal, Greater };

/// Colours are shown as they are (Display), or are amounts of light that are turned into what is shown (Linear).
enum class DrawColors : uint8_t { Display, Linear };

struct DrawState {
    DrawSpace space = DrawSpace::World;
    Matrix matrix;
    DepthTest depthTest = DepthTest::LessEqual;
    bool depthWrite = true;
    DrawColors colors = DrawColors::Display;
    float size = 1;        // pixels: sides of points, width of lines
    float depthOffset = 0; // smallest steps of the depth buffer, towards the viewer

    bool operator==(const DrawState& other) const;
};

struct DrawVertex {
    std::array<float, 3> position;
    std::array<float, 4> color; // with opacity
};

/// A zero normal: the triangle's own is taken.
struct MeshVertex {
    std::array<float, 3> position;
    std::array<float, 3> normal;
};

struct DrawBox {
    std::array<float, 3> minimum{1, 1, 1};
    std::array<float, 3> maximum{-1, -1, -1};

    bool empty() const { return minimum[0] > maximum[0]; }
    void extend(const std::array<float, 3>& point);
};

/// Corner triples of one mesh, counted from `firstVertex`.
struct DrawMesh {
    size_t firstVertex = 0, vertexCount = 0;
    size_t firstIndex = 0, indexCount = 0;
    DrawBox box;
};

struct DrawBatch {
    DrawKind kind = DrawKind::Points;
    DrawState state;
    size_t first = 0, count = 0;            // vertices in `vertices`, or indices in `meshIndices`
    size_t firstVertex = 0;                 // of a mesh, in `meshVertices`
    std::array<float, 4> color{1, 1, 1, 1}; // of a mesh
    DrawBox box;
};

struct Backdrop {
    std::array<float, 3> top{0.43F, 0.45F, 0.47F}; // display colours
    std::array<float, 3> bottom{0.62F, 0.63F, 0.64F};
};

class DrawList {
public:
    ViewFrame frame;
    Backdrop backdrop;
    std::vector<DrawVertex> vertices;
    std::vector<MeshVertex> meshVertices;
    std::vector<uint32_t> meshIndices;
    std::vector<DrawBatch> batches;

    /// Appends to the last batch where that is of this kind and state. Triangles come in threes, lines in twos.
    void add(DrawKind kind, const DrawState& state, const DrawVertex* first, size_t count);

    /// Everything appended to `meshVertices` and `meshIndices` since the last call.
    DrawMesh closeMesh();

    /// Meshes are shared: each may be drawn in many places and colours.
    void addMesh(const DrawMesh& mesh, const DrawState& state, const std::array<float, 4>& color);

private:
    size_t closedVertices = 0, closedIndices = 0;
};

} // namespace host
