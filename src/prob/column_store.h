// The constraint matrix by columns, editable: columns need not be contiguous or ordered, and spare
// room may follow a column, so that single coefficients can be changed in any order cheaply.
#pragma once

#include "base/sparse_matrix.h"

namespace kelvo {

struct ColumnStore {
  Vector<int> start;     // [columns] first position of each column
  Vector<int> count;     // [columns] entries of each column
  Vector<int> capacity;  // [columns] positions that belong to each column, >= count
  Vector<int> index;     // row indices
  Vector<double> value;

  int num_cols() const { return static_cast<int>(start.size()); }
  /// Takes over a compressed matrix whose major lines are the columns.
  void assign(SparseMatrix&& columns);
  /// A contiguous copy over `num_rows` rows, entries in storage order.
  SparseMatrix compressed(int num_rows) const;
};

}  // namespace kelvo
