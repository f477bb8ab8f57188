#include "app/read_back.h"
#include "app/test_plant.h"
#include "export/export_scene.h"
#include "export/relief.h"
#include "export/scene_materials.h"
#include "export/triangles.h"
#include "vdt/generate/plant_mesh.h"

#include <cmath>
#include <csignal>
#include <functional>
#include <random>
#include <sys/resource.h>

namespace verdanth::test {
namespace {

const char* const kSuffixes[] = {".glb", ".gltf", ".obj", ".ply"};

ReadScene readBack(const std::string& path)
{
    ReadScene scene = path.ends_with(".obj")   ? ReadObjFile(path)
                      : path.ends_with(".ply") ? ReadPlyFile(path)
                                               : ReadGltfFile(path);
    CheckScene(scene);
    return scene;
}

RunResult runExport(const std::string& from, const std::string& to, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"export", from, "-o", to});
    return RunApp(options);
}

ReadScene exported(const TemporaryFolder& folder, std::vector<std::string> options, const std::string& name = "out.glb")
{
    const RunResult run = runExport(folder.path("tree.vdt"), folder.path(name), std::move(options));
    EXPECT_EQ(run.status, 0) << run.messages;
    return readBack(folder.path(name));
}

void expectNear(const vdt::Vector3& a, const vdt::Vector3& b, double slack)
{
    EXPECT_LE(vdt::Length(a - b), slack) << a.x << ' ' << a.y << ' ' << a.z << " and " << b.x << ' ' << b.y << ' '
                                         << b.z;
}

std::string picture(const std::vector<uint8_t>& rgba, uint32_t width, uint32_t height)
{
    const std::vector<uint8_t> bytes = EncodePng({width, height, rgba});
    return {bytes.begin(), bytes.end()};
}

const std::string kPixel = picture({10, 20, 30, 255}, 1, 1);

// What the library itself builds, as the judge of all writers.
vdt::Mesh builtMesh(const std::string& file, const std::string& season)
{
    OpenPlant plant;
    vdt::NullMessageHandler silence;
    plant.handle = plant.cache.acquire(file, silence, vdt::kNone);
    vdt::Mesh mesh;
    vdt::BuildPlantMesh(*plant.handle.variantData(silence, true), {.season = season}, mesh, silence);
    return mesh;
}

TEST(Export, EveryFormatGivesTheGeometryThatTheLibraryBuilds)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("tree.vdt", PlantText().text());
    for (const char* season : {"summer", "winter"}) {
        const vdt::Mesh built = builtMesh(file, season);
        vdt::Box box;
        built.GetBounds(box);
        uint64_t triangles = 0;
        for (uint64_t i = 0; i < built.PolygonCount(); ++i) triangles += built.corners(i).size() - 2;

        const ReadScene reference = exported(folder, {"--season", season}, "reference.glb");
        for (const std::string suffix : kSuffixes) {
            for (const char* form : {"merge", "nodes", "gpu"}) {
                SCOPED_TRACE(suffix + " " + form + " " + season);
                const ReadScene scene = exported(folder, {"--season", season, "--instances", form}, "out" + suffix);
                const bool gltf = suffix == ".glb" || suffix == ".gltf";
                EXPECT_EQ(scene.polygons.size(), gltf ? triangles : built.PolygonCount());
                expectNear(scene.bounds().min, box.min * 0.01, 1e-6);
                expectNear(scene.bounds().max, box.max * 0.01, 1e-6);
                const bool ids = suffix == ".ply";
                expectNear(scene.area(ids ? "2" : "leaf").first, reference.area("leaf").first, 1e-6);
                const double bark = reference.area("bark").second;
                EXPECT_NEAR(scene.area(ids ? "1" : "bark").second, bark, 1e-2 * bark);
            }
        }
    }
}

TEST(Export, KeepsTextureCoordinatesSharesVerticesAndRepeatsItsBytes)
{
    const TemporaryFolder folder;
    folder.write("tree.vdt", PlantText().text());
    for (const std::string suffix : kSuffixes) {
        SCOPED_TRACE(suffix);
        const ReadScene scene = exported(folder, {"--season", "High Summer"}, "out" + suffix);
        const std::string bytes = folder.read("out" + suffix);
        exported(folder, {"--season", "High Summer"}, "out" + suffix);
        EXPECT_EQ(folder.read("out" + suffix), bytes);
        bool found = false; // the blade's last corner, 0 2 0.5 from the first connector at 1 20 0
        for (const ReadPolygon& polygon : scene.polygons)
            for (const ReadCorner& corner : polygon.corners)
                if (vdt::Length(corner.position - vdt::Vector3{0.01, 0.22, 0.005}) < 1e-6)
                    found = corner.coordinate == vdt::Vector2f{0, 0.75F};
        EXPECT_TRUE(found);
    }
    const ReadScene scene = exported(folder, {"--season", "summer"});
    uint64_t vertices = 0;
    for (const auto& accessor : scene.document["accessors"])
        if (accessor.contains("min")) vertices += accessor["count"].get<uint64_t>();
    EXPECT_LT(vertices, scene.polygons.size() * 3 / 2);
}

