// Random bases and residuals for the tests of the factor.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "base/containers.h"
#include "base/random.h"
#include "base/sparse_matrix.h"
#include "base/work_vector.h"
#include "lp/factor/basis_factor.h"

namespace kelvo::factor_testing {

struct Shape {
  int rows;
  int columns;          // structural columns
  double per_column;    // mean entries of a column
  double scale_range;   // entries are multiplied by 10^(+-this), by row and by column
  bool small_integers;  // entries -3..3 instead of reals
};

inline double entry(Random& random, const Shape& shape) {
  if (shape.small_integers) {
    const int value = 1 + random.below(3);
    return random.below(2) == 0 ? value : -value;
  }
  return (random.below(2) == 0 ? 1.0 : -1.0) * (0.1 + random.uniform());
}

inline SparseMatrix random_matrix(Random& random, const Shape& shape) {
  SparseMatrix a;
  a.num_major = shape.columns;
  a.num_minor = shape.rows;
  a.start.assign(shape.columns + 1, 0);
  Vector<double> row_scale(shape.rows);
  for (double& s : row_scale) s = std::pow(10.0, shape.scale_range * (2.0 * random.uniform() - 1));
  Vector<char> used(shape.rows, 0);
  for (int j = 0; j < shape.columns; ++j) {
    const double scale = std::pow(10.0, shape.scale_range * (2.0 * random.uniform() - 1));
    // A skewed count: many short columns, a few long ones.
    const double u = random.uniform();
    const int count = std::min(shape.rows, 1 + static_cast<int>(3.0 * shape.per_column * u * u));
    const int begin = static_cast<int>(a.index.size());
    for (int k = 0; k < count; ++k) {
      const int i = random.below(shape.rows);
      if (used[i]) continue;
      used[i] = 1;
      a.index.push_back(i);
      a.value.push_back(entry(random, shape) * scale * row_scale[i]);
    }
    for (int e = begin; e < static_cast<int>(a.index.size()); ++e) used[a.index[e]] = 0;
    a.start[j + 1] = static_cast<int>(a.index.size());
  }
  return a;
}

/// Calls f(row, value) for the entries of the column of a variable.
template <class F>
void for_column(const SparseMatrix& a, int variable, F f) {
  if (variable >= a.num_major) {
    f(variable - a.num_major, 1.0);
    return;
  }
  for (int e = a.start[variable]; e < a.start[variable + 1]; ++e) f(a.index[e], a.value[e]);
}

/// max_i |(B x - a)_i| / max_i (|B| |x| + |a|)_i, in extended precision: the backward error, at
/// rounding level if the solve is stable.
inline double ftran_error(const SparseMatrix& a, const Vector<int>& header, const Vector<double>& x,
                          const Vector<double>& rhs) {
  std::vector<long double> residual(rhs.begin(), rhs.end()), size(rhs.size());
  for (std::size_t i = 0; i < rhs.size(); ++i) size[i] = std::fabs(residual[i]);
  for (std::size_t p = 0; p < header.size(); ++p) {
    for_column(a, header[p], [&](int i, long double value) {
      residual[i] -= value * x[p];
      size[i] += std::fabs(value * x[p]);
    });
  }
  long double largest = 0.0, scale = 0.0;
  for (const long double s : size) scale = std::max(scale, s);
  for (const long double r : residual) largest = std::max(largest, std::fabs(r));
  return scale == 0.0 ? 0.0 : static_cast<double>(largest / scale);
}

/// The same of y'B = c'.
inline double btran_error(const SparseMatrix& a, const Vector<int>& header, const Vector<double>& y,
                          const Vector<double>& rhs) {
  long double largest = 0.0, scale = 0.0;
  for (std::size_t p = 0; p < header.size(); ++p) {
    long double residual = rhs[p], size = std::fabs(rhs[p]);
    for_column(a, header[p], [&](int i, long double value) {
      residual -= value * y[i];
      size += std::fabs(value * y[i]);
    });
    largest = std::max(largest, std::fabs(residual));
    scale = std::max(scale, size);
  }
  return scale == 0.0 ? 0.0 : static_cast<double>(largest / scale);
}

/// A right-hand side with about `count` entries; the list is exact.
inline void random_rhs(Random& random, int count, WorkVector& x) {
  x.clear();
  for (int k = 0; k < count && x.size() > 0; ++k) {
    const int i = random.below(x.size());
    if (x.value[i] == 0.0) x.insert(i, 0.5 + random.uniform());
  }
}

/// True when the list, if valid, names exactly the nonzeros once.
inline bool list_is_exact(const WorkVector& x) {
  if (x.is_dense()) return true;
  Vector<char> listed(x.size(), 0);
  for (int k = 0; k < x.count; ++k) {
    if (listed[x.index[k]] || std::fabs(x.value[x.index[k]]) <= kDropTolerance) return false;
    listed[x.index[k]] = 1;
  }
  for (int i = 0; i < x.size(); ++i) {
    if (!listed[i] && x.value[i] != 0.0) return false;
  }
  return true;
}

/// A header of `structurals` distinct random columns, the rest logicals; any order.
inline Vector<int> random_header(Random& random, const SparseMatrix& a, int structurals) {
  const int m = a.num_minor;
  Vector<int> columns(a.num_major), rows(m), header(m);
  for (int j = 0; j < a.num_major; ++j) columns[j] = j;
  for (int i = 0; i < m; ++i) rows[i] = i;
  for (int k = 0; k < m; ++k) std::swap(rows[k], rows[k + random.below(m - k)]);
  structurals = std::min({structurals, m, a.num_major});
  for (int k = 0; k < m; ++k) {
    if (k < structurals) {
      std::swap(columns[k], columns[k + random.below(a.num_major - k)]);
      header[k] = columns[k];
    } else {
      header[k] = a.num_major + rows[k];
    }
  }
  for (int k = 0; k < m; ++k) std::swap(header[k], header[k + random.below(m - k)]);
  return header;
}

/// Solves of both kinds, sparse and dense, fit the basis.
inline void expect_solves(BasisFactor& factor, const SparseMatrix& a, const Vector<int>& header,
                          Random& random, double tolerance = 1e-9) {
  const int m = a.num_minor;
  WorkVector x[2] = {WorkVector(m), WorkVector(m)};
  Vector<double> rhs[2];
  const auto prepare = [&](int count) {
    for (int k = 0; k < 2; ++k) {
      random_rhs(random, count, x[k]);
      rhs[k] = x[k].value;
      if (count == m && k == 0) x[k].count = WorkVector::kDense;
    }
  };
  const auto check = [&](const auto& error, int vectors) {
    for (int k = 0; k < vectors; ++k) {
      EXPECT_LT(error(a, header, x[k].value, rhs[k]), tolerance);
      EXPECT_TRUE(list_is_exact(x[k]));
    }
  };
  for (const int count : {0, 1, 3, m / 10, m}) {
    for (const double expected : {0.0, 1.0}) {
      SCOPED_TRACE(testing::Message() << count << ' ' << expected);
      prepare(count);
      factor.ftran(x[0], expected);
      check(ftran_error, 1);
      prepare(count);
      factor.btran(x[0], expected);
      check(btran_error, 1);
      prepare(count);
      factor.ftran_pair(x[0], expected, x[1], expected, false);
      check(ftran_error, 2);
      prepare(count);
      factor.btran_pair(x[0], expected, x[1], expected);
      check(btran_error, 2);
    }
  }
}

/// The bits of some solves, sparse and dense, and of the rule that asks for a factorization.
inline Vector<double> fingerprint(BasisFactor& factor, int m) {
  Random random(7);
  Vector<double> bits;
  WorkVector x(m);
  for (int count : {1, 2, m / 3 + 1}) {
    for (const double expected : {0.0, 1.0}) {
      random_rhs(random, count, x);
      factor.ftran(x, expected);
      bits.insert(bits.end(), x.value.begin(), x.value.end());
      random_rhs(random, count, x);
      factor.btran(x, expected);
      bits.insert(bits.end(), x.value.begin(), x.value.end());
    }
  }
  bits.push_back(factor.statistics().updates);
  bits.push_back(factor.statistics().pivot_ratio);
  bits.push_back(static_cast<double>(factor.statistics().factor_nonzeros));
  bits.push_back(factor.markowitz_threshold());
  bits.push_back(factor.should_refactor());
  return bits;
}

/// A basis that changes column by column, as the simplex changes it, with its factor.
struct BasisWalk {
  enum class Step { none, updated, refused };

