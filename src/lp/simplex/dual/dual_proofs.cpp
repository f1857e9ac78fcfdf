// Proofs that the dual simplex gives before it claims that no (better) point exists.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Entries of a proof row of at most this share of the largest one are rounding errors: they are
// left out where the variable has no bound to pay for them with.
constexpr double kProofEntry = 1e-9;
// The gap must exceed this share of the terms it was summed from.
constexpr double kProofRounding = 1e-11;

/// The interval of a sum of terms alpha x over a box.
struct ActivityRange {
  double low = 0.0;
  double high = 0.0;
  double size = 0.0;  // sum of magnitudes of the finite terms

  void add(double alpha, double lower, double upper, double negligible) {
    if (alpha == 0.0) return;
    if (std::fabs(alpha) <= negligible && (lower == -kInf || upper == kInf)) return;
    const double at_lower = alpha * lower;
    const double at_upper = alpha * upper;
    low += std::min(at_lower, at_upper);
    high += std::max(at_lower, at_upper);
    size += (std::isfinite(at_lower) ? std::fabs(at_lower) : 0.0) +
            (std::isfinite(at_upper) ? std::fabs(at_upper) : 0.0);
  }
};

double column_product(const LpProblem& problem, int j, const double* y) {
  const SparseMatrix& columns = problem.columns;
  double sum = 0.0;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    sum += y[columns.index[k]] * columns.value[k];
  }
  return sum;
}

}  // namespace

// y'(A x + s) is 0 at every feasible point; over the true bounds the row of the inverse at the
// leaving position must keep it away from 0.
bool DualEngine::prove_infeasibility() {
  const LpProblem& problem = s_.problem;
  const double* y = s_.row_ep.value.data();
  double largest = 0.0;
  Vector<double>& row = s_.pivot_row.value;  // used up by the ratio test
  for (int j = 0; j < s_.n; ++j) {
    row[j] = column_product(problem, j, y);
    largest = std::max(largest, std::fabs(row[j]));
  }
  for (int i = 0; i < s_.m; ++i) {
    row[s_.n + i] = y[i];
    largest = std::max(largest, std::fabs(y[i]));
  }
  ActivityRange range;
  const double negligible = kProofEntry * largest;
  for (int j = 0; j < s_.num_vars; ++j) {
    range.add(row[j], problem.lower[j], problem.upper[j], negligible);
  }
  s_.pivot_row.count = WorkVector::kDense;
  s_.pivot_row.clear();
  const double gap = std::max(s_.run.settings.feasibility_tolerance * std::min(1.0, largest),
                              kProofRounding * range.size);
  if (!(range.low > gap) && !(range.high < -gap)) return false;
  std::copy(y, y + s_.m, s_.results.farkas.begin());
  s_.refine_duals(s_.results.farkas, leaving_);
  return true;
}

// The dual bound of the current basis for the true costs, whatever perturbed ones are in use.
bool DualEngine::prove_objective_limit() {
  const LpProblem& problem = s_.problem;
  WorkVector& y = s_.full;
  y.clear();
  for (int p = 0; p < s_.m; ++p) {
    const double c = problem.cost[s_.basis.header[p]];
    if (c != 0.0) y.insert(p, c);
  }
  if (y.count > 0) s_.factor().btran(y, 1.0);
  double bound = problem.offset;
  const double tolerance = s_.run.settings.optimality_tolerance;
  for (int j = 0; j < s_.num_vars && bound > -kInf; ++j) {
    if (s_.basis.status[j] == kBasic) continue;
    const double d = j < s_.n ? problem.cost[j] - column_product(problem, j, y.value.data())
                              : problem.cost[j] - y.value[j - s_.n];
    if (d == 0.0) continue;
    const double at = d > 0.0 ? problem.lower[j] : problem.upper[j];
    if (std::isfinite(at)) {
      bound += d * at;
    } else if (std::fabs(d) > tolerance) {
      bound = -kInf;
    }
  }
  y.clear();
  return bound > s_.run.settings.objective_upper_limit;
}

}  // namespace kelvo
