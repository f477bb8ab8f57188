// What docs/file_format.md tells and docs/examples shows is what the reader does.
#include "support/model_text.h"
#include "support/temporary_folder.h"
#include "vdt/cache/cache.h"

#include <gtest/gtest.h>

namespace vdt::test {
namespace {

const std::string kExamples = VERDANTH_DOCS "/examples/";

} // namespace

TEST(DocumentedExample, HoldsWhatItSays)
{
    RecordingMessages messages;
    Cache cache(nullptr);
    const ModelHandle adult = cache.acquire(kExamples + "seedling.vdt", messages, 1);
    ASSERT_TRUE(adult.model());
    const Model& model = *adult.model();
    EXPECT_EQ(model.labels.at("de-DE"), "Kleines Beispiel");
    ASSERT_EQ(model.materials.size(), 2u);
    EXPECT_EQ(model.materials[0].back(), &model.materials[0].front);
    EXPECT_EQ(model.materials[0].front.diffuseTexture, kExamples + "textures/bark.png");
    EXPECT_TRUE(model.materials[1].hasSeparateBack());

    // Orientations point along the branches.
    const ModelVariant& young = model.variants.at(0);
    EXPECT_EQ(young.bound.max.y, 24.48);
    EXPECT_EQ(young.skeleton.VertexCount(0), 3u);
    for (const SkeletonBranch& branch : young.skeleton.branches)
        for (const SkeletonVertex* vertex = branch.firstVertex; vertex->next; vertex = vertex->next) {
            const auto& points = young.skeleton.points;
            const Vector3 along = points[vertex->next->point].position - points[vertex->point].position;
            EXPECT_GT(Dot(Normalized(along), ToMatrix(vertex->attributes.orient, {0, 0, 0}).row(2)), 0.995);
        }

    // The stub finds the file beside it.
    const ModelVariant* variant = adult.variantData(messages, true);
    ASSERT_TRUE(variant);
    EXPECT_EQ(variant->skeleton.connectors.size(), 2u);
    EXPECT_EQ(variant->info.source, "seedling.vdt");
    EXPECT_TRUE(messages.errors.empty() && messages.warnings.empty());
}

TEST(DocumentedFormat, NamesEveryElement)
{
    const std::string page = BytesOfFile(VERDANTH_DOCS "/file_format.md");
    for (int element = 1; element <= static_cast<int>(Element::Proxy); ++element) {
        const std::string name(ElementName(static_cast<Element>(element)));
        const auto isTold = [&](const char* before, const char* behind) {
            return page.find(before + name + behind) != std::string::npos;
        };
        EXPECT_TRUE(isTold("`", "`") || isTold("`", "/") || isTold("/", "`") || isTold("/", "/")) << name;
    }
}

} // namespace vdt::test
