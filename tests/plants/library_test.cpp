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

#include <array>
#include <map>
#include <set>

namespace grower {
namespace {

using vdt::test::BytesOfFile;
using vdt::test::CheckPlant;
using vdt::test::RecordingMessages;
using vdt::test::TemporaryFolder;

// Everything that was read of one species, its ages expanded.
struct Grown {
    const SpeciesRecipe* recipe = nullptr;
    vdt::Model model;
    bool expanded = true;
    std::vector<std::string> words; // of the readers
};

Grown read(const SpeciesRecipe& recipe)
{
    Grown grown;
    grown.recipe = &recipe;
    RecordingMessages messages;
    const std::string folder = FolderOf(recipe);
    vdt::VdtReader reader(grown.model, messages);
    EXPECT_TRUE(reader.readFile(std::string(VERDANTH_PLANT_LIBRARY) + "/" + folder + "/" + folder + ".vdt.gz"));
    for (vdt::ModelVariant& variant : grown.model.variants)
        grown.expanded &= variant.skeleton.isEmpty() && variant.expand(messages, nullptr);
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

uint64_t foliagePolygons(const vdt::ModelVariant& variant, const std::string& season)
{
    uint64_t count = 0;
    for (const vdt::VariantMesh& record : variant.meshes)
        for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
            if (record.appliesTo(season) && connector.attributes.group == record.group)
                count += record.mesh->PolygonCount();
    return count;
}

// Size and lowest and highest alpha; width 0 if the file is no picture.
struct PictureFacts {
    uint32_t width = 0;
    uint32_t height = 0;
    int lowestAlpha = 255;
    int highestAlpha = 0;
    std::vector<uint8_t> alphas{}, brightness{}; // one a pixel
};

PictureFacts factsOf(const std::string& path)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return {};
    image.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr)) return {};
    PictureFacts facts{.width = image.width, .height = image.height};
    for (size_t i = 3; i < bytes.size(); i += 4) {
        facts.lowestAlpha = std::min<int>(facts.lowestAlpha, bytes[i]);
        facts.highestAlpha = std::max<int>(facts.highestAlpha, bytes[i]);
        facts.alphas.push_back(bytes[i]);
        facts.brightness.push_back(bytes[i - 1]);
    }
    return facts;
}

TEST(PlantLibrary, ReadsWithoutAWordAsSoundPlantsInEveryLanguage)
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

        std::map<int32_t, int> barkTurns;
        for (const MaterialRecipe& material : grown.recipe->materials) barkTurns[material.id] = material.turns;
        std::vector<vdt::LocalizedTexts> texts;
        const char* ages[] = {"young", "medium", "adult"};
        for (size_t i = 0; i < 3; ++i) {
            const vdt::ModelVariant& variant = model.variants[i];
            EXPECT_EQ(variant.name, ages[i]);
            EXPECT_EQ(variant.qualifiers, Seasons());
            EXPECT_EQ(variant.defaultQualifier, grown.recipe->shownSeason);
            EXPECT_EQ(variant.info.timestamp, "");
            EXPECT_TRUE(CheckPlant(variant.skeleton, barkTurns)) << variant.name;
            texts.push_back(variant.labels);
        }
        for (const vdt::LocalizedTexts& labels : texts) EXPECT_EQ(labels.size(), kLanguages.size());
    }
}

