// The skeleton's own work beside the limit that it is measured against. Limit and work take turns, and `ratio` is the
// median of work / limit, so that other load on the machine falls out. The workloads under trap/ put everything on one
// point or one branch, at two sizes: their `ns_per_item` must not grow with the size.
#include "vdt/skeleton/frames.h"
#include "vdt/skeleton/skeleton.h"
#include "vdt/skeleton/walker.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <random>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using namespace vdt;

// What a reader holds before it builds the skeleton.
struct Lists {
    std::vector<Vector3> positions;
    std::vector<uint64_t> branchStarts{0}; // into vertexPoints, one more than branches
    std::vector<uint64_t> vertexPoints;
    std::vector<VertexAttributes> attributes;
    std::vector<uint64_t> connectorPoints;

    uint64_t branchCount() const { return branchStarts.size() - 1; }
    uint64_t vertexCount() const { return vertexPoints.size(); }
    uint64_t branchLength(uint64_t branch) const { return branchStarts[branch + 1] - branchStarts[branch]; }

    void endBranch() { branchStarts.push_back(vertexPoints.size()); }
    void addVertex(uint64_t point)
    {
        vertexPoints.push_back(point);
        attributes.push_back({.radius = 0.1, .tex_v = static_cast<float>(vertexPoints.size())});
    }
};

// Where a branch's parent stands in the list.
enum class TreeOrder {
    LevelByLevel, // eight branches on each, as a program lists them that grows or exports level by level
    Scattered,    // any branch before it
};

Lists largeTree(TreeOrder order)
{
    constexpr uint64_t kBranches = 39981, kVertices = 246754, kConnectors = 60000;
    std::mt19937 random(1);
    const auto real = [&] { return static_cast<double>(random()) / 4294967296.0 - 0.5; };

    Lists lists;
    lists.positions.push_back({0, 0, 0});
    for (uint64_t branch = 0; branch < kBranches; ++branch) {
        uint64_t point = 0;
        uint64_t segments = 64;
        if (branch > 0) {
            const uint64_t parent = order == TreeOrder::Scattered ? random() % branch : (branch - 1) / 8;
            const uint64_t place = 1 + (branch - 1) % 8 * (lists.branchLength(parent) - 1) / 8;
            point = lists.vertexPoints[lists.branchStarts[parent] + place];
            segments = (kVertices - lists.vertexCount()) / (kBranches - branch) - 1;
        }
        lists.addVertex(point);
        for (uint64_t i = 0; i < segments; ++i) {
            lists.positions.push_back(lists.positions[point] + Vector3{real(), real(), real() + 0.3});
            point = lists.positions.size() - 1;
            lists.addVertex(point);
        }
        lists.endBranch();
    }
    for (uint64_t i = 0; i < kConnectors; ++i)
        lists.connectorPoints.push_back(i * lists.positions.size() / kConnectors);
    return lists;
}

void build(Skeleton& skeleton, const Lists& lists)
{
    skeleton.ResizePoints(lists.positions.size());
    for (uint64_t i = 0; i < lists.positions.size(); ++i) {
        skeleton.points[i].position = lists.positions[i];
        skeleton.points[i].restPosition = lists.positions[i];
    }
    skeleton.ResizeBranches(lists.branchCount());
    skeleton.reserveVertices(lists.vertexCount());
    for (uint64_t branch = 0; branch < lists.branchCount(); ++branch)
        for (uint64_t i = lists.branchStarts[branch]; i < lists.branchStarts[branch + 1]; ++i)
            skeleton.InsertVertex(branch, lists.vertexPoints[i], lists.attributes[i], kNone);
    skeleton.ResizeConnectors(lists.connectorPoints.size());
    for (uint64_t i = 0; i < lists.connectorPoints.size(); ++i) skeleton.SetConnector(i, {}, lists.connectorPoints[i]);
}

enum class Memory { Warm, Fresh };

// Whether freed memory stays with the program or goes back to the system, to be asked for page by page again.
void use([[maybe_unused]] Memory memory)
{
#if defined(__GLIBC__)
    mallopt(M_MMAP_THRESHOLD, memory == Memory::Warm ? 1 << 30 : 128 << 10);
    mallopt(M_TRIM_THRESHOLD, memory == Memory::Warm ? 1 << 30 : 128 << 10);
#endif
}

