#include "lp/solve/trivial_lp.h"

#include <cmath>

#include "lp/form/verification.h"

namespace kelvo {

namespace {

/// Puts every column at its best bound; unbounded with a direction when there is no best one.
LpOutcome settle_columns(const LpProblem& lp, LpAnswer& answer) {
  LpOutcome outcome = LpOutcome::optimal;
  for (int j = 0; j < lp.num_cols; ++j) {
    const double lower = lp.lower[j], upper = lp.upper[j], cost = lp.cost[j];
    const bool has_lower = lower > -kInf, has_upper = upper < kInf;
    const bool up = cost < 0.0 ? has_upper : !has_lower && has_upper;
    answer.solution.status[j] = up ? kAtUpper : has_lower ? kAtLower : kFreeSuper;
    answer.solution.x[j] = up ? upper : has_lower ? lower : 0.0;
    if (outcome == LpOutcome::optimal &&
        ((cost < 0.0 && !has_upper) || (cost > 0.0 && !has_lower))) {
      outcome = LpOutcome::unbounded;
      answer.ray.assign(lp.num_cols, 0.0);
      answer.ray[j] = cost < 0.0 ? 1.0 : -1.0;
    }
  }
  return outcome;
}

/// With no columns every activity is 0; a row that does not admit it proves infeasibility.
LpOutcome settle_rows(const LpProblem& lp, double tolerance, LpAnswer& answer) {
  for (int i = 0; i < lp.num_rows; ++i) {
    if (lp.lower[i] <= tolerance && lp.upper[i] >= -tolerance) continue;
    answer.farkas.assign(lp.num_rows, 0.0);
    answer.farkas[i] = lp.upper[i] < 0.0 ? 1.0 : -1.0;  // the activity must be positive
    return LpOutcome::infeasible;
  }
  return LpOutcome::optimal;
}

}  // namespace

bool solve_trivial_lp(const LpProblem& lp, double tolerance, LpAnswer& answer) {
  if (find_empty_interval(lp, tolerance) >= 0) {
    answer.outcome = LpOutcome::infeasible;
    return true;
  }
  if (lp.num_rows > 0 && lp.num_cols > 0) return false;
  answer.solution.status.assign(lp.num_vars(), kBasic);
  answer.solution.x.assign(lp.num_cols, 0.0);
  answer.solution.y.assign(lp.num_rows, 0.0);
  answer.outcome =
      lp.num_cols == 0 ? settle_rows(lp, tolerance, answer) : settle_columns(lp, answer);
  complete_and_measure(ProgramView(lp), answer.solution);
  answer.has_solution = true;
  answer.primal_feasible = answer.outcome != LpOutcome::infeasible;
  answer.dual_feasible = answer.outcome != LpOutcome::unbounded;
  answer.condition = 1.0;
  return true;
}

}  // namespace kelvo
