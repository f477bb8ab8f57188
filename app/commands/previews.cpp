#include "commands/previews.h"

#include "console/console.h"
#include "console/text_table.h"
#include "files/output_files.h"
#include "lookup/species.h"

#include <cmath>
#include <filesystem>
#include <set>

namespace verdanth {
namespace {

namespace fs = std::filesystem;

// The model file's path without any of its name's suffixes.
std::string stemOf(const std::string& file)
{
    const fs::path path(file);
    const std::string name = path.filename().string();
    return (path.parent_path() / name.substr(0, name.find('.', 1))).generic_string();
}

std::string plantPreview(const std::string& file)
{
    return stemOf(file) + ".png";
}

// Empty for a variant whose name can be no part of a file's.
std::string variantPreview(const std::string& file, const std::string& variant)
{
    if (variant.empty() || variant.find_first_of("/\\") != std::string::npos) return {};
    const fs::path stem(stemOf(file));
    return (stem.parent_path() / "models" / (stem.filename().string() + "_" + variant + ".png")).generic_string();
}

class PreviewMaker {
public:
    PreviewMaker(const PreviewRequest& previewRequest, const PlantOptions& plantOptions, const ViewDirection& viewpoint,
                 const PictureSettings& pictureSettings, Console& target)
        : request(&previewRequest),
          options(&plantOptions),
          view(viewpoint),
          settings(&pictureSettings),
          console(&target)
    {
    }

    // False if one of the plant's pictures could not be made.
    bool makeFor(const Species& species)
    {
        RequestedPlant plant;
        if (!OpenRequestedPlant(species.file, {}, plant.open, *console)) return false;

        bool allMade = true;
        const uint64_t main = FindVariant(plant.open.model(), {}, *console);
        std::set<std::string> taken; // of two variants of one name, the first has the picture
        for (uint64_t i = 0; i < plant.open.model().variants.size(); ++i) {
            const std::string own = variantPreview(species.file, plant.open.model().variants[i].name);
            std::vector<std::string> paths;
            if (i == main) addIfWanted(plantPreview(species.file), paths);
            if (!own.empty() && taken.insert(own).second) addIfWanted(own, paths);
            if (!paths.empty()) allMade = draw(plant, i, paths) && allMade;
            if (console->isCancelled()) return false;
        }
        return allMade;
    }

    uint64_t madeCount() const { return made; }
    uint64_t keptCount() const { return kept; }

private:
    void addIfWanted(const std::string& path, std::vector<std::string>& paths)
    {
        std::error_code ignored;
        if (request->overwrite || !fs::exists(path, ignored))
            paths.push_back(path);
        else
            ++kept;
    }

    bool draw(RequestedPlant& plant, uint64_t variant, const std::vector<std::string>& paths)
    {
        Scene scene;
        if (!LoadVariantOf(plant, variant, {}, *console) ||
            !BuildScene(SceneRequestOf(plant, *options), scene, *console))
            return false;
        const TracedScene traced(scene, *console);
        if (!traced.problem().empty()) {
            console->error(traced.problem());
            return false;
        }
        Picture picture;
        const Camera camera(view, traced.outline(), settings->width, settings->height);
        if (!DrawPicture(traced, camera, *settings, picture, *console)) return false;
        const uint64_t bytes = WritePictures(paths, picture, *console);
        if (bytes == 0) return false;
        for (const std::string& path : paths)
            console->out() << OneLine(path) << ": " << settings->width << " x " << settings->height << " pixels, "
                           << ByteCount(bytes / paths.size()) << '\n';
        made += paths.size();
        return true;
    }

