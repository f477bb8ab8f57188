#include "geolib/geo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace geolib::test {
namespace {

// What stands in the file; each field may be replaced.
struct GeoText {
    std::string first = "PGEOMETRY V5\n";
    std::string counts = "NPoints 3 NPrims 2\nNPointGroups 0 NPrimGroups 0\n";
    std::string attributeCounts = "NPointAttrib 2 NVertexAttrib 1 NPrimAttrib 1 NAttrib 0 extra words\n";
    std::string pointAttributes = "PointAttrib\nocc 1 float 0.5\nN 3 vector 0 1 0\n";
    std::string points = "0 1e2 -.5 1 (0.25 1 2 3)\n1 2 3 0.5 (1 4 5 6)\n+7 8 9 1 (0 7 8 9)\n";
    std::string vertexAttributes = "VertexAttrib\nradius 1 float 2\n";
    std::string primitiveAttributes = "PrimitiveAttrib\nkind 1 float 9\n";
    std::string primitives = "Run 2 Poly\n 3 : 0 (4) 1 (5) 2 (6) [1]\n 2 < 2 (7) -9 (8) [2]\n";
    std::string behind = "beginExtra\nendExtra\n";

    std::string text() const
    {
        return first + counts + attributeCounts + pointAttributes + points + vertexAttributes + primitiveAttributes +
               primitives + behind;
    }
};

struct ReadGeo : Geo {
    explicit ReadGeo(const std::string& text)
    {
        std::istringstream stream(text);
        complete = read(stream);
    }
    explicit ReadGeo(const GeoText& text) : ReadGeo(text.text()) {}
    bool complete;
};

std::string primitivesOf(const Geo& geo)
{
    std::ostringstream text;
    for (const auto& primitive : geo.primitives) primitive->write(text << (text.tellp() > 0 ? "; " : ""));
    return text.str();
}

} // namespace

TEST(Geo, ReadsPointsAttributesAndPolygons)
{
    const ReadGeo geo(GeoText{});
    ASSERT_TRUE(geo.complete);
    ASSERT_EQ(geo.points.size(), 3u);
    EXPECT_EQ(geo.points[0], (std::array<float, 4>{0, 100, -0.5F, 1}));
    EXPECT_EQ(geo.points[1][3], 0.5F);
    EXPECT_EQ(geo.points[2][0], 7);
    EXPECT_EQ(primitivesOf(geo), "Poly 3 : 0 1 2; Poly 2 < 2 -9");
    EXPECT_EQ(geo.primitives[1]->vertexIndex(1), -9);
    geo.primitives[1]->setVertexIndex(1, 1);
    EXPECT_EQ(primitivesOf(geo), "Poly 3 : 0 1 2; Poly 2 < 2 1");

    const size_t normal = geo.findAttribute(AttributeClass::Point, "N");
    ASSERT_EQ(normal, 1u);
    EXPECT_EQ(geo.attributes(AttributeClass::Point)[normal].type, "vector");
    EXPECT_EQ(geo.pointValue(normal, 2), (AttributeValue{7, 8, 9, 0}));
    EXPECT_EQ(geo.pointValue(0, 0)[0], 0.25F);
    EXPECT_EQ(geo.findAttribute(AttributeClass::Vertex, "N"), kNoAttribute);
    for (size_t vertex = 0; vertex < 5; ++vertex)
        EXPECT_EQ(geo.value(AttributeClass::Vertex, 0, vertex)[0], static_cast<float>(4 + vertex));
    EXPECT_EQ(geo.value(AttributeClass::Primitive, 0, 1)[0], 2);
}

