#include "lp/presolve/reductions/duplicate_columns.h"

#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/dual_fixing.h"
#include "lp/presolve/reductions/parallel_lines.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

bool same_price(double own, double proportional) {
  constexpr double kSameCost = 1e-13;
  return std::fabs(own - proportional) <=
         kSameCost * std::max(std::fabs(own), std::fabs(proportional));
}

/// Whether x_j can take over whatever x_k gives up.
bool takes_over(const PresolveLp& lp, int j, int k, double alpha) {
  return !lp.is_integer(j) || (lp.is_integer(k) && is_whole(alpha));
}

/// Fixes column k when column j dominates it; a_k = alpha a_j, delta = c_k - alpha c_j.
bool fix_dominated(PresolveLp& lp, int j, int k, double alpha, double delta) {
  if (!lp.settings.dual_reductions || std::fabs(delta) <= lp.settings.optimality_tolerance) {
    return false;
  }
  if (!takes_over(lp, j, k, alpha)) return false;
  const bool k_falls = delta > 0.0;
  const bool j_rises = k_falls == (alpha > 0.0);
  if (!make_room(lp, j, j_rises)) return false;
  const double bound = k_falls ? lp.lower[k] : lp.upper[k];
  if (!std::isfinite(bound)) {
    lp.fail(FindingKind::dual_bounds_column, k);
    return false;
  }
  lp.fix_column(k, bound, k_falls ? kAtLower : kAtUpper);
  return true;
}

/// Whether every value of x_j + alpha x_k that the bounds allow is one of allowed x_j and x_k.
bool fill_the_sum(const PresolveLp& lp, int j, int k, double alpha) {
  if (!lp.is_integer(j) && !lp.is_integer(k)) return true;
  return takes_over(lp, j, k, alpha) && lp.is_integer(j) &&
         lp.upper[j] - lp.lower[j] >= std::fabs(alpha) - 1.0;
}

bool merge_columns(PresolveLp& lp, int j, int k, double alpha) {
  const double at_lower = alpha * lp.lower[k], at_upper = alpha * lp.upper[k];
  const double low = lp.lower[j] + std::min(at_lower, at_upper);
  const double high = lp.upper[j] + std::max(at_lower, at_upper);
  if ((std::isfinite(low) && std::fabs(low) > tol::kHugeBound) ||
      (std::isfinite(high) && std::fabs(high) > tol::kHugeBound)) {
    return false;
  }
  // A free x' may stay nonbasic at 0; then both columns must have a place there.
  const auto at_zero = [&lp](int column) {
    return lp.lower[column] == 0.0 || lp.upper[column] == 0.0 ||
           (lp.lower[column] == -kInf && lp.upper[column] == kInf);
  };
  if (low == -kInf && high == kInf && !(at_zero(j) && at_zero(k))) return false;
  lp.stack.push(DuplicateColumn{k, j, alpha, lp.lower[j], lp.upper[j], lp.lower[k], lp.upper[k],
                                lp.is_integer(j)});
  lp.erase_column(k);
  lp.change_bounds(j, low, high);
  return true;
}

}  // namespace

void merge_duplicate_columns(PresolveLp& lp, ParallelLines& columns) {
  using Gone = ParallelLines::Gone;
  columns.for_each_pair([&lp](int j, int k, double alpha) {
    if (lp.is_fixed(j) || lp.is_fixed(k)) return Gone::neither;
    const double priced = alpha * lp.cost[j];
    const double delta = lp.cost[k] - priced;
    if (same_price(lp.cost[k], priced)) {
      const bool mergeable = lp.settings.nonlinear && lp.may_remove(j) && lp.may_remove(k) &&
                             std::fabs(alpha) <= lp.settings.coefficient_ratio &&
                             std::fabs(alpha) >= 1.0 / lp.settings.coefficient_ratio;
      if (!mergeable) return Gone::neither;
      if (fill_the_sum(lp, j, k, alpha)) {
        return merge_columns(lp, j, k, alpha) ? Gone::other : Gone::neither;
      }
      const bool turned =
          fill_the_sum(lp, k, j, 1.0 / alpha) && merge_columns(lp, k, j, 1.0 / alpha);
      return turned ? Gone::kept : Gone::neither;
    }
    if (lp.may_remove(k) && fix_dominated(lp, j, k, alpha, delta)) return Gone::other;
    if (lp.may_remove(j) && !lp.ended() && fix_dominated(lp, k, j, 1.0 / alpha, -delta / alpha)) {
      return Gone::kept;
    }
    return Gone::neither;
  });
}

