#include "app/test_plant.h"
#include "export/picture.h"
#include "support/test_gl.h"

#include <algorithm>
#include <map>

namespace verdanth::test {
namespace {

// How many pixels of a picture have each colour, its channels cut to four bits.
std::map<int, size_t> coloursOf(const Picture& picture)
{
    std::map<int, size_t> counts;
    for (size_t i = 0; i < picture.pixels.size(); i += 4)
        ++counts[(picture.pixels[i] >> 4) << 8 | (picture.pixels[i + 1] >> 4) << 4 | picture.pixels[i + 2] >> 4];
    return counts;
}

class ViewCommand : public testing::Test {
protected:
    void SetUp() override
    {
        std::string problem;
        if (!host::test::CurrentTestContext(problem)) GTEST_SKIP() << problem;
    }

    Picture view(const std::vector<std::string>& more)
    {
        const std::string output = (folder.root / "view.png").string();
        std::vector<std::string> arguments = {"view", folder.write("plant.vdt", plant.text()), "-o", output};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const RunResult run = RunApp(arguments);
        EXPECT_EQ(run.status, 0) << run.messages;
        std::string problem;
        const std::optional<Picture> picture = ReadPng(output, problem);
        EXPECT_TRUE(picture) << problem;
        return picture.value_or(Picture());
    }

    TemporaryFolder folder;
    PlantText plant;
};

TEST_F(ViewCommand, ShowsEachDisplayModeInItsOwnWay)
{
    // The share of pixels that are not of the empty view.
    const std::vector<std::string> usual = {"--size", "200", "--no-grid", "--season", "summer"};
    const auto covered = [&](const std::string& display, std::vector<std::string> more = {}) {
        more.insert(more.end(), usual.begin(), usual.end());
        more.insert(more.end(), {"--display", display});
        const Picture picture = view(more);
        EXPECT_EQ(picture.width, 200U);
        EXPECT_EQ(picture.height, 200U);
        size_t others = 0;
        for (size_t y = 0; y < 200; ++y) {
            for (size_t x = 0; x < 200; ++x) {
                const uint8_t* pixel = &picture.pixels[4 * (200 * y + x)];
                others += std::abs(pixel[0] - picture.pixels[800 * y]) > 8; // the backdrop's rows are of one colour
            }
        }
        return static_cast<double>(others) / (200 * 200);
    };
    const double proxy = covered("proxy"), box = covered("box"), cloud = covered("cloud"), full = covered("full");
    EXPECT_GT(std::min({proxy, box, cloud, full}), 0.02);
    EXPECT_LT(std::max({proxy, box, cloud, full}), 0.06) << "the plant is thin";
    EXPECT_LT(cloud, full) << "points and ribbons leave gaps";
    EXPECT_LT(covered("proxy", {"--distance", "4"}), proxy / 8);
}

TEST_F(ViewCommand, PolygonsHaveTheColoursOfTheirMaterials)
{
    const auto count = [this](const std::string& season, auto isOf) {
        size_t pixels = 0;
        for (const auto& [colour, number] : coloursOf(view({"--display", "full", "--season", season, "--size", "200"})))
            pixels += isOf(colour >> 8, colour >> 4 & 15, colour & 15) ? number : 0;
        return pixels;
    };
    const auto isBark = [](int r, int g, int b) { return r > g + 1 && g > b + 1; };
    const auto isLeaf = [](int r, int g, int b) { return g > r + 1 && g > b + 1; };
    EXPECT_GT(count("summer", isBark), 100U);
    EXPECT_GT(count("summer", isLeaf), count("winter", isLeaf)) << "only the buds are left";
}

// A material without pictures has no other mean than the colour that renderers are told, containers of two included.
TEST_F(ViewCommand, ShowsTheBaseColoursOfARenderersMaterials)
{
    plant.materials = R"(<material matid="1" name="bark"><diffuse color="0.5 0.25 0"/></material>
      <material matid="2" name="leaf" sides="2"><front><diffuse color="0.2 0.5 0.1"/></front>
        <back><diffuse color="0.9 0.1 0.9"/></back></material>)";
    const std::vector<std::string> usual = {"--display", "full", "--season", "summer", "--size", "100"};
    const Picture mean = view(usual);
    for (const char* renderer : {"vray", "mia", "corona", "thea", "arnold", "octane", "iray"}) {
        std::vector<std::string> arguments = usual;
        arguments.insert(arguments.end(), {"--renderer", renderer});
        EXPECT_EQ(view(arguments).pixels, mean.pixels) << renderer;
    }
}

TEST(ViewCommandLine, SaysWhatIsWrongWithARequest)
{
    struct Row {
        std::vector<std::string> arguments;
        const char* said;
    };
    const TemporaryFolder folder;
    const std::string plant = folder.write("plant.vdt", PlantText().text());
    const Row rows[] = {{{"view", plant, "-o", "a.jpg"}, "has to end in .png"},
                        {{"view", plant, "-o", "a.png", "--size", "0x9"}, "--size 0x9"},
                        {{"view", plant, "-o", "a.png", "--display", "none"}, "--display"},
                        {{"view", plant}, "--output is required"}};
    for (const Row& row : rows) {
        const RunResult run = RunApp(row.arguments);
        EXPECT_NE(run.status, 0);
        EXPECT_NE(run.messages.find(row.said), std::string::npos) << run.messages;
    }
}

} // namespace
} // namespace verdanth::test
