// The skeleton's own work beside copying the bytes of its vertices, or beside the same arithmetic on flat arrays. The
// workloads named trap put everything on one point or one branch, at two sizes: their ns_per_item must not grow by
// the size.
#include "ratio.h"
#include "synthetic_plant.h"
#include "vdt/skeleton/frames.h"
#include "vdt/skeleton/reduce.h"
#include "vdt/skeleton/walker.h"

#include <cstring>
#include <memory>
#include <numeric>
#include <random>

namespace vdt::bench {
namespace {

// What a reader holds before it builds a skeleton.
struct Lists {
    std::vector<Vector3> positions;
    std::vector<uint64_t> branchStarts{0}; // into vertexPoints, one more than branches
    std::vector<uint64_t> vertexPoints;
    std::vector<VertexAttributes> attributes;
    std::vector<uint64_t> connectorPoints;

    uint64_t branchCount() const { return branchStarts.size() - 1; }
    uint64_t vertexCount() const { return vertexPoints.size(); }

    void addVertex(uint64_t point, const VertexAttributes& values = {})
    {
        vertexPoints.push_back(point);
        attributes.push_back(values);
    }
    void endBranch() { branchStarts.push_back(vertexPoints.size()); }
};

enum class TreeOrder {
    LevelByLevel, // branches follow each other as their parents do
    Scattered,    // a parent stands anywhere in the list
};

Lists largeTree(TreeOrder order)
{
    const Skeleton skeleton = SyntheticSkeleton();
    std::vector<uint64_t> branches(skeleton.branches.size());
    std::iota(branches.begin(), branches.end(), 0);
    std::mt19937 random(1);
    for (uint64_t i = 2; order == TreeOrder::Scattered && i < branches.size(); ++i)
        std::swap(branches[i], branches[1 + random() % i]);

    Lists lists;
    for (const SkeletonPoint& point : skeleton.points) lists.positions.push_back(point.position);
    for (const uint64_t branch : branches) {
        for (const SkeletonVertex* v = skeleton.branches[branch].firstVertex; v; v = v->next)
            lists.addVertex(v->point, v->attributes);
        lists.endBranch();
    }
    for (const SkeletonConnector& connector : skeleton.connectors) lists.connectorPoints.push_back(connector.point);
    return lists;
}

Skeleton build(const Lists& lists)
{
    Skeleton skeleton;
    skeleton.ResizePoints(lists.positions.size());
    for (uint64_t i = 0; i < lists.positions.size(); ++i)
        skeleton.points[i].position = skeleton.points[i].restPosition = lists.positions[i];
    skeleton.ResizeBranches(lists.branchCount());
    skeleton.reserveVertices(lists.vertexCount());
    for (uint64_t branch = 0; branch < lists.branchCount(); ++branch)
        for (uint64_t i = lists.branchStarts[branch]; i < lists.branchStarts[branch + 1]; ++i)
            skeleton.InsertVertex(branch, lists.vertexPoints[i], lists.attributes[i], kNone);
    skeleton.ResizeConnectors(lists.connectorPoints.size());
    for (uint64_t i = 0; i < lists.connectorPoints.size(); ++i) skeleton.SetConnector(i, {}, lists.connectorPoints[i]);
    return skeleton;
}

// While it lives, memory that was in use once stays with the program, so that work on warm memory can be measured.
class KeepFreeMemory {
public:
    KeepFreeMemory() { setThreshold(1 << 30); }
    ~KeepFreeMemory() { setThreshold(128 << 10); }
    KeepFreeMemory(const KeepFreeMemory&) = delete;
    KeepFreeMemory& operator=(const KeepFreeMemory&) = delete;

private:
    static void setThreshold([[maybe_unused]] int bytes)
    {
#ifdef __GLIBC__
        mallopt(M_MMAP_THRESHOLD, bytes);
        mallopt(M_TRIM_THRESHOLD, bytes);
#endif
    }
};

// Copies as many bytes as `count` vertices have into newly allocated memory, warm or fresh as the heap has it.
auto copiedVertices(uint64_t count)
{
    return [from = std::vector<SkeletonVertex>(count)] {
        const size_t bytes = from.size() * sizeof(SkeletonVertex);
        auto to = std::make_unique_for_overwrite<char[]>(bytes);
        std::memcpy(to.get(), from.data(), bytes);
        benchmark::ClobberMemory();
        return to;
    };
}

// The arithmetic of ComputeOrientations without links to follow: branch after branch, positions side by side.
class FlatBranches {
public:
    explicit FlatBranches(const Lists& lists) : starts(lists.branchStarts), orients(lists.vertexCount())
    {
        for (const uint64_t point : lists.vertexPoints) positions.push_back(lists.positions[point]);
    }

