#include "app/test_plant.h"
#include "convert/draft_tree.h"
#include "support/recording_messages.h"
#include "support/skeleton_builder.h"
#include "vdt/file/vdt_reader.h"
#include "vdt/skeleton/walker.h"

#include <cmath>
#include <set>

namespace verdanth::test {
namespace {

using vdt::SkeletonVertex;
using vdt::Vector3;
using vdt::test::Dice;
using vdt::test::Everything;
using vdt::test::RecordingMessages;
using vdt::test::VertexAt;

// What stands in a geometry file; each field may be replaced.
struct GeoFile {
    std::string pointAttributes = "occ 1 float 0\nradius 1 float 1\nCd 3 float 1 1 1\n";
    std::vector<std::string> points = {"0 0 0 1 (1 0.5 .1 .2 .3)", "0 10 0 1 (0.5 0.25 .1 .2 .3)",
                                       "0 20 0.5 1 (0.25 0.125 .1 .2 .3)", "4 14 2 1 (0 0.125 .1 .2 .3)"};
    std::string vertexAttributes;
    std::vector<std::string> primitives = {"3 : 0 1 2", "2 < 1 3"};

    std::string text() const
    {
        const auto linesIn = [](const std::string& text) {
            return std::to_string(std::count(text.begin(), text.end(), '\n'));
        };
        std::string all = "PGEOMETRY V5\nNPoints " + std::to_string(points.size()) + " NPrims " +
                          std::to_string(primitives.size()) + "\nNPointGroups 0 NPrimGroups 0\nNPointAttrib " +
                          linesIn(pointAttributes) + " NVertexAttrib " + linesIn(vertexAttributes) +
                          " NPrimAttrib 0 NAttrib 0\n";
        if (!pointAttributes.empty()) all += "PointAttrib\n" + pointAttributes;
        for (const std::string& point : points) all += point + '\n';
        if (!vertexAttributes.empty()) all += "VertexAttrib\n" + vertexAttributes;
        for (const std::string& primitive : primitives) all += "Poly " + primitive + '\n';
        return all + "beginExtra\nendExtra\n";
    }
};

// A conversion with its model, which check has to find clean.
struct Converted {
    RunResult run;
    vdt::Model model;

    Converted(const TemporaryFolder& folder, const std::string& input, std::vector<std::string> options = {},
              const std::string& output = "out.vdt")
        : run(convert(folder, input, std::move(options), output))
    {
        if (run.status != 0) return;
        const RunResult checked = RunApp({"check", folder.path(output)});
        EXPECT_EQ(checked.status, 0) << checked.out;
        vdt::NullMessageHandler silence;
        vdt::VdtReader(model, silence).readFile(folder.path(output));
        EXPECT_EQ(model.unit, vdt::kCentimeters);
        EXPECT_TRUE(vdt::test::CheckSkeleton(skeleton()));

        std::vector<uint64_t> visits(skeleton().branches.size());
        vdt::SkeletonWalker walker(skeleton(), false, vdt::WalkFilter::None);
        while (walker.advance()) ++visits[walker.vertex().branch];
        for (size_t i = 0; i < visits.size(); ++i) EXPECT_EQ(visits[i], skeleton().branches[i].vertexCount) << i;
    }

    static RunResult convert(const TemporaryFolder& folder, const std::string& input, std::vector<std::string> options,
                             const std::string& output)
    {
        options.insert(options.begin(), {"convert", input, "-o", folder.path(output)});
        return RunApp(options);
    }
    const vdt::Skeleton& skeleton() const { return model.variants.at(0).skeleton; }

