// Rows that never bind because other rows keep the columns from it.
//
// Rows imply bounds on their columns that are tighter than the stated ones, and with the tightened
// bounds other rows turn out to be redundant. The tightened bounds serve for nothing else: kept in
// the program they could bind, and the duals would belong to bounds that are not there. A row that
// has tightened a bound stays, since the redundancy of others rests on it. Equations, which seldom
// are redundant, are asked first; inequalities only where that leaves something to gain.
//
// Way back: the rows are slack, y_i = 0.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr int kRounds = 3;
// A bound is taken when it is better by this share of the interval (of its size, when the interval
// is infinite): endless sequences of small steps help nobody.
constexpr double kWorthwhile = 1e-2;

class ImpliedRedundancy {
 public:
  explicit ImpliedRedundancy(PresolveLp& lp)
      : lp_(lp), low_(lp.lower), high_(lp.upper), rests_(lp.num_rows(), 0) {}

  void run() {
    tighten(true);
    remove_redundant();
    if (lp_.ended()) return;
    tighten(false);
    remove_redundant();
  }

 private:
  struct Sum {
    double min = 0.0, max = 0.0, magnitude = 0.0;
    int min_infinite = 0, max_infinite = 0;
  };

  Sum sum_row(int i) const;
  void tighten(bool equations_only);
  bool tighten_by(int i);
  bool offer(int j, double low, double high);
  void remove_redundant();

  PresolveLp& lp_;
  Vector<double> low_, high_;  // [columns] tightened bounds
  Vector<char> rests_;         // [rows] 1: a tightened bound rests on this row
};

ImpliedRedundancy::Sum ImpliedRedundancy::sum_row(int i) const {
  Sum sum;
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const double a = lp_.matrix[e].value;
    const int j = lp_.matrix[e].col;
    const double at_min = a > 0.0 ? a * low_[j] : a * high_[j];
    const double at_max = a > 0.0 ? a * high_[j] : a * low_[j];
    if (std::isfinite(at_min)) {
      sum.min += at_min;
      sum.magnitude += std::fabs(at_min);
    } else {
      ++sum.min_infinite;
    }
    if (std::isfinite(at_max)) {
      sum.max += at_max;
      sum.magnitude += std::fabs(at_max);
    } else {
      ++sum.max_infinite;
    }
  }
  lp_.work += lp_.matrix.row_count(i);
  return sum;
}

bool ImpliedRedundancy::offer(int j, double low, double high) {
  bool better = false;
  const double width = high_[j] - low_[j];
  const auto gains = [width](double gain, double bound) {
    const double scale = std::isfinite(width) ? width : std::max(1.0, std::fabs(bound));
    return gain > kWorthwhile * scale;
  };
  if (std::fabs(low) < tol::kHugeBound && gains(low - low_[j], low)) {
    low_[j] = low - tol::same_slack(low);
    better = true;
  }
  if (std::fabs(high) < tol::kHugeBound && gains(high_[j] - high, high)) {
    high_[j] = high + tol::same_slack(high);
    better = true;
  }
  return better;
}

bool ImpliedRedundancy::tighten_by(int i) {
  const Sum sum = sum_row(i);
  const double row_low = lp_.row_lower[i], row_high = lp_.row_upper[i];
  const bool from_high = row_high < kInf && sum.min_infinite <= 1;
  const bool from_low = row_low > -kInf && sum.max_infinite <= 1;
  if (!from_high && !from_low) return false;
  const double error = tol::kRounding * sum.magnitude * lp_.matrix.row_count(i);
  bool better = false;
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const double a = lp_.matrix[e].value;
    const int j = lp_.matrix[e].col;
    if (std::fabs(a) < tol::kSmallPivot) continue;
    const double at_min = a > 0.0 ? a * low_[j] : a * high_[j];
    const double at_max = a > 0.0 ? a * high_[j] : a * low_[j];
    // a x_j lies between these.
    double least = -kInf, greatest = kInf;
    if (from_high && sum.min_infinite == (std::isfinite(at_min) ? 0 : 1)) {
      greatest = row_high - (std::isfinite(at_min) ? sum.min - at_min : sum.min) + error;
    }
    if (from_low && sum.max_infinite == (std::isfinite(at_max) ? 0 : 1)) {
      least = row_low - (std::isfinite(at_max) ? sum.max - at_max : sum.max) - error;
    }
    // The sums stay those of the bounds before, which is weaker and sound.
    better |= a > 0.0 ? offer(j, least / a, greatest / a) : offer(j, greatest / a, least / a);
  }
  return better;
}

void ImpliedRedundancy::tighten(bool equations_only) {
  bool better = true;
  for (int round = 0; round < kRounds && better && !lp_.ended(); ++round) {
    better = false;
    for (int i = 0; i < lp_.num_rows() && !lp_.ended(); ++i) {
      if (!lp_.row_alive[i] || (equations_only && !lp_.is_equation(i))) continue;
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
    if (!lp_.row_alive[i] || rests_[i] || lp_.matrix.row_count(i) == 0) continue;
    const Sum sum = sum_row(i);
    const double low = lp_.row_lower[i], high = lp_.row_upper[i];
    const double error = tol::kRounding * sum.magnitude * lp_.matrix.row_count(i);
    const bool no_high =
        high == kInf || (sum.max_infinite == 0 && sum.max + error <= high + tol::same_slack(high));
    const bool no_low =
        low == -kInf || (sum.min_infinite == 0 && sum.min - error >= low - tol::same_slack(low));
    if (no_high && no_low) {
      lp_.remove_row(i);
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