TEST(PlantLibrary, HasTheHeightsAndTheRichnessOfItsSpecies)
{
    using Heights = std::array<std::array<double, 2>, 3>; // of the wood, centimetres, lowest and highest, by age
    const std::map<std::string, Heights> species = {
        {"Acer palmatum", {{{80, 200}, {200, 400}, {400, 700}}}},
        {"Betula pendula", {{{200, 500}, {700, 1300}, {1500, 2600}}}},
        {"Dryopteris filix-mas", {{{20, 45}, {50, 85}, {80, 130}}}},
        {"Helianthus annuus", {{{40, 80}, {90, 150}, {150, 300}}}},
        {"Hydrangea macrophylla", {{{35, 70}, {75, 125}, {120, 220}}}},
        {"Lavandula angustifolia", {{{8, 25}, {20, 40}, {30, 60}}}},
        {"Miscanthus sinensis", {{{50, 100}, {100, 150}, {150, 220}}}},
        {"Phoenix canariensis", {{{150, 350}, {400, 800}, {900, 1500}}}},
        {"Picea abies", {{{150, 400}, {600, 1300}, {1800, 3500}}}},
        {"Pinus sylvestris", {{{200, 500}, {700, 1400}, {1600, 3000}}}},
        {"Populus nigra Italica", {{{200, 600}, {800, 1500}, {2000, 3200}}}},
        {"Prunus serrulata", {{{150, 350}, {350, 650}, {600, 1000}}}},
        {"Quercus robur", {{{200, 600}, {700, 1400}, {1500, 3000}}}},
        {"Salix babylonica", {{{200, 500}, {500, 900}, {1000, 1500}}}},
    };
    // Of few parts, but large ones: how many vertices and places of foliage there are at least.
    const std::map<std::string, size_t> ofFewParts{{"Dryopteris filix-mas", 400},
                                                   {"Helianthus annuus", 20},
                                                   {"Hydrangea macrophylla", 400},
                                                   {"Miscanthus sinensis", 400},
                                                   {"Phoenix canariensis", 1500}};
    ASSERT_EQ(species.size(), library().size());
    for (const Grown& grown : library()) {
        SCOPED_TRACE(grown.recipe->name);
        size_t before = 0;
        for (size_t age = 0; age < 3; ++age) {
            const vdt::Skeleton& skeleton = grown.model.variants[age].skeleton;
            vdt::Box box;
            skeleton.GetBounds(box, vdt::BoundsMode::BranchPoints);
            EXPECT_GE(box.max.y, species.at(grown.recipe->name)[age][0]);
            EXPECT_LE(box.max.y, species.at(grown.recipe->name)[age][1]);
            EXPECT_EQ(box.min.y, 0);
            EXPECT_LT(std::exchange(before, skeleton.points.size()), skeleton.points.size());
        }
        const vdt::ModelVariant& adult = grown.model.variants[2];
        const bool isTree = grown.recipe->ages.back().height > 1000;
        const auto few = ofFewParts.find(grown.recipe->name);
        EXPECT_GT(before, few != ofFewParts.end() ? few->second : isTree ? 10000u : 2000u);
        EXPECT_GT(adult.skeleton.connectors.size(), few != ofFewParts.end() ? few->second : isTree ? 20000u : 2000u);
        for (const vdt::ModelVariant& variant : grown.model.variants) {
            RecordingMessages messages;
            vdt::Mesh mesh;
            vdt::BuildPlantMesh(variant, {.season = "summer"}, mesh, messages);
            EXPECT_LT(mesh.PolygonCount(), 1500000u);
            vdt::Box wood, whole;
            variant.skeleton.GetBounds(wood, vdt::BoundsMode::BranchPoints);
            mesh.GetBounds(whole);
            vdt::Box stored = variant.bound;
            EXPECT_LT(stored.size().y, whole.size().y * 1.3 + 10) << "other seasons do not change a plant so much";
            stored.extend(whole); // by no more than the thickness of the wood
            EXPECT_LT(vdt::Length(stored.min - variant.bound.min) + vdt::Length(stored.max - variant.bound.max),
                      0.05 * wood.max.y);
            EXPECT_GT(whole.min.y, -0.07 * wood.max.y) << variant.name << " hangs into the ground";
        }
    }
}

