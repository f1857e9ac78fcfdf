// Columns that are multiples: a_k = alpha a_j.
//
// With costs in the same proportion the two act as one, x' = x_j + alpha x_k, whose interval is the
// sum of the two. With other costs one of them is the better buy: where x_j can take over whatever
// x_k gives up, x_k goes to the bound its extra cost delta = c_k - alpha c_j draws it to, since
// z_k = delta + alpha z_j. That x_j can, is certain when it has no bound on that side, or one that
// the rows imply; the latter is dropped, so that x_j does not end at it with a z_j of the wrong
// sign.
//
// Undo of a merged pair: at a bound of x' both are at theirs; in between one of them is at a bound
// and the other is basic.
//
// Integrality: both or neither are merged; of two integer columns alpha is whole and x_j has at
// least |alpha| - 1 steps, so that every whole x' splits into whole parts. An integer x_j takes
// over only from an integer x_k with a whole alpha.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class ParallelLines;
class PresolveLp;

struct DuplicateColumn {
  static constexpr const char* kName = "duplicate column";

  int gone, kept;  // columns k and j
  double ratio;    // alpha
  double kept_lower, kept_upper, gone_lower, gone_upper;
  bool integer;

  void restore_values(const UndoEntries&, Vector<double>& x) const;
  void restore_duals(const UndoEntries&, DualState& duals) const;
  void restore_basis(const UndoEntries&, PostsolveState& state) const;
  void crush_values(Vector<double>& x) const { x[kept] += ratio * x[gone]; }
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState& basis) const;
  bool crush_form(const UndoEntries&, LinearForm& form) const;
  void uncrush_form(LinearForm& form) const { form.weight[gone] = ratio * form.weight[kept]; }
  bool reprice(const UndoEntries&, Repricing& repricing);
  void mark_removed(const UndoEntries&, RemovalCodes& codes) const {
    codes.cols[gone] = kRemovedDuplicate;
  }
};

void merge_duplicate_columns(PresolveLp& lp, ParallelLines& columns);

}  // namespace kelvo
