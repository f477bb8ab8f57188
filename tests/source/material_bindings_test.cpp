#include "core/material.h"
#include "core/node_class.h"
#include "core/stand_in_renderers.h"
#include "materials/material_factory.h"
#include "materials/material_set.h"
#include "materials/recorded_calls.h"
#include "materials/renderer_ids.h"
#include "materials/written_parameters.h"
#include "mmaterial.h"
#include "support/failing_class.h"
#include "support/plugin_ids.h"
#include "support/test_host.h"
#include "support/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace host::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using vdt::test::MaterialOfSet;
using vdt::test::MaterialSet;
using vdt::test::RecordedCalls;

// By number, from 1.
const std::vector<std::string> kRenderers{"standard", "vray",   "mia",     "corona", "thea",
                                          "arnold",   "octane", "maxwell", "iray"};
const std::vector<std::string> kQualities{"low", "medium", "high"};

// All renderers stand by, and the plant library is at C:\lib.
struct MaterialHost : TestHost {
    explicit MaterialHost(const TestHostOptions& options = {}) : TestHost(options)
    {
        for (const std::string& renderer : kRenderers) EnterStandInRenderer(renderer);
        BaseContainer settings;
        settings.SetFilename(kSettingLibraryFolder, Filename("C:\\lib"));
        SetWorldPluginData(kPlantBrowserId, settings);
    }
};

Int32 codeOf(const std::string& renderer)
{
    return static_cast<Int32>(std::ranges::find(kRenderers, renderer) - kRenderers.begin()) + 1;
}

// Expects success.
MaterialEntries converted(const std::string& renderer, const std::vector<vdt::MaterialData>& materials, Int32 quality,
                          ColourSpace space = ColourSpace::Srgb)
{
    MaterialEntries entries;
    EXPECT_TRUE(convertMaterials(materials, entries, space, codeOf(renderer), quality, 0, nullptr)) << renderer;
    return entries;
}

std::string written(const std::string& renderer, const vdt::MaterialData& material, Int32 quality)
{
    return WrittenParameters(converted(renderer, {material}, quality));
}

// What a renderer is told of the whole set: its file is to be read beside the renderer's table.
std::string told(const std::string& renderer, Int32 quality)
{
    std::string text;
    for (const vdt::MaterialData& material : MaterialSet()) {
        text += "# " + material.name + "\ncalls:\n";
        for (const std::string& call : RecordedCalls(renderer, material, quality))
            text.append("  ").append(call).append("\n");
        text.append("written:\n").append(written(renderer, material, quality)).append("\n");
    }
    return text;
}

TEST(MaterialGoldens, EachRendererIsToldAtEachQualityWhatItsFileHolds)
{
    const MaterialHost host;
    const char* update = std::getenv("VERDANTH_UPDATE_GOLDEN");
    for (const std::string& renderer : kRenderers) {
        for (Int32 quality = 0; quality < 3; ++quality) {
            const std::string path = std::string(VERDANTH_TEST_DATA "/golden/materials/") + renderer + "_" +
                                     kQualities[static_cast<size_t>(quality)] + ".txt";
            const std::string text = told(renderer, quality);
            if (update && std::string_view(update) == "1") std::ofstream(path, std::ios::binary) << text;
            EXPECT_EQ(vdt::test::BytesOfFile(path), text) << path;
        }
    }
}

TEST(MaterialRules, ASubsurfaceColourThatIsNotBlackSkipsMiasBlockOfLight)
{
    vdt::MaterialData material = MaterialOfSet("oak_lf_subsurface_texture");
    const struct {
        vdt::Color3f color;
        bool isSkipped;
    } rows[] = {{{0, 0, 0}, false}, {{1e-5f, 1e-5f, 1e-5f}, false}, {{0, 1.1e-5f, 0}, true}, {{1, 1, 1}, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.color.g);
        material.subsurfaceColor = row.color;
        const std::vector<std::string> calls = RecordedCalls("mia", material, 2);
        EXPECT_EQ(calls.size(), row.isSkipped ? 16u : 23u);
        EXPECT_EQ(calls.back(),
                  row.isSkipped ? "14 setBumpStrength 0" : "21 setSubsurfaceTexture \"textures/light.png\"");
    }
}

