// Rows against the bounds on their activity.
//
// A limit that the bounds on the columns keep by themselves is dropped, and the row with its last
// limit. A row whose least activity is its upper limit (or its greatest the lower one) forces every
// column to the bound that attains it.
//
// Way back of a forcing row: the columns come back first, nonbasic with the reduced costs z_j that
// they have for y_i = 0, some of the wrong sign. The dual y_i, negative for a row at its upper
// limit, is taken as far from 0 as the worst of them needs, min z_j / a_ij over them; that column
// becomes basic, the row nonbasic.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// Fixes all columns of row i where its activity is least (at_upper: and equals the upper limit) or
/// greatest, and removes the row.
bool force_columns(PresolveLp& lp, int i, bool at_upper) {
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
    if (!lp.may_remove(lp.matrix[e].col)) return false;
  }
  lp.stack.begin(UndoKind::forcing_row);
  lp.stack.top().row = i;
  lp.stack.top().flag = at_upper ? kAtUpper : kAtLower;
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
    if (!lp.is_fixed(lp.matrix[e].col)) lp.stack.add(lp.matrix[e].col, lp.matrix[e].value);
  }
  lp.stack.split();
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
    if (lp.is_fixed(lp.matrix[e].col)) lp.stack.add(lp.matrix[e].col, lp.matrix[e].value);
  }
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix.row_first(i)) {
    const int j = lp.matrix[e].col;
    const bool to_lower = (lp.matrix[e].value > 0.0) == at_upper;
    lp.fix_column(j, to_lower ? lp.lower[j] : lp.upper[j], to_lower ? kAtLower : kAtUpper);
  }
  lp.remove_row(i);
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
    lp.remove_row(i);
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

void undo_forcing_row(const PostsolveStack& stack, const UndoRecord& record,
                      PostsolveState& state) {
  const int i = record.row;
  const double sign = record.flag == kAtUpper ? -1.0 : 1.0;
  double y = 0.0;
  int entering = -1;
  for (int k = record.begin; k < record.middle; ++k) {
    const double ratio = state.z[stack.entry(k).index] / stack.entry(k).value;
    if (sign * ratio > sign * y) {
      y = ratio;
      entering = stack.entry(k).index;
    }
  }
  state.y[i] = y;
  if (entering < 0) return;
  for (int k = record.begin; k < record.end; ++k) {
    state.z[stack.entry(k).index] -= stack.entry(k).value * y;
  }
  state.z[entering] = 0.0;
  state.col_status[entering] = kBasic;
  state.row_status[i] = record.flag;
}

}  // namespace kelvo