TEST(Export, NodesHoldEachMeshOnceAndANodeACopy)
{
    const TemporaryFolder folder;
    folder.write("tree.vdt", PlantText().text());
    const auto document = exported(folder, {"--season", "summer", "--instances", "nodes"}).document;
    EXPECT_EQ(document["meshes"].size(), 3u); // branches, blade, bud
    std::map<int, int> uses;
    for (const auto& node : document["nodes"])
        if (node.contains("mesh")) ++uses[node["mesh"].get<int>()];
    EXPECT_EQ(uses, (std::map<int, int>{{0, 1}, {1, 2}, {2, 1}}));
    EXPECT_EQ(exported(folder, {"--season", "summer"}).document["meshes"].size(), 1u); // as the host has it

    const auto lists = exported(folder, {"--season", "summer", "--instances", "gpu"}).document;
    EXPECT_EQ(lists["nodes"].size(), 4u); // the root and a node a mesh
    EXPECT_EQ(lists["extensionsRequired"][0], "EXT_mesh_gpu_instancing");
}

TEST(Export, TakesUnitVariantSeasonAndSubdivisionAsAsked)
{
    const TemporaryFolder folder;
    PlantText other;
    other.modelAttributes = R"( name="young")";
    other.points = "0 0 0  0 5 0  0.5 10 0  2 7 1";
    PlantText plant;
    plant.moreModels = other.model();
    const auto height = [&](std::vector<std::string> options) {
        return exported(folder, std::move(options)).bounds().max.y;
    };
    for (const auto& [unit, meters] :
         {std::pair{"millimeters", 0.001}, {"centimeters", 0.01}, {"meters", 1.0}, {"feet", 0.01}}) {
        plant.unit = unit;
        folder.write("tree.vdt", plant.text());
        EXPECT_NEAR(height({}), 21 * meters, 2 * meters) << unit;
    }
    plant.unit = "meters";
    folder.write("tree.vdt", plant.text());
    EXPECT_GT(height({"--variant", "Adult"}), 19);
    EXPECT_LT(height({"--variant", "young"}), 13);
    EXPECT_LT(height({"--variant", "1"}), 13);

    const auto count = [&](std::vector<std::string> options) {
        return exported(folder, std::move(options)).polygons.size();
    };
    EXPECT_EQ(count({}), count({"--season", "winter"})); // the default qualifier
    EXPECT_EQ(count({"--season", "summer"}), count({}) + 4);
    EXPECT_LT(count({"--subdivision", "0"}), count({}));
    EXPECT_LT(count({"--subdivision", "2"}), count({"--subdivision", "2", "--uniform"}));
}

TEST(Export, MaterialsBecomeWhatGltfKnows)
{
    const TemporaryFolder folder;
    folder.write("leaf.png", picture({1, 2, 3, 0, 4, 5, 6, 255}, 2, 1));
    folder.write("mask.png", picture({0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255, 255, 255, 255, 255}, 2, 2));
    PlantText plant;
    plant.materials = R"(<material matid="1" name="bark"><front><diffuse color="0.5 0.25 0"/>
        <specular color="1 1 1" roughness="0.5"/></front></material>
      <material matid="2" name="leaf" alpha="1"><diffuse texture="leaf.png"/><normal texture="leaf.png"/></material>)";
    folder.write("tree.vdt", plant.text());
    auto materials = exported(folder, {}).document["materials"];
    const auto& bark = materials[0];
    EXPECT_NEAR(bark["pbrMetallicRoughness"]["baseColorFactor"][0].get<double>(), 0.21404, 1e-4); // sRGB to linear
    EXPECT_NEAR(bark["pbrMetallicRoughness"]["baseColorFactor"][1].get<double>(), 0.05088, 1e-4);
    EXPECT_EQ(bark["pbrMetallicRoughness"]["roughnessFactor"], 0.5);
    EXPECT_FALSE(bark.contains("doubleSided"));
    EXPECT_FALSE(bark.contains("alphaMode"));
    const auto& leaf = materials[1];
    EXPECT_EQ(leaf["alphaMode"], "MASK");
    EXPECT_EQ(leaf["doubleSided"], true);
    EXPECT_EQ(leaf["pbrMetallicRoughness"]["baseColorFactor"][0], 1);
    EXPECT_EQ(leaf["pbrMetallicRoughness"]["baseColorTexture"]["index"], leaf["normalTexture"]["index"]);

    // A cut-out of its own, of another size, goes into one picture with the colour.
    plant.materials =
        R"(<material matid="1"/><material matid="2" name="leaf"><diffuse texture="leaf.png"/><alpha texture="mask.png"/></material>)";
    folder.write("tree.vdt", plant.text());
    const ReadScene scene = exported(folder, {}, "cut out.gltf");
    const std::string uri = scene.document["images"][0]["uri"];
    EXPECT_EQ(uri, "cut%20out_textures/leaf_cutout.png");
    std::string problem;
    const auto combined = ReadPng(folder.path("cut out_textures/leaf_cutout.png"), problem);
    ASSERT_TRUE(combined) << problem;
    EXPECT_EQ(combined->height, 2u);
    EXPECT_EQ(combined->pixels[3], 0);   // black in the mask
    EXPECT_EQ(combined->pixels[4], 4);   // the colour's second pixel
    EXPECT_EQ(combined->pixels[7], 255); // white in the mask

    exported(folder, {});
    EXPECT_NE(folder.read("out.glb").find("\x89PNG"), std::string::npos);
}

