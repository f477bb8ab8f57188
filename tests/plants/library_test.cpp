// The plant library as it stands on the disk.
#include "grower/large_plant.h"
#include "grower/plant_library.h"
#include "grower/vocabulary.h"
#include "plants/check_plant.h"
#include "support/recording_messages.h"
#include "support/temporary_folder.h"
#include "vdt/file/vdt_reader.h"
#include "vdt/file/vdt_writer.h"
#include "vdt/generate/plant_mesh.h"

#include <gmock/gmock.h>
#include <png.h>

#include <fstream>
#include <set>

namespace grower {
namespace {

using vdt::test::CheckPlant;
using vdt::test::RecordingMessages;
using vdt::test::TemporaryFolder;

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Everything that was read of one species, its ages expanded.
struct Grown {
    const SpeciesRecipe* recipe = nullptr;
    vdt::Model model;
    bool expanded = true;
    std::vector<std::string> words; // of the readers
    std::vector<vdt::Box> storedBounds;
};

Grown read(const SpeciesRecipe& recipe)
{
    Grown grown;
    grown.recipe = &recipe;
    RecordingMessages messages;
    const std::string folder = FolderOf(recipe);
    vdt::VdtReader reader(grown.model, messages);
    EXPECT_TRUE(reader.readFile(std::string(VERDANTH_PLANT_LIBRARY) + "/" + folder + "/" + folder + ".vdt.gz"));
    for (vdt::ModelVariant& variant : grown.model.variants) {
        grown.storedBounds.push_back(variant.computeBound());
        grown.expanded &= variant.skeleton.isEmpty() && variant.expand(messages, nullptr);
    }
    for (const auto* list : {&messages.errors, &messages.warnings, &messages.messages})
        grown.words.insert(grown.words.end(), list->begin(), list->end());
    return grown;
}

const std::vector<Grown>& library()
{
    static const std::vector<Grown> all = [] {
        std::vector<Grown> list;
        for (const SpeciesRecipe& recipe : DefaultSpecies()) list.push_back(read(recipe));
        return list;
    }();
    return all;
}

bool isUtf8(const std::string& text)
{
    size_t following = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((following > 0) != ((byte & 0xC0) == 0x80)) return false;
        following = following > 0 ? following - 1 : byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    }
    return following == 0;
}

uint64_t foliagePolygons(const vdt::ModelVariant& variant, const std::string& season)
{
    uint64_t count = 0;
    for (const vdt::VariantMesh& record : variant.meshes)
        for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
            if (record.appliesTo(season) && connector.attributes.group == record.group)
                count += record.mesh->PolygonCount();
    return count;
}

// Width and lowest and highest alpha; width 0 if the file is no picture.
struct PictureFacts {
    uint32_t width = 0;
    int lowestAlpha = 255;
    int highestAlpha = 0;
};

PictureFacts factsOf(const std::string& path)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
    image.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr)) return {};
    PictureFacts facts{.width = image.width};
    for (size_t i = 3; i < bytes.size(); i += 4) {
        facts.lowestAlpha = std::min<int>(facts.lowestAlpha, bytes[i]);
        facts.highestAlpha = std::max<int>(facts.highestAlpha, bytes[i]);
    }
    return facts;
}

