// Lighter forms of a plant and chains of levels of detail, as the export writes them.
#include "app/read_back.h"
#include "app/test_plant.h"
#include "vdt/memory/index.h"

#include <cmath>
#include <random>

namespace verdanth::test {
namespace {

// A trunk of 40 vertices with a thinning side branch of 20 on each, and ten leaves on each branch.
std::string leafyPlant(const std::string& connectorAttributes = "")
{
    std::ostringstream points, counts, vertices, radii, materials, connectors;
    std::mt19937 random(3);
    const auto jitter = [&] { return static_cast<double>(random() % 1000) / 1000 - 0.5; };
    uint64_t next = 0;
    const auto branch = [&](uint64_t root, int count, double radius, double x, double y, double z) {
        counts << count << ' ';
        materials << "1 ";
        if (root != vdt::kNone) vertices << root << ' ';
        for (int i = root == vdt::kNone ? 0 : 1; i < count; ++i) {
            const double along = 2.0 * i;
            points << x * along + jitter() << ' '
                   << y * along + (root == vdt::kNone ? 0 : 2.0 * static_cast<double>(root)) << ' '
                   << z * along + jitter() << "  ";
            vertices << next++ << ' ';
        }
        for (int i = 0; i < count; ++i)
            radii << radius * (1 - 0.9 * i / count) + 0.001 * static_cast<double>(random() % 9) << ' ';
    };
    branch(vdt::kNone, 40, 2, 0, 1, 0);
    for (uint64_t side = 0; side < 40; ++side) {
        const double turn = 2.4 * static_cast<double>(side);
        branch(side, 20, 0.8, std::cos(turn), 0.3, std::sin(turn));
        for (uint64_t leaf = 0; leaf < 10; ++leaf) connectors << next - 1 - leaf << ' ';
    }
    PlantText plant;
    plant.points = points.str();
    plant.polylines = "<nvertices>" + counts.str() + "</nvertices><vertices>" + vertices.str() + "</vertices>";
    plant.polylineAttributes = R"(<attrib name="radius" type="float" storageclass="vertex">)" + radii.str() +
                               "</attrib>" + R"(<attrib name="matid" type="int" storageclass="primitive">)" +
                               materials.str() + "</attrib>";
    plant.connectors = "<vertices>" + connectors.str() + "</vertices>" + connectorAttributes;
    std::string ones;
    for (int i = 0; i < 400; ++i) ones += i % 4 ? "1 " : "2 ";
    plant.connectors += R"(<attrib name="group" type="int" storageclass="vertex">)" + ones + "</attrib>";
    return plant.text();
}

RunResult runExport(const TemporaryFolder& folder, const std::string& out, const std::vector<std::string>& options)
{
    std::vector<std::string> arguments = {"export", folder.path("tree.vdt"), "-o", folder.path(out)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunApp(arguments);
}

ReadScene exported(const TemporaryFolder& folder, const std::vector<std::string>& options, size_t level = 0)
{
    const RunResult run = runExport(folder, "out.glb", options);
    EXPECT_EQ(run.status, 0) << run.messages;
    ReadScene scene = ReadGltfFile(folder.path("out.glb"), level);
    if (scene.points.empty()) CheckScene(scene, false);
    return scene;
}

TEST(Forms, ReductionTakesLevelsRadiiAndLeavesAway)
{
    const TemporaryFolder folder;
    folder.write("tree.vdt", leafyPlant());
    const auto count = [&](std::vector<std::string> options, const std::string& material) {
        options.insert(options.end(), {"--season", "summer"});
        uint64_t polygons = 0;
        for (const ReadPolygon& polygon : exported(folder, options).polygons) polygons += polygon.material == material;
        return polygons;
    };
    const uint64_t bark = count({}, "bark"), leaves = count({}, "leaf");
    EXPECT_LT(count({"--max-level", "1"}, "bark"), bark / 4);
    EXPECT_EQ(count({"--max-level", "1"}, "leaf"), leaves);
    EXPECT_LT(count({"--min-radius", "0.5"}, "bark"), bark);
    EXPECT_NEAR(static_cast<double>(count({"--foliage", "0.5"}, "leaf")), static_cast<double>(leaves) / 2, 10);
    EXPECT_NEAR(static_cast<double>(count({"--thinning", "0.25", "--foliage", "0.5"}, "leaf")),
                static_cast<double>(leaves) / 8, 10);
    EXPECT_EQ(count({"--foliage", "0"}, "leaf"), 0);
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{{"--foliage", "1.5"},
                                                                                       {"--thinning", "-1"},
                                                                                       {"--max-level", "0"},
                                                                                       {"--min-radius", "-2"},
                                                                                       {"--as", "tree"}})
        EXPECT_EQ(runExport(folder, "no.glb", wrong).status, 2) << wrong[0];
    for (const char* notAChoice : {"tree", "1"}) // a number is no choice either
        EXPECT_NE(runExport(folder, "no.glb", {"--as", notAChoice}).messages.find("{full,proxy,"), std::string::npos);
}

TEST(Forms, LevelsOfDetailMeetTheirBudgets)
{
    const TemporaryFolder folder;
    folder.write("tree.vdt", leafyPlant());
    const uint64_t all = exported(folder, {"--season", "summer"}).polygons.size();
    const auto meets = [](uint64_t found, uint64_t budget) {
        return found * 10 >= budget * 9 && found * 10 <= budget * 11;
    };

    std::vector<uint64_t> budgets;
    std::string list;
    for (const double share : {0.9, 0.5, 0.2, 0.05, 0.02}) {
        budgets.push_back(static_cast<uint64_t>(share * static_cast<double>(all)));
        list += (list.empty() ? "" : ",") + std::to_string(budgets.back());
    }
    for (size_t level = 0; level < budgets.size(); ++level)
        EXPECT_TRUE(
            meets(exported(folder, {"--season", "summer", "--triangles", list}, level).polygons.size(), budgets[level]))
            << level;
    const auto document = exported(folder, {"--season", "winter", "--lod", "3"}).document;
    std::set<std::string> names;
    for (const auto& node : document["nodes"]) names.insert(node["name"].get<std::string>());
    for (const char* name : {"Testa plana_LOD0", "Testa plana_LOD1", "Testa plana_LOD2", "plant_LOD2"})
        EXPECT_TRUE(names.contains(name)) << name;
    EXPECT_EQ(document["scenes"][0]["nodes"].size(), 1);
    const uint64_t bare = exported(folder, {"--season", "winter"}).polygons.size();
    EXPECT_EQ(exported(folder, {"--season", "winter", "--lod", "3"}, 0).polygons.size(), bare);
    EXPECT_TRUE(meets(exported(folder, {"--season", "winter", "--lod", "3"}, 2).polygons.size(), bare / 16));

    // A file a level.
    const RunResult run =
        runExport(folder, "{species}_{variant}_{season}_lod{lod}.ply", {"--lod", "2", "--season", "summer"});
    EXPECT_EQ(run.status, 0) << run.messages;
    const auto faces = [&](const char* name) { return ReadPlyFile(folder.path(name)).polygons.size(); };
    EXPECT_GT(faces("Testa_plana_adult_summer_lod0.ply"), 2 * faces("Testa_plana_adult_summer_lod1.ply"));

    const struct {
        std::string out;
        std::vector<std::string> options;
        const char* complaint;
    } wrong[] = {{"x.ply", {"--lod", "2"}, "one level"},
                 {"x.glb", {"--triangles", "3"}, "cannot be had"},
                 {"x.glb", {"--triangles", "90000000"}, "cannot be had"},
                 {"x.glb", {"--lod", "2", "--triangles", "100,50,20"}, "different numbers"},
                 {"x.glb", {"--lod", "2", "--as", "box"}, "full plant"},
                 {"{planet}.glb", {}, "{planet}"},
                 {"{lod.glb", {}, "{lod.glb"}};
    for (const auto& [out, options, complaint] : wrong) {
        const RunResult failed = runExport(folder, out, options);
        EXPECT_EQ(failed.status, 2) << complaint;
        EXPECT_NE(failed.messages.find(complaint), std::string::npos) << failed.messages;
    }
}

TEST(Forms, StandInsStandWhereThePlantDoes)
{
    const TemporaryFolder folder;
    folder.write("tree.vdt", leafyPlant());
    const vdt::Box plant = exported(folder, {"--season", "summer"}).bounds();
    const double slack = 0.12 * plant.diagonal(); // leaves reach beyond their connectors
    for (const char* form : {"proxy", "blob", "box"}) {
        SCOPED_TRACE(form);
        const ReadScene scene = exported(folder, {"--as", form});
        const vdt::Box box = scene.bounds();
        EXPECT_LT(vdt::Length(box.min - plant.min), slack);
        EXPECT_LT(vdt::Length(box.max - plant.max), slack);
        EXPECT_LT(scene.polygons.size(), 20000);
        const auto [sum, size] = scene.area("crown"); // of a closed surface the areas cancel
        EXPECT_GT(size, 0);
        EXPECT_LT(vdt::Length(sum), 1e-3 * size);
    }
    EXPECT_EQ(exported(folder, {"--as", "box"}).polygons.size(), 12);

    for (const char* name : {"cloud.glb", "cloud.ply"}) {
        ASSERT_EQ(runExport(folder, name, {"--as", "cloud", "--points", "3000", "--season", "summer"}).status, 0);
        const bool ply = std::string(name).ends_with("ply");
        const ReadScene scene = ply ? ReadPlyFile(folder.path(name)) : ReadGltfFile(folder.path(name));
        EXPECT_EQ(scene.points.size(), 3000);
        vdt::Box box;
        uint64_t bark = 0;
        const double red = ply ? 0.5 : 0.2140; // the bark's, as sRGB and as light
        for (const ReadPoint& point : scene.points) {
            box.extend(point.position);
            EXPECT_NEAR(vdt::Length(point.normal), 1, 1e-3);
            bark += std::fabs(point.color.x - red) < 0.01;
        }
        EXPECT_GT(bark, 50);
        EXPECT_LT(bark, 2950);
        EXPECT_LT(vdt::Length(box.size() - plant.size()), slack);
    }
    EXPECT_EQ(runExport(folder, "cloud.obj", {"--as", "cloud"}).status, 2);
}

TEST(Forms, AStoredProxyIsTakenAndOddPlantsAreNot)
{
    const TemporaryFolder folder;
    PlantText plant;
    plant.meshes += R"(<proxy><mesh name="p"><points>0 0 0 1 0 0 0 7 0</points><polygons><nvertices>3</nvertices>
        <vertices>0 1 2</vertices></polygons></mesh></proxy>)";
    folder.write("tree.vdt", plant.text());
    EXPECT_EQ(exported(folder, {"--as", "proxy"}).polygons.size(), 1);