TEST(Export, TexturesStayWhereTheyAreOrAreCopiedAndAreNeverOverwritten)
{
    const TemporaryFolder folder;
    for (const char* name : {"in/pictures/a b.png", "shared/leaf.png", "out_textures/leaf.png"})
        folder.write(name, kPixel);
    PlantText plant;
    plant.materials =
        R"(<material matid="1"><diffuse texture="../in/pictures/a b.png"/><normal texture="../out_textures/leaf.png"/></material>
        <material matid="2"><diffuse texture="../shared/leaf.png"/></material>)";
    folder.write("in/tree.vdt", plant.text());
    for (const auto& [out, uris] :
         {std::pair<const char*, std::vector<std::string>>{
              "in/x.gltf", {"pictures/a%20b.png", "x_textures/leaf.png", "x_textures/leaf_2.png"}},
          {"out.gltf", {"in/pictures/a%20b.png", "out_textures/leaf.png", "shared/leaf.png"}},
          {"deep.gltf", {"in/pictures/a%20b.png", "out_textures/leaf.png", "shared/leaf.png"}}}) {
        EXPECT_EQ(runExport(folder.path("in/tree.vdt"), folder.path(out)).status, 0);
        std::vector<std::string> found;
        const ReadScene scene = readBack(folder.path(out));
        for (const auto& image : scene.document["images"]) found.push_back(image["uri"]);
        EXPECT_EQ(found, uris) << out;
    }
    EXPECT_EQ(runExport(folder.path("in/tree.vdt"), folder.path("in/x.obj")).status, 0);
    EXPECT_NE(folder.read("in/x.mtl").find("map_Kd pictures/a b.png\n"), std::string::npos);
    EXPECT_NE(folder.read("in/x.mtl").find("map_Kd x_textures/leaf_2.png\n"), std::string::npos);

    // A copy that would take the place of a texture's own file gets another name.
    folder.write("one/y_textures/t.png", kPixel);
    folder.write("two/t.png", picture({9, 9, 9, 255}, 1, 1));
    plant.materials =
        R"(<material matid="1"><diffuse texture="../two/t.png"/></material><material matid="2"><diffuse texture="y_textures/t.png"/></material>)";
    folder.write("one/tree.vdt", plant.text());
    EXPECT_EQ(runExport(folder.path("one/tree.vdt"), folder.path("one/y.gltf")).status, 0);
    EXPECT_EQ(folder.read("one/y_textures/t.png"), kPixel);
    EXPECT_NE(folder.read("one/y_textures/t_2.png"), kPixel);
}

