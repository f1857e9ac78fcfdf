// What the records of the postsolve stack are made of, and what every record can do.
//
// A reduction leaves a record of its own type (its file defines it) on the stack. Undoing the
// records from the last to the first turns a solution of the reduced program into one of the
// original program; following them from the first to the last ("crushing") turns a solution, a
// linear form or an objective of the original program into one of the reduced program.
//
// Undoing works in three layers, each of which needs only those before it:
//
//     values   x, from x alone. A feasible point becomes a feasible point of the same objective.
//     duals    y and z with  c_j - sum_i a_ij y_i = z_j.  A dual feasible pair becomes one that is
//              dual feasible, and complementarity is kept.
//     basis    statuses, as many basic variables as rows present, such that
//              z_j = 0 for basic columns, y_i = 0 for rows whose logical is basic, and otherwise
//              at lower: value at its lower limit, multiplier >= 0,
//              at upper: value at its upper limit, multiplier <= 0  (z_j of a column, y_i of a
//              row).
//
// So an integer point comes back without duals, an interior point without a basis, and an optimal
// basis as an optimal basis, without another iteration.
//
// The status of a row refers to its activity a_i x here; its logical is at the other end.
//
// Method: E. D. Andersen and K. D. Andersen, "Presolving in linear programming", Mathematical
// Programming 71 (1995), with bases carried along.
#pragma once

#include <concepts>

#include "lp/form/lp_problem.h"
#include "lp/form/lp_solution.h"

namespace kelvo {

/// One term of a row (index is a column) or column (index is a row).
struct UndoEntry {
  int index;
  double value;
};

/// A stretch of the stack's entries.
struct Stretch {
  int begin = 0, end = 0;
  bool empty() const { return begin == end; }
};

/// The entries that the records refer to, in one piece.
class UndoEntries {
 public:
  int size() const { return static_cast<int>(entries_.size()); }
  const UndoEntry& operator[](int k) const { return entries_[k]; }
  void add(int index, double value) { entries_.push_back({index, value}); }
  /// Sum of a_k v[index_k] over a stretch.
  double dot(Stretch stretch, const Vector<double>& v) const {
    double sum = 0.0;
    for (int k = stretch.begin; k < stretch.end; ++k) {
      sum += entries_[k].value * v[entries_[k].index];
    }
    return sum;
  }

 private:
  Vector<UndoEntry> entries_;
};

inline int opposite_side(int side) {
  return side == kAtLower ? kAtUpper : kAtLower;
}

inline bool at_end(int status) {
  return status == kAtLower || status == kAtUpper;
}

/// The side that a status means for a quantity multiplied by `factor`.
inline int side_times(int side, double factor) {
  return factor > 0.0 || !at_end(side) ? side : opposite_side(side);
}

/// The side that a multiplier of this sign belongs to; kBasic without one.
inline int side_of(double multiplier) {
  return multiplier > 0.0 ? kAtLower : multiplier < 0.0 ? kAtUpper : kBasic;
}

/// The side at which a nonbasic variable counts: that of its status, unless its limits coincide
/// and the sign of its multiplier decides. kFreeSuper and kBasic are returned unchanged.
inline int active_side(int status, double multiplier, bool limits_coincide) {
  if (status == kBasic || !limits_coincide || multiplier == 0.0) return status;
  return side_of(multiplier);
}

/// Which ends of the line that stays came from the line that goes.
struct TransferredEnds {
  bool lower = false, upper = false;
  bool coincide = false;  // the ends of the line that stays are the same now

  bool include(int side) const {
    return (side == kAtLower && lower) || (side == kAtUpper && upper);
  }
};

/// Statuses of columns and rows (BasisStatus; of a row, of its activity).
struct BasisState {
  Vector<int> cols;  // [num_cols]
  Vector<int> rows;  // [num_rows]
  // False: x and y belong together, but the logicals of some equations that are basic should not
  // be, and may have duals other than 0; push_duals() says what is basic in their place.
  bool is_settled = true;
};

struct DualState {
  Vector<double> y;  // [num_rows]
  Vector<double> z;  // [num_cols] reduced costs
  // Where a basis comes back too, it says at which end a line counts; its statuses are those from
  // before the record at hand is undone. Else null: the sign of the multiplier says it.
  const BasisState* basis = nullptr;