TEST(MaterialRules, ACutoutOfItsOwnIsTheFileWithTheMarkBeforeItsSuffixUnlessOnlyThePlainOneIsThere)
{
    const MaterialHost host;
    host.folder.write("both.png", "");
    host.folder.write("both_a.png", "");
    host.folder.write("plain.png", "");
    const struct {
        const char* picture;
        const char* used;
    } rows[] = {{"both.png", "both_a.png"}, {"plain.png", "plain.png"},
                {"none.png", "none_a.png"}, {"two.dots.png", "two.dots_a.png"},
                {"bare", "bare_a"},         {"dotted.folder/bare", "dotted.folder/bare_a"}};
    vdt::MaterialData material = MaterialOfSet("oak_lf_alias_back");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.picture);
        const auto fileOf = [&](const char* name) {
            std::string path = host.folder.path(name);
            std::ranges::replace(path, '/', '\\');
            return path + '"';
        };
        material.alphaTexture = host.folder.path(row.picture);
        EXPECT_THAT(written("corona", material, 1), HasSubstr(fileOf(row.used) + " alpha"));
        EXPECT_THAT(written("arnold", material, 1), HasSubstr(std::string("opacity file \"") + fileOf(row.used)));

        // The diffuse texture's own transparency is in no other file. Networks sample it from one all the same.
        material.front.diffuseTexture = material.alphaTexture;
        EXPECT_THAT(written("corona", material, 1), HasSubstr(fileOf(row.picture) + " alpha"));
        EXPECT_THAT(written("arnold", material, 1), HasSubstr(std::string("opacity file \"") + fileOf(row.used)));
        material.front.diffuseTexture.clear();
    }
}

// Keeps what stood in the container while the parameter was being set, and what was set.
struct WatchedMaterial final : NodeData {
    static NodeData* Alloc() { return NewObjClear(WatchedMaterial); }

    Bool SetDParameter(GeListNode* node, const DescID& id, const GeData& t_data, DESCFLAGS_SET& /*flags*/) override
    {
        const BaseContainer& data = *static_cast<BaseList2D*>(node)->GetDataInstance();
        steps.push_back(ToUtf8(data.GetFilename(id[0].id)) + " " + std::to_string(data.GetInt32(2005)));
        steps.push_back(ToUtf8(t_data.GetFilename()));
        return true;
    }

    Bool Message(GeListNode* /*node*/, Int32 type, void* /*data*/) override
    {
        if (type == MSG_UPDATE) steps.push_back("updated");
        return true;
    }

    static inline std::vector<std::string> steps;
};

TEST(MaterialRules, FinishedMaterialFilesAreLinkedInTwoStepsTheFirstToAnotherLevel)
{
    const struct {
        const char* name;
        const char* path[3]; // by quality
    } rows[] = {
        {"acer_platanoides_lf_01",
         {"C:\\lib\\acer_platanoides\\textures\\acer_platanoides_lf_01_low.mxm",
          "C:\\lib\\acer_platanoides\\textures\\acer_platanoides_lf_01_medium.mxm",
          "C:\\lib\\acer_platanoides\\textures\\acer_platanoides_lf_01_high.mxm"}},
        {"lf_01",
         {"C:\\lib\\textures\\lf_01_low.mxm", "C:\\lib\\textures\\lf_01_medium.mxm",
          "C:\\lib\\textures\\lf_01_high.mxm"}},
        {"acer",
         {"C:\\lib\\acer\\textures\\acer_low.mxm", "C:\\lib\\acer\\textures\\acer_medium.mxm",
          "C:\\lib\\acer\\textures\\acer_high.mxm"}},
    };
    TestHost host;
    Registrations::Current()->EnterClass({.id = kMaxwellMaterialId,
                                          .kind = NodeKind::Material,
                                          .make = MakeCore<MaterialCore>,
                                          .allocator = WatchedMaterial::Alloc});
    for (const char* folder : {"C:\\lib", "C:/lib/"}) {
        BaseContainer settings;
        settings.SetFilename(kSettingLibraryFolder, Filename(folder));
        SetWorldPluginData(kPlantBrowserId, settings);
        for (const auto& row : rows) {
            vdt::MaterialData material;
            material.name = row.name;
            for (Int32 quality = 0; quality < 3; ++quality) {
                SCOPED_TRACE(row.path[quality]);
                WatchedMaterial::steps.clear();
                converted("maxwell", {material}, quality);
                EXPECT_EQ(WatchedMaterial::steps, (std::vector<std::string>{std::string(row.path[quality == 0]) + " 1",
                                                                            row.path[quality], "updated"}));
            }
        }
    }
}