TEST(Export, ATextureThatCannotBeUsedCostsAWarningAndNothingElse)
{
    const TemporaryFolder folder;
    folder.write("cut.png", kPixel.substr(0, kPixel.size() - 9));
    folder.write("note.tif", "II*");
    folder.write("empty.png", "");
    folder.write("ok.png", kPixel);
    folder.write("photo.jpg", "\xFF\xD8 \xFF\xD9");
    const char* const rows[] = {R"( texture="none.png"/>)",
                                R"( texture="cut.png"/>)",
                                R"( texture="empty.png"/>)",
                                R"( texture="tree.vdt"/>)",
                                R"( texture="note.tif"/>)",
                                R"(/><alpha texture="none.png"/>)",
                                R"(/><alpha texture="photo.jpg"/>)",
                                R"(/><normal texture="cut.png"/>)",
                                R"(/><bump texture="none.png" strength="1"/>)",
                                R"(/><bump texture="photo.jpg" strength="1"/>)",
                                R"(/><specular texture="cut.png"/>)",
                                R"(/><subsurface texture="none.png"/>)",
                                R"(/><subsurface texture="empty.png" color="0.1 0 0"/>)"};
    for (const char* row : rows) {
        SCOPED_TRACE(row);
        PlantText plant;
        plant.materials = std::string(R"(<material matid="1" name="bark" sides="2"><diffuse color="1 0 0")") + row +
                          R"(</material><material matid="2"/>)";
        folder.write("tree.vdt", plant.text());
        const RunResult run = runExport(folder.path("tree.vdt"), folder.path("out.glb"), {"--season", "winter"});
        EXPECT_EQ(run.status, 0);
        const auto told = run.messages.find("warning: ");
        EXPECT_NE(told, std::string::npos) << run.messages;
        EXPECT_EQ(run.messages.find("warning: ", told + 1), std::string::npos) << run.messages;
        const auto document = readBack(folder.path("out.glb")).document;
        const auto& material = document["materials"][0];
        EXPECT_EQ(material["pbrMetallicRoughness"]["baseColorFactor"], nlohmann::json({1, 0, 0, 1}));
        EXPECT_FALSE(material.contains("alphaMode"));
        EXPECT_FALSE(document.contains("images"));
        EXPECT_EQ(material["extensions"].contains("KHR_materials_diffuse_transmission"),
                  std::string(row).find("color=\"0.1") != std::string::npos);
    }
}

// Pictures for all that a record can name, called after what they are for, and a record that names them.
class ExportedMaterials : public testing::Test {
protected:
    static vdt::MaterialData fullRecord(const TemporaryFolder& folder)
    {
        vdt::MaterialData record;
        record.matid = 7;
        record.name = "leaf";
        const auto make = [&](const char* name, const std::vector<uint8_t>& rgba) {
            return folder.write(std::string(name) + ".png", picture(rgba, 1, 1));
        };
        const auto fill = [&](vdt::MaterialSide& side, const std::string& prefix) {
            side.diffuseColor = {0.5F, 0.5F, 0.5F};
            side.diffuseTexture = make((prefix + "color").c_str(), {0, 255, 0, 255});
            side.specularColor = {1, 0.735357F, 0}; // half and half of red and green, as light
            side.specularTexture = make((prefix + "gloss").c_str(), {9, 9, 9, 255});
            side.specularRoughness = 0.5F;
            side.bumpTexture = make((prefix + "height").c_str(), {9, 9, 9, 255});
            side.bumpStrength = 0.5F;
        };
        fill(record.front, "");
        fill(*record.backSide(true), "back_");
        record.front.normalTexture = make("normal", {128, 128, 255, 255});
        record.alphaTexture = make("mask", {255, 255, 255, 255});
        record.subsurfaceColor = {0.25F, 0.25F, 0.25F};
        record.subsurfaceTexture = make("inner", {0, 0, 255, 255});
        return record;
    }

    // A triangle of the material, by itself.
    Scene sceneOf(const vdt::MaterialData& record, MaterialQuality quality = MaterialQuality::High)
    {
        vdt::Model model;
        model.materials = {record};
        Scene scene;
        SceneMaterials materials(model, "", scene.materials, silence, quality);
        materials.indexOf(record.matid);
        SceneMesh mesh{"mesh", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {}, {}, {0, 1, 2}, {3}, {0}};
        for (uint32_t i = 0; i < 3; ++i) {
            mesh.normals.push_back({0, 0, 1});
            mesh.vertices.push_back({i, {static_cast<float>(i), 0}});
        }
        scene.levels.push_back({{mesh, {Placement()}}, {}, {}});
        return scene;
    }

    // The materials, with each texture told by its picture's name.
    nlohmann::json written(const Scene& scene, BackForm backs = BackForm::Shared)
    {
        const TemporaryFolder folder;
        ExportSummary summary;
        EXPECT_TRUE(ExportScene(scene, {.path = folder.path("out.glb"), .backs = backs}, summary, silence));
        const nlohmann::json document = readBack(folder.path("out.glb")).document;
        std::set<std::string> used;
        const std::function<void(nlohmann::json&)> visit = [&](nlohmann::json& value) {
            if (value.is_number_float()) value = std::round(value.get<double>() * 1e4) / 1e4;
            if (!value.is_structured()) return;
            if (value.is_object() && value.contains("extensions"))
                for (const auto& [name, content] : value["extensions"].items()) used.insert(name);
            if (value.is_object() && value.contains("index"))
                value = document["images"][value["index"].get<size_t>()]["name"];
            else
                for (nlohmann::json& part : value) visit(part);
        };
        nlohmann::json materials = document["materials"];
        visit(materials);
        EXPECT_EQ(document.value("extensionsUsed", nlohmann::json::array()), nlohmann::json(used));
        EXPECT_FALSE(document.contains("extensionsRequired"));
        return materials;
    }

