#include "lp/simplex/state/dual_values.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Duals above this are refined once after a fresh factorization: rounding of 1e-15 of it would
// already be a hundredth of the smallest optimality tolerance that users set.
constexpr double kLargeDual = 1e6;

}  // namespace

DualValues::DualValues(const WorkingProgram& program, const Basis& basis)
    : row_duals(basis.header.size(), 0.0),
      reduced_cost(basis.status.size(), 0.0),
      program_(program),
      basis_(basis) {}

void DualValues::compute(BasisInverse& inverse, WorkVector& rhs) {
  const int m = program_.problem.num_rows;
  rhs.clear();
  for (int p = 0; p < m; ++p) {
    const double c = program_.cost[basis_.header[p]];
    if (c != 0.0) rhs.insert(p, c);
  }
  if (rhs.count > 0) inverse.factor().btran(rhs, 1.0);
  std::copy(rhs.value.begin(), rhs.value.end(), row_duals.begin());
  rhs.clear();
  // Large duals cancel in the reduced costs, and the rounding of the solve shows there.
  const auto large = [](double y) { return std::fabs(y) > kLargeDual; };
  if (inverse.fresh() && std::any_of(row_duals.begin(), row_duals.end(), large)) {
    refine(row_duals, -1, inverse, rhs);
  }
  price_out();
  validity_ = inverse.fresh() ? Validity::fresh : Validity::updated;
}

double DualValues::priced_out(int j) const {
  const int n = program_.problem.num_cols;
  if (j >= n) return program_.cost[j] - row_duals[j - n];
  double d = program_.cost[j];
  const SparseMatrix& columns = program_.problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    d -= row_duals[columns.index[k]] * columns.value[k];
  }
  return d;
}

void DualValues::price_out() {
  const SparseMatrix& columns = program_.problem.columns;
  const double* y = row_duals.data();
  const int n = program_.problem.num_cols;
  const int m = program_.problem.num_rows;
  for (int j = 0; j < n; ++j) {
    if (basis_.is_basic(j)) {
      reduced_cost[j] = 0.0;
      continue;
    }
    double d = program_.cost[j];
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      d -= y[columns.index[k]] * columns.value[k];
    }
    reduced_cost[j] = d;
  }
  for (int i = 0; i < m; ++i) {
    reduced_cost[n + i] = basis_.is_basic(n + i) ? 0.0 : program_.cost[n + i] - y[i];
  }
}

void DualValues::refine(Vector<double>& y, int unit_position, BasisInverse& inverse,
                        WorkVector& rhs) const {
  const SparseMatrix& columns = program_.problem.columns;
  const int n = program_.problem.num_cols;
  const int m = program_.problem.num_rows;
  rhs.clear();
  for (int p = 0; p < m; ++p) {
    const int v = basis_.header[p];
    long double rest = unit_position < 0 ? program_.cost[v] : p == unit_position ? 1.0 : 0.0;
    if (v >= n) {
      rest -= y[v - n];
    } else {
      for (int k = columns.start[v]; k < columns.start[v + 1]; ++k) {
        rest -= static_cast<long double>(y[columns.index[k]]) * columns.value[k];
      }
    }
    if (rest != 0.0L) rhs.insert(p, static_cast<double>(rest));
  }
  if (rhs.count > 0) inverse.factor().btran(rhs, 1.0);
  for (int i = 0; i < m; ++i) y[i] += rhs.value[i];
  rhs.clear();
}

double DualValues::working_objective() const {
  const int num_vars = program_.problem.num_vars();
  double sum = 0.0;
  for (int j = 0; j < num_vars; ++j) {
    if (!basis_.is_basic(j)) sum += reduced_cost[j] * basis_.value[j];
  }
  return sum + program_.problem.offset;
}

}  // namespace kelvo
