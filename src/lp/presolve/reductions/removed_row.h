// Rows that never bind go.
//
// Undo: y_i = 0 and the row is slack.
//
// Integrality: none, the columns stay.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

struct RemovedRow : ConcernsRowsOnly {
  static constexpr const char* kName = "removed row";

  int row;
  RemovalCode reason;

  RemovedRow(int removed, RemovalCode why) : row(removed), reason(why) {}
  void restore_duals(const UndoEntries&, DualState& duals) const { duals.y[row] = 0.0; }
  void restore_basis(const UndoEntries&, PostsolveState& state) const {
    state.basis.rows[row] = kBasic;
  }
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const { codes.rows[row] = reason; }
};

}  // namespace kelvo
