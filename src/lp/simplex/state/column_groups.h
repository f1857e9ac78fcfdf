// A copy of the structural columns for products of a dense row vector with all of them.
//
// Nearby columns are sorted by their lengths and stored four at a time, interleaved: entry k of the
// four lies side by side, so that a product runs four independent sums with no branch but the end
// of a group. A column shorter than its group is padded with zeros. The product is bound by the
// memory it reads: entries take 6 bytes instead of 12 where that loses nothing (fewer than 65,536
// rows, all values exact in single precision, as those of a model with few digits scaled by powers
// of two are). The products are the same to the last bit in both forms.
#pragma once

#include <cstdint>

#include "base/containers.h"
#include "base/sparse_matrix.h"
#include "base/work_vector.h"

namespace kelvo {

class ColumnGroups {
 public:
  explicit ColumnGroups(const SparseMatrix& columns);

  /// row := the entries of weights'A over the columns with active[j] != 0, with an index list.
  /// `weights` [rows] is read as a dense array; row [columns or more] is zero on entry.
  void multiply(const WorkVector& weights, const unsigned char* active, WorkVector& row) const;

 private:
  static constexpr int kWidth = 4;  // columns in a group

  /// Consecutive groups of one length.
  struct Run {
    int num_groups;
    int length;
  };

  template <class Index, class Value>
  struct Entries {
    Vector<Index> row;
    Vector<Value> value;
  };

  template <class Index, class Value>
  void fill(const SparseMatrix& columns, Entries<Index, Value>& entries);
  template <class Index, class Value>
  void multiply(const Entries<Index, Value>& entries, const double* weight,
                const unsigned char* active, WorkVector& row) const;

  Vector<Run> runs_;
  Vector<int> order_;  // [kWidth * groups] the columns; those that fill up the last group repeat it
  bool compact_ = false;
  Entries<std::uint16_t, float> narrow_;  // used when compact_
  Entries<int, double> wide_;             // used otherwise
};

}  // namespace kelvo
