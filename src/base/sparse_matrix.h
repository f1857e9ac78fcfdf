// Compressed sparse matrix, stored by one of its two dimensions (the "major" one: columns for a
// column-wise matrix, rows for a row-wise one).
#pragma once

#include "base/containers.h"

namespace kelvo {

struct SparseMatrix {
  int num_major = 0;
  int num_minor = 0;
  Vector<int> start = Vector<int>(1, 0);  // [num_major + 1], ascending
  Vector<int> index;                      // [start[num_major]], 0..num_minor-1
  Vector<double> value;                   // [start[num_major]]

  int num_nonzeros() const { return start[num_major]; }
};

/// The same matrix stored by its other dimension; indices ascend in every major line.
SparseMatrix transpose(const SparseMatrix& matrix);

}  // namespace kelvo