  BasisWalk(const SparseMatrix& matrix, Vector<int> start, const FactorSettings& settings = {})
      : a(matrix), header(std::move(start)), factor(matrix, settings, nullptr), x(a.num_minor) {
    factorize();
  }

  void factorize() {
    Vector<BasisRepair> repairs;
    EXPECT_NE(factor.factorize(header, true, repairs), FactorOutcome::singular);
  }

  /// Exchanges a random basic variable for a random nonbasic one; half of the time the row of the
  /// leaving position has been solved for before, as in the dual simplex.
  Step step(Random& random) {
    const int m = a.num_minor;
    const int entering = random.below(a.num_major + m);
    if (std::find(header.begin(), header.end(), entering) != header.end()) return Step::none;
    if (x.size() != m) x.setup(m);
    x.clear();
    for_column(a, entering, [&](int i, double value) { x.insert(i, value); });
    const double expected = random.below(2);
    factor.ftran(x, expected, true);
    double largest = 1e-2;
    for (double value : x.value) largest = std::max(largest, std::fabs(value));
    int position = -1;
    for (int p = 0; p < m; ++p) {
      if (std::fabs(x.value[p]) < 0.1 * largest) continue;
      if (position < 0 || random.below(3) == 0) position = p;
    }
    if (position < 0) return Step::none;
    const double pivot = x.value[position];
    if (random.below(2) == 0) {
      x.clear();
      x.insert(position, -2.0);
      factor.btran(x, expected);
    }
    header[position] = entering;
    if (factor.update(position, pivot)) return Step::updated;
    factorize();
    return Step::refused;
  }

  const SparseMatrix& a;
  Vector<int> header;
  BasisFactor factor;
  WorkVector x;
};

}  // namespace kelvo::factor_testing
