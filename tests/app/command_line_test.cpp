#include "app/test_plant.h"
#include "lookup/species.h"

#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace verdanth::test {
namespace {

// Two plants, one of them as a plain file, and folders that hold none.
std::string writeLibrary(const TemporaryFolder& folder)
{
    std::string text = PlantText().text();
    text.replace(text.find("Testa plana"), 11, "Quercus robur");
    folder.write("lib/Quercus_robur/Quercus_robur.vdt", text);
    folder.write("lib/Testa_plana/Testa_plana.vdt", PlantText().text());
    folder.write("lib/Testa_plana/Testa_plana.vdt.gz.bak", "");
    folder.write("lib/models/other.vdt", PlantText().text());
    return folder.path("lib");
}

TEST(Species, AreFoundByFolderBotanicalNameOrLabelWhateverTheCase)
{
    const TemporaryFolder folder;
    const std::string library = writeLibrary(folder);
    vdt::NullMessageHandler silence;
    ASSERT_EQ(ScanLibrary(library).size(), 2u);
    for (const char* name : {"Testa plana", "testa_plana", "TESTA PLANA"})
        EXPECT_EQ(FindPlant(name, library, silence).file, library + "/Testa_plana/Testa_plana.vdt") << name;
    for (const char* name : {"test tree", "TÄNNCHEN", "tännchen"})
        EXPECT_EQ(FindPlant(name, library, silence).file, library + "/Quercus_robur/Quercus_robur.vdt") << name;
    EXPECT_EQ(FindPlant("Qercus robur", library, silence).problem,
              "no such file, and no plant of that name in the library " + library + "; did you mean Quercus robur?");
    EXPECT_EQ(FindPlant("testa", library, silence).problem.find("Quercus"), std::string::npos);
    EXPECT_EQ(FindPlant("Xylophon", library, silence).problem.find("did you mean"), std::string::npos);
    EXPECT_EQ(FindPlant("none/such.vdt", library, silence).problem, "does not exist");
}

TEST(Species, TheLibraryIsTheOneAskedForElseThatOfTheEnvironment)
{
    const TemporaryFolder folder;
    const std::string library = writeLibrary(folder);
    setenv("VERDANTH_PLANTS", library.c_str(), 1);
    EXPECT_EQ(RunApp({"info", "Testa plana"}).status, 0);
    EXPECT_EQ(RunApp({"info", "Testa plana", "--library", folder.path("none")}).status, 2);
    unsetenv("VERDANTH_PLANTS");
    EXPECT_EQ(RunApp({"info", "Testa plana", "--library", library}).status, 0);
}

TEST(CommandLine, AnswersWithAnExitStatusAndOneLineAProblem)
{
    const TemporaryFolder folder;
    const std::string tree = folder.write("tree.vdt", PlantText().text());
    const std::string stub = folder.write(
        "stub.vdt", R"(<verdanth version="1.2"><plant><model name="x" extref="gone.vdt"/></plant></verdanth>)");
    struct Row {
        std::vector<std::string> arguments;
        int status;
        std::string problem; // part of the only line, or empty for none
    };
    const Row rows[] = {
        {{}, 0, ""},
        {{"--help"}, 0, ""},
        {{"--version"}, 0, ""},
        {{"info", "--help"}, 0, ""},
        {{"check", "--help"}, 0, ""},
        {{"export", "--help"}, 0, ""},
        {{"list", "--help"}, 0, ""},
        {{"convert", "--help"}, 0, ""},
        {{"prune"}, 2, "prune"},
        {{"info"}, 2, "plant"},
        {{"info", tree, "--format", "xml"}, 2, "xml"},
        {{"info", folder.path("no.vdt")}, 2, folder.path("no.vdt") + ": does not exist"},
        {{"info", folder.path("")}, 2, "is a folder"},
        {{"info", tree, "--variant", "old"}, 2, "no variant \"old\"; there are adult"},
        {{"export", tree}, 2, "--output"},
        {{"export", tree, "-o", folder.path("x.glb"), "--season", "spring"}, 2, "spring"},
        {{"export", tree, "-o", folder.path("x.glb"), "--variant", "2"}, 2, "2"},
        {{"export", tree, "-o", folder.path("x.glb"), "--variant", "-1"}, 2, "-1"},
        {{"export", tree, "-o", folder.path("x.glb"), "--subdivision", "99"}, 2, "99"},
        {{"export", tree, "-o", folder.path("x.glb"), "--instances", "all"}, 2, "all"},
        {{"export", tree, "-o", folder.path("tree.stl")}, 2, "suffix"},
        {{"export", stub, "-o", folder.path("x.glb")}, 2, folder.path("gone.vdt") + " does not exist"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments.empty() ? "nothing" : row.arguments.back());
        const RunResult run = RunApp(row.arguments);
        EXPECT_EQ(run.status, row.status);
        std::string errors;
        std::istringstream lines(run.messages);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("verdanth: error: ")) errors += line + "\n";
        EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), row.problem.empty() ? 0 : 1) << errors;
        EXPECT_NE(errors.find(row.problem), std::string::npos) << errors;
        EXPECT_EQ(run.out.find("Example:\n  verdanth ") != std::string::npos,
                  row.status == 0 && row.arguments != std::vector<std::string>{"--version"});
    }
    EXPECT_FALSE(folder.has("x.glb"));
}

