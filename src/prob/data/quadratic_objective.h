// The matrix Q of a quadratic objective 1/2 x'Qx: symmetric, both triangles stored by column, each
// column's row indices ascending, no zeros.
#pragma once

#include "prob/model/column_store.h"
#include "prob/model/model.h"

namespace kelvo {

/// A Q given by columns: column j has the entries begin[j] .. begin[j] + count[j] - 1.
struct QuadraticColumns {
  int columns = 0;
  const int* begin = nullptr;
  const int* count = nullptr;
  const int* index = nullptr;
  const double* value = nullptr;
};

/// What was wrong with a given Q.
struct QuadraticFlaws {
  int duplicate_row = -1, duplicate_column = -1;  // the first place that was given twice
  bool asymmetric = false;
};

/// Entries (i, j) and (j, i) that differ by no more than this share of the larger one count as
/// equal: a product of factors in two orders leaves such differences.
inline constexpr double kSymmetryTolerance = 1e-10;

/// The symmetric matrix with the same x'Qx: entries of one place are added up, and where the
/// triangles differ each gets the mean. Throws std::bad_alloc.
SparseMatrix symmetric_matrix(const QuadraticColumns& given, QuadraticFlaws& flaws);

/// diag(values); zeros are not stored. Throws std::bad_alloc.
SparseMatrix diagonal_matrix(const double* values, int columns);

/// Sets coefficients in the order given, the last one of a place wins, 0 removes the entry. The
/// list must be symmetric. Throws std::bad_alloc, leaving the matrix as it was.
void set_quadratic_coefficients(SparseMatrix& q, const Vector<Coefficient>& list);

/// q(row, column), 0 where there is no entry.
double quadratic_coefficient(const SparseMatrix& q, int row, int column);

/// Number of columns with entries.
int num_quadratic_columns(const SparseMatrix& q);

bool is_diagonal(const SparseMatrix& q);

}  // namespace kelvo
