#include "lp/presolve/reductions/singleton_row.h"

#include "lp/presolve/presolve_lp.h"
#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

bool remove_singleton_row(PresolveLp& lp, int i) {
  const int e = lp.matrix.row_first(i);
  const int j = lp.matrix[e].col;
  const double a = lp.matrix[e].value;
  if (std::fabs(a) < tol::kSame) return false;
  const double at_low = lp.row_lower[i] / a, at_high = lp.row_upper[i] / a;
  const double old_lower = lp.lower[j], old_upper = lp.upper[j];
  if (!lp.intersect_bounds(j, std::min(at_low, at_high), std::max(at_low, at_high))) {
    lp.finding.other = i;
    return false;
  }
  const TransferredEnds ends{lp.lower[j] != old_lower, lp.upper[j] != old_upper, lp.is_fixed(j)};
  lp.stack.push(SingletonRow(i, j, a, ends));
  lp.erase_row(i);
  return true;
}

void SingletonRow::restore_duals(const UndoEntries&, DualState& duals) const {
  if (ends.include(duals.column_side(col, ends.coincide))) {
    duals.y[row] = duals.z[col] / a;
    duals.z[col] = 0.0;
  } else {
    duals.y[row] = 0.0;
  }
}

void SingletonRow::restore_basis(const UndoEntries&, PostsolveState& state) const {
  BasisState& basis = state.basis;
  // What the reduced cost was, before the row may have taken it over.
  const double multiplier = state.duals.z[col] + a * state.duals.y[row];
  const int side = active_side(basis.cols[col], multiplier, ends.coincide);
  if (ends.include(side)) {
    basis.cols[col] = kBasic;
    basis.rows[row] = side_times(side, a);
  } else {
    basis.cols[col] = side;
    basis.rows[row] = kBasic;
  }
}

}  // namespace kelvo
