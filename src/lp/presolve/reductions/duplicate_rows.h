// Rows that are multiples: a_r = alpha a_s. The limits of r become limits of s, and r goes.
//
// Undo: where s binds at a limit that came from r, r binds instead with y_r = y_s / alpha and s is
// slack. Elsewhere r is slack.
//
// Integrality: none, the columns stay.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class ParallelLines;
class PresolveLp;

struct DuplicateRow : ConcernsRowsOnly {
  static constexpr const char* kName = "duplicate row";

  int gone, kept;        // rows r and s
  double ratio;          // alpha
  TransferredEnds ends;  // of the kept row

  DuplicateRow(int r, int s, double alpha, const TransferredEnds& transferred)
      : gone(r), kept(s), ratio(alpha), ends(transferred) {}
  void restore_duals(const UndoEntries&, DualState& duals) const;
  void restore_basis(const UndoEntries&, PostsolveState& state) const;
  void crush_duals(Vector<double>& y) const { y[kept] += ratio * y[gone]; }
  void crush_basis(BasisState& basis) const;
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.rows[gone] = kRemovedDuplicate;
  }
};

void merge_duplicate_rows(PresolveLp& lp, ParallelLines& rows);

}  // namespace kelvo
