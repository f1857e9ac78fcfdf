// Bounds on a sum  sum_k a_k v_k  whose variables v_k move in intervals: the activity of a row over
// the bounds of its columns, or the price of a column over the bounds of the row duals.
//
// Either end is the sum of its finite terms and the number of its infinite ones, so that terms can
// be added and taken out. Every operation adds what it may have lost by rounding to the error of
// that end; huge bounds on one side thus leave the other one certain.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

struct Interval {
  double lower = -kInf, upper = kInf;
};

struct Activity {
  double min = 0.0, max = 0.0;             // sums of the finite terms
  int min_infinite = 0, max_infinite = 0;  // number of infinite terms
  double min_error = 0.0, max_error = 0.0;

  double least() const { return min_infinite > 0 ? -kInf : min; }
  double greatest() const { return max_infinite > 0 ? kInf : max; }

  void add(double a, double low, double high) {
    if (a < 0.0) std::swap(low, high);
    count_in(a * low, min, min_infinite, min_error, 1);
    count_in(a * high, max, max_infinite, max_error, 1);
  }
  void subtract(double a, double low, double high) {
    if (a < 0.0) std::swap(low, high);
    count_in(a * low, min, min_infinite, min_error, -1);
    count_in(a * high, max, max_infinite, max_error, -1);
  }

  /// True when limits on the sum can say something about any of its variables.
  bool speaks(const Interval& limits) const {
    return (limits.upper < kInf && min_infinite <= 1) ||
           (limits.lower > -kInf && max_infinite <= 1);
  }

  /// Bounds on a variable, whose term a v with v in [low, high] is part of the sum, that follow
  /// from limits on the sum. The rounding error counts against them.
  Interval implied(double a, double low, double high, const Interval& limits) const {
    if (a < 0.0) std::swap(low, high);
    double most = kInf, least = -kInf;  // a v <= most, a v >= least
    if (std::isfinite(low)) {
      if (min_infinite == 0) most = limits.upper - (min - a * low - min_error);
    } else if (min_infinite == 1) {
      most = limits.upper - (min - min_error);
    }
    if (std::isfinite(high)) {
      if (max_infinite == 0) least = limits.lower - (max - a * high + max_error);
    } else if (max_infinite == 1) {
      least = limits.lower - (max + max_error);
    }
    return a > 0.0 ? Interval{least / a, most / a} : Interval{most / a, least / a};
  }

 private:
  static void count_in(double term, double& sum, int& infinite, double& error, int sign) {
    if (term == 0.0) return;
    if (std::isfinite(term)) {
      sum += sign * term;
      error += presolve_tolerance::kRounding * (std::fabs(sum) + std::fabs(term));
    } else {
      infinite += sign;
    }
  }
};

}  // namespace kelvo