TEST(PlantLibrary, ReadsWithoutAWordAndTellsEverythingInEveryLanguage)
{
    for (const Grown& grown : library()) {
        SCOPED_TRACE(grown.recipe->name);
        const vdt::Model& model = grown.model;
        EXPECT_TRUE(grown.expanded);
        EXPECT_THAT(grown.words, testing::IsEmpty());
        EXPECT_EQ(model.name, grown.recipe->name);
        EXPECT_EQ(model.unit, vdt::kCentimeters);
        EXPECT_EQ(model.labels, grown.recipe->labels);
        EXPECT_EQ(model.descriptions, grown.recipe->descriptions);
        EXPECT_EQ(model.woodColors, grown.recipe->wood);
        EXPECT_EQ(model.foliageColors, grown.recipe->foliage);
        ASSERT_EQ(model.variants.size(), 3u);
        EXPECT_EQ(model.defaultVariant, 2u);

        std::vector<vdt::LocalizedTexts> texts{model.labels, model.descriptions};
        const char* ages[] = {"young", "medium", "adult"};
        for (size_t i = 0; i < 3; ++i) {
            const vdt::ModelVariant& variant = model.variants[i];
            EXPECT_EQ(variant.name, ages[i]);
            EXPECT_TRUE(variant.extref.ends_with(FolderOf(*grown.recipe) + "_" + ages[i] + ".vdt.gz"));
            EXPECT_EQ(variant.qualifiers, Seasons());
            EXPECT_EQ(variant.qualifiers[variant.defaultQualifier].name, "summer");
            EXPECT_EQ(variant.info.timestamp, "");
            texts.push_back(variant.labels);
            for (const vdt::Qualifier& season : variant.qualifiers) texts.push_back(season.labels);
        }
        for (const vdt::LocalizedTexts& labels : texts) {
            EXPECT_EQ(labels.size(), kLanguages.size());
            for (const auto& [language, text] : labels) EXPECT_TRUE(isUtf8(text) && !text.empty()) << language << text;
        }
    }
}

TEST(PlantLibrary, HoldsSoundTreesOfTheirSpeciesSize)
{
    struct Row {
        const char* species;
        double heights[3][2]; // of the wood, centimetres, lowest and highest, by age
    };
    const Row rows[] = {{"Betula pendula", {{200, 500}, {700, 1300}, {1500, 2600}}},
                        {"Lavandula angustifolia", {{8, 25}, {20, 40}, {30, 60}}},
                        {"Picea abies", {{150, 400}, {600, 1300}, {1800, 3500}}},
                        {"Prunus serrulata", {{150, 350}, {350, 650}, {600, 1000}}},
                        {"Quercus robur", {{200, 600}, {700, 1400}, {1500, 3000}}}};
    ASSERT_EQ(std::size(rows), library().size());
    for (const Row& row : rows) {
        const auto found = std::find_if(library().begin(), library().end(),
                                        [&](const Grown& g) { return g.recipe->name == row.species; });
        ASSERT_NE(found, library().end()) << row.species;
        for (size_t age = 0; age < 3; ++age) {
            SCOPED_TRACE(std::string(row.species) + " " + std::to_string(age));
            const vdt::ModelVariant& variant = found->model.variants[age];
            vdt::Box box;
            variant.skeleton.GetBounds(box, vdt::BoundsMode::BranchPoints);
            EXPECT_GE(box.max.y, row.heights[age][0]);
            EXPECT_LE(box.max.y, row.heights[age][1]);
            EXPECT_EQ(box.min.y, 0);
        }
    }
    for (const Grown& grown : library())
        for (const vdt::ModelVariant& variant : grown.model.variants)
            EXPECT_TRUE(CheckPlant(variant.skeleton)) << grown.recipe->name << " " << variant.name;
}

TEST(PlantLibrary, StoresTheBoundOfWhatItHolds)
{
    for (const Grown& grown : library())
        for (size_t i = 0; i < grown.model.variants.size(); ++i)
            EXPECT_EQ(grown.storedBounds[i], grown.model.variants[i].computeBound()) << grown.recipe->name << i;
}