TEST(PlantLibrary, HasAMaterialForEveryNumberAndAPictureForEveryPath)
{
    for (const Grown& grown : library()) {
        SCOPED_TRACE(grown.recipe->name);
        std::set<int32_t> known;
        for (const vdt::MaterialData& material : grown.model.materials) {
            SCOPED_TRACE(material.name);
            EXPECT_TRUE(known.insert(material.matid).second);
            const auto turns = static_cast<uint32_t>(grown.recipe->materials[known.size() - 1].turns);
            for (const std::string& picture : {material.front.diffuseTexture, material.front.normalTexture}) {
                if (picture.empty() && &picture != &material.front.diffuseTexture) continue;
                const PictureFacts facts = factsOf(picture);
                EXPECT_GE(facts.width, 64u);
                EXPECT_EQ(facts.height, turns * facts.width);
            }
            if (material.alphaTexture.empty()) continue;

            // Cut out by a picture that has both, with a back of its own that is cut out alike.
            const PictureFacts facts = factsOf(material.alphaTexture);
            EXPECT_EQ(facts.lowestAlpha, 0);
            EXPECT_EQ(facts.highestAlpha, 255);
            ASSERT_TRUE(material.hasSeparateBack());
            EXPECT_EQ(factsOf(material.back()->diffuseTexture).width, facts.width);
            std::string mask = material.alphaTexture;
            const PictureFacts maskFacts = factsOf(mask.insert(mask.rfind('.'), "_a"));
            EXPECT_EQ(maskFacts.brightness, facts.alphas) << mask;
            EXPECT_EQ(maskFacts.lowestAlpha, 255);
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
            const uint64_t autumn = foliagePolygons(variant, "autumn");
            const uint64_t winter = foliagePolygons(variant, "winter");
            const uint64_t always = foliagePolygons(variant, "");
            const bool isPalm = grown.recipe->name == "Phoenix canariensis";
            EXPECT_EQ(always > 0, isPalm) << "the others grow nothing in no season";
            if (isPalm && variant.name == "young") {
                EXPECT_TRUE(summer == always && autumn == always && winter == always) << "too young for flowers";
            } else {
                EXPECT_NE(foliagePolygons(variant, "spring"), summer);
                EXPECT_LT(autumn, summer);
                EXPECT_LT(winter, autumn);
                EXPECT_GE(winter, always);
            }

            std::set<int32_t> groups;
            for (const vdt::VariantMesh& record : variant.meshes) groups.insert(record.group);
            for (const vdt::SkeletonConnector& connector : variant.skeleton.connectors)
                ASSERT_TRUE(groups.contains(connector.attributes.group)) << "a place where nothing ever grows";
        }
    }
}

TEST(PlantLibrary, KeepsAProxyWhereTheRecipeSaysSo)
{
    for (const Grown& grown : library()) {
        for (const vdt::ModelVariant& variant : grown.model.variants) {
            SCOPED_TRACE(grown.recipe->name + " " + variant.name);
            ASSERT_EQ(variant.proxies.size(), grown.recipe->storeProxy ? 1u : 0u);
            if (!grown.recipe->storeProxy) continue;

            // About the plant, and facing outwards: the volume that its polygons enclose is positive.
            const vdt::Mesh& proxy = variant.proxies[0].mesh;
            EXPECT_LT(proxy.PolygonCount(), 1000u);
            vdt::Box box, wood;
            proxy.GetBounds(box);
            variant.skeleton.GetBounds(wood, vdt::BoundsMode::BranchPoints);
            EXPECT_GE(box.min.y, -0.01);
            EXPECT_LE(box.max.y, 1.05 * wood.max.y);
            EXPECT_GT(box.size().x, 0.6 * wood.size().x);
            double volume = 0;
            for (uint64_t p = 0; p < proxy.PolygonCount(); ++p) {
                const auto corner = [&](uint64_t c) { return proxy.positions[proxy.corners(p)[c]]; };
                for (uint64_t c = 2; c < proxy.corners(p).size(); ++c)
                    volume += vdt::Dot(corner(0), vdt::Cross(corner(c - 1), corner(c))) / 6;
            }
            EXPECT_GT(volume, 0.1 * wood.size().x * wood.size().y * wood.size().z);
        }
    }
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
        EXPECT_TRUE(BytesOfFile(again + young) == BytesOfFile(grown + young));
        for (const TextureRecipe& texture : recipe.textures)
            EXPECT_TRUE(BytesOfFile(again + "/textures/" + texture.file) ==
                        BytesOfFile(grown + "/textures/" + texture.file))
                << texture.file;
        EXPECT_FALSE(WriteSpecies(recipe, folder.write("in_the_way", ""), messages));
        EXPECT_THAT(messages.errors, testing::ElementsAre(testing::HasSubstr("in_the_way")));
    }
}

TEST(LargePlant, HasTheSizeThatBenchmarksCountOn)
{
    const vdt::Model model = GrowLargePlant();
    EXPECT_EQ(model.variants[0].skeleton.branches.size(), 40000u);
    EXPECT_EQ(model.variants[0].skeleton.connectors.size(), 60000u);
    EXPECT_NEAR(static_cast<double>(model.variants[0].skeleton.points.size()), 210000, 10000);
    std::ostringstream text;
    RecordingMessages messages;
    ASSERT_TRUE(vdt::VdtWriter(model, messages).write(text));
    EXPECT_NEAR(static_cast<double>(text.tellp()), 38e6, 3e6);
}

} // namespace
} // namespace grower
