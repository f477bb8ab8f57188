#include "commands/command.h"
#include "console/text_table.h"
#include "convert/build_model.h"
#include "convert/cylinder_tree.h"
#include "convert/draft_tree.h"
#include "convert/read_geo.h"
#include "exit_status.h"
#include "files/input_file.h"
#include "files/output_stream.h"
#include "vdt/file/vdt_writer.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>

namespace verdanth {
namespace {

struct ConvertOptions {
    std::string input;
    std::string output;
    std::string unit; // "mm", "cm", "m"; empty for that of the kind of file
    std::string up;   // "y", "z"; likewise
    ModelOptions model;
};

bool isGeometryFile(const std::string& path)
{
    constexpr std::string_view kMark = "PGEOMETRY";
    std::ifstream file(path, std::ios::binary);
    std::string begin(kMark.size(), '\0');
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    return begin == kMark || std::filesystem::path(path).extension() == ".geo";
}

// Units are not converted beyond what a file of floats can tell, so that no digits appear that nobody measured.
double converted(double length, double scale)
{
    constexpr double kSteps = 1e5; // in a centimetre
    return scale == 1 ? length : std::round(length * scale * kSteps) / kSteps;
}

// Brings the draft to centimetres and y up.
void useModelTerms(PlantDraft& draft, const ConvertOptions& options)
{
    const double scale = options.unit.empty()   ? draft.centimeters
                         : options.unit == "m"  ? 100
                         : options.unit == "cm" ? 1
                                                : 0.1;
    const bool zUp = options.up.empty() ? draft.zUp : options.up == "z";
    for (vdt::Vector3& p : draft.points) {
        if (zUp) p = {p.x, p.z, 0 - p.y}; // without a minus before a 0
        p = {converted(p.x, scale), converted(p.y, scale), converted(p.z, scale)};
    }
    for (DraftBranch& branch : draft.branches)
        for (DraftVertex& vertex : branch) vertex.radius = converted(vertex.radius, scale);
}

// "Betula pendula" of "trees/Betula_pendula.csv".
std::string nameOfFile(const std::string& path)
{
    std::string name = std::filesystem::path(path).filename().string();
    name.resize(std::min(name.find('.', 1), name.size()));
    std::replace(name.begin(), name.end(), '_', ' ');
    return name;
}

bool isRequestInOrder(const ConvertOptions& options, Console& console)
{
    console.setSubject(options.output);
    if (!options.output.ends_with(".vdt") && !options.output.ends_with(".vdt.gz")) {
        console.error("the suffix is not that of a model file; .vdt and .vdt.gz are");
        return false;
    }
    console.setSubject(options.input);
    const std::string problem = ProblemOfFile(options.input);
    if (!problem.empty())
        console.error(problem);
    else if (IsSameFile(options.input, options.output))
        console.error("would be overwritten by its own conversion");
    else if (options.model.leaves && options.model.leafMatid == options.model.woodMatid)
        console.error("wood and leaves want materials of their own: --matid and --leaf-matid are the same");
    else
        return true;
    return false;
}

int runConvert(const ConvertOptions& options, Console& console)
{
    if (!isRequestInOrder(options, console)) return kFailure;
    std::optional<PlantDraft> draft =
        isGeometryFile(options.input) ? ReadGeo(options.input, console) : ReadCylinderTree(options.input, console);
    if (!draft || console.isCancelled()) return kFailure;
    useModelTerms(*draft, options);
    if (!MakeTree(*draft, console)) return kFailure;

    ModelOptions modelOptions = options.model;
    modelOptions.source = std::filesystem::path(options.input).filename().string();
    if (modelOptions.name.empty()) modelOptions.name = nameOfFile(options.input);
    const vdt::Model model = BuildModel(*draft, modelOptions, console);
    if (console.isCancelled()) return kFailure;

    console.setSubject("");
    OutputFiles files;
    OutputFileStream stream(files.create(options.output));
    if (!vdt::VdtWriter(model, console).write(stream, options.output.ends_with(".gz"))) return kFailure;
    if (std::string problem; !files.commit(problem)) {
        console.error(problem);
        return kFailure;
    }
    const vdt::Skeleton& skeleton = model.variants.front().skeleton;
    vdt::Box box;
    skeleton.GetBounds(box, vdt::BoundsMode::AllPoints);
    console.out() << OneLine(options.output) << ": " << OneLine(model.name) << "; "
                  << FixedNumber(box.size().y / 100, 2) << " m high, " << GroupedNumber(skeleton.branches.size())
                  << " branches, " << GroupedNumber(skeleton.points.size()) << " points, "
                  << GroupedNumber(skeleton.connectors.size()) << " leaves, " << ByteCount(files.size()) << '\n';
    return kSuccess;
}

} // namespace

void AddConvertCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("convert", "Make a model file of drawn branches or of a scanned tree");
    const auto options = std::make_shared<ConvertOptions>();
    command
        ->add_option("file", options->input,
                     "Houdini text geometry (.geo), or a table of cylinders of TreeQSM, SimpleForest or aRchi")
        ->required()
        ->type_name("FILE");
    command->add_option("-o,--output", options->output, "The model file to write; .vdt or .vdt.gz")
        ->required()
        ->type_name("OUT");
    command->add_option("--name", options->model.name, "The plant's botanical name; else that of the file")
        ->type_name("NAME");
    command->add_option("--unit", options->unit, "Of the file's lengths; else cm for geometry, m for cylinders")
        ->check(CLI::IsMember({"mm", "cm", "m"}).description(""))
        ->type_name("mm|cm|m");
    command->add_option("--up", options->up, "The file's axis that points up; else y for geometry, z for cylinders")
        ->check(CLI::IsMember({"y", "z"}).description(""))
        ->type_name("y|z");
    command->add_option("--matid", options->model.woodMatid, "The material id of the branches")
        ->capture_default_str()
        ->type_name("N");
    command->add_option("--leaf-matid", options->model.leafMatid, "The material id of the leaves")
        ->capture_default_str()
        ->type_name("N");
    command->add_option("--leaf-size", options->model.leafSize, "Centimetres; else a hundredth of the plant's size")
        ->check(CLI::PositiveNumber.description(""))
        ->type_name("CM");
    command->add_flag_callback(
        "--no-leaves", [options] { options->model.leaves = false; }, "Leave the thin ends of branches bare");
    command->footer(ExampleText("verdanth convert oak_qsm.csv --name \"Quercus robur\" -o oak.vdt.gz",
                                "makes a plant of the cylinders fitted to a scanned oak"));
    command->callback(
        [options, &chosen] { chosen = [options](Console& console) { return runConvert(*options, console); }; });
}

} // namespace verdanth
