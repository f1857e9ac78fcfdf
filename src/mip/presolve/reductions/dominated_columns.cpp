// Columns that another one makes superfluous.
//
// Moving x_j up by t and x_k down by t keeps all rows and costs nothing when
//
//     c_j <= c_k,   a_ij <= a_ik  where row i has an upper limit,   a_ij >= a_ik  where a lower
//     one,
//
// and the same with either column negated. Then in some optimal solution x_j is at its upper bound
// or x_k at its lower one. Where rows and the bounds of the others keep x_j from passing its upper
// bound, or where it has none, x_k is at its lower bound: no solution with x_j at its bound lets
// x_k be above its own, since the move would lead beyond what the rows allow. An integer x_j takes
// over from an integer x_k only.
//
// The columns x_k are those of the shortest row in which x_j's move needs a contribution of
// another one; the work is limited. (G. Gamrath, T. Koch, A. Martin, M. Miltenberger and
// D. Weninger, "Progress in presolving for mixed integer programming", Mathematical Programming
// Computation 7, 2015.)
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr std::int64_t kWorkPerNonzero = 10;
// An integer column is kept below the next whole number by a row that keeps it below this share of
// the step.
constexpr double kNextStep = 0.99;

class DominatedColumns {
 public:
  explicit DominatedColumns(PresolveMip& mip)
      : mip_(mip),
        lp_(mip.lp),
        scattered_(lp_.num_rows(), 0.0),
        work_limit_(lp_.work + kWorkPerNonzero * lp_.matrix.num_nonzeros() + 100000) {}

  void run(int since);

 private:
  /// True when x_j cannot pass its bound in this direction, or has none.
  bool has_room(int j, bool up);
  /// Looks for columns that x_j, moving up (or down), makes superfluous.
  void look_beside(int j, bool up);
  int shortest_row(int j, double sign) const;
  /// Whether x_j moving by sign_j and x_k by -sign_k keeps all rows.
  bool dominates(double sign_j, int k, double sign_k, int needs);
  /// What a move of x by `sign` per unit does to the rows' limits: entry a weighs against the row.
  bool entry_is_kept(int i, double a_j, double a_k) const {
    if (lp_.row_upper[i] < kInf && a_j > a_k) return false;
    return !(lp_.row_lower[i] > -kInf && a_j < a_k);
  }

  PresolveMip& mip_;
  PresolveLp& lp_;
  Vector<double> scattered_;  // [rows] entries of column j, else 0
  const std::int64_t work_limit_;
};

bool DominatedColumns::has_room(int j, bool up) {
  if (std::isinf(up ? lp_.upper[j] : lp_.lower[j])) return true;
  if (!lp_.is_integer(j)) return lp_.is_implied(j, up);
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    if (std::fabs(lp_.matrix[e].value) < tol::kSmallPivot) continue;
    const Interval implied = lp_.implied_bounds(e);
    ++lp_.work;
    if (up ? implied.upper < lp_.upper[j] + kNextStep : implied.lower > lp_.lower[j] - kNextStep) {
      return true;
    }
  }
  return false;
}

/// The shortest row that x_j brings nearer to a limit when it moves by `sign`; -1 for none.
int DominatedColumns::shortest_row(int j, double sign) const {
  int best = -1;
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    const int i = lp_.matrix[e].row;
    const bool rises = sign * lp_.matrix[e].value > 0.0;
    if ((rises ? lp_.row_upper[i] == kInf : lp_.row_lower[i] == -kInf)) continue;
    if (best < 0 || lp_.matrix.row_count(i) < lp_.matrix.row_count(best)) best = i;
  }
  return best;
}

bool DominatedColumns::dominates(double sign_j, int k, double sign_k, int needs) {
  // `needs` of the rows of x_j want a contribution of x_k.
  for (int e = lp_.matrix.col_first(k); e >= 0; e = lp_.matrix[e].col_next) {
    const int i = lp_.matrix[e].row;
    const double a_j = sign_j * scattered_[i];
    ++lp_.work;
    if (!entry_is_kept(i, a_j, sign_k * lp_.matrix[e].value)) return false;
    if (a_j != 0.0 && !entry_is_kept(i, a_j, 0.0)) --needs;
  }
  return needs == 0;
}

void DominatedColumns::look_beside(int j, bool up) {
  const double sign = up ? 1.0 : -1.0;
  const int row = shortest_row(j, sign);
  if (row < 0 || !has_room(j, up)) return;
  int needs = 0;
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    const int i = lp_.matrix[e].row;
    scattered_[i] = lp_.matrix[e].value;
    needs += !entry_is_kept(i, sign * lp_.matrix[e].value, 0.0);
  }
  const double a_j = sign * scattered_[row];
  lp_.work += lp_.matrix.col_count(j);
  for (int e = lp_.matrix.row_first(row); e >= 0 && !mip_.ended();) {
    const int k = lp_.matrix[e].col;
    const double sign_k = (lp_.matrix[e].value > 0.0) == (a_j > 0.0) ? 1.0 : -1.0;
    e = lp_.matrix[e].row_next;
    ++lp_.work;
    if (k == j || lp_.is_fixed(k) || !lp_.may_remove(k)) continue;
    if (lp_.is_integer(j) && !lp_.is_integer(k)) continue;
    if (sign * lp_.cost[j] > sign_k * lp_.cost[k]) continue;
    const bool to_lower = sign_k > 0.0;
    const double bound = to_lower ? lp_.lower[k] : lp_.upper[k];
    if (!std::isfinite(bound) || !dominates(sign, k, sign_k, needs)) continue;
    lp_.fix_column(k, bound, to_lower ? kAtLower : kAtUpper);
    // The room for x_j may have rested on x_k.
    if (!has_room(j, up)) break;
  }
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    scattered_[lp_.matrix[e].row] = 0.0;
  }
}

void DominatedColumns::run(int since) {
  for (int j = 0; j < lp_.num_cols(); ++j) {
    if (!lp_.col_alive[j] || lp_.is_fixed(j) || !lp_.may_remove(j)) continue;
    if (!lp_.col_list.changed_since(j, since)) continue;
    look_beside(j, true);
    if (!mip_.ended()) look_beside(j, false);
    lp_.poll();
    if (mip_.ended() || lp_.work > work_limit_) return;
  }
}

}  // namespace

void fix_dominated_columns(PresolveMip& mip, int since) {
  if (mip.settings.lp.dual_reductions) DominatedColumns(mip).run(since);
}

}  // namespace kelvo
