// A row with one entry, L <= a x_j <= U, is a bound on its column.
//
// Way back: where the column stands at a bound that came from the row, the row takes over its
// reduced cost, y_i = z_j / a, and the column becomes basic. Elsewhere the row is slack.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

bool remove_singleton_row(PresolveLp& lp, int i) {
  const int e = lp.matrix.row_first(i);
  const int j = lp.matrix[e].col;
  const double a = lp.matrix[e].value;
  if (std::fabs(a) < tol::kSame) return false;
  const double at_low = lp.row_lower[i] / a, at_high = lp.row_upper[i] / a;
  const double old_lower = lp.lower[j], old_upper = lp.upper[j];
  if (!lp.intersect_bounds(j, std::min(at_low, at_high), std::max(at_low, at_high))) return false;
  lp.stack.begin(UndoKind::singleton_row);
  UndoRecord& record = lp.stack.top();
  record.row = i;
  record.col = j;
  record.a = a;
  if (lp.lower[j] != old_lower) record.flag |= kLowerCame;
  if (lp.upper[j] != old_upper) record.flag |= kUpperCame;
  if (lp.is_fixed(j)) record.flag |= kEndsCoincide;
  lp.erase_row(i);
  return true;
}

void undo_singleton_row(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  const int i = record.row, j = record.col;
  const int side = active_side(state.col_status[j], state.z[j], record.flag & kEndsCoincide);
  if (at_transferred_end(side, record.flag)) {
    state.y[i] = state.z[j] / record.a;
    state.z[j] = 0.0;
    state.col_status[j] = kBasic;
    state.row_status[i] = record.a > 0.0 ? side : opposite_side(side);
  } else {
    state.y[i] = 0.0;
    state.row_status[i] = kBasic;
    state.col_status[j] = side;
  }
}

}  // namespace kelvo
