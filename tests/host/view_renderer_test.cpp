#include "support/test_gl.h"
#include "view/draw_recorder.h"
#include "view/projection.h"
#include "view/view_renderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace host::test {
namespace {

constexpr Int32 kSide = 64;
const Vector kRed(1, 0, 0), kGreen(0, 1, 0), kBlue(0, 0, 1);

// Looks along z from the origin: at depth 1 a pixel is a 64th of a unit.
ViewFrame squareFrame(bool perspective = true)
{
    ViewFrame frame;
    frame.width = frame.height = kSide;
    frame.perspective = perspective;
    frame.pixelsPerUnit = perspective ? kSide : 1;
    return frame;
}

ViewFrame randomFrame(std::mt19937& random)
{
    std::uniform_real_distribution<Float> number(-1, 1);
    ViewFrame frame;
    frame.width = 100 + static_cast<Int32>(random() % 900);
    frame.height = 100 + static_cast<Int32>(random() % 900);
    frame.perspective = random() % 2;
    frame.pixelsPerUnit = frame.perspective ? frame.width * (1 + 0.5 * number(random)) : 3 + number(random);
    frame.worldFromCamera = CameraAxes(3 * number(random), 1.5 * number(random));
    frame.worldFromCamera.off = Vector(number(random), number(random), number(random)) * 1000.0;
    return frame;
}

TEST(Projection, EveryPixelHasOnePlaceAndCoversWhatItIsSaidToCover)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<Float> number(-1, 1);
    for (int round = 0; round < 200; ++round) {
        const ViewFrame frame = randomFrame(random);
        const Vector p(100 * number(random), 100 * number(random), 120 + 100 * number(random));
        const Vector screen = ScreenFromCamera(frame, p);
        ASSERT_LT(Len(CameraFromScreen(frame, screen) - p), 1e-9);

        const Float unit = UnitsPerPixel(frame, p.z);
        const Vector moved = ScreenFromCamera(frame, p + Vector(unit, unit, 0)) - screen;
        ASSERT_LT(Len(moved - Vector(1, -1, 0)), 1e-6) << "to the right and upwards";
    }
    EXPECT_EQ(ScreenFromCamera(squareFrame(), Vector(0, 0, 5)), Vector(32, 32, 5)) << "the middle of the frame";
    EXPECT_LT(UnitsPerPixel(squareFrame(), -3), 0) << "behind the viewer no pixel has a size";
    EXPECT_EQ(UnitsPerPixel(squareFrame(false), -3), UnitsPerPixel(squareFrame(false), 7));
}

TEST(Projection, AFramedBoxFillsTheFrameAndStaysInIt)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<Float> number(-1, 1);
    for (int round = 0; round < 200; ++round) {
        ViewFrame frame = randomFrame(random);
        Extent extent;
        const Vector middle(100 * number(random), 100 * number(random), 100 * number(random));
        extent.add(Matrix(), middle, Vector(-30 - 20 * number(random), 30, -1)); // radii may be negative
        Framing framing(frame, extent);
        for (int i = 0; i < 8; ++i) framing.add(extent.corner(i));
        frame = framing.framed(1);

        Float reach = 0;
        const Vector size(frame.width, frame.height, 0);
        for (int i = 0; i < 8; ++i) {
            const Vector corner = ~frame.worldFromCamera * extent.corner(i);
            ASSERT_GT(corner.z, 0) << "in front of the viewer";
            const Vector screen = ScreenFromCamera(frame, corner);
            reach = std::max({reach, std::abs(2 * screen.x / size.x - 1), std::abs(2 * screen.y / size.y - 1)});
        }
        ASSERT_LE(reach, 1);
        ASSERT_GE(reach, 0.89);

        const ViewFrame farther = framing.framed(2);
        const auto units = [&](const ViewFrame& seen) {
            return UnitsPerPixel(seen, (~seen.worldFromCamera * middle).z);
        };
        ASSERT_NEAR(units(farther), 2 * units(frame), 1e-6 * units(frame));
    }
}

