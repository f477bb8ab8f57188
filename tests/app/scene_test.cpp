#include "app/read_back.h"
#include "app/test_plant.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <fstream>

namespace verdanth::test {
namespace {

RunResult runScene(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "scene");
    return RunApp(arguments);
}

void expectSuccess(const RunResult& run)
{
    EXPECT_EQ(run.status, 0) << run.messages;
}

// A scene with the plant of tree.vdt at the origin, and another one in winter, twice as large, a quarter turn round, to
// the right and to the front.
std::string plantedScene(const TemporaryFolder& folder)
{
    const std::string plant = folder.write("tree.vdt", PlantText().text());
    const std::string scene = folder.path("garden.scene");
    expectSuccess(runScene({"new", scene, "--unit", "cm"}));
    expectSuccess(runScene({"add", scene, plant, "--season", "summer", "--name", "first"}));
    expectSuccess(runScene({"add", scene, plant, "--season", "winter", "--name", "second", "--at", "3,0,4", "--turn",
                            "90", "--scale", "2", "--display", "full"}));
    return scene;
}

// Where the second plant has a point of the first: a quarter turn against the clock, seen from above.
vdt::Vector3 placed(const vdt::Vector3& p)
{
    return {3 + 2 * p.z, 2 * p.y, 4 - 2 * p.x};
}

nlohmann::json infoOf(const std::string& scene)
{
    const RunResult run = runScene({"info", scene, "--format", "json"});
    expectSuccess(run);
    return nlohmann::json::parse(run.out);
}

TEST(Scene, TellsWhatWasPlanted)
{
    const TemporaryFolder folder;
    const nlohmann::json facts = infoOf(plantedScene(folder));
    ASSERT_EQ(facts["objects"].size(), 2U);
    const nlohmann::json& first = facts["objects"][0];
    const nlohmann::json& second = facts["objects"][1];
    EXPECT_EQ(first["name"], "first");
    EXPECT_EQ(first["season"], "High Summer");
    EXPECT_EQ(second["season"], "winter");
    EXPECT_NEAR(second["positionMeters"][0].get<double>(), 3, 1e-9);
    EXPECT_NEAR(second["positionMeters"][2].get<double>(), 4, 1e-9);
    EXPECT_NEAR(facts["metersPerUnit"].get<double>(), 0.01, 1e-12);
    EXPECT_GT(first["polygons"], 0);  // its proxy
    EXPECT_GT(second["polygons"], 0); // all of it
    EXPECT_NE(first["polygons"], second["polygons"]);
}

// Renderers and exports get whole plants whatever the viewport shows: each is what the plant's own export gives, put in
// its place.
TEST(Scene, ExportsEveryPlantInItsPlace)
{
    const TemporaryFolder folder;
    const std::string scene = plantedScene(folder);
    for (const char* instances : {"merge", "nodes"}) {
        expectSuccess(runScene({"export", scene, "-o", folder.path("garden.glb"), "--instances", instances}));
        const ReadScene garden = ReadGltfFile(folder.path("garden.glb"));
        CheckScene(garden);

        size_t polygons = 0;
        vdt::Box expected;
        for (const bool turned : {false, true}) {
            const char* season = turned ? "winter" : "summer";
            expectSuccess(
                RunApp({"export", folder.path("tree.vdt"), "--season", season, "-o", folder.path("one.glb")}));
            const ReadScene one = ReadGltfFile(folder.path("one.glb"));
            polygons += one.polygons.size();
            for (const ReadPolygon& polygon : one.polygons)
                for (const ReadCorner& corner : polygon.corners)
                    expected.extend(turned ? placed(corner.position) : corner.position);
        }
        EXPECT_EQ(garden.polygons.size(), polygons);
        const vdt::Box bound = garden.bounds();
        EXPECT_LT(vdt::Length(bound.min - expected.min) + vdt::Length(bound.max - expected.max), 1e-4);
    }
}

// Of materials as of meshes.
TEST(Scene, EqualPlantsHaveOneSet)
{
    const TemporaryFolder folder;
    const std::string plant = folder.write("tree.vdt", PlantText().text());
    const std::string scene = folder.path("garden.scene");
    expectSuccess(runScene({"new", scene}));
    for (int i = 0; i < 10; ++i) {
        const std::string place = std::to_string(i) + ",0,0";
        // Whoever asks for the scene's own renderer gets the one that came first.
        expectSuccess(runScene(
            {"add", scene, plant, "--season", "summer", "--at", place, "--renderer", i == 0 ? "corona" : "auto"}));
        EXPECT_EQ(infoOf(scene)["materials"], 2) << i;
    }
    EXPECT_EQ(infoOf(scene)["objects"][9]["season"], "High Summer");
    expectSuccess(runScene({"add", scene, plant, "--renderer", "standard"}));
    EXPECT_EQ(infoOf(scene)["materials"], 4);
    expectSuccess(runScene({"export", scene, "-o", folder.path("garden.gltf"), "--instances", "nodes"}));
    const nlohmann::json garden = nlohmann::json::parse(folder.read("garden.gltf"));
    EXPECT_EQ(garden["meshes"].size(), 2U) << "summer and the default season";
}

TEST(Scene, KeepsPlantsWhoseModelIsGone)
{
    const TemporaryFolder folder;
    const std::string scene = plantedScene(folder);
    const std::string plant = folder.path("tree.vdt");
    const std::string hidden = folder.path("hidden.vdt");
    std::filesystem::rename(plant, hidden);

    const nlohmann::json facts = infoOf(scene);
    ASSERT_EQ(facts["objects"].size(), 2U);
    EXPECT_EQ(facts["objects"][1]["polygons"], 0);
    EXPECT_EQ(facts["objects"][1]["file"], plant);
    const RunResult nothing = runScene({"export", scene, "-o", folder.path("garden.glb")});
    EXPECT_EQ(nothing.status, 2);
    EXPECT_NE(nothing.messages.find("\"second\" shows nothing"), std::string::npos) << nothing.messages;
    // A scene that is saved meanwhile keeps what it knew.
    const std::string other = folder.write("other.vdt", PlantText().text());
    expectSuccess(runScene({"add", scene, other}));
    std::filesystem::rename(hidden, plant);
    EXPECT_EQ(infoOf(scene)["objects"][1]["season"], "winter");
}

TEST(Scene, RefusesWhatIsNoScene)
{
    const TemporaryFolder folder;
    const std::string scene = plantedScene(folder);
    EXPECT_EQ(runScene({"new", scene}).status, 2); // is there already
    EXPECT_EQ(infoOf(scene)["objects"].size(), 2U);

    std::string bytes;
    {
        std::ifstream file(scene, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    for (const std::string& damaged :
         {std::string(), std::string("no scene at all"), bytes.substr(0, bytes.size() / 2)}) {
        const std::string path = folder.write("damaged.scene", damaged);
        const RunResult run = runScene({"info", path});
        EXPECT_NE(run.messages.find("damaged.scene"), std::string::npos) << run.messages;
        if (damaged.size() < bytes.size() / 2) {
            EXPECT_EQ(run.status, 2) << damaged;
        }
    }
    const RunResult missing = runScene({"info", folder.path("none.scene")});
    EXPECT_EQ(missing.status, 2);
    EXPECT_NE(missing.messages.find("does not exist"), std::string::npos) << missing.messages;
}

} // namespace
} // namespace verdanth::test
