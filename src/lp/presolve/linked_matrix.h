// A sparse matrix whose entries are in a doubly linked list of their row and in one of their
// column, so that entries, rows and columns come and go in time proportional to what is touched.
//
// Entries live in one pool and are named by their position in it, which never changes while the
// entry lives; erased positions are used again. Lists are not sorted. While a list is walked, the
// entry in hand may be erased once its successor has been read; new entries go to the front, where
// a walk in progress does not meet them.
#pragma once

#include "base/sparse_matrix.h"

namespace kelvo {

struct MatrixEntry {
  double value;
  int row, col;
  int row_next, row_prev;  // neighbours in the row's list, -1 at its ends
  int col_next, col_prev;  // in the column's list
};

class LinkedMatrix {
 public:
  explicit LinkedMatrix(const SparseMatrix& columns);

  int num_nonzeros() const { return num_nonzeros_; }
  int row_count(int i) const { return row_count_[i]; }
  int col_count(int j) const { return col_count_[j]; }
  int row_first(int i) const { return row_first_[i]; }  // -1: the row is empty
  int col_first(int j) const { return col_first_[j]; }
  const MatrixEntry& operator[](int e) const { return entries_[e]; }

  void set_value(int e, double value) { entries_[e].value = value; }
  /// The entry in row i and column j, or -1; walks the shorter of the two lists.
  int find(int i, int j) const;
  /// Adds an entry where there is none.
  int insert(int i, int j, double value);
  void erase(int e);
  /// Adds a row without entries.
  int add_row();

 private:
  Vector<MatrixEntry> entries_;
  int free_ = -1;                      // erased positions, linked by row_next
  Vector<int> row_first_, col_first_;  // [rows], [columns]
  Vector<int> row_count_, col_count_;  // [rows], [columns]
  int num_nonzeros_ = 0;
};

}  // namespace kelvo
