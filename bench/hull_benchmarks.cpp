// Convex hulls beside two libraries that make nothing else, and the inside test beside its plain form.
#include "ratio.h"
#include "vdt/math/mersenne_twister.h"
#include "vdt/mesh/convex_hull.h"
#include "vdt/mesh/mesh.h"

#ifdef VERDANTH_BENCH_PEERS
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/convex_hull_3.h>
extern "C" {
#include <libqhull_r/qhull_ra.h>
}
#endif

#include <memory>

namespace vdt::bench {
namespace {

// Points in an ellipsoid as large as a crown, in centimetres, or on its shell.
std::vector<Vector3> ellipsoid(size_t count, bool onShell)
{
    MersenneTwister random;
    std::vector<Vector3> points;
    while (points.size() < count) {
        const Vector3 p = Vector3{random.real(), random.real(), random.real()} * 2 - Vector3{1, 1, 1};
        const double length = Length(p);
        if (length > 1 || length < 1e-3) continue;
        const Vector3 q = onShell ? p / length : p;
        points.push_back({400 * q.x, 600 * q.y, 400 * q.z});
    }
    return points;
}

std::unique_ptr<Mesh> hullOf(const std::vector<Vector3>& points)
{
    auto hull = std::make_unique<Mesh>();
    BuildConvexHull(points, *hull);
    return hull;
}

#ifdef VERDANTH_BENCH_PEERS
// Triangulated output, as ours is.
class QhullHull {
public:
    explicit QhullHull(const std::vector<Vector3>& points) // lent, and only read
    {
        qh_zero(&qhull, stderr);
        char command[] = "qhull Qt";
        qh_new_qhull(&qhull, 3, static_cast<int>(points.size()), const_cast<double*>(&points[0].x), 0, command, nullptr,
                     stderr);
    }
    QhullHull(const QhullHull&) = delete;
    QhullHull& operator=(const QhullHull&) = delete;
    ~QhullHull()
    {
        int blocks = 0, bytes = 0;
        qh_freeqhull(&qhull, !qh_ALL);
        qh_memfreeshort(&qhull, &blocks, &bytes);
    }

    size_t triangleCount() const { return static_cast<size_t>(qhull.num_facets); }

private:
    qhT qhull;
};

void hullBesideQhull(benchmark::State& state)
{
    const std::vector<Vector3> points = ellipsoid(static_cast<size_t>(state.range(0)), state.range(1) != 0);
    CompareTimes(
        state, [&] { return hullOf(points); }, [&] { return std::make_unique<QhullHull>(points); }, [] {});
    if (hullOf(points)->polygonEnds.size() != QhullHull(points).triangleCount())
        state.SkipWithError("the triangle counts differ");
}

void hullBesideCgal(benchmark::State& state)
{
    using Point = CGAL::Exact_predicates_inexact_constructions_kernel::Point_3;
    using Surface = CGAL::Surface_mesh<Point>;
    const std::vector<Vector3> points = ellipsoid(static_cast<size_t>(state.range(0)), state.range(1) != 0);
    std::vector<Point> peerPoints;
    for (const Vector3& p : points) peerPoints.emplace_back(p.x, p.y, p.z);
    const auto peer = [&] {
        auto surface = std::make_unique<Surface>();
        CGAL::convex_hull_3(peerPoints.begin(), peerPoints.end(), *surface);
        return surface;
    };
    CompareTimes(
        state, [&] { return hullOf(points); }, peer, [] {});
    if (hullOf(points)->polygonEnds.size() != peer()->number_of_faces())
        state.SkipWithError("the triangle counts differ");
}
#endif

// Rounding in the flat parts of such a cloud calls for faces until their number is bounded.
void hullOfRoundedShell(benchmark::State& state)
{
    std::vector<Vector3> points = ellipsoid(static_cast<size_t>(state.range(0)), true);
    for (Vector3& p : points) p = 4 * Vector3{std::round(p.x / 4), std::round(p.y / 4), std::round(p.z / 4)};
    for (auto _ : state) benchmark::DoNotOptimize(hullOf(points));
}

// Twenty thousand points of a crown, against a hull of two thousand triangles.
void insideBesidePlain(benchmark::State& state)
{
    const std::unique_ptr<Mesh> hull = hullOf(ellipsoid(55000, false));
    const std::vector<Vector3> points = ellipsoid(20000, false);
    uint64_t inside = 0, insidePlain = 0;
    const auto once = [&] {
        const HullPlanes planes(*hull);
        inside = 0;
        for (const Vector3& p : points) inside += planes.contains(p);
        return inside;
    };
    const auto plain = [&] {
        insidePlain = 0;
        for (const Vector3& p : points) insidePlain += PointInsideHull(p, *hull);
        return insidePlain;
    };
    CompareTimes(state, once, plain, [] {});
    if (inside != insidePlain) state.SkipWithError("the answers differ");
    state.counters["planes"] = static_cast<double>(hull->polygonEnds.size());
}

#ifdef VERDANTH_BENCH_PEERS
constexpr int kRounds = 11;

void clouds(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"points", "shell"})->ArgsProduct({{10000, 60000, 100000}, {0}})->Args({10000, 1});
    benchmark->Iterations(kRounds)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(hullBesideQhull)->Name("hull/beside_qhull")->Apply(clouds);
BENCHMARK(hullBesideCgal)->Name("hull/beside_cgal")->Apply(clouds);
#endif
BENCHMARK(hullOfRoundedShell)->Name("hull/rounded_shell")->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(insideBesidePlain)
    ->Name("hull/inside_beside_plain")
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace vdt::bench