TEST(MaterialRules, AMaterialIsOneEntryUnlessItIsTheHostsOwnWithTwoLooks)
{
    const MaterialHost host;
    for (const std::string& renderer : kRenderers) {
        for (const vdt::MaterialData& material : MaterialSet()) {
            for (Int32 quality = 0; quality < 3; ++quality) {
                SCOPED_TRACE(renderer + " " + material.name + " " + kQualities[static_cast<size_t>(quality)]);
                const MaterialEntries entries = converted(renderer, {material}, quality);
                const bool hasTwoLooks = quality == 2 && material.hasSeparateBack();
                const bool isPair = hasTwoLooks && renderer == "standard";
                ASSERT_EQ(entries.size(), isPair ? 2u : 1u);
                EXPECT_EQ(entries[0].matid, material.matid);
                EXPECT_EQ(entries[0].side, isPair ? 1 : 0);
                if (isPair) {
                    EXPECT_EQ(entries[1].matid * 10 + entries[1].side, material.matid * 10 + 2);
                }
                const bool hasParts = hasTwoLooks && (renderer == "vray" || renderer == "octane");
                EXPECT_EQ(entries[0].parts.size(), hasParts ? 2u : 0u);
            }
        }
    }
}

TEST(MaterialRules, NoPictureIsLinkedAtLowQuality)
{
    const MaterialHost host;
    for (const std::string& renderer : kRenderers) {
        SCOPED_TRACE(renderer);
        EXPECT_THAT(told(renderer, 0), Not(HasSubstr(".png")));
        if (renderer != "maxwell") {
            EXPECT_THAT(told(renderer, 1), HasSubstr(".png"));
        }
        EXPECT_THAT(told(renderer, 1), Not(HasSubstr("leaf_specular.png")));
    }
}

TEST(MaterialRules, ColoursAreTurnedToLinearInADocumentOfLinearColours)
{
    const MaterialHost host;
    for (const std::string& renderer : kRenderers) {
        SCOPED_TRACE(renderer);
        const std::string linear =
            WrittenParameters(converted(renderer, MaterialSet(), 2, ColourSpace::Linear), std::identity());
        EXPECT_EQ(linear, WrittenParameters(converted(renderer, MaterialSet(), 2), SrgbToLinear));
        if (renderer != "maxwell") {
            EXPECT_NE(linear, WrittenParameters(converted(renderer, MaterialSet(), 2)));
        }
    }
}

TEST(MaterialRules, OlderHostsGetAHighlightInPlaceOfALayerOfReflectance)
{
    const MaterialHost host({.apiLevel = 15799});
    const std::string text = written("standard", MaterialOfSet("oak_br_satin"), 2);
    EXPECT_THAT(text, HasSubstr(std::to_string(MATERIAL_USE_SPECULAR) + " integer 1\n"));
    EXPECT_THAT(text, HasSubstr(std::to_string(MATERIAL_SPECULAR_COLOR) + " color 0.5 0.5 0.5\n"));
    EXPECT_THAT(text, HasSubstr(std::to_string(MATERIAL_SPECULAR_WIDTH) + " float 0.25\n"));
    EXPECT_THAT(text, HasSubstr(std::to_string(MATERIAL_SPECULAR_HEIGHT) + " float 0.3198675\n"));
    EXPECT_THAT(text, Not(HasSubstr(std::to_string(MATERIAL_USE_REFLECTION) + " ")));
}

