// Small programs full of what presolve looks for, solutions of them, and what is wrong with a
// solution.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "lp/presolve/presolve.h"
#include "lp/simplex/simplex_support.h"

namespace kelvo::test {

inline SilentSink silent;
inline NeverStop never;

struct Solved {
  SimplexOutcome outcome;
  LpSolution basic;
  double objective;
  int iterations;
};

inline Solved solve(const LpProblem& lp, const Vector<int>* start = nullptr,
                    const double* values = nullptr) {
  Simplex simplex(lp);
  if (start != nullptr) {
    simplex.set_basis(*start, values);
  } else {
    simplex.set_slack_basis();
  }
  SimplexSettings settings;
  settings.feasibility_tolerance = settings.optimality_tolerance = 1e-9;
  Solved solved;
  // The dual simplex may perturb and leave an optimal basis; the primal one stops at it.
  solved.outcome = start == nullptr ? simplex.run_dual(settings) : SimplexOutcome::non_optimal;
  if (solved.outcome != SimplexOutcome::optimal) solved.outcome = simplex.run_primal(settings);
  solved.basic.x.assign(simplex.values().begin(), simplex.values().begin() + lp.num_cols);
  solved.basic.y = simplex.row_duals();
  solved.basic.status = simplex.status();
  solved.basic.z = simplex.reduced_costs();
  solved.basic.z.resize(lp.num_cols);
  solved.objective = simplex.objective();
  solved.iterations = simplex.iterations();
  return solved;
}

/// A point with the values of all variables, columns and logicals, and their multipliers.
struct Point {
  Vector<double> value, multiplier;

  Point(const LpProblem& lp, const Vector<double>& x, const Vector<double>& y)
      : value(x), multiplier(lp.cost) {
    value.resize(lp.num_vars(), 0.0);
    for (int j = 0; j < lp.num_cols; ++j) {
      for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
        const int i = lp.columns.index[k];
        value[lp.num_cols + i] -= lp.columns.value[k] * x[j];
        multiplier[j] -= lp.columns.value[k] * y[i];
      }
    }
    for (int i = 0; i < lp.num_rows; ++i) multiplier[lp.num_cols + i] = -y[i];
  }
  double infeasibility(const LpProblem& lp) const {
    double worst = 0.0;
    for (int v = 0; v < lp.num_vars(); ++v) {
      worst = std::max({worst, value[v] - lp.upper[v], lp.lower[v] - value[v]});
    }
    return worst;
  }
};

/// Largest violation of a bound or row limit.
inline double worst_infeasibility(const LpProblem& lp, const Vector<double>& x) {
  return Point(lp, x, Vector<double>(lp.num_rows, 0.0)).infeasibility(lp);
}

/// Largest violation of any condition on an optimal pair x, y with its reduced costs z; where a
/// variable is off its bound, its multiplier counts.
inline double worst_optimality(const LpProblem& lp, const LpSolution& solution) {
  const Point point(lp, solution.x, solution.y);
  double worst = point.infeasibility(lp);
  for (int v = 0; v < lp.num_vars(); ++v) {
    const double multiplier = point.multiplier[v];
    if (v < lp.num_cols) worst = std::max(worst, std::fabs(multiplier - solution.z[v]));
    const double limit = multiplier > 0.0 ? lp.lower[v] : lp.upper[v];
    worst = std::max(worst, std::min(std::fabs(multiplier), std::fabs(point.value[v] - limit)));
  }
  return worst;
}

/// Largest violation of any condition on an optimal basic solution.
inline double worst_violation(const LpProblem& lp, const LpSolution& solution) {
  const Point point(lp, solution.x, solution.y);
  double worst = point.infeasibility(lp);
  int basic = 0;
  for (int v = 0; v < lp.num_vars(); ++v) {
    const double multiplier = point.multiplier[v];
    const bool at_lower = solution.status[v] == kAtLower;
    if (at_lower || solution.status[v] == kAtUpper) {
      const double limit = at_lower ? lp.lower[v] : lp.upper[v];
      worst = std::max(worst, std::fabs(point.value[v] - limit));
      if (lp.lower[v] != lp.upper[v]) worst = std::max(worst, at_lower ? -multiplier : multiplier);
    } else {
      worst = std::max(worst, std::fabs(multiplier));
      basic += solution.status[v] == kBasic;
    }
  }
  return basic == lp.num_rows ? worst : kInf;
}

