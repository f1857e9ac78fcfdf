#include "lp/form/verification.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "lp/form/verification_sums.h"

namespace kelvo {

namespace {

using verification::beyond_rounding;
using verification::outside;
using verification::Sum;
using verification::sum_column;
using verification::wrong_sign;

// Entries of a proof up to this share of the terms they were summed from are cancelled to nothing.
constexpr double kProofRounding = 1e-11;
// In the value of a proof entries below this are ignored whatever their terms.
constexpr double kProofEntry = 1e-13;
// The gap of multipliers that prove nothing, negated.
constexpr double kNoProof = 1e20;
// The gap that proves infeasibility must be above this share of its terms.
constexpr double kProofGap = 1e-12;
// A direction of largest entry 1 improves the objective when it gains more than this share of the
// terms.
constexpr double kRayGain = 1e-9;
// Entries of a direction up to this size may be what rounding has left of zeros.
constexpr double kRayNoise = 1e-12;
// What rounding its entries to doubles does to the row sums of a direction: so much of the terms.
constexpr double kEntryRounding = 4.0 * std::numeric_limits<double>::epsilon();

/// Sums a_i x per row, terms and magnitudes.
void sum_rows(const ProgramView& lp, const double* x, Vector<Sum>& sums) {
  sums.assign(lp.num_rows, Sum());
  for (int j = 0; j < lp.num_cols; ++j) {
    if (x[j] == 0.0) continue;
    lp.for_column(j, [&](int i, double a) { sums[i].add(static_cast<long double>(a) * x[j]); });
  }
}

double measure_primal(const ProgramView& lp, LpSolution& solution) {
  double worst = 0.0;
  for (int j = 0; j < lp.num_cols; ++j) {
    worst = std::max(worst, outside(solution.x[j], lp.lower(j), lp.upper(j)));
  }
  Vector<Sum> sums;
  sum_rows(lp, solution.x.data(), sums);
  solution.activity.resize(lp.num_rows);
  for (int i = 0; i < lp.num_rows; ++i) {
    solution.activity[i] = static_cast<double>(sums[i].value);
    worst = std::max(worst, verification::row_violation(lp, i, sums[i]));
  }
  return worst;
}

double measure_dual(const ProgramView& lp, LpSolution& solution) {
  const int n = lp.num_cols;
  const Vector<int>& status = solution.status;
  double worst = 0.0;
  solution.z.resize(n);
  for (int j = 0; j < n; ++j) {
    const auto d = verification::reduced_cost(lp, j, status[j], solution.y.data());
    solution.z[j] = d.value;
    worst = std::max(worst, d.wrong);
  }
  for (int v = n; v < n + lp.num_rows; ++v) {
    worst = std::max(worst, wrong_sign(status[v], lp.lower(v), lp.upper(v), -solution.y[v - n]));
  }
  return worst;
}

/// The dual side of a pair of x and y without a basis: what is wrong are reduced costs that pull
/// towards an absent bound, and the distance between the objectives.
void measure_pair(const ProgramView& lp, LpSolution& solution, Violations& violations) {
  const int n = lp.num_cols;
  solution.z.resize(n);
  Sum bound;
  const auto add = [&](int v, double reduced_cost, double magnitude) {
    const double end = reduced_cost > 0.0 ? lp.lower(v) : lp.upper(v);
    if (std::isfinite(end)) {
      bound.add(static_cast<long double>(reduced_cost) * end);
    } else {
      const double wrong = beyond_rounding(std::fabs(reduced_cost), magnitude);
      violations.dual = std::max(violations.dual, wrong);
    }
  };
  for (int j = 0; j < n; ++j) {
    const Sum sum = sum_column(lp, j, solution.y.data(), lp.cost(j), -1.0);
    solution.z[j] = static_cast<double>(sum.value);
    add(j, solution.z[j], static_cast<double>(sum.magnitude));
  }
  for (int i = 0; i < lp.num_rows; ++i) add(n + i, -solution.y[i], 0.0);
  const double apart = std::fabs(solution.objective - static_cast<double>(bound.value));
  violations.gap = beyond_rounding(apart, static_cast<double>(bound.magnitude)) /
                   (1.0 + std::fabs(solution.objective));
}

/// Least value of weight * v over lower <= v <= upper, as a term of a proof; false when there is
/// none.
bool add_least(double weight, double lower, double upper, Sum& sum) {
  if (weight == 0.0) return true;
  const double end = weight > 0.0 ? lower : upper;
  if (std::fabs(end) == kInf) return false;
  sum.add(static_cast<long double>(weight) * end);
  return true;
}

/// Subtracts max (A'y)'x over the column bounds, entries of A'y below `ignored` left out; false
/// when there is no maximum.
bool subtract_most(const ProgramView& lp, const Vector<double>& y, double ignored, Sum& gap) {
  for (int j = 0; j < lp.num_cols; ++j) {
    const Sum sum = sum_column(lp, j, y.data(), 0.0, 1.0);
    double weight = static_cast<double>(sum.value);
    if (std::fabs(weight) < ignored ||
        std::fabs(weight) <= kProofRounding * static_cast<double>(sum.magnitude)) {
      weight = 0.0;
    }
    if (!add_least(-weight, lp.lower(j), lp.upper(j), gap)) return false;
  }
  return true;
}

/// min y'a - max (A'y)'x > 0 for y as it stands, multipliers of absent limits removed first.
bool proves_infeasible(const ProgramView& lp, Vector<double>& y) {
  Sum gap;
  for (int i = 0; i < lp.num_rows; ++i) {
    if (!add_least(y[i], lp.row_lower(i), lp.row_upper(i), gap)) y[i] = 0.0;
  }
  return subtract_most(lp, y, 0.0, gap) && gap.value > kProofGap * gap.magnitude;
}

double largest_magnitude(const Vector<double>& values) {
  double largest = 0.0;
  for (const double value : values) largest = std::max(largest, std::fabs(value));
  return largest;
}

bool keeps_limits(double move, double lower, double upper) {
  return (move >= 0.0 || lower == -kInf) && (move <= 0.0 || upper == kInf);
}

/// Takes out the entries up to `negligible`, and those up to kRayNoise that run into a bound. False
/// when another one does.
bool keep_bounds(const ProgramView& lp, double negligible, Vector<double>& r) {
  for (int j = 0; j < lp.num_cols; ++j) {
    if (std::fabs(r[j]) <= negligible) r[j] = 0.0;
    if (keeps_limits(r[j], lp.lower(j), lp.upper(j))) continue;
    if (std::fabs(r[j]) > kRayNoise) return false;
    r[j] = 0.0;
  }
  return true;
}

/// No row moves against a limit by more than the rounding of the entries explains.
bool keeps_rows(const ProgramView& lp, const Vector<double>& r) {
  Vector<Sum> sums;
  sum_rows(lp, r.data(), sums);
  for (int i = 0; i < lp.num_rows; ++i) {
    const double move = static_cast<double>(sums[i].value);
    const double rounding = kEntryRounding * static_cast<double>(sums[i].magnitude);
    if (std::fabs(move) > rounding && !keeps_limits(move, lp.row_lower(i), lp.row_upper(i))) {
      return false;
    }
  }
  return true;
}

bool improves(const ProgramView& lp, const Vector<double>& r) {
  Sum gain;
  for (int j = 0; j < lp.num_cols; ++j) {
    gain.add(-static_cast<long double>(lp.cost(j)) * r[j]);
  }
  return gain.value > kRayGain * gain.magnitude;
}

}  // namespace

Vector<double> reduced_costs(const ProgramView& lp, const Vector<double>& y) {
  Vector<double> z;
  z.reserve(lp.num_cols);
  for (int j = 0; j < lp.num_cols; ++j) {
    z.push_back(static_cast<double>(sum_column(lp, j, y.data(), lp.cost(j), -1.0).value));
  }
  return z;
}

Violations complete_and_measure(const ProgramView& lp, LpSolution& solution) {
  Violations violations;
  violations.primal = measure_primal(lp, solution);
  long double objective = 0.0L;
  for (int j = 0; j < lp.num_cols; ++j) {
    objective += static_cast<long double>(lp.cost(j)) * solution.x[j];
  }
  solution.objective = static_cast<double>(objective);
  if (solution.layers.basis) {
    violations.dual = measure_dual(lp, solution);
  } else if (solution.layers.duals) {
    measure_pair(lp, solution, violations);
  }
  return violations;
}

double measure_complementarity(const ProgramView& lp, double optimality_tolerance,
                               const LpSolution& solution) {
  double worst = 0.0;
  const auto add = [&](int v, double value, double multiplier) {
    if (std::fabs(multiplier) <= optimality_tolerance) return;
    const int code = solution.status[v];
    if (code == kAtLower) worst = std::max(worst, std::fabs(value - lp.lower(v)));
    if (code == kAtUpper) worst = std::max(worst, std::fabs(value - lp.upper(v)));
  };
  for (int j = 0; j < lp.num_cols; ++j) add(j, solution.x[j], solution.z[j]);
  for (int i = 0; i < lp.num_rows; ++i) {
    add(lp.num_cols + i, -solution.activity[i], solution.y[i]);
  }
  return worst;
}

bool verify_farkas(const ProgramView& lp, Vector<double>& y) {
  const double largest = largest_magnitude(y);
  if (largest == 0.0 || !std::isfinite(largest)) return false;
  // Small entries may be rounding errors or what makes a column add up: both are tried.
  for (const double negligible : {0.0, kProofRounding * largest}) {
    for (const double sign : {1.0, -1.0}) {
      Vector<double> proof(y.size());
      for (std::size_t i = 0; i < y.size(); ++i) {
        proof[i] = std::fabs(y[i]) <= negligible ? 0.0 : sign * y[i];
      }
      if (!proves_infeasible(lp, proof)) continue;
      y.swap(proof);
      return true;
    }
  }
  return false;
}

double farkas_proof(const ProgramView& lp, const Vector<double>& y) {
  Sum gap;
  bool finite = true;
  for (int i = 0; i < lp.num_rows; ++i) {
    if (std::fabs(y[i]) < kProofEntry) continue;
    finite = add_least(y[i], lp.row_lower(i), lp.row_upper(i), gap) && finite;
  }
  finite = subtract_most(lp, y, kProofEntry, gap) && finite;
  return finite ? static_cast<double>(gap.value) : -kNoProof;
}

bool verify_ray(const ProgramView& lp, Vector<double>& r) {
  const double largest = largest_magnitude(r);
  if (largest == 0.0 || !std::isfinite(largest)) return false;
  // Small entries may be rounding errors or what makes a row add up: both are tried.
  for (const double negligible : {0.0, kRayNoise}) {
    Vector<double> direction(r);
    for (double& entry : direction) entry /= largest;
    if (!keep_bounds(lp, negligible, direction) || !keeps_rows(lp, direction) ||
        !improves(lp, direction)) {
      continue;
    }
    r.swap(direction);
    return true;
  }
  return false;
}

}  // namespace kelvo
