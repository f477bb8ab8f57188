#include "app/read_back.h"
#include "app/test_plant.h"
#include "export/picture.h"
#include "export/scene_builder.h"
#include "export/triangles.h"
#include "lookup/open_plant.h"
#include "vdt/generate/plant_mesh.h"

#include <cmath>
#include <csignal>
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
    const char* const rows[] = {R"( texture="none.png"/>)",         R"( texture="cut.png"/>)",
                                R"( texture="empty.png"/>)",        R"( texture="tree.vdt"/>)",
                                R"( texture="note.tif"/>)",         R"(/><alpha texture="none.png"/>)",
                                R"(/><alpha texture="photo.jpg"/>)"};
    for (const char* row : rows) {
        SCOPED_TRACE(row);
        PlantText plant;
        plant.materials =
            std::string(R"(<material matid="1" name="bark"><diffuse color="1 0 0")") + row + "</material>";
        folder.write("tree.vdt", plant.text());
        const RunResult run = runExport(folder.path("tree.vdt"), folder.path("out.glb"));
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.messages.find("warning: "), std::string::npos);
        const auto material = readBack(folder.path("out.glb")).document["materials"][0];
        EXPECT_EQ(material["pbrMetallicRoughness"]["baseColorFactor"], nlohmann::json({1, 0, 0, 1}));
        EXPECT_FALSE(material.contains("alphaMode"));
        EXPECT_FALSE(material["pbrMetallicRoughness"].contains("baseColorTexture"));
    }
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