TEST(PlantLibrary, HasAMaterialForEveryNumberAndAPictureForEveryPath)
{
    for (const Grown& grown : library()) {
        SCOPED_TRACE(grown.recipe->name);
        std::set<int32_t> known;
        for (const vdt::MaterialData& material : grown.model.materials) {
            SCOPED_TRACE(material.name);
            EXPECT_TRUE(known.insert(material.matid).second);
            EXPECT_GE(factsOf(material.front.diffuseTexture).width, 64u);
            EXPECT_TRUE(material.front.normalTexture.empty() || factsOf(material.front.normalTexture).width >= 64);
            if (material.alphaTexture.empty()) continue;

            // Cut out by a picture that has both, with a back of its own that is cut out alike.
            const PictureFacts facts = factsOf(material.alphaTexture);
            EXPECT_EQ(facts.lowestAlpha, 0);
            EXPECT_EQ(facts.highestAlpha, 255);
            ASSERT_TRUE(material.hasSeparateBack());
            EXPECT_EQ(factsOf(material.back()->diffuseTexture).width, facts.width);
            EXPECT_NE(material.back()->diffuseTexture, material.front.diffuseTexture);
            EXPECT_GT(material.subsurfaceDepth, 0);
        }
        for (const vdt::ModelVariant& variant : grown.model.variants) {
            std::set<int32_t> used;
            for (const vdt::SkeletonBranch& branch : variant.skeleton.branches) used.insert(branch.matid);
            for (const vdt::VariantMesh& record : variant.meshes)
                used.insert(record.mesh->materials.begin(), record.mesh->materials.end());
            for (const vdt::ProxyMesh& proxy : variant.proxies)
                used.insert(proxy.mesh.materials.begin(), proxy.mesh.materials.end());
            EXPECT_THAT(known, testing::IsSupersetOf(used)) << variant.name;
        }
    }
}

TEST(PlantLibrary, ChangesWithTheSeasons)
{
    for (const Grown& grown : library()) {
        for (const vdt::ModelVariant& variant : grown.model.variants) {
            SCOPED_TRACE(grown.recipe->name + " " + variant.name);
            const uint64_t summer = foliagePolygons(variant, "summer");
            EXPECT_NE(foliagePolygons(variant, "spring"), summer);
            EXPECT_LT(foliagePolygons(variant, "autumn"), summer);
            EXPECT_LT(foliagePolygons(variant, "winter"), foliagePolygons(variant, "autumn"));
            EXPECT_EQ(foliagePolygons(variant, ""), 0u) << "nothing grows in no season";

            std::set<int32_t> groups;
            for (const vdt::VariantMesh& record : variant.meshes) groups.insert(record.group);
            for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
                ASSERT_TRUE(groups.contains(connector.attributes.group)) << "a place where nothing ever grows";
        }
    }
}

TEST(PlantLibrary, AdultsAreRichButNotTooHeavy)
{
    for (const Grown& grown : library()) {
        const vdt::ModelVariant& adult = grown.model.variants[2];
        SCOPED_TRACE(grown.recipe->name);
        RecordingMessages messages;
        vdt::Mesh mesh;
        vdt::BuildPlantMesh(adult, {.season = "summer"}, mesh, messages);
        EXPECT_LT(mesh.PolygonCount(), 1500000u);
        const bool isTree = grown.recipe->ages.back().height > 1000;
        EXPECT_GT(adult.skeleton.points.size(), isTree ? 10000u : 2000u);
        EXPECT_GT(adult.skeleton.connectors.size(), isTree ? 20000u : 2000u);
        EXPECT_LT(grown.model.variants[0].skeleton.points.size(), grown.model.variants[1].skeleton.points.size());
        EXPECT_LT(grown.model.variants[1].skeleton.points.size(), adult.skeleton.points.size());
    }
}