    TemporaryFolder pictures;
    vdt::NullMessageHandler silence;
};

TEST_F(ExportedMaterials, HoldWhatTheQualityAllowsOfTheRecord)
{
    using Record = vdt::MaterialData;
    struct Row {
        const char* name;
        MaterialQuality quality;
        std::function<void(Record&)> change;
        const char* expected; // without name and matid
    };
    const auto nothing = [](Record&) {};
    const auto plain = [](Record& record) {
        record = Record();
        record.front.diffuseColor = {1, 0, 0};
    };
    constexpr auto kLow = MaterialQuality::Low, kMedium = MaterialQuality::Medium, kHigh = MaterialQuality::High;
    // What is left of a plain record where its pictures tell nothing.
    constexpr const char* kMattRed =
        R"({"pbrMetallicRoughness":{"baseColorFactor":[1,0,0,1],"metallicFactor":0,"roughnessFactor":1},
            "extensions":{"KHR_materials_specular":{"specularFactor":0}}})";
    const Row rows[] = {
        {"all, low", kLow, nothing,
         R"({"pbrMetallicRoughness":{"baseColorFactor":[0,1,0,1],"metallicFactor":0,"roughnessFactor":0.5},
             "extensions":{"KHR_materials_specular":{"specularFactor":1,"specularColorFactor":[1,0.5,0]}},
             "doubleSided":true})"},
        {"all, medium", kMedium, nothing,
         R"({"pbrMetallicRoughness":{"baseColorFactor":[1,1,1,1],"baseColorTexture":"color_cutout",
             "metallicFactor":0,"roughnessFactor":0.5},"normalTexture":"normal","alphaMode":"MASK","alphaCutoff":0.5,
             "extensions":{"KHR_materials_specular":{"specularFactor":1,"specularColorFactor":[1,0.5,0]}},
             "doubleSided":true})"},
        {"all, high", kHigh, nothing,
         R"({"pbrMetallicRoughness":{"baseColorFactor":[1,1,1,1],"baseColorTexture":"color_cutout",
             "metallicFactor":0,"roughnessFactor":0.5},"normalTexture":"normal","alphaMode":"MASK","alphaCutoff":0.5,
             "extensions":{"KHR_materials_specular":{"specularColorTexture":"gloss"},
                           "KHR_materials_diffuse_transmission":{"diffuseTransmissionFactor":0.3333,
                                                                 "diffuseTransmissionColorTexture":"inner"}},
             "doubleSided":true})"},
        {"heights where there are no normals, a colour for what shines through", kHigh,
         [](Record& record) {
             record.front.normalTexture = record.subsurfaceTexture = record.alphaTexture = "";
             record.front.specularTexture = "";
             record.front.specularColor = {0, 0, 0};
             record.subsurfaceColor = {1, 0, 0};
             record.front.diffuseColor = {0.2126F, 0.2126F, 0.2126F};
         },
         R"({"pbrMetallicRoughness":{"baseColorFactor":[1,1,1,1],"baseColorTexture":"color",
             "metallicFactor":0,"roughnessFactor":1},"normalTexture":"height_relief",
             "extensions":{"KHR_materials_specular":{"specularFactor":0},
                           "KHR_materials_diffuse_transmission":{"diffuseTransmissionFactor":0.5,
                                                                 "diffuseTransmissionColorFactor":[1,0,0]}},
             "doubleSided":true})"},
        {"the picture tells how much shines through where the colour is black", kHigh,
         [&](Record& record) {
             const std::string green = record.front.diffuseTexture;
             plain(record);
             record.front.diffuseColor = {0, 1, 0};
             record.subsurfaceTexture = green;
             record.aliasBack();
         },
         R"({"pbrMetallicRoughness":{"baseColorFactor":[0,1,0,1],"metallicFactor":0,"roughnessFactor":1},
             "extensions":{"KHR_materials_specular":{"specularFactor":0},
                           "KHR_materials_diffuse_transmission":{"diffuseTransmissionFactor":0.5,
                                                                 "diffuseTransmissionColorTexture":"color"}},
             "doubleSided":true})"},
        {"one side lets nothing through", kHigh,
         [&](Record& record) {
             plain(record);
             record.subsurfaceColor = {1, 1, 1};
         },
         kMattRed},
        {"a picture below its quality does not make matt what is matt", kMedium,
         [&](Record& record) {
             const std::string gloss = record.front.specularTexture;
             plain(record);
             record.front.specularTexture = gloss;
         },
         kMattRed},
        {"heights of no strength", kHigh,
         [&](Record& record) {
             const std::string height = record.front.bumpTexture;
             plain(record);
             record.front.bumpTexture = height;
         },
         kMattRed}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        vdt::MaterialData record = fullRecord(pictures);
        row.change(record);
        nlohmann::json material = written(sceneOf(record, row.quality))[0];
        material.erase("name");
        material.erase("extras");
        EXPECT_EQ(material, nlohmann::json::parse(row.expected)) << material.dump(1);
    }
}

