#include "lp/presolve/reductions/substitution.h"

#include "lp/presolve/reductions/reductions.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace {

// Columns with more entries are not substituted: the fill could only be too large.
constexpr int kLongestColumn = 12;
// Pairs of entries looked at for one substitution.
constexpr int kMostPairs = 600;

bool pivot_is_large(PresolveLp& lp, int e) {
  const double allowed = lp.settings.coefficient_ratio * std::fabs(lp.matrix[e].value);
  const LinkedMatrix& matrix = lp.matrix;
  lp.work += matrix.col_count(matrix[e].col);
  for (int f = matrix.col_first(matrix[e].col); f >= 0; f = matrix[f].col_next) {
    if (std::fabs(matrix[f].value) > allowed) return false;
  }
  return lp.row_is_within(matrix[e].row, allowed);
}

void record_substitution(PresolveLp& lp, int e, double rhs, int side) {
  const int i = lp.matrix[e].row, j = lp.matrix[e].col;
  const Stretch others = lp.record_row(i, j), rows = lp.record_column(j, i);
  lp.stack.push(SubstitutedColumn{i, j, side, others, rows, lp.matrix[e].value, rhs, lp.cost[j]});
}

/// Number of nonzeros that the substitution adds (at most `limit`), or limit + 1 when it adds more
/// or would make unsound entries.
int count_fill(PresolveLp& lp, int e, int limit) {
  const LinkedMatrix& matrix = lp.matrix;
  const int i = matrix[e].row, j = matrix[e].col;
  int fill = -(matrix.row_count(i) + matrix.col_count(j) - 1);
  for (int f = matrix.col_first(j); f >= 0; f = matrix[f].col_next) {
    const int r = matrix[f].row;
    if (r == i) continue;
    const double ratio = matrix[f].value / matrix[e].value;
    for (int g = matrix.row_first(i); g >= 0; g = matrix[g].row_next) {
      if (matrix[g].col == j) continue;
      const int at = matrix.find(r, matrix[g].col);
      lp.work += std::min(matrix.row_count(r), matrix.col_count(matrix[g].col)) + 1;
      const double old = at < 0 ? 0.0 : matrix[at].value;
      const double added = -ratio * matrix[g].value;
      if (!entry_is_sound(lp, old, added)) return limit + 1;
      if (at < 0) {
        if (++fill > limit) return limit + 1;
      } else if (sound_sum(old, added) == 0.0) {
        --fill;
      }
    }
  }
  return fill;
}

void substitute(PresolveLp& lp, int e) {
  const int i = lp.matrix[e].row, j = lp.matrix[e].col;
  const double a = lp.matrix[e].value, rhs = lp.row_lower[i];
  record_substitution(lp, e, rhs, kAtLower);
  for (int f = lp.matrix.col_first(j); f >= 0; f = lp.matrix[f].col_next) {
    const int r = lp.matrix[f].row;
    if (r == i) continue;
    const double ratio = lp.matrix[f].value / a;
    for (int g = lp.matrix.row_first(i); g >= 0; g = lp.matrix[g].row_next) {
      const int k = lp.matrix[g].col;
      if (k == j) continue;
      const int at = lp.matrix.find(r, k);
      const double old = at < 0 ? 0.0 : lp.matrix[at].value;
      lp.put_entry(r, k, sound_sum(old, -ratio * lp.matrix[g].value));
    }
    shift_limits(lp, r, ratio * rhs);
  }
  substitute_in_objective(lp, e, rhs);
  lp.erase_row(i);
  lp.erase_column(j);
  count_substitution(lp);
}

/// The shortest equation of column j whose entry may be the pivot, as that entry; or -1.
int choose_pivot(PresolveLp& lp, int j) {
  const int others = lp.matrix.col_count(j) - 1;
  int best = -1;
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int i = lp.matrix[e].row;
    if (!lp.is_equation(i) || lp.matrix.row_count(i) < 2) continue;
    if ((lp.matrix.row_count(i) - 1) * others > kMostPairs) continue;
    if (best >= 0 && lp.matrix.row_count(i) >= lp.matrix.row_count(lp.matrix[best].row)) continue;
    if (pivot_is_large(lp, e) && stays_whole(lp, e, lp.row_lower[i])) best = e;
  }
  return best;
}

bool changed_since(const PresolveLp& lp, int j, int moment) {
  if (lp.col_list.changed_since(j, moment)) return true;
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    if (lp.row_list.changed_since(lp.matrix[e].row, moment)) return true;
  }
  return false;
}

bool try_column(PresolveLp& lp, int j, int fill_limit, int since) {
  const int count = lp.matrix.col_count(j);
  if (count < 1 || count > kLongestColumn || !lp.may_remove(j) || lp.is_fixed(j)) return false;
  if (!changed_since(lp, j, since)) return false;
  if (count == 1) {  // the row may imply more than when the column itself changed
    const bool wanted = lp.settings.primal_reductions && lp.settings.families & kFreeSingletons;
    return wanted && substitute_free_singleton(lp, j);
  }
  if (!lp.is_implied_free(j)) return false;
  const int e = choose_pivot(lp, j);
  if (e < 0) return false;
  if (count_fill(lp, e, fill_limit) > fill_limit) return false;
  substitute(lp, e);
  return true;
}

}  // namespace

bool substitute_free_singleton(PresolveLp& lp, int j) {
  if (!lp.may_remove(j) || !lp.is_implied_free(j)) return false;
  const int e = lp.matrix.col_first(j);
  const int i = lp.matrix[e].row;
  if (!pivot_is_large(lp, e)) return false;
  const double y = lp.cost[j] / lp.matrix[e].value;
  double rhs = lp.row_lower[i];
  int side = kAtLower;
  if (!lp.is_equation(i)) {
    if (y != 0.0 && !lp.settings.dual_reductions) return false;
    if (y < 0.0 || (y == 0.0 && rhs == -kInf)) side = kAtUpper;
    if (side == kAtUpper) rhs = lp.row_upper[i];
    if (!std::isfinite(rhs)) {
      if (std::fabs(lp.cost[j]) > lp.settings.optimality_tolerance) {
        lp.fail(FindingKind::dual_bounds_column, j);
      }
      return false;
    }
  }
  if (!stays_whole(lp, e, rhs)) return false;
  record_substitution(lp, e, rhs, side);
  substitute_in_objective(lp, e, rhs);
  lp.erase_row(i);
  lp.erase_column(j);
  return true;
}

void run_aggregator(PresolveLp& lp, int since) {
  // What saves nonzeros first.
  for (const int limit : {0, lp.settings.fill_limit}) {
    for (int j = 0; j < lp.num_cols() && !lp.tired(); ++j) {
      if (lp.col_alive[j]) try_column(lp, j, limit, since);
      lp.poll();
    }
    if (lp.settings.fill_limit <= 0) break;
  }
}

}  // namespace kelvo
