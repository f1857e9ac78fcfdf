// What the checks of an answer compute of single rows and columns. A `Program` has the functions of
// ProgramView that are called here.
#pragma once

#include <algorithm>
#include <cmath>

#include "base/basis_status.h"
#include "base/containers.h"

namespace kelvo::verification {

// A sum of stored numbers is known no better than this share of the sum of their magnitudes: the
// numbers themselves (basic values, duals) carry some fifty rounding errors of a double.
inline constexpr double kSumRounding = 1e-14;

/// A sum with the magnitude of its terms.
struct Sum {
  long double value = 0.0L;
  long double magnitude = 0.0L;

  void add(long double term) {
    value += term;
    magnitude += std::fabs(term);
  }
};

inline double beyond_rounding(double violation, double magnitude) {
  return std::max(0.0, violation - kSumRounding * magnitude);
}

inline double outside(double value, double lower, double upper) {
  return std::max({0.0, value - upper, lower - value});
}

/// start + sign times the product of column j with y.
template <class Program>
Sum sum_column(const Program& lp, int j, const double* y, double start, double sign) {
  Sum sum;
  sum.add(start);
  lp.for_column(j, [&](int i, double a) { sum.add(sign * static_cast<long double>(a) * y[i]); });
  return sum;
}

/// By how much the reduced cost is wrong for a variable of this status.
inline double wrong_sign(int status, double lower, double upper, double reduced_cost) {
  if (status != kBasic && lower >= upper) return 0.0;
  if (status == kAtLower) return std::max(0.0, -reduced_cost);
  if (status == kAtUpper) return std::max(0.0, reduced_cost);
  return std::fabs(reduced_cost);
}

/// Violation of a row's limits by its activity, given as a sum.
template <class Program>
double row_violation(const Program& lp, int i, const Sum& sum) {
  const double activity = static_cast<double>(sum.value);
  return beyond_rounding(outside(activity, lp.row_lower(i), lp.row_upper(i)),
                         static_cast<double>(sum.magnitude));
}

/// Reduced cost of a column for duals y, and by how much it is wrong.
struct ReducedCost {
  double value;
  double wrong;
};

template <class Program>
ReducedCost reduced_cost(const Program& lp, int j, int status, const double* y) {
  const Sum sum = sum_column(lp, j, y, lp.cost(j), -1.0);
  const double value = static_cast<double>(sum.value);
  const double wrong = wrong_sign(status, lp.lower(j), lp.upper(j), value);
  return {status == kBasic ? 0.0 : value,
          beyond_rounding(wrong, static_cast<double>(sum.magnitude))};
}

}  // namespace kelvo::verification