    /// "0 0 0, 0 1 0; .." of all branches, rounded to millimetres.
    std::string positions() const
    {
        std::ostringstream text;
        for (const vdt::SkeletonBranch& branch : skeleton().branches) {
            if (text.tellp() > 0) text << "; ";
            for (const vdt::SkeletonVertex* v = branch.firstVertex; v; v = v->next) {
                const Vector3& p = skeleton().points[v->point].position;
                const auto rounded = [](double x) { return std::round(x * 10) / 10 + 0.0; };
                text << (v->prev ? ", " : "") << rounded(p.x) << ' ' << rounded(p.y) << ' ' << rounded(p.z);
            }
        }
        return text.str();
    }
    std::vector<double> radii(uint64_t branch) const
    {
        std::vector<double> all;
        for (const auto* v = skeleton().branches[branch].firstVertex; v; v = v->next)
            all.push_back(v->attributes.radius);
        return all;
    }
};

TEST(Convert, MakesBranchesOfPolylines)
{
    const TemporaryFolder folder;
    GeoFile file;
    file.vertexAttributes = "radius 1 float 7\nCd 3 float 1 1 1\n";
    file.primitives = {"3 : 0 (3 1 0 0) 1 (0.1 0 1 0) 2", "1 : 2", "2 < 1 3 (1)"};
    const Converted plant(folder, folder.write("Betula_nana.v2.geo", file.text()), {"--matid", "3"});
    ASSERT_EQ(plant.run.status, 0) << plant.run.messages;
    EXPECT_EQ(plant.run.messages, "");
    EXPECT_EQ(plant.model.name, "Betula nana");
    EXPECT_EQ(plant.model.info.source, "Betula_nana.v2.geo");
    EXPECT_EQ(plant.positions(), "0 0 0, 0 10 0, 0 20 0.5; 0 10 0, 4 14 2");
    EXPECT_EQ(plant.radii(0), (std::vector<double>{3, 0.1, 7})); // the vertex wins, its default too
    EXPECT_EQ(plant.radii(1), (std::vector<double>{7, 1}));
    EXPECT_EQ(VertexAt(plant.skeleton(), 0, 1).attributes.color, (vdt::Color3f{0, 1, 0}));
    EXPECT_EQ(plant.skeleton().points[1].weight, 0.5F);
    EXPECT_EQ(plant.skeleton().branches[1].matid, 3);

    GeoFile bare{"", {"0 0 0 1", "0 10 0 1", "0 20 0.5 1", "4 14 2 1"}, "", {"3 : 0 1 2", "2 : 1 3"}};
    const Converted plain(folder, folder.write("bare.geo", bare.text()), {"--unit", "mm", "--up", "z", "--name", "x"});
    EXPECT_EQ(plain.positions(), "0 0 0, 0 0 -1, 0 0.1 -2; 0 0 -1, 0.4 0.2 -1.4");
    EXPECT_EQ(plain.radii(0), (std::vector<double>{0.1, 0.1, 0.1}));
    EXPECT_EQ(VertexAt(plain.skeleton(), 0, 0).attributes.color, (vdt::Color3f{0.8F, 0.8F, 0.8F}));
    EXPECT_GT(plain.skeleton().points[1].weight, 0); // computed

    GeoFile weights = bare;
    weights.pointAttributes = "occ 1 float 0.25\n";
    weights.vertexAttributes = "occ 1 float 0\n";
    weights.primitives = {"3 : 0 (1) 1 (0.75) 2 (nan)", "2 : 1 (0.5) 3"};
    const Converted weighted(folder, folder.write("weights.geo", weights.text()));
    const float expected[] = {1, 0.75F, 0, 0};
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(weighted.skeleton().points[i].weight, expected[i]) << i;
}

TEST(Convert, DropsWhatNoTreeCanHoldAndSaysSo)
{
    struct Row {
        std::vector<const char*> points; // x y z
        std::vector<const char*> lines;  // point indices
        const char* positions;
        std::vector<const char*> messages;
    };
    const Row rows[] = {
        {{"0 0 0", "0 1 0", "0 1 0", "0 2 0", "1 1 0"},
         {"0 1 2 3", "2 4"},
         "0 0 0, 0 1 0, 0 2 0; 0 1 0, 1 1 0",
         {"1 point that lies on its neighbour is dropped"}},
        {{"0 0 0", "0 3 0", "0 2 0", "1 4 0", "1 2 0"},
         {"0 1 2 3", "2 4"},
         "0 0 0, 0 3 0, 1 4 0; 0 3 0, 1 2 0",
         {"1 point at which a branch turns straight back is dropped"}},
        {{"0 0 0", "0 1 0", "0 2 0", "0 1 0", "1 1 0", "2 1 0", "1 1 0", "1 2 0"},
         {"6 7", "3 4 5", "0 1 2"},
         "0 0 0, 0 1 0, 0 2 0; 0 1 0, 1 1 0, 2 1 0; 1 1 0, 1 2 0",
         {"2 branches are joined to the branch on whose point it begins"}},
        {{"0 0 0", "0 1 0", "0 2 0", "1 1 0", "2 2 0"},
         {"0 1 2", "1 3 2 4"},
         "0 0 0, 0 1 0, 0 2 0; 0 1 0, 1 1 0",
         {"1 branch runs into another one or into itself; what lies behind is left out"}},
        {{"0 0 0", "1 2 0", "0 3 0"},
         {"0 1", "0 2"},
         "-0.4 -0.9 0, 0 0 0, 1 2 0; 0 0 0, 0 3 0",
         {"2 branches begin at the foot; the thickest is lengthened downwards"}},
        {{"9 0 0", "9 1 0", "0 0 0", "0 1 0", "0 2 0", "5 0 0", "5 1 0", "5 5 5"},
         {"0 1", "2 3 4", "5 6 7 5", "6 7"},
         "0 0 0, 0 1 0, 0 2 0",
         {"1 branch grows from another root and is left out", "2 branches hang on no root and are left out"}},
        {{"0 0 0", "0 1 0", "nan 2 0", "0 3 0"},
         {"0 1 2 3 -1 4 2147483647", "0 2"},
         "0 0 0, 0 1 0, 0 3 0",
         {"vertices that refer to missing points are left out: 3",
          "vertices on points that are not at a finite position are left out: 2"}},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.positions);
        GeoFile file{"", {}, "", {}};
        for (const char* point : row.points) file.points.push_back(std::string(point) + " 1");
        for (const std::string line : row.lines)
            file.primitives.push_back(std::to_string(std::count(line.begin(), line.end(), ' ') + 1) + " : " + line);
        const Converted plant(folder, folder.write("in.geo", file.text()));
        ASSERT_EQ(plant.run.status, 0) << plant.run.messages;
        EXPECT_EQ(plant.positions(), row.positions);
        for (const char* message : row.messages)
            EXPECT_NE(plant.run.messages.find(message), std::string::npos) << plant.run.messages;
    }
}

// Tangles of polylines through few points of a small grid, so that everything that can go wrong does.
TEST(Convert, MakesATreeOfAnyTangle)
{
    for (uint32_t seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        PlantDraft draft;
        const uint32_t pointCount = 2 + dice.below(30);
        const auto coordinate = [&] { return static_cast<double>(dice.below(4)); };
        for (uint32_t i = 0; i < pointCount; ++i) draft.points.push_back({coordinate(), coordinate(), coordinate()});
        for (uint32_t i = dice.below(10); i > 0; --i) {
            DraftBranch branch(2 + dice.below(6));
            for (DraftVertex& vertex : branch) vertex.point = dice.below(pointCount);
            draft.branches.push_back(branch);
        }
        RecordingMessages messages;
        const bool made = MakeTree(draft, messages);
        EXPECT_EQ(messages.errors.size(), made ? 0u : 1u);
        if (!made) continue;

        std::vector<bool> reached(draft.points.size());
        const uint64_t root = draft.branches[0][0].point;
        reached[root] = true;
        EXPECT_EQ(std::count_if(draft.branches.begin(), draft.branches.end(),
                                [&](const DraftBranch& branch) { return branch[0].point == root; }),
                  1);
        for (const DraftBranch& branch : draft.branches) {
            ASSERT_GE(branch.size(), 2u);
            EXPECT_TRUE(reached[branch[0].point]);
            Vector3 before{0, 0, 0};
            for (size_t i = 1; i < branch.size(); ++i) {
                EXPECT_FALSE(reached[branch[i].point]);
                reached[branch[i].point] = true;
                Vector3 direction = draft.points[branch[i].point] - draft.points[branch[i - 1].point];
                ASSERT_TRUE(vdt::Normalize(direction));
                EXPECT_GT(vdt::Length(before + direction), 1e-7);
                before = direction;
            }
        }
        EXPECT_EQ(std::count(reached.begin(), reached.end(), false), 0);
    }
}

TEST(Convert, ChainsCylindersOfScannedTrees)
{
    // One tree in the three forms: a trunk of three cylinders, a side branch on the first, and a twig on that.
    const char* const treeQsm = "0.2 1 7 8 9 0 0 1 0 2 0 0.2 1 0 1\n.1  1 7 8 10 0 0 2 1 3 0 .1 1 0 2\n"
                                "0.1 1 7 8 11 0 0 1 2 0 0 .1 1 0 3\n3e-1 2 7 8 10 1 0 0 1.0 0 0 .3 2 1 1\n"
                                "0.02 1 9 8 10 0 1e0 0 4 0 0 .02 3 2 1\n";
    const std::string head = "radius (m)\tlength (m)\tstart_point\taxis_direction\tparent\textension\tx\tUnmodRadius "
                             "(m)\tbranch\tbranch_order\tposition_in_branch\n";
    const char* const simpleForest = "branchID,ID, parentID,startX,startY,startZ,endX,endY,endZ,qsm,radius\n"
                                     "0,0,-1,7,8,9,7,8,10,a,0.2\n0,1,0,7,8,10,7,8,11,a,0.1\n1,3,0,7,8,10,9,8,10,a,0.3\n"
                                     "0,2,1,7,8,11,7,8,12,a,0.1\n2,4,3,9,8,10,9,9,10,a,0.02\n";
    const char* const archi =
        "\"startX\";\"startY\";\"startZ\";\"endX\";\"endY\";\"endZ\";\"cyl_ID\";\"parent_ID\";\"extension_ID\";"
        "\"radius_cyl\";\"length\"\r\n7;8;9;7;8;10;10;0;20;0,2;1\r\n9;8;10;9;9;10;50;40;NA;0,02;1\r\n"
        "7;8;10;7;8;11;20;10;30;0,1;1\r\n\r\n7;8;10;9;8;10;40;10;;0,3;2\r\n7;8;11;7;8;12;30;20;0;0,1;1\r\n";
    const TemporaryFolder folder;
    for (const std::string& table :
         {std::string(treeQsm), head + treeQsm, std::string(simpleForest), std::string(archi)}) {
        SCOPED_TRACE(table.substr(0, 30));
        const Converted plant(folder, folder.write("scan.txt", table));
        ASSERT_EQ(plant.run.status, 0) << plant.run.messages;
        EXPECT_EQ(plant.run.messages, "");
        EXPECT_EQ(plant.positions(), "0 0 0, 0 100 0, 0 200 0, 0 300 0; 0 100 0, 200 100 0, 200 100 -100");
        const std::vector<double> trunk = {20, 15, 10, 5}, side = {20, 16, 1};
        for (size_t i = 0; i < trunk.size(); ++i) EXPECT_NEAR(plant.radii(0)[i], trunk[i], 1e-9);
        for (size_t i = 0; i < side.size(); ++i) EXPECT_NEAR(plant.radii(1)[i], side[i], 1e-9);
    }

    // Without branches and extensions the thickest child goes on.
    const char* const bare = "startX startY startZ endX endY endZ parent radius\n0 0 0 0 0 1 0 2\n0 0 1 0 0 2 1 1\n"
                             "0 0 1 1 0 1 1 1.5\n";
    const Converted thick(folder, folder.write("bare.txt", bare), {"--unit", "cm", "--up", "y"});
    EXPECT_EQ(thick.positions(), "0 0 0, 0 0 1, 1 0 1; 0 0 1, 0 0 2");
}

TEST(Convert, LeavesOutRowsThatDoNotFit)
{
    const std::string head = "ID parentID startX startY startZ endX endY endZ radius\n";
    const std::string trunk = "1 -1 0 0 0 0 0 1 1\n2 1 0 0 1 0 0 2 1\n";
    struct Row {
        const char* rows;
        const char* message;
    };
    const Row rows[] = {
        {"3 2 0 0 2 0 0 inf 1\n", "line 4: left out: the end is no usable position"},
        {"3 2 0 0 nan 0 0 3 1\n4 2 0 0 x 0 0 3 1\n", "line 4: left out: the start is no usable position (and 1 more"},
        {"3 2 0 0 2 0 0 3 0\n", "line 4: left out: the radius is no number above 0"},
        {"3 2 0 0 2 0 0 3\n", "line 4: left out: the radius"},
        {"3.5 2 0 0 2 0 0 3 1\n", "line 4: left out: an ID is no whole number"},
        {"3 99999999999999999999 0 0 2 0 0 3 1\n", "line 4: left out: an ID"},
        {"2 1 0 0 2 0 0 3 1\n", "line 4: left out: its ID is that of another row"},
        {"3 7 0 0 2 0 0 3 1\n4 3 0 0 3 0 0 4 1\n", "line 4: left out: its parent is missing; with all that"},
        {"3 -1 5 0 2 0 0 3 1\n", "line 4: left out: a root of its own, with all that grows from it; a larger tree"},
        {"3 4 0 0 2 0 0 3 1\n4 3 0 0 3 0 0 4 1\n5 4 0 0 3 0 0 4 1\n",
         "line 4: left out: its parents lead round in a circle (and 2 more like it)"},
        {"3 2 0 0 2 0 0 2 1\n", "1 point that lies on its neighbour is dropped"},
    };
    const TemporaryFolder folder;
    for (const Row& row : rows) {
        const Converted plant(folder, folder.write("scan.csv", head + trunk + row.rows));
        EXPECT_EQ(plant.run.status, 0);
        EXPECT_NE(plant.run.messages.find("scan.csv: " + std::string(row.message)), std::string::npos)
            << plant.run.messages;
        EXPECT_EQ(plant.positions(), "0 0 0, 0 100 0, 0 200 0");
    }
}

TEST(Convert, PutsLeavesOnThinTips)
{
    const TemporaryFolder folder;
    const std::string input = folder.write("in.geo", GeoFile().text());
    const Converted plant(folder, input, {"--leaf-size", "2", "--leaf-matid", "8"});
    ASSERT_EQ(plant.run.status, 0) << plant.run.messages;
    const vdt::Skeleton& skeleton = plant.skeleton();
    ASSERT_GT(skeleton.connectors.size(), 2u);
    std::set<uint64_t> tips;
    for (const vdt::SkeletonConnector& connector : skeleton.connectors) {
        const bool first = tips.insert(connector.point).second;
        const SkeletonVertex* tip = skeleton.points[connector.point].firstVertex;
        const Vector3 along =
            vdt::Normalized(skeleton.points[tip->point].position - skeleton.points[tip->prev->point].position);
        const vdt::Matrix frame = vdt::ToMatrix(connector.attributes.orient, {0, 0, 0});
        EXPECT_GT(vdt::Dot(frame.row(2), along), first ? 0.999 : 0.3);
        EXPECT_GT(frame.m[1][1], -1e-6); // its upper side is not below
    }
    EXPECT_EQ(tips, (std::set<uint64_t>{2, 3}));
    const vdt::Mesh& leaf = *plant.model.variants[0].meshes.at(0).mesh;
    vdt::Box box;
    leaf.GetBounds(box);
    EXPECT_EQ(box.size().z, 2);
    EXPECT_EQ(leaf.materials[0], 8);
    for (const Vector3& normal : leaf.normals) EXPECT_GT(normal.y, 0.5);

    const Converted again(folder, input, {"--leaf-size", "2", "--leaf-matid", "8"}, "again.vdt.gz");
    EXPECT_EQ(Everything(again.skeleton()), Everything(skeleton));
    EXPECT_EQ(folder.read("again.vdt.gz").substr(0, 2), "\x1f\x8b");

    const Converted bare(folder, input, {"--no-leaves", "--leaf-matid", "0"});
    EXPECT_TRUE(bare.skeleton().connectors.empty());
    EXPECT_EQ(bare.model.materials.size(), 1u);
    GeoFile stumps;
    stumps.points[3] = "4 14 2 1 (0 0.5 .1 .2 .3)";
    stumps.points[2] = "0 20 0 1 (0 0.3 .1 .2 .3)";
    const Converted leafless(folder, folder.write("stumps.geo", stumps.text()));
    EXPECT_NE(leafless.run.messages.find("no branch ends thin enough for leaves"), std::string::npos);
    EXPECT_EQ(RunApp({"export", folder.path("out.vdt"), "-o", folder.path("out.glb")}).status, 0);
}

TEST(Convert, RefusesWithOneClearError)
{
    const TemporaryFolder folder;
    const std::string good = folder.write("good.geo", GeoFile().text());
    GeoFile points;
    points.primitives = {"1 : 0", "0 <"};
    GeoFile circle;
    circle.primitives = {"3 : 0 1 2", "3 : 2 3 0"};
    GeoFile dot;
    dot.primitives = {"2 : 0 0"};
    std::string cut = GeoFile().text();
    cut.resize(cut.find("Poly 2") + 8);
    struct Row {
        std::string input;
        std::string problem;
        std::string output = "out.vdt";
        std::vector<std::string> options{};
    };
    const Row rows[] = {
        {folder.path("none.geo"), "none.geo: does not exist"},
        {folder.write("empty.geo", ""), "empty.geo: is empty"},
        {folder.write("json.geo", "[\n\t\"fileversion\",\"18.0\"]"), "json.geo: line 1: the JSON form"},
        {folder.write("x.geo", "PGEOMETRY V6\n"), "x.geo: line 1: no Houdini text geometry"},
        {folder.write("binary.geo", std::string(100, '\0')), "binary.geo: line 1: no Houdini text geometry"},
        {folder.write("cut.geo", cut), "cut.geo: line 14: is cut here or goes on as no text geometry, behind 4 points "
                                       "and 1 primitives"},
        {folder.write("points.geo", points.text()), "points.geo: holds no polyline of two points or more"},
        {folder.write("circle.geo", circle.text()), "circle.geo: no branch begins on a point of its own"},
        {folder.write("dot.geo", dot.text()), "dot.geo: holds no branch of two points that lie apart"},
        {folder.write("blank.csv", "\n \n"), "blank.csv: holds no rows"},
        {folder.write("prose.txt", "\n\nThe quick brown fox"),
         "prose.txt: line 3: no table of cylinders: no column for "
         "radius, start, end (or axis and length), parent"},
        {folder.write("few.txt", "1 2 3\n"), "few.txt: line 1: no table of cylinders: neither names of columns nor"},
        {folder.write("head.csv", "radius,parent,startX,startY,startZ,axisX,axisY,axisZ,length\n"),
         "head.csv: holds no cylinder without a parent"},
        {folder.write("zeros.csv", std::string(1000, '\0')), "zeros.csv: line 1: no table of cylinders"},
        {good, "out.glb: the suffix is not that of a model file", "out.glb"},
        {good, "out.vdt: cannot be written", "no/such/out.vdt"},
        {good, "want materials of their own", "out.vdt", {"--matid", "1"}},
        {good, "--leaf-size", "out.vdt", {"--leaf-size", "-1"}},
        {good, "--unit", "out.vdt", {"--unit", "inch"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.problem);
        const RunResult run = Converted::convert(folder, row.input, row.options, row.output);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.messages.find(row.problem), std::string::npos) << run.messages;
        EXPECT_NE(run.messages.find("verdanth: error: "), std::string::npos);
    }
    const std::string own = folder.write("own.vdt", GeoFile().text());
    EXPECT_NE(RunApp({"convert", own, "-o", own}).messages.find("its own conversion"), std::string::npos);
    EXPECT_EQ(folder.read("own.vdt"), GeoFile().text());
    EXPECT_FALSE(folder.has("out.vdt"));
}

} // namespace
} // namespace verdanth::test