TEST_F(ExportedMaterials, OfObjNameThePicturesThatTheQualityAllows)
{
    const TemporaryFolder folder;
    for (const auto& [quality, expected] :
         {std::pair{MaterialQuality::Low, ""},
          {MaterialQuality::Medium, "map_Kd color|map_d mask|norm normal|map_Bump -bm 0.5 height|"},
          {MaterialQuality::High, "map_Kd color|map_d mask|map_Ks gloss|norm normal|map_Bump -bm 0.5 height|"}}) {
        ExportSummary summary;
        const std::string out = "out" + std::to_string(static_cast<int>(quality));
        const Scene scene = sceneOf(fullRecord(pictures), quality);
        EXPECT_TRUE(ExportScene(scene, {.path = folder.path(out + ".obj")}, summary, silence));
        std::string found;
        std::istringstream lines(folder.read(out + ".mtl"));
        for (std::string line; std::getline(lines, line);) {
            const size_t path = line.find(out + "_textures/");
            if (path == line.npos) continue;
            EXPECT_TRUE(folder.has(line.substr(path))) << line;
            found += line.erase(path, out.size() + 10).replace(line.find(".png"), 4, "|");
        }
        EXPECT_EQ(found, expected);
        EXPECT_FALSE(folder.has(out + "_textures/inner.png")); // what is not named is not copied
    }
}

TEST_F(ExportedMaterials, CarryWhatACallerAddsAndOnlyIfItIsAnObject)
{
    for (const auto& [text, expected] : {std::pair{R"({"b":[1,"x"],"a":{}})", R"({"b":[1,"x"],"a":{}})"},
                                         {"", "null"},
                                         {"[1]", "null"},
                                         {R"({"a":)", "null"}}) {
        Scene scene = sceneOf(fullRecord(pictures));
        scene.materials[0].extras = text;
        const nlohmann::json extras = written(scene)[0]["extras"];
        EXPECT_EQ(extras["matid"], 7);
        EXPECT_EQ(extras.value("renderer", nlohmann::json()), nlohmann::json::parse(expected));
    }
}

TEST_F(ExportedMaterials, OfBacksHaveTheBacksLookAndTheFrontsOutline)
{
    nlohmann::json all = written(sceneOf(fullRecord(pictures)), BackForm::Own);
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[1]["name"], "leaf_back");
    EXPECT_EQ(all[1]["pbrMetallicRoughness"]["baseColorTexture"], "back_color_cutout");
    EXPECT_EQ(all[1]["normalTexture"], "back_height_relief");
    EXPECT_EQ(all[1]["extensions"]["KHR_materials_specular"]["specularColorTexture"], "back_gloss");
    EXPECT_EQ(all[1]["extensions"]["KHR_materials_diffuse_transmission"],
              all[0]["extensions"]["KHR_materials_diffuse_transmission"]);
    EXPECT_FALSE(all[0].contains("doubleSided") || all[1].contains("doubleSided"));

    vdt::MaterialData record = fullRecord(pictures);
    *record.backSide(true) = record.front; // nothing of its own
    all = written(sceneOf(record), BackForm::Own);
    EXPECT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0]["doubleSided"], true);
}

