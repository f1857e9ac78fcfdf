// Additions that have been accepted but not yet merged into the model.
//
// Rows arrive by row while the matrix is kept by columns, so small additions of rows, and single
// coefficients of it or of the quadratic objective, wait here and enter together in one pass.
// Columns never wait: at the end of a matrix stored by columns they cost what they would cost here.
// Merging appends the rows first and then sets the coefficients, in the order given; that is also
// the order in which the calls must take effect, because a coefficient can only refer to a row that
// exists and a new row has no coefficients from before.
//
// Either all waiting rows have names or none has.
#pragma once

#include "prob/model/blocks.h"
#include "prob/model/column_store.h"
#include "prob/model/model.h"

namespace kelvo {

class PendingBatch {
 public:
  bool empty() const { return rhs_.empty() && coefficients_.empty() && quadratic_.empty(); }
  int num_rows() const { return static_cast<int>(rhs_.size()); }
  int num_row_entries() const { return static_cast<int>(columns_.size()); }
  bool has_coefficients() const { return !coefficients_.empty(); }

  /// True when rows with (without) names can be added to those that wait.
  bool accepts_rows(bool named) const { return rhs_.empty() || named == names_.present(); }
  /// Makes room for a block of rows. Throws std::bad_alloc, leaving the batch as it was.
  void make_room_for_rows(const RowBlock& block, bool named);
  /// Adds the block for which room was made; `first_row` is the index its first row will have.
  /// Throws nothing after make_room_for_rows().
  void add_rows(const RowBlock& block, bool named, int first_row);

  /// True when another coefficient would make the list grow beyond a size where merging pays.
  bool is_full() const;
  /// Adds coefficients. Throws std::bad_alloc, leaving the batch as it was.
  void add_coefficients(const int* rows, const int* columns, const double* values, int count);

  /// Makes room for one more coefficient of the quadratic objective. Throws std::bad_alloc, leaving
  /// the batch as it was.
  void make_room_for_quadratic() { make_room(quadratic_, 2); }
  /// Adds q(i, j) = q(j, i) = value, for which room was made.
  void add_quadratic(int i, int j, double value);

  /// Moves everything into the model. Throws std::bad_alloc; whatever was not merged then still
  /// waits, and model and batch together say the same as before.
  void merge_into(Model& model);
  void clear() noexcept;

 private:
  void clear_rows() noexcept;

  Vector<double> rhs_;    // [pending rows]
  Vector<char> sense_;    // [pending rows]
  Vector<double> range_;  // [pending rows]
  NameStore names_;       // of all pending rows, or absent
  Vector<int> start_;     // [pending rows] first entry of each row
  Vector<int> columns_;   // [pending row entries]
  Vector<double> values_;
  Vector<Coefficient> coefficients_;
  Vector<Coefficient> quadratic_;  // symmetric
};

}  // namespace kelvo
