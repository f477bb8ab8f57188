#include "ddoc.h"
#include "plant/c4d_draw_helper.h"
#include "support/colour_space.h"
#include "support/test_host.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::FloatNear;
using vdt::Color3f;
using vdt::Vector3;

TEST(DrawHelper, KeepsPolylinesInTheHostsWorld)
{
    C4dDrawHelper helper;
    helper.scale = 10;
    const Vector3 bend[] = {{0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 1, 0.5}};
    const Color3f colours[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}};
    const double radii[] = {0.25, 0.5, 0.125, 0};
    EXPECT_TRUE(helper.AddPolyline(bend, colours, radii));
    EXPECT_TRUE(helper.AddPolyline({bend, 1}, {colours, 1}, {radii, 1}));
    EXPECT_TRUE(helper.AddPolyline({}, {}, {}));

    ASSERT_EQ(helper.polylines.size(), 3u);
    EXPECT_EQ(helper.polylines[0].count, 4u);
    EXPECT_EQ(helper.polylines[0].maxRadius, 5);
    EXPECT_EQ(helper.polylines[1].maxRadius, 2.5);
    EXPECT_EQ(helper.polylines[2].maxRadius, 0);
    ASSERT_EQ(helper.nodes.size(), 5u);
    const double half = std::sqrt(0.5);
    const Vector tangents[] = {{0, 1, 0}, {0, half, -half}, {0, 0, -1}, {0, 0, 1}, {0, 0, 0}};
    for (size_t i = 0; i < 5; ++i) EXPECT_LT((helper.nodes[i].tangent - tangents[i]).GetLength(), 1e-12) << i;
    EXPECT_EQ(helper.nodes[2].position, Vector(0, 10, -10));
    EXPECT_EQ(helper.nodes[2].radius, 1.25);
    EXPECT_EQ(helper.nodes[1].colour, Vector32(0, 1, 0));
}

TEST(DrawHelper, KeepsPointsLinearAndStartsAnewForEachCloud)
{
    C4dDrawHelper helper;
    helper.scale = 2;
    for (const double area : {1.0, 0.5}) {
        EXPECT_TRUE(helper.BeginPoints(4, area));
        EXPECT_TRUE(helper.AddDrawPoint({1, 2, 3}, {0.2F, 0, 1}));
    }
    EXPECT_EQ(helper.meanArea, 0.5);
    ASSERT_EQ(helper.points.size(), 1u);
    EXPECT_EQ(helper.points[0], Vector32(2, 4, -6));
    EXPECT_THAT(helper.pointColours, ElementsAre(FloatNear(0.033105F, 1e-6F), 0.0F, FloatNear(1, 1e-6F)));
}

TEST(ColourSpace, IsWhatTheDocumentsNumbersAre)
{
    const host::test::TestHost host;
    EXPECT_EQ(DocumentColourSpace(nullptr), ColourSpace::Linear);
    BaseDocument* document = BaseDocument::Alloc();
    EXPECT_EQ(DocumentColourSpace(document), ColourSpace::Srgb); // a new document shows what was typed in
    BaseContainer* settings = document->GetDataInstance();
    settings->SetInt32(DOCUMENT_COLORPROFILE, DOCUMENT_COLORPROFILE_LINEAR);
    EXPECT_EQ(DocumentColourSpace(document), ColourSpace::Linear);
    settings->SetBool(DOCUMENT_LINEARWORKFLOW, false);
    EXPECT_EQ(DocumentColourSpace(document), ColourSpace::Srgb);
    BaseDocument::Free(document);

    const Vector leaf(0.3, 0.7, 0.27);
    EXPECT_LT((SrgbToParameter(leaf, ColourSpace::Linear) - Vector(0.073239, 0.447988, 0.059254)).GetLength(), 1e-6);
    EXPECT_EQ(SrgbToParameter(leaf, ColourSpace::Srgb), leaf);
    EXPECT_NEAR(ParameterToSrgb(Vector(0.2), ColourSpace::Linear).y, 0.484529, 1e-6);
    EXPECT_EQ(ParameterToSrgb(leaf, ColourSpace::Srgb), leaf);
}

} // namespace
