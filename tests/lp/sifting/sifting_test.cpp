#include "lp/sifting/sifting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "lp/sifting/row_prices.h"
#include "lp/simplex/simplex_support.h"

namespace kelvo {
namespace {

using test::StopAt;

/// A program from sparse columns.
struct Builder {
  LpProblem lp;

  explicit Builder(const std::vector<std::pair<double, double>>& limits) : limits_(limits) {
    lp.num_rows = lp.columns.num_minor = static_cast<int>(limits.size());
  }
  void column(double cost, double lower, double upper,
              const std::vector<std::pair<int, double>>& entries) {
    for (const auto& [row, value] : entries) {
      lp.columns.index.push_back(row);
      lp.columns.value.push_back(value);
    }
    lp.columns.start.push_back(static_cast<int>(lp.columns.index.size()));
    lp.cost.push_back(cost);
    lp.lower.push_back(lower);
    lp.upper.push_back(upper);
    lp.num_cols = ++lp.columns.num_major;
  }
  LpProblem finish() {
    for (const auto& [low, high] : limits_) {
      lp.cost.push_back(0.0);
      lp.lower.push_back(-high);
      lp.upper.push_back(-low);
    }
    lp.rows = transpose(lp.columns);
    return std::move(lp);
  }

 private:
  std::vector<std::pair<double, double>> limits_;
};

/// Rows to be covered by columns of three entries each, which are worth about what they cost: some
/// rows are far dearer than others, so that costs alone do not tell which columns are needed.
LpProblem covering_lp(Random& random, int m, int n) {
  Builder builder(std::vector<std::pair<double, double>>(m, {1.0, kInf}));
  std::vector<double> worth;
  for (int i = 0; i < m; ++i) worth.push_back(1 + random.below(500));
  for (int j = 0; j < n; ++j) {
    const int row = random.below(m);
    const int second = (row + 1 + random.below(m / 2)) % m;
    const int third = (row + m - 1 - random.below(m / 3)) % m;
    const double cost = worth[row] + worth[second] + worth[third] + random.below(100);
    builder.column(cost, 0.0, kInf, {{row, 1.0}, {second, 1.0 + random.below(2)}, {third, 1.0}});
  }
  return builder.finish();
}

/// Demands of `places` from as many sources, each of which can send
/// `supply` in all and at most `arc` to a place.
LpProblem transport_lp(Random& random, int places, double supply, double arc) {
  std::vector<std::pair<double, double>> limits;
  for (int i = 0; i < places; ++i) limits.emplace_back(-kInf, supply);
  for (int i = 0; i < places; ++i) limits.emplace_back(5.0, 5.0);
  Builder builder(limits);
  for (int from = 0; from < places; ++from) {
    for (int to = 0; to < places; ++to) {
      builder.column(random.below(1000), 0.0, arc, {{from, 1.0}, {places + to, 1.0}});
    }
  }
  return builder.finish();
}

/// Sacks to be packed with things of use, none of which must be taken: the first work program has
/// none, and more are of use than may join at once.
LpProblem packing_lp(Random& random, int m, int n) {
  Builder builder(std::vector<std::pair<double, double>>(m, {-kInf, 100.0}));
  for (int j = 0; j < n; ++j) {
    const int sack = random.below(m);
    builder.column(-1.0 - random.below(300), 0.0, kInf,
                   {{sack, 1.0 + random.below(20)}, {(sack + 1) % m, 1.0 + random.below(20)}});
  }
  return builder.finish();
}

struct Trial {
  explicit Trial(const LpProblem& lp, StopCheck* stop = nullptr, IterationHook* hook = nullptr,
                 int limit = 2100000000)
      : settings{.simplex = {.iteration_limit = limit}},
        sifting(lp, settings, {.stop = stop, .hook = hook}),
        end(sifting.run()) {}
  SiftingSettings settings;
  Sifting sifting;
  SiftingEnd end;
};

double optimal_value(const LpProblem& lp) {
  NeverStop never;
  Simplex simplex(lp);
  EXPECT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  return simplex.objective();
}

/// The basis is an optimum of the whole program, without any more work.
void expect_priced_out(const LpProblem& lp, const Sifting& sifting) {
  Simplex simplex(lp);
  simplex.set_basis(sifting.status());
  ASSERT_EQ(simplex.run_primal({}), SimplexOutcome::optimal);
  EXPECT_EQ(simplex.iterations(), 0);
  test::expect_optimal(lp, simplex);
  const double expected = optimal_value(lp);
  EXPECT_NEAR(simplex.objective(), expected, 1e-7 * (1.0 + std::fabs(expected)));
}

TEST(Sifting, FindsTheOptimumOfWidePrograms) {
  Random random(11);
  for (int trial = 0; trial < 10; ++trial) {
    SCOPED_TRACE(trial);
    const LpProblem covering = covering_lp(random, 20 + random.below(150), 6000);
    const Trial covered(covering);
    ASSERT_EQ(covered.end, SiftingEnd::priced_out);
    expect_priced_out(covering, covered.sifting);
    const LpProblem packing = packing_lp(random, 10 + random.below(30), 4000);
    const Trial packed(packing);
    ASSERT_EQ(packed.end, SiftingEnd::priced_out);
    expect_priced_out(packing, packed.sifting);
    const LpProblem transport = transport_lp(random, 40, 6.0, trial % 2 == 0 ? kInf : 3.0);
    const Trial sent(transport);
    ASSERT_EQ(sent.end, SiftingEnd::priced_out);
    expect_priced_out(transport, sent.sifting);
  }
}

// Every kind of row and of bound, columns that start at their upper bounds, proofs of either sign.
TEST(Sifting, NeverClaimsAnOptimumThatIsNone) {
  Random random(12);
  int priced_out = 0;
  for (int trial = 0; trial < 60; ++trial) {
    SCOPED_TRACE(trial);
    LpProblem lp = test::random_feasible_lp(random, 2 + random.below(8), 700, trial % 2 == 0);
    lp.offset = 17.0;
    const Trial run(lp);
    if (run.end == SiftingEnd::given_up) continue;
    ASSERT_EQ(run.end, SiftingEnd::priced_out);
    expect_priced_out(lp, run.sifting);
    ++priced_out;
  }
  EXPECT_GE(priced_out, 30);
}

TEST(Sifting, TellsTheObjectiveOfTheWhole) {
  Random random(13);
  LpProblem lp = packing_lp(random, 30, 5000);
  lp.offset = 1000.0;
  // Paid for, though never in the work program.
  lp.lower[7] = lp.upper[7] = 1.0;
  test::RecordingSink sink;
  SiftingSettings settings;
  settings.simplex.display = 1;
  ASSERT_EQ(Sifting(lp, settings, {.sink = &sink}).run(), SiftingEnd::priced_out);
  std::istringstream lines(sink.all());
  std::vector<double> counts, objectives;
  for (std::string line; std::getline(lines, line);) {
    int iterations = 0;
    double objective = 0.0;
    if (std::sscanf(line.c_str(), "Iteration: %d Objective = %lf", &iterations, &objective) != 2) {
      continue;
    }
    counts.push_back(iterations);
    objectives.push_back(objective);
  }
  ASSERT_GE(objectives.size(), 2u) << sink.all();
  EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
  EXPECT_TRUE(std::is_sorted(objectives.rbegin(), objectives.rend()));
  EXPECT_NEAR(objectives.back(), optimal_value(lp), 1e-5);
}

TEST(Sifting, LeavesInfeasibleAndUnboundedProgramsToOthers) {
  Random random(14);
  const LpProblem starved = transport_lp(random, 40, 4.0, kInf);
  EXPECT_EQ(Trial(starved).end, SiftingEnd::given_up);
  LpProblem endless = covering_lp(random, 20, 3000);
  for (int j = 100; j < 110; ++j) endless.cost[j] = -1.0;
  const Trial run(endless);
  ASSERT_EQ(run.end, SiftingEnd::unfinished);
  Simplex simplex(endless);
  simplex.set_basis(run.sifting.status());
  EXPECT_EQ(simplex.run_primal({}), SimplexOutcome::unbounded);
}

TEST(Sifting, StopsWhenAsked) {
  Random random(15);
  const LpProblem lp = covering_lp(random, 40, 3000);
  const auto expect_stopped = [&](const Trial& run, SimplexOutcome by) {
    ASSERT_EQ(run.end, SiftingEnd::stopped);
    EXPECT_EQ(run.sifting.stop_outcome(), by);
    const Vector<int>& status = run.sifting.status();
    EXPECT_EQ(std::count(status.begin(), status.end(), kBasic), lp.num_rows);
  };
  const int all = Trial(lp).sifting.iterations();
  for (const int limit : {0, 5, all / 2, all - 1}) {
    SCOPED_TRACE(limit);
    const Trial limited(lp, nullptr, nullptr, limit);
    expect_stopped(limited, SimplexOutcome::iteration_limit);
    EXPECT_EQ(limited.sifting.iterations(), limit);
    StopAt hook(limit);
    const Trial hooked(lp, nullptr, &hook);
    expect_stopped(hooked, SimplexOutcome::aborted);
    EXPECT_LE(hooked.sifting.iterations(), limit);
    StopAt clock(limit, StopReason::time_limit);
    expect_stopped(Trial(lp, &clock), SimplexOutcome::time_limit);
  }
}

TEST(RowPrices, ComeNearTheOptimumFromBelow) {
  Random random(16);
  NeverStop never;
  for (int trial = 0; trial < 5; ++trial) {
    const int m = 30 + random.below(60);
    const LpProblem lp = covering_lp(random, m, 1500);
    CoveringProgram program;
    program.need.assign(m, 1.0);
    program.columns = lp.columns;
    program.cost.assign(lp.cost.begin(), lp.cost.begin() + lp.num_cols);
    program.range.assign(lp.num_cols, 1.0);
    // A row that takes no part keeps its price whatever happens to it.
    program.need[3] = 0.0;
    for (std::size_t k = 0; k < program.columns.index.size(); ++k) {
      if (program.columns.index[k] == 3) program.columns.value[k] = 0.0;
    }
    LpProblem without = lp;
    without.lower[lp.num_cols + 3] = -kInf;
    without.upper[lp.num_cols + 3] = kInf;
    const double optimum = optimal_value(without);
    const Vector<double> none(m, 0.0);
    EXPECT_EQ(improve_row_prices(program, none, 0, never), none);
    const Vector<double> y = improve_row_prices(program, Vector<double>(m, 1.0), 300, never);
    EXPECT_EQ(y[3], 1.0);
    double bound = 0.0;
    for (int i = 0; i < m; ++i) {
      EXPECT_GE(y[i], 0.0);
      bound += program.need[i] * y[i];
    }
    for (int j = 0; j < lp.num_cols; ++j) {
      double d = lp.cost[j];
      for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
        d -= program.columns.value[k] * y[lp.columns.index[k]];
      }
      bound += std::min(0.0, d);
    }
    EXPECT_LE(bound, optimum * (1.0 + 1e-9));
    EXPECT_GE(bound, 0.8 * optimum);
  }
}

}  // namespace
}  // namespace kelvo
