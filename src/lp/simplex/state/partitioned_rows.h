// Row-wise copy of the structural columns for pricing, with the entries that matter kept first.
//
// Each row is stored in two parts: the entries of active columns, then the others. A column becomes
// active or inactive in time proportional to its length, because every entry knows its place in the
// row and in the column. The simplex methods keep exactly the nonbasic columns that may move
// active, so that computing a row of B^-1 A touches nothing else.
//
// For a compact program an entry takes 12 bytes instead of 20, and no copy is made for dense
// products: values are looked up in the problem's columns, through the entry's place there.
#pragma once

#include "base/containers.h"
#include "base/memory.h"
#include "base/work_vector.h"
#include "lp/form/lp_problem.h"
#include "lp/simplex/state/column_groups.h"

namespace kelvo {

class PartitionedRows {
 public:
  /// Copies the problem's matrix; every column starts active. The problem must outlive the object.
  explicit PartitionedRows(const LpProblem& problem);

  /// Copies the matrix again, after the problem has changed its shape; every column is active.
  void rebuild();
  /// Follows the problem after it has got new rows, whose entries are the last ones of their
  /// columns.
  void add_rows(const SparseMatrix& lines);
  /// Follows the problem after rows have left; the list ascends. `entry_now`: the new places of the
  /// entries of the problem's columns, -1 for those that left with their rows.
  void delete_rows(const Vector<int>& list, const Vector<int>& entry_now);

  bool is_active(int column) const { return active_[column] != 0; }
  void activate(int column);
  void deactivate(int column);

  /// row := the entries of weights'A over the active columns. `weights` is indexed by row; `row`
  /// has at least n places, is empty on entry and gets an index list unless it is dense.
  /// `expected_density` predicts the share of listed columns.
  void multiply(const WorkVector& weights, double expected_density, WorkVector& row) const;

  /// Nonzeros touched by multiply() so far.
  double work() const { return work_; }

  /// Bytes that each nonzero takes here, without the copy for dense products.
  static constexpr int bytes_per_entry(bool compact) {
    return 3 * sizeof(int) + (compact ? 0 : sizeof(double));
  }

 private:
  /// `value(k)` is the value of entry k.
  template <class Value>
  void multiply_sparse(const WorkVector& weights, WorkVector& row, Value value) const;
  template <class Value>
  void multiply_rows_dense(const WorkVector& weights, WorkVector& row, Value value) const;
  template <class Value>
  void multiply_rows(const WorkVector& weights, double expected_density, WorkVector& row,
                     Value value) const;
  void multiply_columns(const WorkVector& weights, WorkVector& row) const;
  void multiply_compact_columns(const WorkVector& weights, WorkVector& row) const;
  void exchange_entries(int a, int b);

  const LpProblem& problem_;
  Vector<int> start_;                   // [m + 1]
  Vector<int> active_end_;              // [m] end of the active part of each row
  Vector<int> column_;                  // [nonzeros] column of each entry
  Vector<double> value_;                // [nonzeros], empty for a compact program
  Vector<int> source_;                  // [nonzeros] the entry's place in problem.columns
  Vector<int> place_;                   // [nonzeros] inverse of source_
  Vector<unsigned char> active_;        // [n]
  mutable Owned<ColumnGroups> groups_;  // made when a dense product asks for it first
  mutable double work_ = 0.0;
};

}  // namespace kelvo
