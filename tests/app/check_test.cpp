#include "app/test_plant.h"

#include <nlohmann/json.hpp>
#include <zlib.h>

#include <functional>
#include <set>

namespace verdanth::test {
namespace {

std::string gzipped(const std::string& text)
{
    std::string bytes(text.size() + 1000, '\0');
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    deflate(&stream, Z_FINISH);
    bytes.resize(stream.total_out);
    deflateEnd(&stream);
    return bytes;
}

struct Verdict {
    int status;
    std::multiset<std::string> kinds;
    std::string text;
};

Verdict check(const std::string& file)
{
    const RunResult run = Run({"check", file, "--format", "json"});
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
    const TestFolder folder;
    const std::string text = PlantText().text();
    EXPECT_EQ(Run({"check", folder.write("tree.vdt", text)}).out, folder.path("tree.vdt") + ": clean\n");
    EXPECT_EQ(check(folder.write("tree.vdt.gz", gzipped(text))).status, 0);
}

// Each row breaks one thing in a whole plant, and is found by its kind alone.
TEST(Check, TellsEachLossByItsKind)
{
    struct Row {
        const char* kind;
        const char* part; // of the text
        std::function<void(PlantText&)> breakIt;
    };
    const auto attribute = [](const char* from, const char* to) {
        return [=](PlantText& plant) { plant.polylineAttributes = replaced(plant.polylineAttributes, from, to); };
    };
    const auto bound = [](const char* text) { return [=](PlantText& plant) { plant.bound = text; }; };
    const auto material = [](const char* text) { return [=](PlantText& plant) { plant.materials += text; }; };
    const Row rows[] = {
        {"lost",                              "radius",                attribute("0.25 0.125",                                                                    "0.25")},
        {"lost",                                   "matid",                                                     attribute(">1 1<",                                                                                                     ">1<")},
        {"lost",                             "tex_v",                                                    attribute("tex_v\" type=\"float\"",                                    "tex_v\" type=\"int\"")},
        {"lost", "matid",attribute("primitive",    "point")},
        {"lost",                            "colour",                                                                                 attribute("name=\"tex_v\"",                                                                                                                                                               "name=\"colour\"")},
        {"lost",                              "lable",                  [](PlantText& p) { p.qualifiers += "<lable lang=\"en\">x</lable>"; }},
        {"lost",                                   "defualt",                                                     [](PlantText& p) { p.modelAttributes += " defualt=\"1\""; }                                                                                                         },
        {"reader",                                   "expected 6",                                                     bound("<bound>1 2 3</bound>")                                                                                                  },
        {"reader",                                   "Unknown default qualifier",
         [](PlantText& p) { p.qualifiers = replaced(p.qualifiers, "default=\"2\"", "default=\"9\""); }},
        {"bound",                                   "does not hold",                                                   bound("<bound>-1 0 -1 5 15 3</bound>")},
        {"bound",                                   "larger",                                                    bound("<bound>-1 0 -1 5 200 3</bound>")                                                                                                       },
        {"orient",                                   "\"orient\"",
         [](PlantText& p) { p.polylineAttributes.resize(p.polylineAttributes.find("<attrib name=\"orient\"")); }                                                                                                                      },
        {"root",                                   "1 other root with 1 branch",
         [](PlantText& p) {
             p.points = "0 0 0  0 10 0  1 20 0  4 14 2  4 10 2";
             p.polylines = "<nvertices>3 2</nvertices><vertices>0 1 2 4 3</vertices>";
         }},
        {"branch",                                   "fewer than two",
         [](PlantText& p) { p.polylines = "<nvertices>4 1</nvertices><vertices>0 1 2 3 1</vertices>"; }},
        {"coincident",                                   "1 pair",                                                   [](PlantText& p) { p.points = "0 0 0  0 20 0  0 20 0  4 14 2"; }                                                                                                   },
        {"group",                                   "no mesh",
         [](PlantText& p) {
             p.connectors = replaced(p.connectors, "1 1 2", "1 1 7");
             p.meshes.resize(p.meshes.find("<mesh name=\"bud\""));
         }                                                                                                                                    },
        {"season",                                   "\"spring\"",
         [](PlantText& p) { p.meshes = replaced(p.meshes, "qualifier=\"summer\"", "qualifier=\"spring\""); }},
        {"number",                                   "finite",
         [](PlantText& p) {
             p.meshes = replaced(p.meshes, "1 2 0", "1 inf 0");
             p.bound = "";
         }},
        {"material",                                   "id 2 is used by 2",                                                   [](PlantText& p) { p.materials = "<material matid=\"1\" name=\"bark\"/>"; }                                                                                                   },
        {"material",                                   "two materials",                                                 material("<material matid=\"2\"/>")                                                                                                                           },
        {"texture",                                   "does not exist",                                                 material(R"(<material matid="3"><diffuse texture="none.png"/></material>)")},
        {"texture",                                   "is empty",                                                  material(R"(<material matid="3"><normal texture="empty.png"/></material>)")},
        {"texture",                                   "is a folder",                                                  material(R"(<material matid="3"><bump texture="folder"/></material>)")                                                                                                         },
        {"texture",                                   "itself",                                                  material(R"(<material matid="3"><alpha texture="tree.vdt"/></material>)")                                                                                                                              },
        {"texture",                                   "back's",                                                  material(R"(<material matid="3"><back><diffuse texture="none.png"/></back></material>)")},
        {"extref",                                   "does not exist",                                                  [](PlantText& p) { p.moreModels = R"(<model name="x" extref="none.vdt"/>)"; }},
        {"extref",                                   "is empty",                                                   [](PlantText& p) { p.moreModels = R"(<model name="x" extref="empty.png"/>)"; }                                                                                                  },
        {"extref",                                   "is a folder",                                                   [](PlantText& p) { p.moreModels = R"(<model name="x" extref="folder"/>)"; }                                                                                                                             },
        {"extref",                                   "the file itself",                                                   [](PlantText& p) { p.moreModels = R"(<model name="x" extref="tree.vdt"/>)"; }},
        {"extref",                                   "a stub again",                                                   [](PlantText& p) { p.moreModels = R"(<model name="x" extref="stub.vdt"/>)"; }},
        {"bound",                                   "unknown until",                                                   [](PlantText& p) { p.moreModels = R"(<model name="x" extref="whole.vdt"/>)"; }                                                                                                 },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.kind) + ": " + row.part);
        const TestFolder folder;
        folder.write("empty.png", "");
        folder.write("folder/x", "");
        folder.write("whole.vdt", PlantText().targetText());
        folder.write("stub.vdt", R"(<verdanth version="1.2"><model extref="whole.vdt"/></verdanth>)");
        PlantText plant;
        row.breakIt(plant);
        const Verdict verdict = check(folder.write("tree.vdt", plant.text()));
        EXPECT_EQ(verdict.status, 1);
        EXPECT_GE(verdict.kinds.count(row.kind), 1u) << verdict.text;
        EXPECT_NE(verdict.text.find(row.part), std::string::npos) << verdict.text;
        EXPECT_LE(verdict.kinds.size(), 2u) << verdict.text;
    }
}

