// What small changes of a solved LP cost, in units of an average iteration of the run that solved
// it ("iterations"): a run with nothing changed, one bound changed, probes of three iterations, 100
// added rows. "made" counts the iterations that were made on the way, where there are any. Each
// figure is the median of many. Rows that couple what was apart make iterations more expensive;
// "of_its_own" is the cost of adding rows and solving in the run's own iterations (their median),
// "deleting" that of deleting the rows that are slack and running again, in average ones.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cmath>

#include "lp/simplex/simplex.h"
#include "lp_families.h"

namespace kelvo {
namespace {

constexpr int kRows = 20000;
constexpr int kRounds = 200;

class Stopwatch {
 public:
  double seconds() const { return now() - start_; }

 private:
  /// Of the thread's processor time, which other programs do not disturb.
  static double now() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  }
  double start_ = now();
};

double median(Vector<double>& samples) {
  std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
  return samples[samples.size() / 2];
}

/// A solved LP and what an iteration took.
struct Solved {
  explicit Solved(LpProblem (*family)(int)) : lp(family(kRows)), simplex(lp) {
    const Stopwatch watch;
    static_cast<void>(simplex.run_dual({}));
    iteration = watch.seconds() / simplex.iterations();
  }
  /// A basic column off its bounds, as a branching would take.
  int basic_column(Random& random) const {
    while (true) {
      const int j = random.below(32768) * 3 % lp.num_cols;
      if (simplex.status()[j] == kBasic && simplex.values()[j] > 0.1) return j;
    }
  }

  LpProblem lp;
  Simplex simplex;
  double iteration = 0.0;
};

void report(benchmark::State& state, const Solved& solved, Vector<double>& seconds,
            Vector<double>& made) {
  state.SetIterationTime(median(seconds));
  state.counters["us_per_iteration"] = 1e6 * solved.iteration;
  state.counters["iterations"] = median(seconds) / solved.iteration;
  state.counters["made"] = median(made);
}

void nothing_changed(benchmark::State& state, LpProblem (*family)(int)) {
  Solved solved(family);
  for (auto round : state) {
    static_cast<void>(round);
    Vector<double> seconds, made(1, 0.0);
    for (int k = 0; k < kRounds; ++k) {
      const Stopwatch watch;
      static_cast<void>(solved.simplex.run_dual({}));
      seconds.push_back(watch.seconds());
    }
    report(state, solved, seconds, made);
  }
}

void one_bound(benchmark::State& state, LpProblem (*family)(int)) {
  Solved solved(family);
  Random random(9);
  for (auto round : state) {
    static_cast<void>(round);
    Vector<double> seconds, made;
    for (int k = 0; k < kRounds; ++k) {
      const int j = solved.basic_column(random);
      const double upper = solved.lp.upper[j];
      const double x = solved.simplex.values()[j];
      const int before = solved.simplex.iterations();
      const Stopwatch watch;
      solved.simplex.change_bounds({{j, 0.0, std::ceil(x) - 1.0}});
      static_cast<void>(solved.simplex.run_dual({}));
      seconds.push_back(watch.seconds());
      made.push_back(solved.simplex.iterations() - before);
      solved.simplex.change_bounds({{j, 0.0, upper}});
      static_cast<void>(solved.simplex.run_dual({}));
    }
    report(state, solved, seconds, made);
  }
}

void probe(benchmark::State& state, LpProblem (*family)(int)) {
  Solved solved(family);
  Random random(9);
  SimplexSettings settings;
  settings.iteration_limit = 3;
  for (auto round : state) {
    static_cast<void>(round);
    Vector<double> seconds, made;
    for (int k = 0; k < kRounds; ++k) {
      const int j = solved.basic_column(random);
      const double x = solved.simplex.values()[j];
      const Stopwatch watch;
      const ProbeResult side = solved.simplex.probe({{j, 0.0, std::ceil(x) - 1.0}}, settings);
      seconds.push_back(watch.seconds());
      made.push_back(side.iterations);
    }
    report(state, solved, seconds, made);
  }
}

/// Notes when iterations begin.
class Pace final : public IterationHook {
 public:
  int before_iteration(bool, bool) override {
    begun_.push_back(watch_.seconds());
    return 0;
  }
  /// The median iteration.
  double seconds() const {
    Vector<double> gaps(1, 0.0);
    for (std::size_t k = 1; k < begun_.size(); ++k) gaps.push_back(begun_[k] - begun_[k - 1]);
    return median(gaps);
  }

