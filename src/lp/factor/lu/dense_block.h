// A dense square block of a factorization: L (unit lower) and U (upper) in one array by columns.
//
// The last pivots of a basis with a dense nucleus. Kept as an array its solves need no index lists
// and run several columns at a time; that is worth it where the block is the bulk of the factor.
#pragma once

#include "base/containers.h"

namespace kelvo {

struct DenseBlock {
  int order = 0;           // 0: there is no block
  Vector<double> entries;  // [order * order] by columns: U above the diagonal, L below it

  double* column(int k) { return entries.data() + static_cast<std::size_t>(k) * order; }
  const double* column(int k) const { return entries.data() + static_cast<std::size_t>(k) * order; }
  /// Entries of both triangles, the diagonal apart.
  long size() const { return static_cast<long>(order) * (order - 1); }

  // x has `order` entries in all solves.
  /// Solves L x = x.
  void solve_lower(double* x) const;
  /// Solves L'x = x.
  void solve_lower_transposed(double* x) const;
  /// Solves U x = x where every column of U is divided by its diagonal entry.
  void solve_upper(double* x) const;
  /// Solves U'x = x, U as above and `inverse` [order] the reciprocals of its diagonal. Entries with
  /// place[k] >= end are left out: their rows and columns are zero.
  void solve_upper_transposed(double* x, const double* inverse, const int* place, int end) const;
  /// Clears row and column k of U.
  void clear_upper(int k);
  /// Appends what clear_upper(k) clears, `order` numbers, to a list that has room for them.
  void save_upper(int k, Vector<double>& saved) const;
  /// Undoes clear_upper(k), given what save_upper(k) has appended.
  void restore_upper(int k, const double* saved);
};

/// x[i] -= sum over c < 4 of factor[c] * columns[c * stride + i] for i < n.
void subtract_four(double* x, const double* columns, long stride, const double* factor, int n);

}  // namespace kelvo
