#include "app/read_back.h"
#include "app/test_plant.h"
#include "host/host_session.h"
#include "host/material_facts.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace verdanth::test {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kRenderers[] = {"standard", "vray",   "mia",     "corona", "thea",
                                      "arnold",   "octane", "maxwell", "iray"};

// Bark with relief; a leaf with a cut-out, another back, and light that shines through. None of the pictures exists.
std::string richPlant(const TemporaryFolder& folder)
{
    PlantText plant;
    plant.materials = R"(
      <material matid="1" name="bark"><diffuse color="0.5 0.25 0" texture="bark.png"/>
        <bump texture="bark_height.png" strength="0.5"/></material>
      <material matid="2" name="leaf" sides="2" alpha="1">
        <front><diffuse color="0.2 0.5 0.1" texture="leaf.png"/>
          <specular color="0.1 0.1 0.1" texture="shine.png" roughness="0.5"/></front>
        <back><diffuse color="0.4 0.6 0.3" texture="leaf_back.png"/></back>
        <subsurface color="0.5 0.7 0.2" texture="glow.png" depth="0.02"/></material>)";
    return folder.write("plant.vdt", plant.text());
}

RunResult runMaterials(const std::string& plant, const std::vector<std::string>& more)
{
    std::vector<std::string> arguments = {"materials", plant};
    arguments.insert(arguments.end(), more.begin(), more.end());
    RunResult run = RunApp(arguments);
    EXPECT_EQ(run.status, 0) << run.messages;
    return run;
}

Json toldOf(const std::string& plant, const std::string& renderers, const std::string& quality = "high")
{
    const RunResult run = runMaterials(plant, {"--renderer", renderers, "--quality", quality, "--format", "json"});
    return Json::parse(run.out)["renderers"];
}

// How many parts of the facts have the kind.
size_t countOf(const Json& facts, const char* kind)
{
    size_t count = facts.is_object() && facts.contains("kind") && facts["kind"] == kind;
    if (facts.is_structured())
        for (const Json& part : facts) count += countOf(part, kind);
    return count;
}

size_t countLines(const std::string& text, const std::string& part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(MaterialsCommand, EveryRendererIsToldOfPicturesAsTheQualityAllows)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder);
    const Json low = toldOf(plant, "all", "low"), medium = toldOf(plant, "all", "medium"), high = toldOf(plant, "all");
    ASSERT_EQ(low.size(), std::size(kRenderers));
    for (size_t i = 0; i < low.size(); ++i) {
        SCOPED_TRACE(kRenderers[i]);
        for (const Json* told : {&low, &medium, &high}) {
            EXPECT_EQ((*told)[i]["renderer"], kRenderers[i]);
            const Json& materials = (*told)[i]["materials"];
            ASSERT_GE(materials.size(), 2U);
            EXPECT_EQ(materials[0]["matid"], 1);
            EXPECT_EQ(materials[1]["matid"], 2);
            for (const Json& material : materials) EXPECT_FALSE(material["parameters"].empty());
        }
        const size_t none = countOf(low[i], "texture"), some = countOf(medium[i], "texture");
        EXPECT_EQ(none, 0U);
        if (kRenderers[i] == std::string("maxwell")) continue; // which has files of its own
        EXPECT_GE(some, 3U);                                   // bark, leaf, cut-out
        EXPECT_GT(countOf(high[i], "texture"), some);
    }
}

