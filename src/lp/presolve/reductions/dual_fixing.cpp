// Columns that no row holds back in the direction their cost draws them.
//
// With c_j >= 0 and every row content with a smaller x_j the column goes to its lower bound; with
// c_j > 0 and no such bound the program is unbounded or infeasible. With c_j = 0 and no bound the
// column can satisfy all of its rows for whatever the others do, so it goes with its rows.
//
// A column that its cost draws, or lets go, in a direction in which a single row holds it back, and
// which wants to go there for the sake of its other rows, goes until that row binds: the row
// becomes an equation. The way back only has to name the side: with z_j >= 0 (no upper bound),
// c_j <= 0 and a_rj y_r >= 0 for the rows that gain, a_ij y_i = c_j - z_j - sum a_rj y_r <= 0.
//
// Way back of the latter: all of these rows have y_i = 0; x_j moves as far as the most demanding
// row needs, which binds while x_j is basic; the other rows are slack.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace {

/// The limit of row i that an increase (up) or decrease of a column with entry a runs against, or,
/// asked with the other direction, the one it moves away from.
double limit_ahead(const PresolveLp& lp, int i, double a, bool up) {
  return (a > 0.0) == up ? lp.row_upper[i] : lp.row_lower[i];
}

/// Rows as header (row, entry of the column), (number of other entries, limit the column has to
/// meet), then the other entries.
void remove_with_rows(PresolveLp& lp, int j, bool up) {
  lp.stack.begin(UndoKind::free_direction);
  lp.stack.top().col = j;
  lp.stack.top().flag = up ? 1 : -1;
  lp.stack.top().lower = up ? lp.lower[j] : lp.upper[j];
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int i = lp.matrix[e].row;
    const double a = lp.matrix[e].value;
    lp.stack.add(i, a);
    lp.stack.add(lp.matrix.row_count(i) - 1, limit_ahead(lp, i, a, !up));
    lp.record_row(i, j);
    lp.work += lp.matrix.row_count(i);
  }
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix.col_first(j)) {
    lp.erase_row(lp.matrix[e].row);
  }
  lp.erase_column(j);
}

}  // namespace

bool make_room(PresolveLp& lp, int j, bool above) {
  if (above ? lp.upper[j] == kInf : lp.lower[j] == -kInf) return true;
  if (!lp.may_remove(j) || !lp.is_implied(j, above)) return false;
  lp.change_bounds(j, above ? lp.lower[j] : -kInf, above ? kInf : lp.upper[j]);
  return true;
}

bool fix_by_cost(PresolveLp& lp, int j) {
  if (!lp.may_remove(j)) return false;
  bool up_blocked = false, down_blocked = false;
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int i = lp.matrix[e].row;
    const double a = lp.matrix[e].value;
    up_blocked = up_blocked || std::isfinite(limit_ahead(lp, i, a, true));
    down_blocked = down_blocked || std::isfinite(limit_ahead(lp, i, a, false));
    ++lp.work;
    if (up_blocked && down_blocked) return false;
  }
  const double cost = lp.cost[j];
  const bool down = !down_blocked && cost >= 0.0;
  const bool up = !up_blocked && cost <= 0.0;
  if (down && lp.lower[j] > -kInf) {
    lp.fix_column(j, lp.lower[j], kAtLower);
  } else if (up && lp.upper[j] < kInf) {
    lp.fix_column(j, lp.upper[j], kAtUpper);
  } else if (cost == 0.0 && (up || down)) {
    if (!lp.settings.nonlinear) return false;
    remove_with_rows(lp, j, up);
  } else if (up || down) {
    if (std::fabs(cost) <= lp.settings.optimality_tolerance) return false;
    lp.fail(FindingKind::dual_bounds_column, j);
    return false;
  } else {
    return false;
  }
  return true;
}

bool bind_only_row(PresolveLp& lp, int j) {
  if (!lp.may_remove(j)) return false;
  for (const bool up : {true, false}) {
    if (up ? lp.cost[j] > 0.0 : lp.cost[j] < 0.0) continue;
    int row = -1, blocking = 0;
    for (int e = lp.matrix.col_first(j); e >= 0 && blocking <= 1; e = lp.matrix[e].col_next) {
      ++lp.work;
      if (!std::isfinite(limit_ahead(lp, lp.matrix[e].row, lp.matrix[e].value, up))) continue;
      ++blocking;
      row = lp.matrix[e].row;
    }
    if (blocking != 1 || lp.is_equation(row) || !make_room(lp, j, up)) continue;
    const int e = lp.matrix.find(row, j);
    if (std::fabs(lp.matrix[e].value) < presolve_tolerance::kSmallPivot) continue;
    const double limit = limit_ahead(lp, row, lp.matrix[e].value, up);
    lp.stack.begin(UndoKind::row_side);
    lp.stack.top().row = row;
    lp.stack.top().flag = (lp.matrix[e].value > 0.0) == up ? kAtUpper : kAtLower;
    lp.change_limits(row, limit, limit);
    return true;
  }
  return false;
}

void undo_free_direction(const PostsolveStack& stack, const UndoRecord& record,
                         PostsolveState& state) {
  const int j = record.col;
  const double sign = record.flag;
  const bool up = record.flag > 0;
  double x = record.lower;
  int binding = -1, binding_side = kBasic;
  for (int k = record.begin; k < record.end;) {
    const int i = stack.entry(k).index;
    const double a = stack.entry(k).value;
    const int count = stack.entry(k + 1).index;
    const double limit = stack.entry(k + 1).value;
    const double rest = stack.dot(k + 2, k + 2 + count, state.x);
    k += 2 + count;
    state.y[i] = 0.0;
    state.row_status[i] = kBasic;
    if (!std::isfinite(limit)) continue;
    const double needed = (limit - rest) / a;
    if (std::isfinite(x) && sign * needed <= sign * x) continue;
    x = needed;
    binding = i;
    binding_side = (a > 0.0) == up ? kAtLower : kAtUpper;
  }
  state.z[j] = 0.0;
  if (binding >= 0) {
    state.x[j] = x;
    state.col_status[j] = kBasic;
    state.row_status[binding] = binding_side;
  } else if (std::isfinite(x)) {
    state.x[j] = x;
    state.col_status[j] = up ? kAtLower : kAtUpper;
  } else {
    state.x[j] = 0.0;
    state.col_status[j] = kFreeSuper;
  }
}

}  // namespace kelvo
