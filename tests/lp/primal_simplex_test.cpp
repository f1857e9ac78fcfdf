#include <gtest/gtest.h>

#include <cmath>

#include "base/random.h"
#include "lp/simplex/simplex.h"

namespace kelvo {
namespace {

struct Column {
  double cost, lower, upper;
};

/// A program from dense rows; limits as row activities.
LpProblem make_lp(const std::vector<Column>& columns, const std::vector<std::vector<double>>& rows,
                  const std::vector<std::pair<double, double>>& limits) {
  LpProblem lp;
  lp.num_rows = static_cast<int>(rows.size());
  lp.num_cols = static_cast<int>(columns.size());
  lp.columns.num_major = lp.num_cols;
  lp.columns.num_minor = lp.num_rows;
  lp.columns.start.assign(1, 0);
  for (int j = 0; j < lp.num_cols; ++j) {
    for (int i = 0; i < lp.num_rows; ++i) {
      if (rows[i][j] == 0.0) continue;
      lp.columns.index.push_back(i);
      lp.columns.value.push_back(rows[i][j]);
    }
    lp.columns.start.push_back(static_cast<int>(lp.columns.index.size()));
    lp.cost.push_back(columns[j].cost);
    lp.lower.push_back(columns[j].lower);
    lp.upper.push_back(columns[j].upper);
  }
  for (const auto& [low, high] : limits) {
    lp.cost.push_back(0.0);
    lp.lower.push_back(-high);
    lp.upper.push_back(-low);
  }
  lp.rows = transpose(lp.columns);
  return lp;
}

/// Random rows around a known point, with free, boxed, fixed and one-sided variables; boxes keep
/// the optimum finite unless `open`.
LpProblem random_lp(Random& random, int m, int n) {
  std::vector<Column> columns;
  std::vector<double> point;
  for (int j = 0; j < n; ++j) {
    const double x = std::floor(10.0 * random.uniform()) - 3.0;
    point.push_back(x);
    const double low = random.below(4) == 0 ? x : x - std::floor(5.0 * random.uniform());
    const double high = low + std::floor(10.0 * random.uniform());
    columns.push_back({std::floor(20.0 * random.uniform()) - 10.0, low, std::max(high, x)});
  }
  std::vector<std::vector<double>> rows(m, std::vector<double>(n, 0.0));
  std::vector<std::pair<double, double>> limits;
  for (auto& row : rows) {
    double activity = 0.0;
    for (int j = 0; j < n; ++j) {
      if (random.below(3) != 0) continue;
      row[j] = random.below(9) - 4;
      activity += row[j] * point[j];
    }
    const int kind = random.below(4);
    const double room = random.below(6);
    limits.emplace_back(kind == 0 ? -kInf : activity - (kind == 1 ? 0.0 : room),
                        kind == 1   ? activity
                        : kind == 2 ? kInf
                                    : activity + room);
  }
  return make_lp(columns, rows, limits);
}

/// Every optimality condition of the answer, from the problem's own data.
void expect_optimal(const LpProblem& lp, const Simplex& simplex) {
  const Vector<double>& x = simplex.values();
  const Vector<double>& y = simplex.row_duals();
  Vector<double> residual(lp.num_rows, 0.0);
  double objective = lp.offset;
  for (int j = 0; j < lp.num_vars(); ++j) {
    double reduced = lp.cost[j];
    if (j < lp.num_cols) {
      for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
        residual[lp.columns.index[k]] += lp.columns.value[k] * x[j];
        reduced -= lp.columns.value[k] * y[lp.columns.index[k]];
      }
    } else {
      residual[j - lp.num_cols] += x[j];
      reduced -= y[j - lp.num_cols];
    }
    objective += lp.cost[j] * x[j];
    EXPECT_GE(x[j], lp.lower[j] - 1e-6);
    EXPECT_LE(x[j], lp.upper[j] + 1e-6);
    if (reduced > 1e-6) {
      EXPECT_NEAR(x[j], lp.lower[j], 1e-6);
    }
    if (reduced < -1e-6) {
      EXPECT_NEAR(x[j], lp.upper[j], 1e-6);
    }
  }
  for (double r : residual) EXPECT_NEAR(r, 0.0, 1e-7);
  EXPECT_NEAR(objective, simplex.objective(), 1e-8 * (1.0 + std::fabs(objective)));
}

TEST(PrimalSimplex, RandomProgramsMeetAllOptimalityConditionsUnderEveryPricing) {
  SilentSink sink;
  NeverStop stop;
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 7919);
    const LpProblem lp = random_lp(random, 1 + random.below(25), 1 + random.below(30));
    double first = 0.0;
    for (int pricing = -1; pricing <= 4; ++pricing) {
      Simplex simplex(lp, sink, stop);
      SimplexSettings settings;
      settings.primal_pricing = static_cast<PrimalPricing>(pricing);
      settings.perturb_at_start = seed % 3 == 0;
      ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
      expect_optimal(lp, simplex);
      if (pricing == -1) first = simplex.objective();
      EXPECT_NEAR(simplex.objective(), first, 1e-6 * (1.0 + std::fabs(first)));
      const int before = simplex.iterations();
      ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
      if (!settings.perturb_at_start) {
        EXPECT_EQ(simplex.iterations(), before) << "not warm";
      }
    }
  }
}

TEST(PrimalSimplex, ProofsOfInfeasibilityAndUnboundedness) {
  SilentSink sink;
  NeverStop stop;
  // x + y >= 5 with x, y in [0, 2].
  const LpProblem none = make_lp({{1, 0, 2}, {1, 0, 2}}, {{1, 1}}, {{5, kInf}});
  Simplex infeasible(none, sink, stop);
  ASSERT_EQ(infeasible.run_primal({}), SimplexOutcome::infeasible);
  const double y = infeasible.farkas_dual()[0];
  ASSERT_NE(y, 0.0);
  // y (x + y + s) = 0 has no solution: both ends of its range lie on one side of zero.
  const double a = y * (0 + 0 + -kInf), b = y * (2 + 2 - 5);
  EXPECT_TRUE((a < 0 && b < 0) || (a > 0 && b > 0));

  // min -x, x - y <= 1, x, y >= 0.
  const LpProblem open = make_lp({{-1, 0, kInf}, {0, 0, kInf}}, {{1, -1}}, {{-kInf, 1}});
  Simplex unbounded(open, sink, stop);
  ASSERT_EQ(unbounded.run_primal({}), SimplexOutcome::unbounded);
  const Vector<double>& ray = unbounded.primal_ray();
  EXPECT_GT(ray[0], 0.0);
  EXPECT_NEAR(ray[0] - ray[1] + ray[2], 0.0, 1e-12);
  EXPECT_GE(ray[1], 0.0);
  EXPECT_GE(ray[2], 0.0);
}

TEST(PrimalSimplex, LimitsStopTheRun) {
  SilentSink sink;
  NeverStop stop;
  Random random(5);
  const LpProblem lp = random_lp(random, 20, 30);
  SimplexSettings settings;
  settings.iteration_limit = 3;
  Simplex limited(lp, sink, stop);
  EXPECT_EQ(limited.run_primal(settings), SimplexOutcome::iteration_limit);
  EXPECT_EQ(limited.iterations(), 3);
  settings.iteration_limit = 100000;
  EXPECT_EQ(limited.run_primal(settings), SimplexOutcome::optimal);
  expect_optimal(lp, limited);
}

}  // namespace
}  // namespace kelvo
