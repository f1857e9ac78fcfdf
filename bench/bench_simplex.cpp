// What an iteration of the dual simplex costs as problems grow: two families whose iterations touch
// few nonzeros however large the problem is. The time for a touched nonzero should depend on the
// memory only, not on rows and columns; "touched" and "ns_per_touched" tell.
#include <benchmark/benchmark.h>

#include <chrono>

#include "lp/simplex/simplex.h"
#include "lp_families.h"

namespace kelvo {
namespace {

/// Iterations measured, after those that bring a run away from the slack basis.
constexpr int kWarmUp = 2000;
constexpr int kMeasured = 10000;

void dual_iteration(benchmark::State& state, LpProblem (*family)(int)) {
  const LpProblem lp = family(static_cast<int>(state.range(0)));
  double touched = 0.0, seconds = 0.0;
  int iterations = 0;
  for (auto round : state) {
    static_cast<void>(round);
    Simplex simplex(lp);
    SimplexSettings settings;
    settings.iteration_limit = kWarmUp;
    static_cast<void>(simplex.run_dual(settings));
    const double before = simplex.work();
    settings.iteration_limit = kMeasured;
    const auto start = std::chrono::steady_clock::now();
    static_cast<void>(simplex.run_dual(settings));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(passed.count());
    seconds += passed.count();
    touched += simplex.work() - before;
    iterations += simplex.iterations() - kWarmUp;
  }
  state.counters["iterations"] = iterations;
  state.counters["us_per_iteration"] = 1e6 * seconds / iterations;
  state.counters["touched"] = touched / iterations;
  state.counters["ns_per_touched"] = 1e9 * seconds / touched;
}

BENCHMARK_CAPTURE(dual_iteration, network, bench::network)
    ->ArgName("rows")
    ->RangeMultiplier(4)
    ->Range(8000, 512000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dual_iteration, staircase, bench::staircase)
    ->ArgName("rows")
    ->RangeMultiplier(4)
    ->Range(8000, 512000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