TEST(Geo, TakesWhatIsLikelyAndRefusesWhatIsWrong)
{
    struct Row {
        const char* what;
        std::string GeoText::*field;
        std::string text;
        bool complete;
        const char* primitives; // what is there in the end
    };
    const char* const kBoth = "Poly 3 : 0 1 2; Poly 2 < 2 -9";
    const Row rows[] = {
        {"trailing blank", &GeoText::first, "PGEOMETRY V5 \n", false, ""},
        {"another version", &GeoText::first, "PGEOMETRY V6\n", false, ""},
        {"JSON", &GeoText::first, "[\n\"fileversion\",\"16.0\"\n", false, ""},
        {"other line ends", &GeoText::first, "PGEOMETRY V5\r\n", true, kBoth},
        {"pairs turned", &GeoText::counts, "NPrims 2 NPoints 3 NPrimGroups 1\nNPointGroups 4\n", true, kBoth},
        {"a name twice", &GeoText::counts, "NPoints 2 NPoints 3 NPointGroups 0 NPrimGroups 0\n", false, ""},
        {"pair in another group", &GeoText::counts, "NPoints 3 NPointGroups 0 NPrims 2 NPrimGroups 0\n", false, ""},
        {"negative count", &GeoText::counts, "NPoints 3 NPrims -2\nNPointGroups 0 NPrimGroups 0\n", false, ""},
        {"count of 64 bits", &GeoText::counts, "NPoints 3 NPrims 4294967298 NPointGroups 0 NPrimGroups 0\n", false, ""},
        {"more than is there", &GeoText::counts, "NPoints 3 NPrims 2147483647 NPointGroups 0 NPrimGroups 0\n", false,
         kBoth},
        {"unread kinds of attributes", &GeoText::attributeCounts,
         "NAttrib 7 NPrimAttrib 1 NVertexAttrib 1 NPointAttrib 2\n", true, kBoth},
        {"wrong section", &GeoText::pointAttributes, "PointAttribs\nocc 1 float 0.5\nN 3 vector 0 1 0\n", false, ""},
        {"no default", &GeoText::pointAttributes, "PointAttrib\nocc 2147483647 float 0.5\nN 3 vector 0\n", false, ""},
        {"no components", &GeoText::pointAttributes, "PointAttrib\nocc -1 float\nN 3 vector 0 1 0\n", false, ""},
        {"point without w", &GeoText::points, "0 0 0 (1 2 3 4)\n0 0 0 1\n0 0 0 1\n", false, ""},
        {"words at a point", &GeoText::points, "0 0 0 1(1 2 3 4) and more\n0 0 0 1x\n0 0 0 1\n", false, ""},
        {"all in one line", &GeoText::primitives, "Poly 3 : 0 1 2 []\nPoly 2 < 2(1)-9(2)[3]\n", true, kBoth},
        {"over the lines", &GeoText::primitives, "Run 1\nPoly 3\n:\n0\n1 2\nRun 0 Poly Poly 2 < 2 -9", true, kBoth},
        {"more in the run", &GeoText::primitives, "Run 3 Poly\n3 : 0 1 2\n2 < 2 -9\n1 : 5\n", true,
         "Poly 3 : 0 1 2; Poly 2 < 2 -9; Poly 1 : 5"},
        {"shorter run", &GeoText::primitives, "Run 1 Poly\n3 : 0 1 2\n2 < 2 -9\n", false, "Poly 3 : 0 1 2"},
        {"negative run", &GeoText::primitives, "Run -2 Poly\n3 : 0 1 2\n2 < 2 -9\n", false, ""},
        {"run of others", &GeoText::primitives, "Run 2 Sphere\n3 : 0 1 2\n2 < 2 -9\n", false, ""},
        {"neither open nor closed", &GeoText::primitives, "Poly 3 : 0 1 2\nPoly 2 > 2 -9\n", false, "Poly 3 : 0 1 2"},
        {"glued sign", &GeoText::primitives, "Poly 3 :0 1 2\nPoly 2 < 2 -9\n", false, ""},
        {"negative vertex count", &GeoText::primitives, "Poly -3 : 0 1 2\nPoly 2 < 2 -9\n", false, ""},
        {"huge vertex count", &GeoText::primitives, "Poly 2147483647 : 0 1 2\nPoly 2 < 2 -9\n", false, ""},
        {"index of 64 bits", &GeoText::primitives, "Poly 2 : 0 4294967296\nPoly 2 < 2 -9\n", false, ""},
        {"cut", &GeoText::primitives, "Poly 3 : 0 1 2\nPoly 2 < 2", false, "Poly 3 : 0 1 2"},
        {"anything behind", &GeoText::behind, std::string(9000, '\xFF'), true, kBoth},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        GeoText text;
        text.behind.clear();
        text.*row.field = row.text;
        const ReadGeo geo(text);
        EXPECT_EQ(geo.complete, row.complete);
        EXPECT_EQ(primitivesOf(geo), row.primitives);
    }
    std::istringstream failed("PGEOMETRY V5\n");
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(Geo().read(failed));
}

