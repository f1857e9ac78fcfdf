// What a call costs beside its iterations when little has changed since the last one: KLVdualopt
// again after an optimum, with nothing changed and with one bound changed, and what one side of
// KLVstrongbranch costs, its three iterations included. The model is a
// staircase: production of eight goods over many periods with stocks and two shared capacities.
// "calls_us" is the time of a call, "in_iterations" the same in iterations of the solve from
// scratch; with a bound changed, the iterations of the call itself are taken off.
#include <benchmark/benchmark.h>
#include <kelvo.h>

#include <chrono>
#include <cmath>
#include <vector>

#include "base/random.h"

namespace kelvo {
namespace {

using Clock = std::chrono::steady_clock;

struct Staircase {
  std::vector<double> cost, upper, value, rhs;
  std::vector<char> sense;
  std::vector<int> begin, count, row;

  explicit Staircase(int periods) {
    constexpr int kGoods = 8, kPeriod = 10;
    Random random(4);
    for (int t = 0; t < periods; ++t) {
      const int first = t * kPeriod;
      for (int g = 0; g < kGoods; ++g) {
        rhs.push_back(random.below(30));
        sense.push_back('E');
        for (int way = 0; way < 2; ++way) {  // two ways to make it
          column(1.0 + random.below(30), KLV_INFINITY);
          entry(first + g, 1.0);
          entry(first + kGoods + way, 0.5 + random.uniform());
        }
        column(0.1 + random.uniform(), 60.0);  // stock for the next period
        entry(first + g, -1.0);
        if (t + 1 < periods) entry(first + kPeriod + g, 0.98);
        column(100.0, KLV_INFINITY);  // bought
        entry(first + g, 1.0);
      }
      rhs.insert(rhs.end(), 2, 60.0);
      sense.insert(sense.end(), 2, 'L');
    }
  }

 private:
  void column(double c, double bound) {
    cost.push_back(c);
    upper.push_back(bound);
    begin.push_back(static_cast<int>(row.size()));
    count.push_back(0);
  }
  void entry(int i, double a) {
    row.push_back(i);
    value.push_back(a);
    ++count.back();
  }
};

double microseconds(Clock::time_point start) {
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

/// The model in an environment of its own, solved without presolve.
struct Solved {
  explicit Solved(const Staircase& model) {
    int code = 0;
    env = KLVopenKELVO(&code);
    lp = KLVcreateprob(env, &code, "staircase");
    columns = static_cast<int>(model.cost.size());
    const std::vector<double> lower(columns, 0.0);
    ok = KLVcopylp(env, lp, columns, static_cast<int>(model.rhs.size()), 1, model.cost.data(),
                   model.rhs.data(), model.sense.data(), model.begin.data(), model.count.data(),
                   model.row.data(), model.value.data(), lower.data(), model.upper.data(),
                   nullptr) == 0;
    KLVsetintparam(env, KLV_PARAM_PREIND, 0);
    const auto start = Clock::now();
    ok = ok && KLVdualopt(env, lp) == 0;
    iteration = microseconds(start) / KLVgetitcnt(env, lp);
  }
  Solved(const Solved&) = delete;
  Solved& operator=(const Solved&) = delete;
  ~Solved() {
    KLVfreeprob(env, &lp);
    KLVcloseKELVO(&env);
  }

  KLVenv env;
  KLVprob lp;
  int columns;
  bool ok;
  double iteration;  // microseconds
};

void reoptimize(benchmark::State& state, bool change) {
  const Solved solved(Staircase(2000));
  const KLVenv env = solved.env;
  const KLVprob lp = solved.lp;
  const double iteration = solved.iteration;
  int code = solved.ok ? 0 : 1;
  double total = 0.0;
  int calls = 0, iterations = 0;
  for (auto round : state) {
    static_cast<void>(round);
    const int j = 4 * (8 * (1 + calls) % (solved.columns / 4)) + 2;  // a stock
    const double bound = 1.0;
    if (change) KLVchgbds(env, lp, 1, &j, "U", &bound);
    const auto begin = Clock::now();
    code |= KLVdualopt(env, lp);
    const double passed = microseconds(begin);
    state.SetIterationTime(1e-6 * passed);
    total += passed;
    iterations += KLVgetitcnt(env, lp);
    ++calls;
  }
  if (code != 0) state.SkipWithError("a call failed");
  state.counters["iteration_us"] = iteration;
  state.counters["iterations"] = static_cast<double>(iterations) / calls;
  state.counters["calls_us"] = total / calls;
  state.counters["in_iterations"] = (total - iterations * iteration) / calls / iteration;
}

void strong_branching(benchmark::State& state) {
  constexpr int kCandidates = 10, kIterations = 3;
  const Solved solved(Staircase(2000));
  std::vector<double> x(solved.columns), down(kCandidates), up(kCandidates);
  bool ok = solved.ok && KLVgetx(solved.env, solved.lp, x.data(), 0, solved.columns - 1) == 0;
  double total = 0.0;
  int sides = 0, first = 0;
  for (auto round : state) {
    static_cast<void>(round);
    std::vector<int> candidates;
    for (; first < solved.columns && candidates.size() < kCandidates; ++first) {
      if (x[first] - std::floor(x[first]) > 0.1) candidates.push_back(first);
    }
    const int count = static_cast<int>(candidates.size());
    const auto begin = Clock::now();
    ok = ok && KLVstrongbranch(solved.env, solved.lp, candidates.data(), count, down.data(),
                               up.data(), kIterations) == 0;
    const double passed = microseconds(begin);
    state.SetIterationTime(1e-6 * passed);
    total += passed;
    sides += 2 * count;
  }
  if (!ok) state.SkipWithError("a call failed");
  state.counters["iteration_us"] = solved.iteration;
  state.counters["side_us"] = total / sides;
  state.counters["in_iterations"] = total / sides / solved.iteration;
}

BENCHMARK_CAPTURE(reoptimize, nothing_changed, false)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reoptimize, one_bound_changed, true)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(strong_branching)->Iterations(20)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kelvo
