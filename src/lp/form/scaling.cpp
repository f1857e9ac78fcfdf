#include "lp/form/scaling.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace kelvo {

namespace {

// Entries up to this magnitude count as zero where smallest entries are looked for.
constexpr double kNegligibleEntry = 1e-13;
// A matrix whose entries all lie within these limits is left as it is.
constexpr double kSmallestFineEntry = 0.1;
constexpr double kLargestFineEntry = 10.0;
constexpr double kFineSpread = 10.0;
// Geometric passes go on while the spread is above the first of these and each pass multiplies it
// by less than the second; the third is the slack of that comparison.
constexpr double kGoodSpread = 10.0 / 9.0;
constexpr double kWorthwhileReduction = 0.9;
constexpr double kComparisonSlack = 1.0000000001;
// The range of a column, if it is not narrower than the first of these to begin with, must not be
// scaled below the second; the factor is chosen to make it the third.
constexpr double kNarrowRange = 1e-10;
constexpr double kNarrowestScaledRange = 2e-10;
constexpr double kSafeScaledRange = 2.1e-10;
// Factors are kept away from the ends of the floating-point range.
constexpr double kLargestFactor = 1e75;
constexpr double kSmallestFactor = 1e-75;

struct Extremes {
  double smallest = 1e75;
  double largest = 0.0;

  void add(double magnitude) {
    smallest = std::min(smallest, magnitude);
    largest = std::max(largest, magnitude);
  }
  bool empty() const { return largest == 0.0; }
  double spread() const { return largest / smallest; }
  double geometric_mean() const { return std::sqrt(largest * smallest); }
};

/// Extremes of the entries divided by the factors, entries that are negligible unscaled left out.
Extremes matrix_extremes(const SparseMatrix& columns, const Vector<double>& row,
                         const Vector<double>& col) {
  Extremes all;
  for (int j = 0; j < columns.num_major; ++j) {
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      const double magnitude = std::fabs(columns.value[k]);
      if (magnitude > kNegligibleEntry) all.add(magnitude / (row[columns.index[k]] * col[j]));
    }
  }
  return all;
}

bool scaling_needed(const LpProblem& lp) {
  Extremes all;
  for (const double value : lp.columns.value) {
    const double magnitude = std::fabs(value);
    if (magnitude > kNegligibleEntry) all.add(magnitude);
  }
  return !(all.largest <= kLargestFineEntry && all.smallest >= kSmallestFineEntry &&
           all.spread() <= kFineSpread);
}

/// Multiplies the factor of every major line by the geometric mean of its extremes, entries taken
/// as scaled so far.
void geometric_half_pass(const SparseMatrix& matrix, Vector<double>& major,
                         const Vector<double>& minor) {
  for (int i = 0; i < matrix.num_major; ++i) {
    Extremes line;
    for (int k = matrix.start[i]; k < matrix.start[i + 1]; ++k) {
      const double magnitude = std::fabs(matrix.value[k]);
      if (magnitude > kNegligibleEntry) line.add(magnitude / (major[i] * minor[matrix.index[k]]));
    }
    if (!line.empty()) major[i] *= line.geometric_mean();
  }
}

void geometric_passes(const LpProblem& lp, Vector<double>& row, Vector<double>& col) {
  double spread = matrix_extremes(lp.columns, row, col).spread();
  Vector<double> next_row, next_col;
  while (spread > kGoodSpread) {
    next_row = row;
    next_col = col;
    geometric_half_pass(lp.rows, next_row, next_col);
    geometric_half_pass(lp.columns, next_col, next_row);
    const double next_spread = matrix_extremes(lp.columns, next_row, next_col).spread();
    if (!(next_spread * kComparisonSlack < kWorthwhileReduction * spread)) break;
    row.swap(next_row);
    col.swap(next_col);
    spread = next_spread;
  }
}

/// Multiplies the factor of every major line by its largest entry as scaled so far.
void equilibrate_half_pass(const SparseMatrix& matrix, Vector<double>& major,
                           const Vector<double>& minor) {
  for (int i = 0; i < matrix.num_major; ++i) {
    double largest = 0.0;
    for (int k = matrix.start[i]; k < matrix.start[i + 1]; ++k) {
      const double magnitude = std::fabs(matrix.value[k]);
      largest = std::max(largest, magnitude / (major[i] * minor[matrix.index[k]]));
    }
    if (largest > 0.0) major[i] *= largest;
  }
}

