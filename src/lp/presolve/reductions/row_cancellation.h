// Nonzeros that an equation cancels in other rows.
//
// With an equation  a_i x = b_i  any multiple of it may be added to another row r:
//
//     L <= a_r x <= U   becomes   L + t b_i <= (a_r + t a_i) x <= U + t b_i.
//
// Where most of the columns of the equation occur in row r in one proportion, t = -a_rj / a_ij
// takes them out of r. Often what is left of r forces its columns, repeats another row or holds
// always. (After S. F. Chang and S. T. McCormick, "A hierarchical algorithm for making sparse
// matrices sparser", Mathematical Programming 56, 1992, without its matchings.)
//
// Rows r come from the shortest columns of the equation, most of which they must meet. The search
// is limited to a multiple of the number of nonzeros.
//
// Undo: y_i gains t y_r; all else stays. The column of the logical of the equation was e_i - t e_r
// in the terms of the old rows, though. Should it be basic, at 0 of course, while that of r is not,
// then this column is none of the old program's, and the basis has to be settled.
//
// Integrality: none, the columns stay.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct RowCancellation : ConcernsRowsOnly {
  static constexpr const char* kName = "row cancellation";

  int row, equation;  // r and i
  double multiple;    // t

  RowCancellation(int r, int i, double t) : row(r), equation(i), multiple(t) {}
  void restore_duals(const UndoEntries&, DualState& duals) const {
    duals.y[equation] += multiple * duals.y[row];
  }
  void restore_basis(const UndoEntries&, PostsolveState& state) const;
  void crush_duals(Vector<double>& y) const { y[equation] -= multiple * y[row]; }
  void crush_basis(BasisState&) const {}
  void mark_removed(const UndoEntries&, RemovalCodes&) const {}
};

/// Looks at what changed since the moment given; `bold`: also where the gain is small.
void cancel_nonzeros(PresolveLp& lp, bool bold, int since);

}  // namespace kelvo
