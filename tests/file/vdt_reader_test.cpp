#include "support/gzip.h"
#include "support/model_text.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vdt::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

constexpr const char* kMissing = "Verdanth file version missing!";
constexpr const char* kMalformed = "Malformed Verdanth file version!";
constexpr const char* kTooNew = "Verdanth file cannot be read since it seems to be exported from a newer version!";
constexpr const char* kLabel = "Empty label or label without proper language attribute specified!";
constexpr const char* kModelLabel = "Empty label or label without language attribute specified!";

MaterialData readMaterial(const std::string& attributes, const std::string& content)
{
    ReadModel read = readPlant("<materials><material " + attributes + ">" + content + "</material></materials>");
    return read.model.materials.at(0);
}

} // namespace

TEST(VdtReader, JudgesTheVersionAndReadsOn)
{
    struct Row {
        const char* attribute;
        Texts errors;
    };
    const Row rows[] = {
        {"version=\"0.0\"", {}},
        {"version=\"1.2\"", {}},
        {"version=\" +1. 2x\"", {}},
        {"version=\"1.3\"", {kTooNew}},
        {"version=\"2.0\"", {kTooNew}},
        {"version=\"1\"", {kMalformed}},
        {"version=\"1.\"", {kMalformed}},
        {"version=\"one\"", {kMalformed}},
        {"version=\"7\"", {kMalformed, kTooNew}},
        {"version=\"\"", {kMissing, kMalformed}},
        {"", {kMissing, kMalformed}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.attribute);
        const ReadModel read = readText(std::string("<verdanth ") + row.attribute + "><plant name=\"x\"/></verdanth>");
        EXPECT_EQ(read.messages.errors, row.errors);
        EXPECT_EQ(read.model.name, "x");
    }
}

TEST(VdtReader, NamesTextsAndColours)
{
    const ReadModel read = readText(
        "<verdanth version=\"1.0\" creator=\"c\" user=\"u\" timestamp=\"t\" source=\"s\">"
        "<plant unit=\"meters\" name=\"first\"><name>Quercus robur</name>"
        "<label lang=\"DE\">Eiche</label><label lang=\"de\">Baum</label><label lang=\"en-us\">oak</label>"
        "<meta><description lang=\"en\">tall</description><description lang=\"fr\"></description></meta>"
        "<colors><wood season=\"summer\"> .1 .2\n.3 </wood><wood>1 2 3 4</wood>"
        "<foliage season=\"s\">1 1</foliage><foliage season=\"s\">1 2 3</foliage><foliage season=\"s\">4 5 6</foliage>"
        "</colors><thumbnail><name>nobody</name></thumbnail></plant></verdanth>");
    EXPECT_EQ(read.model.unit, kMeters);
    EXPECT_EQ(read.model.name, "Quercus robur");
    EXPECT_EQ(read.model.info, (FileInfo{"c", "u", "t", "s"}));
    EXPECT_EQ(read.model.labels, (LocalizedTexts{{"de", "Eiche"}, {"en-US", "oak"}}));
    EXPECT_EQ(read.model.descriptions, (LocalizedTexts{{"en", "tall"}}));
    EXPECT_EQ(read.model.woodColors, (SeasonColors{{"", {1, 2, 3, 4}}, {"summer", {0.1f, 0.2f, 0.3f, 1}}}));
    EXPECT_EQ(read.model.foliageColors, (SeasonColors{{"s", {4, 5, 6, 1}}}));
    EXPECT_THAT(read.messages.warnings, ElementsAre("Foliage color has wrong argument count (2)!"));
    EXPECT_THAT(read.losses, ElementsAre("A second text in the language \"de\" is left out."));
}