TEST(Console, DrawsProgressOverItselfOnATerminalAlone)
{
    const TemporaryFolder folder;
    const std::string tree = folder.write("tree.vdt", PlantText().text());
    const std::string drawn = RunApp({"check", tree}, true).messages;
    EXPECT_NE(drawn.find("\rloading vdt file"), std::string::npos);
    EXPECT_EQ(drawn.find('\n'), std::string::npos);
    const std::string plain = RunApp({"check", tree}).messages;
    EXPECT_EQ(plain, "verdanth: loading vdt file: " + tree + "\n");

    // A file's texts cannot steer the terminal.
    PlantText rude;
    rude.modelAttributes = " name=\"\x1B[2J\a\"";
    const RunResult run = RunApp({"info", folder.write("rude.vdt", rude.text())});
    EXPECT_EQ((run.out + run.messages).find('\x1B'), std::string::npos);
}

TEST(Info, TellsWhatTheFileSaysAndCountsWhatIsBuilt)
{
    const TemporaryFolder folder;
    folder.write("models/old.vdt",
                 R"(<verdanth version="1.2" creator="another"><model><skeleton><points>0 0 0 0 300 0</points><polylines>
      <nvertices>2</nvertices><vertices>0 1</vertices></polylines></skeleton></model></verdanth>)");
    PlantText plant;
    plant.unit = "meters";
    plant.moreModels =
        R"(<model name="old" extref="models/old.vdt" default="1"><bound>0 0 0 1 300 1</bound></model><model extref="gone.vdt"/>)";
    const std::string tree = folder.write("tree.vdt", plant.text());
    const auto facts = nlohmann::json::parse(RunApp({"info", tree, "--format", "json"}).out);
    EXPECT_EQ(facts["name"], "Testa plana");
    EXPECT_EQ(facts["unit"], "meters");
    EXPECT_EQ(facts["labels"]["de"], "Tännchen");
    EXPECT_EQ(facts["info"]["creator"], "test");
    EXPECT_EQ(facts["materials"][1]["sides"], 2);
    ASSERT_EQ(facts["variants"].size(), 3u);

    const auto& adult = facts["variants"][0];
    EXPECT_EQ(adult["default"], false);
    EXPECT_EQ(adult["qualifiers"][1]["default"], true);
    const char* const holds = R"({"points":4,"branches":2,"vertices":5,"connectors":3,"meshes":2,"meshPolygons":3})";
    EXPECT_EQ(adult["holds"], nlohmann::json::parse(holds));
    EXPECT_EQ(adult["foliage"][0]["connectors"], 2);
    EXPECT_EQ(adult["built"]["season"], "winter");
    EXPECT_EQ(adult["built"]["foliage"]["polygons"], 2); // the bud alone, once
    EXPECT_GT(adult["built"]["branches"]["polygons"], 20);
    EXPECT_NEAR(adult["built"]["heightMeters"].get<double>(), 20, 1);

    const auto& old = facts["variants"][1];
    EXPECT_EQ(old["default"], true);
    EXPECT_EQ(old["info"]["creator"], "another");
    EXPECT_EQ(old["heightMeters"], 300);
    EXPECT_EQ(facts["variants"][2]["loaded"], false);
    EXPECT_FALSE(facts["variants"][2].contains("built"));

    EXPECT_EQ(nlohmann::json::parse(RunApp({"info", tree, "--format", "json", "--variant", "old"}).out)["variants"],
              nlohmann::json::array({old}));
    const std::string table = RunApp({"info", tree}).out;
    for (const char* part : {"Testa plana\n", "Tännchen", "NOT LOADED", "summer, winter *"})
        EXPECT_NE(table.find(part), std::string::npos) << part;
}

// The program itself: an interrupt while it works removes what it had begun and tells so in its status.
TEST(Program, StopsCleanlyOnAnInterrupt)
{
    const TemporaryFolder folder;
    PlantText plant;
    std::string vertices, groups;
    for (int i = 0; i < 400000; ++i) vertices += " 2", groups += " 2"; // far more leaves than can be written at once
    plant.connectors = "<vertices>" + vertices +
                       R"(</vertices><attrib name="group" type="int" storageclass="vertex">)" + groups + "</attrib>";
    const std::string tree = folder.write("tree.vdt", plant.text());
    const std::string out = folder.path("out.obj");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        execl(VERDANTH_PROGRAM, VERDANTH_PROGRAM, "export", tree.c_str(), "-o", out.c_str(), nullptr);
        _exit(99);
    }
    int status = 0;
    while (!folder.has("out.obj.part") && waitpid(child, &status, WNOHANG) == 0) usleep(1000);
    kill(child, SIGINT);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    for (const auto& entry : std::filesystem::directory_iterator(folder.root))
        EXPECT_EQ(entry.path().filename(), "tree.vdt");
}

} // namespace
} // namespace verdanth::test