TEST(Export, BacksOfTheirOwnShareTheirFrontsVerticesAndFaceTheOtherWay)
{
    const TemporaryFolder folder;
    PlantText plant;
    plant.materials = R"(<material matid="1" name="bark"/><material matid="2" name="leaf" sides="2">
        <front><diffuse color="0 1 0"/></front><back><diffuse color="0 0.5 0"/></back></material>)";
    vdt::NullMessageHandler silence;
    const Scene scene = SceneOf(folder.write("tree.vdt", plant.text()), silence);
    for (const FoliageForm foliage : {FoliageForm::Merged, FoliageForm::Nodes, FoliageForm::Instances}) {
        for (const std::string suffix : {".glb", ".gltf"}) {
            SCOPED_TRACE(suffix + std::to_string(static_cast<int>(foliage)));
            const auto write = [&](BackForm backs, ExportSummary& summary) {
                const std::string path = folder.path("out" + suffix);
                EXPECT_TRUE(ExportScene(scene, {.path = path, .foliage = foliage, .backs = backs}, summary, silence));
                return readBack(path); // where all normals look to the side from which a surface is seen
            };
            ExportSummary shared, own;
            const ReadScene fronts = write(BackForm::Shared, shared);
            const ReadScene both = write(BackForm::Own, own);
            expectNear(both.area("leaf").first, fronts.area("leaf").first, 1e-6);
            expectNear(both.area("leaf_back").first, both.area("leaf").first * -1, 1e-6);
            EXPECT_NEAR(both.area("leaf_back").second, both.area("leaf").second, 1e-6);
            EXPECT_EQ(own.vertices, shared.vertices);
            EXPECT_EQ(own.polygons, both.polygons.size());
            for (const auto& mesh : both.document["meshes"]) {
                std::map<std::string, nlohmann::json> attributes; // by material
                for (const auto& primitive : mesh["primitives"])
                    attributes[both.document["materials"].at(primitive["material"].get<size_t>())["name"]] =
                        primitive["attributes"];
                EXPECT_EQ(attributes.contains("leaf"), attributes.contains("leaf_back"));
                EXPECT_FALSE(attributes.contains("bark_back"));
                EXPECT_EQ(attributes["leaf"]["POSITION"], attributes["leaf_back"]["POSITION"]);
                EXPECT_EQ(attributes["leaf"]["TEXCOORD_0"], attributes["leaf_back"]["TEXCOORD_0"]);
            }
        }
    }
}

// A slope of so many pixels a pixel leans the normal by so much, against the slope; across the border it is steep.
TEST(Relief, NormalsLeanAgainstTheSlope)
{
    constexpr uint32_t kSide = 50; // white stands one pixel above black at strength 1
    const auto ramp = [&](bool upwards) {
        Picture heights{kSide, kSide, {}};
        for (uint32_t y = 0; y < kSide; ++y)
            for (uint32_t x = 0; x < kSide; ++x) {
                const auto grey = static_cast<uint8_t>(5 * (upwards ? kSide - y : x));
                heights.pixels.insert(heights.pixels.end(), {grey, grey, grey, 255});
            }
        return heights;
    };
    for (const float strength : {0.0F, 1.0F, -1.0F, 51.0F, 3e38F}) {
        SCOPED_TRACE(strength);
        const double slope = 5 / 255.0 * strength;
        const double length = std::sqrt(1 + slope * slope);
        const auto byteOf = [](double component) { return component * 127.5 + 127.5; };
        const Picture alongU = NormalsOfHeights(ramp(false), strength);
        const Picture alongV = NormalsOfHeights(ramp(true), strength);
        for (const auto& [x, y] : {std::pair{10U, 20U}, {48U, 0U}, {1U, 49U}}) {
            const uint8_t* u = &alongU.pixels[(y * kSide + x) * 4];
            const uint8_t* v = &alongV.pixels[(x * kSide + y) * 4];
            EXPECT_NEAR(u[0], byteOf(-slope / length), 0.51);
            EXPECT_NEAR(v[1], byteOf(-slope / length), 0.51);
            EXPECT_NEAR(u[2], byteOf(1 / length), 0.51);
            EXPECT_NEAR(v[0], 127.5, 0.51);
        }
        const double fall = (1 - 49) * 5 / 2.0 / 255 * strength; // from the last pixel to the second
        EXPECT_NEAR(alongU.pixels[0], byteOf(-fall / std::sqrt(1 + fall * fall)), 2.6);
    }
    EXPECT_EQ(NormalsOfHeights({1, 1, {9, 9, 9, 0}}, 5).pixels, (std::vector<uint8_t>{128, 128, 255, 255}));
}

TEST(Export, HostileNumbersLeaveAValidFile)
{
    const TemporaryFolder folder;
    PlantText plant;
    plant.points = "0 0 0  0 10 0  1 nan 0  4 14 2";
    plant.connectors = R"(<vertices>3 3 3 2 3</vertices>
      <attrib name="group" type="int" storageclass="vertex">2 2 2 2 2</attrib>
      <attrib name="orient" type="float4" storageclass="vertex">0 0 0 0 nan 0 0 1 0 0 0 1 0 0 0 1 9 9 9 9</attrib>
      <attrib name="scale" type="float" storageclass="vertex">1 1 1e300 1 0</attrib>)";
    plant.meshes = R"(<mesh group="2"><points>0 0 0  1 0 0  0 1 0  inf 0 0  2 0 0</points><polygons>
        <nvertices>3 3 3 3 4</nvertices><vertices>0 1 2  0 1 3  0 0 1  0 1 4  0 1 1 2</vertices>
        <attrib name="tex" type="float2" storageclass="vertex">nan inf 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0</attrib>
      </polygons></mesh>)";
    folder.write("tree.vdt", plant.text());
    for (const std::string suffix : kSuffixes) {
        SCOPED_TRACE(suffix);
        const RunResult run = runExport(folder.path("tree.vdt"), folder.path("out" + suffix));
        EXPECT_EQ(run.status, 0) << run.messages;
        EXPECT_NE(run.messages.find("left out"), std::string::npos);
        EXPECT_EQ(folder.read("out" + suffix).find("nan"), std::string::npos);
        // What is left of a branch around such a point may look either way.
        if (suffix == ".glb" || suffix == ".gltf") CheckScene(ReadGltfFile(folder.path("out" + suffix)), false);
    }
    const std::string none = R"(<verdanth version="1.2"><plant><model/></plant></verdanth>)";
    EXPECT_EQ(runExport(folder.write("none.vdt", none), folder.path("none.glb")).status, 2);
    EXPECT_FALSE(folder.has("none.glb"));
}

