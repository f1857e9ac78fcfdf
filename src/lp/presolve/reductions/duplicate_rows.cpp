#include "lp/presolve/reductions/duplicate_rows.h"

#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/parallel_lines.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// Limits of row r as limits of row s, where they are tighter by more than rounding.
bool merge_rows(PresolveLp& lp, int s, int r, double alpha) {
  double low = lp.row_lower[r] / alpha, high = lp.row_upper[r] / alpha;
  if (alpha < 0.0) std::swap(low, high);
  const double old_low = lp.row_lower[s], old_high = lp.row_upper[s];
  if (!(low - old_low > tol::kCancelled * std::fabs(low))) low = old_low;
  if (!(old_high - high > tol::kCancelled * std::fabs(high))) high = old_high;
  if (low > high) {
    const double size = std::max({1.0, std::fabs(low), std::fabs(high)});
    if (low - high > lp.settings.feasibility_tolerance * size) {
      lp.fail(FindingKind::duplicate_rows, s, r);
      return false;
    }
    if (low == old_low) {
      high = low;
    } else {
      low = high;
    }
  }
  lp.stack.push(DuplicateRow(r, s, alpha, {low != old_low, high != old_high, low == high}));
  if (low != old_low || high != old_high) lp.change_limits(s, low, high);
  lp.erase_row(r);
  return true;
}

}  // namespace

void merge_duplicate_rows(PresolveLp& lp, ParallelLines& rows) {
  rows.for_each_pair([&lp](int kept, int other, double ratio) {
    return merge_rows(lp, kept, other, ratio) ? ParallelLines::Gone::other
                                              : ParallelLines::Gone::neither;
  });
}

void DuplicateRow::restore_duals(const UndoEntries&, DualState& duals) const {
  const bool passes = ends.include(duals.row_side(kept, ends.coincide));
  duals.y[gone] = passes ? duals.y[kept] / ratio : 0.0;
  if (passes) duals.y[kept] = 0.0;
}

void DuplicateRow::restore_basis(const UndoEntries&, PostsolveState& state) const {
  BasisState& basis = state.basis;
  // What the dual of the kept row was, wherever it is now.
  const double multiplier = state.duals.y[kept] + ratio * state.duals.y[gone];
  const int side = active_side(basis.rows[kept], multiplier, ends.coincide);
  const bool passes = ends.include(side);
  basis.rows[gone] = passes ? side_times(side, ratio) : kBasic;
  basis.rows[kept] = passes ? kBasic : side;
}

void DuplicateRow::crush_basis(BasisState& basis) const {
  if (basis.rows[kept] == kBasic) basis.rows[kept] = side_times(basis.rows[gone], ratio);
}

}  // namespace kelvo
