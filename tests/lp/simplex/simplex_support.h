// Linear programs for tests of the simplex methods, and the conditions their answers must meet.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/random.h"
#include "lp/simplex/simplex.h"
#include "support/recording_sink.h"
#include "support/sparse_lines.h"

namespace kelvo::test {

/// Stops at the call of that number, as a stop check or as a hook.
class StopAt final : public StopCheck, public IterationHook {
 public:
  explicit StopAt(int calls, StopReason reason = StopReason::user_abort)
      : calls_(calls), reason_(reason) {}
  StopReason check() override { return seen_++ >= calls_ ? reason_ : StopReason::none; }
  int before_iteration(bool, bool) override { return requested() ? 1 : 0; }
  void never_again() { calls_ = 2100000000; }

 private:
  int calls_;
  StopReason reason_;
  int seen_ = 0;
};

struct ColumnSpec {
  double cost, lower, upper;
};

/// A program from dense rows; limits are those of the row activities.
inline LpProblem dense_lp(const std::vector<ColumnSpec>& columns, const DenseLines& rows,
                          const std::vector<std::pair<double, double>>& limits) {
  LpProblem lp;
  lp.num_rows = static_cast<int>(rows.size());
  lp.num_cols = static_cast<int>(columns.size());
  for (const ColumnSpec& column : columns) {
    lp.cost.push_back(column.cost);
    lp.lower.push_back(column.lower);
    lp.upper.push_back(column.upper);
  }
  for (const auto& [low, high] : limits) {
    lp.cost.push_back(0.0);
    lp.lower.push_back(-high);
    lp.upper.push_back(-low);
  }
  lp.rows = sparse_lines(rows, lp.num_cols);
  lp.columns = transpose(lp.rows);
  return lp;
}

/// Random rows through a known point. With `open`, some variables are free or one-sided and costs
/// are made from a known dual solution, so that an optimum exists all the same.
inline LpProblem random_feasible_lp(Random& random, int m, int n, bool open) {
  std::vector<double> point;
  std::vector<double> dual;
  std::vector<ColumnSpec> columns;
  std::vector<std::vector<double>> rows(m, std::vector<double>(n, 0.0));
  std::vector<std::pair<double, double>> limits;
  for (int j = 0; j < n; ++j) point.push_back(random.below(12) - 4);
  for (auto& row : rows) {
    double activity = 0.0;
    for (int j = 0; j < n; ++j) {
      if (random.below(3) != 0) continue;
      row[j] = random.below(9) - 4;
      activity += row[j] * point[j];
    }
    switch (random.below(4)) {
      case 0:
        limits.emplace_back(activity - random.below(6), kInf);
        dual.push_back(random.below(5));
        break;
      case 1:
        limits.emplace_back(-kInf, activity + random.below(6));
        dual.push_back(-random.below(5));
        break;
      case 2:
        limits.emplace_back(activity, activity);
        dual.push_back(random.below(9) - 4);
        break;
      default:
        limits.emplace_back(activity - random.below(4), activity + random.below(4));
        dual.push_back(random.below(9) - 4);
    }
  }
  for (int j = 0; j < n; ++j) {
    double priced = 0.0;
    for (int i = 0; i < m; ++i) priced += dual[i] * rows[i][j];
    const double low = point[j] - random.below(5);
    const double high = point[j] + random.below(8);
    const int kind = open ? random.below(4) : 3;
    if (kind == 0) columns.push_back({priced, -kInf, kInf});
    if (kind == 1) columns.push_back({priced + random.below(5), low, kInf});
    if (kind == 2) columns.push_back({priced - random.below(5), -kInf, high});
    if (kind == 3) columns.push_back({static_cast<double>(random.below(21) - 10), low, high});
  }
  return dense_lp(columns, rows, limits);
}

/// Every optimality condition of the answer, from the problem's own data, strong duality included:
/// the Lagrangian bound of the row duals must reach the objective.
inline void expect_optimal(const LpProblem& lp, const Simplex& simplex) {
  const Vector<double>& x = simplex.values();
  const Vector<double>& y = simplex.row_duals();
  std::vector<double> residual(lp.num_rows, 0.0);
  double objective = lp.offset;
  double bound = lp.offset;
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
    EXPECT_NEAR(reduced, simplex.reduced_costs()[j], 1e-7);
    EXPECT_GE(x[j], lp.lower[j] - 1e-6);
    EXPECT_LE(x[j], lp.upper[j] + 1e-6);
    objective += lp.cost[j] * x[j];
    if (std::fabs(reduced) <= 1e-6) continue;
    const double at = reduced > 0.0 ? lp.lower[j] : lp.upper[j];
    EXPECT_TRUE(std::isfinite(at)) << "variable " << j;
    bound += reduced * at;
  }
  for (double r : residual) EXPECT_NEAR(r, 0.0, 1e-7);
  EXPECT_NEAR(objective, simplex.objective(), 1e-7 * (1.0 + std::fabs(objective)));
  EXPECT_NEAR(objective, bound, 1e-4 * (1.0 + std::fabs(objective)));
}

/// The bounds on y'(A x + s) must exclude 0.
inline void expect_infeasibility_proof(const LpProblem& lp, const Vector<double>& y) {
  double low = 0.0;
  double high = 0.0;
  for (int j = 0; j < lp.num_vars(); ++j) {
    double alpha = j < lp.num_cols ? 0.0 : y[j - lp.num_cols];
    if (j < lp.num_cols) {
      for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
        alpha += lp.columns.value[k] * y[lp.columns.index[k]];
      }
    }
    if (std::fabs(alpha) < 1e-9) continue;
    low += std::fmin(alpha * lp.lower[j], alpha * lp.upper[j]);
    high += std::fmax(alpha * lp.lower[j], alpha * lp.upper[j]);
  }
  EXPECT_TRUE(low > 1e-9 || high < -1e-9) << low << " " << high;
}

}  // namespace kelvo::test