// Quads of all shapes, among them concave ones: both halves face as the whole does, and make up its area.
TEST(Triangles, HalvesOfAQuadFaceTheSameWay)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> angle(0.1F, 0.9F), radius(0.05F, 1);
    const auto area = [](const Float3& a, const Float3& b, const Float3& c) {
        return static_cast<double>(b.x - a.x) * (c.y - a.y) - static_cast<double>(b.y - a.y) * (c.x - a.x);
    };
    for (int round = 0; round < 500; ++round) {
        SceneMesh mesh;
        for (uint32_t corner = 0; corner < 4; ++corner) {
            const float turn = 1.5708F * (static_cast<float>(corner) + angle(random) * 0.9F);
            const float reach = radius(random);
            mesh.points.push_back({std::cos(turn) * reach, std::sin(turn) * reach, 0}); // star-shaped about the origin
            mesh.normals.push_back({0, 0, 1});
            mesh.vertices.push_back({corner, {0, 0}});
            mesh.corners.push_back(corner);
        }
        const double whole =
            area(mesh.points[0], mesh.points[1], mesh.points[2]) + area(mesh.points[0], mesh.points[2], mesh.points[3]);
        if (whole <= 0) continue;
        mesh.polygonEnds = {4};
        mesh.polygonMaterials = {0};
        const TriangleMesh cut = TrianglesOf(mesh, 0);
        double sum = 0;
        for (size_t i = 0; i < cut.indices.size(); i += 3) {
            const auto corner = [&](size_t c) { return cut.positions[cut.indices[i + c]]; };
            EXPECT_GT(area(corner(0), corner(1), corner(2)), 0) << round;
            sum += area(corner(0), corner(1), corner(2));
        }
        EXPECT_NEAR(sum, whole, 1e-5);
    }
}

TEST(OutputFiles, AFailedExportLeavesNothing)
{
    const TemporaryFolder folder;
    folder.write("leaf.png", kPixel);
    folder.write("in/leaf.png", kPixel);
    PlantText plant;
    plant.materials = R"(<material matid="1"><diffuse texture="../leaf.png"/></material>)";
    folder.write("in/tree.vdt", plant.text());
    const auto listing = [&] {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.root))
            names.insert(entry.path().string());
        return names;
    };
    const auto expectFailure = [&](const std::string& out) {
        const std::set<std::string> before = listing();
        const RunResult run = runExport(folder.path("in/tree.vdt"), out);
        EXPECT_EQ(run.status, 2) << out;
        EXPECT_NE(run.messages.find(out.substr(0, out.find_last_of('.'))), std::string::npos) << run.messages;
        EXPECT_EQ(listing(), before) << out;
    };
    std::filesystem::create_directory(folder.path("folder.glb"));
    expectFailure(folder.path("folder.glb"));
    expectFailure(folder.path("no/such/folder/x.glb"));
    expectFailure(folder.path("x.stl"));
    expectFailure("/proc/x.gltf");
    for (const std::string suffix : kSuffixes) { // the disk is full after 700 bytes
        rlimit old{};
        getrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit tight{700, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
        expectFailure(folder.path("in/full" + suffix));
        setrlimit(RLIMIT_FSIZE, &old);
    }

    // What stood there before a failed run is still whole, and a leftover of a killed run does not stop the next.
    folder.write("in/x.glb", "old");
    folder.write("in/x.glb.part", "left over");
    EXPECT_EQ(runExport(folder.path("in/tree.vdt"), folder.path("in/x.glb"), {"--variant", "none"}).status, 2);
    EXPECT_EQ(folder.read("in/x.glb"), "old");
    EXPECT_EQ(runExport(folder.path("in/tree.vdt"), folder.path("in/x.glb")).status, 0);
    EXPECT_NE(folder.read("in/x.glb"), "old");
    EXPECT_EQ(folder.read("in/x.glb.part"), "left over");
}

} // namespace
} // namespace verdanth::test