 private:
  Stopwatch watch_;
  Vector<double> begun_;
};

/// Rows that cut off the optimum: sums of a few columns are at most a little less than now.
struct Cuts {
  Cuts(const Solved& solved, int count, Random& random) : least(count, -kInf) {
    constexpr int kLength = 5;
    rows.num_minor = solved.lp.num_cols;
    for (int r = 0; r < count; ++r) {
      Vector<int> columns;
      for (int e = 0; e < kLength; ++e) columns.push_back(solved.basic_column(random));
      std::sort(columns.begin(), columns.end());
      columns.erase(std::unique(columns.begin(), columns.end()), columns.end());
      double activity = 0.0;
      for (const int j : columns) {
        rows.index.push_back(j);
        rows.value.push_back(1.0);
        activity += solved.simplex.values()[j];
      }
      rows.start.push_back(static_cast<int>(rows.index.size()));
      ++rows.num_major;
      most.push_back(activity - 0.5);
    }
  }

  SparseMatrix rows;
  Vector<double> least, most;
};

/// The rows from `first` on, or those of them that are slack.
Vector<int> rows_from(int first, const Solved& solved, bool slack_only) {
  Vector<int> list;
  for (int i = first; i < solved.lp.num_rows; ++i) {
    const bool slack = solved.simplex.status()[solved.lp.num_cols + i] == kBasic;
    if (slack || !slack_only) list.push_back(i);
  }
  return list;
}

void hundred_rows(benchmark::State& state, LpProblem (*family)(int)) {
  Random random(9);
  Solved solved(family);
  const int rows = solved.lp.num_rows;
  for (auto round : state) {
    static_cast<void>(round);
    Vector<double> seconds, made, own, deleting;
    for (int k = 0; k < 11; ++k) {
      const Cuts cuts(solved, 100, random);
      const int before = solved.simplex.iterations();
      Pace pace;
      RunContext context;
      context.hook = &pace;
      const Stopwatch watch;
      solved.simplex.add_rows(cuts.rows, cuts.least, cuts.most);
      static_cast<void>(solved.simplex.run_dual({}, context));
      seconds.push_back(watch.seconds());
      made.push_back(solved.simplex.iterations() - before);
      own.push_back(seconds.back() / (made.back() * pace.seconds()));
      const Vector<int> slack = rows_from(rows, solved, true);
      const Stopwatch deleted;
      solved.simplex.delete_rows(slack);
      static_cast<void>(solved.simplex.run_dual({}));
      deleting.push_back(deleted.seconds() / solved.iteration);
      solved.simplex.delete_rows(rows_from(rows, solved, false));
      static_cast<void>(solved.simplex.run_dual({}));
    }
    report(state, solved, seconds, made);
    state.counters["of_its_own"] = median(own);
    state.counters["deleting"] = median(deleting);
  }
}

void snapshot(benchmark::State& state, LpProblem (*family)(int)) {
  Solved solved(family);
  for (auto round : state) {
    static_cast<void>(round);
    const Stopwatch watch;
    const SharedBasis basis = solved.simplex.snapshot();
    state.SetIterationTime(watch.seconds());
    state.counters["megabytes"] = static_cast<double>(basis->bytes()) / 1e6;
  }
}

#define KELVO_HOT_BENCHMARK(name)                      \
  BENCHMARK_CAPTURE(name, staircase, bench::staircase) \
      ->Iterations(1)                                  \
      ->UseManualTime()                                \
      ->Unit(benchmark::kMicrosecond);                 \
  BENCHMARK_CAPTURE(name, network, bench::network)     \
      ->Iterations(1)                                  \
      ->UseManualTime()                                \
      ->Unit(benchmark::kMicrosecond)

KELVO_HOT_BENCHMARK(nothing_changed);
KELVO_HOT_BENCHMARK(one_bound);
KELVO_HOT_BENCHMARK(probe);
KELVO_HOT_BENCHMARK(hundred_rows);
KELVO_HOT_BENCHMARK(snapshot);

}  // namespace
}  // namespace kelvo
