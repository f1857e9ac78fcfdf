#include "lp/presolve/reductions/forcing_row.h"

#include "lp/presolve/presolve_lp.h"
#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// Fixes all columns of row i where its activity is least (at_upper: and equals the upper limit) or
/// greatest, and removes the row.
bool force_columns(PresolveLp& lp, int i, bool at_upper) {
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
    if (!lp.may_remove(lp.matrix[e].col)) return false;
  }
  const auto record_columns = [&lp, i](bool fixed) {
    Stretch stretch{lp.stack.entries.size(), 0};
    for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
      const int j = lp.matrix[e].col;
      if (lp.is_fixed(j) == fixed) lp.stack.entries.add(j, lp.matrix[e].value);
    }
    stretch.end = lp.stack.entries.size();
    return stretch;
  };
  const Stretch columns = record_columns(false), were_fixed = record_columns(true);
  lp.stack.push(ForcingRow(i, at_upper ? kAtUpper : kAtLower, columns, were_fixed));
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix.row_first(i)) {
    const int j = lp.matrix[e].col;
    const bool to_lower = (lp.matrix[e].value > 0.0) == at_upper;
    lp.fix_column(j, to_lower ? lp.lower[j] : lp.upper[j], to_lower ? kAtLower : kAtUpper);
  }
  lp.erase_row(i);
  return true;
}

}  // namespace

bool reduce_by_activity(PresolveLp& lp, int i) {
  const Activity& activity = lp.activity(i);
  const double low = lp.row_lower[i], high = lp.row_upper[i];
  const double least = activity.least(), greatest = activity.greatest();
  const double low_error = activity.min_error, high_error = activity.max_error;
  const auto beyond = [&](double limit) {
    return lp.settings.feasibility_tolerance * std::max(1.0, std::fabs(limit));
  };
  if ((high < kInf && least > high + beyond(high) + low_error) ||
      (low > -kInf && greatest < low - beyond(low) - high_error)) {
    lp.fail(FindingKind::implied_bounds, i);
    return false;
  }
  // A limit reached is a forcing row; one never passed is redundant. What is both, redundant.
  const bool drop_high = high < kInf && greatest + high_error <= high + tol::same_slack(high);
  const bool drop_low = low > -kInf && least - low_error >= low - tol::same_slack(low);
  const bool no_high = high == kInf || drop_high, no_low = low == -kInf || drop_low;
  if (no_high && no_low) {
    lp.remove_row(i, kRemovedRedundantRow);
    return true;
  }
  const double certain = tol::kSame;  // an uncertain sum forces nothing
  if (low_error <= certain && high < kInf && least >= high - tol::same_slack(high)) {
    if (force_columns(lp, i, true)) return true;
  }
  if (high_error <= certain && low > -kInf && greatest <= low + tol::same_slack(low)) {
    if (force_columns(lp, i, false)) return true;
  }
  if (!drop_high && !drop_low) return false;
  lp.change_limits(i, drop_low ? -kInf : low, drop_high ? kInf : high);
  return true;
}

void ForcingRow::restore_duals(const UndoEntries& entries, DualState& duals) const {
  Vector<double>& z = duals.z;
  const double sign = side == kAtUpper ? -1.0 : 1.0;
  double y = 0.0;
  int worst = -1;
  for (int k = columns.begin; k < columns.end; ++k) {
    const double ratio = z[entries[k].index] / entries[k].value;
    if (sign * ratio > sign * y) {
      y = ratio;
      worst = entries[k].index;
    }
  }
  duals.y[row] = y;
  if (worst < 0) return;
  for (const Stretch stretch : {columns, were_fixed}) {
    for (int k = stretch.begin; k < stretch.end; ++k) {
      z[entries[k].index] -= entries[k].value * y;
    }
  }
  z[worst] = 0.0;
}

void ForcingRow::restore_basis(const UndoEntries& entries, PostsolveState& state) const {
  state.basis.rows[row] = kBasic;
  if (state.duals.y[row] == 0.0) return;
  // The dual made the reduced cost of one column 0, of several when they were equally bad.
  int entering = -1;
  for (int k = columns.begin; k < columns.end; ++k) {
    if (state.duals.z[entries[k].index] != 0.0) continue;
    if (entering < 0 || std::fabs(entries[k].value) > std::fabs(entries[entering].value)) {
      entering = k;
    }
  }
  state.basis.cols[entries[entering].index] = kBasic;
  state.basis.rows[row] = side;
}

}  // namespace kelvo
