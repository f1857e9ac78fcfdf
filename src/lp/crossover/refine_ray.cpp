#include "lp/crossover/refine_ray.h"

#include <algorithm>
#include <cmath>

#include "base/work_vector.h"
#include "lp/factor/basis_factor.h"

namespace kelvo {

namespace {

// Each step gains some ten digits; the last ones only confirm.
constexpr int kSteps = 4;
// Density of the right-hand sides that is expected of solves; only speed depends on it.
constexpr double kExpectedDensity = 0.1;

/// A r_x + r_s by row.
Vector<long double> row_sums(const LpProblem& lp, const Vector<double>& ray) {
  Vector<long double> sums(lp.num_rows, 0.0L);
  const SparseMatrix& a = lp.columns;
  for (int j = 0; j < lp.num_cols; ++j) {
    if (ray[j] == 0.0) continue;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      sums[a.index[k]] += static_cast<long double>(a.value[k]) * ray[j];
    }
  }
  for (int i = 0; i < lp.num_rows; ++i) sums[i] += ray[lp.num_cols + i];
  return sums;
}

}  // namespace

void refine_ray(const LpProblem& lp, const Vector<int>& status, Vector<double>& ray) {
  Vector<int> header;
  for (int v = 0; v < lp.num_vars(); ++v) {
    if (status[v] == kBasic) header.push_back(v);
  }
  if (static_cast<int>(header.size()) != lp.num_rows) return;
  BasisFactor factor(lp.columns, FactorSettings(), nullptr);
  Vector<BasisRepair> repairs;
  if (factor.factorize(header, false, repairs) != FactorOutcome::ok) return;
  WorkVector correction(lp.num_rows);
  for (int step = 0; step < kSteps; ++step) {
    const Vector<long double> sums = row_sums(lp, ray);
    long double largest = 0.0L;
    for (const long double sum : sums) largest = std::max(largest, std::fabs(sum));
    if (largest == 0.0L) return;
    correction.clear();
    // Divided by the largest one, because solves drop what is small.
    for (int i = 0; i < lp.num_rows; ++i) {
      if (sums[i] != 0.0L) correction.insert(i, static_cast<double>(sums[i] / largest));
    }
    factor.ftran(correction, kExpectedDensity);
    const double unit = static_cast<double>(largest);
    for (int p = 0; p < lp.num_rows; ++p) ray[header[p]] -= unit * correction.value[p];
  }
}

}  // namespace kelvo
