// What an iteration of the dual simplex costs as problems grow: two families whose iterations touch
// few nonzeros however large the problem is. The time for a touched nonzero should depend on the
// memory only, not on rows and columns; "touched" and "ns_per_touched" tell.
#include <benchmark/benchmark.h>

#include <chrono>

#include "base/random.h"
#include "lp/simplex/simplex.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {
namespace {

/// Iterations measured, after those that bring a run away from the slack basis.
constexpr int kWarmUp = 2000;
constexpr int kMeasured = 10000;

class Builder {
 public:
  explicit Builder(int rows) { lp_.num_rows = rows; }
  void add_column(double cost, double upper) {
    lp_.cost.push_back(cost);
    lp_.lower.push_back(0.0);
    lp_.upper.push_back(upper);
    ++lp_.num_cols;
    lp_.columns.start.push_back(static_cast<int>(lp_.columns.index.size()));
  }
  /// An entry of the next column.
  void add_entry(int row, double value) {
    lp_.columns.index.push_back(row);
    lp_.columns.value.push_back(value);
  }
  LpProblem finish(const Vector<double>& least, const Vector<double>& most) {
    for (int i = 0; i < lp_.num_rows; ++i) {
      lp_.cost.push_back(0.0);
      lp_.lower.push_back(-most[i]);
      lp_.upper.push_back(-least[i]);
    }
    lp_.columns.num_major = lp_.num_cols;
    lp_.columns.num_minor = lp_.num_rows;
    lp_.rows = transpose(lp_.columns);
    return std::move(lp_);
  }

 private:
  LpProblem lp_;
};

/// Minimum cost flow between neighbours of a grid; every node may buy what it lacks.
LpProblem network(int rows) {
  Random random(3);
  const int width = 64;
  Builder builder(rows);
  Vector<double> supply(rows);
  for (int i = 0; i < rows; ++i) {
    supply[i] = random.below(21) - 10.0;
    for (const int to : {i + 1, i - 1, i + width, i - width}) {
      if (to < 0 || to >= rows) continue;
      builder.add_entry(i, 1.0);
      builder.add_entry(to, -1.0);
      builder.add_column(1.0 + random.below(20), 5.0 + random.below(20));
    }
    builder.add_entry(i, supply[i] > 0.0 ? 1.0 : -1.0);
    builder.add_column(200.0, kInf);
  }
  return builder.finish(supply, supply);
}

/// Production of eight goods over many periods: balances with stocks, two shared capacities each.
LpProblem staircase(int rows) {
  Random random(4);
  constexpr int kGoods = 8, kShared = 2, kPeriod = kGoods + kShared;
  const int periods = rows / kPeriod;
  Builder builder(periods * kPeriod);
  Vector<double> least(periods * kPeriod), most(periods * kPeriod);
  for (int t = 0; t < periods; ++t) {
    const int first = t * kPeriod;
    for (int g = 0; g < kGoods; ++g) {
      least[first + g] = most[first + g] = random.below(30);
      for (int way = 0; way < 2; ++way) {  // two ways to make it
        builder.add_entry(first + g, 1.0);
        builder.add_entry(first + kGoods + way, 0.5 + random.uniform());
        builder.add_column(1.0 + random.below(30), kInf);
      }
      builder.add_entry(first + g, -1.0);  // stock for the next period
      if (t + 1 < periods) builder.add_entry(first + kPeriod + g, 0.98);
      builder.add_column(0.1 + random.uniform(), 60.0);
      builder.add_entry(first + g, 1.0);  // bought
      builder.add_column(100.0, kInf);
    }
    for (int k = kGoods; k < kPeriod; ++k) {
      least[first + k] = -kInf;
      most[first + k] = 60.0;
    }
  }
  return builder.finish(least, most);
}

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
    const double before = simplex.state().work();
    settings.iteration_limit = kMeasured;
    const auto start = std::chrono::steady_clock::now();
    static_cast<void>(simplex.run_dual(settings));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(passed.count());
    seconds += passed.count();
    touched += simplex.state().work() - before;
    iterations += simplex.iterations() - kWarmUp;
  }
  state.counters["iterations"] = iterations;
  state.counters["us_per_iteration"] = 1e6 * seconds / iterations;
  state.counters["touched"] = touched / iterations;
  state.counters["ns_per_touched"] = 1e9 * seconds / touched;
}

BENCHMARK_CAPTURE(dual_iteration, network, network)
    ->ArgName("rows")
    ->RangeMultiplier(4)
    ->Range(8000, 512000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(dual_iteration, staircase, staircase)
    ->ArgName("rows")
    ->RangeMultiplier(4)
    ->Range(8000, 512000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
