// Meshes: each stage beside what the machine allows, copying the bytes of its result, or beside a peer.
#include "../tests/support/literal_topology.h"
#include "ratio.h"
#include "synthetic_plant.h"
#include "vdt/generate/control_mesh.h"
#include "vdt/generate/foliage.h"
#include "vdt/generate/plant_mesh.h"
#include "vdt/mesh/subdivision.h"

#ifdef VERDANTH_BENCH_PEERS
#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>
#include <opensubdiv/far/topologyRefinerFactory.h>
#endif

#include <cstring>
#include <memory>

namespace vdt::bench {
namespace {

const ModelVariant& largePlant()
{
    static const ModelVariant plant = SyntheticPlant();
    return plant;
}

struct Tubes {
    Mesh mesh;
    std::vector<int32_t> levels;

    void generate(const Skeleton& skeleton, int32_t level)
    {
        NullMessageHandler messages;
        GenerateControlMesh({skeleton, {}, mesh, level, levels, nullptr, messages});
    }
};

const Tubes& largeTubes()
{
    static const Tubes tubes = [] {
        Tubes made;
        made.generate(largePlant().skeleton, 1);
        return made;
    }();
    return tubes;
}

// 200,020 quads of tubes, caps left out.
const Mesh& tubeQuads()
{
    static const Mesh mesh = [] {
        Mesh made;
        constexpr uint64_t kTubes = 274, kSegments = 182;
        constexpr uint64_t kSpare = 200020 / 4 - kTubes * kSegments;
        for (uint64_t tube = 0; tube < kTubes; ++tube) {
            const uint64_t segments = kSegments + (tube == 0 ? kSpare : 0), base = made.positions.size();
            for (uint64_t point = 0; point < 4 * (segments + 1); ++point) {
                const double angle = kPi / 2 * static_cast<double>(point % 4);
                const double along = static_cast<double>(point / 4), radius = 2 - along / static_cast<double>(segments);
                made.AddPoint(
                    {10.0 * static_cast<double>(tube) + radius * std::cos(angle), radius * std::sin(angle), along},
                    {0, 0, 0});
            }
            for (uint64_t quad = 0; quad < 4 * segments; ++quad) {
                const uint64_t a = base + quad, b = quad % 4 == 3 ? a - 3 : a + 1;
                const float u = 0.25F * static_cast<float>(quad % 4), v = static_cast<float>(quad / 4);
                AddQuad(made, {a, b, b + 4, a + 4}, {{u, v}, {u + 0.25F, v}, {u + 0.25F, v + 1}, {u, v + 1}}, 1);
            }
        }
        return made;
    }();
    return mesh;
}

// Every array of a mesh, for copying its bytes.
using Bytes = std::vector<std::pair<const void*, size_t>>;

template <class List> void addBytes(Bytes& bytes, const List& list)
{
    bytes.emplace_back(list.data(), list.size() * sizeof(list[0]));
}

Bytes bytesOf(const Mesh& mesh)
{
    Bytes bytes;
    addBytes(bytes, mesh.positions);
    addBytes(bytes, mesh.normals);
    addBytes(bytes, mesh.coordinates);
    addBytes(bytes, mesh.polygonEnds);
    addBytes(bytes, mesh.polygonVertices);
    addBytes(bytes, mesh.polygonCoordinates);
    addBytes(bytes, mesh.materials);
    return bytes;
}

std::vector<std::unique_ptr<char[]>> makeRoom(const Bytes& bytes)
{
    std::vector<std::unique_ptr<char[]>> room;
    for (const auto& [data, size] : bytes) room.emplace_back(new char[size]);
    return room;
}

void copyInto(const std::vector<std::unique_ptr<char[]>>& room, const Bytes& bytes)
{
    for (size_t list = 0; list < bytes.size(); ++list)
        std::memcpy(room[list].get(), bytes[list].first, bytes[list].second);
}

auto copiedFresh(const Bytes& bytes)
{
    return [&bytes] {
        auto room = makeRoom(bytes);
        copyInto(room, bytes);
        return room;
    };
}

void controlMeshFresh(benchmark::State& state)
{
    const Skeleton& skeleton = largePlant().skeleton;
    Bytes bytes = bytesOf(largeTubes().mesh);
    addBytes(bytes, largeTubes().levels);
    const auto ours = [&] {
        auto tubes = std::make_unique<Tubes>();
        tubes->generate(skeleton, 1);
        return tubes;
    };
    CompareTimes(state, ours, copiedFresh(bytes), ForgetFreeMemory);
    state.counters["points"] = static_cast<double>(largeTubes().mesh.positions.size());
    state.counters["quads"] = static_cast<double>(largeTubes().mesh.polygonEnds.size());
}

void controlMeshWarm(benchmark::State& state)
{
    const Skeleton& skeleton = largePlant().skeleton;
    Bytes bytes = bytesOf(largeTubes().mesh);
    addBytes(bytes, largeTubes().levels);
    const auto room = makeRoom(bytes);
    copyInto(room, bytes);
    Tubes tubes;
    tubes.generate(skeleton, 1);
    const auto ours = [&] {
        tubes.mesh.clear();
        tubes.generate(skeleton, 1);
        return tubes.mesh.positions.data();
    };
    const auto copied = [&] {
        copyInto(room, bytes);
        return room.front().get();
    };
    CompareTimes(state, ours, copied, [] {});
}

void topologyBesideMap(benchmark::State& state)
{
    const Mesh& mesh = largeTubes().mesh;
    NullMessageHandler messages;
    Mesh bare = mesh;
    const auto build = [&] {
        bare.topologyValid = false;
        bare.pointLinks = {};
        bare.cornerEdges = {};
        bare.edges = {};
        bare.BuildTopology(messages);
        return bare.edges.data();
    };
    CompareTimes(
        state, build, [&] { return std::make_unique<test::LiteralTopology>(mesh); }, ForgetFreeMemory);
    if (!std::ranges::equal(bare.edges, test::LiteralTopology(mesh).edges))
        state.SkipWithError("the edge lists differ");
}

// Twenty thousand and forty thousand triangles around one point: twice the work, twice the time.
void topologyOfFan(benchmark::State& state)
{
    const auto count = static_cast<uint64_t>(state.range(0));
    Mesh fan;
    fan.positions.resize(count + 1);
    for (uint64_t i = 0; i < count; ++i) AddTriangle(fan, {0, 1 + i, 1 + (i + 1) % count}, {}, 0);
    NullMessageHandler messages;
    for (auto _ : state) {
        fan.topologyValid = false;
        fan.BuildTopology(messages);
    }
    state.SetComplexityN(state.range(0));
}

std::unique_ptr<Mesh> subdivided(const Mesh& mesh, int32_t level)
{
    auto result = std::make_unique<Mesh>();
    NullMessageHandler messages;
    Subdivide(mesh, *result, messages, std::span(&level, 1));
    return result;
}

void subdivideBesideCopy(benchmark::State& state)
{
    const auto level = static_cast<int32_t>(state.range(0));
    const std::unique_ptr<Mesh> result = subdivided(tubeQuads(), level);
    const Bytes bytes = bytesOf(*result);
    CompareTimes(
        state, [&] { return subdivided(tubeQuads(), level); }, copiedFresh(bytes), ForgetFreeMemory);
}

// The trunk and the limbs at level 1 among all the twigs at level 0, as plants are shown by default.
void subdivideByBranching(benchmark::State& state)
{
    Tubes tubes;
    tubes.generate(largePlant().skeleton, 2);
    const auto ours = [&] {
        auto result = std::make_unique<Mesh>();
        NullMessageHandler messages;
        Subdivide(tubes.mesh, *result, messages, tubes.levels);
        return result;
    };
    const std::unique_ptr<Mesh> result = ours();
    const Bytes bytes = bytesOf(*result);
    CompareTimes(state, ours, copiedFresh(bytes), ForgetFreeMemory);
}

#ifdef VERDANTH_BENCH_PEERS
namespace far = OpenSubdiv::Far;

template <size_t size, class Value> struct RefinedValue {
    Value values[size];

    void Clear(void* = nullptr) { std::fill_n(values, size, Value{0}); }
    void AddWithWeight(const RefinedValue& other, Value weight)
    {
        for (size_t i = 0; i < size; ++i) values[i] += weight * other.values[i];
    }
};

struct RefinedMesh {
    std::unique_ptr<far::TopologyRefiner> refiner;
    std::vector<RefinedValue<3, double>> positions;
    std::vector<RefinedValue<2, float>> coordinates;
};

// From a mesh's tables in the peer's own widths to positions and texture coordinates of the deepest level.
class PeerSubdivision {
public:
    explicit PeerSubdivision(const Mesh& mesh)
        : sizes(mesh.polygonEnds.size(), 4),
          vertices(mesh.polygonVertices.begin(), mesh.polygonVertices.end()),
          coordinateIndices(mesh.polygonCoordinates.begin(), mesh.polygonCoordinates.end())
    {
        for (const Vector3& p : mesh.positions) positions.push_back({{p.x, p.y, p.z}});
        for (const Vector2f& uv : mesh.coordinates) coordinates.push_back({{uv.u, uv.v}});
        channel.numValues = static_cast<int>(coordinates.size());
        channel.valueIndices = coordinateIndices.data();
        descriptor.numVertices = static_cast<int>(positions.size());
        descriptor.numFaces = static_cast<int>(sizes.size());
        descriptor.numVertsPerFace = sizes.data();
        descriptor.vertIndicesPerFace = vertices.data();
        descriptor.numFVarChannels = 1;
        descriptor.fvarChannels = &channel;
    }

