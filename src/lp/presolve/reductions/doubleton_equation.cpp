// An equation with two columns, a x_j + b x_k = rhs, gives x_j = (rhs - b x_k) / a.
//
// The bounds of x_j become bounds on x_k. The number of nonzeros always falls: the two entries of
// the row and those of x_j go, and at most the latter minus one come.
//
// Way back: y_i makes z_j = 0 and x_j is basic, unless x_k stands at a bound that came from x_j;
// then x_j takes its place at its own bound, x_k is basic and y_i makes z_k = 0.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// A homogeneous equation says that two columns are the same in different units: no digits are lost
// as long as the ratio of the units stays below this, and scaling takes care of the rest.
constexpr double kOtherUnit = 1e6;

/// New entries of column k are sums that may cancel; false when one of them would be too small or
/// too large to be kept.
bool entries_are_sound(PresolveLp& lp, int j, int row, int k, double ratio) {
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int r = lp.matrix[e].row;
    if (r == row) continue;
    const int at = lp.matrix.find(r, k);
    lp.work += std::min(lp.matrix.row_count(r), lp.matrix.col_count(k)) + 1;
    const double old = at < 0 ? 0.0 : lp.matrix[at].value;
    const double added = -lp.matrix[e].value * ratio;
    if (!entry_is_sound(lp, old, added)) return false;
  }
  return true;
}

/// Turns the bounds of x_j into bounds on x_k and notes in the record which of them count.
bool transfer_bounds(PresolveLp& lp, UndoRecord& record, double rhs) {
  const int j = record.col, k = record.other;
  const double a = record.a, b = record.b;
  // x_k = (rhs - a x_j) / b
  double low = (rhs - a * lp.lower[j]) / b, high = (rhs - a * lp.upper[j]) / b;
  if (low > high) std::swap(low, high);
  const double old_lower = lp.lower[k], old_upper = lp.upper[k];
  // The same bound in two roundings: that of x_k itself stays.
  if (low - old_lower <= tol::kCancelled * std::fabs(low)) low = old_lower;
  if (old_upper - high <= tol::kCancelled * std::fabs(high)) high = old_upper;
  if (!lp.intersect_bounds(k, low, high)) return false;
  if (lp.lower[k] != old_lower) record.flag |= kLowerCame;
  if (lp.upper[k] != old_upper) record.flag |= kUpperCame;
  if (lp.is_fixed(k)) record.flag |= kEndsCoincide;
  return true;
}

}  // namespace

bool entry_is_sound(const PresolveLp& lp, double old, double added) {
  const double sum = std::fabs(old + added);
  if (sum <= tol::kCancelled * std::max(std::fabs(old), std::fabs(added))) return true;
  return sum >= tol::kSmallEntry && sum <= lp.settings.large_number;
}

double sound_sum(double old, double added) {
  const double sum = old + added;
  const double terms = std::max(std::fabs(old), std::fabs(added));
  return std::fabs(sum) <= tol::kCancelled * terms ? 0.0 : sum;
}

bool substitute_doubleton(PresolveLp& lp, int i) {
  int ej = lp.matrix.row_first(i);
  int ek = lp.matrix[ej].row_next;
  const auto longer = [&](int e) { return lp.matrix.col_count(lp.matrix[e].col); };
  const double largest_ratio = lp.row_lower[i] == 0.0 ? kOtherUnit : lp.settings.coefficient_ratio;
  const auto goes = [&](int e, int f) {  // column of e may go, divided by its entry
    return lp.may_remove(lp.matrix[e].col) &&
           std::fabs(lp.matrix[f].value) <= largest_ratio * std::fabs(lp.matrix[e].value);
  };
  if (!goes(ej, ek) || (goes(ek, ej) && longer(ek) < longer(ej))) std::swap(ej, ek);
  if (!goes(ej, ek)) return false;
  const int j = lp.matrix[ej].col, k = lp.matrix[ek].col;
  if (lp.is_fixed(j) || lp.is_fixed(k)) return false;  // simpler reductions come
  const double a = lp.matrix[ej].value, b = lp.matrix[ek].value;
  if (largest_ratio * std::fabs(b) < std::fabs(a)) return false;
  const double rhs = lp.row_lower[i], ratio = b / a;
  if (!entries_are_sound(lp, j, i, k, ratio)) return false;

  UndoRecord record;
  record.row = i;
  record.col = j;
  record.other = k;
  record.a = a;
  record.b = b;
  record.cost = lp.cost[j];
  record.lower = rhs;
  record.low2 = lp.lower[j];
  record.upp2 = lp.upper[j];
  if (!transfer_bounds(lp, record, rhs)) return false;
  lp.stack.begin(UndoKind::doubleton);
  record.kind = UndoKind::doubleton;
  record.begin = record.middle = record.end = lp.stack.top().begin;
  lp.stack.top() = record;
  lp.record_column(j, i);

  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int r = lp.matrix[e].row;
    if (r == i) continue;
    const double value = lp.matrix[e].value;
    const int at = lp.matrix.find(r, k);
    lp.put_entry(r, k, sound_sum(at < 0 ? 0.0 : lp.matrix[at].value, -value * ratio));
    shift_limits(lp, r, value * rhs / a);
  }
  lp.change_cost(k, sound_sum(lp.cost[k], -lp.cost[j] * ratio));
  lp.offset += lp.cost[j] * rhs / a;
  lp.erase_row(i);
  lp.erase_column(j);
  count_substitution(lp);
  return true;
}

void shift_limits(PresolveLp& lp, int i, double shift) {
  const bool equation = lp.is_equation(i);
  lp.row_lower[i] -= shift;
  lp.row_upper[i] = equation ? lp.row_lower[i] : lp.row_upper[i] - shift;
  lp.row_list.add(i);
}

void count_substitution(PresolveLp& lp) {
  --lp.stats.rows_removed;
  --lp.stats.cols_removed;
  ++lp.stats.substitutions;
}

void undo_doubleton(const PostsolveStack& stack, const UndoRecord& record, PostsolveState& state) {
  const int i = record.row, j = record.col, k = record.other;
  const double a = record.a, b = record.b;
  state.x[j] = (record.lower - b * state.x[k]) / a;
  state.y[i] = (record.cost - stack.dot(record.begin, record.end, state.y)) / a;
  state.z[j] = 0.0;
  state.col_status[j] = kBasic;
  state.row_status[i] = kAtLower;
  const int side = active_side(state.col_status[k], state.z[k], record.flag & kEndsCoincide);
  state.col_status[k] = side;
  if (!at_transferred_end(side, record.flag)) return;
  const double shift = state.z[k] / b;
  state.y[i] += shift;
  state.z[k] = 0.0;
  state.col_status[k] = kBasic;
  state.z[j] = -a * shift;
  const bool same_way = a * b < 0.0;
  state.col_status[j] = same_way ? side : opposite_side(side);
  state.x[j] = state.col_status[j] == kAtLower ? record.low2 : record.upp2;
}

}  // namespace kelvo
