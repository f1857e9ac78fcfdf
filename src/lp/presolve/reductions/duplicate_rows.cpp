// Rows that are multiples: a_r = alpha a_s. The limits of r become limits of s, and r goes.
//
// Way back: where s binds at a limit that came from r, r binds instead with y_r = y_s / alpha and s
// is slack. Elsewhere r is slack.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/parallel_lines.h"
#include "lp/presolve/reductions/reductions.h"

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
  lp.stack.begin(UndoKind::duplicate_row);
  UndoRecord& record = lp.stack.top();
  record.row = r;
  record.other = s;
  record.a = alpha;
  if (low != old_low) record.flag |= kLowerCame;
  if (high != old_high) record.flag |= kUpperCame;
  if (low == high) record.flag |= kEndsCoincide;
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

void undo_duplicate_row(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  const int r = record.row, s = record.other;
  const int side = active_side(state.row_status[s], state.y[s], record.flag & kEndsCoincide);
  if (at_transferred_end(side, record.flag)) {
    state.y[r] = state.y[s] / record.a;
    state.y[s] = 0.0;
    state.row_status[r] = record.a > 0.0 ? side : opposite_side(side);
    state.row_status[s] = kBasic;
  } else {
    state.y[r] = 0.0;
    state.row_status[r] = kBasic;
    state.row_status[s] = side;
  }
}

}  // namespace kelvo
