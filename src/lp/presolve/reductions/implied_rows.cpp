// Rows that never bind because other rows keep the columns from it.
//
// Rows imply bounds on their columns that are tighter than the stated ones, and with the tightened
// bounds other rows turn out to be redundant. The tightened bounds serve for nothing else: kept in
// the program they could bind, and the duals would belong to bounds that are not there. A row that
// has tightened a bound stays, since the redundancy of others rests on it. Equations, which seldom
// are redundant, come first; inequalities only where that leaves something to gain.
//
// Undo: the rows are slack, y_i = 0.
//
// Integrality: none, the columns stay.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"
#include "lp/presolve/reductions/row_copy.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr int kRounds = 3;
// A bound is taken when it is better by this share of the interval (of its size, when the interval
// is infinite): endless sequences of small steps help nobody.
constexpr double kWorthwhile = 1e-2;

class ImpliedRedundancy {
 public:
  explicit ImpliedRedundancy(PresolveLp& lp);

  void run() {
    tighten(true);
    remove_redundant();
    if (lp_.ended()) return;
    tighten(false);
    remove_redundant();
  }

 private:
  Activity sum_row(int i) const;
  void tighten(bool equations_only);
  bool tighten_by(int i);
  bool offer(int j, const Interval& implied);
  void remove_redundant();

  PresolveLp& lp_;
  Vector<double> low_, high_;  // [columns] tightened bounds
  Vector<char> rests_;         // [rows] 1: a tightened bound rests on this row
  Vector<char> due_;           // [rows] 1: not looked at since a bound of its columns was tightened
  Vector<char> moved_;         // [rows] 1: as above, and not tested for redundancy since
  const RowCopy rows_;
};

ImpliedRedundancy::ImpliedRedundancy(PresolveLp& lp)
    : lp_(lp),
      low_(lp.lower),
      high_(lp.upper),
      rests_(lp.num_rows(), 0),
      due_(lp.num_rows(), 1),
      moved_(lp.num_rows(), 0),
      rows_(lp) {}

Activity ImpliedRedundancy::sum_row(int i) const {
  Activity sum;
  for (const RowCopy::Entry& entry : rows_[i]) {
    sum.add(entry.value, low_[entry.col], high_[entry.col]);
  }
  lp_.work += rows_[i].size();
  return sum;
}

bool ImpliedRedundancy::offer(int j, const Interval& implied) {
  bool better = false;
  const double width = high_[j] - low_[j];
  const auto gains = [width](double gain, double bound) {
    const double scale = std::isfinite(width) ? width : std::max(1.0, std::fabs(bound));
    return std::fabs(bound) < tol::kHugeBound && gain > kWorthwhile * scale;
  };
  if (gains(implied.lower - low_[j], implied.lower)) {
    low_[j] = implied.lower - tol::same_slack(implied.lower);
    better = true;
  }
  if (gains(high_[j] - implied.upper, implied.upper)) {
    high_[j] = implied.upper + tol::same_slack(implied.upper);
    better = true;
  }
  return better;
}

bool ImpliedRedundancy::tighten_by(int i) {
  const Activity sum = sum_row(i);
  const Interval limits{lp_.row_lower[i], lp_.row_upper[i]};
  if (!sum.speaks(limits)) return false;
  bool better = false;
  for (const auto& [j, place, a] : rows_[i]) {
    if (std::fabs(a) < tol::kSmallPivot) continue;
    // The sums stay those of the bounds before, which is weaker and sound; but each column must
    // be taken out with the bounds it was put in with, so a row is walked once only.
    if (!offer(j, sum.implied(a, low_[j], high_[j], limits))) continue;
    better = true;
    for (int e = lp_.matrix.col_first(j); e >= 0; e = lp_.matrix[e].col_next) {
      if (lp_.matrix[e].row != i) due_[lp_.matrix[e].row] = moved_[lp_.matrix[e].row] = 1;
    }
    lp_.work += lp_.matrix.col_count(j);
  }
  return better;
}

void ImpliedRedundancy::tighten(bool equations_only) {
  bool better = true;
  for (int round = 0; round < kRounds && better && !lp_.ended(); ++round) {
    better = false;
    for (int i = 0; i < lp_.num_rows() && !lp_.ended(); ++i) {
      if (!due_[i] || !lp_.row_alive[i] || (equations_only && !lp_.is_equation(i))) continue;
      due_[i] = 0;
      if (tighten_by(i)) {
        rests_[i] = 1;
        better = true;
      }
      lp_.poll();
    }
  }
}

void ImpliedRedundancy::remove_redundant() {
  for (int i = 0; i < lp_.num_rows() && !lp_.ended(); ++i) {
    if (!moved_[i] || !lp_.row_alive[i] || rests_[i] || rows_[i].size() == 0) continue;
    moved_[i] = 0;
    const Activity sum = sum_row(i);
    const double low = lp_.row_lower[i], high = lp_.row_upper[i];
    const bool no_high =
        high == kInf || sum.greatest() + sum.max_error <= high + tol::same_slack(high);
    const bool no_low = low == -kInf || sum.least() - sum.min_error >= low - tol::same_slack(low);
    if (no_high && no_low) {
      lp_.remove_row(i, kRemovedRedundantRow);
    } else if ((no_high && high < kInf) || (no_low && low > -kInf)) {
      lp_.change_limits(i, no_low ? -kInf : low, no_high ? kInf : high);
    }
    lp_.poll();
  }
}

}  // namespace

void remove_implied_rows(PresolveLp& lp) {
  ImpliedRedundancy(lp).run();
}

}  // namespace kelvo