TEST(PlantLibrary, KeepsAProxyWhereTheRecipeSaysSo)
{
    int stored = 0;
    for (const Grown& grown : library()) {
        for (size_t i = 0; i < grown.model.variants.size(); ++i) {
            const vdt::ModelVariant& variant = grown.model.variants[i];
            SCOPED_TRACE(grown.recipe->name + " " + variant.name);
            ASSERT_EQ(variant.proxies.size(), grown.recipe->storeProxy ? 1u : 0u);
            if (!grown.recipe->storeProxy) continue;
            ++stored;
            const vdt::Mesh& proxy = variant.proxies[0].mesh;
            EXPECT_EQ(variant.proxies[0].qualifier, "");
            EXPECT_LT(proxy.PolygonCount(), 1000u);

            // About the plant, and facing outwards: the volume that its polygons enclose is positive.
            vdt::Box box;
            proxy.GetBounds(box);
            vdt::Box wood;
            variant.skeleton.GetBounds(wood, vdt::BoundsMode::BranchPoints);
            EXPECT_GE(box.min.y, -0.01);
            EXPECT_LE(box.max.y, 1.05 * wood.max.y);
            EXPECT_GT(box.size().x, 0.6 * wood.size().x);
            double volume = 0;
            for (uint64_t p = 0; p < proxy.PolygonCount(); ++p)
                for (uint64_t c = 2; c < proxy.corners(p).size(); ++c)
                    volume += vdt::Dot(proxy.positions[proxy.corners(p)[0]],
                                       vdt::Cross(proxy.positions[proxy.corners(p)[c - 1]],
                                                  proxy.positions[proxy.corners(p)[c]])) /
                              6;
            EXPECT_GT(volume, 0.1 * wood.size().x * wood.size().y * wood.size().z);
        }
    }
    EXPECT_GT(stored, 0);
    EXPECT_LT(stored, static_cast<int>(3 * library().size()));
}

TEST(PlantLibrary, GrowsTheSameBytesAgain)
{
    // The youngest of each species with all pictures, against what another process has grown.
    for (SpeciesRecipe recipe : DefaultSpecies()) {
        SCOPED_TRACE(recipe.name);
        recipe.ages.resize(1);
        const TemporaryFolder folder;
        RecordingMessages messages;
        ASSERT_TRUE(WriteSpecies(recipe, folder.path("deep/er"), messages));
        const std::string again = folder.path("deep/er/" + FolderOf(recipe));
        const std::string grown = std::string(VERDANTH_PLANT_LIBRARY) + "/" + FolderOf(recipe);
        const std::string young = "/models/" + FolderOf(recipe) + "_young.vdt.gz";
        EXPECT_TRUE(bytesOf(again + young) == bytesOf(grown + young));
        for (const TextureRecipe& texture : recipe.textures)
            EXPECT_TRUE(bytesOf(again + "/textures/" + texture.file) == bytesOf(grown + "/textures/" + texture.file))
                << texture.file;
    }
}

TEST(PlantLibrary, SaysWhatItCannotWrite)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("in_the_way", "");
    RecordingMessages messages;
    EXPECT_FALSE(WriteSpecies(DefaultSpecies()[0], file, messages));
    EXPECT_THAT(messages.errors, testing::ElementsAre(testing::HasSubstr("in_the_way")));
}

TEST(LargePlant, HasTheSizeThatBenchmarksCountOn)
{
    const vdt::Model model = GrowLargePlant();
    const vdt::Skeleton& skeleton = model.variants[0].skeleton;
    uint64_t vertexCount = 0;
    for (const vdt::SkeletonBranch& branch : skeleton.branches) vertexCount += branch.vertexCount;
    EXPECT_EQ(skeleton.branches.size(), 40000u);
    EXPECT_EQ(skeleton.connectors.size(), 60000u);
    EXPECT_NEAR(static_cast<double>(vertexCount), 250000, 10000);
    EXPECT_NEAR(static_cast<double>(skeleton.points.size()), 210000, 10000);
    EXPECT_EQ(model.variants[0].meshes.size(), 3u);
    std::vector<uint64_t> roots;
    skeleton.FindRoots(roots);
    EXPECT_EQ(roots.size(), 1u);

    std::ostringstream text;
    RecordingMessages messages;
    ASSERT_TRUE(vdt::VdtWriter(model, messages).write(text));
    EXPECT_NEAR(static_cast<double>(text.tellp()), 38e6, 3e6);
}

} // namespace
} // namespace grower