TEST(Projection, AxisViewsLookAlongTheirAxesWithoutMirroring)
{
    const std::pair<Int32, Vector> kViews[] = {{Pleft, {1, 0, 0}},  {Pright, {-1, 0, 0}}, {Pfront, {0, 0, 1}},
                                               {Pback, {0, 0, -1}}, {Ptop, {0, -1, 0}},   {Pbottom, {0, 1, 0}}};
    for (const auto& [projection, direction] : kViews) {
        Matrix axes;
        ASSERT_TRUE(AxisViewAxes(projection, axes));
        EXPECT_EQ(axes.v3, direction);
        EXPECT_EQ(Cross(axes.v1, axes.v2), axes.v3);
    }
    Matrix axes;
    EXPECT_FALSE(AxisViewAxes(Pperspective, axes));
    for (Float turn = -3; turn < 3; turn += 0.7) {
        const Matrix camera = CameraAxes(turn, 0.5);
        EXPECT_LT(Len(Cross(camera.v1, camera.v2) - camera.v3), 1e-12);
        EXPECT_NEAR(camera.v3.y, -std::sin(0.5), 1e-12) << "from above";
        EXPECT_NEAR(camera.v1.y, 0, 1e-12) << "upright";
    }
}

// Pictures of draw lists. Where the system has no OpenGL, the tests say so and do nothing.
class ViewRendererTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string problem;
        context = CurrentTestContext(problem);
        if (!context) GTEST_SKIP() << problem;
        renderer = std::make_unique<ViewRenderer>();
    }
    void TearDown() override { renderer.reset(); }

    DrawList blackList(bool perspective = true)
    {
        DrawList list;
        list.frame = squareFrame(perspective);
        list.backdrop = {{0, 0, 0}, {0, 0, 0}};
        return list;
    }

    const ViewImage& draw(const DrawList& list)
    {
        std::string problem;
        EXPECT_TRUE(renderer->drawImage(list, image, problem)) << problem;
        EXPECT_EQ(image.pixels.size(), size_t{4} * kSide * kSide);
        image.pixels.resize(size_t{4} * kSide * kSide);
        return image;
    }

    // Red, green and blue as one number.
    uint32_t at(uint32_t x, uint32_t y) const
    {
        const uint8_t* pixel = image.pixel(x, y);
        return static_cast<uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
    }

    std::unique_ptr<GlContext> context;
    std::unique_ptr<ViewRenderer> renderer;
    ViewImage image;
};

// A square of the screen's plane at a depth, half as wide as the frame is there.
void addSquare(DrawRecorder& recorder, Float depth, const Vector& color)
{
    const Float r = depth / 4;
    const Vector corners[] = {{-r, -r, depth}, {r, -r, depth}, {r, r, depth}, {-r, r, depth}};
    const Vector colors[] = {color, color, color, color};
    recorder.polygon(corners, colors, 4);
}

TEST_F(ViewRendererTest, ATriangleIsWhereItShouldBe)
{
    for (const bool mirrored : {false, true}) {
        DrawList list = blackList();
        DrawRecorder recorder;
        recorder.begin(list);
        Vector corners[] = {{-1, 0, 2}, {0, 1, 2}, {-1, 1, 2}}; // the frame's upper left quarter, its upper left half
        if (mirrored) std::swap(corners[0], corners[1]);        // polygons are seen from both sides
        const Vector colors[] = {kRed, kRed, kRed};
        recorder.polygon(corners, colors, 3);
        draw(list);
        for (uint32_t y = 0; y < kSide; ++y) {
            for (uint32_t x = 0; x < kSide; ++x) {
                if (x + y == kSide / 2 - 1) continue; // the edge
                ASSERT_EQ(at(x, y), x + y < kSide / 2 - 1 ? 0xFF0000U : 0U) << x << ' ' << y;
            }
        }
    }
}

