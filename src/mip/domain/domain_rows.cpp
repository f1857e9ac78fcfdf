// Propagation of rows by their activities.
//
// With slack = U - min_activity and a_j > 0, every point has  a_j (x_j - l_j) <= slack,  so
// x_j <= l_j + slack / a_j; for a_j < 0 the same bounds x_j from below, starting at u_j. The side
// activity >= L is the side <= of the negated row.
#include <cmath>

#include "mip/domain/domain.h"

namespace kelvo {

bool Domain::propagate_row(int row) {
  RowState& state = rows_.state(row);
  const unsigned due = state.flags;
  state.flags &= ~static_cast<unsigned>(kRowAtMostDue | kRowAtLeastDue);
  if (due & kRowRemoved) return true;
  if (state.error > state.error_limit) rows_.sum(row);
  if ((due & kRowOfIndicator) && !propagate_indicator_row(row)) return false;
  if ((due & kRowAtMostDue) && state.upper < kInf && !propagate_side(row, false)) return false;
  if (!(due & kRowAtLeastDue) || state.lower == -kInf) return true;
  // The first side may have moved the activity of the second.
  apply_changes();
  return propagate_side(row, true);
}

bool Domain::propagate_side(int row, bool at_least) {
  const RowState& state = rows_.state(row);
  const int infinite = at_least ? state.max_infinite : state.min_infinite;
  if (infinite > 1) return true;
  const double slack =
      (at_least ? state.max_activity - state.lower : state.upper - state.min_activity) + kRowSlack +
      state.error + kRoundoff * std::abs(at_least ? state.lower : state.upper);
  if (infinite == 1) return tighten_single(row, at_least, slack);
  const Reason reason{ReasonKind::kRow, side_index(row, at_least)};
  if (slack < 0.0) {
    bounds_.set_conflict({-1, 0.0, reason});
    return false;
  }
  if (slack > state.reach) return true;
  const RowView entries = rows_.view(row);
  const double* bounds = bounds_.bounds();
  work_ += entries.length;
  for (int k = 0; k < entries.length; ++k) {
    const int j = entries.index[k];
    const double a = at_least ? -entries.value[k] : entries.value[k];
    const double range = bounds[2 * j + 1] - bounds[2 * j];
    if (!(std::abs(a) * range > slack)) continue;
    if (!tighten_by_row(j, a, slack, reason)) return false;
  }
  return true;
}

// Tightens the bound of column j that a (x_j - near end) <= slack limits.
bool Domain::tighten_by_row(int column, double coefficient, double slack, Reason reason) {
  const bool upper = coefficient > 0.0;
  double near = upper ? bounds_.lower(column) : bounds_.upper(column);
  if (std::isinf(near)) near = 0.0;  // the slack leaves this column out
  const double bound = near + slack / coefficient;
  const double away = upper ? 1.0 : -1.0;
  double value;
  if (bounds_.is_integer(column)) {
    const double rounding = rounding_slack(std::abs(near) + std::abs(bound));
    value = upper ? std::floor(bound + rounding) : std::ceil(bound - rounding);
  } else {
    value = bound + away * (outward_shift(bound) + 4.0 * kRoundoff * std::abs(near));
  }
  const Tightening result = tighten(upper ? upper_of(column) : lower_of(column), value, reason);
  if (result == Tightening::kDone && reason.kind == ReasonKind::kRow) ++uses_[reason.index >> 1];
  return result != Tightening::kConflict;
}

// All entries but one are bounded, so that one is.
bool Domain::tighten_single(int row, bool at_least, double slack) {
  const RowView entries = rows_.view(row);
  work_ += entries.length;
  for (int k = 0; k < entries.length; ++k) {
    const int j = entries.index[k];
    const double a = at_least ? -entries.value[k] : entries.value[k];
    if (!std::isinf(a > 0.0 ? bounds_.lower(j) : bounds_.upper(j)) || a == 0.0) continue;
    return tighten_by_row(j, a, slack, {ReasonKind::kRow, side_index(row, at_least)});
  }
  return true;
}

// An indicator whose row cannot be satisfied is not active.
bool Domain::propagate_indicator_row(int row) {
  const int k = row_indicator_[row];
  const Indicator& indicator = mip_.indicators[k];
  const int inactive = literal_of(indicator.binary, indicator.active == 0);
  if (bounds_.is_fixed(indicator.binary)) return true;
  const RowState& state = rows_.state(row);
  const double margin = kRowSlack + state.error;
  const bool above =
      state.min_infinite == 0 &&
      state.min_activity > indicator.upper + margin + kRoundoff * std::abs(indicator.upper);
  const bool below =
      state.max_infinite == 0 &&
      state.max_activity < indicator.lower - margin - kRoundoff * std::abs(indicator.lower);
  if (!above && !below) return true;
  return make_true(inactive, {ReasonKind::kIndicatorRow, side_index(k, below)});
}

}  // namespace kelvo
