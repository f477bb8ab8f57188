// A scene of many plants, evaluated by the host through the module, beside the library's builds of the same plants
// alone: what the way through the host's objects costs.
#include "console/console.h"
#include "host/host_session.h"
#include "host/plant_object.h"
#include "ratio.h"
#include "synthetic_plant.h"
#include "vdt/cache/cache.h"
#include "vdt/file/vdt_writer.h"
#include "vdt/generate/plant_mesh.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace vdt::bench {
namespace {

using namespace verdanth;

constexpr size_t kSpecies = 10;
constexpr size_t kPlants = 200;
constexpr double kSize = 0.01; // of the synthetic plant: 12,000 polygons or so

// Model files of all species, and the host that shows them.
class Nursery {
public:
    Nursery()
        : folder(std::filesystem::temp_directory_path() / "verdanth_bench_scene"),
          console(std::cerr, std::cerr, false)
    {
        std::filesystem::create_directories(folder);
        Model model;
        model.variants.push_back(SyntheticPlant(kSize));
        NullMessageHandler messages;
        for (size_t i = 0; i < kSpecies; ++i) {
            files.push_back((folder / ("species" + std::to_string(i) + ".vdt")).string());
            std::ofstream file(files.back(), std::ios::binary);
            VdtWriter(model, messages).write(file);
        }
        usable = session.start(folder.string(), console);
        if (usable) prepareScene();
    }
    ~Nursery()
    {
        scene.reset();
        std::filesystem::remove_all(folder);
    }

    /// A scene in which nothing is built yet, all its models read.
    void prepareScene()
    {
        scene = std::make_unique<OwnDocument>(DOCUMENT_UNIT_CM);
        for (size_t i = 0; i < kPlants; ++i) AddPlant(*scene->get(), {.file = files[i % kSpecies]}, 1);
    }

    bool evaluate() { return Evaluate(*scene->get()); }

    std::filesystem::path folder;
    std::vector<std::string> files;
    bool usable = false;

private:
    Console console;
    HostSession session;
    std::unique_ptr<OwnDocument> scene;
};

void sceneBesideItsMeshes(benchmark::State& state)
{
    Nursery nursery;
    if (!nursery.usable) return state.SkipWithError("the module cannot be loaded");
    Cache cache(nullptr);
    NullMessageHandler messages;
    std::vector<ModelHandle> models;
    for (const std::string& file : nursery.files) {
        models.push_back(cache.acquire(file, messages, 0));
        models.back().variantData(messages, true);
    }
    const auto meshes = [&] {
        auto built = std::make_unique<std::vector<Mesh>>(kPlants);
        for (size_t i = 0; i < kPlants; ++i)
            BuildPlantMesh(*models[i % kSpecies].variantData(messages, true), {}, (*built)[i], messages);
        return built;
    };
    const auto evaluated = [&] { return nursery.evaluate(); };
    CompareTimes(state, evaluated, meshes, [&] { nursery.prepareScene(); });
}

BENCHMARK(sceneBesideItsMeshes)
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Name("scene/200_plants_beside_their_meshes");

} // namespace
} // namespace vdt::bench
