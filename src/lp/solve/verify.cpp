#include "lp/solve/verify.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "lp/form/lp_problem.h"
#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

// A sum of stored numbers is known no better than this share of the sum of their magnitudes: the
// numbers themselves (basic values, duals) carry some fifty rounding errors of a double.
constexpr double kSumRounding = 1e-14;
// Entries of a proof up to this share of the terms they were summed from are cancelled to nothing.
constexpr double kProofRounding = 1e-11;
// In the value of a proof entries below this are ignored whatever their terms.
constexpr double kProofEntry = 1e-13;
// The gap that proves infeasibility must be above this share of its terms.
constexpr double kProofGap = 1e-12;
// A direction of largest entry 1 improves the objective when it gains more than this share of the
// terms.
constexpr double kRayGain = 1e-9;
// Entries of a direction up to this size may be what rounding has left of zeros.
constexpr double kRayNoise = 1e-12;
// What rounding its entries to doubles does to the row sums of a direction: so much of the terms.
constexpr double kEntryRounding = 4.0 * std::numeric_limits<double>::epsilon();

/// A sum with the magnitude of its terms.
struct Sum {
  long double value = 0.0L;
  long double magnitude = 0.0L;

  void add(long double term) {
    value += term;
    magnitude += std::fabs(term);
  }
};

double beyond_rounding(double violation, double magnitude) {
  return std::max(0.0, violation - kSumRounding * magnitude);
}

double outside(double value, double lower, double upper) {
  return std::max({0.0, value - upper, lower - value});
}

/// Sums a_i x per row, terms and magnitudes.
void sum_rows(const Model& model, const double* x, Vector<Sum>& sums) {
  sums.assign(model.num_rows, Sum());
  const ColumnStore& matrix = model.matrix;
  for (int j = 0; j < model.num_cols; ++j) {
    if (x[j] == 0.0) continue;
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end; ++k) {
      sums[matrix.index[k]].add(static_cast<long double>(matrix.value[k]) * x[j]);
    }
  }
}

/// start + the product of column j with y.
Sum sum_column(const Model& model, int j, const double* y, double start, double sign) {
  Sum sum;
  sum.add(start);
  const ColumnStore& matrix = model.matrix;
  const int end = matrix.start[j] + matrix.count[j];
  for (int k = matrix.start[j]; k < end; ++k) {
    sum.add(sign * static_cast<long double>(matrix.value[k]) * y[matrix.index[k]]);
  }
  return sum;
}

/// By how much the reduced cost (of the minimization) is wrong for a variable of this status.
double wrong_sign(int status, double lower, double upper, double reduced_cost) {
  if (status != kBasic && lower >= upper) return 0.0;
  switch (status) {
    case kAtLower:
      return std::max(0.0, -reduced_cost);
    case kAtUpper:
      return std::max(0.0, reduced_cost);
    default:
      return std::fabs(reduced_cost);
  }
}

double measure_primal(const Model& model, SolutionRecord& record) {
  double worst = 0.0;
  for (int j = 0; j < model.num_cols; ++j) {
    worst = std::max(worst, outside(record.x[j], finite_or_infinite(model.lower[j]),
                                    finite_or_infinite(model.upper[j])));
  }
  Vector<Sum> sums;
  sum_rows(model, record.x.data(), sums);
  record.activity.resize(model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) {
    const double activity = static_cast<double>(sums[i].value);
    const RowLimits limits = row_limits(model, i);
    record.activity[i] = activity;
    worst = std::max(worst, beyond_rounding(outside(activity, limits.lower, limits.upper),
                                            static_cast<double>(sums[i].magnitude)));
  }
  return worst;
}

double measure_dual(const Model& model, const Vector<int>& status, SolutionRecord& record) {
  const int n = model.num_cols;
  double worst = 0.0;
  record.dj.resize(n);
  for (int j = 0; j < n; ++j) {
    const Sum sum = sum_column(model, j, record.pi.data(), model.objective[j], -1.0);
    const double reduced_cost = static_cast<double>(sum.value);
    const double wrong =
        wrong_sign(status[j], model.lower[j], model.upper[j], model.sense * reduced_cost);
    worst = std::max(worst, beyond_rounding(wrong, static_cast<double>(sum.magnitude)));
    record.dj[j] = status[j] == kBasic ? 0.0 : reduced_cost;
  }
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    worst = std::max(worst, wrong_sign(status[n + i], -limits.upper, -limits.lower,
                                       -model.sense * record.pi[i]));
  }
  return worst;
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
bool subtract_most(const Model& model, const Vector<double>& y, double ignored, Sum& gap) {
  for (int j = 0; j < model.num_cols; ++j) {
    const Sum sum = sum_column(model, j, y.data(), 0.0, 1.0);
    double weight = static_cast<double>(sum.value);
    if (std::fabs(weight) < ignored ||
        std::fabs(weight) <= kProofRounding * static_cast<double>(sum.magnitude)) {
      weight = 0.0;
    }
    if (!add_least(-weight, finite_or_infinite(model.lower[j]), finite_or_infinite(model.upper[j]),
                   gap)) {
      return false;
    }
  }
  return true;
}

