// Rows against the bounds on their activity.
//
// A limit that the bounds on the columns keep by themselves is dropped, and the row with its last
// limit. A row whose least activity is its upper limit (or its greatest the lower one) forces every
// column to the bound that attains it.
//
// Undo of a forcing row: the columns come back first, nonbasic with the reduced costs z_j that
// they have for y_i = 0, some of the wrong sign. The dual y_i, negative for a row at its upper
// limit, is taken as far from 0 as the worst of them needs, min z_j / a_ij over them; that column
// becomes basic, the row nonbasic.
//
// Integrality: none, the columns go to bounds.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct ForcingRow : ConcernsRowsOnly {
  static constexpr const char* kName = "forcing row";

  int row;
  int side;            // BasisStatus: the limit that forces
  Stretch columns;     // those that had an interval,
  Stretch were_fixed;  // and those that had none

  ForcingRow(int i, int at, Stretch with_interval, Stretch fixed)
      : row(i), side(at), columns(with_interval), were_fixed(fixed) {}
  void restore_duals(const UndoEntries& entries, DualState& duals) const;
  void restore_basis(const UndoEntries& entries, PostsolveState& state) const;
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.rows[row] = kRemovedForcingRow;
  }
};

bool reduce_by_activity(PresolveLp& lp, int i);

}  // namespace kelvo
