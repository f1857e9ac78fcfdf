#include "lp/first_order/first_order.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/random.h"
#include "lp/simplex/simplex_support.h"
#include "lp/solve/lp_solver.h"

namespace kelvo {
namespace {

using test::dense_lp;
using test::random_feasible_lp;
using test::StopAt;

double exact_objective(const LpProblem& lp) {
  Simplex simplex(lp);
  EXPECT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  return simplex.objective();
}

TEST(FirstOrder, PointsAreWithinTheirErrors) {
  Random random(11);
  NeverStop never;
  for (int k = 0; k < 40; ++k) {
    const LpProblem lp = random_feasible_lp(random, 3 + k % 12, 5 + k % 17, k % 2 == 0);
    FirstOrderMethod method(LpProblem(lp), never);
    ASSERT_TRUE(method.run(1e-7, 200000)) << k << ": error " << method.best_error();
    const FirstOrderPoint point = method.take_point();
    double objective = 0.0, dual_objective = 0.0;
    Vector<double> activity(lp.num_rows, 0.0);
    for (int j = 0; j < lp.num_cols; ++j) {
      EXPECT_GE(point.x[j], lp.lower[j] - 1e-12);
      EXPECT_LE(point.x[j], lp.upper[j] + 1e-12);
      objective += lp.cost[j] * point.x[j];
      double reduced = lp.cost[j];
      for (int e = lp.columns.start[j]; e < lp.columns.start[j + 1]; ++e) {
        activity[lp.columns.index[e]] += lp.columns.value[e] * point.x[j];
        reduced -= lp.columns.value[e] * point.y[lp.columns.index[e]];
      }
      const double bound = reduced > 0.0 ? lp.lower[j] : lp.upper[j];
      if (std::isfinite(bound)) {
        dual_objective += reduced * bound;
      } else {
        EXPECT_NEAR(reduced, 0.0, 1e-3);
      }
    }
    for (int i = 0; i < lp.num_rows; ++i) {
      const double low = -lp.upper[lp.num_cols + i], high = -lp.lower[lp.num_cols + i];
      EXPECT_GE(activity[i], low - 1e-3);
      EXPECT_LE(activity[i], high + 1e-3);
      const double bound = point.y[i] > 0.0 ? low : high;
      if (std::isfinite(bound)) dual_objective += point.y[i] * bound;
    }
    const double size = 1.0 + std::fabs(objective);
    EXPECT_NEAR(objective, exact_objective(lp), 1e-3 * size) << k;
    EXPECT_NEAR(objective, dual_objective, 1e-3 * size) << k;
  }
}

TEST(FirstOrder, WithoutAnOptimumNothingIsFound) {
  NeverStop never;
  // x + y >= 3 within the unit box; minimize -x - y above x - y = 0.
  FirstOrderMethod infeasible(dense_lp({{1, 0, 1}, {1, 0, 1}}, {{1, 1}}, {{3, kInf}}), never);
  EXPECT_FALSE(infeasible.run(1e-4, 5000));
  FirstOrderMethod unbounded(dense_lp({{-1, 0, kInf}, {-1, 0, kInf}}, {{1, -1}}, {{0, 0}}), never);
  EXPECT_FALSE(unbounded.run(1e-4, 5000));
}

/// Level-one linearization of a quadratic assignment problem (Adams and Johnson 1994), whose
/// vertices are highly degenerate: x_ij assigns i to j, y_ijkl = x_ij x_kl for i < k.
LpProblem assignment_relaxation(Random& random, int size) {
  LpProblem lp;
  const int pairs = size * size;
  Vector<int> y(static_cast<std::size_t>(pairs) * pairs, -1);
  lp.num_cols = pairs;
  lp.cost.assign(pairs, 0.0);
  for (int p = 0; p < pairs; ++p) {
    for (int q = p + 1; q < pairs; ++q) {
      if (p / size == q / size || p % size == q % size) continue;
      y[p * pairs + q] = y[q * pairs + p] = lp.num_cols++;
      lp.cost.push_back(random.below(6) * random.below(6));
    }
  }
  const auto add = [&](int column, double value) {
    lp.rows.index.push_back(column);
    lp.rows.value.push_back(value);
  };
  const auto end_row = [&](double activity) {
    lp.rows.start.push_back(static_cast<int>(lp.rows.index.size()));
    lp.lower.push_back(-activity);
    ++lp.num_rows;
  };
  for (int side = 0; side < 2; ++side) {
    for (int i = 0; i < size; ++i) {
      for (int j = 0; j < size; ++j) add(side == 0 ? i * size + j : j * size + i, 1.0);
      end_row(1.0);
    }
  }
  for (int p = 0; p < pairs; ++p) {
    for (int line = 0; line < 2 * size; ++line) {
      const bool by_row = line < size;
      const int k = line % size;
      if (k == (by_row ? p / size : p % size)) continue;
      for (int l = 0; l < size; ++l) {
        const int q = by_row ? k * size + l : l * size + k;
        if (y[p * pairs + q] >= 0) add(y[p * pairs + q], 1.0);
      }
      add(p, -1.0);
      end_row(0.0);
    }
  }
  lp.rows.num_major = lp.num_rows;
  lp.rows.num_minor = lp.num_cols;
  lp.columns = transpose(lp.rows);
  lp.cost.resize(lp.num_vars(), 0.0);
  lp.upper = lp.lower;
  lp.lower.insert(lp.lower.begin(), lp.num_cols, 0.0);
  lp.upper.insert(lp.upper.begin(), lp.num_cols, kInf);
  return lp;
}

struct StartCase : ::testing::Test {
  Random random{5};
  LpProblem lp = assignment_relaxation(random, 8);
  test::RecordingSink sink;
  NeverStop never;
  DriverSettings settings;
  Owned<WorkingLp> working;

