// Implied free columns are given by a row: x_j = (rhs - sum_k a_ik x_k) / a_ij.
//
// The rows imply the bounds of x_j, so it is free. An equation then defines it wherever else it
// occurs: row r loses a_rj / a_ij times row i, the objective too, and row and column go. A
// column whose only entry is in an inequality is basic in some optimum, so that y_i = c_j / a_ij;
// the sign of that says at which limit the row binds.
//
// Undo: x_j from the row, y_i from z_j = 0, x_j basic, the row nonbasic. The reduced costs of the
// other columns stay unchanged.
//
// Integrality: an integer column goes only when the row makes it whole by itself: all columns of
// the row are integer, their entries and the limit multiples of a_ij.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct SubstitutedColumn {
  static constexpr const char* kName = "substituted column";

  int row, col;
  int side;        // BasisStatus: where the row binds
  Stretch others;  // of the row, without the column
  Stretch rows;    // of the column, without the row
  double a, rhs, cost;

  void restore_values(const UndoEntries& entries, Vector<double>& x) const {
    x[col] = (rhs - entries.dot(others, x)) / a;
  }
  void restore_duals(const UndoEntries& entries, DualState& duals) const {
    duals.y[row] = (cost - entries.dot(rows, duals.y)) / a;
    duals.z[col] = 0.0;
  }
  void restore_basis(const UndoEntries&, PostsolveState& state) const {
    state.basis.cols[col] = kBasic;
    state.basis.rows[row] = side;
  }
  void crush_values(Vector<double>&) const {}
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  bool crush_form(const UndoEntries& entries, LinearForm& form) const {
    substitute_in_form(form, col, a, rhs, entries, others);
    return true;
  }
  void uncrush_form(LinearForm&) const {}
  bool reprice(const UndoEntries& entries, Repricing& repricing) {
    // Without a cost a column may be taken out of an inequality, with one only out of an equation.
    const double old_cost = cost;
    cost = repricing.cost[col];
    if (rows.empty() && old_cost == 0.0 && cost != 0.0) return false;
    repricing.substitute(col, a, rhs, entries, others);
    return true;
  }
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.cols[col] = codes.rows[row] = kRemovedSubstituted;
  }
};

bool substitute_free_singleton(PresolveLp& lp, int j);
/// Looks at what changed since the moment given.
void run_aggregator(PresolveLp& lp, int since);

}  // namespace kelvo