TEST_F(ViewRendererTest, WhatIsNearerHidesWhatIsFartherInAnyOrderAndOfAnyKind)
{
    for (const bool nearFirst : {true, false}) {
        DrawList list = blackList();
        for (const std::array<float, 3>& p :
             {std::array{-1.F, -1.F, 4.F}, {1.F, -1.F, 4.F}, {1.F, 1.F, 4.F}, {-1.F, 1.F, 4.F}})
            list.meshVertices.push_back({p, {0, 0, -1}});
        list.meshIndices = {0, 1, 2, 0, 2, 3};
        const DrawMesh mesh = list.closeMesh();
        DrawRecorder recorder;
        recorder.begin(list);
        if (nearFirst) addSquare(recorder, 2, kRed);
        recorder.mesh(mesh, kGreen, DrawColors::Display);
        if (!nearFirst) addSquare(recorder, 2, kRed);
        addSquare(recorder, 900, kBlue);
        recorder.setPointSize(6);
        const Vector32 behind(0, 0, 3), before(0, 0, 1);
        recorder.points(1, &behind, nullptr, 0);
        recorder.setPointSize(4);
        recorder.setPen(kBlue);
        recorder.points(1, &before, nullptr, 0);
        draw(list);
        EXPECT_EQ(at(20, 20), 0xFF0000U);
        EXPECT_EQ(at(29, 29), 0xFF0000U) << "the white point is behind";
        EXPECT_EQ(at(31, 31), 0x0000FFU) << "the blue one before";

        recorder.setDepth(false);
        addSquare(recorder, 3, kGreen);
        draw(list);
        EXPECT_EQ(at(32, 32), 0x00FF00U) << "without the test the last one shows";
    }
}

TEST_F(ViewRendererTest, DisplayColorsStayToTheBitAndLinearOnesAreConverted)
{
    DrawList list = blackList(false);
    DrawRecorder recorder;
    recorder.begin(list);
    recorder.setSpace(DrawSpace::Screen, Matrix());
    recorder.setDepth(false);
    for (int level = 0; level < 256; ++level) {
        const Float x = level % kSide, y = 2.0 * (level / kSide);
        const Vector corners[] = {{x, y, 0}, {x + 1, y, 0}, {x + 1, y + 1, 0}, {x, y + 1, 0}};
        const Vector color(level / 255.0);
        const Vector colors[] = {color, color, color, color};
        recorder.polygon(corners, colors, 4);
        const Vector32 place(static_cast<Float32>(x + 0.5), static_cast<Float32>(y + 20.5), 0);
        const auto light = static_cast<Float32>(
            level / 255.0 <= 0.04045 ? level / 255.0 / 12.92 : std::pow((level / 255.0 + 0.055) / 1.055, 2.4));
        const Float32 linear[] = {light, light, light};
        recorder.setPointSize(1);
        recorder.points(1, &place, linear, 3);
    }
    draw(list);
    for (uint32_t level = 0; level < 256; ++level) {
        const uint32_t x = level % kSide, y = 2 * (level / kSide);
        ASSERT_EQ(at(x, y), level * 0x010101U);
        ASSERT_EQ(at(x, y + 20), level * 0x010101U);
    }
}

