// Continuous columns that are whole in some optimal solution.
//
// An equation whose other columns are integer, with entries and a right-hand side that are
// multiples of a_j, makes x_j whole in every solution. Rows of all kinds do so together when this
// is true of each of x_j's rows and of its finite bounds: for whole values of the others the
// interval left to x_j has whole ends, and one of them is best.
//
// One column makes another one whole in turn, so that columns are looked at in sequence. The
// reduced program has them as integer columns: what rests on their being whole would otherwise be
// wrong for the points in between.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/substitution_rules.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// A column that moves by more than this for a step of another one would not be whole within the
// tolerance of that one.
constexpr double kMostPerStep = 100.0;
// Greater values are not told from fractional ones.
constexpr double kLargestValue = 1e7;
constexpr int kMostRows = 50;

/// True when the row of entry e gives its column whole values for whole values of the others.
bool row_is_whole(PresolveLp& lp, int e) {
  const int i = lp.matrix[e].row;
  const double a = lp.matrix[e].value;
  for (const double limit : {lp.row_lower[i], lp.row_upper[i]}) {
    if (std::isfinite(limit) && !is_whole(limit / a)) return false;
  }
  lp.work += lp.matrix.row_count(i);
  for (int f = lp.matrix.row_first(i); f >= 0; f = lp.matrix[f].row_next) {
    if (f == e) continue;
    const double ratio = lp.matrix[f].value / a;
    if (!lp.is_integer(lp.matrix[f].col) || !is_whole(ratio) || std::fabs(ratio) > kMostPerStep) {
      return false;
    }
  }
  return true;
}

bool bound_is_whole(double bound) {
  return !std::isfinite(bound) || (is_whole(bound) && std::fabs(bound) <= kLargestValue);
}

bool is_implied_integer(PresolveLp& lp, int j, bool dual) {
  const LinkedMatrix& matrix = lp.matrix;
  bool all_rows = dual && bound_is_whole(lp.lower[j]) && bound_is_whole(lp.upper[j]);
  if (matrix.col_count(j) > kMostRows) return false;
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    const bool equation = lp.is_equation(matrix[e].row);
    if (!equation && !all_rows) continue;
    const bool whole = row_is_whole(lp, e);
    if (whole && equation) return true;
    all_rows = all_rows && whole;
  }
  return all_rows && matrix.col_count(j) > 0;
}

bool has_changed(const PresolveLp& lp, int j, int since) {
  if (lp.col_list.changed_since(j, since)) return true;
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    if (lp.row_list.changed_since(lp.matrix[e].row, since)) return true;
  }
  return false;
}

}  // namespace

void find_implied_integers(PresolveMip& mip, int since) {
  PresolveLp& lp = mip.lp;
  const bool dual = mip.settings.lp.dual_reductions;
  for (int j = 0; j < lp.num_cols() && !mip.ended(); ++j) {
    if (!lp.col_alive[j] || lp.is_integer(j) || lp.is_fixed(j) || !lp.may_remove(j)) continue;
    if (!has_changed(lp, j, since)) continue;
    if (is_implied_integer(lp, j, dual)) mip.mark_implied_integer(j);
    lp.poll();
  }
}

}  // namespace kelvo
