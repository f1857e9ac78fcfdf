#include "lp/presolve/reductions/slack_column.h"

#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// True when there is a whole value of an integer column for every rest of the row (see above).
bool fills_every_gap(PresolveLp& lp, int e) {
  const int i = lp.matrix[e].row;
  const double low = lp.row_lower[i], high = lp.row_upper[i];
  if (!lp.is_integer(lp.matrix[e].col) || high - low >= std::fabs(lp.matrix[e].value)) return true;
  return stays_whole(lp, e, low) && stays_whole(lp, e, high);
}

bool is_huge(double bound) {
  return std::isfinite(bound) && std::fabs(bound) > tol::kHugeBound;
}

}  // namespace

bool absorb_slack_column(PresolveLp& lp, int j) {
  if (!lp.may_remove(j) || !lp.settings.nonlinear) return false;
  const int e = lp.matrix.col_first(j);
  const int i = lp.matrix[e].row;
  const double a = lp.matrix[e].value;
  const double cost = lp.cost[j];
  const double low = lp.row_lower[i], high = lp.row_upper[i];
  if (cost != 0.0 && low != high) return false;
  if (std::fabs(a) < tol::kSmallPivot || lp.matrix.row_count(i) < 2) return false;
  if (cost != 0.0 && !lp.row_is_within(i, lp.settings.coefficient_ratio * std::fabs(a))) {
    return false;
  }
  if (!cost_may_pass(lp, e)) return false;
  const double at_lower = a * lp.lower[j], at_upper = a * lp.upper[j];
  const double greatest = std::max(at_lower, at_upper), least = std::min(at_lower, at_upper);
  if (is_huge(greatest) || is_huge(least)) return false;
  const double new_low = low == -kInf ? -kInf : low - greatest;
  const double new_high = high == kInf ? kInf : high - least;
  if (new_low == -kInf && new_high == kInf) return false;  // no slack: it frees the row
  if (!fills_every_gap(lp, e)) return false;
  lp.stack.push(SlackColumn{i, j, lp.record_row_once(i), a, cost, lp.lower[j], lp.upper[j], low,
                            high, new_low == new_high, lp.is_integer(j)});
  substitute_in_objective(lp, e, low);
  lp.erase_column(j);
  lp.change_limits(i, new_low, new_high);
  return true;
}

/// x_j at a bound, or the row at a limit; an integer column at the whole number next to that. Of
/// these the one that violates least, the bounds first.
void SlackColumn::restore_values(const UndoEntries& entries, Vector<double>& x) const {
  x[col] = 0.0;  // the copy of the row may have the column
  const double rest = entries.dot(others, x);
  const auto outside = [](double value, double low, double high) {
    return std::max({0.0, low - value, value - high});
  };
  double best = kInf;
  const auto offer = [&](double value, double violation) {
    if (!(violation < best)) return;
    best = violation;
    x[col] = value;
  };
  if (!is_equation()) {
    for (const double bound : {lower, upper}) {
      if (std::isfinite(bound)) offer(bound, outside(rest + a * bound, row_lower, row_upper));
    }
  }
  for (const double limit : {row_lower, row_upper}) {
    if (!std::isfinite(limit)) continue;
    const double value = (limit - rest) / a;
    if (!integer) {
      offer(value, std::fabs(a) * outside(value, lower, upper));
      continue;
    }
    for (const double whole : {std::floor(value), std::ceil(value)}) {
      offer(whole, std::max(std::fabs(a) * outside(whole, lower, upper),
                            outside(rest + a * whole, row_lower, row_upper)));
    }
  }
}

void SlackColumn::restore_duals(const UndoEntries&, DualState& duals) const {
  duals.z[col] = -a * duals.y[row];
  duals.y[row] += cost / a;
}

void SlackColumn::restore_basis(const UndoEntries& entries, PostsolveState& state) const {
  BasisState& basis = state.basis;
  double& x = state.x[col];
  const int side = active_side(basis.rows[row], -state.duals.z[col] / a, ends_coincide);
  if (at_end(side)) {
    // The rest of the row is least where the column takes most.
    basis.rows[row] = side;
    basis.cols[col] = side_times(opposite_side(side), a);
    x = basis.cols[col] == kAtLower ? lower : upper;
    return;
  }
  if (!is_equation() && (x == lower || x == upper)) {
    basis.cols[col] = x == lower ? kAtLower : kAtUpper;
    basis.rows[row] = kBasic;
    return;
  }
  basis.cols[col] = kBasic;
  const double value = x;
  x = 0.0;
  const double activity = entries.dot(others, state.x) + a * value;
  x = value;
  const bool at_lower = std::fabs(activity - row_lower) <= std::fabs(activity - row_upper);
  basis.rows[row] = at_lower ? kAtLower : kAtUpper;
}

void SlackColumn::crush_basis(BasisState& basis) const {
  const int gone = basis.cols[col];
  if (gone == kBasic) {
    basis.rows[row] = kBasic;
  } else if (basis.rows[row] != kBasic && at_end(gone)) {
    basis.rows[row] = side_times(opposite_side(gone), a);
  }
}

bool SlackColumn::crush_form(const UndoEntries& entries, LinearForm& form) const {
  if (form.weight[col] != 0.0 && !is_equation()) return false;
  substitute_in_form(form, col, a, row_lower, entries, others);
  form.weight[col] = 0.0;  // the copy of the row may have it
  return true;
}

bool SlackColumn::reprice(const UndoEntries& entries, Repricing& repricing) {
  cost = repricing.cost[col];
  if (cost != 0.0 && !is_equation()) return false;
  repricing.substitute(col, a, row_lower, entries, others);
  repricing.cost[col] = 0.0;
  return true;
}

}  // namespace kelvo
