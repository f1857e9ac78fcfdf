// The constraint matrix by columns, editable: columns need not be contiguous or ordered, and spare
// room may follow a column, so that single coefficients can be changed in any order cheaply.
//
// Column j owns the positions start[j] .. start[j] + capacity[j] - 1 of index and value; its
// entries are the first count[j] of them. The areas of different columns are disjoint; positions
// that no column owns are waste, which is squeezed out whenever the arrays have to grow. A column
// whose row indices ascend strictly is marked ordered: its entries are found by bisection and new
// ones are inserted in place. In other columns entries are found by a scan and added at the end. A
// column that is full moves to the end of the arrays with twice the room, so a sequence of single
// insertions costs amortised constant time each, beside the search.
//
// An entry may be an explicit zero, and a caller may have given the same row twice in a column;
// then the column is not ordered and the first of them counts as the entry.
//
// Functions that may run out of memory throw std::bad_alloc and leave the entries as they were; the
// layout may have changed.
#pragma once

#include <cstdint>

#include "base/sparse_matrix.h"

namespace kelvo {

/// One changed matrix coefficient; value 0 removes the entry.
struct Coefficient {
  int row = 0;
  int column = 0;
  double value = 0.0;
};

struct ColumnStore {
  Vector<int> start;     // [columns] first position of each column
  Vector<int> count;     // [columns] entries of each column
  Vector<int> capacity;  // [columns] positions that belong to each column, >= count
  Vector<char> ordered;  // [columns] 1 only when the row indices ascend strictly
  Vector<int> index;     // row indices
  Vector<double> value;

  int num_cols() const { return static_cast<int>(start.size()); }
  std::int64_t num_nonzeros() const;

  /// Takes over a compressed matrix whose major lines are the columns.
  void assign(SparseMatrix&& columns);
  /// A contiguous copy over `num_rows` rows, entries in storage order.
  SparseMatrix compressed(int num_rows) const;

  /// Position of the entry in `row` of a column, or -1.
  int find(int row, int column) const;
  /// The coefficient a(row, column), 0 where no entry is stored.
  double coefficient(int row, int column) const;

  /// Sets one coefficient; 0 removes the entry.
  void set(int row, int column, double new_value);
  /// Sets coefficients in the order given, the last one of a place wins. On std::bad_alloc a part
  /// of them may have been set; setting the whole list again then completes it. `num_rows` is an
  /// upper bound on the row indices.
  void set_list(const Vector<Coefficient>& list, int num_rows);

  /// Appends `columns` columns. Column k has the entries begin[k] .. begin[k + 1] - 1 of the
  /// arrays, the last one those up to `entries`; a null `begin` means no entries.
  void append_columns(int columns, const int* begin, int entries, const int* rows,
                      const double* values);
  /// Appends the lines of a row-wise matrix as the rows first_row, first_row + 1, ...; no column
  /// may hold an entry in these rows yet. The last row ends at `entries`.
  void append_rows(int first_row, int rows, const int* begin, int entries, const int* columns,
                   const double* values);

  /// Keeps the columns j with new_index[j] >= 0, in order.
  void delete_columns(const int* new_index) noexcept;
  /// Renumbers rows, dropping the entries in rows i with new_index[i] < 0; the new indices of the
  /// rows kept ascend.
  void delete_rows(const int* new_index) noexcept;
  /// Removes the entries of magnitude below `eps`.
  void remove_small(double eps) noexcept;

 private:
  void make_room_in(int column, int extra);
  void repack(std::int64_t extra);
  void append_entry(int row, int column, double new_value);
  void append_many_rows(int first_row, int rows, const int* begin, int entries, const int* columns,
                        const double* values);
  void merge_sorted(int column, const Coefficient* const* changes, int num_changes);
  void sort_column(int column);
};

}  // namespace kelvo
