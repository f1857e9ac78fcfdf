#include "lp/presolve/reductions/dual_fixing.h"

#include "lp/presolve/presolve_lp.h"
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/binding_row.h"

namespace kelvo {

namespace {

/// The limit of row i that an increase (up) or decrease of a column with entry a runs against, or,
/// given the other direction, the one it moves away from.
double limit_ahead(const PresolveLp& lp, int i, double a, bool up) {
  return (a > 0.0) == up ? lp.row_upper[i] : lp.row_lower[i];
}

void remove_with_rows(PresolveLp& lp, int j, bool up) {
  UndoEntries& entries = lp.stack.entries;
  Stretch rows{entries.size(), 0};
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int i = lp.matrix[e].row;
    const double a = lp.matrix[e].value;
    entries.add(i, a);
    entries.add(lp.matrix.row_count(i) - 1, limit_ahead(lp, i, a, !up));
    lp.record_row(i, j);
    lp.work += lp.matrix.row_count(i);
  }
  rows.end = entries.size();
  const double bound = up ? lp.lower[j] : lp.upper[j];
  lp.stack.push(FreeDirection{j, up, lp.is_integer(j), bound, rows});
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix.col_first(j)) {
    lp.erase_row(lp.matrix[e].row);
  }
  lp.erase_column(j);
}

}  // namespace

bool make_room(PresolveLp& lp, int j, bool above) {
  if (!lp.may_remove(j)) return false;
  if (above ? lp.upper[j] == kInf : lp.lower[j] == -kInf) return true;
  if (!lp.is_implied(j, above)) return false;
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
  if (!lp.may_remove(j) || lp.is_integer(j)) return false;
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
    bind_row(lp, row, (lp.matrix[e].value > 0.0) == up ? kAtUpper : kAtLower);
    return true;
  }
  return false;
}

FreeDirection::Place FreeDirection::place(const UndoEntries& entries,
                                          const Vector<double>& x) const {
  const double sign = up ? 1.0 : -1.0;
  Place place{bound, -1, kBasic};
  for (int k = rows.begin; k < rows.end;) {
    const int i = entries[k].index, count = entries[k + 1].index;
    const double a = entries[k].value, limit = entries[k + 1].value;
    const Stretch others{k + 2, k + 2 + count};
    k = others.end;
    if (!std::isfinite(limit)) continue;
    const double needed = (limit - entries.dot(others, x)) / a;
    if (std::isfinite(place.x) && sign * needed <= sign * place.x) continue;
    place = {needed, i, (a > 0.0) == up ? kAtLower : kAtUpper};
  }
  if (place.row < 0 && !std::isfinite(place.x)) place.x = 0.0;
  return place;
}

void FreeDirection::restore_values(const UndoEntries& entries, Vector<double>& x) const {
  const double needed = place(entries, x).x;
  const double rounding = presolve_tolerance::same_slack(needed);
  x[col] = !integer ? needed : up ? std::ceil(needed - rounding) : std::floor(needed + rounding);
}

void FreeDirection::restore_duals(const UndoEntries& entries, DualState& duals) const {
  for_each_row(entries, [&duals](int i) { duals.y[i] = 0.0; });
  duals.z[col] = 0.0;
}

void FreeDirection::restore_basis(const UndoEntries& entries, PostsolveState& state) const {
  for_each_row(entries, [&state](int i) { state.basis.rows[i] = kBasic; });
  const Place here = place(entries, state.x);
  if (here.row >= 0) {
    state.basis.cols[col] = kBasic;
    state.basis.rows[here.row] = here.side;
  } else {
    state.basis.cols[col] = !std::isfinite(bound) ? kFreeSuper : up ? kAtLower : kAtUpper;
  }
}

void FreeDirection::mark_removed(const UndoEntries& entries, RemovalCodes& codes) const {
  codes.cols[col] = kRemovedDual;
  for_each_row(entries, [&codes](int i) { codes.rows[i] = kRemovedDual; });
}

}  // namespace kelvo
