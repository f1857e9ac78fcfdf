#include "qp/definiteness.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "qp/symmetric_elimination.h"

namespace kelvo {
namespace {

// A diagonal entry or a minor below minus this proves indefiniteness by itself.
constexpr double kNegative = 1e-6;
// Entries of a direction up to this, where its largest one is 1, are rounding.
constexpr double kNegligible = 1e-13;

double diagonal(const SparseMatrix& q, int j) {
  double sum = 0.0;
  for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
    if (q.index[k] == j) sum += q.value[k];
  }
  return sum;
}

bool use_diagonal(const SparseMatrix& q, double sign, Vector<double>& x) {
  for (int j = 0; j < q.num_major; ++j) {
    if (sign * diagonal(q, j) >= -kNegative) continue;
    x[j] = 1.0;
    return true;
  }
  return false;
}

bool use_minor(const SparseMatrix& q, double sign, Vector<double>& x) {
  Vector<double> d(q.num_major);
  for (int j = 0; j < q.num_major; ++j) d[j] = sign * diagonal(q, j);
  for (int j = 0; j < q.num_major; ++j) {
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      const int i = q.index[k];
      const double b = sign * q.value[k];
      if (i >= j || d[i] * d[j] - b * b >= -kNegative) continue;
      const auto [xi, xj] = negative_direction(d[i], b, d[j]);
      x[i] = xi;
      x[j] = xj;
      return true;
    }
  }
  return false;
}

/// Scales the largest entry to 1 and removes rounding.
void tidy(Vector<double>& x) {
  double largest = 0.0;
  for (const double v : x) largest = std::max(largest, std::fabs(v));
  if (largest == 0.0) return;
  for (double& v : x) {
    v /= largest;
    if (std::fabs(v) <= kNegligible) v = 0.0;
  }
}

}  // namespace

std::pair<double, double> negative_direction(double a, double b, double c) {
  if (a < 0.0) return {1.0, 0.0};
  if (c < 0.0) return {0.0, 1.0};
  // With the larger diagonal entry c: (a c - b^2) / c at (1, -b / c).
  if (c >= a && c > 0.0) return {1.0, -b / c};
  if (a > 0.0) return {-b / a, 1.0};
  return {1.0, b > 0.0 ? -1.0 : 1.0};
}

double quadratic_form(const SparseMatrix& q, const double* x) {
  long double sum = 0.0L;
  for (int j = 0; j < q.num_major; ++j) {
    if (x[j] == 0.0) continue;
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      sum += static_cast<long double>(q.value[k]) * x[q.index[k]] * x[j];
    }
  }
  return static_cast<double>(sum);
}

bool is_semidefinite(const SparseMatrix& q, double sign) {
  return !SymmetricElimination(q, sign).run();
}

bool find_indefinite_direction(const SparseMatrix& q, double sign, Vector<double>& x) {
  x.assign(q.num_major, 0.0);
  bool found = use_diagonal(q, sign, x) || use_minor(q, sign, x);
  if (!found) {
    SymmetricElimination elimination(q, sign);
    if (elimination.run()) {
      elimination.direction(x);
      found = true;
    }
  }
  if (!found) return false;
  tidy(x);
  // What rounding made of it counts, not what it should be.
  if (sign * quadratic_form(q, x.data()) < 0.0) return true;
  x.assign(q.num_major, 0.0);
  return false;
}

}  // namespace kelvo
