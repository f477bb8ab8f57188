// A forest: many plants of few species, which share what they can. Beside each species opened once, in time and memory.
#include "ratio.h"
#include "synthetic_plant.h"
#include "vdt/cache/cache.h"
#include "vdt/file/vdt_writer.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace vdt::bench {
namespace {

constexpr size_t kSpecies = 10;
constexpr size_t kPlants = 500;

// The files of all species, removed at the end.
class SpeciesFiles {
public:
    SpeciesFiles() : folder(std::filesystem::temp_directory_path() / "verdanth_bench_forest")
    {
        std::filesystem::create_directories(folder);
        Model model;
        model.variants.push_back(SyntheticPlant(0.1));
        NullMessageHandler messages;
        for (size_t i = 0; i < kSpecies; ++i) {
            paths.push_back((folder / ("species" + std::to_string(i) + ".vdt")).string());
            std::ofstream file(paths.back(), std::ios::binary);
            VdtWriter(model, messages).write(file);
        }
    }
    ~SpeciesFiles() { std::filesystem::remove_all(folder); }

    std::vector<std::string> paths;

private:
    std::filesystem::path folder;
};

struct Forest {
    Cache cache{nullptr};
    std::vector<ModelHandle> plants; // behind the cache, so that they go first
};

auto planted(const SpeciesFiles& files, size_t count)
{
    return [&files, count] {
        auto forest = std::make_unique<Forest>();
        NullMessageHandler messages;
        for (size_t i = 0; i < count; ++i) {
            forest->plants.push_back(forest->cache.acquire(files.paths[i % kSpecies], messages, 0));
            benchmark::DoNotOptimize(forest->plants.back().variantData(messages, true));
        }
        return forest;
    };
}

// Of all that the heap holds.
double bytesInUse()
{
#ifdef __GLIBC__
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
#else
    return 0;
#endif
}

double bytesOf(const SpeciesFiles& files, size_t count)
{
    const double before = bytesInUse();
    const auto forest = planted(files, count)();
    return bytesInUse() - before;
}

void forestBesideItsSpecies(benchmark::State& state)
{
    const SpeciesFiles files;
    CompareTimes(state, planted(files, kPlants), planted(files, kSpecies), [] {});
    state.counters["memory_ratio"] = bytesOf(files, kPlants) / bytesOf(files, kSpecies);
}

BENCHMARK(forestBesideItsSpecies)
    ->Iterations(11)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Name("forest/500_plants_beside_10_species");

} // namespace
} // namespace vdt::bench