TEST_F(ViewRendererTest, PointsAndLinesHaveTheirSizesInPixelsWhereTheyAreProjected)
{
    for (const bool perspective : {true, false}) {
        DrawList list = blackList(perspective);
        DrawRecorder recorder;
        recorder.begin(list);
        recorder.setPointSize(4);
        recorder.setPen(kRed);
        const Vector camera = CameraFromScreen(list.frame, Vector(10, 20, 50));
        const Vector32 point(camera);
        recorder.points(1, &point, nullptr, 0);
        recorder.setPen(kGreen);
        recorder.setParameter(DRAW_PARAMETER_LINEWIDTH, GeData(2.0));
        // From far away to behind the viewer, through the middle of row 40.
        const Vector ahead = CameraFromScreen(list.frame, Vector(32, 40, 50));
        recorder.line(ahead - Vector(20, 0, 0), ahead + Vector(20, 0, 0));
        draw(list);
        for (uint32_t y = 16; y < 24; ++y)
            for (uint32_t x = 6; x < 14; ++x)
                ASSERT_EQ(at(x, y), x >= 8 && x < 12 && y >= 18 && y < 22 ? 0xFF0000U : 0U) << x << ' ' << y;
        for (uint32_t y = 36; y < 44; ++y) ASSERT_EQ(at(32, y), y == 39 || y == 40 ? 0x00FF00U : 0U) << y;
    }

    DrawList list = blackList();
    DrawRecorder recorder;
    recorder.begin(list);
    recorder.line(Vector(0, -1, -5), Vector(0, -1, 100)); // passes below the viewer
    draw(list);
    EXPECT_NE(at(32, 60), 0U);
    EXPECT_NE(at(32, 36), 0U);
    for (uint32_t x = 0; x < kSide; x += x == 29 ? 5 : 1)
        ASSERT_EQ(at(x, 60) + at(x, 10), 0U) << "what is behind throws nothing into the picture";
}

TEST_F(ViewRendererTest, MeshesAreBrighterTowardsTheLightAndTheSameFromBothSides)
{
    uint32_t shown[3] = {};
    const std::array<float, 3> normals[] = {{0, 0, -1}, {0, 0, 1}, {0, 0, 0}};
    for (int i = 0; i < 3; ++i) {
        DrawList list = blackList();
        for (const std::array<float, 3>& p : {std::array{-9.F, -9.F, 4.F}, {9.F, -9.F, 4.F}, {0.F, 20.F, 4.F}})
            list.meshVertices.push_back({p, normals[i]});
        list.meshIndices = {0, 1, 2};
        DrawRecorder recorder;
        recorder.begin(list);
        recorder.mesh(list.closeMesh(), Vector(0.5), DrawColors::Linear);
        draw(list);
        shown[i] = at(32, 32) & 0xFF;
    }
    EXPECT_EQ(shown[0], shown[1]);
    EXPECT_NEAR(shown[0], shown[2], 1) << "the triangle's own normal";
    EXPECT_GT(shown[0], 120U);
}

TEST_F(ViewRendererTest, SizesBeyondTheDriverAreAnErrorAndTheNextPictureIsDrawn)
{
    DrawList list = blackList();
    list.frame.width = 1 << 20;
    std::string problem;
    EXPECT_FALSE(renderer->drawImage(list, image, problem));
    EXPECT_NE(problem.find("1048576 x 64"), std::string::npos) << problem;
    list = blackList();
    list.backdrop = {{0, 0, 1}, {0, 0, 1}};
    draw(list);
    EXPECT_EQ(at(5, 5), 0x0000FFU) << "an empty list shows the backdrop";
}

TEST(DrawRecorder, KeepsNonsenseFromTheDriver)
{
    DrawList list;
    DrawRecorder recorder;
    recorder.begin(list);
    recorder.setPointSize(std::nan(""));
    recorder.setParameter(DRAW_PARAMETER_LINEWIDTH, GeData(-1e300));
    recorder.setTransparency(200);
    recorder.line(Vector(), Vector(1));
    EXPECT_EQ(list.batches.back().state.size, 0.5F);
    EXPECT_NEAR(list.vertices[0].color[3], 55 / 255.0, 1e-6);
    recorder.end(); // calls without a redraw reach nothing
    const size_t before = list.vertices.size();
    recorder.line(Vector(), Vector(1));
    const Vector32 point;
    recorder.points(1, &point, nullptr, 0);
    EXPECT_EQ(list.vertices.size(), before);
}

} // namespace
} // namespace host::test
