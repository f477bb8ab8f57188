// Random numbers, shuffles, point clouds and the stream for viewports, each beside what it replaces.
#include "ratio.h"
#include "synthetic_plant.h"
#include "vdt/generate/draw_helper.h"
#include "vdt/generate/point_cloud.h"
#include "vdt/math/mersenne_twister.h"
#include "vdt/skeleton/walker.h"

#include <memory>
#include <numeric>
#include <random>

namespace vdt::bench {
namespace {

// The work of one round is below the clock's grain, so it is done so often between two looks at the clock.
constexpr int kRepeats = 20;

template <class Work> auto repeated(const Work& work)
{
    return [work] {
        for (int i = 0; i < kRepeats; ++i) work();
        return 0;
    };
}

void drawsBesideStandard(benchmark::State& state)
{
    constexpr uint64_t kDraws = 10'000'000;
    const auto sumOf = [](auto draw) {
        uint64_t sum = 0;
        for (uint64_t i = 0; i < kDraws; ++i) sum += draw();
        return sum;
    };
    MersenneTwister ours;
    std::mt19937 standard;
    CompareTimes(
        state, [&] { return sumOf([&] { return ours.next(); }); }, [&] { return sumOf([&] { return standard(); }); },
        [] {});
    state.counters["ns_per_item"] = 1e6 * state.counters["ms"] / kDraws;
}

template <class Shuffle> void shuffleBesideStandard(benchmark::State& state, const Shuffle& shuffle)
{
    std::vector<uint32_t> ours(static_cast<size_t>(state.range(0)));
    std::iota(ours.begin(), ours.end(), 0);
    std::vector<uint32_t> theirs = ours;
    std::mt19937 standard;
    CompareTimes(state, repeated([&] { shuffle(ours); }),
                 repeated([&] { std::shuffle(theirs.begin(), theirs.end(), standard); }), [] {});
    benchmark::DoNotOptimize(ours.data());
    benchmark::DoNotOptimize(theirs.data());
    state.counters["ns_per_item"] = 1e6 * state.counters["ms"] / kRepeats / static_cast<double>(state.range(0));
}

void shuffleByLength(benchmark::State& state)
{
    shuffleBesideStandard(state, [](std::vector<uint32_t>& values) { ShuffleRange(values.begin(), values.end()); });
}

void shuffleByGenerator(benchmark::State& state)
{
    shuffleBesideStandard(state, [random = std::make_shared<MersenneTwister>()](std::vector<uint32_t>& values) {
        ShuffleRange(values.begin(), values.end(), *random);
    });
}

// What every walk over the plant costs at least.
double walkOverAll(const Skeleton& skeleton)
{
    double sum = 0;
    SkeletonWalker walker(skeleton, true, WalkFilter::SkipThinRuns);
    while (walker.advance()) sum += skeleton.points[walker.vertex().point].position.z;
    for (const SkeletonConnector& connector : skeleton.connectors)
        sum += connector.attributes.scale * skeleton.points[connector.point].position.z;
    return sum;
}

// What any cloud of branches costs at least: a random turn for each sample.
double randomTurns(uint64_t count)
{
    MersenneTwister random;
    double sum = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const double angle = random.real() * 3;
        sum += std::sin(angle) * random.real() + std::cos(angle);
    }
    return sum;
}

// Warm: the list of samples is there from the round before.
void cloudBesideTurns(benchmark::State& state, bool shuffle)
{
    const ModelVariant plant = SyntheticPlant();
    const auto count = static_cast<uint64_t>(state.range(0));
    Array<CloudSample> samples;
    const auto sample = [&] {
        SamplePoints(plant, "", count, samples, shuffle, nullptr);
        return samples.back().position.z;
    };
    sample();
    CompareTimes(
        state, sample, [&] { return randomTurns(count); }, [] {});
    state.counters["ns_per_item"] = 1e6 * state.counters["ms"] / static_cast<double>(count);
}

// Keeps what it is told, as a viewport's buffers do.
class Buffers final : public DrawHelper {
public:
    struct Node {
        Vector3 position;
        Color3f colour;
        double radius;
    };

    bool BeginPoints(uint64_t count, double /*meanArea*/) override
    {
        points.clear();
        points.reserve(count);
        return true;
    }
    bool AddDrawPoint(const Vector3& position, const Color3f& colour) override
    {
        points.push_back({position, colour, 0});
        return true;
    }
    bool AddPolyline(std::span<const Vector3> positions, std::span<const Color3f> colours,
                     std::span<const double> radii) override
    {
        for (size_t i = 0; i < positions.size(); ++i) nodes.push_back({positions[i], colours[i], radii[i]});
        return true;
    }

    std::vector<Node> nodes, points;
};

void drawStreamBesideWalk(benchmark::State& state)
{
    const ModelVariant plant = SyntheticPlant();
    const std::map<int32_t, Color3f> colours{{0, {0.4F, 0.3F, 0.2F}}, {1, {0.1F, 0.5F, 0.1F}}};
    const auto fill = [&] {
        Buffers buffers;
        FillDrawHelper(buffers, plant,
                       {.season = "",
                        .colours = colours,
                        .defaultColour = {},
                        .shaded = true,
                        .maxSegments = 1000,
                        .maxPoints = 20000});
        return buffers.points.size() + buffers.nodes.size();
    };
    CompareTimes(
        state, fill, [&] { return walkOverAll(plant.skeleton); }, [] {});
}

void comparison(benchmark::internal::Benchmark* benchmark)
{
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(21);
}

void shuffles(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Apply(comparison)->Arg(20'000)->Arg(60'000)->Arg(100'000);
}

BENCHMARK(drawsBesideStandard)->Apply(comparison)->Name("random/draws_beside_standard");
BENCHMARK(shuffleByLength)->Apply(shuffles)->Name("random/shuffle_by_length_beside_standard");
BENCHMARK(shuffleByGenerator)->Apply(shuffles)->Name("random/shuffle_by_generator_beside_standard");
BENCHMARK_CAPTURE(cloudBesideTurns, , false)->Apply(comparison)->Arg(1'000'000)->Name("sampling/cloud_beside_turns");
BENCHMARK_CAPTURE(cloudBesideTurns, , true)
    ->Apply(comparison)
    ->Arg(1'000'000)
    ->Name("sampling/shuffled_cloud_beside_turns");
BENCHMARK(drawStreamBesideWalk)->Apply(comparison)->Name("drawing/stream_beside_walk");

} // namespace
} // namespace vdt::bench