TEST(MaterialsCommand, AreToldWithAllThatTheyLink)
{
    const TemporaryFolder folder;
    const Json told = toldOf(richPlant(folder), "standard,vray,thea,arnold,maxwell,mia");
    const auto leafOf = [&](size_t renderer) -> const Json& { return told[renderer]["materials"][1]; };
    const auto valueOf = [](const Json& material, const char* key, const Json& id) -> Json {
        for (const Json& parameter : material["parameters"])
            if (parameter.contains(key) && parameter[key] == id) return parameter["value"];
        return nullptr;
    };
    const std::string leaf = folder.path("leaf.png");

    // Two materials of the host's own, one a side, by the names of its headers.
    EXPECT_EQ(leafOf(0)["side"], "front");
    EXPECT_EQ(told[0]["materials"][2]["side"], "back");
    EXPECT_EQ(told[0]["materials"][2]["matid"], 2);
    EXPECT_EQ(valueOf(leafOf(0), "name", "MATERIAL_COLOR_COLOR"), Json({0.2, 0.5, 0.1}));
    EXPECT_EQ(valueOf(leafOf(0), "name", "MATERIAL_USE_COLOR"), true);
    EXPECT_EQ(valueOf(leafOf(0), "name", "MATERIAL_COLOR_SHADER")["file"], leaf);

    // A container of two sides, with these as its parts.
    EXPECT_EQ(leafOf(1)["type"], 1026701);
    ASSERT_EQ(leafOf(1)["parts"].size(), 2U);
    EXPECT_EQ(valueOf(leafOf(1), "id", 2101), leafOf(1)["parts"][1]["name"]);
    EXPECT_EQ(valueOf(leafOf(1)["parts"][1], "id", 3002)["file"], folder.path("leaf_back.png"));

    // A shader that wraps the picture's.
    const Json wrapper = valueOf(leafOf(2), "id", 27002);
    EXPECT_EQ(wrapper["type"], 1034346);
    EXPECT_EQ(valueOf(wrapper, "id", 1000), Json({{"type", 5833}, {"file", leaf}}));

    // A network instead of parameters.
    const Json& network = leafOf(3)["network"];
    const Json& root = network["nodes"][network["surface"].get<size_t>()];
    ASSERT_EQ(root["inputs"].size(), 2U);
    const Json& front = network["nodes"][root["inputs"][0]["value"].get<size_t>()];
    EXPECT_EQ(front["type"], 1034187);
    EXPECT_EQ(front["inputs"][0], Json({{"name", "Kd_color"}, {"kind", "texture"}, {"value", {{"file", leaf}}}}));

    // A file that is linked, and a picture's own transparency with a property that goes by name.
    EXPECT_TRUE(valueOf(leafOf(4), "id", 1002).get<std::string>().ends_with("leaf_high.mxm"));
    const Json cutout = valueOf(leafOf(5), "id", 2064);
    EXPECT_EQ(cutout["layers"], "Alpha");
    EXPECT_EQ(cutout["properties"][0]["name"], "iray_force_bake");
}

TEST(MaterialsCommand, TheTableHasWhatTheJsonHas)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder);
    for (const char* renderer : kRenderers) {
        SCOPED_TRACE(renderer);
        const Json bark = toldOf(plant, renderer)[0]["materials"][0];
        const std::string table = runMaterials(plant, {"--renderer", renderer}).out;
        EXPECT_TRUE(table.starts_with(std::string(renderer) + ", high quality, ")) << table;
        const size_t first = table.find("\nmaterial 1 \"bark");
        ASSERT_NE(first, std::string::npos) << table;
        std::istringstream lines(table.substr(first, table.find("\nmaterial 2") - first));
        std::string line, id;
        std::vector<std::string> ids;
        for (int i = 0; i < 3; ++i) std::getline(lines, line); // an empty line, the title, the columns
        while (std::getline(lines, line)) {
            EXPECT_LE(line.size(), 100U) << line;
            std::istringstream(line) >> id;
            if (line.starts_with("  ") && line.size() > 2 && line[2] != ' ') ids.push_back(id); // not what is linked
        }
        ASSERT_GE(ids.size(), bark["parameters"].size());
        for (size_t i = 0; i < bark["parameters"].size(); ++i) {
            const Json& parameter = bark["parameters"][i];
            EXPECT_EQ(ids[i],
                      parameter["id"].dump() + (parameter.contains("second") ? "." + parameter["second"].dump() : ""));
        }
    }
}

TEST(MaterialsCommand, AMissingPictureIsToldOnce)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder);
    folder.write("bark.png", "is there");
    const std::string messages = runMaterials(plant, {"--renderer", "all"}).messages;
    for (const char* name : {"leaf.png", "leaf_back.png", "bark_height.png", "shine.png", "glow.png"})
        EXPECT_EQ(countLines(messages, folder.path(name) + " does not exist"), 1U) << name << '\n' << messages;
    EXPECT_EQ(messages.find("/bark.png"), std::string::npos) << messages;
    EXPECT_EQ(messages.find(".mxm"), std::string::npos) << messages;
    EXPECT_EQ(runMaterials(plant, {"--quality", "low"}).messages.find("exist"), std::string::npos);
}

