// Columns that are multiples: a_k = alpha a_j.
//
// With costs in the same proportion the two act as one, x' = x_j + alpha x_k, whose interval is the
// sum of the two. With other costs one of them is the better buy: where x_j can take over whatever
// x_k gives up, x_k goes to the bound its extra cost delta = c_k - alpha c_j draws it to, since
// z_k = delta + alpha z_j. That x_j can, is certain when it has no bound on that side, or one that
// the rows imply; the latter is dropped, so that x_j does not come to stand at it with a z_j of the
// wrong sign.
//
// Way back of a merged pair: at a bound of x' both stand at theirs; in between one of them stands
// at a bound and the other is basic.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/parallel_lines.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// Fixes column k when column j dominates it; a_k = alpha a_j, delta = c_k - alpha c_j.
bool fix_dominated(PresolveLp& lp, int j, int k, double alpha, double delta) {
  if (!lp.settings.dual_reductions || std::fabs(delta) <= lp.settings.optimality_tolerance) {
    return false;
  }
  const bool k_falls = delta > 0.0;
  const bool j_rises = k_falls == (alpha > 0.0);
  if (!make_room(lp, j, j_rises)) return false;
  const double bound = k_falls ? lp.lower[k] : lp.upper[k];
  if (!std::isfinite(bound)) {
    lp.fail(FindingKind::dual_bounds_column, k);
    return false;
  }
  lp.fix_column(k, bound, k_falls ? kAtLower : kAtUpper);
  return true;
}

bool merge_columns(PresolveLp& lp, int j, int k, double alpha) {
  const double at_lower = alpha * lp.lower[k], at_upper = alpha * lp.upper[k];
  const double low = lp.lower[j] + std::min(at_lower, at_upper);
  const double high = lp.upper[j] + std::max(at_lower, at_upper);
  if ((std::isfinite(low) && std::fabs(low) > tol::kHugeBound) ||
      (std::isfinite(high) && std::fabs(high) > tol::kHugeBound)) {
    return false;
  }
  // A free x' may stay nonbasic at 0; then both columns must have a place there.
  const auto at_zero = [&lp](int column) {
    return lp.lower[column] == 0.0 || lp.upper[column] == 0.0 ||
           (lp.lower[column] == -kInf && lp.upper[column] == kInf);
  };
  if (low == -kInf && high == kInf && !(at_zero(j) && at_zero(k))) return false;
  lp.stack.begin(UndoKind::duplicate_column);
  UndoRecord& record = lp.stack.top();
  record.col = k;
  record.other = j;
  record.a = alpha;
  record.lower = lp.lower[j];
  record.upper = lp.upper[j];
  record.low2 = lp.lower[k];
  record.upp2 = lp.upper[k];
  lp.erase_column(k);
  lp.change_bounds(j, low, high);
  return true;
}

}  // namespace

void merge_duplicate_columns(PresolveLp& lp, ParallelLines& columns) {
  using Gone = ParallelLines::Gone;
  constexpr double kSameCost = 1e-13;
  columns.for_each_pair([&lp](int j, int k, double alpha) {
    if (lp.is_fixed(j) || lp.is_fixed(k)) return Gone::neither;
    const double priced = alpha * lp.cost[j];
    const double delta = lp.cost[k] - priced;
    if (std::fabs(delta) <= kSameCost * std::max(std::fabs(priced), std::fabs(lp.cost[k]))) {
      const bool mergeable = lp.settings.nonlinear && lp.may_remove(j) && lp.may_remove(k) &&
                             std::fabs(alpha) <= lp.settings.coefficient_ratio &&
                             std::fabs(alpha) >= 1.0 / lp.settings.coefficient_ratio;
      return mergeable && merge_columns(lp, j, k, alpha) ? Gone::other : Gone::neither;
    }
    if (lp.may_remove(k) && fix_dominated(lp, j, k, alpha, delta)) return Gone::other;
    if (lp.may_remove(j) && !lp.ended() && fix_dominated(lp, k, j, 1.0 / alpha, -delta / alpha)) {
      return Gone::kept;
    }
    return Gone::neither;
  });
}

namespace {

struct Side {
  double value;
  int status;
};

/// Bounds of [lower, upper] as places to stand, nearest to 0 first; `count` of them.
int places(double lower, double upper, Side (&sides)[2]) {
  int count = 0;
  if (std::isfinite(lower)) sides[count++] = {lower, kAtLower};
  if (std::isfinite(upper)) sides[count++] = {upper, kAtUpper};
  if (count == 2 && std::fabs(upper) < std::fabs(lower)) std::swap(sides[0], sides[1]);
  return count;
}

/// Splits the value of x' with one of the two at a bound, leaving its limits as little as possible.
void split_value(const UndoRecord& record, double total, PostsolveState& state) {
  const int j = record.other, k = record.col;
  const double alpha = record.a;
  const auto outside = [](double value, double low, double high) {
    return std::max({0.0, low - value, value - high});
  };
  const int status = state.col_status[j];
  double best = kInf;
  Side sides[2];
  for (int s = 0, count = places(record.low2, record.upp2, sides); s < count; ++s) {
    const double rest = total - alpha * sides[s].value;
    const double wrong = outside(rest, record.lower, record.upper);
    if (wrong >= best) continue;
    best = wrong;
    state.x[j] = rest;
    state.x[k] = sides[s].value;
    state.col_status[j] = status;
    state.col_status[k] = sides[s].status;
  }
  for (int s = 0, count = places(record.lower, record.upper, sides); s < count; ++s) {
    const double rest = (total - sides[s].value) / alpha;
    const double wrong = std::fabs(alpha) * outside(rest, record.low2, record.upp2);
    if (wrong >= best) continue;
    best = wrong;
    state.x[j] = sides[s].value;
    state.x[k] = rest;
    state.col_status[j] = sides[s].status;
    state.col_status[k] = status;
  }
  if (best < kInf) return;
  state.x[j] = total;
  state.x[k] = 0.0;
  state.col_status[k] = kFreeSuper;
}

}  // namespace

void undo_duplicate_column(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  const int j = record.other, k = record.col;
  const double alpha = record.a;
  const double total = state.x[j];
  state.z[k] = alpha * state.z[j];
  const int side = state.col_status[j];
  if (side != kAtLower && side != kAtUpper) {
    split_value(record, total, state);
    return;
  }
  const int k_side = alpha > 0.0 ? side : opposite_side(side);
  state.x[j] = side == kAtLower ? record.lower : record.upper;
  state.x[k] = k_side == kAtLower ? record.low2 : record.upp2;
  state.col_status[k] = k_side;
}

}  // namespace kelvo
