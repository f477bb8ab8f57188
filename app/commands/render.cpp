#include "commands/command.h"
#include "commands/picture_size.h"
#include "commands/plant_options.h"
#include "commands/previews.h"
#include "console/text_table.h"
#include "exit_status.h"
#include "export/output_name.h"
#include "files/input_file.h"
#include "host/host_scene.h"
#include "lookup/species.h"

#include <charconv>
#include <filesystem>
#include <memory>

namespace verdanth {
namespace {

constexpr int kMostSamples = 65536;
constexpr int kMostFrames = 3600;
constexpr uint64_t kMostMergedPolygons = 2'000'000; // beyond, leaves are traced as copies, which take less memory

struct RenderRequest {
    PlantOptions plant;
    std::string output;
    std::string size = "512";
    std::string view = "three-quarter";
    double azimuth = 0, elevation = 0;
    int turntable = 0;
    int samples = 64;
    int threads = 0;
    Ground ground = Ground::Plain;
    std::string background = "F2F2ED";
    SunPosition sun;
    PreviewRequest previews;
};

// "F2F2ED", with or without a "#" before it
bool parseColor(std::string_view text, vdt::Color3f& color)
{
    constexpr size_t kDigits = 6;
    if (text.starts_with('#')) text.remove_prefix(1);
    uint32_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (text.size() != kDigits || parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) return false;
    const auto channel = [number](int shift) { return static_cast<float>(number >> shift & 0xFF) / 255; };
    color = {channel(16), channel(8), channel(0)};
    return true;
}

// The settings that the options mean. False, with the error told, if they mean none.
bool settingsOf(const RenderRequest& request, PictureSettings& settings, Console& console)
{
    if (!ParsePictureSize(request.size, settings.width, settings.height, console)) return false;
    if (!parseColor(request.background, settings.background)) {
        console.error("--background " + request.background + ": wanted are six hexadecimal digits, as in F2F2ED");
        return false;
    }
    settings.samples = static_cast<uint32_t>(request.samples);
    settings.threads = static_cast<unsigned>(request.threads);
    settings.sun = request.sun;
    settings.ground = request.ground;
    return true;
}

// "birch.png" becomes "birch_007.png".
std::string framePath(const std::string& output, int frame, int frameCount)
{
    constexpr size_t kFewestDigits = 3;
    const size_t digits = std::max(kFewestDigits, std::to_string(frameCount - 1).size());
    const std::string number = std::to_string(frame);
    std::filesystem::path path(output);
    const std::string suffix = path.extension().string();
    path.replace_extension();
    return path.string() + "_" + std::string(digits - std::min(digits, number.size()), '0') + number + suffix;
}

// One camera a picture that is to be drawn.
std::vector<Camera> camerasFor(const RenderRequest& request, std::span<const Float3> outline,
                               const PictureSettings& settings)
{
    const ViewDirection view{request.azimuth, request.elevation};
    if (request.turntable == 0) return {Camera(view, outline, settings.width, settings.height)};

    std::vector<ViewDirection> views;
    views.reserve(static_cast<size_t>(request.turntable));
    for (int frame = 0; frame < request.turntable; ++frame)
        views.push_back({view.azimuth + 360.0 * frame / request.turntable, view.elevation});
    return Camera::Turntable(views, outline, settings.width, settings.height);
}

// The plant that was asked for, ready for rays. Null, with the error told, if there is none.
std::unique_ptr<TracedScene> tracePlant(const RenderRequest& request, OutputNameParts& names, std::string& output,
                                        Console& console)
{
    RequestedPlant plant;
    Scene scene;
    if (!LoadRequestedPlant(request.plant, plant, console)) return nullptr;
    const SceneRequest wanted = SceneRequestOf(plant, request.plant);
    const bool copies = CountFoliagePolygons(wanted) > kMostMergedPolygons;
    if (!BuildRequestedScene(plant, request.plant, wanted, copies, scene, console)) return nullptr;

    names = {scene.name, scene.variant, scene.season};
    std::string problem;
    output = OutputName(request.output, names, problem);
    if (problem.empty() && IsSameFile(output, plant.open.file)) problem = "would be overwritten by its own picture";
    std::unique_ptr<TracedScene> traced;
    if (problem.empty()) {
        traced = std::make_unique<TracedScene>(scene, console);
        problem = traced->problem();
    }
    if (problem.empty()) return console.isCancelled() ? nullptr : std::move(traced);
    console.error(problem);
    return nullptr;
}

int drawPlant(const RenderRequest& request, const PictureSettings& settings, Console& console)
{
    OutputNameParts names;
    std::string output;
    const std::unique_ptr<TracedScene> traced = tracePlant(request, names, output, console);
    if (!traced) return kFailure;

    console.setSubject("");
    const std::vector<Camera> cameras = camerasFor(request, traced->outline(), settings);
    uint64_t bytes = 0;
    for (size_t i = 0; i < cameras.size(); ++i) {
        Picture picture;
        if (!DrawPicture(*traced, cameras[i], settings, picture, console)) return kFailure;
        const std::string path = request.turntable ? framePath(output, static_cast<int>(i), request.turntable) : output;
        const uint64_t written = WritePictures({path}, picture, console);
        if (written == 0) return kFailure;
        bytes += written;
    }

    console.out() << OneLine(output) << ": " << OneLine(names.species);
    for (const std::string& word : {names.variant, names.season})
        if (!word.empty()) console.out() << ", " << OneLine(word);
    console.out() << "; ";
    if (request.turntable) console.out() << request.turntable << " frames, ";
    console.out() << settings.width << " x " << settings.height << " pixels, " << settings.samples << " samples, "
                  << ByteCount(bytes) << '\n';
    return kSuccess;
}

int runRender(const RenderRequest& request, Console& console)
{
    PictureSettings settings;
    if (!settingsOf(request, settings, console)) return kFailure;
    for (const std::string& path : {request.output, request.previews.sheet}) {
        if (path.empty() || FoldName(std::filesystem::path(path).extension().string()) == ".png") continue;
        console.error(path + ": pictures are written as PNG; the name has to end in .png");
        return kFailure;
    }
    const ViewDirection view{request.azimuth, request.elevation};
    if (!request.previews.library.empty())
        return MakePreviews(request.previews, request.plant, view, settings, console) ? kSuccess : kFailure;

    if (!request.plant.plant.empty() && !request.output.empty()) return drawPlant(request, settings, console);
    console.error("wanted are a plant and --output, or --previews with a library");
    return kFailure;
}

// How a view is called, and what --azimuth and --elevation are then.
struct NamedView {
    const char* name;
    ViewDirection direction;
};
constexpr NamedView kViews[] = {{"front", {0, 4}}, {"three-quarter", {35, 14}}};

void addPictureOptions(CLI::App& command, RenderRequest& request)
{
    AddSizeOption(command, request.size);
    command.add_option("--samples", request.samples, "How many paths of light a pixel; more give less noise")
        ->check(CLI::Range(1, kMostSamples).description(""))
        ->capture_default_str()
        ->type_name("N");
    command.add_option("--view", request.view, "From straight ahead, or from the side and above")
        ->check(CLI::IsMember({"front", "three-quarter"}).description(""))
        ->capture_default_str()
        ->type_name("front|three-quarter");
    command
        .add_option("--azimuth", request.azimuth,
                    "Where the viewer stands, in degrees round the plant; else the view's")
        ->check(CLI::Range(-360, 360).description(""))
        ->type_name("DEG");
    command.add_option("--elevation", request.elevation, "How far above the plant's foot he stands; else the view's")
        ->check(CLI::Range(-90, 90).description(""))
        ->type_name("DEG");
    AddChoice<Ground>(command, "--ground", request.ground,
                      {{"plain", Ground::Plain}, {"transparent", Ground::Transparent}, {"none", Ground::None}},
                      "A plain colour with the plant's shadow, the shadow alone, or nothing");
    command.add_option("--background", request.background, "The colour of plain ground")
        ->capture_default_str()
        ->type_name("RRGGBB");
    command
        .add_option("--sun-azimuth", request.sun.azimuth, "To the viewer's right, in degrees; 180 is behind the plant")
        ->check(CLI::Range(-360, 360).description(""))
        ->capture_default_str()
        ->type_name("DEG");
    command.add_option("--sun-elevation", request.sun.elevation, "Above the horizon")
        ->check(CLI::Range(0, 90).description(""))
        ->capture_default_str()
        ->type_name("DEG");
    command.add_option("--threads", request.threads, "How many work at once; else one a processor")
        ->check(CLI::Range(1, 1024).description(""))
        ->type_name("N");
}

} // namespace

void AddRenderCommand(CLI::App& program, CommandWork& chosen)
{
    CLI::App* command = program.add_subcommand("render", "Draw a picture of a plant, or a library's preview pictures");
    const auto request = std::make_shared<RenderRequest>();
    AddPlantOptions(*command, request->plant);
    CLI::Option* plant = command->get_option("plant")->required(false);
    CLI::Option* output = command->add_option(
        "-o,--output", request->output, "The picture to write; .png. {species}, {variant} and {season} are filled in");
    output->type_name("OUT");
    addPictureOptions(*command, *request);
    CLI::Option* turntable = command->add_option("--turntable", request->turntable,
                                                 "Walk round the plant: so many pictures, OUT_000.png and on");
    turntable->check(CLI::Range(2, kMostFrames).description(""))->type_name("N");
    CLI::Option* previews = command->add_option("--previews", request->previews.library,
                                                "Make the preview pictures that the plant library at DIR lacks");
    previews->type_name("DIR");
    for (CLI::Option* other : {plant, output, turntable, command->get_option("--variant"),
                               command->get_option("--season"), command->get_option("--library")})
        previews->excludes(other);
    command->add_flag("--overwrite", request->previews.overwrite, "Make previews that are there anew")->needs(previews);
    CLI::Option* sheet = command->add_option("--sheet", request->previews.sheet,
                                             "Put the previews of all plants side by side into one picture");
    sheet->needs(previews)->type_name("OUT");
    command->add_option("--columns", request->previews.columns, "How many stand in one row; else as many as rows")
        ->needs(sheet)
        ->check(CLI::Range(1, 100).description(""))
        ->type_name("N");
    command->footer(
        ExampleText("verdanth render \"Silver Birch\" --season autumn -o birch.png", "draws a birch in autumn") + "\n" +
        "  verdanth render --previews plants\n    draws what a plant browser shows of each plant");
    command->callback([request, command, &chosen] {
        for (const NamedView& view : kViews) {
            if (request->view != view.name) continue;
            if (command->count("--azimuth") == 0) request->azimuth = view.direction.azimuth;
            if (command->count("--elevation") == 0) request->elevation = view.direction.elevation;
        }
        chosen = [request](Console& console) { return runRender(*request, console); };
    });
}

} // namespace verdanth