    bool computeOrientations()
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
        return true;
    }

private:
    std::vector<uint64_t> starts;
    std::vector<Vector3> positions; // of vertices
    std::vector<Quaternion> orients;
};

void buildBesideCopy(benchmark::State& state, TreeOrder order)
{
    const Lists lists = largeTree(order);
    const KeepFreeMemory warm;
    CompareTimes(
        state, [&] { return build(lists); }, copiedVertices(lists.vertexCount()), [] {});
}

void freshBuildBesideCopy(benchmark::State& state)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    CompareTimes(
        state, [&] { return build(lists); }, copiedVertices(lists.vertexCount()), ForgetFreeMemory);
}

void assignBesideBuild(benchmark::State& state)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    const Skeleton original = build(lists);
    const KeepFreeMemory warm;
    CompareTimes(
        state, [&] { return Skeleton(original); }, [&] { return build(lists); }, [] {});
}

void reduceBesideBuild(benchmark::State& state, ReductionParameters parameters)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    const Skeleton original = build(lists);
    const ModelVariant plant = SyntheticPlant(0.001); // for its leaves
    const KeepFreeMemory warm;
    const auto reduced = [&] {
        Skeleton result;
        original.Reduce(plant.meshes, "", result, parameters);
        return result;
    };
    CompareTimes(
        state, reduced, [&] { return build(lists); }, [] {});
}

void orientationsBesideFlat(benchmark::State& state, TreeOrder order)
{
    const Lists lists = largeTree(order);
    Skeleton skeleton = build(lists);
    FlatBranches flat(lists);
    CompareTimes(
        state, [&] { return skeleton.ComputeOrientations(); }, [&] { return flat.computeOrientations(); }, [] {});
}

void walkBesideCopy(benchmark::State& state, bool branchFirst)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    const Skeleton skeleton = build(lists);
    const auto walk = [&] {
        double sum = 0;
        SkeletonWalker walker(skeleton, branchFirst, WalkFilter::SkipDeadSides);
        while (walker.advance()) sum += skeleton.points[walker.vertex().point].position.z;
        return sum;
    };
    const KeepFreeMemory warm;
    CompareTimes(state, walk, copiedVertices(lists.vertexCount()), [] {});
}

void weightsBesideCopy(benchmark::State& state)
{
    const Lists lists = largeTree(TreeOrder::LevelByLevel);
    Skeleton skeleton = build(lists);
    const KeepFreeMemory warm;
    CompareTimes(
        state, [&] { return skeleton.ComputeWeights(); }, copiedVertices(lists.vertexCount()), [] {});
}

