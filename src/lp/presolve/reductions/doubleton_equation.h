// An equation with two columns, a x_j + b x_k = rhs, gives x_j = (rhs - b x_k) / a.
//
// The bounds of x_j become bounds on x_k. The number of nonzeros always falls: the two entries of
// the row and those of x_j go, and at most the latter minus one come.
//
// Undo: y_i makes z_j = 0 and x_j is basic, unless x_k is at a bound that came from x_j; then x_j
// takes its place at its own bound, x_k is basic and y_i makes z_k = 0.
//
// Integrality: x_j may be an integer column only where x_k is one, too, and b / a and rhs / a are
// whole. Bounds that an integer x_k takes over are rounded.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct DoubletonEquation {
  static constexpr const char* kName = "doubleton equation";

  int row;
  int gone, kept;          // columns j and k
  TransferredEnds ends;    // of the kept column
  Stretch column;          // of the column that goes, without the row
  double a, b, rhs, cost;  // cost of the column that goes
  double lower, upper;     // its bounds

  void restore_values(const UndoEntries&, Vector<double>& x) const;
  void restore_duals(const UndoEntries& entries, DualState& duals) const;
  void restore_basis(const UndoEntries&, PostsolveState& state) const;
  void crush_values(Vector<double>&) const {}
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState& basis) const;
  bool crush_form(const UndoEntries&, LinearForm& form) const;
  void uncrush_form(LinearForm&) const {}
  bool reprice(const UndoEntries&, Repricing& repricing);
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.cols[gone] = codes.rows[row] = kRemovedSubstituted;
  }
};

bool substitute_doubleton(PresolveLp& lp, int i);

}  // namespace kelvo