namespace {

double outside(double value, double low, double high) {
  return std::max({0.0, low - value, value - high});
}

/// The finite ones of two bounds, the one nearest to 0 first; their number.
int finite_bounds(double lower, double upper, double (&bounds)[2]) {
  int count = 0;
  if (std::isfinite(lower)) bounds[count++] = lower;
  if (std::isfinite(upper)) bounds[count++] = upper;
  if (count == 2 && std::fabs(upper) < std::fabs(lower)) std::swap(bounds[0], bounds[1]);
  return count;
}

}  // namespace

/// One of the two at a bound, leaving the bounds of the other as little as possible; of integer
/// columns, which the one that stays may force between whole numbers, at the nearest whole ones.
void DuplicateColumn::restore_values(const UndoEntries&, Vector<double>& x) const {
  const double total = x[kept];
  double best = kInf, bounds[2];
  x[gone] = 0.0;
  const auto offer = [&](double kept_value, double gone_value, double violation) {
    if (!(violation < best)) return;
    best = violation;
    x[kept] = kept_value;
    x[gone] = gone_value;
  };
  const auto offer_gone = [&](double value) {
    const double rest = total - ratio * value;
    offer(rest, value,
          std::max(outside(rest, kept_lower, kept_upper),
                   std::fabs(ratio) * outside(value, gone_lower, gone_upper)));
  };
  for (int k = 0, count = finite_bounds(gone_lower, gone_upper, bounds); k < count; ++k) {
    offer_gone(bounds[k]);
  }
  for (int k = 0, count = finite_bounds(kept_lower, kept_upper, bounds); k < count; ++k) {
    const double rest = (total - bounds[k]) / ratio;
    if (integer) {
      offer_gone(std::floor(rest));
      offer_gone(std::ceil(rest));
    } else {
      offer(bounds[k], rest, std::fabs(ratio) * outside(rest, gone_lower, gone_upper));
    }
  }
}

void DuplicateColumn::restore_duals(const UndoEntries&, DualState& duals) const {
  duals.z[gone] = ratio * duals.z[kept];
}

void DuplicateColumn::restore_basis(const UndoEntries&, PostsolveState& state) const {
  int& kept_status = state.basis.cols[kept];
  int& gone_status = state.basis.cols[gone];
  double& kept_x = state.x[kept];
  double& gone_x = state.x[gone];
  if (at_end(kept_status)) {
    gone_status = side_times(kept_status, ratio);
    kept_x = kept_status == kAtLower ? kept_lower : kept_upper;
    gone_x = gone_status == kAtLower ? gone_lower : gone_upper;
  } else if (gone_x == gone_lower || gone_x == gone_upper) {
    gone_status = gone_x == gone_lower ? kAtLower : kAtUpper;
  } else if (kept_x == kept_lower || kept_x == kept_upper) {
    gone_status = kept_status;
    kept_status = kept_x == kept_lower ? kAtLower : kAtUpper;
  } else {
    gone_status = kFreeSuper;
  }
}

void DuplicateColumn::crush_basis(BasisState& basis) const {
  int& status = basis.cols[kept];
  const int other = side_times(basis.cols[gone], ratio);
  if (status == kBasic || other == kBasic) {
    status = kBasic;
  } else if (status != other) {
    status = kFreeSuper;  // between the ends of the sum
  }
}

bool DuplicateColumn::crush_form(const UndoEntries&, LinearForm& form) const {
  if (form.weight[gone] != ratio * form.weight[kept]) return false;
  form.weight[gone] = 0.0;
  return true;
}

bool DuplicateColumn::reprice(const UndoEntries&, Repricing& repricing) {
  if (!same_price(repricing.cost[gone], ratio * repricing.cost[kept])) return false;
  repricing.cost[gone] = 0.0;
  return true;
}

}  // namespace kelvo