  int column_side(int j, bool limits_coincide) const {
    return basis == nullptr ? side_of(z[j]) : active_side(basis->cols[j], z[j], limits_coincide);
  }
  int row_side(int i, bool limits_coincide) const {
    return basis == nullptr ? side_of(y[i]) : active_side(basis->rows[i], y[i], limits_coincide);
  }
};

/// A solution on its way through the records, in the original numbering.
struct PostsolveState {
  Vector<double> x;  // [num_cols]
  DualState duals;
  BasisState basis;
};

/// A linear form as dense weights and a constant.
struct LinearForm {
  Vector<double> weight;
  double offset = 0.0;
};

/// Costs on their way to the reduced program.
struct Repricing {
  Vector<double> cost;  // [num_cols]
  long double offset = 0.0L;

  /// Puts  x_j = (rhs - sum over the stretch) / a  into the objective.
  void substitute(int j, double a, double rhs, const UndoEntries& entries, Stretch row);
};

/// Puts  x_j = (rhs - sum over the stretch) / a  into a form.
void substitute_in_form(LinearForm& form, int j, double a, double rhs, const UndoEntries& entries,
                        Stretch row);

/// Why a column or row is not in the reduced program.
enum RemovalCode : int {
  kRemovedAtLower = -1,      // column: fixed at its lower bound
  kRemovedAtUpper = -2,      // column: fixed at its upper bound
  kRemovedFixed = -3,        // column: fixed at another value
  kRemovedSubstituted = -4,  // column substituted out; row used for that
  kRemovedSlack = -5,        // column: absorbed by its row as a slack
  kRemovedDual = -6,         // column that nothing holds back; its rows
  kRemovedDuplicate = -7,    // multiple of another column or row
  kRemovedEmptyRow = -8,
  kRemovedSingletonRow = -9,  // made a bound
  kRemovedForcingRow = -10,
  kRemovedRedundantRow = -11,
  kRemovedDependentRow = -12,
};

/// Reduced indices of columns and rows, or RemovalCodes.
struct RemovalCodes {
  Vector<int> cols, rows;
};

/// What a record has to offer. Nothing has a default: a new record says for each operation what it
/// does, if only by the statement that it concerns rows alone (below).
template <class Record>
concept UndoRecord = requires(const Record& record, Record& own, const UndoEntries& entries,
                              Vector<double>& values, DualState& duals, PostsolveState& state,
                              BasisState& basis, LinearForm& form, Repricing& repricing,
                              RemovalCodes& codes) {
  { Record::kName } -> std::convertible_to<const char*>;
  // The three layers of undoing.
  { record.restore_values(entries, values) } -> std::same_as<void>;
  { record.restore_duals(entries, duals) } -> std::same_as<void>;
  // Values and duals are already those after the undo. A nonbasic column may be moved to the
  // exact value of its bound.
  { record.restore_basis(entries, state) } -> std::same_as<void>;
  // Crushing: x, y and statuses.
  { record.crush_values(values) } -> std::same_as<void>;
  { record.crush_duals(values) } -> std::same_as<void>;
  { record.crush_basis(basis) } -> std::same_as<void>;
  // A form over the columns before the reduction, over those after it; false when its value is
  // no linear form of them. Then the other way.
  { record.crush_form(entries, form) } -> std::same_as<bool>;
  { record.uncrush_form(form) } -> std::same_as<void>;
  // Passes other costs on and keeps what undoing will need of them; false when the reduction
  // does not hold for them.
  { own.reprice(entries, repricing) } -> std::same_as<bool>;
  // Enters what the reduction removed.
  { record.mark_removed(entries, codes) } -> std::same_as<void>;
};

/// The statement of a record that its reduction changed rows only: the columns, with all that
/// depends on them alone, are the same before and after.
struct ConcernsRowsOnly {
  void restore_values(const UndoEntries&, Vector<double>&) const {}
  void crush_values(Vector<double>&) const {}
  bool crush_form(const UndoEntries&, LinearForm&) const { return true; }
  void uncrush_form(LinearForm&) const {}
  bool reprice(const UndoEntries&, Repricing&) { return true; }
};

}  // namespace kelvo