    std::unique_ptr<RefinedMesh> run(int level) const
    {
        using Factory = far::TopologyRefinerFactory<far::TopologyDescriptor>;
        OpenSubdiv::Sdc::Options options;
        options.SetVtxBoundaryInterpolation(OpenSubdiv::Sdc::Options::VTX_BOUNDARY_EDGE_ONLY);
        options.SetFVarLinearInterpolation(OpenSubdiv::Sdc::Options::FVAR_LINEAR_ALL);
        auto result = std::make_unique<RefinedMesh>();
        result->refiner.reset(Factory::Create(descriptor, Factory::Options(OpenSubdiv::Sdc::SCHEME_CATMARK, options)));
        result->refiner->RefineUniform(far::TopologyRefiner::UniformOptions(level));
        const far::PrimvarRefinerReal<double> positionRefiner(*result->refiner);
        const far::PrimvarRefinerReal<float> coordinateRefiner(*result->refiner);
        const std::vector<RefinedValue<3, double>>* source = &positions;
        const std::vector<RefinedValue<2, float>>* coordinateSource = &coordinates;
        for (int depth = 1; depth <= level; ++depth) {
            const far::TopologyLevel& refined = result->refiner->GetLevel(depth);
            std::vector<RefinedValue<3, double>> next(static_cast<size_t>(refined.GetNumVertices()));
            std::vector<RefinedValue<2, float>> nextCoordinates(static_cast<size_t>(refined.GetNumFVarValues()));
            positionRefiner.Interpolate(depth, *source, next);
            coordinateRefiner.InterpolateFaceVarying(depth, *coordinateSource, nextCoordinates);
            result->positions = std::move(next);
            result->coordinates = std::move(nextCoordinates);
            source = &result->positions;
            coordinateSource = &result->coordinates;
        }
        return result;
    }

private:
    std::vector<int> sizes, vertices, coordinateIndices;
    std::vector<RefinedValue<3, double>> positions;
    std::vector<RefinedValue<2, float>> coordinates;
    far::TopologyDescriptor::FVarChannel channel;
    far::TopologyDescriptor descriptor;
};

void subdivideBesidePeer(benchmark::State& state)
{
    const auto level = static_cast<int32_t>(state.range(0));
    const PeerSubdivision peer(tubeQuads());
    CompareTimes(
        state, [&] { return subdivided(tubeQuads(), level); }, [&] { return peer.run(level); }, [] {});
    const auto refined = static_cast<size_t>(peer.run(level)->refiner->GetLevel(level).GetNumFaces());
    if (refined != subdivided(tubeQuads(), level)->polygonEnds.size()) state.SkipWithError("the polygon counts differ");
}
#endif

void normalsBesideCopy(benchmark::State& state)
{
    Mesh mesh = largeTubes().mesh;
    Bytes bytes;
    addBytes(bytes, mesh.positions);
    addBytes(bytes, mesh.normals);
    addBytes(bytes, mesh.polygonVertices);
    const auto room = makeRoom(bytes);
    const auto copied = [&] {
        copyInto(room, bytes);
        return room.front().get();
    };
    CompareTimes(
        state, [&] { return mesh.ComputeNormals(); }, copied,
        [&] {
            std::fill(mesh.normals.begin(), mesh.normals.end(), Vector3{0, 0, 0});
        });
}

std::vector<VariantMesh> twentyPointLeaf()
{
    std::vector<VariantMesh> foliage;
    for (int32_t group = 0; group < 3; ++group)
        foliage.emplace_back(group, "", std::make_unique<Mesh>(SyntheticLeaf(4, 3))); // 20 points, 12 quads
    return foliage;
}

std::unique_ptr<Mesh> placed(std::span<const VariantMesh> foliage)
{
    auto result = std::make_unique<Mesh>();
    PlaceFoliage(largePlant().skeleton, foliage, "", *result);
    return result;
}

void foliageFresh(benchmark::State& state)
{
    const std::vector<VariantMesh> foliage = twentyPointLeaf();
    const std::unique_ptr<Mesh> result = placed(foliage);
    const Bytes bytes = bytesOf(*result);
    CompareTimes(
        state, [&] { return placed(foliage); }, copiedFresh(bytes), ForgetFreeMemory);
}

void wholePlantFresh(benchmark::State& state)
{
    const auto built = [&] {
        auto result = std::make_unique<Mesh>();
        PlantMeshOptions options;
        options.subdivisionLevel = static_cast<int32_t>(state.range(0));
        options.uniform = state.range(1) != 0;
        NullMessageHandler messages;
        BuildPlantMesh(largePlant(), options, *result, messages);
        return result;
    };
    const std::unique_ptr<Mesh> result = built();
    const Bytes bytes = bytesOf(*result);
    CompareTimes(state, built, copiedFresh(bytes), ForgetFreeMemory);
}

constexpr int kRounds = 11;

#define VDT_COMPARISON(function)                                                                                       \
    BENCHMARK(function)->Iterations(kRounds)->UseManualTime()->Unit(benchmark::kMillisecond)

VDT_COMPARISON(controlMeshFresh)->Name("control_mesh/fresh_beside_copy");
VDT_COMPARISON(controlMeshWarm)->Name("control_mesh/warm_beside_copy");
VDT_COMPARISON(topologyBesideMap)->Name("topology/beside_ordered_map");
BENCHMARK(topologyOfFan)->Name("topology/fan")->Arg(20000)->Arg(40000)->Unit(benchmark::kMillisecond);
VDT_COMPARISON(subdivideBesideCopy)->Name("subdivide/beside_copy")->Arg(1)->Arg(2);
VDT_COMPARISON(subdivideByBranching)->Name("subdivide/by_branching_beside_copy");
#ifdef VERDANTH_BENCH_PEERS
VDT_COMPARISON(subdivideBesidePeer)->Name("subdivide/beside_opensubdiv")->Arg(1)->Arg(2);
#endif
VDT_COMPARISON(normalsBesideCopy)->Name("normals/beside_copy");
VDT_COMPARISON(foliageFresh)->Name("foliage/fresh_beside_copy");
VDT_COMPARISON(wholePlantFresh)->Name("plant_mesh/fresh_beside_copy")->Args({1, 0})->Args({1, 1})->Args({0, 0});

} // namespace
} // namespace vdt::bench
