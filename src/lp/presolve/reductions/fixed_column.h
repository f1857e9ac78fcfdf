// Columns at a known value move to the right-hand sides.
//
// Undo: x_j is that value and z_j = c_j - sum_i a_ij y_i.
//
// Integrality: the value is a bound, and those of integer columns are whole, or 0.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

struct FixedColumn {
  static constexpr const char* kName = "fixed column";

  int col;
  int status;  // BasisStatus
  Stretch column;
  double value, cost;

  void restore_values(const UndoEntries&, Vector<double>& x) const { x[col] = value; }
  void restore_duals(const UndoEntries& entries, DualState& duals) const {
    duals.z[col] = cost - entries.dot(column, duals.y);
  }
  void restore_basis(const UndoEntries&, PostsolveState& state) const {
    state.basis.cols[col] = status;
  }
  void crush_values(Vector<double>&) const {}
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  bool crush_form(const UndoEntries&, LinearForm& form) const {
    form.offset += form.weight[col] * value;
    form.weight[col] = 0.0;
    return true;
  }
  void uncrush_form(LinearForm&) const {}
  /// A column without entries went where its cost drew it.
  bool reprice(const UndoEntries& entries, Repricing& repricing);
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.cols[col] = status == kAtLower   ? kRemovedAtLower
                      : status == kAtUpper ? kRemovedAtUpper
                                           : kRemovedFixed;
  }
};

}  // namespace kelvo
