// A column whose only entry is in one row acts as a slack of that row.
//
// With L <= r + a x_j <= U, r the rest of the row, and l <= x_j <= u the row becomes
//
//     L - max(a l, a u) <= r <= U - min(a l, a u),
//
// for equations always, where x_j = (rhs - r) / a passes its cost on to the other columns, and for
// inequalities when the cost is 0.
//
// Undo: y_i = y_i' + c_j / a and z_j = -a y_i'. Where the new row binds, x_j is at the bound that
// made the limit and the row binds too. Where it does not, one of the two is basic.
//
// Integrality: every r that the new row allows needs a whole x_j. It has one when one of L and U is
// absent (a bound) or they are at least |a| apart, or when r is a multiple of a, because all other
// columns of the row are integer with multiples of a as entries, and so are L and U.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct SlackColumn {
  static constexpr const char* kName = "slack column";

  int row, col;
  Stretch others;  // of the row: the other columns (see PresolveLp::record_row_once)
  double a, cost;
  double lower, upper;          // of the column
  double row_lower, row_upper;  // of the row with the column
  bool ends_coincide;           // of the row without it
  bool integer;

  bool is_equation() const { return row_lower == row_upper; }
  void restore_values(const UndoEntries& entries, Vector<double>& x) const;
  void restore_duals(const UndoEntries&, DualState& duals) const;
  void restore_basis(const UndoEntries& entries, PostsolveState& state) const;
  void crush_values(Vector<double>&) const {}
  void crush_duals(Vector<double>& y) const { y[row] -= cost / a; }
  void crush_basis(BasisState& basis) const;
  bool crush_form(const UndoEntries& entries, LinearForm& form) const;
  void uncrush_form(LinearForm&) const {}
  bool reprice(const UndoEntries& entries, Repricing& repricing);
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.cols[col] = kRemovedSlack;
  }
};

bool absorb_slack_column(PresolveLp& lp, int j);

}  // namespace kelvo