    const PreviewRequest* request;
    const PlantOptions* options;
    ViewDirection view;
    const PictureSettings* settings;
    Console* console;
    uint64_t made = 0;
    uint64_t kept = 0;
};

// The mean of `picture` over a part of it, laid over `background`. Places are shares of its sides.
void writeMean(const Picture& picture, double left, double top, double right, double bottom,
               const vdt::Color3f& background, uint8_t* target)
{
    const auto pixel = [](double place, uint32_t side) {
        return std::min(static_cast<uint32_t>(place * side), side - 1);
    };
    const uint32_t x0 = pixel(left, picture.width), y0 = pixel(top, picture.height);
    const uint32_t x1 = std::max(x0 + 1, pixel(right, picture.width)),
                   y1 = std::max(y0 + 1, pixel(bottom, picture.height));
    double sum[4] = {};
    for (uint32_t y = y0; y < y1; ++y) {
        for (uint32_t x = x0; x < x1; ++x) {
            const uint8_t* p = &picture.pixels[(size_t{y} * picture.width + x) * 4];
            for (int channel = 0; channel < 3; ++channel) sum[channel] += p[channel] * p[3] / 255.0;
            sum[3] += p[3];
        }
    }
    const double count = static_cast<double>(x1 - x0) * (y1 - y0);
    const double open = 1 - sum[3] / count / 255;
    const float behind[] = {background.r, background.g, background.b};
    for (int channel = 0; channel < 3; ++channel)
        target[channel] = static_cast<uint8_t>(std::lround(sum[channel] / count + behind[channel] * 255 * open));
    target[3] = 255;
}

// The plants' previews in rows, in the order of the library. A plant without one leaves its place free.
bool makeSheet(const PreviewRequest& request, const std::vector<Species>& library, const PictureSettings& settings,
               Console& console)
{
    constexpr uint32_t kLargestSheet = 32768; // pixels a side
    const auto plants = static_cast<uint32_t>(library.size());
    auto columns = static_cast<uint32_t>(request.columns);
    if (columns == 0) columns = static_cast<uint32_t>(std::ceil(std::sqrt(plants)));
    columns = std::min(columns, plants);
    const uint32_t rows = (plants + columns - 1) / columns;
    console.setSubject(request.sheet);
    if (columns * uint64_t{settings.width} > kLargestSheet || rows * uint64_t{settings.height} > kLargestSheet) {
        console.error("would be too large; a smaller --size helps");
        return false;
    }

    Picture sheet{columns * settings.width, rows * settings.height, {}};
    sheet.pixels.resize(size_t{4} * sheet.width * sheet.height);
    for (uint32_t cell = 0; cell < columns * rows; ++cell) {
        Picture empty{1, 1, {0, 0, 0, 0}};
        std::string problem;
        std::optional<Picture> preview;
        if (cell < plants) {
            preview = ReadPng(plantPreview(library[cell].file), problem);
            if (!preview) console.warning(plantPreview(library[cell].file) + " " + problem + "; its place stays free");
        }
        const Picture& picture = preview ? *preview : empty;
        for (uint32_t y = 0; y < settings.height; ++y) {
            for (uint32_t x = 0; x < settings.width; ++x) {
                const size_t row = size_t{cell / columns} * settings.height + y;
                const size_t column = size_t{cell % columns} * settings.width + x;
                writeMean(picture, double(x) / settings.width, double(y) / settings.height,
                          double(x + 1) / settings.width, double(y + 1) / settings.height, settings.background,
                          &sheet.pixels[(row * sheet.width + column) * 4]);
            }
        }
    }
    const uint64_t bytes = WritePictures({request.sheet}, sheet, console);
    if (bytes == 0) return false;
    console.out() << OneLine(request.sheet) << ": " << plants << " plants, " << sheet.width << " x " << sheet.height
                  << " pixels, " << ByteCount(bytes) << '\n';
    return true;
}

} // namespace

bool MakePreviews(const PreviewRequest& request, const PlantOptions& options, const ViewDirection& view,
                  const PictureSettings& settings, Console& console)
{
    const std::vector<Species> library = ScanLibrary(request.library);
    if (library.empty()) {
        console.setSubject(request.library);
        console.error("is no plant library: no folder in it holds a model file of its own name");
        return false;
    }

    bool allMade = true;
    PreviewMaker maker(request, options, view, settings, console);
    for (const Species& species : library) {
        allMade = maker.makeFor(species) && allMade;
        if (console.isCancelled()) return false;
    }
    console.out() << OneLine(request.library) << ": " << library.size() << " plants, " << maker.madeCount()
                  << " pictures made, " << maker.keptCount() << " were there\n";
    return (request.sheet.empty() || makeSheet(request, library, settings, console)) && allMade;
}

uint64_t WritePictures(const std::vector<std::string>& paths, const Picture& picture, vdt::MessageHandler& messages)
{
    const std::vector<uint8_t> bytes = EncodePng(picture);
    if (bytes.empty()) {
        messages.error("the picture cannot be turned into a PNG file");
        return 0;
    }
    OutputFiles files;
    for (const std::string& path : paths) files.create(path).writeAll(bytes);
    const uint64_t size = files.size();
    std::string problem;
    if (files.commit(problem)) return size;
    messages.error(problem);
    return 0;
}

} // namespace verdanth
