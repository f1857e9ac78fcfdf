// The rows that propagation works on, with the smallest and largest activity that the bounds admit.
//
// Rows 0..m-1 are those of the program, whose limits are the bounds of their logicals (so that an
// indicator's row has limits only where it is active). Rows m.. are added: cuts, proofs of
// infeasible LPs, the objective cutoff; they hold everywhere. An added row keeps its number until
// it is removed; numbers are used again.
//
// For a row  L <= sum_j a_j x_j <= U :
//     min_activity = sum over a_j > 0 of a_j l_j + sum over a_j < 0 of a_j u_j,
// and max_activity the same with l and u exchanged. Infinite terms are counted, not added. Each
// change of a bound moves one of the two in every row of its column. `error` is a proven limit of
// the rounding errors that both have collected: each addition is off by at most half a unit in the
// last place of its result, each term by one. Where it exceeds `error_limit` the row is summed
// again.
//
// A row is queued only where it can say something: no entry j can be tightened while
// U - min_activity is at least `reach`, the largest |a_j| (u_j - l_j) by the global bounds.
#pragma once

#include "mip/domain/local_bounds.h"

namespace kelvo {

/// One row's activities and limits; 64 bytes, one line of cache.
struct RowState {
  double min_activity;  // finite terms only
  double max_activity;
  double lower;  // limits of the activity
  double upper;
  double error;  // at most this far are the two activities from the exact ones
  double reach;
  int min_infinite;  // infinite terms
  int max_infinite;
  float error_limit;
  unsigned flags;  // RowFlag
};

enum RowFlag : unsigned {
  kRowQueued = 1,
  kRowAtMostDue = 2,    // activity <= upper may say something
  kRowAtLeastDue = 4,   // activity >= lower may say something
  kRowOfIndicator = 8,  // always worth a look
  kRowRemoved = 16,
};

/// The entries of a row.
struct RowView {
  const int* index;
  const double* value;
  int length;
};

class RowSystem {
 public:
  /// Both must outlive this; the program has its matrix row-wise.
  RowSystem(const MipProblem& mip, const LocalBounds& bounds);

  int num_rows() const { return static_cast<int>(state_.size()); }
  int num_program_rows() const { return lp_.num_rows; }
  /// The logical of a row; -1 for an added row.
  int logical_of(int row) const { return row < lp_.num_rows ? lp_.num_cols + row : -1; }
  RowView view(int row) const;
  RowState& state(int row) { return state_[row]; }
  const RowState& state(int row) const { return state_[row]; }

  /// Moves the activities by a change of the trail, and queues the rows that it may matter for.
  void apply(const DomainChange& change);
  /// Moves them back; queues nothing.
  void undo(const DomainChange& change);
  /// Sums a row from its entries by the bounds of now, to which all changes have been applied.
  void sum(int row);

  /// Adds  lower <= sum value x <= upper  and queues it. All changes have been applied.
  int add(const int* index, const double* value, int length, double lower, double upper);
  /// From now on an added row says nothing. Its number may be used again only after recycle().
  void remove(int row);
  /// Frees the numbers and the memory of removed rows; when no reason refers to them any more.
  void recycle();
  /// Tightens the upper limit of an added row for good and queues it.
  void lower_limit(int row, double upper);
  /// Marks the row of an indicator.
  void set_indicator_row(int row) { state_[row].flags |= kRowOfIndicator; }

  void enqueue(int row, unsigned sides);
  void enqueue_all();
  /// The next row, no longer queued; -1 for none.
  int pop();
  void clear_queue();

  /// Nonzeros touched since construction.
  double work() const { return work_; }

 private:
  struct AddedRow {
    int start = 0;
    int length = 0;
  };

  template <bool kQueue>
  void move(int bound, double from, double to);
  template <bool kQueue>
  void move_row(int row, double coefficient, bool upper, double shift, int infinite);
  void set_limit(int row, bool upper_bound, double value, bool queue);
  void link(int entry, int column);
  void unlink(int entry);

  const LpProblem& lp_;
  const LocalBounds& bounds_;
  Vector<RowState> state_;  // [num_rows]
  Vector<AddedRow> added_;  // [num_rows - m]
  Vector<int> free_rows_;   // numbers that may be used again
  Vector<int> removed_;     // numbers that recycle() will free
  // Entries of added rows, row by row, and in a list for each column.
  Vector<int> entry_column_;
  Vector<double> entry_value_;
  Vector<int> entry_row_;
  Vector<int> entry_next_;
  Vector<int> entry_previous_;
  int num_unused_entries_ = 0;
  Vector<int> column_head_;  // [num_cols] first entry; -1
  Vector<int> queue_;        // [queue_head_, size) are due
  std::size_t queue_head_ = 0;
  double work_ = 0.0;
};

}  // namespace kelvo