/// min y'a - max (A'y)'x > 0 for y as it stands, multipliers of absent limits removed first.
bool proves_infeasible(const Model& model, Vector<double>& y) {
  Sum gap;
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    if (!add_least(y[i], limits.lower, limits.upper, gap)) y[i] = 0.0;
  }
  return subtract_most(model, y, 0.0, gap) && gap.value > kProofGap * gap.magnitude;
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
bool keep_bounds(const Model& model, double negligible, Vector<double>& r) {
  for (int j = 0; j < model.num_cols; ++j) {
    if (std::fabs(r[j]) <= negligible) r[j] = 0.0;
    if (keeps_limits(r[j], finite_or_infinite(model.lower[j]),
                     finite_or_infinite(model.upper[j]))) {
      continue;
    }
    if (std::fabs(r[j]) > kRayNoise) return false;
    r[j] = 0.0;
  }
  return true;
}

/// No row moves against a limit by more than the rounding of the entries explains.
bool keeps_rows(const Model& model, const Vector<double>& r) {
  Vector<Sum> sums;
  sum_rows(model, r.data(), sums);
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    const double move = static_cast<double>(sums[i].value);
    const double rounding = kEntryRounding * static_cast<double>(sums[i].magnitude);
    if (std::fabs(move) > rounding && !keeps_limits(move, limits.lower, limits.upper)) return false;
  }
  return true;
}

bool improves(const Model& model, const Vector<double>& r) {
  Sum gain;
  for (int j = 0; j < model.num_cols; ++j) {
    gain.add(static_cast<long double>(-model.sense) * model.objective[j] * r[j]);
  }
  return gain.value > kRayGain * gain.magnitude;
}

}  // namespace

Violations complete_and_measure(const Model& model, const Vector<int>& status,
                                SolutionRecord& record) {
  Violations violations;
  violations.primal = measure_primal(model, record);
  violations.dual = measure_dual(model, status, record);
  record.objective = objective_value(model, record.x.data());
  return violations;
}

double measure_complementarity(const Model& model, const Vector<int>& status,
                               double optimality_tolerance, const SolutionRecord& record) {
  double worst = 0.0;
  const auto add = [&](int code, double value, double lower, double upper, double multiplier) {
    if (std::fabs(multiplier) <= optimality_tolerance) return;
    if (code == kAtLower) worst = std::max(worst, std::fabs(value - lower));
    if (code == kAtUpper) worst = std::max(worst, std::fabs(value - upper));
  };
  for (int j = 0; j < model.num_cols; ++j) {
    add(status[j], record.x[j], finite_or_infinite(model.lower[j]),
        finite_or_infinite(model.upper[j]), record.dj[j]);
  }
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    add(status[model.num_cols + i], -record.activity[i], -limits.upper, -limits.lower,
        record.pi[i]);
  }
  return worst;
}

bool verify_farkas(const Model& model, Vector<double>& y) {
  const double largest = largest_magnitude(y);
  if (largest == 0.0 || !std::isfinite(largest)) return false;
  // Small entries may be rounding errors or what makes a column add up: both are tried.
  for (const double negligible : {0.0, kProofRounding * largest}) {
    for (const double sign : {1.0, -1.0}) {
      Vector<double> proof(y.size());
      for (std::size_t i = 0; i < y.size(); ++i) {
        proof[i] = std::fabs(y[i]) <= negligible ? 0.0 : sign * y[i];
      }
      if (!proves_infeasible(model, proof)) continue;
      y.swap(proof);
      return true;
    }
  }
  return false;
}

double farkas_proof(const Model& model, const Vector<double>& y) {
  Sum gap;
  bool finite = true;
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    if (std::fabs(y[i]) < kProofEntry) continue;
    finite = add_least(y[i], limits.lower, limits.upper, gap) && finite;
  }
  finite = subtract_most(model, y, kProofEntry, gap) && finite;
  return finite ? static_cast<double>(gap.value) : -kInfiniteBound;
}

bool verify_ray(const Model& model, Vector<double>& r) {
  const double largest = largest_magnitude(r);
  if (largest == 0.0 || !std::isfinite(largest)) return false;
  // Small entries may be rounding errors or what makes a row add up: both are tried.
  for (const double negligible : {0.0, kRayNoise}) {
    Vector<double> direction(r);
    for (double& entry : direction) entry /= largest;
    if (!keep_bounds(model, negligible, direction) || !keeps_rows(model, direction) ||
        !improves(model, direction)) {
      continue;
    }
    r.swap(direction);
    return true;
  }
  return false;
}

}  // namespace kelvo