template <class Task> double secondsFor(const Task& task)
{
    const std::clock_t start = std::clock(); // of the processor, not of the wall
    task();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

template <class Limit, class Work> void measureBeside(benchmark::State& state, const Limit& limit, const Work& work)
{
    std::vector<double> ratios;
    for (auto _ : state) {
        const double limitSeconds = secondsFor(limit);
        const double workSeconds = secondsFor(work);
        state.SetIterationTime(workSeconds);
        ratios.push_back(workSeconds / limitSeconds);
    }
    std::sort(ratios.begin(), ratios.end());
    state.counters["ratio"] = ratios[ratios.size() / 2];
}

// Copies the bytes of `count` vertices, into the same place each time or into fresh memory.
class VertexCopy {
public:
    VertexCopy(uint64_t vertexCount, Memory targetMemory) : from(vertexCount), target(vertexCount), memory(targetMemory)
    {
    }

    void operator()() const
    {
        std::unique_ptr<char[]> fresh;
        if (memory == Memory::Fresh) fresh = std::make_unique_for_overwrite<char[]>(bytes());
        void* const to = fresh ? static_cast<void*>(fresh.get()) : target.data();
        std::memcpy(to, from.data(), bytes());
        benchmark::DoNotOptimize(to);
        benchmark::ClobberMemory();
    }

private:
    size_t bytes() const { return from.size() * sizeof(SkeletonVertex); }

    std::vector<SkeletonVertex> from;
    mutable std::vector<SkeletonVertex> target;
    Memory memory;
};

// The arithmetic of ComputeOrientations without links to follow: branch after branch, positions side by side.
struct FlatBranches {
    std::vector<uint64_t> starts;
    std::vector<Vector3> positions; // of vertices
    std::vector<Quaternion> orients;

    explicit FlatBranches(const Lists& lists) : starts(lists.branchStarts), orients(lists.vertexCount())
    {
        for (const uint64_t point : lists.vertexPoints) positions.push_back(lists.positions[point]);
    }

    void computeOrientations()
    {
        Matrix frame = Matrix::Identity();
        for (uint64_t branch = 0; branch + 1 < starts.size(); ++branch) {
            for (uint64_t i = starts[branch]; i < starts[branch + 1]; ++i) {
                Vector3 tangent{0, 0, 0};
                if (i + 1 < starts[branch + 1]) tangent += Normalized(positions[i + 1] - positions[i]);
                if (i > starts[branch]) tangent += Normalized(positions[i] - positions[i - 1]);
                frame = AdvanceFrame(tangent, frame);
                orients[i] = ToQuaternion(frame);
            }
        }
    }
};

void buildBesideMemcpy(benchmark::State& state, TreeOrder order, Memory memory)
{
    const Lists lists = largeTree(order);
    use(memory);
    measureBeside(state, VertexCopy(lists.vertexCount(), memory), [&] {
        Skeleton skeleton;
        build(skeleton, lists);
    });
    use(Memory::Fresh);
}

void copyBesideBuild(benchmark::State& state)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    Skeleton original;
    build(original, lists);
    use(Memory::Warm);
    const auto buildAnother = [&] {
        Skeleton skeleton;
        build(skeleton, lists);
    };
    measureBeside(state, buildAnother, [&] { benchmark::DoNotOptimize(Skeleton(original).points.data()); });
    use(Memory::Fresh);
}

void orientationsBesideFlat(benchmark::State& state, TreeOrder order)
{
    const Lists lists = largeTree(order);
    Skeleton skeleton;
    build(skeleton, lists);
    FlatBranches flat(lists);
    measureBeside(
        state, [&] { flat.computeOrientations(); }, [&] { skeleton.ComputeOrientations(); });
}

void walkBesideMemcpy(benchmark::State& state, bool branchFirst)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    Skeleton skeleton;
    build(skeleton, lists);
    measureBeside(state, VertexCopy(lists.vertexCount(), Memory::Warm), [&] {
        double sum = 0;
        SkeletonWalker walker(skeleton, branchFirst, WalkFilter::SkipDeadSides);
        while (walker.advance()) sum += skeleton.points[walker.vertex().point].position.z;
        benchmark::DoNotOptimize(sum);
    });
}

void weights(benchmark::State& state)
{
    Skeleton skeleton;
    build(skeleton, largeTree(TreeOrder::LevelByLevel));
    for (auto _ : state) benchmark::DoNotOptimize(skeleton.ComputeWeights());
}

