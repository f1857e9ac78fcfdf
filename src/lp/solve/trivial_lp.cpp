#include "lp/solve/trivial_lp.h"

#include <cmath>

#include "lp/solve/verify.h"
#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

/// Puts every column at its best bound; kUnbounded with a direction when there is no best one.
int settle_columns(const Model& model, SolutionRecord& record, Vector<int>& status) {
  int outcome = kOptimal;
  for (int j = 0; j < model.num_cols; ++j) {
    const double lower = finite_or_infinite(model.lower[j]);
    const double upper = finite_or_infinite(model.upper[j]);
    const double cost = model.sense * model.objective[j];
    const bool has_lower = lower > -kInf, has_upper = upper < kInf;
    const bool up = cost < 0.0 ? has_upper : !has_lower && has_upper;
    const bool at_bound = up || has_lower;
    status[j] = up ? kAtUpper : has_lower ? kAtLower : kFreeSuper;
    record.x[j] = at_bound ? (up ? upper : lower) : 0.0;
    if (outcome == kOptimal && ((cost < 0.0 && !has_upper) || (cost > 0.0 && !has_lower))) {
      outcome = kUnbounded;
      record.ray.assign(model.num_cols, 0.0);
      record.ray[j] = cost < 0.0 ? 1.0 : -1.0;
    }
  }
  return outcome;
}

/// With no columns every activity is 0; a row that does not admit it proves infeasibility.
int settle_rows(const Model& model, double tolerance, SolutionRecord& record) {
  for (int i = 0; i < model.num_rows; ++i) {
    const double wrong = row_infeasibility(model, i, 0.0);
    if (std::fabs(wrong) <= tolerance) continue;
    record.farkas.assign(model.num_rows, 0.0);
    record.farkas[i] = wrong < 0.0 ? 1.0 : -1.0;
    return kInfeasible;
  }
  return kOptimal;
}

}  // namespace

bool has_empty_interval(const Model& model, double tolerance) {
  const auto empty = [tolerance](double lower, double upper) {
    return lower > upper + tolerance || lower == kInf || upper == -kInf;
  };
  for (int j = 0; j < model.num_cols; ++j) {
    if (empty(finite_or_infinite(model.lower[j]), finite_or_infinite(model.upper[j]))) return true;
  }
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    if (empty(limits.lower, limits.upper)) return true;
  }
  return false;
}

bool solve_trivial_lp(const Model& model, double tolerance, LpAnswer& answer) {
  if (has_empty_interval(model, tolerance)) {
    answer.status = kInfeasible;
    return true;
  }
  if (model.num_rows > 0 && model.num_cols > 0) return false;
  SolutionRecord& record = answer.record;
  Vector<int> status(model.num_cols + model.num_rows, kBasic);
  record.x.assign(model.num_cols, 0.0);
  record.pi.assign(model.num_rows, 0.0);
  answer.status = model.num_cols == 0 ? settle_rows(model, tolerance, record)
                                      : settle_columns(model, record, status);
  complete_and_measure(model, status, record);
  record.has_primal = record.has_dual = record.has_basis = true;
  record.primal_feasible = answer.status != kInfeasible;
  record.dual_feasible = answer.status != kUnbounded;
  record.condition = 1.0;
  lp_to_stored_status(status, model, answer.basis);
  return true;
}

}  // namespace kelvo