TEST(Geo, KeepsFourComponentsAndFillsUpWithDefaults)
{
    GeoText text;
    text.attributeCounts = "NPointAttrib 4 NVertexAttrib 0 NPrimAttrib 0 NAttrib 0\n";
    text.pointAttributes = "PointAttrib\n\"two words\" 1 index 2 first second\nbig 6 float 1 2 3 4 5 6\n"
                           "box 2 float [1 2] \"3 4\"\nlast 1 float 1e999 -1e999\n";
    text.points = "0 0 0 1 (\"a b\" 10 20 30 40 50 60 [7 7] 8 -1e-999)\n0 0 0 1 ((3 10 20\n0 0 0 nan (" +
                  std::string(5000, ' ') + "0x10 +5 -1e400 1e-400 1,5)\n";
    text.vertexAttributes = text.primitiveAttributes = "";
    text.primitives = "Run 2 Poly 1 : 0 1 : 0";
    const ReadGeo geo(text);
    ASSERT_TRUE(geo.complete);
    EXPECT_EQ(geo.attributes(AttributeClass::Point)[0].defaults[0], 2);
    const size_t big = geo.findAttribute(AttributeClass::Point, "big");
    ASSERT_EQ(big, 1u);
    EXPECT_EQ(geo.pointValue(0, 0)[0], 0); // a text is no number
    EXPECT_EQ(geo.pointValue(big, 0), (AttributeValue{10, 20, 30, 40}));
    EXPECT_EQ(geo.pointValue(2, 0), (AttributeValue{0, 8, 0, 0}));
    EXPECT_EQ(geo.pointValue(3, 0)[0], 0);
    EXPECT_EQ(geo.pointValue(big, 1), (AttributeValue{10, 20, 3, 4}));
    EXPECT_EQ(geo.pointValue(3, 1)[0], INFINITY);
    EXPECT_TRUE(std::isnan(geo.points[2][3]));
    EXPECT_EQ(geo.pointValue(0, 2)[0], 0);
    EXPECT_EQ(geo.pointValue(big, 2), (AttributeValue{5, -INFINITY, 0, 1}));
}

TEST(Geo, ReadsOnWhereLinesAreLongerThanAPiece)
{
    GeoText text;
    std::string corners, values;
    for (int i = 0; i < 3000; ++i) corners += std::to_string(i) + " (" + std::to_string(i % 7) + ") ";
    text.primitives = "Run 2 Poly\n3000 : " + corners + "[" + std::string(6000, ' ') + "5]\n 1 : 1\n";
    const ReadGeo geo(text);
    ASSERT_TRUE(geo.complete);
    EXPECT_EQ(geo.primitives[0]->vertexIndex(2999), 2999);
    EXPECT_EQ(geo.value(AttributeClass::Vertex, 0, 2999)[0], 2999 % 7);
    EXPECT_EQ(geo.value(AttributeClass::Primitive, 0, 0)[0], 5);
    EXPECT_EQ(geo.value(AttributeClass::Primitive, 0, 1)[0], 9);
    EXPECT_EQ(geo.lastLine, 18u);
}

TEST(Geo, DefinitionsCostNothingPerElement)
{
    constexpr int kAttributes = 20000, kPoints = 20000; // a full table of their values would take 6 GB
    GeoText text;
    text.counts = "NPoints " + std::to_string(kPoints) + " NPrims 0 NPointGroups 0 NPrimGroups 0\n";
    text.attributeCounts = "NPointAttrib " + std::to_string(kAttributes) + " NVertexAttrib 0 NPrimAttrib 0 NAttrib 0\n";
    text.pointAttributes = "PointAttrib\n";
    for (int i = 0; i < kAttributes; ++i) text.pointAttributes += "a 4 f 1 2 3 4\n";
    text.points.clear();
    for (int i = 0; i < kPoints; ++i) text.points += "0 0 0 1 (5)\n";
    text.vertexAttributes = text.primitiveAttributes = text.primitives = "";
    const ReadGeo geo(text);
    ASSERT_TRUE(geo.complete);
    EXPECT_EQ(geo.values[0].components.size(), static_cast<size_t>(kPoints));
    EXPECT_EQ(geo.pointValue(0, kPoints - 1), (AttributeValue{5, 2, 3, 4}));
    EXPECT_EQ(geo.pointValue(kAttributes - 1, kPoints - 1), (AttributeValue{1, 2, 3, 4}));
}

} // namespace geolib::test