// What a plant of a scene has after the scene was saved and read is what the renderer was told of it.
TEST(MaterialsCommand, OfAllRenderersAreKeptInScenes)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder), scene = folder.path("garden.scene");
    ASSERT_EQ(RunApp({"scene", "new", scene}).status, 0);
    for (const char* renderer : kRenderers) {
        const RunResult run = RunApp({"scene", "add", scene, plant, "--renderer", renderer, "--name", renderer,
                                      "--season", "winter", "--layer", "leaves"});
        ASSERT_EQ(run.status, 0) << run.messages;
    }
    const Json told = toldOf(plant, "all");
    std::ostringstream out, messages;
    Console console(out, messages, false);
    HostSession session;
    ASSERT_TRUE(session.start("", console));
    const OwnDocument document(
        LoadDocument(Filename(HostText(scene)), SCENEFILTER_OBJECTS | SCENEFILTER_MATERIALS, nullptr));
    ASSERT_TRUE(document);
    BaseObject* object = document->GetFirstObject();
    for (const Json& renderer : told) {
        ASSERT_TRUE(object);
        EXPECT_EQ(Utf8Text(object->GetName()), renderer["renderer"].get<std::string>());
        EXPECT_EQ(DescribeMaterials(*document.get(), *object), renderer["materials"]);
        object = object->GetNext();
    }
    size_t onLayer = 0, all = 0;
    for (BaseMaterial* material = document->GetFirstMaterial(); material; material = material->GetNext(), ++all)
        onLayer += material->GetLayerObject(document.get()) != nullptr;
    EXPECT_EQ(onLayer, all);
    EXPECT_FALSE(document->GetLayerObjectRoot()->GetFirst()->GetNext()) << "one layer for all";
    EXPECT_EQ(messages.str(), "");
}

TEST(MaterialsCommand, AreLeftInTheExtrasOfAnExport)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder), output = folder.path("plant.gltf");
    const auto extrasOf = [&](const std::vector<std::string>& more) {
        std::vector<std::string> arguments = {"export", plant, "-o", output, "--season", "summer"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const RunResult run = RunApp(arguments);
        EXPECT_EQ(run.status, 0) << run.messages;
        std::map<int, Json> extras;
        const Json gltf = Json::parse(folder.read("plant.gltf"));
        for (const Json& material : gltf["materials"])
            extras[material["extras"]["matid"].get<int>()] = material["extras"];
        return extras;
    };
    const auto plain = extrasOf({});
    ASSERT_EQ(plain.size(), 2U);
    for (const auto& [matid, extras] : plain) EXPECT_FALSE(extras.contains("renderer"));
    const Json told = toldOf(plant, "standard", "medium")[0]["materials"];
    const auto found = extrasOf({"--renderer", "Standard", "--quality", "medium"});
    ASSERT_EQ(found.size(), 2U);
    for (const Json& material : told) {
        const Json& renderer = found.at(material["matid"].get<int>())["renderer"];
        EXPECT_EQ(renderer["name"], "standard");
        EXPECT_EQ(renderer["materials"], Json::array({material}));
    }
}

TEST(MaterialsCommand, SayWhatIsWrongWithARequest)
{
    const TemporaryFolder folder;
    const std::string plant = richPlant(folder), scene = folder.path("garden.scene");
    ASSERT_EQ(RunApp({"scene", "new", scene}).status, 0);
    struct Row {
        std::vector<std::string> arguments;
        const char* said;
    };
    const Row rows[] = {{{"materials", plant, "--renderer", "vray,other"}, "other"},
                        {{"materials", plant, "--quality", "best"}, "best"},
                        {{"materials", folder.path("none.vdt")}, "does not exist"},
                        {{"export", plant, "-o", folder.path("x.glb"), "--renderer", "all"}, "all"},
                        {{"scene", "add", scene, plant, "--layer", "leaves"}, "--renderer"}};
    for (const Row& row : rows) {
        const RunResult run = RunApp(row.arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.messages.find(row.said), std::string::npos) << run.messages;
    }
    const RunResult plain = RunApp({"export", plant, "-o", folder.path("x.obj"), "--renderer", "vray"});
    EXPECT_EQ(plain.status, 0);
    EXPECT_NE(plain.messages.find("--renderer changes nothing here"), std::string::npos) << plain.messages;
}

} // namespace
} // namespace verdanth::test