// `count` branches of two vertices on the middle of a trunk of three.
Lists branchesOnOnePoint(uint64_t count)
{
    Lists lists;
    for (uint64_t point = 0; point < 3; ++point) {
        lists.positions.push_back({0, 0, static_cast<double>(point)});
        lists.addVertex(point);
    }
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

// A side branch on each vertex of one long branch.
Lists combOfBranches(uint64_t count)
{
    Lists lists = oneLongBranch(count);
    for (uint64_t i = 1; i < count; ++i) {
        lists.positions.push_back({1, 0, static_cast<double>(i)});
        lists.addVertex(i);
        lists.addVertex(lists.positions.size() - 1);
        lists.endBranch();
    }
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
using Edit = bool (*)(Skeleton& skeleton);

bool removeEveryOtherBranch(Skeleton& skeleton)
{
    return skeleton.RemoveBranches(everyOther(skeleton.branches.size()));
}

bool removeEveryOtherConnector(Skeleton& skeleton)
{
    return skeleton.RemoveConnectors(everyOther(skeleton.connectors.size()));
}

void reportTrap(benchmark::State& state, std::vector<double> times)
{
    state.counters["ns_per_item"] = 1e9 * Median(std::move(times)) / static_cast<double>(state.range(0));
}

void trapOfBuilding(benchmark::State& state, MakeLists make)
{
    const Lists lists = make(static_cast<uint64_t>(state.range(0)));
    const KeepFreeMemory warm;
    std::vector<double> times;
    for (auto _ : state) {
        times.push_back(Timed([&] { return build(lists); }));
        state.SetIterationTime(times.back());
    }
    reportTrap(state, std::move(times));
}

void trapOfEditing(benchmark::State& state, MakeLists make, Edit edit)
{
    const Skeleton original = build(make(static_cast<uint64_t>(state.range(0))));
    const KeepFreeMemory warm;
    std::vector<double> times;
    for (auto _ : state) {
        Skeleton skeleton(original);
        times.push_back(Timed([&] { return edit(skeleton); }));
        state.SetIterationTime(times.back());
    }
    reportTrap(state, std::move(times));
}

bool computeOrientations(Skeleton& skeleton)
{
    return skeleton.ComputeOrientations();
}
bool reduceToTrunk(Skeleton& skeleton)
{
    Skeleton result;
    skeleton.Reduce({}, "", result, {.maxLevel = 1});
    return !result.isEmpty();
}
bool cutInHalf(Skeleton& skeleton) // the thick half of a long branch, and what hangs there
{
    uint64_t place = 0;
    for (SkeletonVertex* v = skeleton.branches.front().firstVertex; v; v = v->next)
        v->attributes.radius = ++place > skeleton.branches.front().vertexCount / 2 ? 0.1 : 1;
    Skeleton result;
    skeleton.Reduce({}, "", result, {.minRadius = 0.5F});
    return !result.isEmpty();
}
bool removeFullPoint(Skeleton& skeleton)
{
    return skeleton.RemovePoint(1);
}

void comparison(benchmark::internal::Benchmark* benchmark)
{
    benchmark->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(21);
}

void trap(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Apply(comparison)->Arg(20000)->Arg(80000);
}

BENCHMARK_CAPTURE(buildBesideCopy, , TreeOrder::LevelByLevel)->Apply(comparison)->Name("skeleton/build_beside_copy");
BENCHMARK_CAPTURE(buildBesideCopy, , TreeOrder::Scattered)
    ->Apply(comparison)
    ->Name("skeleton/build_scattered_beside_copy");
BENCHMARK(freshBuildBesideCopy)->Apply(comparison)->Name("skeleton/build_fresh_beside_copy");
BENCHMARK(assignBesideBuild)->Apply(comparison)->Name("skeleton/assign_beside_build");
BENCHMARK_CAPTURE(orientationsBesideFlat, , TreeOrder::LevelByLevel)
    ->Apply(comparison)
    ->Name("skeleton/orientations_beside_flat");
BENCHMARK_CAPTURE(orientationsBesideFlat, , TreeOrder::Scattered)
    ->Apply(comparison)
    ->Name("skeleton/orientations_scattered_beside_flat");
BENCHMARK_CAPTURE(walkBesideCopy, , false)->Apply(comparison)->Name("skeleton/walk_beside_copy");
BENCHMARK_CAPTURE(walkBesideCopy, , true)->Apply(comparison)->Name("skeleton/walk_branch_first_beside_copy");
BENCHMARK_CAPTURE(reduceBesideBuild, , ReductionParameters())
    ->Apply(comparison)
    ->Name("skeleton/reduce_nothing_beside_build");
BENCHMARK_CAPTURE(reduceBesideBuild, , ReductionParameters{3, 0, 0.5F, 1})
    ->Apply(comparison)
    ->Name("skeleton/reduce_levels_and_foliage_beside_build");
BENCHMARK_CAPTURE(reduceBesideBuild, , ReductionParameters{ReductionParameters::kAllLevels, 0.1F, 1, 0.9F})
    ->Apply(comparison)
    ->Name("skeleton/reduce_radius_and_thinning_beside_build");
BENCHMARK(weightsBesideCopy)->Apply(comparison)->Name("skeleton/weights_beside_copy");

BENCHMARK_CAPTURE(trapOfBuilding, , branchesOnOnePoint)->Apply(trap)->Name("skeleton/trap/build_branches_on_one_point");
BENCHMARK_CAPTURE(trapOfBuilding, , oneLongBranch)->Apply(trap)->Name("skeleton/trap/build_one_long_branch");
BENCHMARK_CAPTURE(trapOfBuilding, , connectorsOnOnePoint)
    ->Apply(trap)
    ->Name("skeleton/trap/build_connectors_on_one_point");
BENCHMARK_CAPTURE(trapOfEditing, , branchesOnOnePoint, computeOrientations)
    ->Apply(trap)
    ->Name("skeleton/trap/orientations_on_one_point");
BENCHMARK_CAPTURE(trapOfEditing, , oneLongBranch, computeOrientations)
    ->Apply(trap)
    ->Name("skeleton/trap/orientations_of_one_long_branch");
BENCHMARK_CAPTURE(trapOfEditing, , branchesOnOnePoint, reduceToTrunk)
    ->Apply(trap)
    ->Name("skeleton/trap/reduce_branches_on_one_point");
BENCHMARK_CAPTURE(trapOfEditing, , combOfBranches, cutInHalf)
    ->Apply(trap)
    ->Name("skeleton/trap/reduce_comb_of_branches");
BENCHMARK_CAPTURE(trapOfEditing, , branchesOnOnePoint, removeEveryOtherBranch)
    ->Apply(trap)
    ->Name("skeleton/trap/remove_branches_on_one_point");
BENCHMARK_CAPTURE(trapOfEditing, , branchesOnOnePoint, removeFullPoint)
    ->Apply(trap)
    ->Name("skeleton/trap/remove_full_point");
BENCHMARK_CAPTURE(trapOfEditing, , connectorsOnOnePoint, removeEveryOtherConnector)
    ->Apply(trap)
    ->Name("skeleton/trap/remove_connectors_on_one_point");

} // namespace
} // namespace vdt::bench
