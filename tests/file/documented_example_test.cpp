// What docs/file_format.md tells and docs/examples shows is what the reader does.
#include "support/recording_messages.h"
#include "vdt/cache/cache.h"
#include "vdt/file/vdt_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace vdt::test {
namespace {

const std::string kExamples = VERDANTH_DOCS "/examples/";

std::string textOf(const std::string& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Everything that the handler was told by one reading, the kind before the text.
std::vector<std::string> reportsOn(const std::string& text)
{
    RecordingMessages messages;
    Model model;
    VdtReader reader(model, messages);
    std::istringstream stream(text);
    reader.parse(stream, 0);
    std::vector<std::string> reports;
    for (const std::string& error : messages.errors) reports.push_back("error: " + error);
    for (const std::string& warning : messages.warnings) reports.push_back("warning: " + warning);
    return reports;
}

} // namespace

TEST(DocumentedExample, HoldsWhatItSays)
{
    RecordingMessages messages;
    Model model;
    ASSERT_TRUE(VdtReader(model, messages).readFile(kExamples + "seedling.vdt"));
    EXPECT_TRUE(messages.errors.empty() && messages.warnings.empty());

    EXPECT_EQ(model.name, "Exemplum parvum");
    EXPECT_EQ(model.labels.at("de-DE"), "Kleines Beispiel");
    EXPECT_EQ(model.descriptions.at("en"), "A seedling with one side shoot and two leaves.");
    EXPECT_EQ(model.foliageColors.at("summer"), (Color4f{0.2f, 0.5f, 0.1f, 1}));

    ASSERT_EQ(model.materials.size(), 2u);
    const MaterialData& bark = model.materials[0];
    const MaterialData& leaf = model.materials[1];
    EXPECT_EQ(bark.back(), &bark.front);
    EXPECT_EQ(bark.front.diffuseTexture, kExamples + "textures/bark.png");
    EXPECT_TRUE(leaf.hasSeparateBack());
    EXPECT_EQ(leaf.alphaTexture, leaf.front.diffuseTexture);

    ASSERT_EQ(model.variants.size(), 2u);
    const ModelVariant& young = model.variants[0];
    EXPECT_EQ(young.bound.max.y, 24.48);
    EXPECT_EQ(young.qualifiers[young.defaultQualifier].name, "summer");
    EXPECT_EQ(young.skeleton.VertexCount(0), 3u);
    EXPECT_EQ(young.skeleton.branches[1].firstVertex->attributes.radius, 0.2);
    EXPECT_EQ(young.skeleton.connectors[1].attributes.scale, 0.75);
    EXPECT_EQ(young.meshes.at(0).mesh->coordinates[1], (Vector2f{1, 0.5f}));
    EXPECT_EQ(young.proxies.at(0).mesh.PolygonCount(), 1u);
}

TEST(DocumentedExample, OrientationsPointAlongTheirBranches)
{
    NullMessageHandler messages;
    Model model;
    ASSERT_TRUE(VdtReader(model, messages).readFile(kExamples + "seedling.vdt"));
    const Skeleton& skeleton = model.variants[0].skeleton;
    for (const SkeletonBranch& branch : skeleton.branches)
        for (const SkeletonVertex* vertex = branch.firstVertex; vertex->next; vertex = vertex->next) {
            const Vector3 along =
                skeleton.points[vertex->next->point].position - skeleton.points[vertex->point].position;
            const Vector3 axis = ToMatrix(vertex->attributes.orient, {0, 0, 0}).row(2);
            EXPECT_GT(Dot(Normalized(along), axis), 0.995);
        }
}

TEST(DocumentedExample, StubFindsTheFileBesideIt)
{
    RecordingMessages messages;
    Cache cache(nullptr);
    const ModelHandle adult = cache.acquire(kExamples + "seedling.vdt", messages, 1);
    const ModelVariant* variant = adult.variantData(messages, true);
    ASSERT_TRUE(variant);
    EXPECT_EQ(variant->skeleton.connectors.size(), 2u);
    EXPECT_EQ(variant->name, "adult");
    EXPECT_EQ(variant->info.source, "seedling.vdt");
}

TEST(DocumentedFormat, NamesEveryElement)
{
    const std::string page = textOf(VERDANTH_DOCS "/file_format.md");
    for (int element = 1; element <= static_cast<int>(Element::Proxy); ++element) {
        const std::string name(ElementName(static_cast<Element>(element)));
        const auto isTold = [&](const char* before, const char* behind) {
            return page.find(before + name + behind) != std::string::npos;
        };
        EXPECT_TRUE(isTold("`", "`") || isTold("`", "/") || isTold("/", "`") || isTold("/", "/")) << name;
    }
}

TEST(DocumentedFormat, TellsTheMessagesAsTheyCome)
{
    const std::string page = textOf(VERDANTH_DOCS "/file_format.md");
    const char* const head = "<verdanth version=\"1.2\"><plant>";
    struct Row {
        std::string text;
        const char* report; // up to the first number in it
    };
    const Row rows[] = {
        {"<verdanth version=\"1\">", "error: Malformed Verdanth file version!"},
        {"<verdanth version=\"1.3\">",
         "error: Verdanth file cannot be read since it seems to be exported from a newer"},
        {head + std::string("<label>x</label>"),
         "warning: Empty label or label without proper language attribute spec"},
        {head + std::string("<model><label>x</label>"),
         "warning: Empty label or label without language attribute spec"},
        {head + std::string("<meta><description>x</description>"),
         "warning: Description without proper language attrib"},
        {head + std::string("<colors><wood>1</wood>"), "warning: Wood color has wrong argument count ("},
        {head + std::string("<colors><foliage>1</foliage>"), "warning: Foliage color has wrong argument count ("},
        {head + std::string("<model><bound>1</bound>"), "warning: Invalid bounding volume value count, found "},
        {head + std::string("<model><qualifiers default=\"3\"></qualifiers>"),
         "warning: Unknown default qualifier given ("},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const std::vector<std::string> reports = reportsOn(row.text);
        ASSERT_EQ(reports.size(), 1u);
        EXPECT_EQ(reports[0].rfind(row.report, 0), 0u) << reports[0];
        const std::string text(row.report);
        EXPECT_NE(page.find(text.substr(text.find(' ') + 1)), std::string::npos);
    }
}

} // namespace vdt::test