TEST(MaterialRules, WithoutTheMaterialOfTwoSidesTheFrontStandsAlone)
{
    TestHost host;
    ASSERT_TRUE(EnterMaterialPlugin({kVrayMaterialId, 3000}, "vray"));
    const MaterialEntries entries = converted("vray", {MaterialOfSet("oak_lf_separate_back")}, 2);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(ToUtf8(entries[0].material->GetName()), "oak_lf_separate_back_fr");
    EXPECT_EQ(entries[0].material->GetDataInstance()->GetVector(3000), Vector(0.25, 0.5, 0.125));
    EXPECT_TRUE(entries[0].parts.empty());
}

TEST(MaterialFailures, UnknownNumbersAndAbsentRenderersMakeNothing)
{
    const TestHost host;
    const size_t before = CountNodes(NodeKind::Material);
    for (Int32 code = -1; code <= 10; ++code) {
        SCOPED_TRACE(code);
        MaterialEntries entries;
        const bool isThere = code == codeOf("standard") || code == codeOf("arnold"); // materials of the host's own
        EXPECT_EQ(convertMaterials(MaterialSet(), entries, ColourSpace::Srgb, code, 2, 0, nullptr), isThere);
        EXPECT_EQ(entries.empty(), !isThere);
        entries.clear();
        EXPECT_EQ(CountNodes(NodeKind::Material), before);
        EXPECT_TRUE(convertMaterials({}, entries, ColourSpace::Srgb, code, 2, 0, nullptr));
    }
}

TEST(MaterialFailures, WhereverAMaterialCannotBeMadeTheListIsEmptyAndAllIsFreed)
{
    const MaterialHost host;
    const size_t materials = CountNodes(NodeKind::Material), shaders = CountNodes(NodeKind::Shader);
    for (const std::string& renderer : kRenderers) {
        std::vector<Int32> types;
        for (const StandInMaterial& material : FindStandInRenderer(renderer)->materials) types.push_back(material.id);
        if (renderer == "standard" || renderer == "arnold") types = {Mmaterial};
        for (const Int32 type : types) {
            int failures = 0;
            for (bool hasFailed = true; hasFailed; failures += hasFailed) {
                SCOPED_TRACE(renderer + " " + std::to_string(type) + " " + std::to_string(failures + 1));
                MaterialEntries entries = converted("standard", {MaterialOfSet("oak_br_grey")}, 0);
                const FailingClass failing(NodeKind::Material, type, failures + 1);
                const bool isDone =
                    convertMaterials(MaterialSet(), entries, ColourSpace::Srgb, codeOf(renderer), 2, 0, nullptr);
                hasFailed = FailingClass::HasFailed();
                ASSERT_EQ(isDone, !hasFailed);
                ASSERT_EQ(entries.empty(), hasFailed);
                entries.clear();
                ASSERT_EQ(CountNodes(NodeKind::Material), materials);
                ASSERT_EQ(CountNodes(NodeKind::Shader), shaders);
            }
            EXPECT_GE(failures, type == kVrayTwoSidedMaterialId || type == kOctaneMixMaterialId ? 3 : 13);
        }
    }
}

TEST(MaterialFailures, APictureThatCannotBeMadeIsLeftOutWithItsSwitch)
{
    const MaterialHost host;
    const size_t shaders = CountNodes(NodeKind::Shader);
    const vdt::MaterialData material = MaterialOfSet("oak_lf_alpha_of_its_own");
    for (const auto& [renderer, type, parameter] : {std::tuple{"vray", Int32{Xbitmap}, "    3001 "},
                                                    {"thea", kTheaTextureId, "    27002 "},
                                                    {"thea", Int32{Xbitmap}, "    27002 "},
                                                    {"octane", kOctaneImageTextureId, "    2517 "}}) {
        SCOPED_TRACE(renderer);
        EXPECT_THAT(written(renderer, material, 1), HasSubstr(parameter));
        const FailingClass failing(NodeKind::Shader, type, 1);
        EXPECT_THAT(written(renderer, material, 1), Not(HasSubstr(parameter)));
        EXPECT_EQ(CountNodes(NodeKind::Shader), shaders);
    }
}

} // namespace
} // namespace host::test
