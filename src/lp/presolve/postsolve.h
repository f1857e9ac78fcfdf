// The way back from the reduced program to the original one.
//
// Every reduction leaves a record on a stack; undoing them from the last to the first turns an
// optimal basic solution of the reduced program into one of the original program, without another
// iteration. After each undo the state is a basic solution of the program as it stood before that
// reduction:
//
//     c_j - sum_i a_ij y_i = z_j   for the columns present,
//     as many basic variables as rows present,
//     z_j = 0 for basic columns, y_i = 0 for rows whose logical is basic, and otherwise
//     at lower: value at its lower limit, multiplier >= 0,
//     at upper: value at its upper limit, multiplier <= 0   (z_j of a column, y_i of a row).
//
// The status of a row speaks of its activity a_i x here; its logical stands at the other end.
//
// Method: E. D. Andersen and K. D. Andersen, "Presolving in linear programming", Mathematical
// Programming 71 (1995), with bases carried along.
#pragma once

#include "lp/form/lp_problem.h"

namespace kelvo {

/// A solution on its way back. Indices are those of the original program.
struct PostsolveState {
  Vector<double> x;              // [num_cols]
  Vector<double> z;              // [num_cols] reduced costs
  Vector<double> y;              // [num_rows] row duals
  Vector<int> col_status;        // [num_cols] BasisStatus
  Vector<int> row_status;        // [num_rows] BasisStatus of the activity
  bool basis_is_settled = true;  // false: see BasicSolution

  void resize(int num_rows, int num_cols);
};

/// One name per kind of record; the table in postsolve.cpp maps it to its undo function.
enum class UndoKind : int {
  fixed_column,
  removed_row,
  row_side,
  singleton_row,
  forcing_row,
  substituted_column,
  doubleton,
  slack_column,
  free_direction,
  duplicate_row,
  duplicate_column,
  row_cancellation,
};
inline constexpr int kNumUndoKinds = 12;

/// What a reduction leaves behind. The meaning of the fields beside row and col is the
/// reduction's own; `begin`..`end` are its stretch of the stack's entries.
struct UndoRecord {
  UndoKind kind = UndoKind::removed_row;
  int row = -1, col = -1;
  int other = -1;  // a second row or column
  int flag = 0;
  int begin = 0, middle = 0, end = 0;  // entries begin..middle-1 and middle..end-1
  double a = 0.0, b = 0.0, cost = 0.0;
  double lower = 0.0, upper = 0.0, low2 = 0.0, upp2 = 0.0;
};

struct UndoEntry {
  int index;
  double value;
};

class PostsolveStack {
 public:
  /// Starts a record; its entries are those added until the next begin().
  void begin(UndoKind kind);
  UndoRecord& top() { return records_.back(); }
  void add(int index, double value) {
    entries_.push_back({index, value});
    records_.back().end = static_cast<int>(entries_.size());
  }
  /// The entries added from here on are the second list.
  void split() { records_.back().middle = static_cast<int>(entries_.size()); }

  int size() const { return static_cast<int>(records_.size()); }
  const UndoRecord& record(int k) const { return records_[k]; }
  UndoRecord& record(int k) { return records_[k]; }
  const UndoEntry& entry(int k) const { return entries_[k]; }

  /// Undoes everything.
  void undo_all(PostsolveState& state) const;

  /// Sum of a_k v[index_k] over a stretch of entries.
  double dot(int first, int last, const Vector<double>& v) const;

 private:
  Vector<UndoRecord> records_;
  Vector<UndoEntry> entries_;
};

using UndoFunction = void (*)(const PostsolveStack&, const UndoRecord&, PostsolveState&);

/// The side at which a nonbasic variable counts: that of its status, unless its limits coincide
/// and the sign of its multiplier decides. kFreeSuper and kBasic are returned as they are.
inline int active_side(int status, double multiplier, bool limits_coincide) {
  if (status == kBasic || !limits_coincide || multiplier == 0.0) return status;
  return multiplier > 0.0 ? kAtLower : kAtUpper;
}

/// A record's flags: which end of the line that stays came from the line that goes, and whether
/// its ends coincide now.
enum TransferFlag : int { kLowerCame = 1, kUpperCame = 2, kEndsCoincide = 4 };

/// True when the line that stays is nonbasic at an end that came from the other line.
inline bool at_transferred_end(int side, int flags) {
  return (side == kAtLower && (flags & kLowerCame)) || (side == kAtUpper && (flags & kUpperCame));
}

inline int opposite_side(int side) {
  return side == kAtLower ? kAtUpper : kAtLower;
}

}  // namespace kelvo