  StartCase() { settings.simplex.display = 1; }

  LpAnswer solve(LpMethod method, StopCheck& stop, int limit = 2100000000) {
    settings.simplex.iteration_limit = limit;
    working.reset();
    return solve_without_presolve(lp, working, {}, algorithm_of(method), settings, {sink, stop});
  }
};

constexpr const char* kRestart = "Restarting from an approximate solution.\n";

TEST_F(StartCase, LongRunsRestartFromAnApproximateSolution) {
  const double objective = exact_objective(lp);
  const LpAnswer answer = solve(LpMethod::dual, never);
  EXPECT_EQ(answer.outcome, LpOutcome::optimal);
  EXPECT_TRUE(answer.is_feasible());
  EXPECT_NEAR(answer.solution.objective, objective, 1e-6);
  EXPECT_NE(sink.all().find(kRestart), std::string::npos);
  // Runs repeat exactly: turns are due by work, not by time.
  EXPECT_EQ(solve(LpMethod::dual, never).iterations, answer.iterations);
}

TEST_F(StartCase, LimitsAndStopsHoldThroughTheRestart) {
  const int all = solve(LpMethod::dual, never).iterations;
  const int limit = all - 20;
  const LpAnswer limited = solve(LpMethod::dual, never, limit);
  EXPECT_EQ(limited.outcome, LpOutcome::iteration_limit);
  EXPECT_EQ(limited.iterations, limit);
  // A stop within the first-order method's turn ends the whole run.
  bool stopped_in_turn = false;
  for (int calls = all / 2; calls < 8 * all && !stopped_in_turn; calls += all / 4) {
    sink.take();
    StopAt stop(calls);
    const LpAnswer answer = solve(LpMethod::dual, stop);
    if (answer.outcome == LpOutcome::optimal) break;
    EXPECT_EQ(answer.outcome, LpOutcome::aborted);
    EXPECT_TRUE(answer.has_solution);
    stopped_in_turn =
        calls > answer.iterations + 200 && sink.all().find(kRestart) == std::string::npos;
  }
  EXPECT_TRUE(stopped_in_turn);
}

TEST_F(StartCase, OnlyOrdinaryRunsFromSlacksGiveWay) {
  settings.simplex.dual_pricing = DualPricing::steepest;
  EXPECT_EQ(solve(LpMethod::dual, never).outcome, LpOutcome::optimal);
  EXPECT_EQ(sink.all().find(kRestart), std::string::npos);
}

}  // namespace
}  // namespace kelvo