    plant = PlantText();
    plant.connectors = "";
    folder.write("tree.vdt", plant.text());
    EXPECT_GT(exported(folder, {"--as", "proxy"}).polygons.size(), 4); // no crown, so branches alone
    EXPECT_GT(exported(folder, {"--as", "blob"}).polygons.size(), 4);
    const RunResult chain = runExport(folder, "x.glb", {"--lod", "8"});
    EXPECT_EQ(chain.status, 2);
    EXPECT_NE(chain.messages.find("too small for 8 levels of detail"), std::string::npos) << chain.messages;
    EXPECT_EQ(chain.messages.find("nothing to show"), std::string::npos) << chain.messages;
    EXPECT_EQ(exported(folder, {"--as", "cloud", "--points", "10"}).points.size(), 10);

    plant.polylines = plant.polylineAttributes = "";
    plant.points = "nan inf 0  1 1e999 1";
    plant.connectors = "<vertices>0 1 0 1 0</vertices>";
    folder.write("tree.vdt", plant.text());
    for (const char* form : {"proxy", "box", "cloud", "blob"}) {
        const RunResult run = runExport(folder, "x.glb", {"--as", form});
        EXPECT_EQ(run.status, 2) << form << ": " << run.out;
        EXPECT_NE(run.messages.find("error"), std::string::npos);
    }
}

} // namespace
} // namespace verdanth::test