/// Random programs in which everything that presolve looks for happens often: short rows and
/// columns, multiples of lines, fixed, free and one-sided columns, ranges, redundant limits.
inline LpProblem busy_lp(Random& random, int m, int n) {
  std::vector<std::vector<double>> rows(m, std::vector<double>(n, 0.0));
  std::vector<ColumnSpec> columns(n);
  std::vector<std::pair<double, double>> limits(m);
  std::vector<double> point(n), dual(m);
  for (double& value : point) value = random.below(9) - 3;
  for (auto& row : rows) {
    const int longest = random.below(3) == 0 ? n : 3;
    for (int k = 1 + random.below(longest); k > 0; --k) row[random.below(n)] = random.below(7) - 3;
  }
  for (int k = random.below(3); k > 0; --k) {  // multiples of rows
    const int from = random.below(m), to = random.below(m);
    const double ratio = random.below(2) == 0 ? 2.0 : -0.5;
    if (from == to) continue;
    for (int j = 0; j < n; ++j) rows[to][j] = ratio * rows[from][j];
  }
  for (int k = random.below(3); k > 0; --k) {  // rows that contain another one, and sums of rows
    const int from = random.below(m), to = random.below(m), extra = random.below(m);
    const double ratio = random.below(2) == 0 ? 1.0 : -2.0;
    if (from == to || extra == to) continue;
    for (int j = 0; j < n; ++j) {
      const double rest = random.below(3) == 0 ? random.below(3) : 0.0;
      rows[to][j] = ratio * rows[from][j] + (k == 1 ? rows[extra][j] : rest);
    }
  }
  for (int k = random.below(3); k > 0; --k) {  // multiples of columns
    const int from = random.below(n), to = random.below(n);
    const double ratio = random.below(2) == 0 ? 2.0 : -0.5;
    if (from == to) continue;
    for (auto& row : rows) row[to] = ratio * row[from];
  }
  for (int i = 0; i < m; ++i) {
    double activity = 0.0;
    for (int j = 0; j < n; ++j) activity += rows[i][j] * point[j];
    const double give = random.below(2) == 0 ? 0.0 : random.below(6);
    switch (random.below(5)) {
      case 0:
        limits[i] = {activity - give, kInf};
        dual[i] = random.below(3);
        break;
      case 1:
        limits[i] = {-kInf, activity + give};
        dual[i] = -random.below(3);
        break;
      case 2:
        limits[i] = {activity - give, activity + random.below(4)};
        dual[i] = random.below(5) - 2;
        break;
      default:
        limits[i] = {activity, activity};
        dual[i] = random.below(5) - 2;
    }
  }
  const bool proportional_costs = random.below(2) == 0;
  for (int j = 0; j < n; ++j) {
    double priced = 0.0;
    for (int i = 0; i < m; ++i) priced += dual[i] * rows[i][j];
    const double low = point[j] - (random.below(2) == 0 ? 0 : random.below(4));
    const double high = point[j] + (random.below(2) == 0 ? 0 : random.below(6));
    const double extra = proportional_costs ? 0.0 : random.below(4);
    switch (random.below(6)) {
      case 0:
        columns[j] = {priced, -kInf, kInf};
        break;
      case 1:
        columns[j] = {priced - extra, -kInf, high};
        break;
      case 2:
        columns[j] = {priced + random.below(7) - 3, low, high};
        break;
      case 3:
        columns[j] = {0.0, low, kInf};
        break;
      default:
        columns[j] = {priced + extra, low, kInf};
    }
  }
  return dense_lp(columns, rows, limits);
}

}  // namespace kelvo::test
