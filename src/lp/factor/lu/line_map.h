// Lines of a matrix numbered twice: inside, where deleted ones remain, and outside, without them.
//
// A row whose logical is basic can be deleted without touching the factors. With rows and positions
// in a fitting order, B = [B' 0; r 1]. Whatever the right-hand side is in the last row, B x = a
// gives the solution of B'x' = a', and y'B = c' with a zero for the logical gives the solution for
// B' and a zero for the row. So the factors keep the deleted lines, right-hand sides enter with
// zeros there, and results leave without their entries.
#pragma once

#include "base/containers.h"
#include "base/work_vector.h"

namespace kelvo {

class LineMap {
 public:
  /// False: both numberings are the same, and nothing is stored.
  bool active() const { return !outer_of_.empty(); }
  void clear();
  int deleted() const { return static_cast<int>(outer_of_.size() - inner_of_.size()); }
  int inner(int outer) const { return active() ? inner_of_[outer] : outer; }

  /// Activates the map, if it is not yet, for `size` lines. Throws std::bad_alloc; then inactive.
  void activate(int size);
  /// Deletes lines of an active map, given by ascending outside numbers; the others close up.
  void remove(const Vector<int>& outer);
  /// Makes room for that many lines that append() then adds on both sides of an active map.
  void prepare(int more);
  void append(int more);
  /// Takes back the last lines that were appended.
  void drop_last(int count);

  /// Moves a vector from the outside to the inside numbering, or back; `from` is cleared, `to` must
  /// be clear.
  void enter(WorkVector& from, WorkVector& to) const;
  void leave(WorkVector& from, WorkVector& to) const;

 private:
  Vector<int> inner_of_;  // [outside lines]
  Vector<int> outer_of_;  // [inside lines], -1 for deleted ones
};

}  // namespace kelvo