// `count` branches of two vertices on the middle of a trunk of three.
Lists manyOnOnePoint(uint64_t count)
{
    Lists lists;
    lists.positions = {
        {0, 0, 0},
        {0, 0, 1},
        {0, 0, 2}
    };
    for (const uint64_t point : {0, 1, 2}) lists.addVertex(point);
    lists.endBranch();
    for (uint64_t i = 0; i < count; ++i) {
        lists.positions.push_back({1, static_cast<double>(i), 1});
        lists.addVertex(1);
        lists.addVertex(lists.positions.size() - 1);
        lists.endBranch();
    }
    return lists;
}

Lists oneLongBranch(uint64_t count)
{
    Lists lists;
    for (uint64_t i = 0; i < count; ++i) {
        lists.positions.push_back({0, 0, static_cast<double>(i)});
        lists.addVertex(i);
    }
    lists.endBranch();
    return lists;
}

Lists connectorsOnOnePoint(uint64_t count)
{
    Lists lists = oneLongBranch(2);
    lists.connectorPoints.assign(count, 1);
    return lists;
}

std::vector<uint64_t> everyOther(uint64_t count)
{
    std::vector<uint64_t> indices;
    for (uint64_t i = 1; i < count; i += 2) indices.push_back(i);
    return indices;
}

using MakeLists = Lists (*)(uint64_t count);
using Edit = void (*)(Skeleton& skeleton);

// Times `edit` on a new copy each time; without one, the building itself.
void trap(benchmark::State& state, MakeLists make, Edit edit)
{
    const auto count = static_cast<uint64_t>(state.range(0));
    const Lists lists = make(count);
    Skeleton original;
    build(original, lists);
    double seconds = 0;
    for (auto _ : state) {
        Skeleton skeleton;
        if (edit) skeleton = original;
        const double once = secondsFor([&] { edit ? edit(skeleton) : build(skeleton, lists); });
        state.SetIterationTime(once);
        seconds += once;
    }
    state.counters["ns_per_item"] = seconds * 1e9 / static_cast<double>(count * state.iterations());
}

void computeOrientations(Skeleton& skeleton)
{
    skeleton.ComputeOrientations();
}
void removeEveryOtherBranch(Skeleton& skeleton)
{
    skeleton.RemoveBranches(everyOther(skeleton.branches.size()));
}
void removeEveryOtherConnector(Skeleton& skeleton)
{
    skeleton.RemoveConnectors(everyOther(skeleton.connectors.size()));
}
void removeThePoint(Skeleton& skeleton)
{
    skeleton.RemovePoint(1);
}

const bool registered = [] {
    const auto add = [](const char* name, auto function, auto... arguments) {
        return benchmark::RegisterBenchmark(name, function, arguments...)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add("skeleton/build_to_memcpy", buildBesideMemcpy, TreeOrder::LevelByLevel, Memory::Warm);
    add("skeleton/build_to_memcpy/fresh_memory", buildBesideMemcpy, TreeOrder::LevelByLevel, Memory::Fresh);
    add("skeleton/build_to_memcpy/scattered", buildBesideMemcpy, TreeOrder::Scattered, Memory::Warm);
    add("skeleton/copy_to_build", copyBesideBuild);
    add("skeleton/orientations_to_flat", orientationsBesideFlat, TreeOrder::LevelByLevel);
    add("skeleton/orientations_to_flat/scattered", orientationsBesideFlat, TreeOrder::Scattered);
    add("skeleton/walk_to_memcpy", walkBesideMemcpy, false);
    add("skeleton/walk_to_memcpy/branch_first", walkBesideMemcpy, true);
    benchmark::RegisterBenchmark("skeleton/weights", weights)->Unit(benchmark::kMillisecond);

    const auto addTrap = [&](const char* name, MakeLists make, Edit edit) {
        add(name, trap, make, edit)->Arg(20000)->Arg(80000);
    };
    addTrap("skeleton/trap/build_branches_on_one_point", manyOnOnePoint, nullptr);
    addTrap("skeleton/trap/build_one_long_branch", oneLongBranch, nullptr);
    addTrap("skeleton/trap/build_connectors_on_one_point", connectorsOnOnePoint, nullptr);
    addTrap("skeleton/trap/orientations_on_one_point", manyOnOnePoint, computeOrientations);
    addTrap("skeleton/trap/orientations_of_one_long_branch", oneLongBranch, computeOrientations);
    addTrap("skeleton/trap/remove_branches_on_one_point", manyOnOnePoint, removeEveryOtherBranch);
    addTrap("skeleton/trap/remove_the_point", manyOnOnePoint, removeThePoint);
    addTrap("skeleton/trap/remove_connectors_on_one_point", connectorsOnOnePoint, removeEveryOtherConnector);
    return true;
}();

} // namespace