TEST(Check, ChecksTheFilesOfStubsTheSameWay)
{
    const TestFolder folder;
    PlantText target;
    target.points = "0 0 0  0 20 0  0 20 0  4 14 2"; // two points on one another
    target.polylineAttributes = R"(<attrib name="radius" type="float" storageclass="vertex">1</attrib>)";
    folder.write("models/old.vdt", target.targetText());
    PlantText plant;
    plant.moreModels = R"(<model name="old" extref="models/old.vdt"><bound>-1 0 -1 5 20 3</bound></model>)";
    const RunResult run = Run({"check", folder.write("tree.vdt", plant.text()), "--format", "json"});

    EXPECT_EQ(run.status, 1);
    std::map<std::string, std::string> fileOfKind;
    for (const auto& finding : nlohmann::json::parse(run.out)[0]["findings"])
        fileOfKind[finding["kind"]] = finding["file"];
    EXPECT_EQ(fileOfKind.at("lost"), folder.path("models/old.vdt"));
    EXPECT_EQ(fileOfKind.at("coincident"), folder.path("tree.vdt"));
    EXPECT_FALSE(fileOfKind.contains("orient"));  // frames of such a variant are computed
    EXPECT_TRUE(fileOfKind.contains("material")); // without "matid" its branches have id 0
}

TEST(Check, CallsFilesUnusableThatGiveNoPlant)
{
    const TestFolder folder;
    const std::string whole = gzipped(PlantText().text());
    std::string flipped = whole;
    flipped[whole.size() / 2] = static_cast<char>(flipped[whole.size() / 2] ^ 0x55);
    const std::string text = PlantText().text();
    const std::pair<const char*, std::string> rows[] = {
        {"cut.vdt.gz", whole.substr(0,                                                        whole.size() / 2)},
        {"flipped.vdt.gz",            flipped                                                                 },
        {"empty.vdt",            ""     },
        {"text.vdt",            "no model"                                                                  },
        {"newer.vdt",            replaced(text,     "1.2", "1.3")},
        {"hollow.vdt",       R"(<verdanth version="1.2"><plant><model/></plant></verdanth>)"                                                                 },
        {"stub.vdt", R"(<verdanth version="1.2"><plant><model extref="none.vdt"/></plant></verdanth>)"}
    };
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
    const RunResult both = Run({"check", folder.path("tree.vdt"), folder.path("empty.vdt")});
    EXPECT_EQ(both.status, 2);
    EXPECT_NE(both.out.find("tree.vdt: clean\n"), std::string::npos);
}

} // namespace
} // namespace verdanth::test
