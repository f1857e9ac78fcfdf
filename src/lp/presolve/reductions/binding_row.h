// An inequality that binds in some optimum becomes an equation.
//
// Undo: the row was an inequality; where it is nonbasic it is so at the limit that binds. The
// reductions that know a row to bind know the sign of its dual, too.
//
// Integrality: the argument must hold whatever values the integer columns have (see the callers).
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct BindingRow : ConcernsRowsOnly {
  static constexpr const char* kName = "binding row";

  int row;
  int side;  // BasisStatus: the limit that binds

  BindingRow(int binding, int at) : row(binding), side(at) {}
  void restore_duals(const UndoEntries&, DualState&) const {}
  void restore_basis(const UndoEntries&, PostsolveState& state) const {
    if (state.basis.rows[row] != kBasic) state.basis.rows[row] = side;
  }
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  /// It is an argument from the duals.
  bool reprice(const UndoEntries&, Repricing&) { return false; }
  void mark_removed(const UndoEntries&, RemovalCodes&) const {}
};

/// Makes row i an equation at the limit of this side, which is finite.
void bind_row(PresolveLp& lp, int i, int side);

}  // namespace kelvo
