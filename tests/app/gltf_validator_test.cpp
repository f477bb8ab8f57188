// The exports before the judge of the format itself. Skipped where that cannot be had.
#include "app/test_plant.h"
#include "export/export_scene.h"
#include "export/picture.h"

#include <cstdlib>
#include <sys/wait.h>

namespace verdanth::test {
namespace {

constexpr int kNotAvailable = 77;

TEST(GltfValidator, FindsNoErrorInAnyFormOfExport)
{
    const TemporaryFolder folder;
    const std::vector<uint8_t> png = EncodePng({2, 2, {9, 9, 9, 0, 9, 9, 9, 255, 9, 9, 9, 255, 9, 9, 9, 255}});
    for (const char* name : {"in/leaf.png", "in/mask.png"}) folder.write(name, std::string(png.begin(), png.end()));
    PlantText plant;
    plant.materials =
        R"(<material matid="1" name="bark"><diffuse texture="leaf.png"/><normal texture="leaf.png"/></material>
      <material matid="2" name="leaf" sides="2"><alpha texture="mask.png"/><subsurface texture="leaf.png"/>
        <front><diffuse texture="leaf.png"/><bump texture="mask.png" strength="1"/></front>
        <back><diffuse color="0 1 0"/><specular color="1 0.5 0" texture="mask.png"/></back></material>)";
    std::vector<std::string> sources = {folder.write("in/tree.vdt", plant.text())};
    plant.connectors = "";
    sources.push_back(folder.write("in/bare.vdt", plant.text()));
    plant = PlantText();
    plant.polylines = plant.polylineAttributes = "";
    sources.push_back(folder.write("in/leaves.vdt", plant.text()));
#ifdef VERDANTH_PLANT_LIBRARY
    for (const auto& entry : std::filesystem::directory_iterator(VERDANTH_PLANT_LIBRARY)) {
        const auto file = entry.path() / (entry.path().filename().string() + ".vdt.gz");
        if (std::filesystem::exists(file)) sources.push_back(file.string());
    }
#endif

    std::string files;
    int number = 0;
    vdt::NullMessageHandler silence;
    ExportSummary summary;
    const std::string both = folder.path("both sides.gltf");
    ASSERT_TRUE(
        ExportScene(SceneOf(sources.front(), silence), {.path = both, .backs = BackForm::Own}, summary, silence));
    files += " '" + both + "'";
    for (const std::string& source : sources) {
        for (const char* form : {"merge", "nodes", "gpu"}) {
            for (const char* suffix : {".glb", ".gltf"}) {
                const std::string out = folder.path("out" + std::to_string(number++) + suffix);
                ASSERT_EQ(RunApp({"export", source, "-o", out, "--instances", form, "--variant", "0"}).status, 0)
                    << source;
                files += " '" + out + "'";
            }
        }
        if (number >= 24) break; // some plants are enough
    }
    for (const std::vector<std::string>& form :
         std::vector<std::vector<std::string>>{{"--as", "proxy"},
                                               {"--as", "box"},
                                               {"--as", "cloud", "--points", "500"},
                                               {"--as", "blob"},
                                               {"--lod", "2"}}) {
        const std::string out = folder.path("out" + std::to_string(number++) + ".glb");
        std::vector<std::string> arguments = {"export", sources.back(), "-o", out, "--variant", "0"};
        arguments.insert(arguments.end(), form.begin(), form.end());
        ASSERT_EQ(RunApp(arguments).status, 0) << form[1];
        files += " '" + out + "'";
    }
    const std::string tools = std::filesystem::path(VERDANTH_PROGRAM).parent_path().string() + "/gltf_validator";
    const int status = std::system((VERDANTH_TEST_DATA "/app/validate_gltf.sh '" + tools + "'" + files).c_str());
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == kNotAvailable) GTEST_SKIP() << "there is no glTF validator here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace verdanth::test