TEST(VdtReader, ReportsLabelsItCannotStore)
{
    struct Row {
        const char* content;
        Texts warnings;
    };
    const Row rows[] = {
        {"<label>x</label>", {kLabel}},
        {"<label lang=\"german\">x</label>", {kLabel}},
        {"<label lang=\"de\"/>", {kLabel}},
        {"<model><label>x</label></model>", {kModelLabel}},
        {"<model><qualifiers><qualifier><label>x</label></qualifier></qualifiers></model>", {kLabel}},
        {"<meta><description>x</description></meta>", {"Description without proper language attribute specified!"}},
        {"<meta><description lang=\"de\"/></meta>", {}},
        {"<colors><wood>1</wood></colors>", {"Wood color has wrong argument count (1)!"}},
        {"<model><bound>1 2 3 4 5 6 7</bound></model>",
         {"Invalid bounding volume value count, found 7 values, expected 6!"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.content);
        EXPECT_EQ(readPlant(row.content).messages.warnings, row.warnings);
    }
}

TEST(VdtReader, compatibility_TextOfAReportedLabelIsKeptForTheNext)
{
    const ReadModel read = readPlant("<label>lost </label><label lang=\"en\">oak</label>"
                                     "<model><name>stray </name><label lang=\"en\">tree</label></model>");
    EXPECT_EQ(read.model.labels.at("en"), "lost oak");
    EXPECT_EQ(read.model.variants.at(0).labels.at("en"), "stray tree");
}

TEST(VdtReader, VariantsAndQualifiers)
{
    const ReadModel read = readPlant(
        "<model name=\"young\" default=\"1\" extref=\"a.vdt\"><bound>1 2 3 4 5 6</bound></model>"
        "<model default=\"TRUE\"><qualifiers default=\"-7\"><qualifier id=\"3\" name=\"x\"><name>summer</name>"
        "<label lang=\"en\">Summer</label></qualifier><qualifier id=\"-7\"/></qualifiers></model>"
        "<model default=\"yes\"><qualifiers default=\"99999999999\"><qualifier id=\"1\"/></qualifiers></model>"
        "<model><qualifiers/></model>");
    const auto& variants = read.model.variants;
    ASSERT_EQ(variants.size(), 4u);
    EXPECT_EQ(read.model.defaultVariant, 1u) << "of two defaults the later one counts";
    EXPECT_EQ(variants[0].extref, "a.vdt");
    EXPECT_EQ(variants[0].bound, (Box{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(variants[1].name, "") << "nothing leaks from one variant to the next";
    EXPECT_TRUE(variants[1].bound.isEmpty());
    EXPECT_EQ(variants[1].qualifiers.at(0), (Qualifier{3, "summer", {{"en", "Summer"}}}));
    EXPECT_EQ(variants[1].defaultQualifier, 1u);
    EXPECT_EQ(variants[2].defaultQualifier, 0u);
    EXPECT_THAT(read.messages.warnings,
                ElementsAre("Unknown default qualifier given (99999999999)!", "Unknown default qualifier given (0)!"));
}

TEST(VdtReader, AVariantWithoutAPlantTakesTheFilesInfo)
{
    const ReadModel read =
        readText("<verdanth version=\"1.0\" creator=\"c\"><materials><material/></materials><model/></verdanth>");
    EXPECT_EQ(read.model.variants.at(0).info.creator, "c");
    EXPECT_EQ(read.model.info.creator, "");
    EXPECT_TRUE(read.model.materials.empty());
}

TEST(VdtReader, MaterialSides)
{
    enum class Back { None, Front, Own };
    struct Row {
        const char* attributes;
        const char* content;
        Back back;
        float backRed; // of a back of its own
    };
    const Row rows[] = {
        {"", "", Back::None, 0},
        {"", "<front><diffuse color=\"1 0 0\"/></front>", Back::None, 0},
        {"sides=\"1\"", "<diffuse/>", Back::Front, 0},
        {"sides=\"1\"", "<bump/>", Back::Front, 0},
        {"sides=\"2\"", "", Back::Front, 0},
        {"sides=\"2\"", "<back><specular color=\"1\"/></back>", Back::Front, 0},
        {"", "<back><specular color=\"1\"/></back>", Back::None, 0},
        {"", "<diffuse color=\"1 1 1\"/><back><diffuse/></back>", Back::Own, 0.85f},
        {"", "<back><diffuse color=\"0.5 x\"/><normal/></back><diffuse/>", Back::Own, 0.5f},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.attributes) + row.content);
        const MaterialData material = readMaterial(row.attributes, row.content);
        const Back back = !material.back() ? Back::None : material.hasSeparateBack() ? Back::Own : Back::Front;
        EXPECT_EQ(back, row.back);
        const float backRed = material.hasSeparateBack() ? material.back()->diffuseColor.r : 0;
        EXPECT_EQ(backRed, row.backRed);
    }
}

TEST(VdtReader, MaterialFields)
{
    const MaterialData material = readMaterial(
        "matid=\"-3\" name=\"leaf\" alpha=\"1\" name=\"last\"",
        "<front><diffuse color=\"0.1 0.2\" texture=\"d\" roughness=\"0.5x\"/><specular texture=\"s\" roughness=\"y\"/>"
        "<bump texture=\"b\" strength=\"2\"/><normal texture=\"n\"/></front><alpha texture=\"lost\"/>"
        "<displacement texture=\"h\" height=\"3\" centered=\"false\"/>"
        "<subsurface texture=\"t\" depth=\"4\" color=\"1 2 3 4\"/>");
    EXPECT_EQ(material.matid, -3);
    EXPECT_EQ(material.name, "last");
    EXPECT_EQ(material.alphaTexture, "d");
    EXPECT_EQ(material.front, (MaterialSide{{0.1f, 0.2f, 0.85f}, "d", 0.5f, {}, "s", 0, "n", "b", 2}));
    EXPECT_EQ(material.displacementTexture, "h");
    EXPECT_EQ(material.displacementHeight, 3);
    EXPECT_FALSE(material.displacementCentered);
    EXPECT_EQ(material.subsurfaceColor, (Color3f{1, 2, 3}));
    for (const auto& [text, centered] : {std::pair{"1", true}, {"0", false}, {"x", false}, {"", false}, {"true", true}})
        EXPECT_EQ(readMaterial("", std::string("<displacement centered=\"") + text + "\"/>").displacementCentered,
                  centered)
            << text;
}

TEST(VdtReader, SkeletonWithItsAttributes)
{
    const ReadModel read = readPlant(
        "<model><skeleton><points>0 0 0 0 1 0 0 2 0 1 1 1 9</points>"
        "<attrib name=\"occ\" type=\"float\">.5 .25 0 1</attrib>"
        "<polylines color=\"ignored\"><nvertices>3 2</nvertices><vertices>0 1 2 1 3</vertices>"
        "<attrib name=\"matid\" type=\"int\" storageclass=\"primitive\">4 5</attrib>"
        "<attrib name=\"radius\" type=\"float\" storageclass=\"vertex\">.3 .2 .1</attrib>"
        "<attrib name=\"tex_v\" type=\"float\" storageclass=\"vertex\">1 2 3 4</attrib>"
        "<attrib name=\"orient\" type=\"float4\" storageclass=\"vertex\">0 0 0 1 0 0 0 1 0 0 0 1 0 0 0 1 1 2 3 4"
        "</attrib></polylines>"
        "<connectors><vertices>3 2</vertices>"
        "<attrib name=\"scale\" type=\"float\" storageclass=\"vertex\">.1 2</attrib>"
        "<attrib name=\"group\" type=\"int\" storageclass=\"point\">7 8</attrib></connectors></skeleton></model>");
    EXPECT_THAT(read.messages.warnings, IsEmpty());
    const Skeleton& skeleton = read.model.variants.at(0).skeleton;
    ASSERT_EQ(skeleton.points.size(), 4u);
    EXPECT_EQ(skeleton.points[3].restPosition, (Vector3{1, 1, 1}));
    EXPECT_EQ(skeleton.points[1].weight, 0.25f);
    ASSERT_EQ(skeleton.branches.size(), 2u);
    EXPECT_EQ(skeleton.branches[1].matid, 5);
    const SkeletonVertex* last = skeleton.branches[1].firstVertex->next;
    EXPECT_EQ(last->attributes.radius, 1.0) << "a radius that is missing";
    EXPECT_EQ(last->attributes.tex_v, 0.0f) << "a list of a wrong count is absent";
    EXPECT_EQ(last->attributes.orient, (Quaternion{1, 2, 3, 4}));
    EXPECT_EQ(skeleton.branches[0].firstVertex->next->attributes.radius, 0.2) << "not narrowed to a float";
    ASSERT_EQ(skeleton.connectors.size(), 2u);
    EXPECT_EQ(skeleton.connectors[1].attributes.scale, 2.0);
    EXPECT_EQ(skeleton.connectors[1].attributes.group, 0) << "a wrong storage class";
    EXPECT_EQ(read.losses.size(), 5u) << "points, polylines' color, tex_v, radius, group";
}

TEST(VdtReader, MeshesAndProxies)
{
    const std::string quad = "<points>0 0 0 1 0 0 1 1 0 0 1 0</points><polygons><nvertices>4 3</nvertices>"
                             "<vertices>0 1 2 3 0 1 2</vertices>"
                             "<attrib name=\"matid\" type=\"int\" storageclass=\"primitive\">6 7</attrib>"
                             "<attrib name=\"tex\" type=\"float2\" storageclass=\"vertex\">"
                             "0 0 1 0 1 1 0 1 .5 .5 1 1 0 0</attrib></polygons>";
    const ReadModel read = readPlant("<model><mesh name=\"leaf\" group=\"2\" qualifier=\"summer\">" + quad +
                                     "</mesh><proxy><mesh>" + quad + "</mesh></proxy><mesh/></model>");
    const ModelVariant& variant = read.model.variants.at(0);
    ASSERT_EQ(variant.meshes.size(), 2u);
    EXPECT_EQ(variant.meshes[0].group, 2);
    EXPECT_EQ(variant.meshes[0].qualifier, "summer");
    const Mesh& mesh = *variant.meshes[0].mesh;
    EXPECT_EQ(mesh.name, "leaf");
    EXPECT_THAT(mesh.polygonEnds, ElementsAre(4, 7));
    EXPECT_THAT(mesh.materials, ElementsAre(6, 7));
    EXPECT_EQ(mesh.coordinates.size(), 7u) << "one a corner, none shared";
    EXPECT_EQ(mesh.coordinates[4], (Vector2f{0.5f, 0.5f}));
    EXPECT_EQ(mesh.normals[0], (Vector3{0, 0, 1}));
    ASSERT_EQ(variant.proxies.size(), 1u);
    EXPECT_EQ(variant.proxies[0].qualifier, "") << "group and qualifier start afresh";
    EXPECT_EQ(variant.proxies[0].mesh.PolygonCount(), 2u);
}

TEST(VdtReader, LeavesOutWhatRefersToNothing)
{
    const ReadModel read = readPlant(
        "<model><skeleton><points>0 0 0 0 1 0</points>"
        "<polylines><nvertices>2 -1 3 5</nvertices><vertices>0 1 0 2 -1 1</vertices></polylines>"
        "<connectors><vertices>5 1 -1 0</vertices>"
        "<attrib name=\"group\" type=\"int\" storageclass=\"vertex\">1 2 3 4</attrib></connectors>"
        "<points>9 9 9</points></skeleton>"
        "<mesh><points>0 0 0</points><polygons><nvertices>3 1 3</nvertices><vertices>0 0 1 0 0 0</vertices></polygons>"
        "</mesh></model>");
    const ModelVariant& variant = read.model.variants.at(0);
    EXPECT_EQ(variant.skeleton.points.size(), 2u);
    std::vector<uint64_t> counts;
    for (const SkeletonBranch& branch : variant.skeleton.branches) counts.push_back(branch.vertexCount);
    EXPECT_THAT(counts, ElementsAre(2, 0, 1, 1));
    ASSERT_EQ(variant.skeleton.connectors.size(), 2u);
    EXPECT_EQ(variant.skeleton.connectors[0].attributes.group, 2) << "attributes stay with their connectors";
    EXPECT_EQ(variant.meshes.at(0).mesh->PolygonCount(), 1u);
    EXPECT_THAT(read.messages.warnings,
                ElementsAre(testing::StartsWith("7 vertices of polylines are left out"),
                            testing::StartsWith("2 connectors are left out"),
                            "A skeleton has a second, shorter list of points; the points behind it stay!",
                            testing::StartsWith("2 polygons are left out")));
}

TEST(VdtReader, SecondListsOfConnectorsReplaceTheFirst)
{
    const ReadModel read = readPlant("<model><skeleton><points>0 0 0 0 1 0</points>"
                                     "<connectors><vertices>0 0 0 1</vertices></connectors>"
                                     "<connectors><vertices>1</vertices></connectors></skeleton></model>");
    const Skeleton& skeleton = read.model.variants.at(0).skeleton;
    EXPECT_EQ(skeleton.connectors.size(), 1u);
    EXPECT_EQ(skeleton.ConnectorCount(0), 0u);
    EXPECT_EQ(skeleton.ConnectorCount(1), 1u);
}

TEST(VdtReader, ReadsFilesPlainAndCompressedWithPathsOfTheirFolder)
{
    const std::string text =
        "<verdanth version=\"1.0\"><plant><materials><material><diffuse texture=\"../tex/a.png\"/>"
        "<alpha texture=\"C:\\b.png\"/></material></materials><model extref=\"m\\x.vdt\"/></plant></verdanth>";
    const TemporaryFolder folder;
    const std::string names[] = {folder.write("oak/oak.vdt", text), folder.write("oak/oak.vdt.gz", Gzip(text)),
                                 folder.path("oak\\oak.vdt")};
    for (const std::string& name : names) {
        RecordingMessages messages;
        Model model;
        ASSERT_TRUE(VdtReader(model, messages).readFile(name));
        EXPECT_EQ(model.materials.at(0).front.diffuseTexture, folder.path("tex/a.png"));
        EXPECT_EQ(model.materials.at(0).alphaTexture, "C:\\b.png");
        EXPECT_EQ(model.variants.at(0).extref, folder.path("oak/m/x.vdt"));
        EXPECT_EQ(messages.fractions.back(), 1.0f);
    }
}

TEST(VdtReader, TellsOfUnusableFiles)
{
    const TemporaryFolder folder;
    const std::string text = "<verdanth version=\"1.0\"><plant name=\"x\">" + std::string(100000, ' ');
    const std::string gz = Gzip(text + "</plant></verdanth>");
    struct Row {
        std::string path;
        bool result;
        size_t warnings, errors;
    };
    const Row rows[] = {
        {folder.path("nothing.vdt"), false, 0, 0},
        {folder.path(""), false, 0, 0},
        {"", false, 0, 0},
        {folder.write("empty.vdt", ""), false, 0, 0},
        {folder.write("one_byte.vdt", "\x1F"), true, 0, 0},
        {folder.write("header_cut.vdt.gz", gz.substr(0, 7)), false, 1, 0},
        {folder.write("cut.vdt.gz", gz.substr(0, gz.size() / 2)), true, 1, 0},
        {folder.write("bomb.vdt.gz", Gzip(std::string(100 << 20, ' '))), false, 0, 1},
        {folder.write("brackets.vdt", std::string(10 << 20, '<')), false, 0, 1},
        {folder.write("big_tag.vdt", "<a " + std::string(100 << 20, 'b')), false, 0, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        RecordingMessages messages;
        Model model;
        EXPECT_EQ(VdtReader(model, messages).readFile(row.path), row.result);
        EXPECT_EQ(messages.warnings.size(), row.warnings);
        EXPECT_EQ(messages.errors.size(), row.errors);
    }
}

TEST(VdtReader, ManyShortAttributesTakeLittleMemory)
{
    // Each could claim the room of a full list: 20,000 times three megabytes.
    std::string lists = "<nvertices>100000</nvertices><vertices>";
    for (int i = 0; i < 100000; ++i) lists += "0 ";
    lists += "</vertices>";
    for (int i = 0; i < 20000; ++i) lists += "<attrib name=\"x\" type=\"float4\" storageclass=\"vertex\">1</attrib>";
    const ReadModel read =
        readPlant("<model><skeleton><points>0 0 0</points><polylines>" + lists + "</polylines></skeleton></model>");
    EXPECT_EQ(read.losses.size(), 20000u);
}

TEST(VdtReader, BoundsRecordsByWhatAFileCanMean)
{
    std::string text;
    for (int i = 0; i < 70000; ++i) text += "<model/>";
    for (int i = 0; i < 70000; ++i) text += "<materials><material/></materials>";
    const ReadModel read = readPlant(text);
    EXPECT_EQ(read.model.variants.size(), 65536u);
    EXPECT_EQ(read.model.materials.size(), 65536u);
    EXPECT_EQ(read.messages.warnings.size(), 1u);
}

TEST(VdtReader, CountsMeshesOverAllVariants)
{
    std::string variant = "<model><qualifiers default=\"1500\">";
    for (int i = 0; i < 2000; ++i) variant += "<qualifier id=\"" + std::to_string(i) + "\"/>";
    variant += "</qualifiers>";
    for (int i = 0; i < 20000; ++i) variant += "<mesh/><proxy><mesh/></proxy>";
    const ReadModel read = readPlant(variant + "</model>" + variant + "</model>");
    size_t meshes = 0;
    for (const ModelVariant& one : read.model.variants) {
        meshes += one.meshes.size() + one.proxies.size();
        EXPECT_EQ(one.qualifiers.size(), 1024u);
        EXPECT_EQ(one.defaultQualifier, 0u); // 1500 was left out
    }
    EXPECT_EQ(meshes, 65536u);
}

} // namespace vdt::test
