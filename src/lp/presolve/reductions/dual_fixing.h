// Columns that no row holds back in the direction their cost draws them.
//
// With c_j >= 0 and every row content with a smaller x_j the column goes to its lower bound; with
// c_j > 0 and no such bound the program is unbounded or infeasible. With c_j = 0 and no bound the
// column can satisfy all of its rows for whatever the others do, so it goes with its rows.
//
// A column that its cost draws, or lets go, in a direction in which a single row holds it back, and
// which wants to go there for the sake of its other rows, goes until that row binds: the row
// becomes an equation. Postsolve only has to name the side: with z_j >= 0 (no upper bound),
// c_j <= 0 and a_rj y_r >= 0 for the rows that gain, a_ij y_i = c_j - z_j - sum a_rj y_r <= 0.
//
// Undo of a column that went with its rows: all of these have y_i = 0; x_j moves as far as the most
// demanding row needs, which binds while x_j is basic; the other rows are slack.
//
// Integrality: bounds are whole, and a column that is moved as far as its rows need is moved to the
// next whole number. An integer column cannot be said to make a row bind.
#pragma once

#include "lp/presolve/undo_record.h"

namespace kelvo {

class PresolveLp;

struct FreeDirection {
  static constexpr const char* kName = "free direction";

  int col;
  bool up;  // the direction in which nothing holds it back
  bool integer;
  double bound;  // on the other side, or infinite
  // Per row: (row, entry of the column), (number of other entries, limit the column has to
  // reach), then the other entries.
  Stretch rows;

  void restore_values(const UndoEntries& entries, Vector<double>& x) const;
  void restore_duals(const UndoEntries& entries, DualState& duals) const;
  void restore_basis(const UndoEntries& entries, PostsolveState& state) const;
  void crush_values(Vector<double>&) const {}
  void crush_duals(Vector<double>&) const {}
  void crush_basis(BasisState&) const {}
  bool crush_form(const UndoEntries&, LinearForm& form) const { return form.weight[col] == 0.0; }
  void uncrush_form(LinearForm&) const {}
  bool reprice(const UndoEntries&, Repricing& repricing) { return repricing.cost[col] == 0.0; }
  void mark_removed(const UndoEntries& entries, RemovalCodes& codes) const;

 private:
  struct Place {
    double x;
    int row;   // that demands it, or -1
    int side;  // at which that row binds
  };
  /// Where the rows need the column.
  Place place(const UndoEntries& entries, const Vector<double>& x) const;
  /// Calls visit(row) for every row that went.
  template <class Visit>
  void for_each_row(const UndoEntries& entries, Visit visit) const {
    for (int k = rows.begin; k < rows.end; k += 2 + entries[k + 1].index) visit(entries[k].index);
  }
};

bool fix_by_cost(PresolveLp& lp, int j);
bool bind_only_row(PresolveLp& lp, int j);
/// True when no bound of column j is in its way up (or down); one that the rows imply is dropped,
/// so that the column does not end at it.
bool make_room(PresolveLp& lp, int j, bool above);

}  // namespace kelvo
