// Bounds on the row duals, and what follows from them.
//
// The kind of a row bounds its dual: y_i >= 0 without upper limit, y_i <= 0 without lower one. A
// column without upper bound has a reduced cost >= 0 in every dual solution, which is a constraint
// sum_i a_ij y_i <= c_j on the duals and tightens their bounds; correspondingly >= without lower
// bound. With the bounds in hand, a column whose reduced cost cannot be negative goes to its lower
// bound, one whose reduced cost cannot be positive to its upper, and a row whose dual cannot be 0
// binds.
//
// These arguments hold for the duals of the reduced program as long as the columns and the row
// kinds they rest on are part of it. So columns that have tightened a bound are not fixed in the
// same pass, rows whose bounds were used for that do not become equations, and every pass starts
// from nothing; the multipliers of what was fixed then have the right sign when it comes back.
//
// Integrality: for any whole values of the integer columns these are arguments about the duals of
// the program in the continuous ones, to which integer columns are right-hand sides. So only
// continuous columns bound duals; but integer columns are fixed, too, since the optimum over the
// continuous ones does not fall with a column whose reduced cost is never negative.
// (Domination of columns as in Andersen and Andersen, 1995.)
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr int kRounds = 3;
// A dual bound counts as better when it is better by this share.
constexpr double kWorthwhile = 1e-3;

class DualBounds {
 public:
  explicit DualBounds(PresolveLp& lp)
      : lp_(lp),
        low_(lp.num_rows(), -kInf),
        high_(lp.num_rows(), kInf),
        rests_(lp.num_cols(), 0),
        used_(lp.num_rows(), 0) {}

  void run();

 private:
  void start();
  bool tighten_by(int j);
  /// Of sum_i a_ij y_i.
  Activity sum_column(int j) const;
  void fix_columns();
  void bind_rows();
  bool offer(int i, double bound, bool is_upper);

  PresolveLp& lp_;
  Vector<double> low_, high_;  // [rows] bounds on y
  Vector<char> rests_;         // [columns] 1: a bound rests on this column
  Vector<char> used_;          // [rows] 1: the bound of another row rests on this row's
};

void DualBounds::start() {
  for (int i = 0; i < lp_.num_rows(); ++i) {
    if (!lp_.row_alive[i]) continue;
    if (lp_.row_lower[i] == -kInf) high_[i] = 0.0;
    if (lp_.row_upper[i] == kInf) low_[i] = 0.0;
  }
}

Activity DualBounds::sum_column(int j) const {
  Activity sum;
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    sum.add(lp_.matrix[e].value, low_[lp_.matrix[e].row], high_[lp_.matrix[e].row]);
  }
  lp_.work += lp_.matrix.col_count(j);
  return sum;
}

bool DualBounds::offer(int i, double bound, bool is_upper) {
  if (!(std::fabs(bound) < tol::kHugeBound)) return false;
  double& held = is_upper ? high_[i] : low_[i];
  const double margin = kWorthwhile * std::max(1.0, std::fabs(bound));
  const bool better = is_upper ? bound < held - margin : bound > held + margin;
  if (better) held = bound;
  return better;
}

bool DualBounds::tighten_by(int j) {
  const Interval priced{lp_.lower[j] == -kInf ? lp_.cost[j] : -kInf,
                        lp_.upper[j] == kInf ? lp_.cost[j] : kInf};
  const Activity sum = sum_column(j);
  if (!sum.speaks(priced)) return false;
  for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
    const double a = lp_.matrix[e].value;
    const int i = lp_.matrix[e].row;
    if (std::fabs(a) < tol::kSmallPivot) continue;
    const Interval implied = sum.implied(a, low_[i], high_[i], priced);
    const bool raised = offer(i, implied.lower, false), lowered = offer(i, implied.upper, true);
    if (!raised && !lowered) continue;
    if (low_[i] >
        high_[i] + lp_.settings.optimality_tolerance * std::max(1.0, std::fabs(high_[i]))) {
      lp_.fail(FindingKind::dual_bounds_row, i);
      return true;
    }
    // The sums are those of the bounds before: one line at a time is sound, more is not needed.
    rests_[j] = 1;
    for (int f = lp_.matrix.col_first(j); f >= 0; f = lp_.matrix[f].col_next) {
      if (f != e) used_[lp_.matrix[f].row] = 1;
    }
    return true;
  }
  return false;
}

void DualBounds::fix_columns() {
  for (int j = 0; j < lp_.num_cols() && !lp_.ended(); ++j) {
    if (!lp_.col_alive[j] || rests_[j] || !lp_.may_remove(j) || lp_.is_fixed(j)) continue;
    lp_.poll();
    const Activity sum = sum_column(j);
    const double least = lp_.cost[j] - sum.greatest(), greatest = lp_.cost[j] - sum.least();
    const auto zero = [&](double end, double error) {
      return tol::kZeroCost * std::max({1.0, std::fabs(end), std::fabs(lp_.cost[j])}) + error;
    };
    const double clear = lp_.settings.optimality_tolerance;
    if (least >= -zero(sum.max, sum.max_error) && lp_.lower[j] > -kInf) {
      lp_.fix_column(j, lp_.lower[j], kAtLower);
    } else if (greatest <= zero(sum.min, sum.min_error) && lp_.upper[j] < kInf) {
      lp_.fix_column(j, lp_.upper[j], kAtUpper);
    } else if ((least > clear && lp_.lower[j] == -kInf) ||
               (greatest < -clear && lp_.upper[j] == kInf)) {
      lp_.fail(FindingKind::dual_bounds_column, j);
    }
  }
}

void DualBounds::bind_rows() {
  for (int i = 0; i < lp_.num_rows() && !lp_.ended(); ++i) {
    if (!lp_.row_alive[i] || used_[i] || lp_.is_equation(i)) continue;
    const bool at_lower = low_[i] > lp_.settings.optimality_tolerance;
    const bool at_upper = high_[i] < -lp_.settings.optimality_tolerance;
    if (!at_lower && !at_upper) continue;
    const double limit = at_lower ? lp_.row_lower[i] : lp_.row_upper[i];
    if (!std::isfinite(limit)) {
      lp_.fail(FindingKind::dual_bounds_row, i);
      return;
    }
    bind_row(lp_, i, at_lower ? kAtLower : kAtUpper);
  }
}

void DualBounds::run() {
  start();
  bool changed = true;
  for (int round = 0; round < kRounds && changed && !lp_.ended(); ++round) {
    changed = false;
    for (int j = 0; j < lp_.num_cols() && !lp_.ended(); ++j) {
      if (!lp_.col_alive[j]) continue;
      if (lp_.upper[j] < kInf && lp_.lower[j] > -kInf) continue;
      if (lp_.is_integer(j) || !lp_.may_remove(j)) continue;
      changed |= tighten_by(j);
      lp_.poll();
    }
  }
  if (lp_.ended()) return;
  fix_columns();
  bind_rows();
}

}  // namespace

void reduce_by_dual_bounds(PresolveLp& lp) {
  DualBounds(lp).run();
}

}  // namespace kelvo
