// What a call costs beside its iterations when little has changed since the last one: KLVdualopt
// again after an optimum, with nothing changed and with one bound changed. The model is a
// staircase: production of eight goods over many periods with stocks and two shared capacities.
// "calls_us" is the time of a call, "in_iterations" the same in iterations of the solve from
// scratch; with a bound changed, the iterations of the call itself are taken off.
#include <benchmark/benchmark.h>
#include <kelvo.h>

#include <chrono>
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

void reoptimize(benchmark::State& state, bool change) {
  int code = 0;
  KLVenv env = KLVopenKELVO(&code);
  KLVprob lp = KLVcreateprob(env, &code, "staircase");
  const Staircase model(2000);
  const int columns = static_cast<int>(model.cost.size());
  const std::vector<double> lower(columns, 0.0);
  code = KLVcopylp(env, lp, columns, static_cast<int>(model.rhs.size()), 1, model.cost.data(),
                   model.rhs.data(), model.sense.data(), model.begin.data(), model.count.data(),
                   model.row.data(), model.value.data(), lower.data(), model.upper.data(), nullptr);
  KLVsetintparam(env, KLV_PARAM_PREIND, 0);
  const auto start = Clock::now();
  if (code == 0) code = KLVdualopt(env, lp);
  const double iteration = microseconds(start) / KLVgetitcnt(env, lp);
  double total = 0.0;
  int calls = 0, iterations = 0;
  for (auto round : state) {
    static_cast<void>(round);
    const int j = 4 * (8 * (1 + calls) % (columns / 4)) + 2;  // a stock
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
  KLVfreeprob(env, &lp);
  KLVcloseKELVO(&env);
}

BENCHMARK_CAPTURE(reoptimize, nothing_changed, false)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reoptimize, one_bound_changed, true)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace kelvo