void guard_column_ranges(const LpProblem& lp, Vector<double>& col) {
  for (int j = 0; j < lp.num_cols; ++j) {
    const double range = lp.upper[j] - lp.lower[j];
    if (range < kInf && range >= kNarrowRange && col[j] * range < kNarrowestScaledRange) {
      col[j] = kSafeScaledRange / range;
    }
  }
}

/// Applies factors (as in the header) to the program.
void apply(LpProblem& lp, const Vector<double>& row, const Vector<double>& col) {
  const int n = lp.num_cols;
  for (int j = 0; j < n; ++j) {
    for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
      lp.columns.value[k] = lp.columns.value[k] / row[lp.columns.index[k]] / col[j];
    }
    lp.cost[j] /= col[j];
    lp.lower[j] *= col[j];
    lp.upper[j] *= col[j];
  }
  for (int i = 0; i < lp.rows.num_major; ++i) {
    for (int k = lp.rows.start[i]; k < lp.rows.start[i + 1]; ++k) {
      lp.rows.value[k] = lp.rows.value[k] / row[i] / col[lp.rows.index[k]];
    }
  }
  for (int i = 0; i < lp.num_rows; ++i) {
    lp.cost[n + i] *= row[i];
    lp.lower[n + i] /= row[i];
    lp.upper[n + i] /= row[i];
  }
}

}  // namespace

double nearest_power_of_two(double factor) {
  constexpr int kLargeStep = 9, kMiddleStep = 5, kSmallStep = 1;
  struct Window {
    double low, high;
    int step;
  };
  // Each window is [0.75, 1.5] widened by the steps of the one after it.
  constexpr Window kWindows[] = {
      {0.0029296875, 384.0, kLargeStep}, {0.046875, 24.0, kMiddleStep}, {0.75, 1.5, kSmallStep}};
  double rest = std::clamp(factor, kSmallestFactor, kLargestFactor);
  int exponent = 0;
  for (const Window& window : kWindows) {
    const double step = std::ldexp(1.0, window.step);
    for (; rest > window.high; exponent += window.step) rest /= step;
    for (; rest < window.low; exponent -= window.step) rest *= step;
  }
  return std::ldexp(1.0, exponent);
}

void compute_scale_factors(const LpProblem& lp, ScalingMethod method, Vector<double>& row,
                           Vector<double>& col) {
  row.assign(lp.num_rows, 1.0);
  col.assign(lp.num_cols, 1.0);
  if (method == ScalingMethod::aggressive) geometric_passes(lp, row, col);
  equilibrate_half_pass(lp.rows, row, col);
  equilibrate_half_pass(lp.columns, col, row);
  guard_column_ranges(lp, col);
}

void scale_problem(LpProblem& lp, ScalingMethod method, Scaling& scaling, MessageSink& sink) {
  if (method == ScalingMethod::none || scaling.active()) return;
  if (!scaling_needed(lp)) {
    scaling.state = ScalingState::unnecessary;
    return;
  }
  try {
    compute_scale_factors(lp, method, scaling.row, scaling.col);
  } catch (const std::bad_alloc&) {
    scaling = Scaling();
    sink.send(Channel::warning, "Not enough memory to scale.\n");
    return;
  }
  for (double& factor : scaling.row) factor = nearest_power_of_two(factor);
  for (double& factor : scaling.col) factor = nearest_power_of_two(factor);
  apply(lp, scaling.row, scaling.col);
  scaling.state = ScalingState::scaled;
}

void magnify_variables(LpProblem& lp, const Vector<double>& factor, Scaling& scaling) {
  const Vector<double> col(factor.begin(), factor.begin() + lp.num_cols);
  Vector<double> row(factor.begin() + lp.num_cols, factor.end());
  for (double& r : row) r = 1.0 / r;
  apply(lp, row, col);
  if (!scaling.active()) {
    scaling.row.assign(lp.num_rows, 1.0);
    scaling.col.assign(lp.num_cols, 1.0);
    scaling.state = ScalingState::scaled;
  }
  for (int i = 0; i < lp.num_rows; ++i) scaling.row[i] *= row[i];
  for (int j = 0; j < lp.num_cols; ++j) scaling.col[j] *= col[j];
}

void unscale_problem(LpProblem& lp, Scaling& scaling) {
  if (scaling.active()) {
    for (double& factor : scaling.row) factor = 1.0 / factor;
    for (double& factor : scaling.col) factor = 1.0 / factor;
    apply(lp, scaling.row, scaling.col);
  }
  scaling = Scaling();
}

}  // namespace kelvo
