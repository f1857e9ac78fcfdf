// A column whose only entry is in one row acts as a slack of that row.
//
// With L <= r + a x_j <= U, r the rest of the row, and l <= x_j <= u the row becomes
//
//     L - max(a l, a u) <= r <= U - min(a l, a u),
//
// for equations always, where x_j = (rhs - r) / a passes its cost on to the other columns, and for
// inequalities when the cost is 0.
//
// Way back: y_i = y_i' + c_j / a and z_j = -a y_i'. Where the new row binds, x_j is at the bound
// that made the limit and the row binds too. Where it does not, one of the two is basic.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

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
  if ((std::isfinite(greatest) && std::fabs(greatest) > tol::kHugeBound) ||
      (std::isfinite(least) && std::fabs(least) > tol::kHugeBound)) {
    return false;
  }
  const double new_low = low == -kInf ? -kInf : low - greatest;
  const double new_high = high == kInf ? kInf : high - least;
  if (new_low == -kInf && new_high == kInf) return false;  // no slack: it frees the row
  lp.stack.begin(UndoKind::slack_column);
  UndoRecord& record = lp.stack.top();
  record.row = i;
  record.col = j;
  record.a = a;
  record.cost = cost;
  record.lower = lp.lower[j];
  record.upper = lp.upper[j];
  record.low2 = low;
  record.upp2 = high;
  if (new_low == new_high) record.flag |= kEndsCoincide;
  lp.record_row_once(i);
  if (cost != 0.0) {
    for (int f = lp.matrix.row_first(i); f >= 0; f = lp.matrix[f].row_next) {
      const int k = lp.matrix[f].col;
      if (k != j) lp.change_cost(k, sound_sum(lp.cost[k], -cost * lp.matrix[f].value / a));
    }
    lp.offset += cost * low / a;
  }
  lp.erase_column(j);
  lp.change_limits(i, new_low, new_high);
  return true;
}

namespace {

/// The new row is slack: x_j at a bound with the row slack too, or the row at a limit with x_j
/// between its bounds. Of the four choices the one that violates least.
void settle_between(const UndoRecord& record, double rest, PostsolveState& state) {
  const int i = record.row, j = record.col;
  const double a = record.a;
  const auto outside = [](double value, double low, double high) {
    return std::max({0.0, low - value, value - high});
  };
  double best = kInf;
  const auto offer = [&](double x, double violation, int col_status, int row_status) {
    if (violation >= best) return;
    best = violation;
    state.x[j] = x;
    state.col_status[j] = col_status;
    state.row_status[i] = row_status;
  };
  if (record.low2 != record.upp2) {
    for (const int side : {kAtLower, kAtUpper}) {
      const double x = side == kAtLower ? record.lower : record.upper;
      if (!std::isfinite(x)) continue;
      offer(x, outside(rest + a * x, record.low2, record.upp2), side, kBasic);
    }
  }
  for (const int side : {kAtLower, kAtUpper}) {
    const double limit = side == kAtLower ? record.low2 : record.upp2;
    if (!std::isfinite(limit)) continue;
    const double x = (limit - rest) / a;
    offer(x, std::fabs(a) * outside(x, record.lower, record.upper), kBasic, side);
  }
}

}  // namespace

void undo_slack_column(const PostsolveStack& stack, const UndoRecord& record,
                       PostsolveState& state) {
  const int i = record.row, j = record.col;
  const double a = record.a;
  const int side = active_side(state.row_status[i], state.y[i], record.flag & kEndsCoincide);
  state.z[j] = -a * state.y[i];
  state.y[i] += record.cost / a;
  if (side == kAtLower || side == kAtUpper) {
    const bool to_upper = (side == kAtLower) == (a > 0.0);
    state.x[j] = to_upper ? record.upper : record.lower;
    state.col_status[j] = to_upper ? kAtUpper : kAtLower;
    state.row_status[i] = side;
    return;
  }
  settle_between(record, stack.dot(record.begin, record.end, state.x), state);
}

}  // namespace kelvo
