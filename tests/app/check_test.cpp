#include "app/test_plant.h"
#include "support/gzip.h"

#include <nlohmann/json.hpp>

#include <map>
#include <set>

namespace verdanth::test {
namespace {

struct Verdict {
    int status;
    std::multiset<std::string> kinds;
    std::string text;
};

Verdict check(const std::string& file)
{
    const RunResult run = RunApp({"check", file, "--format", "json"});
    const auto report = nlohmann::json::parse(run.out).at(0);
    Verdict verdict{run.status, {}, ""};
    for (const auto& finding : report["findings"]) {
        verdict.kinds.insert(finding["kind"].get<std::string>());
        verdict.text += finding["text"].get<std::string>() + "\n";
    }
    const char* const words[] = {"clean", "warnings", "unusable"};
    EXPECT_EQ(report["status"], words[run.status]);
    return verdict;
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    const size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return place == std::string::npos ? text : text.replace(place, from.size(), to);
}

TEST(Check, FindsNothingInAWholePlantPlainOrCompressed)
{
    const TemporaryFolder folder;
    const std::string text = PlantText().text();
    EXPECT_EQ(RunApp({"check", folder.write("tree.vdt", text)}).out, folder.path("tree.vdt") + ": clean\n");
    EXPECT_EQ(check(folder.write("tree.vdt.gz", vdt::test::Gzip(text))).status, 0);
}

// Each row breaks one thing in a whole plant: in one of its texts, `from` becomes `to`. No `from`: `to` is added.
TEST(Check, TellsEachLossByItsKind)
{
    using P = PlantText;
    struct Row {
        const char* kind;
        const char* part; // of the finding's text
        std::string P::*field;
        std::string from, to;
    };
    const std::string frames = P().polylineAttributes.substr(P().polylineAttributes.find("<attrib name=\"orient\""));
    const auto material = [](const std::string& side) { return "<material matid=\"3\">" + side + "</material>"; };
    const auto stub = [](const std::string& file) { return "<model name=\"x\" extref=\"" + file + "\"/>"; };
    const std::string leaf = P().materials.substr(P().materials.find("<material matid=\"2\""));
    const Row rows[] = {
        {"lost", "radius", &P::polylineAttributes, "0.25 0.125", "0.25"},
        {"lost", "matid", &P::polylineAttributes, ">1 1<", ">1<"},
        {"lost", "tex_v", &P::polylineAttributes, "tex_v\" type=\"float\"", "tex_v\" type=\"int\""},
        {"lost", "matid", &P::polylineAttributes, "primitive", "point"},
        {"lost", "colour", &P::polylineAttributes, "name=\"tex_v\"", "name=\"colour\""},
        {"lost", "lable", &P::qualifiers, "", "<lable lang=\"en\">x</lable>"},
        {"lost", "defualt", &P::modelAttributes, "", " defualt=\"1\""},
        {"reader", "expected 6", &P::bound, P().bound, "<bound>1 2 3</bound>"},
        {"reader", "Unknown default qualifier", &P::qualifiers, "default=\"2\"", "default=\"9\""},
        {"bound", "does not hold", &P::bound, "20", "15"},
        {"bound", "larger", &P::bound, "20", "200"},
        {"orient", "\"orient\"", &P::polylineAttributes, frames, ""},
        {"root", "1 other root with 1 branch", &P::points, "4 14 2", "4 14 2  4 10 2"},
        {"branch", "fewer than two", &P::polylines, "3 2", "4 1"},
        {"coincident", "1 pair", &P::points, "0 10 0  1 20 0", "0 20 0  0 20 0"},
        {"group", "no mesh", &P::connectors, "1 1 2", "1 1 7"},
        {"season", "\"spring\"", &P::meshes, "summer", "spring"},
        {"number", "finite", &P::meshes, "1 2 0", "1 inf 0"},
        {"material", "id 2 is used by 2", &P::materials, leaf, ""},
        {"material", "two materials", &P::materials, "", "<material matid=\"2\"/>"},
        {"texture", "does not exist", &P::materials, "", material("<diffuse texture=\"none.png\"/>")},
        {"texture", "is empty", &P::materials, "", material("<normal texture=\"empty.png\"/>")},
        {"texture", "is a folder", &P::materials, "", material("<bump texture=\"folder\"/>")},
        {"texture", "itself", &P::materials, "", material("<alpha texture=\"tree.vdt\"/>")},
        {"texture", "back's", &P::materials, "", material("<back><diffuse texture=\"none.png\"/></back>")},
        {"extref", "does not exist", &P::moreModels, "", stub("none.vdt")},
        {"extref", "is empty", &P::moreModels, "", stub("empty.png")},
        {"extref", "is a folder", &P::moreModels, "", stub("folder")},
        {"extref", "the file itself", &P::moreModels, "", stub("tree.vdt")},
        {"extref", "a stub again", &P::moreModels, "", stub("stub.vdt")},
        {"bound", "unknown until", &P::moreModels, "", stub("whole.vdt")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.kind) + ": " + row.part);
        const TemporaryFolder folder;
        folder.write("empty.png", "");
        folder.write("folder/x", "");
        folder.write("whole.vdt", P().targetText());
        folder.write("stub.vdt", R"(<verdanth version="1.2"><model extref="whole.vdt"/></verdanth>)");
        P plant;
        plant.*row.field = row.from.empty() ? plant.*row.field + row.to : replaced(plant.*row.field, row.from, row.to);
        if (row.kind == std::string("root")) plant.polylines = replaced(plant.polylines, "1 3", "4 3");
        const Verdict verdict = check(folder.write("tree.vdt", plant.text()));
        EXPECT_EQ(verdict.status, 1);
        EXPECT_GE(verdict.kinds.count(row.kind), 1u) << verdict.text;
        EXPECT_NE(verdict.text.find(row.part), std::string::npos) << verdict.text;
        EXPECT_LE(verdict.kinds.size(), 2u) << verdict.text;
    }
}

TEST(Check, ChecksTheFilesOfStubsTheSameWay)
{
    const TemporaryFolder folder;
    PlantText target;
    target.points = "0 0 0  0 20 0  0 20 0  4 14 2"; // two points on one another
    target.polylineAttributes = R"(<attrib name="radius" type="float" storageclass="vertex">1</attrib>)";
    folder.write("models/old.vdt", target.targetText());
    PlantText plant;
    plant.moreModels = R"(<model name="old" extref="models/old.vdt"><bound>-1 0 -1 5 20 3</bound></model>)";
    const RunResult run = RunApp({"check", folder.write("tree.vdt", plant.text()), "--format", "json"});

    EXPECT_EQ(run.status, 1);
    std::map<std::string, std::string> fileOfKind;
    const auto report = nlohmann::json::parse(run.out);
    for (const auto& finding : report[0]["findings"]) fileOfKind[finding["kind"]] = finding["file"];
    EXPECT_EQ(fileOfKind.at("lost"), folder.path("models/old.vdt"));
    EXPECT_EQ(fileOfKind.at("coincident"), folder.path("tree.vdt"));
    EXPECT_FALSE(fileOfKind.contains("orient"));  // frames of such a variant are computed
    EXPECT_TRUE(fileOfKind.contains("material")); // without "matid" its branches have id 0
}

TEST(Check, CallsFilesUnusableThatGiveNoPlant)
{
    const TemporaryFolder folder;
    const std::string whole = vdt::test::Gzip(PlantText().text());
    std::string flipped = whole;
    flipped[whole.size() / 2] = static_cast<char>(flipped[whole.size() / 2] ^ 0x55);
    const std::string text = PlantText().text();
    const std::pair<const char*, std::string> rows[] = {
        {"cut.vdt.gz", whole.substr(0, whole.size() / 2)},
        {"flipped.vdt.gz", flipped},
        {"empty.vdt", ""},
        {"text.vdt", "no model"},
        {"newer.vdt", replaced(text, "1.2", "1.3")},
        {"hollow.vdt", R"(<verdanth version="1.2"><plant><model/></plant></verdanth>)"},
        {"stub.vdt", R"(<verdanth version="1.2"><plant><model extref="none.vdt"/></plant></verdanth>)"}};
    for (const auto& [name, content] : rows) EXPECT_EQ(check(folder.write(name, content)).status, 2) << name;
    EXPECT_EQ(check(folder.path("missing.vdt")).status, 2);
    EXPECT_EQ(check(folder.path("")).status, 2);

    // What is lost at the very end spoils nothing that was read.
    EXPECT_EQ(check(folder.write("trailer.vdt.gz", whole.substr(0, whole.size() - 6))).kinds,
              std::multiset<std::string>{"gzip"});
    std::string wrongSum = whole;
    wrongSum[whole.size() - 7] ^= 1;
    EXPECT_EQ(check(folder.write("sum.vdt.gz", wrongSum)).status, 1);

    // The worst of several files decides.
    folder.write("tree.vdt", text);
    const RunResult both = RunApp({"check", folder.path("tree.vdt"), folder.path("empty.vdt")});
    EXPECT_EQ(both.status, 2);
    EXPECT_NE(both.out.find("tree.vdt: clean\n"), std::string::npos);
}

} // namespace
} // namespace verdanth::test
