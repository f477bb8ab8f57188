#include "app/test_plant.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace verdanth::test {
namespace {

// A tree of three ages in files of their own; a plant that is complete in its file; one that is no plant at all.
std::string writeLibrary(const TemporaryFolder& folder)
{
    folder.write("lib/Abies_alba/Abies_alba.vdt", R"(<verdanth version="1.2"><plant name="Abies alba" unit="meters">
      <label lang="en-US">Silver Fir</label><label lang="de">Weißtanne ÜBERALL</label>
      <model name="Young 1" extref="models/a.vdt"><bound>0 -0.5 0 1 1.5 1</bound>
        <qualifiers default="1"><qualifier id="1" name="summer"/><qualifier id="2" name="winter"/></qualifiers></model>
      <model name="very young 2" extref="models/a.vdt"><bound>0 0 0 1 3.25 1</bound>
        <qualifiers default="1"><qualifier id="1" name="winter"/></qualifiers></model>
      <model name="adult" extref="models/b.vdt"/></plant></verdanth>)");
    folder.write("lib/Abies_alba/Abies_alba.png", "no picture");
    folder.write("lib/Abies_alba/models/a.vdt", std::string(1000, ' '));
    folder.write("lib/Abies_alba/models/b.vdt", R"(<verdanth version="1.2"><model><skeleton>
      <points>0 0 0 0 12 0</points></skeleton></model></verdanth>)");
    PlantText plant; // its stored bound is 20 high, its skeleton as well, its foliage reaches farther
    plant.modelAttributes = "";
    folder.write("lib/Testa_plana/Testa_plana.vdt", plant.text());
    folder.write("lib/Testa_plana/Testa_plana.txt", "passed over");
    folder.write("lib/empty/other.vdt", plant.text());
    return folder.path("lib");
}

std::string cells(const std::string& line)
{
    std::string joined;
    for (const char c : line)
        if (c != ' ' || (!joined.empty() && joined.back() != ' ')) joined += c;
    return joined;
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(cells(line));
    return lines;
}

TEST(List, TellsNamesHeightsSeasonsAndSizes)
{
    const TemporaryFolder folder;
    const std::string library = writeLibrary(folder);
    const RunResult run = RunApp({"list", library, "--language", "en"});
    EXPECT_EQ(run.status, 0) << run.messages;
    const std::vector<std::string> lines = linesOf(run.out);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0], "name botanical name young m adult m other m seasons size");
    EXPECT_TRUE(lines[1].starts_with("Silver Fir Abies alba 2.00-3.25 12.00 summer, winter ")) << lines[1];
    EXPECT_TRUE(lines[2].starts_with("Test Tree Testa plana 0.20 summer, winter ")) << lines[2];
    EXPECT_EQ(lines[4], "2 plants in " + library);

    const auto facts = nlohmann::json::parse(RunApp({"list", library, "--format", "json"}).out);
    const auto& fir = facts["plants"][0];
    EXPECT_EQ(fir["name"], "Abies_alba");
    EXPECT_EQ(fir["fileBytes"], std::filesystem::file_size(fir["file"].get<std::string>()));
    EXPECT_EQ(fir["allBytes"],
              fir["fileBytes"].get<uint64_t>() + 1000 + folder.read("lib/Abies_alba/models/b.vdt").size());
    EXPECT_EQ(fir["variants"][1]["heightMeters"], 3.25);
}

TEST(List, ShowsNamesInTheLanguageAndThoseThatHoldTheFilter)
{
    const TemporaryFolder folder;
    const std::string library = writeLibrary(folder);
    struct Row {
        const char* environment;
        std::vector<std::string> arguments;
        std::string names;
    };
    const Row rows[] = {
        {"de_AT.UTF-8", {}, "Weißtanne ÜBERALL;Tännchen;"},
        {"C.UTF-8", {}, "Silver Fir;Test Tree;"},
        {"fr", {}, "Silver Fir;Test Tree;"},
        {"de", {"--language", "EN-us"}, "Silver Fir;Test Tree;"},
        {"en", {"--language", "de", "--filter", "überall"}, "Weißtanne ÜBERALL;"},
        {"en", {"--filter", "PLANA"}, "Test Tree;"},
        {"en", {"--filter", "testa_p"}, "Test Tree;"},
        {"en", {"--filter", "Tännchen"}, ""},
        {"en", {"--filter", "S"}, "Silver Fir;Test Tree;"},
    };
    for (const Row& row : rows) {
        setenv("LC_ALL", row.environment, 1);
        std::vector<std::string> arguments = {"list", library, "--format", "json"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        std::string names;
        const auto facts = nlohmann::json::parse(RunApp(arguments).out);
        for (const auto& plant : facts["plants"]) names += plant["commonName"].get<std::string>() + ";";
        EXPECT_EQ(names, row.names) << row.environment;
    }
    unsetenv("LC_ALL");
    EXPECT_EQ(linesOf(RunApp({"list", library, "--filter", "oak"}).out),
              (std::vector<std::string>{"0 of 2 plants in " + library}));
}

TEST(List, NamesWhatIsWrongAndGoesOn)
{
    const TemporaryFolder folder;
    const std::string library = writeLibrary(folder);
    const auto problemOf = [&](int status, const std::string& part) {
        const RunResult run = RunApp({"list", library});
        EXPECT_EQ(run.status, status);
        EXPECT_NE(run.out.find(part), std::string::npos) << run.out;
        EXPECT_NE(run.out.find("Testa plana"), std::string::npos) << run.out;
    };
    folder.write("lib/Abies_alba/models/b.vdt", "nothing of use");
    problemOf(1, "lib/Abies_alba/models/b.vdt holds no usable variant");
    std::filesystem::remove(folder.path("lib/Abies_alba/models/a.vdt")); // its bounds are known all the same
    problemOf(1, "lib/Abies_alba/models/a.vdt does not exist");
    problemOf(1, "2.00-3.25");
    folder.write("lib/Abies_alba/Abies_alba.vdt.gz", "\x1f\x8b no deflate data"); // goes before the plain file
    problemOf(2, "Abies alba");
    problemOf(2, "holds no plant: not a model file, or without variants");
    folder.write("lib/Abies_alba/Abies_alba.vdt.gz", "");
    problemOf(2, "is empty");
    EXPECT_EQ(RunApp({"list", library, "--filter", "testa"}).status, 0);

    struct Row {
        std::vector<std::string> arguments;
        const char* problem;
    };
    const Row rows[] = {{{"list", folder.path("none")}, "none: does not exist"},
                        {{"list", folder.write("file", "x")}, "file: is no folder"},
                        {{"list", library, "--language", "german"}, "\"german\" is no language"}};
    for (const Row& row : rows) {
        const RunResult run = RunApp(row.arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.messages.find(row.problem), std::string::npos) << run.messages;
    }
    folder.write("bare/readme.txt", "x");
    EXPECT_EQ(RunApp({"list", folder.path("bare")}).out, "0 plants in " + folder.path("bare") + "\n");
}

} // namespace
} // namespace verdanth::test
