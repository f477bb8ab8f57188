// Runs the benchmarks; see docs/performance.md.
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
