// A row with one entry, L <= a x_j <= U, is a bound on its column.
//
// Undo: where the column is at a bound that came from the row, the row takes over its reduced
// cost, y_i = z_j / a, and the column becomes basic. Elsewhere the row is slack.
//
// Integrality: the bound of an integer column is rounded to the whole number inside.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct SingletonRow : ConcernsRowsOnly {
  static constexpr const char* kName = "singleton row";

  int row, col;
  double a;
  TransferredEnds ends;  // of the column

  SingletonRow(int i, int j, double entry, const TransferredEnds& transferred)
      : row(i), col(j), a(entry), ends(transferred) {}
  void restore_duals(const UndoEntries&, DualState& duals) const;
  void restore_basis(const UndoEntries&, PostsolveState& state) const;
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState& basis) const {
    int& column = basis.cols[col];
    if (column == kBasic && at_end(basis.rows[row])) column = side_times(basis.rows[row], a);
  }
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.rows[row] = kRemovedSingletonRow;
  }
};

bool remove_singleton_row(PresolveLp& lp, int i);

}  // namespace kelvo
